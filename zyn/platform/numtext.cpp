#include "zyn/platform/numtext.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zyn::platform {

namespace {

constexpr int kMaxWidth = 255;
constexpr int kMaxDecimals = 255;

// True if a * 10^k lies exactly halfway between two integers, for a finite
// a > 0. With a = m * 2^e and m odd, a * 10^k = m * 5^k * 2^(e + k), which for
// k >= 0 ends in one half exactly when e + k = -1. For k = -j < 0 the value
// m * 2^e / (2^j * 5^j) is an odd number of halves only if 5^j divides m and
// e = j - 1.
bool IsHalfway(double a, int k) {
  const auto bits = std::bit_cast<std::uint64_t>(a);
  const auto biased = static_cast<int>(bits >> 52);
  std::uint64_t m = bits & ((std::uint64_t{1} << 52) - 1);
  int e = -1074;
  if (biased != 0) {
    m |= std::uint64_t{1} << 52;
    e = biased - 1075;
  }
  if (m == 0) return false;
  const int zeros = std::countr_zero(m);
  m >>= zeros;
  e += zeros;
  if (k >= 0) return e + k == -1;
  const int j = -k;
  if (j > 22 || e != j - 1) return false;  // 5^23 exceeds any 53-bit mantissa
  std::uint64_t five_j = 1;
  for (int i = 0; i < j; ++i) five_j *= 5;
  return m % five_j == 0;
}

// Adds one unit in the last digit of the digits in [begin, end), which may
// hold a ".". Returns true if the carry ran out of the first digit, which then
// left every digit "0".
bool IncrementDigits(char* begin, char* end) {
  for (char* p = end; p != begin;) {
    --p;
    if (*p == '.') continue;
    if (*p != '9') {
      ++*p;
      return false;
    }
    *p = '0';
  }
  return true;
}

std::size_t WriteNonFinite(double x, char* out) {
  const std::string_view text = std::isnan(x) ? "NAN" : (x < 0 ? "-INF" : "INF");
  std::memcpy(out, text.data(), text.size());
  return text.size();
}

// Fixed notation of a finite a >= 0 with `decimals` decimals.
std::size_t WriteFixed(double a, int decimals, char* out, char* out_end) {
  if (!IsHalfway(a, decimals)) {
    return static_cast<std::size_t>(
        std::to_chars(out, out_end, a, std::chars_format::fixed, decimals).ptr - out);
  }
  // An exact half: the digits one place further are exact and end in "5";
  // drop it and round away from zero.
  char* end = std::to_chars(out, out_end, a, std::chars_format::fixed, decimals + 1).ptr - 1;
  if (decimals == 0) --end;  // the point in front of the dropped digit
  if (IncrementDigits(out, end)) {
    std::memmove(out + 1, out, static_cast<std::size_t>(end - out));
    *out = '1';
    ++end;
  }
  return static_cast<std::size_t>(end - out);
}

// Scientific notation of a finite a >= 0 with `significant` digits (at least
// 2), the sign position excluded: "d.ddd" "E" sign and four exponent digits.
std::size_t WriteScientific(double a, int significant, char* out, char* out_end) {
  char* end = std::to_chars(out, out_end, a, std::chars_format::scientific, significant - 1).ptr;
  char* e_pos = std::find(out, end, 'e');
  int exponent = 0;
  std::from_chars(e_pos + (e_pos[1] == '+' ? 2 : 1), end, exponent);
  if (IsHalfway(a, significant - 1 - exponent)) {
    end = std::to_chars(out, out_end, a, std::chars_format::scientific, significant).ptr;
    e_pos = std::find(out, end, 'e') - 1;  // drops the final "5"
    if (IncrementDigits(out, e_pos)) {
      *out = '1';
      ++exponent;
    }
  }
  char* p = e_pos;
  *p++ = 'E';
  *p++ = exponent < 0 ? '-' : '+';
  const int magnitude = exponent < 0 ? -exponent : exponent;
  *p++ = static_cast<char>('0' + magnitude / 1000);
  *p++ = static_cast<char>('0' + magnitude / 100 % 10);
  *p++ = static_cast<char>('0' + magnitude / 10 % 10);
  *p++ = static_cast<char>('0' + magnitude % 10);
  return static_cast<std::size_t>(p - out);
}

}  // namespace

std::size_t StrToBuffer(double x, int width, int decimals, std::span<char, kStrBufferSize> out) {
  width = std::min(width, kMaxWidth);
  char* body = out.data();
  char* const end = body + out.size();
  std::size_t length = 0;
  if (!std::isfinite(x)) {
    length = WriteNonFinite(x, body);
  } else if (decimals >= 0) {
    if (x < 0) body[length++] = '-';
    length += WriteFixed(std::fabs(x), std::min(decimals, kMaxDecimals), body + length, end);
  } else {
    body[length++] = x < 0 ? '-' : ' ';
    length += WriteScientific(std::fabs(x), std::max(width, 10) - 8, body + length, end);
  }
  if (width <= static_cast<int>(length)) return length;
  // Only texts shorter than 256 get here, so the padded text fits.
  const std::size_t pad = static_cast<std::size_t>(width) - length;
  std::memmove(body + pad, body, length);
  std::memset(body, ' ', pad);
  return pad + length;
}

std::u16string Str(double x, int width, int decimals) {
  char buffer[kStrBufferSize];
  const std::size_t length = StrToBuffer(x, width, decimals, buffer);
  return std::u16string(buffer, buffer + length);
}

}  // namespace zyn::platform
