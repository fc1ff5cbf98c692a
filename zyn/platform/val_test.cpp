#include "zyn/platform/val.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "testing/zyn_testing.h"

namespace zyn::platform {
namespace {

using zyn::testing::Utf8;

TEST(ValTest, FloatingPoint) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const std::tuple<std::u16string_view, double, int> cases[] = {
      {u"3.5", 3.5, 0},
      {u"  -12", -12.0, 0},
      {u"5.", 5.0, 0},
      {u".25", 0.25, 0},
      {u"1E5", 1e5, 0},
      {u"-2.5E+3", -2500.0, 0},
      {u"1E4200", kInf, 0},
      {u"123456789012345678901234567890E300", kInf, 0},
      {u"4.9406564584124654E-324", 4.9406564584124654e-324, 0},
      {u"0E99999", 0.0, 0},
      {u"", 0.0, 1},
      {u"-", 0.0, 2},
      {u".", 0.0, 2},
      {u"1e", 0.0, 3},
      {u"1x", 0.0, 2},
      {u"inf", 0.0, 1},
      {u"1.2.3", 0.0, 4},
  };
  for (const auto& [text, value, want_code] : cases) {
    SCOPED_TRACE(Utf8(text));
    int code = -1;
    EXPECT_EQ(Val(text, code), value);
    EXPECT_EQ(code, want_code);
  }
}

TEST(ValTest, Integer) {
  const std::tuple<std::u16string_view, int, int> cases[] = {
      {u"42", 42, 0},
      {u" -42", -42, 0},
      {u"$ff", 255, 0},
      {u"-2147483648", -2147483647 - 1, 0},
      {u"2147483648", 0, 10},
      {u"12a", 0, 3},
      {u"", 0, 1},
      {u"$", 0, 2},
  };
  for (const auto& [text, value, want_code] : cases) {
    SCOPED_TRACE(Utf8(text));
    int v = -1, code = -1;
    Val(text, v, code);
    EXPECT_EQ(v, value);
    EXPECT_EQ(code, want_code);
  }
}

}  // namespace
}  // namespace zyn::platform
