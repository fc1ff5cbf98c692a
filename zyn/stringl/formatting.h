// zyn/stringl/formatting.h
//
// The library's text forms of numbers, Booleans, tri-states, clock times and
// value lists. Every number form rests on zyn::platform::Str: the decimal
// point is always ".", and no function rounds digits on its own.

#ifndef ZYN_STRINGL_FORMATTING_H_
#define ZYN_STRINGL_FORMATTING_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "zyn/base/zynbase.h"

namespace Zyn_stringl {

// `x` in a field of |width|. `decimals` 0 or more: fixed notation. -2:
// scientific with `width` characters and a two-digit exponent, or all "*" if
// the exponent needs three digits. Other negative `decimals`: scientific with
// four exponent digits. A negative `width` fills the field with "0" instead of
// blanks, the "-" of a negative number standing in front: "-0003.50".
// NaN and the infinities give "NAN", "INF", "-INF" in the field.
std::u16string strff(double x, int width, int decimals);

// strff with a "+" on numbers that are not negative (not on NaN): into the last
// leading blank, over the first "0" of a zero-filled field, or in front.
std::u16string strffForcePlus(double x, int width, int decimals);

// Fixed notation Str(x, width, decimals) while |x| fits the range of
// `decimals` 0 to 8 (from 1.0 .. 999999999.0 down to 0.00000001 .. 0.99999999;
// zero always fits), otherwise strff(x, width + 6, -2), `width` significant
// digits in scientific notation.
std::u16string FormatData(double x, int width, int decimals);

// `x` with `sig` significant digits in a field of `width`: fixed notation if
// it fits, otherwise scientific with a two-digit exponent. With `strip` the
// blanks at both ends are removed.
std::u16string SigDigStr(double x, int width, int sig);
std::u16string SigDigStr(double x, int width, int sig, bool strip);

// `x` with `sig` (limited to 2 .. 16) significant digits in the shortest
// field, without blanks: fixed notation for 0.1 < |x| < 10^(sig-1) and for 0,
// scientific otherwise. With `comma` every "." becomes ",".
std::u16string AutoFormatData(double x, int sig);
std::u16string AutoFormatData(double x, int sig, bool comma);

// The text of `b` in one of the forms 0 "TRUE"/"FALSE", 1 "T"/"F",
// 2 ".T."/".F.", 3 "1"/"0", 4 "-1"/"0", 5 "FF"/"00", 6 "YES"/"NO",
// 7 "GOOD"/"BAD"; any other form gives form 0.
std::u16string BoolToStr(bool b, int form);

// `whenTrue` if `b`, otherwise `whenFalse`.
std::u16string BinString(bool b, std::u16string_view whenTrue, std::u16string_view whenFalse);

// "true", "1", "+1", "yes" give tsTrue and "false", "-1", "no" tsFalse,
// ignoring ASCII case and blanks at both ends; any other text tsUndefined.
Zyn_zynbase::TTriState StrToTriState(std::u16string_view s);

// Form 1: "-1", "1", "0"; form 2: "no", "yes", "unknown"; form 0 and every
// other: "false", "true", "". A value outside the enumeration counts as
// tsUndefined.
std::u16string TriStateToStr(Zyn_zynbase::TTriState value, int form);

// Clock text of `seconds` (negative and NaN count as 0; hours wrap at 65536):
// form 0 "hh:mm:ss.cc", 1 "hh:mm:ss", 2 "hhhmm" with an "h", 3 hh"h"mm'ss",
// 4 "hh:mm", 5 a 12-hour "hh:mma"/"hh:mmp"; any other form "". Digits are cut,
// never rounded.
std::u16string TimeString(double seconds, std::uint8_t form);

// "[1,2,3]": the values in plain decimal, at most `maxCount` of them (if
// above 0) followed by "..." when there are more; "[]" when empty; with
// `trailingComma` a "," behind the bracket.
std::u16string CreateParList(const Zyn_zynbase::TIntArray& values, bool trailingComma,
                             int maxCount);
std::u16string CreateParList(std::span<const std::int32_t> values, bool trailingComma);

// As above, each value as AutoFormatData(value, sig); the span form always
// uses 3 significant digits.
std::u16string CreateParList(const Zyn_zynbase::TDoubleArray& values, bool trailingComma,
                             int maxCount, int sig);
std::u16string CreateParList(std::span<const double> values, bool trailingComma);

// `s` stripped of blanks at both ends, with blanks put in front so that its
// first `decimalChar` stands at position `intWidth`; a text without one gets
// `intWidth` blanks; a text whose decimal character already stands at or
// behind `intWidth` is left as it is.
std::u16string SortableNumericString(std::u16string_view s, char16_t decimalChar, int intWidth);

}  // namespace Zyn_stringl

#endif  // ZYN_STRINGL_FORMATTING_H_
