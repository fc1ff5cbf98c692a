#include "zyn/dstruct/bitfield.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

#include "zyn/platform/random.h"

namespace Zyn_dstruct {

using Zyn_zynbase::ComponentMessage;
using Zyn_zynbase::GuardAllocation;

namespace {

constexpr std::u16string_view kNoHeap = u"not enough memory on heap";
constexpr std::size_t kWord = sizeof(std::uint64_t);

std::uint64_t LoadWord(const std::uint8_t* p) noexcept {
  std::uint64_t w;
  std::memcpy(&w, p, kWord);
  return w;
}

void StoreWord(std::uint8_t* p, std::uint64_t w) noexcept { std::memcpy(p, &w, kWord); }

// a[i] = op(a[i], b[i]) for n bytes, eight at a time. `op` works on whole
// words; on a single byte only its low eight bits are kept.
template <typename Op>
void ApplyWordwise(std::uint8_t* a, const std::uint8_t* b, std::size_t n, Op op) noexcept {
  std::size_t i = 0;
  for (; i + kWord <= n; i += kWord) StoreWord(a + i, op(LoadWord(a + i), LoadWord(b + i)));
  for (; i < n; ++i) a[i] = static_cast<std::uint8_t>(op(a[i], b[i]));
}

// Dispatches once on the operation so that the loop itself has no branch.
// An operation outside TLogicOp changes nothing.
void CombineBytes(std::uint8_t* a, const std::uint8_t* b, std::size_t n,
                  TLogicOp operation) noexcept {
  using W = std::uint64_t;
  switch (operation) {
    case loAND:
      ApplyWordwise(a, b, n, [](W x, W y) { return x & y; });
      break;
    case loOR:
      ApplyWordwise(a, b, n, [](W x, W y) { return x | y; });
      break;
    case loXOR:
      ApplyWordwise(a, b, n, [](W x, W y) { return x ^ y; });
      break;
    case loANDNot:
      ApplyWordwise(a, b, n, [](W x, W y) { return x & ~y; });
      break;
    case loORNot:
      ApplyWordwise(a, b, n, [](W x, W y) { return x | ~y; });
      break;
    case loXORNot:
      ApplyWordwise(a, b, n, [](W x, W y) { return x ^ ~y; });
      break;
  }
}

void InvertBytes(std::uint8_t* a, std::size_t n) noexcept {
  std::size_t i = 0;
  for (; i + kWord <= n; i += kWord) StoreWord(a + i, ~LoadWord(a + i));
  for (; i < n; ++i) a[i] = static_cast<std::uint8_t>(~a[i]);
}

int CountBits(const std::uint8_t* a, std::size_t n) noexcept {
  int count = 0;
  std::size_t i = 0;
  for (; i + kWord <= n; i += kWord) count += std::popcount(LoadWord(a + i));
  for (; i < n; ++i) count += std::popcount(a[i]);
  return count;
}

// Index of the first non-zero byte among the n bytes, or n. Skips zero words
// whole; the byte inside a word is found by bytes, so the result does not
// depend on the machine's byte order.
std::size_t FirstNonZeroByte(const std::uint8_t* a, std::size_t n) noexcept {
  std::size_t i = 0;
  while (i + kWord <= n && LoadWord(a + i) == 0) i += kWord;
  while (i < n && a[i] == 0) ++i;
  return i;
}

std::uint64_t ByteSwap(std::uint64_t w) noexcept {
  w = ((w & 0x00FF00FF00FF00FFull) << 8) | ((w >> 8) & 0x00FF00FF00FF00FFull);
  w = ((w & 0x0000FFFF0000FFFFull) << 16) | ((w >> 16) & 0x0000FFFF0000FFFFull);
  return (w << 32) | (w >> 32);
}

// Reverses n bytes in place, a word from each end at a time.
void ReverseBytes(std::uint8_t* p, std::size_t n) noexcept {
  std::size_t lo = 0;
  std::size_t hi = n;
  while (hi - lo >= 2 * kWord) {
    const std::uint64_t front = LoadWord(p + lo);
    const std::uint64_t back = LoadWord(p + hi - kWord);
    StoreWord(p + lo, ByteSwap(back));
    StoreWord(p + hi - kWord, ByteSwap(front));
    lo += kWord;
    hi -= kWord;
  }
  std::reverse(p + lo, p + hi);
}

// Exchanges two non-overlapping runs of n bytes, a word at a time.
void SwapBytes(std::uint8_t* a, std::uint8_t* b, std::size_t n) noexcept {
  std::size_t i = 0;
  for (; i + kWord <= n; i += kWord) {
    const std::uint64_t x = LoadWord(a + i);
    StoreWord(a + i, LoadWord(b + i));
    StoreWord(b + i, x);
  }
  for (; i < n; ++i) std::swap(a[i], b[i]);
}

// The runtime's rounding: to the nearest integer, a tie to the even one.
int RoundToInt(double v) { return static_cast<int>(std::nearbyint(v)); }

std::uint8_t BitMask(int ixBit) noexcept { return static_cast<std::uint8_t>(1u << ixBit); }

}  // namespace

// ---------------------------------------------------------------------------
// TBitFld

TBitFld::TBitFld(TComponent* AOwner) : TComponent(AOwner) {
  GuardAllocation<EZYNDStructError>(
      [&] { FBitArray.assign(static_cast<std::size_t>(FSize / 8 + 2), 0); },
      ComponentMessage(*this, kNoHeap));
}

void TBitFld::SetSize(int Value) {
  if (Value < 1 || Value == FSize) return;
  FBitArray.resize(static_cast<std::size_t>(Value / 8 + 2), 0);
  FSize = Value;
}

bool TBitFld::GetBit(int ix) const noexcept {
  if (!ValidIndex(ix)) return false;
  return (FBitArray[static_cast<std::size_t>(ix / 8)] & BitMask(ix % 8)) != 0;
}

void TBitFld::SetBit(int ix, bool value) noexcept {
  if (!ValidIndex(ix)) return;
  std::uint8_t& byte = FBitArray[static_cast<std::size_t>(ix / 8)];
  if (value) {
    byte |= BitMask(ix % 8);
  } else {
    byte &= static_cast<std::uint8_t>(~BitMask(ix % 8));
  }
}

void TBitFld::ToggleBit(int ix) noexcept {
  if (!ValidIndex(ix)) return;
  FBitArray[static_cast<std::size_t>(ix / 8)] ^= BitMask(ix % 8);
}

void TBitFld::Clear() noexcept { std::fill(FBitArray.begin(), FBitArray.end(), 0); }

void TBitFld::Invert() noexcept { InvertBytes(FBitArray.data(), UsedBytes()); }

int TBitFld::CountTrueBits() const noexcept {
  const std::size_t last = UsedBytes() - 1;
  // Bits of the last used byte above index FSize are not data.
  const unsigned valid_mask = (1u << (FSize % 8 + 1)) - 1;
  return CountBits(FBitArray.data(), last) + std::popcount(FBitArray[last] & valid_mask);
}

int TBitFld::FirstTrueBit() const noexcept {
  const std::size_t last = UsedBytes() - 1;
  std::size_t byte = FirstNonZeroByte(FBitArray.data(), last);
  unsigned bits = byte < last ? FBitArray[byte] : FBitArray[last] & ((1u << (FSize % 8 + 1)) - 1);
  if (bits == 0) return -1;
  return static_cast<int>(byte * 8) + std::countr_zero(bits);
}

void TBitFld::MakeListOfBits(Zyn_zynbase::TIntArray& BitList, bool State) const {
  BitList.resize(static_cast<std::size_t>(FSize) + 1);
  std::size_t stored = 0;
  const std::size_t used = UsedBytes();
  for (std::size_t k = 0; k < used; ++k) {
    unsigned bits = State ? FBitArray[k] : static_cast<std::uint8_t>(~FBitArray[k]);
    while (bits != 0) {
      const int ix = static_cast<int>(k * 8) + std::countr_zero(bits);
      if (ix > FSize) break;
      BitList[stored++] = ix;
      bits &= bits - 1;
    }
  }
  BitList.resize(stored);
}

void TBitFld::RandomFill(double Percent) {
  if (!(Percent > 0)) Percent = 0;  // also NaN
  if (Percent > 100) Percent = 100;
  SetRandBitsIntern(std::min(FSize, RoundToInt(Percent * 0.01 * FSize)));
}

void TBitFld::RandomFill(int NBits) { SetRandBitsIntern(std::clamp(NBits, 0, FSize)); }

// Draws from the side with less to do: sets n bits in a false field, or
// clears Size + 1 - n bits in a true one. Index 0 and Size come up about half
// as often as the others, as the rounding of Size * Random() gives them.
void TBitFld::SetRandBitsIntern(int n) {
  const auto draw = [this] { return RoundToInt(FSize * zyn::platform::Random()); };
  if (n <= FSize / 2) {
    std::fill(FBitArray.begin(), FBitArray.end(), 0);
    for (int set = 0; set < n;) {
      const int ix = draw();
      if (!GetBit(ix)) {
        SetBit(ix, true);
        ++set;
      }
    }
  } else {
    std::fill(FBitArray.begin(), FBitArray.end(), 0xFF);
    const int to_clear = FSize + 1 - n;
    for (int cleared = 0; cleared < to_clear;) {
      const int ix = draw();
      if (GetBit(ix)) {
        SetBit(ix, false);
        ++cleared;
      }
    }
  }
}

void TBitFld::CombineWith(const TBitFld* SecondBArray, TLogicOp Operation) noexcept {
  if (SecondBArray == nullptr || SecondBArray->FSize != FSize) return;
  CombineBytes(FBitArray.data(), SecondBArray->FBitArray.data(), UsedBytes(), Operation);
}

void TBitFld::Clone(const TBitFld* Source) {
  if (Source == nullptr || Source == this) return;
  Zyn_zynbase::TBytes bits = Source->FBitArray;
  FBitArray.swap(bits);
  FSize = Source->FSize;
}

void TBitFld::Assign(const TPersistent& Source) {
  if (const auto* source = dynamic_cast<const TBitFld*>(&Source)) {
    Clone(source);
  } else {
    TComponent::Assign(Source);
  }
}

void TBitFld::AssignTo(TPersistent& Dest) const {
  if (zyn::platform::InheritsFrom<TBitFld>(Dest)) {
    Dest.Assign(*this);
  } else {
    TComponent::AssignTo(Dest);
  }
}

// ---------------------------------------------------------------------------
// TByteMatrix

TByteMatrix::TByteMatrix(TComponent* AOwner) : TComponent(AOwner) {
  GuardAllocation<EZYNDStructError>([&] { FByteMat.assign(1, 0); },
                                    ComponentMessage(*this, kNoHeap));
}

bool TByteMatrix::Resize(int NrColumns, int NrRows) {
  if (NrColumns < 1 || NrRows < 1) return false;
  if (NrColumns == FNrCols && NrRows == FNrRows) return false;
  const auto new_cols = static_cast<std::size_t>(NrColumns);
  const auto new_rows = static_cast<std::size_t>(NrRows);
  Zyn_zynbase::TBytes cells;
  GuardAllocation<EZYNDStructError>(
      [&] {
        if (new_rows > std::numeric_limits<std::size_t>::max() / new_cols) {
          throw std::length_error("byte matrix too large");
        }
        cells.assign(new_cols * new_rows, 0);
      },
      ComponentMessage(*this, kNoHeap));
  const std::size_t keep_cols = std::min(new_cols, static_cast<std::size_t>(FNrCols));
  const std::size_t keep_rows = std::min(new_rows, static_cast<std::size_t>(FNrRows));
  for (std::size_t c = 0; c < keep_cols; ++c) {
    std::memcpy(cells.data() + c * new_rows, FByteMat.data() + c * FNrRows, keep_rows);
  }
  FByteMat.swap(cells);
  FNrCols = NrColumns;
  FNrRows = NrRows;
  Changed();
  return true;
}

void TByteMatrix::SetNrOfColumns(int Value) { Resize(std::max(Value, 1), FNrRows); }

void TByteMatrix::SetNrOfRows(int Value) { Resize(FNrCols, std::max(Value, 1)); }

std::uint8_t TByteMatrix::GetByte(int ix, int iy) const noexcept {
  return ValidCell(ix, iy) ? FByteMat[CellIndex(ix, iy)] : 0;
}

void TByteMatrix::SetByte(int ix, int iy, std::uint8_t value) {
  if (!ValidCell(ix, iy)) return;
  FByteMat[CellIndex(ix, iy)] = value;
  Changed();
}

bool TByteMatrix::GetBit(int ix, int iy, int ixBit) const noexcept {
  if (!ValidCell(ix, iy) || ixBit < 0 || ixBit > 7) return false;
  return (FByteMat[CellIndex(ix, iy)] & BitMask(ixBit)) != 0;
}

void TByteMatrix::SetBit(int ix, int iy, int ixBit, bool value) {
  if (!ValidCell(ix, iy) || ixBit < 0 || ixBit > 7) return;
  std::uint8_t& cell = FByteMat[CellIndex(ix, iy)];
  if (value) {
    cell |= BitMask(ixBit);
  } else {
    cell &= static_cast<std::uint8_t>(~BitMask(ixBit));
  }
  Changed();
}

void TByteMatrix::ToggleBit(int col, int row, int ixBit) {
  if (!ValidCell(col, row) || ixBit < 0 || ixBit > 7) return;
  FByteMat[CellIndex(col, row)] ^= BitMask(ixBit);
  Changed();
}

void TByteMatrix::Fill(std::uint8_t value) {
  std::fill(FByteMat.begin(), FByteMat.end(), value);
  Changed();
}

void TByteMatrix::MirrorColumns() {
  const auto rows = static_cast<std::size_t>(FNrRows);
  for (int left = 1, right = FNrCols; left < right; ++left, --right) {
    SwapBytes(FByteMat.data() + CellIndex(left, 1), FByteMat.data() + CellIndex(right, 1), rows);
  }
  Changed();
}

void TByteMatrix::MirrorRows() {
  const auto rows = static_cast<std::size_t>(FNrRows);
  for (int col = 1; col <= FNrCols; ++col) ReverseBytes(FByteMat.data() + CellIndex(col, 1), rows);
  Changed();
}

void TByteMatrix::CombineWith(const TByteMatrix* SecondByteMatrix, TLogicOp Operation) noexcept {
  if (SecondByteMatrix == nullptr || SecondByteMatrix->FNrCols != FNrCols ||
      SecondByteMatrix->FNrRows != FNrRows) {
    return;
  }
  CombineBytes(FByteMat.data(), SecondByteMatrix->FByteMat.data(), FByteMat.size(), Operation);
}

void TByteMatrix::Changed() {
  if (FOnChange) FOnChange(this);
}

void TByteMatrix::Assign(const TPersistent& Source) {
  const auto* source = dynamic_cast<const TByteMatrix*>(&Source);
  if (source == nullptr) {
    TComponent::Assign(Source);
    return;
  }
  if (source == this) return;
  Zyn_zynbase::TBytes cells = source->FByteMat;
  TNotifyEvent on_change = source->FOnChange;
  FByteMat.swap(cells);
  FOnChange.swap(on_change);
  FNrCols = source->FNrCols;
  FNrRows = source->FNrRows;
}

void TByteMatrix::AssignTo(TPersistent& Dest) const {
  if (zyn::platform::InheritsFrom<TByteMatrix>(Dest)) {
    Dest.Assign(*this);
  } else {
    TComponent::AssignTo(Dest);
  }
}

}  // namespace Zyn_dstruct
