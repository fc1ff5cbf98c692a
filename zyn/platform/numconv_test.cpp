#include "zyn/platform/numconv.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>
#include <random>

#include "testing/zyn_testing.h"
#include "zyn/platform/object.h"

namespace zyn::platform {
namespace {

using zyn::testing::Utf8;

std::u16string Raised(const std::function<void()>& f) {
  try {
    f();
  } catch (const EConvertError& e) {
    return e.Message();
  }
  return u"no exception";
}

// nullopt: refused with EConvertError "'<text>' is not a valid ... value".
TEST(NumConvTest, TextToNumberRaisesOnAnythingElse) {
  const std::pair<std::u16string_view, std::optional<std::int32_t>> ints[] = {
      {u"  -12", -12},     {u"$1F", 31}, {u"-2147483648", INT32_MIN},
      {u"2147483648", {}}, {u"12 ", {}}, {u"", {}}};
  const std::pair<std::u16string_view, std::optional<double>> floats[] = {
      {u" -2.5E3 ", -2500.0}, {u"5.", 5.0}, {u"1e-400", 0.0}, {u"1E4200", {}}, {u".", {}},
      {u"12abc", {}},         {u"1,5", {}}, {u"INF", {}},     {u"1 2", {}}};
  auto check = [](std::u16string_view kind, const auto& cases, auto convert) {
    for (const auto& [text, value] : cases) {
      SCOPED_TRACE(Utf8(text));
      if (value) {
        EXPECT_EQ(convert(text), *value);
      } else {
        EXPECT_EQ(
            Raised([&, t = text] { convert(t); }),
            u"'" + std::u16string(text) + u"' is not a valid " + std::u16string(kind) + u" value");
      }
    }
  };
  check(u"integer", ints, [](std::u16string_view t) { return StrToInt(t); });
  check(u"floating point", floats, [](std::u16string_view t) { return StrToFloat(t); });
}

TEST(NumConvTest, FloatToStrLayout) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const std::pair<double, std::u16string_view> cases[] = {
      {0.0, u"0"},           {-0.0, u"0"},
      {0.1, u"0.1"},         {-2.5, u"-2.5"},
      {100000.0, u"100000"}, {123456789012345.0, u"123456789012345"},
      {1e15, u"1E15"},       {1.5e-7, u"1.5E-7"},
      {0.000001, u"1E-6"},   {0.1 + 0.2, u"0.30000000000000004"},
      {5e-324, u"5E-324"},   {kNaN, u"NAN"},
      {-kInf, u"-INF"}};
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
