#include "zyn/dstruct/stringarray.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <string>
#include <vector>

#include "zyn/platform/casefold.h"
#include "zyn/platform/val.h"
#include "zyn/stringl/stringl.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::AnsiToString;
using zyn::platform::CharFromAnsi;
using zyn::platform::LowCase;
using zyn::platform::LowerCase;

constexpr int kMaxPools = 65535;

std::u16string StringArrayMessage(std::u16string_view text) {
  return Zyn_zynbase::ClassMessage(u"TStringArray", text);
}

constexpr std::uint32_t PoolOf(std::uint32_t word) { return word >> 16; }
constexpr std::uint32_t OffsetOf(std::uint32_t word) { return word & 0xFFFFu; }
constexpr std::uint32_t MakeWord(std::uint32_t pool, std::uint32_t offset) {
  return (pool << 16) + offset;
}

// The sort key of a byte: its UTF-16 character, ASCII letters lower-cased.
// Comparing these keys unit by unit is comparing the lower-cased UTF-16 texts.
constexpr std::array<char16_t, 256> MakeSortKeys() {
  std::array<char16_t, 256> keys{};
  for (int b = 0; b < 256; ++b) keys[b] = LowCase(CharFromAnsi(static_cast<unsigned char>(b)));
  return keys;
}
constexpr std::array<char16_t, 256> kSortKey = MakeSortKeys();

// The rank of each byte's sort key among the distinct keys: one byte that
// orders as the key does (equal ranks for equal keys).
constexpr std::array<std::uint8_t, 256> MakeSortRanks() {
  std::array<char16_t, 256> sorted = kSortKey;
  for (std::size_t i = 1; i < sorted.size(); ++i) {  // insertion sort, at compile time
    for (std::size_t j = i; j > 0 && sorted[j - 1] > sorted[j]; --j) {
      const char16_t t = sorted[j];
      sorted[j] = sorted[j - 1];
      sorted[j - 1] = t;
    }
  }
  std::array<std::uint8_t, 256> ranks{};
  for (std::size_t b = 0; b < 256; ++b) {
    int rank = 0;
    for (std::size_t k = 0; k < sorted.size() && sorted[k] < kSortKey[b]; ++k) {
      if (k == 0 || sorted[k] != sorted[k - 1]) ++rank;
    }
    ranks[b] = static_cast<std::uint8_t>(rank);
  }
  return ranks;
}
constexpr std::array<std::uint8_t, 256> kSortRank = MakeSortRanks();

// The first eight ranks of a text, the first in the top byte, 0 behind its
// end. Two texts whose prefixes differ compare as their prefixes: at the
// first differing byte either both have a character, whose ranks order as
// their keys, or the shorter text has ended and its 0 is below any rank of
// the other (a rank 0 there would be no difference). Equal prefixes say
// nothing unless both texts are no longer than eight.
std::uint64_t SortPrefix(std::string_view text) {
  std::uint64_t prefix = 0;
  const std::size_t n = std::min<std::size_t>(text.size(), 8);
  for (std::size_t i = 0; i < n; ++i) {
    prefix |= std::uint64_t{kSortRank[static_cast<unsigned char>(text[i])]} << (56 - 8 * i);
  }
  return prefix;
}

int CompareKeys(std::string_view a, std::string_view b) {
  const std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    if (a[i] == b[i]) continue;
    const char16_t ka = kSortKey[static_cast<unsigned char>(a[i])];
    const char16_t kb = kSortKey[static_cast<unsigned char>(b[i])];
    if (ka != kb) return ka < kb ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

// A hint to the processor that `p` will be read soon; no effect on results.
inline void Prefetch(const void* p) {
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(p);
#else
  (void)p;
#endif
}

int CompareUnits(std::u16string_view a, std::u16string_view b) {
  const int c = a.compare(b);
  return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

}  // namespace

// ---------------------------------------------------------------------------
// Construction

TStringArray::TStringArray(TComponent* AOwner) : TComponent(AOwner) {
  Zyn_zynbase::GuardAllocation<EZYNDStructError>(
      [&] {
        FPoiArray.assign(2, TWords(10, 0));
        FSortIx.resize(10);
        ResetSortIx(10);
        FRowAttrib.assign(10, 0);
        FColAttrib.assign(1, 0);
        FStgPool.push_back(std::make_unique<TStringPool>());
        FFirstFree.assign(1, 1);
      },
      StringArrayMessage(u"failed to initialize (out of memory)"));
}

TStringArray::~TStringArray() = default;

void TStringArray::Changed() {
  if (FOnChange) FOnChange(this);
}

void TStringArray::ResetSortIx(int n) {
  for (int i = 1; i <= n; ++i) FSortIx[i - 1] = i;
  ++store_version_;
}

void TStringArray::ResetPlacementHints() { first_fit_.fill(0); }

// ---------------------------------------------------------------------------
// Cells

std::string_view TStringArray::EntryBytes(std::uint32_t word) const {
  if (word == 0) return {};
  const auto& pool = *FStgPool[PoolOf(word) - 1];
  const std::size_t at = OffsetOf(word) - 1;
  return {reinterpret_cast<const char*>(pool.data()) + at + 1, pool[at]};
}

std::string_view TStringArray::CellBytes(int c, int r) const {
  if (!InRange(c, r)) return {};
  return EntryBytes(FPoiArray[c][FSortIx[r - 1] - 1]);
}

ShortString TStringArray::GetString(int c, int r) const {
  return ShortString::FromBytes(CellBytes(c, r));
}

std::uint32_t TStringArray::CellWord(int c, int r) const {
  return InRange(c, r) ? FPoiArray[c][FSortIx[r - 1] - 1] : 0;
}

int TStringArray::FirstFree(int pool) const {
  return pool >= 1 && pool <= FNumPoolAddr ? FFirstFree[pool - 1] : 0;
}

std::uint32_t TStringArray::PlaceEntry(std::string_view text) {
  const int len = static_cast<int>(text.size());
  int pool = first_fit_[len];
  while (pool < FNumPoolAddr && kStringPoolSize - (FFirstFree[pool] & 0xFFFF) <= len) ++pool;
  first_fit_[len] = pool;
  if (pool == FNumPoolAddr) {
    if (FNumPoolAddr >= kMaxPools) {
      throw EZYNDStructError(StringArrayMessage(u"no room for another string pool"));
    }
    // Both arrays get their room first, so a failure leaves them matching.
    FFirstFree.reserve(FFirstFree.size() + 1);
    FStgPool.reserve(FStgPool.size() + 1);
    FStgPool.push_back(std::make_unique<TStringPool>());
    FFirstFree.push_back(1);
    ++FNumPoolAddr;
  }
  const int offset = FFirstFree[pool] & 0xFFFF;
  auto& bytes = *FStgPool[pool];
  bytes[offset - 1] = static_cast<std::uint8_t>(len);
  std::memcpy(bytes.data() + offset, text.data(), text.size());
  FFirstFree[pool] = offset + len + 1;
  return MakeWord(static_cast<std::uint32_t>(pool + 1), static_cast<std::uint32_t>(offset));
}

void TStringArray::SetString(int c, int r, const ShortString& s) {
  if (!InRange(c, r)) return;
  std::uint32_t& word = FPoiArray[c][FSortIx[r - 1] - 1];
  const std::string_view text = s.bytes();
  if (word != 0 && text.size() <= EntryBytes(word).size()) {
    auto& bytes = *FStgPool[PoolOf(word) - 1];
    const std::size_t at = OffsetOf(word) - 1;
    bytes[at] = static_cast<std::uint8_t>(text.size());
    std::memcpy(bytes.data() + at + 1, text.data(), text.size());
  } else {
    word = PlaceEntry(text);
  }
  ++store_version_;
  Changed();
}

double TStringArray::GetAsNumber(int c, int r) const {
  const std::u16string stored = AnsiToString(CellBytes(c, r));
  const std::u16string text =
      Zyn_stringl::ReplaceCharInString(Zyn_stringl::StripLTBlanks(stored), u',', u'.');
  if (text.empty()) return 0.0;
  int code = 0;
  const double value = zyn::platform::Val(text, code);
  if (code != 0) {
    std::u16string message = u"invalid numeric string: [";
    for (char ch : std::to_string(c)) message += static_cast<char16_t>(ch);
    message += u',';
    for (char ch : std::to_string(r)) message += static_cast<char16_t>(ch);
    message += u"]: ";
    message += stored;
    throw EZYNDStructError(StringArrayMessage(message));
  }
  return value;
}

int TStringArray::GetAsInteger(int c, int r) const {
  constexpr double kLimit = 2147483647.0;
  const double v = GetAsNumber(c, r);
  if (v < -kLimit) return -2147483647;
  if (v > kLimit) return 2147483647;
  return static_cast<int>(std::nearbyint(v));
}

std::uint8_t TStringArray::GetRowAttrib(int r) const {
  return r >= 1 && r <= FNRow ? FRowAttrib[FSortIx[r - 1] - 1] : 0;
}

void TStringArray::SetRowAttrib(int r, std::uint8_t b) {
  if (r < 1 || r > FNRow) return;
  FRowAttrib[FSortIx[r - 1] - 1] = b;
  Changed();
}

std::uint8_t TStringArray::GetColAttrib(int c) const {
  return c >= 1 && c <= FNCol ? FColAttrib[c - 1] : 0;
}

void TStringArray::SetColAttrib(int c, std::uint8_t b) {
  if (c < 1 || c > FNCol) return;
  FColAttrib[c - 1] = b;
  Changed();
}

// ---------------------------------------------------------------------------
// Dimensions and storage

void TStringArray::ShrinkOrGrowInPlace(int Nr) {
  const int low = std::min(Nr, FNRow);
  const int high = std::max(Nr, FNRow);
  for (auto& column : FPoiArray) std::fill(column.begin() + low, column.begin() + high, 0);
  if (Nr > FNRow) std::fill(FRowAttrib.begin() + FNRow, FRowAttrib.begin() + Nr, 0);
  ResetSortIx(Nr);
  FNRow = Nr;
}

bool TStringArray::Reallocate(int Nc, int Nr) {
  const std::int64_t step = std::max(FAllocRowsBy, 1);
  const std::int64_t rows = ((Nr - 1) / step + 1) * step;
  if (rows > std::numeric_limits<std::int32_t>::max()) return false;
  const auto alloc = static_cast<std::size_t>(rows);
  const auto keep_rows = static_cast<std::size_t>(std::min(Nr, FNRow));
  // The new arrays are built beside the old ones and swapped in only when
  // all four exist, so a failure leaves the table as it was.
  std::vector<TWords> words;
  std::vector<std::int32_t> sort_ix;
  std::vector<std::uint8_t> row_attrib;
  std::vector<std::uint8_t> col_attrib;
  try {
    words.resize(static_cast<std::size_t>(Nc) + 1);
    for (std::size_t c = 0; c < words.size(); ++c) {
      words[c].assign(alloc, 0);
      if (c < FPoiArray.size()) {
        std::copy_n(FPoiArray[c].begin(), std::min(keep_rows, FPoiArray[c].size()),
                    words[c].begin());
      }
    }
    row_attrib.assign(alloc, 0);
    std::copy_n(FRowAttrib.begin(), keep_rows, row_attrib.begin());
    sort_ix.assign(alloc, 0);
    col_attrib.assign(static_cast<std::size_t>(Nc), 0);
    std::copy_n(FColAttrib.begin(), std::min<std::size_t>(FColAttrib.size(), Nc),
                col_attrib.begin());
  } catch (...) {
    return false;
  }
  FPoiArray.swap(words);
  FSortIx.swap(sort_ix);
  FRowAttrib.swap(row_attrib);
  FColAttrib.swap(col_attrib);
  ResetSortIx(Nr);
  FNCol = Nc;
  FNRow = Nr;
  FRAllocated = static_cast<int>(alloc);
  return true;
}

bool TStringArray::Resize(int Nc, int Nr) {
  if (Nc == FNCol && Nr == FNRow) return true;
  if (Nc < 1 || Nr < 1) return false;
  bool result = true;
  if (Nc == FNCol && Nr <= FRAllocated) {
    ShrinkOrGrowInPlace(Nr);
  } else {
    result = Reallocate(Nc, Nr);
  }
  ++store_version_;
  Changed();
  return result;
}

void TStringArray::GarbageCollection() {
  TStringPool block;
  for (int pool = 1; pool <= FNumPoolAddr; ++pool) {
    int write = 1;
    for (int c = 0; c <= FNCol; ++c) {
      for (int p = 0; p < FNRow; ++p) {
        std::uint32_t& word = FPoiArray[c][p];
        if (word == 0 || PoolOf(word) != static_cast<std::uint32_t>(pool)) continue;
        const std::string_view entry = EntryBytes(word);
        block[write - 1] = static_cast<std::uint8_t>(entry.size());
        std::memcpy(block.data() + write, entry.data(), entry.size());
        word = MakeWord(static_cast<std::uint32_t>(pool), static_cast<std::uint32_t>(write));
        write += static_cast<int>(entry.size()) + 1;
      }
    }
    std::copy_n(block.begin(), write - 1, FStgPool[pool - 1]->begin());
    FFirstFree[pool - 1] = write;
  }
  ResetPlacementHints();
  ++store_version_;
}

void TStringArray::Clear() {
  for (auto& column : FPoiArray) std::fill_n(column.begin(), FNRow, 0);
  ResetSortIx(FNRow);
  std::fill_n(FRowAttrib.begin(), FNRow, 0);
  std::fill(FColAttrib.begin(), FColAttrib.end(), 0);
  if (FNumPoolAddr > 1) {
    FStgPool.resize(1);
    FFirstFree.resize(1);
    FNumPoolAddr = 1;
  }
  FFirstFree[0] = 1;
  ResetPlacementHints();
}

void TStringArray::Fill(const ShortString& s) {
  if (s.empty()) {
    Clear();
    return;
  }
  for (int c = 0; c <= FNCol; ++c) {
    for (int r = 1; r <= FNRow; ++r) SetString(c, r, s);
  }
}

void TStringArray::Assign(const zyn::platform::TPersistent& Source) {
  const auto* source = dynamic_cast<const TStringArray*>(&Source);
  if (source == nullptr) {
    TPersistent::Assign(Source);
    return;
  }
  if (source == this) return;
  // Copies first, then a swap that can't fail: the twin is all or nothing.
  std::vector<std::int32_t> first_free = source->FFirstFree;
  std::vector<TWords> words = source->FPoiArray;
  std::vector<std::int32_t> sort_ix = source->FSortIx;
  std::vector<std::unique_ptr<TStringPool>> pools;
  pools.reserve(source->FStgPool.size());
  for (const auto& pool : source->FStgPool) pools.push_back(std::make_unique<TStringPool>(*pool));
  std::vector<std::uint8_t> row_attrib = source->FRowAttrib;
  std::vector<std::uint8_t> col_attrib = source->FColAttrib;
  zyn::platform::TNotifyEvent on_change = source->FOnChange;
  TBeforeSortExchgEvent on_before = source->FOnBefSortExc;
  Zyn_zynbase::TOnPercentDoneEvent on_percent = source->FOnPercentDone;

  FNCol = source->FNCol;
  FNRow = source->FNRow;
  FAllocRowsBy = source->FAllocRowsBy;
  FRAllocated = source->FRAllocated;
  FNumPoolAddr = source->FNumPoolAddr;
  FFirstFree.swap(first_free);
  FPoiArray.swap(words);
  FSortIx.swap(sort_ix);
  FStgPool.swap(pools);
  FRowAttrib.swap(row_attrib);
  FColAttrib.swap(col_attrib);
  FOnChange.swap(on_change);
  FOnBefSortExc.swap(on_before);
  FOnPercentDone.swap(on_percent);
  first_fit_ = source->first_fit_;
  ++store_version_;
}

void TStringArray::TakeStorage(TStringArray& other) noexcept {
  std::swap(FNCol, other.FNCol);
  std::swap(FNRow, other.FNRow);
  std::swap(FRAllocated, other.FRAllocated);
  std::swap(FNumPoolAddr, other.FNumPoolAddr);
  FFirstFree.swap(other.FFirstFree);
  FPoiArray.swap(other.FPoiArray);
  FSortIx.swap(other.FSortIx);
  FStgPool.swap(other.FStgPool);
  FRowAttrib.swap(other.FRowAttrib);
  FColAttrib.swap(other.FColAttrib);
  std::swap(first_fit_, other.first_fit_);
  ++store_version_;
}

void TStringArray::AssignTo(zyn::platform::TPersistent& Dest) const {
  if (dynamic_cast<TStringArray*>(&Dest) != nullptr) {
    Dest.Assign(*this);
    return;
  }
  TPersistent::AssignTo(Dest);
}

// ---------------------------------------------------------------------------
// Sorting

void TStringArray::BeforeSortExchange(const std::u16string& InString, std::u16string& OutString) {
  OutString = InString;
  if (FOnBefSortExc) FOnBefSortExc(this, InString, OutString);
}

int TStringArray::CompareCells(int col, int a, int b) {
  if (!FOnBefSortExc) return CompareKeys(CellBytes(col, a), CellBytes(col, b));
  std::u16string ta;
  std::u16string tb;
  BeforeSortExchange(GetString(col, a).str(), ta);
  BeforeSortExchange(GetString(col, b).str(), tb);
  return CompareUnits(LowerCase(ta), LowerCase(tb));
}

int TStringArray::CompareRows(int a, int b, int Col, int ColSec) {
  const int primary = CompareCells(Col, a, b);
  if (primary != 0 || ColSec < 1) return primary;
  return CompareCells(ColSec, a, b);
}

void TStringArray::PrefetchEntry(std::uint32_t word) const {
  if (word == 0) return;
  Prefetch(FStgPool[PoolOf(word) - 1]->data() + OffsetOf(word) - 1);
}

bool TStringArray::SortPass(int gap, int Col, int ColSec, int wrong_way) {
  bool exchanged = false;
  const int last = FNRow - gap;
  if (FOnBefSortExc) {
    for (int i = 1; i <= last; ++i) {
      if (CompareRows(i, i + gap, Col, ColSec) == wrong_way) {
        std::swap(FSortIx[i - 1], FSortIx[i + gap - 1]);
        exchanged = true;
      }
    }
    return exchanged;
  }
  // The same comparisons on the pool bytes directly. The rows of a pass lie
  // scattered in memory, so the words of the rows a few steps ahead, and a
  // little later their entries, are requested early.
  constexpr int kWordsAhead = 16;
  constexpr int kEntriesAhead = 8;
  const std::uint32_t* primary = Col >= 0 && Col <= FNCol ? FPoiArray[Col].data() : nullptr;
  const std::uint32_t* secondary =
      ColSec >= 1 && ColSec <= FNCol ? FPoiArray[ColSec].data() : nullptr;
  std::int32_t* ix = FSortIx.data();
  auto text = [this](const std::uint32_t* column, std::int32_t physical) {
    return column != nullptr ? EntryBytes(column[physical - 1]) : std::string_view();
  };
  for (int i = 1; i <= last; ++i) {
    if (primary != nullptr && i + kWordsAhead <= last) {
      Prefetch(primary + ix[i + kWordsAhead - 1] - 1);
      Prefetch(primary + ix[i + kWordsAhead + gap - 1] - 1);
    }
    if (primary != nullptr && i + kEntriesAhead <= last) {
      PrefetchEntry(primary[ix[i + kEntriesAhead - 1] - 1]);
      PrefetchEntry(primary[ix[i + kEntriesAhead + gap - 1] - 1]);
    }
    std::int32_t& a = ix[i - 1];
    std::int32_t& b = ix[i + gap - 1];
    int order = CompareKeys(text(primary, a), text(primary, b));
    if (order == 0 && ColSec >= 1) order = CompareKeys(text(secondary, a), text(secondary, b));
    if (order == wrong_way) {
      std::swap(a, b);
      exchanged = true;
    }
  }
  return exchanged;
}

// A row in the sort's working array: the sort prefix of its primary text,
// the length of that text, and the physical row.
struct TStringArray::KeyedRow {
  std::uint64_t prefix;
  std::int32_t length;
  std::int32_t row;
};

void TStringArray::LoadSortKeys(std::vector<KeyedRow>& keys, int Col) const {
  const std::uint32_t* primary = Col >= 0 && Col <= FNCol ? FPoiArray[Col].data() : nullptr;
  keys.resize(static_cast<std::size_t>(FNRow));
  for (int i = 0; i < FNRow; ++i) {
    const std::int32_t row = FSortIx[static_cast<std::size_t>(i)];
    const std::string_view text =
        primary != nullptr ? EntryBytes(primary[row - 1]) : std::string_view();
    keys[static_cast<std::size_t>(i)] = {SortPrefix(text), static_cast<std::int32_t>(text.size()),
                                         row};
  }
}

bool TStringArray::KeyedSortPass(std::vector<KeyedRow>& keys, int gap, int Col, int ColSec,
                                 int wrong_way) const {
  const std::uint32_t* primary = Col >= 0 && Col <= FNCol ? FPoiArray[Col].data() : nullptr;
  const std::uint32_t* secondary =
      ColSec >= 1 && ColSec <= FNCol ? FPoiArray[ColSec].data() : nullptr;
  auto text = [this](const std::uint32_t* column, std::int32_t physical) {
    return column != nullptr ? EntryBytes(column[physical - 1]) : std::string_view();
  };
  bool exchanged = false;
  const std::size_t last = keys.size() - std::min(keys.size(), static_cast<std::size_t>(gap));
  KeyedRow* k = keys.data();
  for (std::size_t i = 0; i < last; ++i) {
    KeyedRow& a = k[i];
    KeyedRow& b = k[i + static_cast<std::size_t>(gap)];
    int order;
    if (a.prefix != b.prefix) {
      order = a.prefix < b.prefix ? -1 : 1;
    } else if (a.length <= 8 && b.length <= 8) {
      order = a.length == b.length ? 0 : (a.length < b.length ? -1 : 1);
    } else {
      order = CompareKeys(text(primary, a.row), text(primary, b.row));
    }
    if (order == 0 && ColSec >= 1)
      order = CompareKeys(text(secondary, a.row), text(secondary, b.row));
    if (order == wrong_way) {
      std::swap(a, b);
      exchanged = true;
    }
  }
  return exchanged;
}

void TStringArray::Sort(int Col, int ColSec, bool Ascending) {
  if (FOnPercentDone) FOnPercentDone(this, 0);
  const int n_rows = FNRow;
  double estimate = 0;
  for (int g = n_rows; g != 1;) {
    g = std::max(g * 10 / 13, 1);
    estimate += n_rows - g;
  }
  estimate += n_rows;
  if (n_rows >= 2) {
    const int wrong_way = Ascending ? 1 : -1;
    // Without an OnBeforeSortExchange handler the passes run over a working
    // array of keyed rows, which FSortIx takes back before anyone can look:
    // before each OnPercentDone call and at the end. A handler that changed
    // the table has the array taken afresh from what it left.
    std::vector<KeyedRow> keys;
    bool keyed = false;
    const auto load = [&] {
      keyed = !FOnBefSortExc;
      if (!keyed) return;
      try {
        LoadSortKeys(keys, Col);
      } catch (const std::exception&) {  // no room for the array: the same passes in place
        keyed = false;
        std::vector<KeyedRow>().swap(keys);
      }
    };
    const auto store = [&] {
      if (!keyed) return;
      for (std::size_t i = 0; i < keys.size(); ++i) FSortIx[i] = keys[i].row;
      ++store_version_;
    };
    load();
    std::int64_t compared = 0;
    int gap = n_rows;
    // A consistent comparison brings the gap-1 passes to rest within n_rows
    // passes; the bound only stops a handler that answers differently each
    // time from keeping the sort busy for ever.
    int passes_at_one = 0;
    for (;;) {
      gap = std::max(gap * 10 / 13, 1);
      const bool exchanged = keyed ? KeyedSortPass(keys, gap, Col, ColSec, wrong_way)
                                   : SortPass(gap, Col, ColSec, wrong_way);
      compared += n_rows - gap;
      if (FOnPercentDone) {
        store();
        const std::uint64_t seen = store_version_;
        FOnPercentDone(this, static_cast<int>(std::nearbyint(compared / estimate * 100.0)));
        if (store_version_ != seen || keyed == static_cast<bool>(FOnBefSortExc)) load();
      }
      if (gap == 1 && (!exchanged || ++passes_at_one > n_rows)) break;
    }
    store();
    Changed();
  }
  if (FOnPercentDone) FOnPercentDone(this, 100);
}

void TStringArray::CommitSorting() {
  const auto rows = static_cast<std::size_t>(FNRow);
  TWords scratch(rows);
  std::vector<std::uint8_t> attrib(rows);
  for (auto& column : FPoiArray) {
    for (std::size_t i = 0; i < rows; ++i) scratch[i] = column[FSortIx[i] - 1];
    std::copy(scratch.begin(), scratch.end(), column.begin());
  }
  for (std::size_t i = 0; i < rows; ++i) attrib[i] = FRowAttrib[FSortIx[i] - 1];
  std::copy(attrib.begin(), attrib.end(), FRowAttrib.begin());
  ResetSortIx(FNRow);
}

void TStringArray::UnSort() {
  ResetSortIx(FNRow);
  Changed();
}

int TStringArray::GetSortOrder(int ix) const {
  return ix >= 1 && ix <= FNRow ? FSortIx[ix - 1] : -1;
}

void TStringArray::SetSortOrder(int ix, int position) {
  if (ix >= 1 && ix <= FNRow && position >= 1 && position <= FNRow) FSortIx[ix - 1] = position;
  ++store_version_;
}

// ---------------------------------------------------------------------------
// Searching

std::u16string TStringArray::FoldedCell(int c, int r, bool MatchCase) const {
  std::u16string text = AnsiToString(CellBytes(c, r));
  return MatchCase ? text : LowerCase(text);
}

bool TStringArray::FindCellIntern(std::u16string_view FindStr, bool MatchCase, int ColLow,
                                  int ColHigh, int RowLow, int RowHigh, int& Col, int& row,
                                  bool Exact) const {
  const std::u16string wanted = MatchCase ? std::u16string(FindStr) : LowerCase(FindStr);
  if (ColLow == -1 || ColHigh == -1) ColLow = 0, ColHigh = FNCol;
  if (RowLow == -1 && RowHigh == -1) RowLow = 1, RowHigh = FNRow;
  ColLow = std::clamp(ColLow, 0, FNCol);
  ColHigh = std::clamp(ColHigh, 0, FNCol);
  if (ColLow > ColHigh) std::swap(ColLow, ColHigh);
  RowLow = std::clamp(RowLow, 1, FNRow);
  RowHigh = std::clamp(RowHigh, 1, FNRow);
  if (RowLow > RowHigh) std::swap(RowLow, RowHigh);
  if (!Exact && wanted.empty()) return false;
  for (int r = RowLow; r <= RowHigh; ++r) {
    for (int c = ColLow; c <= ColHigh; ++c) {
      const std::u16string cell = FoldedCell(c, r, MatchCase);
      const bool hit = Exact ? cell == wanted : cell.find(wanted) != std::u16string::npos;
      if (hit) {
        Col = c;
        row = r;
        return true;
      }
    }
  }
  return false;
}

bool TStringArray::FindCell(std::u16string_view FindStr, bool MatchCase, int ColLow, int ColHigh,
                            int RowLow, int RowHigh, int& Col, int& row) const {
  return FindCellIntern(FindStr, MatchCase, ColLow, ColHigh, RowLow, RowHigh, Col, row, false);
}

bool TStringArray::FindCellExact(std::u16string_view FindStr, bool MatchCase, int ColLow,
                                 int ColHigh, int RowLow, int RowHigh, int& Col, int& row) const {
  return FindCellIntern(FindStr, MatchCase, ColLow, ColHigh, RowLow, RowHigh, Col, row, true);
}

bool TStringArray::FindCellInSortedColumn(std::u16string_view FindStr, bool MatchCase, int ColIx,
                                          int RowLow, int RowHigh, bool ColIsAscending,
                                          int& row) const {
  const std::u16string wanted = MatchCase ? std::u16string(FindStr) : LowerCase(FindStr);
  if (RowLow == -1 && RowHigh == -1) RowLow = 1, RowHigh = FNRow;
  ColIx = std::clamp(ColIx, 0, FNCol);
  RowLow = std::clamp(RowLow, 1, FNRow);
  RowHigh = std::clamp(RowHigh, 1, FNRow);
  if (RowLow > RowHigh) std::swap(RowLow, RowHigh);
  const int behind = ColIsAscending ? 1 : -1;
  bool hit = false;
  while (RowLow != RowHigh) {
    row = (RowLow + RowHigh) / 2;
    const int order = CompareUnits(wanted, FoldedCell(ColIx, row, MatchCase));
    if (order == 0) {
      hit = true;
      break;
    }
    if (order == behind) {
      RowLow = row + 1;
    } else {
      RowHigh = row;
    }
  }
  if (!hit) {
    row = RowLow;
    hit = FoldedCell(ColIx, row, MatchCase) == wanted;
  }
  if (hit) {
    while (row > 1 && FoldedCell(ColIx, row - 1, MatchCase) == wanted) --row;
  }
  return hit;
}

// ---------------------------------------------------------------------------
// Rows

bool TStringArray::RowEmpty(int ARow) const {
  for (int c = 1; c <= FNCol; ++c) {
    const std::string_view text = CellBytes(c, ARow);
    if (text.find_first_not_of(' ') != std::string_view::npos) return false;
  }
  return true;
}

bool TStringArray::ColumnEmpty(int ACol) const {
  for (int r = 1; r <= FNRow; ++r) {
    const std::string_view text = CellBytes(ACol, r);
    if (text.find_first_not_of(' ') != std::string_view::npos) return false;
  }
  return true;
}

int TStringArray::AddRow() {
  SetNrRows(FNRow + 1);
  return FNRow;
}

void TStringArray::InsertRow(int r) {
  if (r < 1 || r > FNRow) return;
  const int rs = FSortIx[r - 1];
  // Without the new row the shift below would drop the last one.
  if (!Resize(FNCol, FNRow + 1)) return;
  for (int i = FNRow; i >= rs + 1; --i) {
    for (int c = 0; c <= FNCol; ++c) SetString(c, i, GetString(c, i - 1));
    SetRowAttrib(i, GetRowAttrib(i - 1));
  }
  for (int c = 0; c <= FNCol; ++c) SetString(c, rs, ShortString());
  SetRowAttrib(rs, 0);
  // Physical order with entry rs moved to position r.
  const auto first = FSortIx.begin();
  if (rs < r) {
    std::rotate(first + rs - 1, first + rs, first + r);
  } else {
    std::rotate(first + r - 1, first + rs - 1, first + rs);
  }
  ++store_version_;
}

void TStringArray::RemoveRow(int r) {
  if (r < 1 || r > FNRow) return;
  if (FNRow == 1) {
    for (int c = 0; c <= FNCol; ++c) SetString(c, 1, ShortString());
    SetRowAttrib(1, 0);
    return;
  }
  const int rs = FSortIx[r - 1];
  ResetSortIx(FNRow);
  for (int i = rs + 1; i <= FNRow; ++i) {
    for (int c = 0; c <= FNCol; ++c) SetString(c, i - 1, GetString(c, i));
    SetRowAttrib(i - 1, GetRowAttrib(i));
  }
  Resize(FNCol, FNRow - 1);
}

void TStringArray::CopyRow(int Source, int Target) {
  if (Source < 1 || Source > FNRow || Target < 1 || Target > FNRow) return;
  for (int c = 0; c <= FNCol; ++c) SetString(c, Target, GetString(c, Source));
  SetRowAttrib(Target, GetRowAttrib(Source));
}

}  // namespace Zyn_dstruct
