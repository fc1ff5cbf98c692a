#include "zyn/platform/val.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <string>

namespace zyn::platform {
namespace {

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

std::size_t SkipBlanks(std::u16string_view s) {
  std::size_t i = 0;
  while (i < s.size() && (s[i] == u' ' || s[i] == u'\t')) ++i;
  return i;
}

int HexDigit(char16_t c) {
  if (IsDigit(c)) return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

}  // namespace

double Val(std::u16string_view S, int& Code) {
  double v;
  Val(S, v, Code);
  return v;
}

void Val(std::u16string_view S, double& V, int& Code) {
  V = 0.0;
  // The number is rebuilt as plain ASCII "digits.digitsEexp" for from_chars,
  // which knows no leading "+" and would take "inf" and "nan".
  std::string text;
  std::size_t i = SkipBlanks(S);
  auto fail = [&](std::size_t at) { Code = static_cast<int>(at) + 1; };
  bool negative = false;
  if (i < S.size() && (S[i] == u'-' || S[i] == u'+')) negative = S[i++] == u'-';
  std::size_t digits = 0;
  for (; i < S.size() && IsDigit(S[i]); ++i, ++digits) text.push_back(static_cast<char>(S[i]));
  if (i < S.size() && S[i] == u'.') {
    text.push_back('.');
    for (++i; i < S.size() && IsDigit(S[i]); ++i, ++digits) text.push_back(static_cast<char>(S[i]));
  }
  if (digits == 0) return fail(i);
  if (i < S.size() && (S[i] == u'e' || S[i] == u'E')) {
    text.push_back('e');
    ++i;
    if (i < S.size() && (S[i] == u'-' || S[i] == u'+')) {
      if (S[i] == u'-') text.push_back('-');
      ++i;
    }
    std::size_t exponent_digits = 0;
    for (; i < S.size() && IsDigit(S[i]); ++i, ++exponent_digits) {
      text.push_back(static_cast<char>(S[i]));
    }
    if (exponent_digits == 0) return fail(i);
  }
  if (i < S.size()) return fail(i);

  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    // Too large or too small for a double: tell them apart by the decimal
    // exponent of the first non-zero digit.
    std::int64_t exponent = 0;
    const std::size_t e = text.find('e');
    const std::string mantissa = text.substr(0, e);
    if (e != std::string::npos) {
      const std::string exp_text = text.substr(e + 1);
      std::size_t k = exp_text[0] == '-' ? 1 : 0;
      for (; k < exp_text.size() && exponent < 100000000; ++k) {
        exponent = exponent * 10 + (exp_text[k] - '0');
      }
      if (exp_text[0] == '-') exponent = -exponent;
    }
    std::size_t point = mantissa.find('.');
    if (point == std::string::npos) point = mantissa.size();
    const std::size_t first = mantissa.find_first_of("123456789");
    const std::int64_t magnitude =
        first == std::string::npos
            ? -1
            : exponent + static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    value = magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  (void)end;
  V = negative ? -value : value;
  Code = 0;
}

void Val(std::u16string_view S, int& V, int& Code) {
  V = 0;
  std::size_t i = SkipBlanks(S);
  bool negative = false;
  if (i < S.size() && (S[i] == u'-' || S[i] == u'+')) negative = S[i++] == u'-';
  int base = 10;
  if (i < S.size() && S[i] == u'$') {
    base = 16;
    ++i;
  } else if (i + 1 < S.size() && S[i] == u'0' && (S[i + 1] == u'x' || S[i + 1] == u'X')) {
    base = 16;
    i += 2;
  }
  if (i == S.size()) {
    Code = static_cast<int>(i) + 1;
    return;
  }
  const std::int64_t limit = std::int64_t{std::numeric_limits<int>::max()} + (negative ? 1 : 0);
  std::int64_t magnitude = 0;
  for (; i < S.size(); ++i) {
    const int digit = base == 16 ? HexDigit(S[i]) : (IsDigit(S[i]) ? S[i] - u'0' : -1);
    magnitude = magnitude * base + digit;
    if (digit < 0 || magnitude > limit) {
      Code = static_cast<int>(i) + 1;
      return;
    }
  }
  V = static_cast<int>(negative ? -magnitude : magnitude);
  Code = 0;
}

}  // namespace zyn::platform
