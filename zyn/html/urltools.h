// zyn/html/urltools.h
//
// Percent-coding of URL text, the directory part of a URL, and counting the
// words of HTML text handed over piece by piece. Nothing here throws.

#ifndef ZYN_HTML_URLTOOLS_H_
#define ZYN_HTML_URLTOOLS_H_

#include <string>
#include <string_view>

namespace Zyn_htmlsupport {

// The characters URLEncode codes, as the interface lists them ('!' stands
// twice, so 19 different characters; the last entry is the blank).
inline constexpr std::u16string_view kURLReservedChars = u"!*!();:@&=+$,/?%#[] ";

// `s` with each reserved character as "%" and two upper-case hex digits
// (" " gives "%20", "%" gives "%25"); every other character, control
// characters and those above 127 included, is copied unchanged.
std::u16string URLEncode(std::u16string_view s);

// Resolves "%" with two hex digits (either case) into the character of that
// code (0 to 255), twice: the second pass works on the result of the first,
// so "%2541" gives "A". A "%" without two hex digits behind it stays; bytes
// are not joined into multi-byte characters and "+" stays a plus.
std::u16string URLDecode(std::u16string_view s);

// Host and directories of a URL with the closing "/": everything up to and
// including the first "http://" (found in any case) goes, and everything
// behind the last "/". A text without "/" (after the scheme) is a host with
// no path and stays whole: "http://example.org" gives "example.org".
std::u16string ExtractHTTPPath(std::u16string_view s);

// The words of two or more characters in `text` that a separator of WordSeps
// closes, not counting text inside tags. `inTag` tells on entry whether the
// text starts inside a tag and on exit whether it ends in one, so a document
// can be counted line by line with one variable. With `skipNumbers`, words
// that start with a digit don't count. A word the text's end cuts off
// doesn't count either.
int CountWordsHTML(std::u16string_view text, bool skipNumbers, bool& inTag);

}  // namespace Zyn_htmlsupport

#endif  // ZYN_HTML_URLTOOLS_H_
