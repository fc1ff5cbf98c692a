// zyn/base/scanners.h
//
// Internal: the three number scanners that every reader of the library's text
// forms uses (label, feature file, associative array, colour block, save
// dialog). One implementation for all units; not exported from the shared
// library and not part of any unit's public interface.
//
// Each scanner reads at a 1-based position, leaves the position on the
// character that ended the number and never throws: bad text gives what can
// be read, down to 0. A position below 1 counts as 1.

#ifndef ZYN_BASE_SCANNERS_H_
#define ZYN_BASE_SCANNERS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "zyn/base/zynbase.h"

namespace zyn::internal {

// Skips blanks, takes one "-" or "+", then collects decimal digits into a
// 32-bit value that wraps round on overflow. No digits (or an empty or
// exhausted string) give 0.
[[gnu::visibility("hidden")]] std::int32_t ScanDecimal(std::u16string_view s, int& pos);

// Skips blanks, then a "$" if it stands at position 1 of the string, then
// collects hexadecimal digits of either case into a 32-bit value (wrapping,
// so "FFFFFFFF" is -1). No digits give 0.
[[gnu::visibility("hidden")]] std::int32_t ScanHex(std::u16string_view s, int& pos);

// Reads a floating-point number: optional blanks and sign, digits, a decimal
// separator chosen by `DecPSep` (dsDot and dsSystem ".", dsComma ",", dsBoth
// either), digits, and with `AllowExp` an exponent "E"/"e" with sign and
// digits. Exponent digits that would take its size to 4201 or more are
// dropped. Text that is no number gives 0.0; results are clamped to
// +-uc_MaxDouble. An "E" with no digits behind it is left out of the value.
[[gnu::visibility("hidden")]] double ScanFPNum(std::u16string_view text, bool AllowExp,
                                               Zyn_zynbase::TDecPSep DecPSep, int& position);

// The value of the attribute `name` (ASCII case-insensitive) in an attribute
// text such as `size=12 color="dark red"`, without quotes and with its case
// kept; "" if the name isn't there or a syntax error comes first. The tag
// scanner of the streams unit and the label reader share it.
[[gnu::visibility("hidden")]] std::u16string ScanForXMLAttrib(std::u16string_view attribs,
                                                              std::u16string_view name);

}  // namespace zyn::internal

#endif  // ZYN_BASE_SCANNERS_H_
