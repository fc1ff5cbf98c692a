// zyn/platform/numtext.h
//
// Str, the numeric text conversion every number form of the library rests
// on: fixed or scientific notation of a double, rounded from its exact binary
// value. The decimal point is always "."; no locale or global state is read.

#ifndef ZYN_PLATFORM_NUMTEXT_H_
#define ZYN_PLATFORM_NUMTEXT_H_

#include <cstddef>
#include <span>
#include <string>

namespace zyn::platform {

// Room for the longest text Str makes: a sign, 309 integer digits, the point
// and 255 decimals.
inline constexpr std::size_t kStrBufferSize = 576;

// With `decimals` 0 or more: fixed notation, "-" for a negative number, the
// integer digits and, for `decimals` above 0, "." and exactly `decimals`
// digits, rounded from the exact binary value; an exact half rounds away from
// zero. -0.0 has no sign; a negative number that rounds to 0 keeps its "-".
// With `decimals` below 0: scientific notation, " " or "-", one digit, ".",
// further digits, "E", the exponent's sign and four exponent digits, with
// `width` - 8 significant digits (at least 2).
// Blanks in front pad the text to `width`; a longer text stays whole. A
// `width` above 255 counts as 255 and `decimals` above 255 as 255. NaN and the
// infinities give "NAN", "INF" and "-INF", padded to `width` likewise.
std::u16string Str(double x, int width, int decimals);

// Str's text as ASCII bytes in `out`; returns its length. For callers that
// rework the text before it becomes a string.
std::size_t StrToBuffer(double x, int width, int decimals, std::span<char, kStrBufferSize> out);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_NUMTEXT_H_
