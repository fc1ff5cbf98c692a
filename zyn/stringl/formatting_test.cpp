#include "zyn/stringl/formatting.h"

#include <gtest/gtest.h>

#include <climits>
#include <initializer_list>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "zyn/platform/text.h"

namespace Zyn_stringl {
namespace {

using zyn::platform::ToUTF8;
using namespace Zyn_zynbase;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct NumCase {
  double x;
  int width, decimals;
  const char* want;
};

// Checks f(x, width, decimals) == want for each row.
template <typename F>
void ExpectNums(F f, std::initializer_list<NumCase> rows) {
  for (const NumCase& c : rows) {
    SCOPED_TRACE(std::to_string(c.x) + " " + std::to_string(c.width) + " " +
                 std::to_string(c.decimals));
    EXPECT_EQ(ToUTF8(f(c.x, c.width, c.decimals)), c.want);
  }
}

TEST(StrffTest, FieldsSignsExponentsAndForcedPlus) {
  // clang-format off
  ExpectNums(strff, {
      {3.14159, 8, 2, "    3.14"}, {3.14159, -8, 2, "00003.14"}, {-3.5, -8, 2, "-0003.50"},
      {1234.5678, 12, -2, " 1.23457E+03"}, {1234.5678, -12, -2, "01.23457E+03"},
      {-1234.5678, -12, -2, "-1.23457E+03"}, {1234.5678, 5, -1, " 1.2E+0003"},
      {1.0e120, 12, -2, "************"}, {1e-310, 10, -2, "**********"},
      {1e-99, 10, -2, " 1.000E-99"}, {0.125, 6, 2, "  0.13"}, {-0.0, -6, 2, "000.00"},
      {kNaN, 6, -2, "   NAN"}, {-kInf, -6, 2, "-00INF"}});
  ExpectNums(strffForcePlus, {
      {3.14159, 8, 2, "   +3.14"}, {3.14159, -8, 2, "+0003.14"}, {0.5, 1, 1, "+0.5"},
      {0, 6, 2, " +0.00"}, {0, 1, 0, "+0"}, {-0.0, 0, 1, "+0.0"}, {-3.5, -8, 2, "-0003.50"},
      {1234.5678, -12, -2, "+1.23457E+03"}, {1.0e120, 4, -2, "+********"},
      {kNaN, 5, 2, "  NAN"}, {kInf, 5, 2, " +INF"}});
  // clang-format on
  EXPECT_EQ(strff(1, INT_MIN, 2).size(), 255u);
  EXPECT_EQ(strff(1, INT_MAX, -2).size(), 253u);
}

TEST(FormatDataTest, FixedInsideItsRange) {
  // clang-format off
  ExpectNums(FormatData, {
      {0, 8, 3, "   0.000"}, {1000, 8, 5, " 1.0000000E+03"}, {999.99999, 10, 5, " 999.99999"},
      {0.00001, 8, 5, " 0.00001"}, {0.000009, 8, 5, " 9.0000000E-06"},
      {1e9, 12, 0, " 1.00000000000E+09"}, {1.5, 6, 9, " 1.50000E+00"},
      {-2.5, 6, -1, "-2.50000E+00"}, {kNaN, 6, 2, "         NAN"},
      {1e-310, 6, 2, "************"}});
  // clang-format on
}

TEST(SigDigStrTest, FixedWhereItFitsAndShortestField) {
  auto sig_dig = [](double x, int width, int sig) { return SigDigStr(x, width, sig); };
  // clang-format off
  ExpectNums(sig_dig, {
      {1234.5678, 10, 6, "   1234.57"}, {0.001234, 10, 3, "   0.00123"},
      {1234567, 8, 3, " 1234567"}, {12345678, 8, 3, " 1.23E+07"}, {0, 8, 3, "    0.00"},
      {0.00001234, 8, 3, " 1.23E-05"}, {1e200, 8, 3, "*********"}, {kNaN, 8, 3, "      NAN"}});
  // clang-format on
  // A huge `sig` is limited, not overflowed: scientific in the widest field.
  EXPECT_EQ(ToUTF8(SigDigStr(123.0, 0, INT_MAX)).substr(0, 8), " 1.23000");
  EXPECT_EQ(SigDigStr(1234.5678, 10, 6, true), u"1234.57");

  auto automatic = [](double x, int, int sig) { return AutoFormatData(x, sig); };
  // clang-format off
  ExpectNums(automatic, {
      {1234.5678, 0, 6, "1234.57"}, {0.5, 0, 3, "0.50"}, {0.05, 0, 3, "5.00E-02"},
      {0, 0, 3, "0.00"}, {100000, 0, 3, "1.00E+05"}, {1234.5678, 0, 1, "1.2E+03"},
      {1.0 / 3, 0, 40, "0.333333333333333"}, {kNaN, 0, 3, "NAN"}});
  // clang-format on
  EXPECT_EQ(AutoFormatData(1.5, 3, true), u"1,50");
  EXPECT_EQ(AutoFormatData(0.05, 3, true), u"5,00E-02");
}

TEST(BoolAndTriStateTest, Forms) {
  EXPECT_EQ(BoolToStr(true, 4), u"-1");
  EXPECT_EQ(BoolToStr(false, 5), u"00");
  EXPECT_EQ(BoolToStr(false, 8), u"FALSE");
  EXPECT_EQ(BoolToStr(true, -1), u"TRUE");
  EXPECT_EQ(BinString(false, u"on", u"off"), u"off");
  EXPECT_EQ(TriStateToStr(tsUndefined, 1), u"0");
  EXPECT_EQ(TriStateToStr(tsUndefined, 0), u"");
  EXPECT_EQ(TriStateToStr(tsTrue, 9), u"true");
  EXPECT_EQ(TriStateToStr(static_cast<TTriState>(7), 2), u"unknown");
  const std::pair<std::u16string_view, TTriState> cases[] = {
      {u" YES ", tsTrue}, {u"TRUE", tsTrue},   {u"+1", tsTrue},    {u" No", tsFalse},
      {u"-1", tsFalse},   {u"0", tsUndefined}, {u"", tsUndefined}, {u"\tyes", tsUndefined}};
  for (const auto& [s, want] : cases) EXPECT_EQ(StrToTriState(s), want) << ToUTF8(s);
}

TEST(TimeStringTest, Forms) {
  const double t = 3 * 3600 + 5 * 60 + 9.25;
  // clang-format off
  const std::tuple<double, int, const char*> cases[] = {
      {t, 0, "03:05:09.25"}, {t, 1, "03:05:09"}, {t, 2, " 3h05"}, {t, 3, " 3h05'09\""},
      {t, 4, "03:05"}, {t, 5, " 3:05a"}, {t, 6, ""}, {-5, 1, "00:00:00"}, {kNaN, 1, "00:00:00"},
      {1800, 5, "12:30a"}, {45000, 5, "12:30p"}, {48600, 5, " 1:30p"},
      {360000, 1, "100:00:00"}, {65536.0 * 3600, 4, "00:00"}, {0.29, 0, "00:00:00.28"}};
  // clang-format on
  for (const auto& [seconds, form, want] : cases) {
    SCOPED_TRACE(std::to_string(seconds) + " " + std::to_string(form));
    EXPECT_EQ(ToUTF8(TimeString(seconds, static_cast<std::uint8_t>(form))), want);
  }
}

TEST(CreateParListTest, IntsAndDoubles) {
  const TIntArray ints = {1, 2, 3};
  EXPECT_EQ(CreateParList(ints, false, 0), u"[1,2,3]");
  EXPECT_EQ(CreateParList(ints, false, 2), u"[1,2,...]");
  EXPECT_EQ(CreateParList(ints, true, 0), u"[1,2,3],");
  EXPECT_EQ(CreateParList(TIntArray{}, true, 2), u"[],");
  const std::int32_t open[] = {-5, 0, INT_MIN};
  EXPECT_EQ(CreateParList(std::span<const std::int32_t>(open), false), u"[-5,0,-2147483648]");
  const TDoubleArray doubles = {1.5, 0.05, 0};
  EXPECT_EQ(CreateParList(doubles, false, 0, 3), u"[1.50,5.00E-02,0.00]");
  EXPECT_EQ(CreateParList(doubles, true, 1, 2), u"[1.5,...],");
  const double open_doubles[] = {1.23456, 200};
  EXPECT_EQ(CreateParList(std::span<const double>(open_doubles), false), u"[1.23,2.00E+02]");
  EXPECT_EQ(CreateParList(std::span<const double>(), false), u"[]");
}

TEST(SortableNumericStringTest, AlignsOnDecimalChar) {
  const std::tuple<std::u16string_view, char16_t, int, std::u16string_view> cases[] = {
      {u"  3.14 ", u'.', 4, u"  3.14"},
      {u"123.4", u'.', 4, u"123.4"},
      {u"42", u'.', 3, u"   42"},
      {u",5", u',', 2, u" ,5"},
      {u"1.5", u'.', -3, u"1.5"}};
  for (const auto& [s, decimal, int_width, want] : cases) {
    EXPECT_EQ(SortableNumericString(s, decimal, int_width), want) << ToUTF8(s) << " " << int_width;
  }
}

}  // namespace
}  // namespace Zyn_stringl
