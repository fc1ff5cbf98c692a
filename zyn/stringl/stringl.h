// zyn/stringl/stringl.h
//
// Character tests and string surgery: searching, counting, stripping,
// padding, replacing, case changes and transliteration. Positions are 1-based
// and 0 means "not found"; no function here throws or changes its arguments.

#ifndef ZYN_STRINGL_STRINGL_H_
#define ZYN_STRINGL_STRINGL_H_

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace Zyn_stringl {

// A set of the character codes 0 to 255, one bit per code. A character above
// 255 is never a member; including one does nothing.
class CharSet {
 public:
  constexpr CharSet() = default;
  constexpr CharSet(std::initializer_list<char16_t> members) {
    for (char16_t c : members) Include(c);
  }

  constexpr bool Contains(char16_t c) const {
    return c < 256 && ((words_[c >> 6] >> (c & 63)) & 1u) != 0;
  }
  constexpr void Include(char16_t c) {
    if (c < 256) words_[c >> 6] |= std::uint64_t{1} << (c & 63);
  }
  constexpr void Exclude(char16_t c) {
    if (c < 256) words_[c >> 6] &= ~(std::uint64_t{1} << (c & 63));
  }
  constexpr void Clear() { words_ = {}; }

  friend constexpr bool operator==(const CharSet&, const CharSet&) = default;

 private:
  std::array<std::uint64_t, 4> words_{};
};

// The word separators the word and token functions read. Writable by the
// host; it starts with the codes 0, 10, 13, the blank and "#%'()*+,-./:;<=>[\]{}.
extern constinit CharSet WordSeps;

// The initial content of WordSeps, for a host that wants to restore it.
inline constexpr CharSet kDefaultWordSeps = {0,    10,   13,   u' ', u'"',  u'#', u'%', u'\'', u'(',
                                             u')', u'*', u'+', u',', u'-',  u'.', u'/', u':',  u';',
                                             u'<', u'=', u'>', u'[', u'\\', u']', u'{', u'}'};

// --- Character tests ------------------------------------------------------

// 0 to 9.
constexpr bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
// a to z and A to Z only; no umlaut or other non-ASCII letter.
constexpr bool IsLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
// a to z, A to Z and 0 to 9.
constexpr bool IsDigitLetter(char16_t c) { return IsLetter(c) || IsDigit(c); }
// 0 to 9, a to f and A to F.
constexpr bool IsHexChar(char16_t c) {
  return IsDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}
// The German special letters U+00E4, U+00F6, U+00FC, U+00C4, U+00D6, U+00DC, U+00DF.
constexpr bool IsUmlaut(char16_t c) {
  return c == 0xE4 || c == 0xF6 || c == 0xFC || c == 0xC4 || c == 0xD6 || c == 0xDC || c == 0xDF;
}

// --- Searching and counting -----------------------------------------------

// The position of the last occurrence of `sub` found by a left-to-right scan
// that skips each hit whole: in "aaa" the last "aa" is at 1. 0 if none or if
// `sub` is empty.
int PosLast(std::u16string_view sub, std::u16string_view s);

// Non-overlapping occurrences of `sub` in `s`, scanned from the left; with
// `caseSensitive` false A to Z and a to z match each other. 0 for an empty `sub`.
int CountStringInString(std::u16string_view sub, std::u16string_view s, bool caseSensitive);

// Occurrences of `c` in `s`; with `caseSensitive` false ASCII case is ignored.
int CountCharInString(char16_t c, std::u16string_view s, bool caseSensitive);

// Position of the first character that is not the blank (code 32); 0 if none.
int FindFirstNonBlank(std::u16string_view s);

// Position of the first character 0 to 9; 0 if none.
int FindFirstDigit(std::u16string_view s);

// True if `s` is not empty and every character of it is `c`.
bool TestAllChar(std::u16string_view s, char16_t c);

// True if some character of `s` is in `set`. In `set` the tokens "//dig",
// "//lc", "//uc", "//31dwn" and "//128up" stand for 0-9, a-z, A-Z, the codes
// 0-31 and the codes 128-255; every other character, "/" included, stands
// for itself. A character above 255 is a member if it stands in `set`.
bool StringContains(std::u16string_view s, std::u16string_view set);

// True if some character of `s` is outside `set`, read as by StringContains.
// An empty `set` gives true for any non-empty `s`.
bool StringContainsOtherThan(std::u16string_view s, std::u16string_view set);

// True if the two compare equal under locale case folding (AnsiStrIComp);
// each string counts only up to its first character of code 0.
bool EqualAnsiStrings(std::u16string_view a, std::u16string_view b);

// --- Stripping (only the blank, code 32, is a blank) ---------------------

// Blanks removed at both ends; an all-blank string gives the empty string.
std::u16string StripLTBlanks(std::u16string_view s);
// Blanks removed at the front; an all-blank string gives one blank.
std::u16string StripLeadingBlanks(std::u16string_view s);
// Blanks removed at the end; an all-blank string gives one blank.
std::u16string StripTrailingBlanks(std::u16string_view s);
// All leading `c` removed; a string made only of `c` gives the empty string.
std::u16string StripLeadingChars(char16_t c, std::u16string_view s);
// All trailing `c` removed, but never the first character: "xxx" gives "x".
std::u16string StripTrailingChars(char16_t c, std::u16string_view s);

// --- Ensuring (the empty string stays empty) ------------------------------

// `s` with "\" appended unless it already ends in one.
std::u16string EnsureTrailingBkSlash(std::u16string_view s);
// `s` with `c` appended unless it already ends in `c`.
std::u16string EnsureTrailingChar(char16_t c, std::u16string_view s);
// `s` with `c` put in front unless it already starts with `c`.
std::u16string EnsureLeadingChar(char16_t c, std::u16string_view s);

// --- Replacing and removing -----------------------------------------------

// Every `oldChar` becomes `newChar`.
std::u16string ReplaceCharInString(std::u16string_view s, char16_t oldChar, char16_t newChar);

// Every occurrence of `oldStr`, found from the left, replaced by `newStr`; the
// scan goes on behind the inserted text, so it is never searched again. With
// `ignoreCase` the search ignores ASCII case and the rest keeps its case. An
// empty `oldStr` returns `s`.
std::u16string ReplaceStringInString(std::u16string_view s, std::u16string_view oldStr,
                                     std::u16string_view newStr, bool ignoreCase);

// Every `c` dropped.
std::u16string RemoveCharInString(std::u16string_view s, char16_t c);
// Every run of `c` reduced to a single `c`.
std::u16string RemoveMultiChars(std::u16string_view s, char16_t c);
// Every character below code 32 dropped; code 127 and above stay.
std::u16string RemoveControlChars(std::u16string_view s);

// --- Padding and building -------------------------------------------------

// Shorter than `width`: blanks appended up to `width`; otherwise the first
// `width` characters.
std::u16string LeftString(std::u16string_view s, std::uint8_t width);
// Shorter than `width`: blanks put in front up to `width`; otherwise the
// first `width` characters (the start of the string stays).
std::u16string RightString(std::u16string_view s, std::uint8_t width);
// Shorter than `width`: half the missing blanks (rounded down) in front, the
// rest behind; otherwise the first `width` characters.
std::u16string CenterString(std::u16string_view s, std::uint8_t width);
// `s` if it is at most `maxLen` long; otherwise its first `maxLen` - 2
// characters and "..", which is ".." alone for `maxLen` below 3.
std::u16string AbbrevString(std::u16string_view s, int maxLen);
// `count` copies of `c`, `count` limited to 1 to 255.
std::u16string MultiChar(char16_t c, int count);

// --- Case and transliteration ---------------------------------------------

// Each character turned to the other case by locale folding; characters
// without case stay.
std::u16string ChangeCase(std::u16string_view s);
// The first character of each word raised by ASCII folding; nothing is
// lowered. Letters A-Z, a-z and every code from 128 are word characters, a
// digit ends the start of a word, anything else below 128 starts one.
std::u16string CapitalizeString(std::u16string_view s);
// The code units in reverse order.
std::u16string ReverseString(std::u16string_view s);
// German special letters written out: U+00E4 "ae", U+00F6 "oe", U+00FC "ue",
// U+00DF "ss", U+00B5 "u"; U+00C4, U+00D6, U+00DC give "Ae", "Oe", "Ue" before
// a to z and "AE", "OE", "UE" otherwise.
std::u16string ExpandDiphthongs(std::u16string_view s);
// Every character other than A-Z, a-z, 0-9 becomes "_"; the length stays.
std::u16string ReduceStringToAZ09(std::u16string_view s);
// Every character outside A-Z, a-z, 0-9 and !#$%&'()-.@^_`{}~ becomes "_";
// the length stays.
std::u16string ReduceStringToFN83CompliantChars(std::u16string_view s);

}  // namespace Zyn_stringl

#endif  // ZYN_STRINGL_STRINGL_H_
