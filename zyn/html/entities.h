// zyn/html/entities.h
//
// Character references of HTML: writing a character as a named reference,
// reading one back, escaping text for HTML and resolving the references of
// a text. The names are the full HTML5 table; nothing here throws.

#ifndef ZYN_HTML_ENTITIES_H_
#define ZYN_HTML_ENTITIES_H_

#include <string>
#include <string_view>

namespace Zyn_htmlsupport {

// The reference HTML5 names `c` by, with "&" and ";" ("&auml;" for U+00E4,
// "&lt;" for "<"; the HTML 4 name where there is one, else the shortest).
// A character without a name gives its decimal reference ("&#97;" for "a").
// No reference stands for U+0000, U+0080 to U+009F (parsers read those
// numbers as Windows-1252) or a lone surrogate: they give themselves.
std::u16string AnsiToHTMLEntity(char16_t c);

// The character a single reference stands for: a name from the HTML5 table
// or a decimal or hexadecimal number, with or without the "&" in front and
// the ";" behind ("&auml;", "auml", "#228", "&#xE4;" all give U+00E4). 0 for
// anything else, and for a reference whose value isn't one UTF-16 unit.
char16_t HTMLEntityToAnsi(std::u16string_view entity);

// `s` made safe for HTML text and for attribute values in double quotes:
// "&", "<", ">" and '"' become "&amp;", "&lt;", "&gt;", "&quot;"; all other
// characters stay (pages are UTF-8). ResolveHTMLEntities undoes it for
// every text.
std::u16string MakeStringHTMLCompatible(std::u16string_view s);

// Replaces the character references of `s` as an HTML5 parser does in text:
// named references from the full table (the longest name that matches; the
// old names such as "&copy" also without ";"), and decimal and hexadecimal
// references with or without ";". A number that is 0, a surrogate or beyond
// U+10FFFF gives U+FFFD, one of 0x80 to 0x9F the Windows-1252 character. An
// unknown or malformed reference ("&foo;", "&#;", "&#x;") stays as it is.
std::u16string ResolveHTMLEntities(std::u16string_view s);

}  // namespace Zyn_htmlsupport

#endif  // ZYN_HTML_ENTITIES_H_
