#include "zyn/platform/numconv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <random>

#include "testing/zyn_testing.h"
#include "zyn/platform/object.h"

namespace zyn::platform {
namespace {

using zyn::testing::Utf8;

TEST(NumConvTest, StrToIntTakesWhatValTakesAndRaisesOtherwise) {
  const std::pair<std::u16string_view, std::optional<std::int32_t>> cases[] = {
      {u"42", 42},
      {u"+7", 7},
      {u"  -12", -12},
      {u"$1F", 31},
      {u"2147483647", 2147483647},
      {u"-2147483648", std::numeric_limits<std::int32_t>::min()},
      {u"2147483648", {}},
      {u"", {}},
      {u"-", {}},
      {u"12 ", {}},
      {u"1.0", {}},
      {u"abc", {}},
  };
  for (const auto& [text, want] : cases) {
    SCOPED_TRACE(Utf8(text));
    if (want) {
      EXPECT_EQ(StrToInt(text), *want);
      continue;
    }
    try {
      StrToInt(text);
      ADD_FAILURE() << "no exception";
    } catch (const EConvertError& e) {
      EXPECT_EQ(e.Message(), u"'" + std::u16string(text) + u"' is not a valid integer value");
    }
  }
}

TEST(NumConvTest, StrToFloatAllowsBlanksAtBothEndsOnly) {
  const std::pair<std::u16string_view, std::optional<double>> cases[] = {
      {u"3.5", 3.5},    {u" -2.5E3 ", -2500.0}, {u"5.", 5.0}, {u".5", 0.5},
      {u"1e-400", 0.0}, {u"1E4200", {}},        {u"", {}},    {u".", {}},
      {u"12abc", {}},   {u"1,5", {}},           {u"INF", {}}, {u"1 2", {}},
  };
  for (const auto& [text, want] : cases) {
    SCOPED_TRACE(Utf8(text));
    if (want) {
      EXPECT_EQ(StrToFloat(text), *want);
      continue;
    }
    try {
      StrToFloat(text);
      ADD_FAILURE() << "no exception";
    } catch (const EConvertError& e) {
      EXPECT_EQ(e.Message(),
                u"'" + std::u16string(text) + u"' is not a valid floating point value");
    }
  }
}

TEST(NumConvTest, FloatToStrLayout) {
  const std::pair<double, std::u16string_view> cases[] = {
      {0.0, u"0"},
      {-0.0, u"0"},
      {0.1, u"0.1"},
      {-2.5, u"-2.5"},
      {100000.0, u"100000"},
      {123456789012345.0, u"123456789012345"},
      {1e15, u"1E15"},
      {1.5e-7, u"1.5E-7"},
      {0.00001, u"0.00001"},
      {0.000001, u"1E-6"},
      {0.1 + 0.2, u"0.30000000000000004"},
      {1.7976931348623157e308, u"1.7976931348623157E308"},
      {5e-324, u"5E-324"},
      {std::numeric_limits<double>::quiet_NaN(), u"NAN"},
      {-std::numeric_limits<double>::infinity(), u"-INF"},
  };
  for (const auto& [value, want] : cases) {
    SCOPED_TRACE(value);
    EXPECT_EQ(FloatToStr(value), want);
  }
}

// The C library is the independent judge: its strtod must read our text back
// as the very double, and so must StrToFloat.
TEST(NumConvTest, FloatToStrRoundTripsThroughTheCLibrary) {
  std::mt19937_64 rng(7);
  for (int i = 0; i < 20000; ++i) {
    double x;
    const std::uint64_t bits = rng();
    std::memcpy(&x, &bits, sizeof x);
    if (!std::isfinite(x)) continue;
    const std::u16string text = FloatToStr(x);
    SCOPED_TRACE(Utf8(text));
    const std::string utf8 = Utf8(text);
    ASSERT_EQ(std::strtod(utf8.c_str(), nullptr), x == 0.0 ? 0.0 : x);
    ASSERT_EQ(StrToFloat(text), x == 0.0 ? 0.0 : x);
  }
}

}  // namespace
}  // namespace zyn::platform
