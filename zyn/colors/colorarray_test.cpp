#include "zyn/colors/colorarray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/colors/colortables.h"
#include "zyn/platform/memory.h"
#include "zyn/platform/text.h"

namespace Zyn_zyncolors {
namespace {

using zyn::platform::FromUTF8;
using zyn::platform::Textfile;
using zyn::testing::ReadFileBytes;
using zyn::testing::TempDir;
using zyn::testing::WriteFileBytes;

std::vector<TColor> Colors(const TColorArray& a) {
  std::vector<TColor> v;
  for (int i = 1; i <= a.Size(); ++i) v.push_back(a.GetColorElem(i));
  return v;
}

// Makes `a` an array of `size` colours 1, 2, 3, ...
void Numbered(TColorArray& a, int size) {
  a.SetSize(size);
  for (int i = 1; i <= size; ++i) a.SetColorElem(i, static_cast<TColor>(i));
}

// An array of colours 1, 2, 3, ... that counts its OnChange calls from then on.
struct Watched : TColorArray {
  explicit Watched(int size) {
    Numbered(*this, size);
    SetOnChange([this](zyn::platform::TObject*) { ++events; });
  }
  int events = 0;
};

std::u16string Path(const TempDir& dir, const char* name) {
  return FromUTF8((dir / name).string());
}

TEST(TColorArrayTest, NewArrayIsTheRainbowScale) {
  TColorArray a;
  EXPECT_EQ(a.Size(), 1000);
  EXPECT_EQ(a.ColorElem(1000), ColorArray_Rainbow.back());
  // Index 1 lies H / N along, not at the first support colour.
  EXPECT_EQ(a.ColorElem(1), InterpolateColor(ColorArray_Rainbow[0], ColorArray_Rainbow[1], 0.01));
  EXPECT_EQ(a.GetColorElem(INT_MIN), a.GetColorElem(1));
  EXPECT_EQ(a.GetColorElem(INT_MAX), a.GetColorElem(1000));
}

TEST(TColorArrayTest, ResizeAndItsEvents) {
  Watched a(6);
  a.SetName(u"cols");
  EXPECT_FALSE(a.Resize(0));
  EXPECT_TRUE(a.Resize(6));
  a.SetSize(-4);
  EXPECT_EQ(std::pair(a.Size(), a.events), std::pair(6, 0));

  EXPECT_TRUE(a.Resize(3));
  EXPECT_TRUE(a.Resize(5));
  EXPECT_EQ(Colors(a), (std::vector<TColor>{1, 2, 3, 0, 0}));
  a.SetSize(1);
  EXPECT_EQ(a.events, 3);

  // A size the memory may not hold is refused by the unit's exception.
  zyn::platform::SetAllocationCeiling(1 << 20);
  try {
    a.Resize(2000000000);
    ADD_FAILURE() << "no exception";
  } catch (const EZYNColArrayError& e) {
    EXPECT_EQ(e.Message(), u"Component \"cols\": not enough memory");
  }
  zyn::platform::SetAllocationCeiling(0);
  EXPECT_EQ(std::pair(a.Size(), a.events), std::pair(1, 3));
}

TEST(TColorArrayTest, ElementsFillMirrorInvert) {
  Watched a(4);
  for (int outside : {0, 5}) a.SetColorElem(outside, 9);
  EXPECT_EQ(a.events, 0);
  a.SetColorElem(4, 0xFF000004);
  a.MirrorColors();
  EXPECT_EQ(Colors(a), (std::vector<TColor>{0xFF000004, 3, 2, 1}));
  a.InvertColors();
  EXPECT_EQ(Colors(a), (std::vector<TColor>{0xFFFFFB, 0xFFFFFC, 0xFFFFFD, 0xFFFFFE}));
  a.Fill(7);
  EXPECT_EQ(Colors(a), (std::vector<TColor>(4, 7)));
  EXPECT_EQ(a.events, 4);
}

TEST(TColorArrayTest, FillByInterpolation) {
  const std::vector<TColor> black_red = {0x000000, 0x0000FF};
  // Two levels: t = round(i / 10 * 2), x = round(5 * t).
  using F = std::tuple<int, int, std::vector<TColor>>;  // size, levels, colours
  for (const auto& [size, levels, want] :
       {F{4, -3, {63, 127, 191, 255}}, F{10, 2, {0, 0, 127, 127, 127, 127, 127, 255, 255, 255}},
        F{1, 7, {255}}}) {
    SCOPED_TRACE(testing::Message() << size << " " << levels);
    Watched a(size);
    a.FillByInterpolation(levels, black_red);
    EXPECT_EQ(Colors(a), want);
    EXPECT_EQ(a.events, 1);
  }

  TColorArray small;
  for (int k = 0; k < 30; ++k) {  // never outside the list
    small.SetSize(std::array{1, 2, 9, 10, 11}[k % 5]);
    small.FillByInterpolation(std::array{0, 1, 2, 5, 100, INT_MAX}[k / 5], ColorArray_Contrast);
  }

  // Index by index, each computed afresh as the scale's rule reads; with
  // fewer colours than support colours the first indices' lower support
  // colour lies before the list and counts as its first entry.
  for (int levels : {0, 1, 2, 3, 7, 50}) {
    for (int size : {2, 11, 12, 999}) {
      SCOPED_TRACE(testing::Message() << size << " " << levels);
      TColorArray a;
      a.SetSize(size);
      a.FillByInterpolation(levels, ColorArray_Geo2);
      for (int i = 1; i <= size; ++i) {
        const double t = std::nearbyint(i / double(size) * levels);
        const int x = levels > 0 ? static_cast<int>(std::nearbyint(size / double(levels) * t)) : i;
        const std::size_t lo = static_cast<std::size_t>(std::max(0, 10 * (x - 1) / size));
        ASSERT_EQ(a.ColorElem(i), InterpolateColor(ColorArray_Geo2[lo], ColorArray_Geo2[lo + 1],
                                                   10 * x / double(size) - double(lo)))
            << i;
      }
    }
  }

  Watched one(5);
  const TColor gold[] = {0x00D7FF};
  one.FillByInterpolation(3, gold);
  one.FillByInterpolation(0, {});  // no colours: nothing changes
  EXPECT_EQ(Colors(one), std::vector<TColor>(5, 0x00D7FF));
  EXPECT_EQ(one.events, 1);
}

// The search against the plain reading of its rule: the first entry whose
// RGBColorDistance is below every earlier one and below 1.0.
TEST(TColorArrayTest, ColorToIndexAgreesWithDistanceSearch) {
  const auto find = [](const TColorArray& a, TColor c) {
    double distance = -1;
    const int index = a.ColorToIndex(c, distance);
    return std::pair{index, distance};
  };
  TColorArray a;
  for (TColor probe = 0; probe < 0x1000000; probe += 0x010305 * 7) {
    std::pair want{1, 1.0};
    for (int i = 1; i <= a.Size(); ++i) {
      const double d = RGBColorDistance(probe, a.GetColorElem(i));
      if (d < want.second) want = {i, d};
    }
    ASSERT_EQ(find(a, probe), want) << probe;
  }

  // Entries past the last whole block of 16, and a tie across blocks.
  Watched small(20);
  small.SetColorElem(19, 0x0000F0);
  small.SetColorElem(3, 0x0000F0);
  EXPECT_EQ(find(small, 0x0000F1), std::pair(3, RGBColorDistance(0x0000F1, 0x0000F0)));
  small.SetColorElem(3, 3);
  EXPECT_EQ(find(small, 0x0000F1).first, 19);

  TColorArray white;
  white.Fill(0xFFFFFF);
  EXPECT_EQ(find(white, 0x000000), std::pair(1, 1.0));
  white.SetColorElem(7, 0x123456);
  white.SetColorElem(9, 0xFF123456);
  EXPECT_EQ(find(white, 0x123456), std::pair(7, 0.0));
}

TEST(TColorArrayTest, CopyFromClampsExchangesAndSkips) {
  // Ends exchanged, clamped to 1 and to the source's 8; places below 1 skipped.
  using C = std::tuple<int, int, int, std::vector<TColor>>;  // lo, hi, dest, colours
  TColorArray source;
  source.SetSize(8);
  for (int i = 1; i <= 8; ++i) source.SetColorElem(i, 10 + i);
  for (const auto& [lo, hi, dest, want] :
       {C{2, 4, 1, {12, 13, 14, 4, 5, 6}}, C{4, 2, 1, {12, 13, 14, 4, 5, 6}},
        C{-5, 2, 5, {1, 2, 3, 4, 11, 12}}, C{7, 100, 1, {17, 18, 3, 4, 5, 6}},
        C{1, 8, -2, {14, 15, 16, 17, 18, 6}}, C{1, 8, INT_MIN, {1, 2, 3, 4, 5, 6}}}) {
    SCOPED_TRACE(testing::Message() << lo << " " << hi << " " << dest);
    Watched a(6);
    a.CopyFrom(&source, lo, hi, dest);
    EXPECT_EQ(Colors(a), want);
    EXPECT_EQ(a.events, 1);
  }

  Watched a(10);
  a.CopyFrom(nullptr, 1, 2, 3);
  EXPECT_EQ(a.events, 0);
  a.CopyFrom(&a, 1, 5, 3);  // overlapping, forward
  EXPECT_EQ(Colors(a), (std::vector<TColor>{1, 2, 1, 2, 3, 4, 5, 8, 9, 10}));
  Numbered(a, 10);
  a.CopyFrom(&a, 3, 7, 1);  // overlapping, backward
  EXPECT_EQ(Colors(a), (std::vector<TColor>{3, 4, 5, 6, 7, 6, 7, 8, 9, 10}));
}

TEST(TColorArrayTest, IsEqualAndAssign) {
  TColorArray fresh, b;
  EXPECT_TRUE(fresh.IsEqual(&b));
  EXPECT_FALSE(fresh.IsEqual(nullptr));
  b.SetColorElem(1000, 0xFF000040);
  EXPECT_FALSE(fresh.IsEqual(&b));  // whole 32-bit values

  Watched a(3);
  int b_events = 0;
  b.SetOnChange([&](zyn::platform::TObject*) { ++b_events; });
  a.Assign(b);
  EXPECT_TRUE(a.IsEqual(&b));
  EXPECT_EQ(a.events, 0);
  a.Changed();
  EXPECT_EQ(a.events, 1);  // a kept its own handler
  EXPECT_EQ(b_events, 0);

  zyn::platform::TComponent other;
  EXPECT_THROW(a.Assign(other), zyn::platform::EConvertError);
  EXPECT_TRUE(a.IsEqual(&b));
}

TEST(ColourBlockTest, WritesHeadAndHexLines) {
  const TempDir dir;
  TColorArray a;
  Numbered(a, 6);
  a.SetColorElem(4, 0xFF00FF00);
  using W = std::tuple<int, int, std::string>;  // first, last, file
  for (const auto& [first, last, want] : {W{5, 3, "3 5\r\n00000003\r\nFF00FF00\r\n00000005\r\n"},
                                          W{5, 100, "5 6\r\n00000005\r\n00000006\r\n"},
                                          W{-5, 1, "1 1\r\n00000001\r\n"}, W{9, 12, "9 6\r\n"}}) {
    EXPECT_TRUE(a.StoreOnFile(first, last, Path(dir, "b.txt"))) << want;
    EXPECT_EQ(ReadFileBytes(dir / "b.txt"), want);
  }
  EXPECT_FALSE(a.StoreOnFile(1, 6, Path(dir, "no/such/dir.txt")));
  // A write that fails (the device is full) shows in the result.
  EXPECT_FALSE(a.StoreOnFile(1, 6, u"/dev/full"));
}

TEST(ColourBlockTest, ReadsBlocks) {
  const TempDir dir;
  // The file, adjust, result, the array of colours 1..4 afterwards, events.
  using Case = std::tuple<const char*, bool, bool, std::vector<TColor>, int>;
  const Case cases[] = {
      {"1 2\r\n0000FF00\r\n00FF0000\r\n", false, true, {0xFF00, 0xFF0000, 3, 4}, 3},
      {"1 2\n0000FF00\n00FF0000\n", true, true, {0xFF00, 0xFF0000}, 4},
      {"2 3\n$0000ff00\n  ff  tail\n", false, true, {1, 0xFF00, 0xFF, 4}, 3},
      {"1 1\n  $ff\n", false, true, {0, 2, 3, 4}, 2},  // "$" only in the first place
      {"-1 2 rest of the head\nAA\nBB\n11\n22\n", false, true, {0x11, 0x22, 3, 4}, 3},
      {"3 4\n33\n44\n", true, true, {1, 2, 0x33, 0x44}, 3},  // size is the last index
      {"1 4\n11\n", false, true, {0x11, 0, 0, 0}, 5},        // too short: 0
      {"1 5\n11\n", false, false, {1, 2, 3, 4}, 1},          // beyond the size
      {"x 2\n11\n", false, false, {1, 2, 3, 4}, 0},          // bad head line
      {"1 99999999999\n", true, false, {1, 2, 3, 4}, 0},
      {"", true, true, {1, 2, 3, 4}, 1},                 // "0 0", Resize(0) refused
      {"1 2000000000\n", true, false, {1, 2, 3, 4}, 0},  // beyond the ceiling
      {"5 3\n", false, true, {1, 2, 3, 4}, 1},           // empty range
  };
  zyn::platform::SetAllocationCeiling(64 << 20);
  for (const auto& [text, adjust, ok, want, want_events] : cases) {
    SCOPED_TRACE(text);
    WriteFileBytes(dir / "b.txt", text);
    Watched a(4);
    EXPECT_EQ(a.LoadFromFile(Path(dir, "b.txt"), adjust), ok);
    EXPECT_EQ(Colors(a), want);
    EXPECT_EQ(a.events, want_events);
  }
  zyn::platform::SetAllocationCeiling(0);

  TColorArray a;
  EXPECT_FALSE(a.LoadFromFile(Path(dir, "missing.txt"), true));
}

TEST(ColourBlockTest, RoundTripsAndSharesAnOpenFile) {
  const TempDir dir;
  TColorArray a, b;
  a.FillByInterpolation(0, ColorArray_Geo1);
  a.SetColorElem(10, 0x1FFFFFFF);
  ASSERT_TRUE(a.StoreOnFile(1, 1000, Path(dir, "all.txt")));
  b.SetSize(3);
  ASSERT_TRUE(b.LoadFromFile(Path(dir, "all.txt"), true));
  EXPECT_TRUE(a.IsEqual(&b));

  // Two blocks with other lines around them, in one file held open.
  Textfile f;
  f.Assign(Path(dir, "two.txt"));
  f.Rewrite();
  f.WriteLn(u"colours follow");
  ASSERT_TRUE(a.WriteToOpenTextFile(f, 1, 3) && a.WriteToOpenTextFile(f, 998, 1000));
  f.WriteLn(u"end");
  f.Close();

  f.Reset();
  EXPECT_EQ(f.ReadLn(), u"colours follow");
  TColorArray c;
  c.Fill(0);
  EXPECT_TRUE(c.ReadFromOpenTextFile(f, false) && c.ReadFromOpenTextFile(f, false));
  EXPECT_EQ(f.ReadLn(), u"end");
  for (int i : {1, 2, 3, 998, 999, 1000}) EXPECT_EQ(c.ColorElem(i), a.ColorElem(i)) << i;
  EXPECT_EQ(c.ColorElem(4), 0u);
  f.Close();
}

}  // namespace
}  // namespace Zyn_zyncolors
