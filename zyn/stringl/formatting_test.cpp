#include "zyn/stringl/formatting.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>
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

std::string Trace(const NumCase& c) {
  return std::to_string(c.x) + " " + std::to_string(c.width) + " " + std::to_string(c.decimals);
}

TEST(StrffTest, FieldsSignsAndExponents) {
  const NumCase cases[] = {
      {3.14159, 8, 2, "    3.14"},
      {3.14159, -8, 2, "00003.14"},
      {-3.5, -8, 2, "-0003.50"},
      {-3.5, -2, 2, "-3.50"},
      {1234.5678, 12, -2, " 1.23457E+03"},
      {1234.5678, -12, -2, "01.23457E+03"},
      {-1234.5678, -12, -2, "-1.23457E+03"},
      {1234.5678, 5, -1, " 1.2E+0003"},  // other negatives keep four digits
      {1.0e120, 12, -2, "************"},
      {1e-310, 10, -2, "**********"},
      {1.7e308, 10, -2, "**********"},
      {1e-99, 10, -2, " 1.000E-99"},
      {1, 0, -2, " 1.0E+00"},
      {0, 0, 0, "0"},
      {0.5, 0, 0, "1"},
      {0.125, 6, 2, "  0.13"},
      {2.675, 6, 2, "  2.67"},
      {-0.0, -6, 2, "000.00"},
      {kNaN, 6, 2, "   NAN"},
      {kNaN, 6, -2, "   NAN"},
      {kInf, -6, -2, "000INF"},
      {-kInf, -6, 2, "-00INF"},
  };
  for (const NumCase& c : cases) {
    SCOPED_TRACE(Trace(c));
    EXPECT_EQ(ToUTF8(strff(c.x, c.width, c.decimals)), c.want);
  }
  EXPECT_EQ(strff(1, INT_MIN, 2).size(), 255u);
  EXPECT_EQ(strff(1, INT_MAX, -2).size(), 253u);
}

TEST(StrffTest, ForcePlus) {
  const NumCase cases[] = {
      {3.14159, 8, 2, "   +3.14"},
      {3.14159, -8, 2, "+0003.14"},
      {0.5, 1, 1, "+0.5"},
      {0, 6, 2, " +0.00"},
      {0, 1, 0, "+0"},
      {5, 0, 0, "+5"},
      {10, -4, 0, "+010"},
      {-0.0, 0, 1, "+0.0"},
      {-3.5, 8, 2, "   -3.50"},
      {-3.5, -8, 2, "-0003.50"},
      {1234.5678, 12, -2, "+1.23457E+03"},
      {1234.5678, -12, -2, "+1.23457E+03"},
      {1.0e120, 4, -2, "+********"},
      {kNaN, 5, 2, "  NAN"},
      {kInf, 5, 2, " +INF"},
  };
  for (const NumCase& c : cases) {
    SCOPED_TRACE(Trace(c));
    EXPECT_EQ(ToUTF8(strffForcePlus(c.x, c.width, c.decimals)), c.want);
  }
}

TEST(FormatDataTest, FixedInsideItsRange) {
  const NumCase cases[] = {
      {0, 8, 3, "   0.000"},
      {1000, 8, 5, " 1.0000000E+03"},
      {999.99999, 10, 5, " 999.99999"},
      {0.00001, 8, 5, " 0.00001"},
      {0.000009, 8, 5, " 9.0000000E-06"},
      {-0.5, 6, 1, "  -0.5"},
      {0.05, 6, 1, " 5.00000E-02"},
      {999999999.0, 12, 0, "   999999999"},
      {1e9, 12, 0, " 1.00000000000E+09"},
      {0.99999999, 10, 8, "0.99999999"},
      {1.5, 6, 9, " 1.50000E+00"},
      {-2.5, 6, -1, "-2.50000E+00"},
      {kNaN, 6, 2, "         NAN"},
      {kInf, 6, 2, "         INF"},
      {1e-310, 6, 2, "************"},
  };
  for (const NumCase& c : cases) {
    SCOPED_TRACE(Trace(c));
    EXPECT_EQ(ToUTF8(FormatData(c.x, c.width, c.decimals)), c.want);
  }
}

TEST(SigDigStrTest, FixedWhereItFits) {
  const NumCase cases[] = {
      // decimals holds `sig`
      {1234.5678, 10, 6, "   1234.57"},
      {0.001234, 10, 3, "   0.00123"},
      {1234567, 8, 3, " 1234567"},
      {12345678, 8, 3, " 1.23E+07"},
      {0, 8, 3, "    0.00"},
      {0.00001234, 8, 3, " 1.23E-05"},
      {-0.5, 6, 2, " -0.50"},
      {1e200, 8, 3, "*********"},
      {kNaN, 8, 3, "      NAN"},
  };
  for (const NumCase& c : cases) {
    SCOPED_TRACE(Trace(c));
    EXPECT_EQ(ToUTF8(SigDigStr(c.x, c.width, c.decimals)), c.want);
  }
  // A huge `sig` is limited, not overflowed: scientific in the widest field.
  EXPECT_EQ(ToUTF8(SigDigStr(123.0, 0, INT_MAX)).substr(0, 8), " 1.23000");
  EXPECT_EQ(SigDigStr(123.0, 0, INT_MAX).size(), 253u);
  EXPECT_EQ(SigDigStr(1234.5678, 10, 6, true), u"1234.57");
  EXPECT_EQ(SigDigStr(1234.5678, 10, 6, false), u"   1234.57");
}

TEST(AutoFormatDataTest, ShortestField) {
  const NumCase cases[] = {
      // decimals holds `sig`
      {1234.5678, 0, 6, "1234.57"},
      {-1234.5678, 0, 6, "-1234.57"},
      {0.5, 0, 3, "0.50"},
      {0.05, 0, 3, "5.00E-02"},
      {0, 0, 3, "0.00"},
      {100000, 0, 3, "1.00E+05"},
      {1234.5678, 0, 1, "1.2E+03"},
      {1.0 / 3, 0, 40, "0.333333333333333"},
      {kNaN, 0, 3, "NAN"},
      {1e-310, 0, 3, "*********"},
  };
  for (const NumCase& c : cases) {
    SCOPED_TRACE(Trace(c));
    EXPECT_EQ(ToUTF8(AutoFormatData(c.x, c.decimals)), c.want);
  }
  EXPECT_EQ(AutoFormatData(1.5, 3, true), u"1,50");
  EXPECT_EQ(AutoFormatData(0.05, 3, true), u"5,00E-02");
  EXPECT_EQ(AutoFormatData(1.5, 3, false), u"1.50");
}

TEST(BoolAndTriStateTest, Forms) {
  const char* forms[][2] = {{"TRUE", "FALSE"}, {"T", "F"},      {".T.", ".F."},
                            {"1", "0"},        {"-1", "0"},     {"FF", "00"},
                            {"YES", "NO"},     {"GOOD", "BAD"}, {"TRUE", "FALSE"}};
  for (int form = 0; form < 9; ++form) {
    SCOPED_TRACE(form);
    EXPECT_EQ(ToUTF8(BoolToStr(true, form)), forms[form][0]);
    EXPECT_EQ(ToUTF8(BoolToStr(false, form)), forms[form][1]);
  }
  EXPECT_EQ(BoolToStr(true, -1), u"TRUE");
  EXPECT_EQ(BinString(true, u"on", u"off"), u"on");
  EXPECT_EQ(BinString(false, u"on", u"off"), u"off");

  const char* tri[][3] = {
      {"false", "true", ""}, {"-1", "1", "0"}, {"no", "yes", "unknown"}, {"false", "true", ""}};
  for (int form = 0; form < 4; ++form) {
    SCOPED_TRACE(form);
    EXPECT_EQ(ToUTF8(TriStateToStr(tsFalse, form)), tri[form][0]);
    EXPECT_EQ(ToUTF8(TriStateToStr(tsTrue, form)), tri[form][1]);
    EXPECT_EQ(ToUTF8(TriStateToStr(tsUndefined, form)), tri[form][2]);
  }
  EXPECT_EQ(TriStateToStr(static_cast<TTriState>(7), 2), u"unknown");

  struct Case {
    std::u16string_view s;
    TTriState want;
  };
  const Case cases[] = {
      {u" YES ", tsTrue},  {u"true", tsTrue},   {u"TRUE", tsTrue},   {u"1", tsTrue},
      {u"+1", tsTrue},     {u"false", tsFalse}, {u"-1", tsFalse},    {u" No", tsFalse},
      {u"0", tsUndefined}, {u"", tsUndefined},  {u"y", tsUndefined}, {u"\tyes", tsUndefined},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.s));
    EXPECT_EQ(StrToTriState(c.s), c.want);
  }
}

TEST(TimeStringTest, Forms) {
  const double t = 3 * 3600 + 5 * 60 + 9.25;
  const char* forms[] = {"03:05:09.25", "03:05:09", " 3h05", " 3h05'09\"", "03:05", " 3:05a", ""};
  for (int form = 0; form < 7; ++form) {
    SCOPED_TRACE(form);
    EXPECT_EQ(ToUTF8(TimeString(t, static_cast<std::uint8_t>(form))), forms[form]);
  }
  struct Case {
    double seconds;
    int form;
    const char* want;
  };
  const Case cases[] = {
      {-5, 1, "00:00:00"},          {kNaN, 1, "00:00:00"},    {1800, 5, "12:30a"},
      {45000, 5, "12:30p"},         {48600, 5, " 1:30p"},     {360000, 1, "100:00:00"},
      {65536.0 * 3600, 4, "00:00"}, {0.29, 0, "00:00:00.28"}, {59.999, 0, "00:00:59.99"},
      {3599.5, 3, " 0h59'59\""},    {36000, 2, "10h00"},      {255, 255, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.seconds) + " " + std::to_string(c.form));
    EXPECT_EQ(ToUTF8(TimeString(c.seconds, static_cast<std::uint8_t>(c.form))), c.want);
  }
}

TEST(CreateParListTest, IntsAndDoubles) {
  const TIntArray ints = {1, 2, 3};
  EXPECT_EQ(CreateParList(ints, false, 0), u"[1,2,3]");
  EXPECT_EQ(CreateParList(ints, false, 2), u"[1,2,...]");
  EXPECT_EQ(CreateParList(ints, false, 3), u"[1,2,3]");
  EXPECT_EQ(CreateParList(ints, false, -1), u"[1,2,3]");
  EXPECT_EQ(CreateParList(ints, true, 0), u"[1,2,3],");
  EXPECT_EQ(CreateParList(TIntArray{}, false, 0), u"[]");
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
  struct Case {
    std::u16string_view s;
    char16_t decimal;
    int int_width;
    std::u16string_view want;
  };
  const Case cases[] = {
      {u"  3.14 ", u'.', 4, u"  3.14"},  {u"123.4", u'.', 4, u"123.4"},
      {u"12345.6", u'.', 4, u"12345.6"}, {u"42", u'.', 3, u"   42"},
      {u",5", u',', 2, u" ,5"},          {u"", u'.', 2, u"  "},
      {u" 1.5", u'.', 0, u"1.5"},        {u"1.5", u'.', -3, u"1.5"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.s) + " " + std::to_string(c.int_width));
    EXPECT_EQ(SortableNumericString(c.s, c.decimal, c.int_width), c.want);
  }
}

}  // namespace
}  // namespace Zyn_stringl
