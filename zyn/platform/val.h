// zyn/platform/val.h
//
// Val: the runtime's text-to-number conversion that reports by a code
// instead of raising. The code is 0 on success, else the 1-based position of
// the first character that doesn't fit (length + 1 when the text ends too
// soon); on failure the value is 0. The decimal point is always ".".

#ifndef ZYN_PLATFORM_VAL_H_
#define ZYN_PLATFORM_VAL_H_

#include <string_view>

namespace zyn::platform {

// A floating-point number: leading blanks, an optional sign, digits with an
// optional "." and fraction (at least one digit in all), then optionally "E"
// or "e", an optional sign and exponent digits. Nothing may follow. A value
// beyond the range of double gives plus or minus infinity with code 0; one
// too small for it gives 0.
double Val(std::u16string_view S, int& Code);
void Val(std::u16string_view S, double& V, int& Code);

// An integer of type int: leading blanks, an optional sign, then decimal
// digits, or hexadecimal ones behind "$" or "0x". A value outside int fails
// at the digit that takes it out.
void Val(std::u16string_view S, int& V, int& Code);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_VAL_H_
