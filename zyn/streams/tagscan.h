// zyn/streams/tagscan.h
//
// A light reader for the tagged text the library writes: it finds the next
// tag in a stream or text file, resolves its name against the caller's list
// and gives back its attribute text and raw content. It knows no nesting,
// entities or quoting inside tags. Also: attribute lookup, scanning for one
// tag, reading up to one of several texts, extraction of tags, and a
// search-and-replace over memory streams with replacement modifiers.

#ifndef ZYN_STREAMS_TAGSCAN_H_
#define ZYN_STREAMS_TAGSCAN_H_

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "zyn/platform/stream.h"
#include "zyn/platform/string_list.h"
#include "zyn/platform/textfile.h"

namespace Zyn_streams {

using zyn::platform::Textfile;
using zyn::platform::TMemoryStream;
using zyn::platform::TStream;
using zyn::platform::TStringList;

// Reads the next tag: skips to "<", takes the tag text up to the first ">",
// passes over "<!...>" tags, and splits name and attributes at the first
// blank (attributes stripped of blanks at both ends, case kept). A tag with
// "/>" has no content; otherwise, unless the name is empty or starts with
// "/", the content is read up to the closing tag of that name (ASCII case
// folded), which is consumed but not returned; without one, to the end.
// The result is the index of the folded name in `tagList` (entries in lower
// case, entries 0 to `high` are looked at), `high` if it isn't there. At the
// end of the source with no tag the name is empty. Never raises.
int ReadNextTagInStream(TStream& stream, std::span<const std::u16string> tagList, int high,
                        std::u16string& attr, std::u16string& content);
// The same over a text file open for reading; lets EInOutError through.
int ReadNextTagInTextFile(Textfile& file, std::span<const std::u16string> tagList, int high,
                          std::u16string& attr, std::u16string& content);

// The value of the attribute `name` (ASCII case-insensitive) in an attribute
// text such as `size=12 color="dark red"`, without quotes and with its case
// kept. "" if the name isn't there or a syntax error comes first.
std::u16string ScanForXMLAttrib(std::u16string_view attribs, std::u16string_view name);

// Reads tags from the position on until one named `tagName` (ASCII
// case-insensitive) opens; tags of other names are passed over without their
// content, so a tag nested in another one is found. On a hit: true, `attr`
// and `content` as ReadNextTagInStream gives them, the position behind the
// tag's end. Without one: false, both empty, the position at the end.
bool ScanStreamForXMLTag(TStream& stream, std::u16string_view tagName, std::u16string& attr,
                         std::u16string& content);

// Reads until any text of `tagList[0..high]` has been read (ASCII case
// folded; empty entries never match) and gives everything read, that text
// included, with the position right behind it; `index` is the entry's index.
// When two entries are complete at the same byte the lower index wins. None
// found: everything to the end, `index` -1.
std::u16string ReadStreamUntilTagList(TStream& stream, std::span<const std::u16string> tagList,
                                      int high, int& index);

// Reads `stream` from its position to the end, tag by tag, and appends to
// `dest` every tag whose name is in `tags` (ASCII case-insensitive) byte for
// byte as it stands: from its "<" through its closing tag, or its "/>", or
// the end of the source if it isn't closed. Other tags are passed over
// without their content, so listed tags nested in them are found.
void ExtractFromStream(TStream& stream, TMemoryStream& dest, const TStringList& tags);

// Asked for the text of a modifier that SearchAndReplace doesn't know; it
// gets the modifier's character as a string and sets `replacement`.
using TSRUnknownModifierEvent =
    std::function<void(std::u16string_view modifier, std::u16string& replacement)>;

// Copies all of `source` to `dest` (emptied first, left at position 0),
// replacing hits of `searchText` by `replaceText`. Text is one byte per
// character. `ignoreCase` folds ASCII letters. The search begins at the
// 1-based byte `startPos` (below 1 counts as 1) and stops after `maxCount`
// replacements (0 or less: no limit). In `replaceText`, `modifierMark`
// (empty: none) followed by one character is a modifier: "n" CR LF, "t" tab,
// "h" the hit as it stands in the source, "c" the number of this
// replacement, the mark's first character the mark itself; any other is
// given to `onUnknownModifier`, and without one stays as written. A mark at
// the very end stays. The number of replacements made; `source` keeps its
// position. An empty `searchText` replaces nothing.
int SearchAndReplace(TMemoryStream& source, TMemoryStream& dest, std::u16string_view searchText,
                     std::u16string_view replaceText, bool ignoreCase, int startPos, int maxCount,
                     std::u16string_view modifierMark,
                     const TSRUnknownModifierEvent& onUnknownModifier);

}  // namespace Zyn_streams

#endif  // ZYN_STREAMS_TAGSCAN_H_
