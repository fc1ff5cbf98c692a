#include "zyn/colors/colormodels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

#include "testing/zyn_testing.h"
#include "zyn/platform/random.h"

namespace Zyn_zyncolors {
namespace {

using zyn::testing::Utf8;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

TEST(MixTest, ClampsAndTruncates) {
  struct Case {
    TColor c1, c2;
    double f;
    TColor want;
  };
  const Case cases[] = {
      {0x000000, 0xFFFFFF, 0.5, 0x7F7F7F},      // 127.5 truncated
      {0xFFFFFF, 0x000000, 0.5, 0x7F7F7F},      // 127.5 from above too
      {0x102030, 0x405060, 0.0, 0x102030},      //
      {0x102030, 0x405060, 1.0, 0x405060},      //
      {0x102030, 0x405060, -3.0, 0x102030},     // clamped
      {0x102030, 0x405060, 7.0, 0x405060},      //
      {0x102030, 0x405060, kNaN, 0x102030},     // NaN counts as 0
      {0xAB0000FF, 0xCD000000, 0.0, 0x0000FF},  // top bytes dropped
      {0x0000C8, 0x000000, 0.999, 0x000000},    // 200 * 0.001 = 0.2 -> 0
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.f);
    EXPECT_EQ(InterpolateColor(c.c1, c.c2, c.f), c.want);
  }
  EXPECT_EQ(MeanColor(0x000000, 0xFFFFFF), 0x7F7F7Fu);

  const TColor a = 0x000000, b = 0x0000FF, c = 0xFFFFFF;
  EXPECT_EQ(Interpolate3Colors(a, b, c, 0.5), b);
  EXPECT_EQ(Interpolate3Colors(a, b, c, 0.0), a);
  EXPECT_EQ(Interpolate3Colors(a, b, c, 1.5), c);
  EXPECT_EQ(Interpolate3Colors(a, b, c, 0.25), 0x00007Fu);
  EXPECT_EQ(Interpolate3Colors(a, b, c, 0.75), 0x7F7FFFu);
  EXPECT_EQ(ReverseRGBColor(0xFF123456), 0x563412u);
  EXPECT_EQ(InvertColor(0xFF00FF10), 0xFF00EFu);
}

TEST(HexTest, EightCapitalDigitsLikePrintf) {
  for (TColor c : {0x0u, 0xFFu, 0xFF000005u, 0x1FFFFFFFu, 0xDEADBEEFu, 0xFFFFFFFFu}) {
    char want[16];
    std::snprintf(want, sizeof want, "%08X", c);
    EXPECT_EQ(Utf8(ColorToHexStr(c)), want);
    EXPECT_EQ(HexStrToColor(ColorToHexStr(c)), c);
  }
}

TEST(HexTest, ReadsLeadingDigitsOnly) {
  struct Case {
    std::u16string_view in;
    TColor want;
  };
  const Case cases[] = {
      {u"$ff", 255},
      {u"  FF  ", 255},
      {u"12G4", 0x12},
      {u"", 0},
      {u"   ", 0},
      {u"$", 0},
      {u"$$1", 0},
      {u" $1F ", 0x1F},
      {u"1 2", 1},
      {u"\tFF", 0},
      {u"123456789", 0x23456789},
      {u"fFfFfFfF", 0xFFFFFFFF},
      {u"-1", 0},
      {u"0x10", 0},
      {u"G", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(HexStrToColor(c.in), c.want);
  }
}

TEST(HSITest, EdgeValues) {
  struct Case {
    double h, s, i;
    int r, g, b;
  };
  const Case cases[] = {
      {360, 1, 1, 255, 0, 0},       {-10, 1, 1, 255, 0, 0},   {kNaN, 1, 1, 255, 0, 0},
      {-1, 0, 0.5, 128, 128, 128},  // 127.5 to even
      {123, 0, 1, 255, 255, 255},   {240, 1, 1, 0, 0, 255},   {120, 1, 1, 0, 255, 0},
      {60, 1, 2, 255, 255, 0},      {300, 5, 1, 255, 0, 255}, {180, 0.5, 1, 128, 255, 255},
      {90, kNaN, 1, 255, 255, 255}, {90, 1, kNaN, 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.h << " " << c.s << " " << c.i);
    int r = -1, g = -1, b = -1;
    HSItoRGB(c.h, c.s, c.i, r, g, b);
    EXPECT_EQ(r, c.r);
    EXPECT_EQ(g, c.g);
    EXPECT_EQ(b, c.b);
  }

  double h, s, i;
  RGBtoHSI(0, 0, 0, h, s, i);
  EXPECT_EQ(h, 0.0);
  EXPECT_EQ(s, 0.0);
  EXPECT_EQ(i, 0.0);
  RGBtoHSI(128, 128, 128, h, s, i);
  EXPECT_EQ(h, -1.0);
  EXPECT_EQ(s, 0.0);
  EXPECT_EQ(i, 128 / 255.0);
  RGBtoHSI(0, 0, 255, h, s, i);
  EXPECT_EQ(h, 240.0);
  RGBtoHSI(255, 0, 1, h, s, i);
  EXPECT_GT(h, 359.0);
  EXPECT_LT(h, 360.0);
  // Channels far outside 0..255 give numbers, not traps.
  RGBtoHSI(kIntMax, kIntMin, 0, h, s, i);
  EXPECT_TRUE(std::isfinite(h) && std::isfinite(s) && std::isfinite(i));
  RGBtoHSI(-5, -5, -5, h, s, i);
  EXPECT_EQ(h, -1.0);
}

// Every colour survives RGB -> HSI -> RGB exactly, and so HSI -> RGB -> HSI
// gives back each HSI triple that RGBtoHSI can produce.
TEST(HSITest, RoundTripsOverAllColours) {
  int failures = 0;
  for (int c = 0; c < (1 << 24) && failures < 5; ++c) {
    const int r = c & 0xFF, g = (c >> 8) & 0xFF, b = c >> 16;
    double h, s, i;
    RGBtoHSI(r, g, b, h, s, i);
    int r2, g2, b2;
    HSItoRGB(h, s, i, r2, g2, b2);
    double h2, s2, i2;
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
        int r, g, b;
        HSItoRGB(h, s, in, r, g, b);
        double h2, s2, i2;
        RGBtoHSI(r, g, b, h2, s2, i2);
        ASSERT_LE(std::abs(i2 - in), 0.5 / 255 + 1e-12) << h << " " << s << " " << in;
        int r3, g3, b3;
        HSItoRGB(h2, s2, i2, r3, g3, b3);
        ASSERT_TRUE(r3 == r && g3 == g && b3 == b) << h << " " << s << " " << in;
      }
    }
  }
}

TEST(CMYTest, ConversionsAndClamping) {
  for (int v = 0; v < 256; ++v) {
    double c, m, y;
    RGBtoCMY(static_cast<std::uint8_t>(v), 0, 255, c, m, y);
    EXPECT_EQ(m, 1.0);
    EXPECT_EQ(y, 0.0);
    std::uint8_t r, g, b;
    CMYtoRGB(c, m, y, r, g, b);
    ASSERT_EQ(r, v);
    ASSERT_EQ(g, 0);
    ASSERT_EQ(b, 255);
  }
  std::uint8_t r, g, b;
  CMYtoRGB(0.5, -1, kNaN, r, g, b);  // 127.5 to even; clamped; NaN as 0
  EXPECT_EQ(r, 128);
  EXPECT_EQ(g, 255);
  EXPECT_EQ(b, 255);

  double c = 0.25, m = 0.5, y = 1.5, k = -1;
  CMYtoCMYK(c, m, y, k);
  EXPECT_EQ(k, 0.25);
  EXPECT_EQ(c, 0.0);
  EXPECT_EQ(m, 0.25);
  EXPECT_EQ(y, 0.75);
  CMYKtoCMY(c, m, y, 0.5);
  EXPECT_EQ(c, 0.5);
  EXPECT_EQ(m, 0.75);
  EXPECT_EQ(y, 1.0);
}

TEST(GrayTest, WeightsAndTiesToEven) {
  struct Case {
    int r, g, b, want;
  };
  const Case cases[] = {
      {255, 255, 255, 255},
      {0, 0, 0, 0},
      {1, 1, 1, 1},
      {5, 0, 0, 2},   // 1.5 to even
      {15, 0, 0, 4},  // 4.5 to even
      {0, 100, 0, 59},
      {0, 0, 100, 11},
      {kIntMax, kIntMax, kIntMax, kIntMax},
      {kIntMin, kIntMin, kIntMin, kIntMin},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.r << " " << c.g << " " << c.b);
    EXPECT_EQ(RGBtoGray(c.r, c.g, c.b), c.want);
  }
  EXPECT_EQ(RGBtoGrayColor(0, 100, 0), 0x3B3B3Bu);
  EXPECT_EQ(ColorToGray(0xFF640000), 11);  // blue 100; top byte ignored
  EXPECT_EQ(ColorToGrayColor(0x006400), 0x3B3B3Bu);
  EXPECT_EQ(RGBtoGrayColor(300, 300, 300), PackRGB(300, 300, 300));  // low 8 bits
}

TEST(DistanceTest, ScaledToOne) {
  EXPECT_EQ(RGBColorDistance(0x000000, 0xFFFFFF), 1.0);
  EXPECT_EQ(RGBColorDistance(0x123456, 0xFF123456), 0.0);
  EXPECT_DOUBLE_EQ(RGBColorDistance(0x0000FF, 0x000000), std::sqrt(1.0 / 3));
}

TEST(WavelengthTest, BandsFallOffAndGamma) {
  struct Case {
    int w;
    double gamma;
    TColor want;
  };
  const Case cases[] = {
      {379, 1, 0x000000},    {780, 1, 0x000000}, {645, 1, 0x0000FF},
      {700, 0.8, 0x0000FF},  {701, 1, 0x0000FD},  // F = 0.99125: 252.77
      {440, 1, 0xFF0000},    {490, 1, 0xFFFF00}, {510, 1, 0x00FF00},
      {580, 1, 0x00FFFF},    {475, 1, 0xFFB200},  // green 35/50
      {380, 0, 0xFF00FF},    {779, 0, 0x0000FF}, {500, 0, 0xFFFF00},
      {701, -1, 0x000001},    // 257.25 keeps its low 8 bits
      {701, -1e6, 0x0000FF},  // beyond int: its end, 255
      {701, kNaN, 0x000000}, {kIntMin, 1, 0},    {kIntMax, 1, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.w << " " << c.gamma);
    EXPECT_EQ(WavelengthToColor(c.w, c.gamma), c.want);
  }
  // At 380 the fall-off factor is 0.3 on red and blue (base 1 each).
  const TColor at380 = WavelengthToColor(380, 1);
  EXPECT_EQ(RedOf(at380), BlueOf(at380));
  EXPECT_EQ(GreenOf(at380), 0);
  EXPECT_NEAR(RedOf(at380), 0.3 * 255, 0.5);
}

TEST(RandomTest, DrawsRedGreenBlueInOrder) {
  using zyn::platform::Random;
  using zyn::platform::RandSeed;
  RandSeed = 4711;
  const int r = Random(256), g = Random(256), b = Random(256);
  RandSeed = 4711;
  EXPECT_EQ(RandomColor(), PackRGB(r, g, b));

  RandSeed = 99;
  const int r2 = 10 + Random(1), g2 = 0 + Random(256), b2 = 200 + Random(2);
  RandSeed = 99;
  EXPECT_EQ(RandomColor(10, 10, 0, 255, 200, 201), PackRGB(r2, g2, b2));

  for (int n = 0; n < 1000; ++n) {
    const TColor c = RandomColor(10, 20, 30, 30, 250, 255);
    ASSERT_TRUE(RedOf(c) >= 10 && RedOf(c) <= 20);
    ASSERT_EQ(GreenOf(c), 30);
    ASSERT_GE(BlueOf(c), 250);
  }
  EXPECT_EQ(RedOf(RandomColor(9, 3, 0, 0, 0, 0)), 9);  // low above high: the low limit
}

}  // namespace
}  // namespace Zyn_zyncolors
