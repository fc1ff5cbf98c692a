#include "zyn/colors/colormodels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "testing/zyn_testing.h"
#include "zyn/platform/random.h"

namespace Zyn_zyncolors {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

TEST(MixTest, ClampsAndTruncates) {
  struct Case {
    TColor c1, c2;
    double f;
    TColor want;
  };
  const Case cases[] = {{0x000000, 0xFFFFFF, 0.5, 0x7F7F7F},  // 127.5 truncated, both ways
                        {0xFFFFFF, 0x000000, 0.5, 0x7F7F7F},  {0x102030, 0x405060, -3, 0x102030},
                        {0x102030, 0x405060, 7, 0x405060},    {0x102030, 0x405060, kNaN, 0x102030},
                        {0xAB0000FF, 0xCD000000, 0, 0x0000FF}};  // top bytes dropped
  for (const Case& c : cases) {
    SCOPED_TRACE(c.f);
    EXPECT_EQ(InterpolateColor(c.c1, c.c2, c.f), c.want);
  }
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
  struct Case {
    std::u16string_view in;
    TColor want;
  };
  const Case cases[] = {{u"$ff", 255},
                        {u"  FF  ", 255},
                        {u"12G4", 0x12},
                        {u"   ", 0},
                        {u"$$1", 0},
                        {u" $1F ", 0x1F},
                        {u"\tFF", 0},
                        {u"0x10", 0},
                        {u"123456789", 0x23456789},
                        {u"fFfFfFfF", 0xFFFFFFFF}};
  for (const Case& c : cases) {
    SCOPED_TRACE(zyn::testing::Utf8(c.in));
    EXPECT_EQ(HexStrToColor(c.in), c.want);
  }
}

TEST(HSITest, EdgeValues) {
  struct ToRGB {
    double h, s, i;
    int r, g, b;
  };
  const ToRGB to_rgb[] = {{360, 1, 1, 255, 0, 0},       {-10, 1, 1, 255, 0, 0},
                          {kNaN, 1, 1, 255, 0, 0},      {-1, 0, 0.5, 128, 128, 128},  // to even
                          {60, 1, 2, 255, 255, 0},      {300, 5, 1, 255, 0, 255},
                          {180, 0.5, 1, 128, 255, 255}, {90, kNaN, 1, 255, 255, 255}};
  for (const ToRGB& c : to_rgb) {
    SCOPED_TRACE(testing::Message() << c.h << " " << c.s << " " << c.i);
    int r = -1, g = -1, b = -1;
    HSItoRGB(c.h, c.s, c.i, r, g, b);
    EXPECT_TRUE(r == c.r && g == c.g && b == c.b) << r << " " << g << " " << b;
  }
  struct ToHSI {
    int r, g, b;
    double h, s;
  };
  const ToHSI to_hsi[] = {{0, 0, 0, 0, 0},
                          {128, 128, 128, -1, 0},
                          {0, 0, 255, 240, 1},
                          {-5, -5, -5, -1, 0},
                          {255, 255, 0, 60, 1}};
  for (const ToHSI& c : to_hsi) {
    SCOPED_TRACE(testing::Message() << c.r << " " << c.g << " " << c.b);
    double h, s, i;
    RGBtoHSI(c.r, c.g, c.b, h, s, i);
    EXPECT_EQ(h, c.h);
    EXPECT_EQ(s, c.s);
    EXPECT_EQ(i, std::max({c.r, c.g, c.b}) / 255.0);
  }
  double h, s, i;
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
    for (int sk = 1; sk <= 20; ++sk) {
      for (int ik = 1; ik <= 20; ++ik) {
        const double h = hk * 0.5, s = sk / 20.0, in = ik / 20.0;
        int r, g, b, r3, g3, b3;
        double h2, s2, i2;
        HSItoRGB(h, s, in, r, g, b);
        RGBtoHSI(r, g, b, h2, s2, i2);
        ASSERT_LE(std::abs(i2 - in), 0.5 / 255 + 1e-12) << h << " " << s << " " << in;
        HSItoRGB(h2, s2, i2, r3, g3, b3);
        ASSERT_TRUE(r3 == r && g3 == g && b3 == b) << h << " " << s << " " << in;
      }
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
  struct Case {
    int r, g, b, want;
  };
  const Case cases[] = {{255, 255, 255, 255},
                        {1, 1, 1, 1},
                        {5, 0, 0, 2},   // 1.5 to even
                        {15, 0, 0, 4},  // 4.5 to even
                        {0, 100, 0, 59},
                        {kIntMax, kIntMax, kIntMax, kIntMax},
                        {kIntMin, kIntMin, kIntMin, kIntMin}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.r << " " << c.g << " " << c.b);
    EXPECT_EQ(RGBtoGray(c.r, c.g, c.b), c.want);
  }
  EXPECT_EQ(ColorToGray(0xFF640000), 11);  // blue 100; top byte ignored
  EXPECT_EQ(ColorToGrayColor(0x006400), 0x3B3B3Bu);
  EXPECT_EQ(RGBtoGrayColor(300, 300, 300), PackRGB(300, 300, 300));  // low 8 bits

  EXPECT_EQ(RGBColorDistance(0x000000, 0xFFFFFF), 1.0);
  EXPECT_EQ(RGBColorDistance(0x123456, 0xFF123456), 0.0);
}

TEST(WavelengthTest, BandsFallOffAndGamma) {
  struct Case {
    int w;
    double gamma;
    TColor want;
  };
  const Case cases[] = {{379, 1, 0x000000},    {780, 1, 0x000000},
                        {645, 1, 0x0000FF},    {700, 0.8, 0x0000FF},
                        {701, 1, 0x0000FD},  // F = 0.99125: 252.77
                        {440, 1, 0xFF0000},    {490, 1, 0xFFFF00},
                        {510, 1, 0x00FF00},    {580, 1, 0x00FFFF},
                        {475, 1, 0xFFB200},  // green 35/50
                        {380, 0, 0xFF00FF},    {779, 0, 0x0000FF},
                        {701, -1, 0x000001},    // 257.25 keeps its low 8 bits
                        {701, -1e6, 0x0000FF},  // beyond int: its end, 255
                        {701, kNaN, 0x000000}, {kIntMin, 1, 0},
                        {kIntMax, 1, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.w << " " << c.gamma);
    EXPECT_EQ(WavelengthToColor(c.w, c.gamma), c.want);
  }
  // At 380 the fall-off factor is 0.3 on red and blue (base 1 each):
  // 76.5, to even.
  EXPECT_EQ(WavelengthToColor(380, 1), 0x4C004Cu);
}

TEST(RandomTest, DrawsRedGreenBlueInOrder) {
  using zyn::platform::Random;
  using zyn::platform::RandSeed;
  RandSeed = 4711;
  const int r = Random(256), g = Random(256), b = Random(256);
  RandSeed = 4711;
  EXPECT_EQ(RandomColor(), PackRGB(r, g, b));

  RandSeed = 99;
  const int r2 = 10 + Random(1), g2 = Random(256), b2 = 200 + Random(2);
  RandSeed = 99;
  EXPECT_EQ(RandomColor(10, 10, 0, 255, 200, 201), PackRGB(r2, g2, b2));
  EXPECT_EQ(RedOf(RandomColor(9, 3, 0, 0, 0, 0)), 9);  // low above high: the low limit
}

}  // namespace
}  // namespace Zyn_zyncolors
