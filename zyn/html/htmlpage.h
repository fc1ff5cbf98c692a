// zyn/html/htmlpage.h
//
// Whole pages: the frame of an HTML5 page around a body of the caller's, and
// the body of a page as source text or as plain text. The body tools stand on
// an HTML5 parser, so they see a page as a browser does; nothing here throws
// but std::bad_alloc.

#ifndef ZYN_HTML_HTMLPAGE_H_
#define ZYN_HTML_HTMLPAGE_H_

#include <string>
#include <string_view>

namespace Zyn_htmlsupport {

// The start of a valid HTML5 page, lines ended by CR LF: the doctype, <html>,
// and a head with <meta charset="utf-8">, a viewport line and:
//   Title       the <title>; escaped here. An empty title gives "Untitled",
//               since a page must have a title with text.
//   StyleSheet  URL of a style sheet to link; empty links none.
//   Description text of <meta name="description">; empty writes none.
//   Language    the page's language for <html lang>, such as "en"; empty
//               writes no lang attribute.
//   OpenBody    true ends the text with "<body>"; false leaves the body's
//               start tag to the caller (say, to give it attributes).
// Every text is escaped with MakeStringHTMLCompatible.
std::u16string DefaultHTMLHead(std::u16string_view Title, std::u16string_view StyleSheet,
                               std::u16string_view Description, std::u16string_view Language,
                               bool OpenBody);

// The end of the page DefaultHTMLHead starts: "</body>" if `CloseBody`, then
// "</html>", each on a line ended by CR LF.
std::u16string DefaultHTMLFoot(bool CloseBody);

// The source text of the body of an HTML document, as the parser sees it:
// from behind the <body> start tag to the start of </body>, both left out.
// Where the document leaves tags out, the body runs from its first to its
// last node ("<title>t</title><p>x" gives "<p>x"); a document whose body
// holds nothing, or that has none (a frameset), gives "".
std::u16string ExtractHTMLBody(std::u16string_view HTML);

// The text a browser shows of the body of `HTML` (a whole page, or a body as
// ExtractHTMLBody gives it), as the DOM's innerText gives it: scripts,
// styles, comments, hidden elements, <input> and <textarea> give nothing (a
// <select> lists its options, one a line); runs of
// white space become one blank and vanish at the ends of lines; <br> gives
// one `LineBreak`, a block element (<div>, <h1>, <li>, ...) starts and ends
// a line, a <p> leaves an empty line around it; table cells are separated by
// a tab and rows by a `LineBreak`; <pre> keeps its white space, each of its
// line ends a `LineBreak`. Character references are resolved.
std::u16string ConvertHTMLBodyToText(std::u16string_view HTML, char16_t LineBreak);

}  // namespace Zyn_htmlsupport

#endif  // ZYN_HTML_HTMLPAGE_H_
