#include "zyn/base/scanners.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "testing/zyn_testing.h"
#include "zyn/base/univconst.h"

namespace {

using zyn::internal::ScanDecimal;
using zyn::internal::ScanFPNum;
using zyn::internal::ScanHex;
using zyn::testing::Utf8;
using Zyn_univconst::uc_MaxDouble;
using Zyn_zynbase::dsBoth;
using Zyn_zynbase::dsComma;
using Zyn_zynbase::dsDot;
using Zyn_zynbase::dsSystem;
using Zyn_zynbase::TDecPSep;

struct IntCase {
  std::u16string_view text;
  int start;
  std::int32_t value;
  int end;
};

TEST(ScanDecimalTest, ReadsSignedDigitsAndStopsOnTheFirstOther) {
  const IntCase cases[] = {
      {u"", 1, 0, 1},           {u"abc", 1, 0, 1},        {u"  -12x", 1, -12, 6},
      {u"+7", 1, 7, 3},         {u"- 5", 1, 0, 2},        {u"12 34", 3, 34, 6},
      {u"5", 0, 5, 2},          {u"5", 9, 0, 9},          {u"2147483647", 1, 2147483647, 11},
      {u"4294967297", 1, 1, 11},  // wraps round
      {u"-2147483648", 1, INT32_MIN, 12},
      {u"\t1", 1, 0, 1},  // only the blank is skipped
  };
  for (const IntCase& c : cases) {
    SCOPED_TRACE(Utf8(c.text) + " from " + std::to_string(c.start));
    int pos = c.start;
    EXPECT_EQ(ScanDecimal(c.text, pos), c.value);
    EXPECT_EQ(pos, c.end);
  }
}

TEST(ScanHexTest, DollarOnlyInTheVeryFirstPlace) {
  const IntCase cases[] = {
      {u"$ff", 1, 255, 4},       {u"FF", 1, 255, 3},      {u"1$2", 1, 1, 2},
      {u" $ff", 1, 0, 2},        {u"ab$c", 3, 0, 3},      {u"  aBz", 1, 0xAB, 5},
      {u"FFFFFFFF", 1, -1, 9},   {u"100000001", 1, 1, 10}, {u"", 1, 0, 1},
      {u"$", 1, 0, 2},           {u"g", 1, 0, 1},
  };
  for (const IntCase& c : cases) {
    SCOPED_TRACE(Utf8(c.text) + " from " + std::to_string(c.start));
    int pos = c.start;
    EXPECT_EQ(ScanHex(c.text, pos), c.value);
    EXPECT_EQ(pos, c.end);
  }
}

struct FloatCase {
  std::u16string text;
  bool allow_exp;
  TDecPSep sep;
  double value;
  int end;
};

TEST(ScanFPNumTest, StateMachine) {
  const FloatCase cases[] = {
      {u"1.5", true, dsBoth, 1.5, 4},
      {u"1,5", true, dsBoth, 1.5, 4},
      {u"1,5", true, dsComma, 1.5, 4},
      {u"1,5", true, dsDot, 1.0, 2},
      {u"1.5", true, dsComma, 1.0, 2},
      {u"1.5", true, dsSystem, 1.5, 4},
      {u"5.", true, dsDot, 5.0, 3},
      {u".5", true, dsDot, 0.5, 3},
      {u".", true, dsDot, 0.0, 2},
      {u"-", true, dsDot, 0.0, 2},    // rejected behind the end
      {u"-x", true, dsDot, 0.0, 2},   // rejected on the x
      {u"x", true, dsDot, 0.0, 1},    // rejected at once
      {u"E5", true, dsDot, 0.0, 1},
      {u"  -2.25 7", true, dsDot, -2.25, 8},
      {u"+3", true, dsDot, 3.0, 3},
      {u"- 3", true, dsDot, 0.0, 2},  // no blank after the sign
      {u"1.2.3", true, dsDot, 0.0, 4},  // a second separator rejects
      {u"1e5", true, dsDot, 1e5, 4},
      {u"1E-2x", true, dsDot, 0.01, 5},
      {u"1e5", false, dsDot, 1.0, 2},
      {u"1ex", true, dsDot, 1.0, 3},   // an exponent without digits is left out
      {u"1e+", true, dsDot, 1.0, 4},
      {u"1e 5", true, dsDot, 0.0, 3},  // a blank after "E" rejects
      {u"1e5.3", true, dsDot, 1e5, 4},
      {u"1e5e", true, dsDot, 1e5, 4},
      {u"1-2", true, dsDot, 1.0, 2},
      {u"12abc", true, dsDot, 12.0, 3},
      {u"3.5", true, dsDot, 0.5, 4},  // start at 2: ".5"
      {u"1E5000", true, dsDot, uc_MaxDouble, 7},
      {u"-1E5000", true, dsDot, -uc_MaxDouble, 8},
      {u"1.75e308", true, dsDot, uc_MaxDouble, 9},
      {u"1e-400", true, dsDot, 0.0, 7},
      {u"", true, dsDot, 0.0, 1},
  };
  for (const FloatCase& c : cases) {
    SCOPED_TRACE(Utf8(c.text) + (c.allow_exp ? " exp" : "") + " sep " + std::to_string(c.sep));
    int pos = c.text == u"3.5" ? 2 : 1;
    EXPECT_EQ(ScanFPNum(c.text, c.allow_exp, c.sep, pos), c.value);
    EXPECT_EQ(pos, c.end);
  }
}

// Exponent digits beyond a size of 4200 never reach the number text: with a
// mantissa of 1e-4196 the exponent 4200 gives 1e4, but 4201 is read as 420.
TEST(ScanFPNumTest, ExponentStopsGrowingAt4200) {
  const std::u16string mantissa = u"0." + std::u16string(4195, u'0') + u"1";
  struct Case {
    std::u16string_view exponent;
    double value;
  };
  const Case cases[] = {{u"E4200", 1e4}, {u"E4201", 0.0}, {u"E42000", 1e4}, {u"E42100", 0.0}, {u"E04200", 1e4}};
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.exponent));
    const std::u16string text = mantissa + std::u16string(c.exponent) + u";";
    int pos = 1;
    EXPECT_DOUBLE_EQ(ScanFPNum(text, true, dsDot, pos), c.value);
    EXPECT_EQ(pos, static_cast<int>(text.size()));  // on the ";"
  }
}

TEST(ScanFPNumTest, PositionBelowOneStartsAtTheFirstCharacter) {
  int pos = -3;
  EXPECT_EQ(ScanFPNum(u"2.5", true, dsDot, pos), 2.5);
  EXPECT_EQ(pos, 4);
}

}  // namespace
