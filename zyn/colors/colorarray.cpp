#include "zyn/colors/colorarray.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <exception>
#include <limits>
#include <new>

#include "zyn/base/scanners.h"
#include "zyn/base/zynbase.h"
#include "zyn/colors/colortables.h"
#include "zyn/platform/memory.h"

namespace Zyn_zyncolors {

namespace {

using zyn::platform::Textfile;

constexpr int kDefaultSize = 1000;

// The squared channel distance behind RGBColorDistance; 195075 is its
// value for black against white, where the distance is 1.0.
constexpr int kFarthest = 3 * 255 * 255;

int SquaredDistance(TColor a, int red, int green, int blue) {
  const int dr = RedOf(a) - red;
  const int dg = GreenOf(a) - green;
  const int db = BlueOf(a) - blue;
  return dr * dr + dg * dg + db * db;
}

// A product formed as a 32-bit integer, wrapping round as the scale's
// arithmetic always has.
std::int32_t Product32(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

// Rounded half to even, limited to the range of int.
int Round(double x) {
  return static_cast<int>(std::clamp(std::nearbyint(x), double{std::numeric_limits<int>::min()},
                                     double{std::numeric_limits<int>::max()}));
}

}  // namespace

TColorArray::TColorArray(TComponent* AOwner) : TComponent(AOwner) {
  Zyn_zynbase::GuardAllocation<EZYNColArrayError>(
      [&] { FColArray.assign(kDefaultSize, 0); },
      Zyn_zynbase::ComponentMessage(*this, u"not enough memory on heap"));
  FNColors = kDefaultSize;
  FillByInterpolation(0, ColorArray_Rainbow);
}

void TColorArray::SetSize(int Value) {
  if (Value >= 1 && Value != FNColors) Resize(Value);
}

bool TColorArray::Resize(int NewSize) {
  if (NewSize == FNColors) return true;
  if (NewSize <= 0) return false;
  Zyn_zynbase::GuardAllocation<EZYNColArrayError>(
      [&] {
        const auto count = static_cast<std::size_t>(NewSize);
        if (count > FColArray.size()) {
          if (!zyn::platform::AllocationAllowed(std::uint64_t{count} * sizeof(TColor))) {
            throw std::bad_alloc();
          }
          // Exactly the size asked for, not the growth vector would choose.
          FColArray.reserve(count);
        }
        FColArray.resize(count, 0);
      },
      Zyn_zynbase::ComponentMessage(*this, u"not enough memory"));
  FNColors = NewSize;
  Changed();
  return true;
}

void TColorArray::Fill(TColor Color) {
  std::fill(FColArray.begin(), FColArray.end(), Color);
  Changed();
}

void TColorArray::FillByInterpolation(int DiscreteLevels, std::span<const TColor> Colors) {
  if (Colors.empty()) return;
  const int n = FNColors;
  const auto high = static_cast<std::int32_t>(
      std::min<std::size_t>(Colors.size() - 1, std::numeric_limits<std::int32_t>::max()));
  const double dn = n;
  // Neighbouring indices share work: the quotient of H * x is the next
  // index's quotient of H * (x - 1), and a discrete scale repeats whole
  // colours. The values are those of computing each index afresh.
  int prev_x = -2;
  double prev_quotient = 0;
  TColor prev_color = 0;
  for (int i = 1; i <= n; ++i) {
    int x = i;
    if (DiscreteLevels > 0) {
      const int steps = Round(i / dn * DiscreteLevels);
      x = Round(dn / DiscreteLevels * steps);
    }
    if (x != prev_x) {
      const double lower = x - 1 == prev_x ? prev_quotient : Product32(high, x - 1) / dn;
      const double quotient = Product32(high, x) / dn;
      // With fewer colours than support colours, or products that wrapped,
      // lo can leave the list: it then counts as the nearest end.
      const int lo = std::clamp(static_cast<int>(lower), 0, std::max(high - 1, 0));
      const std::size_t upper =
          std::min<std::size_t>(static_cast<std::size_t>(lo) + 1, static_cast<std::size_t>(high));
      prev_color =
          InterpolateColor(Colors[static_cast<std::size_t>(lo)], Colors[upper], quotient - lo);
      prev_x = x;
      prev_quotient = quotient;
    }
    FColArray[static_cast<std::size_t>(i - 1)] = prev_color;
  }
  Changed();
}

int TColorArray::ColorToIndex(TColor cl, double& distance) const {
  // Squared distances order the entries as RGBColorDistance does, which grows
  // strictly with them. Their least is found first, then the first entry
  // that has it; one square root in all. Blocks of a fixed length let the
  // compiler take several entries at a time without a remainder loop of its
  // own.
  const int red = RedOf(cl), green = GreenOf(cl), blue = BlueOf(cl);
  constexpr std::size_t kBlock = 16;
  const std::size_t n = FColArray.size();
  const TColor* colors = FColArray.data();
  int least = kFarthest;
  std::size_t k = 0;
  for (; k + kBlock <= n; k += kBlock) {
    std::array<int, kBlock> squared;
    for (std::size_t j = 0; j < kBlock; ++j) {
      squared[j] = SquaredDistance(colors[k + j], red, green, blue);
    }
    for (const int s : squared) least = s < least ? s : least;
  }
  for (; k < n; ++k) least = std::min(least, SquaredDistance(colors[k], red, green, blue));

  int best = 1;
  if (least < kFarthest) {
    while (SquaredDistance(colors[best - 1], red, green, blue) != least) ++best;
  }
  distance = std::sqrt(least / 195075.0);
  return best;
}

void TColorArray::CopyFrom(const TColorArray* ColArraySource, int SourceElemLo, int SourceElemHi,
                           int DestElem) {
  if (ColArraySource == nullptr) return;
  const int source_size = ColArraySource->FNColors;
  int lo = std::clamp(SourceElemLo, 1, source_size);
  int hi = std::clamp(SourceElemHi, 1, source_size);
  if (lo > hi) std::swap(lo, hi);
  // The part of lo..hi whose places DestElem + (k - lo) lie in 1..FNColors,
  // in 64 bits: DestElem may be anything.
  const std::int64_t shift = std::int64_t{DestElem} - lo;
  const std::int64_t from = std::max<std::int64_t>(lo, 1 - shift);
  const std::int64_t to = std::min<std::int64_t>(hi, FNColors - shift);
  if (from <= to) {
    const auto first = ColArraySource->FColArray.begin() + (from - 1);
    const auto last = ColArraySource->FColArray.begin() + to;
    const auto dest = FColArray.begin() + (from + shift - 1);
    // Overlapping ranges of this same array are copied as they stood.
    if (dest <= first) {
      std::copy(first, last, dest);
    } else {
      std::copy_backward(first, last, dest + (to - from + 1));
    }
  }
  Changed();
}

bool TColorArray::IsEqual(const TColorArray* OtherColorArray) const {
  return OtherColorArray != nullptr && OtherColorArray->FNColors == FNColors &&
         OtherColorArray->FColArray == FColArray;
}

void TColorArray::MirrorColors() {
  std::reverse(FColArray.begin(), FColArray.end());
  Changed();
}

void TColorArray::InvertColors() {
  for (TColor& c : FColArray) c = InvertColor(c);
  Changed();
}

TColor TColorArray::GetColorElem(int ix) const noexcept {
  const int k = std::clamp(ix, 1, FNColors);
  return FColArray[static_cast<std::size_t>(k - 1)];
}

void TColorArray::SetColorElem(int ix, TColor Value) {
  if (ix < 1 || ix > FNColors) return;
  FColArray[static_cast<std::size_t>(ix - 1)] = Value;
  Changed();
}

bool TColorArray::WriteToOpenTextFile(Textfile& TextFile, int FirstElem, int LastElem) const {
  if (LastElem < FirstElem) std::swap(FirstElem, LastElem);
  FirstElem = std::max(FirstElem, 1);
  LastElem = std::min(LastElem, FNColors);
  try {
    TextFile.WriteInteger(FirstElem);
    TextFile.WriteChar(u' ');
    TextFile.WriteInteger(LastElem);
    TextFile.WriteLn();
    for (int i = FirstElem; i <= LastElem; ++i) TextFile.WriteLn(ColorToHexStr(GetColorElem(i)));
    TextFile.Flush();
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

bool TColorArray::ReadFromOpenTextFile(Textfile& TextFile, bool AdjustSize) {
  int first = 0;
  int last = 0;
  try {
    first = TextFile.ReadInteger();
    last = TextFile.ReadInteger();
    TextFile.ReadLn();
    // A size of 0 or less is refused by Resize without a failure; the block
    // is then read into the present array.
    if (AdjustSize) Resize(last);
  } catch (const std::exception&) {
    return false;
  }
  if (last > FNColors) {
    Changed();
    return false;
  }
  for (std::int64_t i = first; i <= last; ++i) {
    try {
      if (TextFile.Eof()) {
        // Every remaining line reads as empty, that is as colour 0; only
        // indices inside the array take it, so the claimed range need not be
        // walked.
        const int from = static_cast<int>(std::max<std::int64_t>(i, 1));
        if (FOnChange) {
          for (int k = from; k <= last; ++k) SetColorElem(k, 0);
        } else if (const int to = std::min(last, FNColors); from <= to) {
          std::fill(FColArray.begin() + (from - 1), FColArray.begin() + to, 0);
        }
        break;
      }
      const std::u16string line = TextFile.ReadLn();
      int pos = 1;
      const auto color = static_cast<TColor>(zyn::internal::ScanHex(line, pos));
      if (i >= 1) SetColorElem(static_cast<int>(i), color);
    } catch (const std::exception&) {
      // The index keeps its colour; reading goes on with the next line.
    }
  }
  Changed();
  return true;
}

bool TColorArray::LoadFromFile(std::u16string_view FileName, bool AdjustSize) {
  zyn::platform::IOResult();
  Textfile file;
  try {
    file.Assign(FileName);
    file.Reset();
  } catch (const std::exception&) {
    return false;
  }
  const bool result = ReadFromOpenTextFile(file, AdjustSize);
  try {
    file.Close();
  } catch (const std::exception&) {
  }
  return result;
}

bool TColorArray::StoreOnFile(int FirstElem, int LastElem, std::u16string_view FileName) const {
  zyn::platform::IOResult();
  Textfile file;
  try {
    file.Assign(FileName);
    file.Rewrite();
  } catch (const std::exception&) {
    return false;
  }
  const bool result = WriteToOpenTextFile(file, FirstElem, LastElem);
  try {
    file.Close();
  } catch (const std::exception&) {
  }
  return result;
}

void TColorArray::Changed() {
  if (FOnChange) FOnChange(this);
}

void TColorArray::Assign(const TPersistent& Source) {
  const auto* source = dynamic_cast<const TColorArray*>(&Source);
  if (source == nullptr) {
    TComponent::Assign(Source);
    return;
  }
  if (source == this) return;
  std::vector<TColor> colors = source->FColArray;
  FColArray.swap(colors);
  FNColors = source->FNColors;
}

void TColorArray::AssignTo(TPersistent& Dest) const {
  if (zyn::platform::InheritsFrom<TColorArray>(Dest)) {
    Dest.Assign(*this);
  } else {
    TComponent::AssignTo(Dest);
  }
}

}  // namespace Zyn_zyncolors
