// zyn/stringl/words.h
//
// Taking strings apart: by word (over the global WordSeps), by delimiter, by
// line, by lookup in a list, and small codecs and tag readers for text held in
// memory. Positions are 1-based, 0 means "not found"; nothing here throws.

#ifndef ZYN_STRINGL_WORDS_H_
#define ZYN_STRINGL_WORDS_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Zyn_stringl {

// The result of Tokenize, first token at index 0.
using TOpenStringArray = std::vector<std::u16string>;

// Tokenize never gives more tokens than this; the last one takes the rest.
inline constexpr int kMaxTokens = 1000;

// --- Words ------------------------------------------------------------------

// The word that covers position `pos`: the run of non-separators around it,
// or the separator itself if `pos` stands on one. Empty for a `pos` outside
// the string. The second form also gives where it stands (0 and 0 if empty).
std::u16string ExtractWordFromString(std::u16string_view s, int pos);
std::u16string ExtractWordFromString(std::u16string_view s, int pos, int& wordStart, int& wordEnd);

// The number of words of two or more characters that a separator closes:
// "one two" gives 1, "one two." gives 2.
int CountWords(std::u16string_view s);

// --- Fields and tokens ------------------------------------------------------

// Field `index` (from 0) of `s` cut at `delimiter`; `s` counts only up to its
// first character of code 0. Empty for a negative or missing index, and for an
// empty field ("a;;c" has an empty field 1). An empty delimiter gives `s` as
// field 0 and nothing else.
std::u16string ExtractSubString(std::u16string_view s, int index, std::u16string_view delimiter);

// Cuts `s` at each `separator` into `tokens` and gives their number, at least
// 1 and at most kMaxTokens (the last token then holds the rest, separators
// included). An empty `s` or `separator` gives the one token `s`.
int Tokenize(std::u16string_view s, std::u16string_view separator, TOpenStringArray& tokens);

// As above, but a separator directly behind `escapeChar` does not cut. In each
// token a doubled `escapeChar` then becomes one, and `escapeChar` followed by
// `separator` becomes `separator` (both matched ignoring ASCII case). An
// empty `separator` gives the one token `s`, escapes and all.
int Tokenize(std::u16string_view s, std::u16string_view separator, char16_t escapeChar,
             TOpenStringArray& tokens);

// The next line of a multi-line string, read from `pos` (a `pos` below 1
// counts as 1), which is left behind the line end. `lineEnd` as for
// ReadLnStream: 0 LF, 1 CR, 2 either, 3 CR directly behind LF, 4 LF directly
// behind CR, any other: none. No character below 32 is kept in the line.
// `endOfString` becomes true when the string ran out before a line end.
std::u16string ReadLnString(std::u16string_view s, int& pos, bool& endOfString, int lineEnd);

// --- Searching and lookup ---------------------------------------------------

// Position of the `number`-th non-overlapping occurrence of `sub` at or behind
// `startAt` (below 1 counts as 1); 0 if there are fewer, if `number` is below 1
// or if `sub` is empty. `ignoreCase` folds ASCII letters only.
int NumberedPos(std::u16string_view sub, std::u16string_view s, int startAt, int number,
                bool ignoreCase);

// 1 + index of the first of the entries 0 to `high` of `list` equal to `s`;
// 0 if there is none. Entries behind the span's end are never read. With
// `caseSensitive` false both sides are folded to lower case (ASCII).
int StringIx(std::u16string_view s, std::span<const std::u16string> list, int high);
int StringIx(std::u16string_view s, bool caseSensitive, std::span<const std::u16string> list,
             int high);

// True if the longest run of capitals A-Z is at least 2 and longer than the
// count of characters a-z and 0-9: "NASA" and "ABCd" yes, "ABcd" and "Ab" no.
bool IsAbbreviation(std::u16string_view s);

// Resolves the escapes "\#hh" (one character of hexadecimal code hh, read as
// ScanHex reads it) and "\\" (one backslash). Any other backslash stays.
std::u16string ProcessHexChars(std::u16string_view s);

// --- Quoted names and parameters --------------------------------------------

// The states of ParseQuotedName.
enum TQuotedStrState : std::uint8_t { vsStart, vs1stQuote, vsQuote, vsNormal, vsEnd };

// Reads a name one character `c` at a time; start with an empty `name` and
// `state` vsStart. Leading blanks are skipped. A name that begins with `quote`
// runs to the closing `quote` and may hold blanks and doubled quotes (each
// giving one quote); any other name runs to the next blank. When the name is
// complete `state` becomes vsEnd and further characters change nothing. At
// the end of the input the name is complete in state vsQuote or vsNormal.
void ParseQuotedName(char16_t c, char16_t quote, std::u16string& name, TQuotedStrState& state);

// Parameter number `index` (from 1) of a list separated by `delimiter`, with
// blanks around it removed. A parameter that begins with `quote` runs to the
// closing quote and may hold the delimiter and doubled quotes; the quotes go.
// A missing or empty parameter, or an `index` below 1, gives `defaultValue`.
// ExtractParam(u"a, \"b,c\", d", 2, u',', u'"', u"-") == u"b,c"
std::u16string ExtractParam(std::u16string_view s, int index, char16_t delimiter, char16_t quote,
                            std::u16string_view defaultValue);

// --- uuencode ---------------------------------------------------------------

// The body of a classic uuencoded file for `s`, one byte per character (the
// low 8 bits of each code): lines of at most 45 bytes, each a length character
// and groups of four characters from " " + 1 to "`" (zero is written "`"),
// each line ended by LF, and a last line "`" of length zero.
std::u16string UUEncodeStr(std::u16string_view s);

// The bytes of uuencoded text, one character 0..255 per byte. Lines may end in
// LF or CR LF; "begin ..." lines are passed over, and a line of length zero or
// "end" ends the data. Characters outside the alphabet count as their low six
// bits after subtracting 32; a line shorter than its length character says
// gives the bytes its characters hold.
std::u16string UUDecodeStr(std::u16string_view s);

// --- Lines and tags in memory -----------------------------------------------

// Line and column (both from 1) of position `pos`. A line ends at LF, at CR,
// or at the pair CR LF; a line end belongs to the line it ends. A `pos` of
// length + 1 is the place behind the last character; any other `pos` outside
// the string gives 0 and 0.
void TextLineCoords(std::u16string_view s, int pos, int& line, int& column);

// The next tag of the string at or behind `pos`, read as ReadNextTagInStream
// reads a stream: comments "<!...>" are passed over, `attr` gets the text
// behind the name, `content` the text up to the matching closing tag (folded
// ASCII), and the result is the index of the name among the entries 0 to
// `high` of `tagList` (all in lower case), `high` for an unknown name. `pos` is left behind what
// was read. With no complete tag left the result is the lookup of the empty
// name and `pos` is length + 1.
int ReadNextTagInString(std::u16string_view s, int& pos, std::span<const std::u16string> tagList,
                        int high, std::u16string& attr, std::u16string& content);

// Finds the next tag at or behind `tagStart` without reading its content:
// `tagStart` and `tagEnd` become the positions of its "<" and ">", `attr` its
// attribute text and `isClosing` whether it is a closing tag "</name>". The
// result is the index of the name (without the "/") among the entries 0 to
// `high` of `tagList`, `high` for an unknown name. Comments "<!...>" are passed over. Without a
// complete tag the result is -1 and both positions are 0.
int DetectNextTagInString(std::u16string_view s, int& tagStart, int& tagEnd,
                          std::span<const std::u16string> tagList, int high, std::u16string& attr,
                          bool& isClosing);

}  // namespace Zyn_stringl

#endif  // ZYN_STRINGL_WORDS_H_
