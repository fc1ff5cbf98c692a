// zyn/platform/casefold.h
//
// The two kinds of case folding the library uses. ASCII folding touches A to Z
// and a to z only. Locale folding uses the full one-to-one case mapping of
// Unicode for every code unit of the Basic Multilingual Plane; it does not
// depend on the process locale, so results are the same on every machine.

#ifndef ZYN_PLATFORM_CASEFOLD_H_
#define ZYN_PLATFORM_CASEFOLD_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace zyn::platform {

// ASCII folding: a to z become A to Z (UpCase, UpperCase) or the reverse
// (LowCase, LowerCase); every other code unit stays.
constexpr char16_t UpCase(char16_t c) { return (c >= u'a' && c <= u'z') ? c - 32 : c; }
constexpr char16_t LowCase(char16_t c) { return (c >= u'A' && c <= u'Z') ? c + 32 : c; }
std::u16string UpperCase(std::u16string_view s);
std::u16string LowerCase(std::u16string_view s);

// Locale folding of one code unit: its simple upper- or lower-case mapping,
// or the unit itself where it has none (surrogates, 'ß', digits, ...).
char16_t AnsiUpCaseChar(char16_t c);
char16_t AnsiLowCaseChar(char16_t c);

// Locale folding of a whole string; the length never changes.
std::u16string AnsiUpperCase(std::u16string_view s);
std::u16string AnsiLowerCase(std::u16string_view s);

// Compares the locale-upper-cased forms code unit by code unit: < 0, 0 or > 0.
// A string that is a prefix of the other sorts first.
int AnsiStrIComp(std::u16string_view a, std::u16string_view b);

// AnsiStrIComp over at most the first `max_len` code units of each string.
int AnsiStrLIComp(std::u16string_view a, std::u16string_view b, std::size_t max_len);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_CASEFOLD_H_
