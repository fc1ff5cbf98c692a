#include "zyn/platform/numtext.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <tuple>

#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

std::string Ascii(const std::u16string& s) { return ToUTF8(s); }

// Rounds the digit string `digits` (no point) to its first `keep` digits,
// half away from zero; returns true on a carry out of the first digit.
bool RoundDigits(std::string& digits, std::size_t keep) {
  const bool up = digits.size() > keep && digits[keep] >= '5';
  digits.resize(keep);
  if (!up) return false;
  for (std::size_t i = keep; i-- > 0;) {
    if (digits[i] != '9') {
      ++digits[i];
      return false;
    }
    digits[i] = '0';
  }
  return true;
}

// Fixed notation from the C library's exact decimal expansion.
std::string ReferenceFixed(double x, int decimals) {
  char exact[1500];
  std::snprintf(exact, sizeof exact, "%.1100f", std::fabs(x));
  std::string s(exact);
  const std::size_t point = s.find('.');
  std::string digits = s.substr(0, point) + s.substr(point + 1);
  std::size_t int_digits = point;
  if (RoundDigits(digits, int_digits + static_cast<std::size_t>(decimals))) {
    digits.insert(digits.begin(), '1');
    ++int_digits;
  }
  std::string r = x < 0 ? "-" : "";
  r += digits.substr(0, int_digits);
  if (decimals > 0) r += "." + digits.substr(int_digits);
  return r;
}

// Scientific notation, sign position included, from the exact expansion.
std::string ReferenceScientific(double x, int significant) {
  char exact[1500];
  std::snprintf(exact, sizeof exact, "%.1100e", std::fabs(x));
  std::string s(exact);
  const std::size_t e = s.find('e');
  int exponent = std::stoi(s.substr(e + 1));
  std::string digits = s.substr(0, 1) + s.substr(2, e - 2);
  if (RoundDigits(digits, static_cast<std::size_t>(significant))) {
    digits = "1" + digits.substr(1);
    ++exponent;
  }
  char tail[16];
  std::snprintf(tail, sizeof tail, "E%c%04d", exponent < 0 ? '-' : '+', std::abs(exponent));
  return std::string(x < 0 ? "-" : " ") + digits.substr(0, 1) + "." + digits.substr(1) + tail;
}

TEST(StrTest, FixedAndScientificTexts) {
  const std::tuple<double, int, int, const char*> cases[] = {
      {3.14159, 8, 2, "    3.14"},
      {0.125, 0, 2, "0.13"},  // an exact half rounds away from zero
      {2.675, 0, 2, "2.67"},  // just below the half in binary
      {2.5, 0, 0, "3"},
      {-2.5, 0, 0, "-3"},
      {999.5, 0, 0, "1000"},
      {-0.0, 5, 2, " 0.00"},
      {-0.001, 0, 2, "-0.00"},
      {1e-310, 0, 2, "0.00"},
      {-1234.5678, 14, -2, "-1.23457E+0003"},
      {1234.5678, 5, -2, " 1.2E+0003"},
      {-0.0, 10, -2, " 0.0E+0000"},
      {1e-310, 12, -2, " 1.000E-0310"},
      {1.7e308, 12, -2, " 1.700E+0308"},
      {995.0, 10, -2, " 1.0E+0003"},
      {1.5, INT_MIN, INT_MIN, " 1.5E+0000"},
      {kNaN, 5, 2, "  NAN"},
      {-kInf, 6, -2, "  -INF"},
      {kNaN, 0, -2, "NAN"}};
  for (const auto& [x, width, decimals, want] : cases) {
    SCOPED_TRACE(std::string(want));
    EXPECT_EQ(Ascii(Str(x, width, decimals)), want);
  }
}

TEST(StrTest, WideRequestsAreLimited) {
  EXPECT_EQ(Str(1, 300, 0).size(), 255u);
  EXPECT_EQ(Str(1, 300, -1).size(), 255u);
  EXPECT_EQ(Str(1, 0, 1000), u"1." + std::u16string(255, u'0'));
  const std::u16string big = Str(1.7e308, 0, 0);
  EXPECT_EQ(big.size(), 309u);
  EXPECT_EQ(Ascii(big).substr(0, 19), "1699999999999999938");
  EXPECT_EQ(Str(-1.7e308, 0, 255).size(), 1u + 309u + 1u + 255u);
}

TEST(StrTest, MatchesExactExpansion) {
  std::mt19937_64 rng(12345);
  for (int i = 0; i < 4000; ++i) {
    double x;
    do {
      x = std::bit_cast<double>(rng());
    } while (!std::isfinite(x));
    if (i % 2 == 0)
      x = std::ldexp(static_cast<double>(rng() % 100000), -static_cast<int>(rng() % 12));
    const int decimals = static_cast<int>(rng() % 24);
    const int significant = 2 + static_cast<int>(rng() % 24);
    SCOPED_TRACE(std::to_string(x) + " " + std::to_string(decimals));
    if (std::fabs(x) < 1e30) {
      EXPECT_EQ(Ascii(Str(x, 0, decimals)), ReferenceFixed(x, decimals));
    }
    EXPECT_EQ(Ascii(Str(x, significant + 8, -1)), ReferenceScientific(x, significant));
  }
}

}  // namespace
}  // namespace zyn::platform
