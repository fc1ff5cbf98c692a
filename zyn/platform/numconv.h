// zyn/platform/numconv.h
//
// The runtime's raising text-to-number conversions and its short text of a
// double. The decimal separator is "." on every machine: no locale or format
// setting is read, so a file written here reads back the same anywhere.

#ifndef ZYN_PLATFORM_NUMCONV_H_
#define ZYN_PLATFORM_NUMCONV_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace zyn::platform {

// The 32-bit integer that `S` spells as Val reads it (leading blanks, a sign,
// decimal digits or hexadecimal ones behind "$" or "0x", nothing behind).
// Anything else, a value outside 32 bits included, raises EConvertError
// "'<S>' is not a valid integer value".
std::int32_t StrToInt(std::u16string_view S);

// The double that `S` spells, with blanks allowed at both ends: an optional
// sign, digits with an optional "." and fraction, an optional exponent.
// Anything else, and a value beyond the range of double, raises
// EConvertError "'<S>' is not a valid floating point value".
double StrToFloat(std::u16string_view S);

// The shortest text that StrToFloat reads back as exactly `Value`: plain
// notation for decimal exponents -5 to 14 ("0.1", "-2.5", "100000"),
// otherwise one digit, the fraction and "E" with the exponent ("1E15",
// "1.5E-7"). Zero of either sign is "0"; NaN and the infinities give "NAN",
// "INF" and "-INF", which StrToFloat refuses.
std::u16string FloatToStr(double Value);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_NUMCONV_H_
