#include "zyn/base/scanners.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <tuple>

#include "testing/zyn_testing.h"
#include "zyn/base/univconst.h"

namespace {

using namespace zyn::internal;
using namespace Zyn_zynbase;
using zyn::testing::Utf8;
using Zyn_univconst::uc_MaxDouble;

TEST(ScanIntTest, DecimalAndHex) {
  // Hex or decimal, the text, the start, the value and the position after it.
  // clang-format off
  const std::tuple<bool, std::u16string_view, int, std::int32_t, int> cases[] = {
      {false, u"", 1, 0, 1}, {false, u"  -12x", 1, -12, 6}, {false, u"+7", 1, 7, 3},
      {false, u"- 5", 1, 0, 2}, {false, u"12 34", 3, 34, 6}, {false, u"5", 0, 5, 2},
      {false, u"\t1", 1, 0, 1}, {false, u"4294967297", 1, 1, 11},
      {false, u"-2147483648", 1, INT32_MIN, 12}, {true, u"$ff", 1, 255, 4},
      {true, u"FF", 1, 255, 3}, {true, u"1$2", 1, 1, 2}, {true, u" $ff", 1, 0, 2},
      {true, u"ab$c", 3, 0, 3}, {true, u"  aBz", 1, 0xAB, 5}, {true, u"FFFFFFFF", 1, -1, 9},
      {true, u"", 1, 0, 1}};
  // clang-format on
  for (const auto& [hex, text, start, value, end] : cases) {
    SCOPED_TRACE(Utf8(text) + " from " + std::to_string(start));
    int pos = start;
    EXPECT_EQ(hex ? ScanHex(text, pos) : ScanDecimal(text, pos), value);
    EXPECT_EQ(pos, end);
  }
}

// The mode letter: separator by dsBoth, dsComma, dsDot or dsSystem with
// exponents, or "n" for dsDot without.
TEST(ScanFPNumTest, StateMachine) {
  // clang-format off
  const std::tuple<std::u16string_view, char, double, int> cases[] = {
      {u"1.5", 'b', 1.5, 4}, {u"1,5", 'b', 1.5, 4}, {u"1,5", 'c', 1.5, 4}, {u"1,5", 'd', 1.0, 2},
      {u"1.5", 'c', 1.0, 2}, {u"1.5", 's', 1.5, 4}, {u"5.", 'd', 5.0, 3}, {u".5", 'd', 0.5, 3},
      {u".", 'd', 0.0, 2}, {u"-", 'd', 0.0, 2}, {u"x", 'd', 0.0, 1}, {u"E5", 'd', 0.0, 1},
      {u"  -2.25 7", 'd', -2.25, 8}, {u"- 3", 'd', 0.0, 2}, {u"1.2.3", 'd', 0.0, 4},
      {u"1e5", 'd', 1e5, 4}, {u"1E-2x", 'd', 0.01, 5}, {u"1e5", 'n', 1.0, 2},
      {u"1ex", 'd', 1.0, 3}, {u"1e+", 'd', 1.0, 4}, {u"1e 5", 'd', 0.0, 3},
      {u"1e5.3", 'd', 1e5, 4}, {u"1.e2", 'd', 100.0, 5}, {u"2,5E1", 'b', 25.0, 6},
      {u"1-2", 'd', 1.0, 2}, {u"1E5000", 'd', uc_MaxDouble, 7},
      {u"-1E5000", 'd', -uc_MaxDouble, 8}, {u"1.75e308", 'd', uc_MaxDouble, 9},
      {u"1e-400", 'd', 0.0, 7}};
  // clang-format on
  for (const auto& [text, mode, value, end] : cases) {
    SCOPED_TRACE(Utf8(text) + " mode " + mode);
    const TDecPSep sep = mode == 'b'   ? dsBoth
                         : mode == 'c' ? dsComma
                         : mode == 's' ? dsSystem
                                       : dsDot;
    int pos = 1;
    EXPECT_EQ(ScanFPNum(text, mode != 'n', sep, pos), value);
    EXPECT_EQ(pos, end);
  }
}

// A number text ending in its separator reads with a "0" behind it, so a
// lone sign and separator keep the sign.
TEST(ScanFPNumTest, SignOfZeroSurvives) {
  const std::tuple<std::u16string_view, TDecPSep, bool, int> cases[] = {
      {u"-.", dsDot, true, 3},  {u" -,", dsBoth, true, 4}, {u"-.x", dsDot, true, 3},
      {u"-0", dsDot, true, 3},  {u"+.", dsDot, false, 3},  {u".", dsDot, false, 2},
      {u"-.e", dsDot, true, 4}, {u"-", dsDot, false, 2},
  };
  for (const auto& [text, sep, negative, end] : cases) {
    SCOPED_TRACE(Utf8(text));
    int pos = 1;
    const double value = ScanFPNum(text, true, sep, pos);
    EXPECT_EQ(value, 0.0);
    EXPECT_EQ(std::signbit(value), negative);
    EXPECT_EQ(pos, end);
  }
}

// Exponent digits beyond a size of 4200 never reach the number text: with a
// mantissa of 1e-4196 the exponent 4200 gives 1e4, but 4201 is read as 420.
TEST(ScanFPNumTest, ExponentStopsGrowingAt4200) {
  const std::u16string mantissa = u"0." + std::u16string(4195, u'0') + u"1";
  for (const auto& [exponent, value] : {std::pair{u"E4200", 1e4},
                                        {u"E4201", 0.0},
                                        {u"E42000", 1e4},
                                        {u"E42100", 0.0},
                                        {u"E04200", 1e4}}) {
    SCOPED_TRACE(Utf8(exponent));
    const std::u16string text = mantissa + exponent + u";";
    int pos = 1;
    EXPECT_DOUBLE_EQ(ScanFPNum(text, true, dsDot, pos), value);
    EXPECT_EQ(pos, static_cast<int>(text.size()));  // on the ";"
  }
}

}  // namespace
