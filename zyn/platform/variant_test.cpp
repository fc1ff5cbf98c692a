#include "zyn/platform/variant.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>
#include <string>

#include "zyn/platform/object.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(VariantTest, KindsTextsAndNumbers) {
  struct Case {
    Variant v;
    TVarType kind;
    std::u16string_view text;
    double number;
    std::int32_t integer;
  };
  const Case cases[] = {
      {Variant(), varEmpty, u"", 0, 0},
      {Variant(std::uint8_t{255}), varByte, u"255", 255, 255},
      {Variant(std::int16_t{-32768}), varSmallint, u"-32768", -32768, -32768},
      {Variant(-7), varInteger, u"-7", -7, -7},
      {Variant(4000000000u), varLongWord, u"4000000000", 4e9, -294967296},
      {Variant((std::int64_t{1} << 32) + 5), varInt64, u"4294967301", 4294967301.0, 5},
      {Variant(0.1f), varSingle, u"0.1", double{0.1f}, 0},
      {Variant(2.5), varDouble, u"2.5", 2.5, 2},
      {Variant(3.5), varDouble, u"3.5", 3.5, 4},
      {Variant(1e20), varDouble, u"1e+20", 1e20, 0},
      {Variant(TCurrency{-125000}), varCurrency, u"-12.5", -12.5, -12},
      {Variant(true), varBoolean, u"True", 1, 1},
      {Variant(TDateTime{45352.5}), varDate, u"2024-03-01T12:00:00", 45352.5, 45352},
      {Variant::FromAnsi("\x80 7"), varString, u"\u20AC 7", 0, 0},
      {Variant(u" 42"), varUString, u" 42", 42, 42},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.text));
    EXPECT_EQ(c.v.VarType(), c.kind);
    EXPECT_EQ(c.v.AsString(), c.text);
    if (c.kind != varString) {
      EXPECT_EQ(c.v.AsDouble(), c.number);
      if (c.kind != varDouble || std::fabs(c.number) < 1e9) {
        EXPECT_EQ(c.v.AsInteger(), c.integer);
      }
    }
  }
}

TEST(VariantTest, WithoutAFormConversionsRaise) {
  EXPECT_THROW(Variant::Null().AsInteger(), EConvertError);
  EXPECT_THROW(Variant(TDateTime{kNaN}).AsString(), EConvertError);
  EXPECT_THROW(Variant(u"12x").AsDouble(), EConvertError);
  EXPECT_THROW(Variant::FromAnsi("x").AsInteger(), EConvertError);
  EXPECT_THROW(Variant(1e10).AsInteger(), EConvertError);
  EXPECT_THROW(Variant(kNaN).AsInteger(), EConvertError);
  try {
    Variant::Null().AsString();
    ADD_FAILURE();
  } catch (const EConvertError& e) {
    EXPECT_EQ(e.Message(), u"Could not convert a Variant of type Null into type String");
  }
  EXPECT_EQ(Variant(kNaN).AsString() + Variant(-kInf).AsString() + Variant(-0.0).AsString(),
            u"NAN-INF-0");
}

TEST(VariantTest, EqualityIsKindAndValue) {
  EXPECT_EQ(Variant(kNaN), Variant(kNaN));
  EXPECT_NE(Variant(0.0), Variant(-0.0));
  EXPECT_NE(Variant(1), Variant(std::int64_t{1}));
  EXPECT_NE(Variant(), Variant::Null());
  EXPECT_NE(Variant::FromAnsi("a"), Variant(u"a"));
}

// The fewest significant digits with which printf's text reads back as x.
int ShortestDigits(double x) {
  for (int p = 1; p <= 17; ++p) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*e", p - 1, x);
    if (std::strtod(buffer, nullptr) == x) return p;
  }
  return 17;
}

int SignificantDigits(const std::string& text) {
  std::string digits;
  std::copy_if(text.begin(), std::find(text.begin(), text.end(), 'e'), std::back_inserter(digits),
               [](char c) { return c >= '0' && c <= '9'; });
  const auto first = digits.find_first_not_of('0');
  return first == digits.npos ? 1 : static_cast<int>(digits.find_last_not_of('0') - first + 1);
}

TEST(VariantTest, FloatTextIsShortestRoundTrip) {
  std::mt19937_64 gen(7);
  for (int i = 0; i < 20000; ++i) {
    double x = 0;
    const std::uint64_t bits = gen();
    std::memcpy(&x, &bits, sizeof x);
    if (!std::isfinite(x)) continue;
    if (i % 2) x = std::ldexp(static_cast<double>(bits % 1000000), -static_cast<int>(bits % 20));
    const std::string text = ToUTF8(ShortestFloatText(x));
    SCOPED_TRACE(text);
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), x);
    ASSERT_EQ(text.find(','), std::string::npos);
    // Exact integers may be written with trailing zeros instead of an exponent.
    if (x != std::trunc(x)) {
      ASSERT_EQ(SignificantDigits(text), ShortestDigits(x));
    }
  }
}

TEST(VariantTest, DatesMatchTheCLibraryCalendar) {
  std::mt19937 gen(11);
  std::uniform_real_distribution<double> days(-693593, 2958466);
  for (int i = 0; i < 5000; ++i) {
    // Whole seconds, so that no rounding separates the two texts.
    const double v = i == 0 ? 0.0 : std::floor(days(gen) * 86400) / 86400;
    const double whole = std::floor(v);
    // The day count keeps its sign; the time of day counts forward.
    const double seconds_into_day = std::round(std::fabs(v - std::trunc(v)) * 86400);
    const double day = v < 0 && v != whole ? whole + 1 : whole;
    const auto t = static_cast<std::time_t>((day - 25569) * 86400 + seconds_into_day);
    std::tm tm{};
    gmtime_r(&t, &tm);
    char expect[40];
    std::strftime(expect, sizeof expect, seconds_into_day == 0 ? "%Y-%m-%d" : "%Y-%m-%dT%H:%M:%S",
                  &tm);
    std::string reference = expect;
    while (reference.find('-') < 4) reference.insert(0, "0");
    std::u16string text;
    ASSERT_TRUE(DateTimeText(TDateTime{v}, text)) << v;
    ASSERT_EQ(ToUTF8(text), reference) << v;
  }
  std::u16string text;
  EXPECT_TRUE(DateTimeText(TDateTime{0.5 + 0.25 / 86400}, text));  // milliseconds only when set
  EXPECT_EQ(text, u"1899-12-30T12:00:00.250");
  EXPECT_FALSE(DateTimeText(TDateTime{2958466}, text));
}

TEST(VariantTest, CurrencyTextAtTheLimits) {
  EXPECT_EQ(CurrencyText(TCurrency{std::numeric_limits<std::int64_t>::min()}) + u" " +
                CurrencyText(TCurrency{std::numeric_limits<std::int64_t>::max()}) + u" " +
                CurrencyText(TCurrency{30}) + u" " + CurrencyText(TCurrency{0}),
            u"-922337203685477.5808 922337203685477.5807 0.003 0");
}

}  // namespace
}  // namespace zyn::platform
