#include "zyn/dstruct/assocarray.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "zyn/base/scanners.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/text.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::LowCase;
using zyn::platform::varString;

constexpr std::uint64_t kMul = 0x9E3779B97F4A7C15ULL;

std::uint64_t Mix(std::uint64_t h, std::uint64_t w) noexcept {
  h = (h ^ w) * kMul;
  return h ^ (h >> 29);
}

// Hashes the bytes of `n` code units; with `fold`, A to Z count as a to z.
// Units are folded a block at a time, so the loops stay simple enough for
// the compiler to vectorize.
template <bool fold>
std::uint32_t HashUnits(const char16_t* s, std::size_t n) noexcept {
  std::uint64_t h = Mix(0x243F6A8885A308D3ULL, n);
  constexpr std::size_t kBlock = 32;
  char16_t block[kBlock];
  for (std::size_t at = 0; at < n; at += kBlock) {
    const std::size_t m = std::min(kBlock, n - at);
    const char16_t* units = s + at;
    if constexpr (fold) {
      for (std::size_t i = 0; i < m; ++i) block[i] = LowCase(s[at + i]);
      units = block;
    }
    std::size_t i = 0;
    for (; i + 4 <= m; i += 4) {
      std::uint64_t w;
      std::memcpy(&w, units + i, sizeof w);
      h = Mix(h, w);
    }
    if (i < m) {
      std::uint64_t w = 0;
      std::memcpy(&w, units + i, (m - i) * sizeof(char16_t));
      h = Mix(h, w);
    }
  }
  h ^= h >> 33;
  h *= 0xFF51AFD7ED558CCDULL;
  h ^= h >> 33;
  return static_cast<std::uint32_t>(h);
}

}  // namespace

TAssocArray::TAssocArray(zyn::platform::TComponent* AOwner) : TComponent(AOwner) {
  Zyn_zynbase::GuardAllocation<EZYNDStructError>(
      [&] { SetLength(1024); }, Zyn_zynbase::ComponentMessage(*this, u"not enough memory on heap"));
}

// --- The index --------------------------------------------------------------

std::uint32_t TAssocArray::HashKey(std::u16string_view key) const noexcept {
  return FIgnoreCase ? HashUnits<true>(key.data(), key.size())
                     : HashUnits<false>(key.data(), key.size());
}

bool TAssocArray::KeysMatch(std::u16string_view stored, std::u16string_view key) const noexcept {
  if (stored.size() != key.size()) return false;
  if (!FIgnoreCase) return stored == key;
  for (std::size_t i = 0; i < key.size(); ++i) {
    if (LowCase(stored[i]) != LowCase(key[i])) return false;
  }
  return true;
}

int TAssocArray::Find(std::u16string_view key) const {
  if (!index_valid_) RebuildIndex();
  if (slots_.empty()) return -1;
  const std::uint32_t h = HashKey(key);
  const std::size_t mask = slots_.size() - 1;
  int best = -1;
  for (std::size_t i = h & mask; slots_[i].pos >= 0; i = (i + 1) & mask) {
    const Slot& slot = slots_[i];
    if (slot.hash != h || (best >= 0 && slot.pos > best)) continue;
    if (!KeysMatch(FKeyArray[static_cast<std::size_t>(slot.pos)], key)) continue;
    best = slot.pos;
    // Without duplicates the first match is the only one.
    if (!may_hold_duplicates_) break;
  }
  return best;
}

void TAssocArray::ReserveIndex(int entries) const {
  const auto wanted = static_cast<std::size_t>(entries) * 2;
  if (wanted <= slots_.size()) return;
  std::size_t size = std::max<std::size_t>(16, slots_.size());
  while (size < wanted) size *= 2;
  std::vector<Slot> grown(size, Slot{0, -1});
  const std::size_t mask = size - 1;
  for (const Slot& slot : slots_) {
    if (slot.pos < 0) continue;
    std::size_t i = slot.hash & mask;
    while (grown[i].pos >= 0) i = (i + 1) & mask;
    grown[i] = slot;
  }
  slots_.swap(grown);
}

void TAssocArray::IndexInsert(int pos) const {
  const std::uint32_t h = HashKey(FKeyArray[static_cast<std::size_t>(pos)]);
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = h & mask;
  while (slots_[i].pos >= 0) i = (i + 1) & mask;
  slots_[i] = Slot{h, pos};
}

std::size_t TAssocArray::IndexSlotOf(int pos) const noexcept {
  const std::uint32_t h = HashKey(FKeyArray[static_cast<std::size_t>(pos)]);
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = h & mask;
  while (slots_[i].pos != pos) i = (i + 1) & mask;
  return i;
}

void TAssocArray::IndexErase(int pos) const noexcept {
  // Backward-shift deletion: every later slot of the cluster that may move
  // nearer to its home slot does, so no tombstones are needed.
  const std::size_t mask = slots_.size() - 1;
  std::size_t hole = IndexSlotOf(pos);
  for (std::size_t j = (hole + 1) & mask; slots_[j].pos >= 0; j = (j + 1) & mask) {
    const std::size_t home = slots_[j].hash & mask;
    // The slot at j may fill the hole unless its home lies cyclically in (hole, j].
    const bool home_after_hole = ((j - home) & mask) < ((j - hole) & mask);
    if (home_after_hole) continue;
    slots_[hole] = slots_[j];
    hole = j;
  }
  slots_[hole] = Slot{0, -1};
}

void TAssocArray::RebuildIndex() const {
  slots_.clear();
  ReserveIndex(FNEntries);
  index_valid_ = true;
  may_hold_duplicates_ = false;
  bool duplicates = false;
  for (int pos = 0; pos < FNEntries; ++pos) {
    if (!duplicates && Find(FKeyArray[static_cast<std::size_t>(pos)]) >= 0) duplicates = true;
    IndexInsert(pos);
  }
  may_hold_duplicates_ = duplicates;
}

// --- Storage ------------------------------------------------------------------

void TAssocArray::SetLength(std::size_t length) {
  // Memory grows geometrically, so that growing by Granularity again and
  // again costs linear time; the arrays' lengths follow Granularity.
  if (length > FKeyArray.capacity()) {
    const std::size_t room = std::max(length, FKeyArray.capacity() * 2);
    FKeyArray.reserve(room);
    FDataArray.reserve(room);
  }
  FKeyArray.resize(length);
  FDataArray.resize(length);
}

void TAssocArray::SetIgnoreCase(bool Value) noexcept {
  if (Value == FIgnoreCase) return;
  FIgnoreCase = Value;
  index_valid_ = false;
}

void TAssocArray::Add(std::u16string_view Key, const Variant& Value) {
  std::u16string stored = FIgnoreCase ? zyn::platform::LowerCase(Key) : std::u16string(Key);
  const int found = Find(stored);
  if (found >= 0) {
    FDataArray[static_cast<std::size_t>(found)] = Value;
    return;
  }
  const auto n = static_cast<std::size_t>(FNEntries) + 1;
  if (n > FKeyArray.size()) SetLength(n + static_cast<std::size_t>(std::max(FGranularity, 1)));
  ReserveIndex(FNEntries + 1);
  FDataArray[n - 1] = Value;
  FKeyArray[n - 1] = std::move(stored);
  ++FNEntries;
  IndexInsert(FNEntries - 1);
}

bool TAssocArray::Remove(std::u16string_view Key) {
  const int found = Find(Key);
  if (found < 0) return false;
  const int last = FNEntries - 1;
  IndexErase(found);
  if (found != last) {
    // The last entry keeps its key, so its slot stays where it is.
    slots_[IndexSlotOf(last)].pos = found;
    FKeyArray[static_cast<std::size_t>(found)] =
        std::move(FKeyArray[static_cast<std::size_t>(last)]);
    FDataArray[static_cast<std::size_t>(found)] =
        std::move(FDataArray[static_cast<std::size_t>(last)]);
  }
  --FNEntries;
  return true;
}

void TAssocArray::Clear() {
  const auto length = static_cast<std::size_t>(std::max(FGranularity, 1));
  std::vector<Variant> data(length);
  std::vector<std::u16string> keys(length);
  FDataArray.swap(data);
  FKeyArray.swap(keys);
  FNEntries = 0;
  slots_.clear();
  slots_.shrink_to_fit();
  index_valid_ = true;
  may_hold_duplicates_ = false;
}

// --- Access -------------------------------------------------------------------

Variant TAssocArray::Resolve(std::u16string_view Key) const {
  const int found = Find(Key);
  return found < 0 ? Variant::Null() : FDataArray[static_cast<std::size_t>(found)];
}

std::u16string TAssocArray::ResolveAsString(std::u16string_view Key) const {
  const int found = Find(Key);
  if (found < 0) return {};
  const Variant& v = FDataArray[static_cast<std::size_t>(found)];
  return v.IsNull() ? std::u16string() : v.AsString();
}

double TAssocArray::ResolveAsNumber(std::u16string_view Key) const {
  const int found = Find(Key);
  if (found < 0) return 0.0;
  const Variant& v = FDataArray[static_cast<std::size_t>(found)];
  switch (v.VarType()) {
    case zyn::platform::varSmallint:
    case zyn::platform::varInteger:
    case zyn::platform::varSingle:
    case zyn::platform::varDouble:
    case zyn::platform::varCurrency:
    case zyn::platform::varShortInt:
    case zyn::platform::varByte:
    case zyn::platform::varWord:
    case zyn::platform::varLongWord:
    case zyn::platform::varInt64:
      return v.AsDouble();
    case varString: {
      int pos = 1;
      return zyn::internal::ScanFPNum(zyn::platform::AnsiToString(v.Ansi()), true,
                                      Zyn_zynbase::dsBoth, pos);
    }
    default:
      return 0.0;
  }
}

int TAssocArray::ResolveAsInt(std::u16string_view Key) const {
  const int found = Find(Key);
  if (found < 0) return 0;
  const Variant& v = FDataArray[static_cast<std::size_t>(found)];
  switch (v.VarType()) {
    case zyn::platform::varSmallint:
    case zyn::platform::varInteger:
    case zyn::platform::varShortInt:
    case zyn::platform::varByte:
    case zyn::platform::varWord:
    case zyn::platform::varLongWord:
    case zyn::platform::varInt64:
      return v.AsInteger();
    case varString: {
      int pos = 1;
      return zyn::internal::ScanDecimal(zyn::platform::AnsiToString(v.Ansi()), pos);
    }
    default:
      return 0;
  }
}

std::u16string TAssocArray::GetKeys(int ix) const {
  return ValidIndex(ix) ? FKeyArray[static_cast<std::size_t>(ix - 1)] : std::u16string();
}

Variant TAssocArray::GetValues(int ix) const {
  return ValidIndex(ix) ? FDataArray[static_cast<std::size_t>(ix - 1)] : Variant(u"");
}

void TAssocArray::SetKeys(int ix, std::u16string_view v) {
  if (!ValidIndex(ix)) return;
  const int pos = ix - 1;
  std::u16string key(v);
  if (!index_valid_) {
    FKeyArray[static_cast<std::size_t>(pos)] = std::move(key);
    return;
  }
  IndexErase(pos);
  if (!may_hold_duplicates_ && Find(key) >= 0) may_hold_duplicates_ = true;
  FKeyArray[static_cast<std::size_t>(pos)] = std::move(key);
  IndexInsert(pos);
}

void TAssocArray::SetValues(int ix, const Variant& v) {
  if (ValidIndex(ix)) FDataArray[static_cast<std::size_t>(ix - 1)] = v;
}

}  // namespace Zyn_dstruct
