#include "zyn/colors/colormodels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <tuple>

#include "testing/zyn_testing.h"
#include "zyn/platform/random.h"

namespace Zyn_zyncolors {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

TEST(MixTest, ClampsAndTruncates) {
  // 127.5 is truncated both ways; the top bytes are dropped.
  EXPECT_EQ(InterpolateColor(0x000000, 0xFFFFFF, 0.5), 0x7F7F7Fu);
  EXPECT_EQ(InterpolateColor(0xFFFFFF, 0x000000, 0.5), 0x7F7F7Fu);
  for (auto [f, want] : {std::pair{-3.0, 0x102030u}, {7.0, 0x405060u}, {kNaN, 0x102030u}}) {
    EXPECT_EQ(InterpolateColor(0x102030, 0x405060, f), want) << f;
  }
  EXPECT_EQ(InterpolateColor(0xAB0000FF, 0xCD000000, 0), 0x0000FFu);
  EXPECT_EQ(MeanColor(0x000000, 0xFFFFFF), 0x7F7F7Fu);
  const TColor a = 0x000000, b = 0x0000FF, c = 0xFFFFFF;
  for (auto [f, want] : {std::pair{0.5, b}, {1.5, c}, {0.25, 0x00007Fu}, {0.75, 0x7F7FFFu}}) {
    EXPECT_EQ(Interpolate3Colors(a, b, c, f), want) << f;
  }
  EXPECT_EQ(ReverseRGBColor(0xFF123456), 0x563412u);
  EXPECT_EQ(InvertColor(0xFF00FF10), 0xFF00EFu);
}

TEST(HexTest, PrintfDigitsAndLeadingDigitsOnly) {
  for (TColor c : {0x0u, 0xFF000005u, 0xDEADBEEFu, 0xFFFFFFFFu}) {
    char want[16];
    std::snprintf(want, sizeof want, "%08X", c);
    EXPECT_EQ(zyn::testing::Utf8(ColorToHexStr(c)), want);
  }
  using Hex = std::pair<std::u16string_view, TColor>;
  for (auto [in, want] : {Hex{u"$ff", 255}, Hex{u"  FF  ", 255}, Hex{u"12G4", 0x12}, Hex{u"   ", 0},
                          Hex{u"$$1", 0}, Hex{u" $1F ", 0x1F}, Hex{u"\tFF", 0}, Hex{u"0x10", 0},
                          Hex{u"123456789", 0x23456789}, Hex{u"fFfFfFfF", 0xFFFFFFFF}}) {
    EXPECT_EQ(HexStrToColor(in), want) << zyn::testing::Utf8(in);
  }
}

TEST(HSITest, EdgeValues) {
  struct ToRGB {
    double h, s, i;
    std::array<int, 3> rgb;
  };
  // -1, 0, 0.5: 127.5 to even.
  for (const ToRGB& c :
       {ToRGB{360, 1, 1, {255, 0, 0}}, ToRGB{-10, 1, 1, {255, 0, 0}},
        ToRGB{kNaN, 1, 1, {255, 0, 0}}, ToRGB{-1, 0, 0.5, {128, 128, 128}},
        ToRGB{60, 1, 2, {255, 255, 0}}, ToRGB{300, 5, 1, {255, 0, 255}},
        ToRGB{180, 0.5, 1, {128, 255, 255}}, ToRGB{90, kNaN, 1, {255, 255, 255}}}) {
    std::array<int, 3> rgb{-1, -1, -1};
    HSItoRGB(c.h, c.s, c.i, rgb[0], rgb[1], rgb[2]);
    EXPECT_EQ(rgb, c.rgb) << c.h << " " << c.s << " " << c.i;
  }
  using A = std::array<int, 5>;
  double h, s, i;
  for (auto [r, g, b, want_h, want_s] :
       {A{0, 0, 0, 0, 0}, A{128, 128, 128, -1, 0}, A{0, 0, 255, 240, 1}, A{-5, -5, -5, -1, 0}}) {
    RGBtoHSI(r, g, b, h, s, i);
    EXPECT_TRUE(h == want_h && s == want_s && i == std::max({r, g, b}) / 255.0) << r << " " << b;
  }
  RGBtoHSI(255, 0, 1, h, s, i);
  EXPECT_TRUE(h > 359 && h < 360) << h;
  RGBtoHSI(kIntMax, kIntMin, 0, h, s, i);  // numbers, not traps
  EXPECT_TRUE(std::isfinite(h) && std::isfinite(s) && std::isfinite(i));
}

// Every colour survives RGB -> HSI -> RGB exactly, and so HSI -> RGB -> HSI
// gives back each HSI triple that RGBtoHSI can produce.
TEST(HSITest, RoundTripsOverAllColours) {
  int failures = 0;
  for (int c = 0; c < (1 << 24) && failures < 5; ++c) {
    const int r = c & 0xFF, g = (c >> 8) & 0xFF, b = c >> 16;
    double h, s, i, h2, s2, i2;
    int r2, g2, b2;
    RGBtoHSI(r, g, b, h, s, i);
    HSItoRGB(h, s, i, r2, g2, b2);
    RGBtoHSI(r2, g2, b2, h2, s2, i2);
    if (r2 != r || g2 != g || b2 != b || h2 != h || s2 != s || i2 != i) {
      ADD_FAILURE() << r << " " << g << " " << b << " -> " << r2 << " " << g2 << " " << b2;
      ++failures;
    }
  }
}

// From HSI the way back lands within rounding: intensity within half a step,
// and the colour reached is a fixed point.
TEST(HSITest, FromHSIWithinRounding) {
  for (int hk = 0; hk < 720; ++hk) {
    for (int k = 0; k < 400; ++k) {
      const double h = hk * 0.5, s = (k % 20 + 1) / 20.0, in = (k / 20 + 1) / 20.0;
      int r, g, b, r3, g3, b3;
      double h2, s2, i2;
      HSItoRGB(h, s, in, r, g, b);
      RGBtoHSI(r, g, b, h2, s2, i2);
      HSItoRGB(h2, s2, i2, r3, g3, b3);
      ASSERT_TRUE(std::abs(i2 - in) <= 0.5 / 255 + 1e-12 && r3 == r && g3 == g && b3 == b)
          << h << " " << s << " " << in;
    }
  }
}

TEST(CMYTest, ConversionsAndClamping) {
  for (int v = 0; v < 256; ++v) {
    double c, m, y;
    std::uint8_t r, g, b;
    RGBtoCMY(static_cast<std::uint8_t>(v), 0, 255, c, m, y);
    CMYtoRGB(c, m, y, r, g, b);
    ASSERT_TRUE(r == v && g == 0 && b == 255) << v;
  }
  std::uint8_t r, g, b;
  CMYtoRGB(0.5, -1, kNaN, r, g, b);  // 127.5 to even; clamped; NaN as 0
  EXPECT_TRUE(r == 128 && g == 255 && b == 255);

  double c = 0.25, m = 0.5, y = 1.5, k = -1;
  CMYtoCMYK(c, m, y, k);
  EXPECT_TRUE(k == 0.25 && c == 0 && m == 0.25 && y == 0.75);
  CMYKtoCMY(c, m, y, 0.5);
  EXPECT_TRUE(c == 0.5 && m == 0.75 && y == 1.0);
}

TEST(GrayTest, WeightsAndTiesToEven) {
  // 1.5 and 4.5 go to even; the int ends stay numbers.
  using A = std::array<int, 4>;
  for (auto [r, g, b, want] :
       {A{255, 255, 255, 255}, A{1, 1, 1, 1}, A{5, 0, 0, 2}, A{15, 0, 0, 4}, A{0, 100, 0, 59},
        A{kIntMax, kIntMax, kIntMax, kIntMax}, A{kIntMin, kIntMin, kIntMin, kIntMin}}) {
    EXPECT_EQ(RGBtoGray(r, g, b), want) << r << " " << g << " " << b;
  }
  EXPECT_EQ(ColorToGray(0xFF640000), 11);  // blue 100; top byte ignored
  EXPECT_EQ(ColorToGrayColor(0x006400), 0x3B3B3Bu);
  EXPECT_EQ(RGBtoGrayColor(300, 300, 300), PackRGB(300, 300, 300));  // low 8 bits
  EXPECT_EQ(RGBColorDistance(0x000000, 0xFFFFFF), 1.0);
  EXPECT_EQ(RGBColorDistance(0x123456, 0xFF123456), 0.0);
}

TEST(WavelengthTest, BandsFallOffAndGamma) {
  // 701: F = 0.99125, 252.77; gamma -1 gives 257.25, which keeps its low 8
  // bits, and -1e6 lies beyond int: its end, 255. 475: green 35/50. At 380
  // the fall-off is 0.3 on red and blue: 76.5, to even.
  using W = std::tuple<int, double, TColor>;
  for (auto [w, gamma, want] :
       {W{379, 1, 0x000000}, W{780, 1, 0x000000}, W{645, 1, 0x0000FF}, W{700, 0.8, 0x0000FF},
        W{701, 1, 0x0000FD}, W{440, 1, 0xFF0000}, W{490, 1, 0xFFFF00}, W{510, 1, 0x00FF00},
        W{580, 1, 0x00FFFF}, W{475, 1, 0xFFB200}, W{380, 0, 0xFF00FF}, W{779, 0, 0x0000FF},
        W{701, -1, 0x000001}, W{701, -1e6, 0x0000FF}, W{701, kNaN, 0x000000}, W{kIntMin, 1, 0},
        W{kIntMax, 1, 0}, W{380, 1, 0x4C004C}}) {
    EXPECT_EQ(WavelengthToColor(w, gamma), want) << w << " " << gamma;
  }
}

TEST(RandomTest, DrawsRedGreenBlueInOrder) {
  using zyn::platform::Random;
  using zyn::platform::RandSeed;
  RandSeed = 99;
  const int r = 10 + Random(1), g = Random(256), b = 200 + Random(2);
  RandSeed = 99;
  EXPECT_EQ(RandomColor(10, 10, 0, 255, 200, 201), PackRGB(r, g, b));
  EXPECT_EQ(RedOf(RandomColor(9, 3, 0, 0, 0, 0)), 9);  // low above high: the low limit
}

}  // namespace
}  // namespace Zyn_zyncolors
