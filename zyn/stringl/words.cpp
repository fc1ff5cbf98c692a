#include "zyn/stringl/words.h"

#include <algorithm>
#include <cstddef>

#include "zyn/base/scanners.h"
#include "zyn/platform/casefold.h"
#include "zyn/stringl/stringl.h"

namespace Zyn_stringl {

namespace {

using zyn::platform::LowerCase;

constexpr char16_t kBlank = u' ';
constexpr char16_t kLF = 10;
constexpr char16_t kCR = 13;
constexpr std::size_t npos = std::u16string_view::npos;

bool IsWordSep(char16_t c) { return WordSeps.Contains(c); }

int ToPosition(std::size_t index) { return static_cast<int>(index) + 1; }

// 0-based index for a 1-based position, with positions below 1 counting as 1.
std::size_t ToIndex(int pos) { return pos < 1 ? 0 : static_cast<std::size_t>(pos) - 1; }

// The index of the `n`-th (from 1) non-overlapping occurrence of `sub` in `s`
// at or behind `from`, or npos.
std::size_t FindNth(std::u16string_view s, std::u16string_view sub, std::size_t from, int n) {
  std::size_t hit = npos;
  for (int found = 0; found < n; ++found) {
    hit = s.find(sub, from);
    if (hit == npos) return npos;
    from = hit + sub.size();
  }
  return hit;
}

// Cuts `s` at `separator` from the left; a hit for which `keeps` is true does
// not cut, and the search goes on one position behind its start.
template <typename KeepsSeparator>
int Split(std::u16string_view s, std::u16string_view separator, TOpenStringArray& tokens,
          KeepsSeparator keeps) {
  tokens.clear();
  if (s.empty() || separator.empty()) {
    tokens.emplace_back(s);
    return 1;
  }
  std::size_t token_start = 0;
  std::size_t search = 0;
  while (tokens.size() < static_cast<std::size_t>(kMaxTokens - 1)) {
    const std::size_t hit = s.find(separator, search);
    if (hit == npos) break;
    if (keeps(s, token_start, hit)) {
      search = hit + 1;
      continue;
    }
    tokens.emplace_back(s.substr(token_start, hit - token_start));
    token_start = search = hit + separator.size();
  }
  tokens.emplace_back(s.substr(token_start));
  return static_cast<int>(tokens.size());
}

// Whether a line is done at character `c` behind `previous` under `lineEnd`.
bool EndsLine(char16_t c, char16_t previous, int lineEnd) {
  switch (lineEnd) {
    case 0:
      return c == kLF;
    case 1:
      return c == kCR;
    case 2:
      return c == kLF || c == kCR;
    case 3:
      return c == kCR && previous == kLF;
    case 4:
      return c == kLF && previous == kCR;
    default:
      return false;
  }
}

std::u16string_view StripBlanks(std::u16string_view s) {
  const std::size_t first = s.find_first_not_of(kBlank);
  if (first == npos) return {};
  return s.substr(first, s.find_last_not_of(kBlank) - first + 1);
}

// The number of entries 0 to `high` that the list really has.
std::size_t UsableEntries(std::span<const std::u16string> list, int high) {
  return high < 0 ? 0 : std::min(list.size(), static_cast<std::size_t>(high) + 1);
}

// Index of the folded name among the entries 0 to `high` of a lower-case tag
// list, `high` if it isn't there.
int LookupTag(std::u16string_view name, std::span<const std::u16string> tagList, int high) {
  const std::u16string folded = LowerCase(name);
  const std::size_t count = UsableEntries(tagList, high);
  for (std::size_t i = 0; i < count; ++i) {
    if (tagList[i] == folded) return static_cast<int>(i);
  }
  return high;
}

// Index of the first occurrence of `needle` (lower case) in `s` at or behind
// `from`, comparing ASCII-folded.
std::size_t FindFolded(std::u16string_view s, std::u16string_view needle, std::size_t from) {
  if (from > s.size() || needle.size() > s.size() - from) return npos;
  const auto hit = std::search(
      s.begin() + static_cast<std::ptrdiff_t>(from), s.end(), needle.begin(), needle.end(),
      [](char16_t a, char16_t b) { return zyn::platform::LowCase(a) == b; });
  return hit == s.end() ? npos : static_cast<std::size_t>(hit - s.begin());
}

// One tag found in a string: the text between "<" and ">" and where it stands.
struct FoundTag {
  std::u16string_view text;  // without "<" and ">"
  std::size_t open = npos;   // index of "<"
  std::size_t close = npos;  // index of ">"
};

// The next tag at or behind index `from` that is not a comment or declaration
// ("<!...>", which ends at its first ">"); open == npos if none is complete.
FoundTag FindTag(std::u16string_view s, std::size_t from) {
  while (from < s.size()) {
    const std::size_t open = s.find(u'<', from);
    if (open == npos) break;
    const std::size_t close = s.find(u'>', open + 1);
    if (close == npos) break;
    const std::u16string_view text = s.substr(open + 1, close - open - 1);
    if (text.empty() || text.front() != u'!') return {text, open, close};
    from = close + 1;
  }
  return {};
}

// Splits the text of a tag into its name and its attribute text: the name
// stands in front of the first blank, the attributes behind it, without a
// closing "/" of an empty tag.
struct TagParts {
  std::u16string_view name;
  std::u16string_view attr;
  bool empty_tag = false;  // "<name .../>"
};

TagParts SplitTag(std::u16string_view text) {
  TagParts parts;
  if (text.ends_with(u'/')) {
    parts.empty_tag = true;
    text.remove_suffix(1);
  }
  const std::size_t blank = text.find(kBlank);
  parts.name = text.substr(0, blank);
  if (blank != npos) parts.attr = StripBlanks(text.substr(blank + 1));
  return parts;
}

constexpr int UUValue(char16_t c) { return (c - 32) & 0x3F; }
constexpr char16_t UUChar(int value) {
  return value == 0 ? u'`' : static_cast<char16_t>(value + 32);
}
constexpr int kUULineBytes = 45;

}  // namespace

// --- Words ------------------------------------------------------------------

std::u16string ExtractWordFromString(std::u16string_view s, int pos) {
  int word_start = 0;
  int word_end = 0;
  return ExtractWordFromString(s, pos, word_start, word_end);
}

std::u16string ExtractWordFromString(std::u16string_view s, int pos, int& wordStart, int& wordEnd) {
  wordStart = 0;
  wordEnd = 0;
  if (pos < 1 || pos > static_cast<int>(s.size())) return {};
  const std::size_t at = ToIndex(pos);
  std::size_t first = at;
  std::size_t last = at;
  if (!IsWordSep(s[at])) {
    while (first > 0 && !IsWordSep(s[first - 1])) --first;
    while (last + 1 < s.size() && !IsWordSep(s[last + 1])) ++last;
  }
  wordStart = ToPosition(first);
  wordEnd = ToPosition(last);
  return std::u16string(s.substr(first, last - first + 1));
}

int CountWords(std::u16string_view s) {
  int words = 0;
  int run = 0;
  for (char16_t c : s) {
    if (!IsWordSep(c)) {
      ++run;
      continue;
    }
    if (run >= 2) ++words;
    run = 0;
  }
  return words;
}

// --- Fields and tokens ------------------------------------------------------

std::u16string ExtractSubString(std::u16string_view s, int index, std::u16string_view delimiter) {
  s = s.substr(0, s.find(u'\0'));
  if (index < 0 || s.empty()) return {};
  if (delimiter.empty()) return index == 0 ? std::u16string(s) : std::u16string();
  std::size_t field = 0;
  if (index == 0) {
    if (delimiter.size() == 1 && s.front() == delimiter.front()) return {};
  } else {
    const std::size_t hit = FindNth(s, delimiter, 0, index);
    if (hit == npos || hit + delimiter.size() >= s.size()) return {};
    field = hit + delimiter.size();
  }
  const std::size_t end = s.find(delimiter, field + 1);
  const std::u16string_view text = s.substr(field, end == npos ? npos : end - field);
  if (text.size() >= delimiter.size() &&
      zyn::platform::AnsiStrIComp(text.substr(0, delimiter.size()), delimiter) == 0) {
    return {};
  }
  return std::u16string(text);
}

int Tokenize(std::u16string_view s, std::u16string_view separator, TOpenStringArray& tokens) {
  return Split(s, separator, tokens,
               [](std::u16string_view, std::size_t, std::size_t) { return false; });
}

int Tokenize(std::u16string_view s, std::u16string_view separator, char16_t escapeChar,
             TOpenStringArray& tokens) {
  // Nothing cuts, so nothing was escaped: the one token is `s` as it stands.
  if (separator.empty()) return Tokenize(s, separator, tokens);
  const int count =
      Split(s, separator, tokens,
            [escapeChar](std::u16string_view text, std::size_t token_start, std::size_t hit) {
              return hit > token_start && text[hit - 1] == escapeChar;
            });
  const std::u16string escape(1, escapeChar);
  const std::u16string doubled(2, escapeChar);
  const std::u16string escaped_separator = escape + std::u16string(separator);
  for (std::u16string& token : tokens) {
    token = ReplaceStringInString(token, doubled, escape, true);
    token = ReplaceStringInString(token, escaped_separator, separator, true);
  }
  return count;
}

std::u16string ReadLnString(std::u16string_view s, int& pos, bool& endOfString, int lineEnd) {
  endOfString = false;
  std::u16string line;
  std::size_t i = ToIndex(pos);
  char16_t previous = 0;
  for (;;) {
    if (i >= s.size()) {
      endOfString = true;
      break;
    }
    const char16_t c = s[i++];
    if (c >= 32) {
      line.push_back(c);
    } else if (EndsLine(c, previous, lineEnd)) {
      break;
    }
    previous = c;
  }
  pos = ToPosition(i);
  return line;
}

// --- Searching and lookup ---------------------------------------------------

int NumberedPos(std::u16string_view sub, std::u16string_view s, int startAt, int number,
                bool ignoreCase) {
  if (number < 1 || sub.empty()) return 0;
  const std::size_t from = ToIndex(startAt);
  if (from >= s.size()) return 0;
  std::size_t hit;
  if (ignoreCase) {
    hit = FindNth(LowerCase(s), LowerCase(sub), from, number);
  } else {
    hit = FindNth(s, sub, from, number);
  }
  return hit == npos ? 0 : ToPosition(hit);
}

int StringIx(std::u16string_view s, std::span<const std::u16string> list, int high) {
  list = list.first(UsableEntries(list, high));
  const auto it = std::find(list.begin(), list.end(), s);
  return it == list.end() ? 0 : static_cast<int>(it - list.begin()) + 1;
}

int StringIx(std::u16string_view s, bool caseSensitive, std::span<const std::u16string> list,
             int high) {
  if (caseSensitive) return StringIx(s, list, high);
  const std::u16string folded = LowerCase(s);
  const std::size_t count = UsableEntries(list, high);
  for (std::size_t i = 0; i < count; ++i) {
    if (LowerCase(list[i]) == folded) return static_cast<int>(i) + 1;
  }
  return 0;
}

bool IsAbbreviation(std::u16string_view s) {
  int max_run = 0;
  int run = 0;
  int others = 0;
  for (char16_t c : s) {
    if (c >= u'A' && c <= u'Z') {
      max_run = std::max(max_run, ++run);
      continue;
    }
    run = 0;
    if ((c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9')) ++others;
  }
  return max_run >= 2 && others < max_run;
}

std::u16string ProcessHexChars(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size());
  std::size_t i = 0;
  while (i < s.size()) {
    const char16_t c = s[i];
    if (c != u'\\' || i + 1 == s.size()) {
      out.push_back(c);
      ++i;
    } else if (s[i + 1] == u'#') {
      int hex_pos = 1;
      const std::u16string_view digits = s.substr(i + 2, 2);
      out.push_back(static_cast<char16_t>(zyn::internal::ScanHex(digits, hex_pos) & 0xFFFF));
      i += 2 + digits.size();
    } else if (s[i + 1] == u'\\') {
      out.push_back(u'\\');
      i += 2;
    } else {
      out.push_back(c);
      ++i;
    }
  }
  return out;
}

// --- Quoted names and parameters --------------------------------------------

void ParseQuotedName(char16_t c, char16_t quote, std::u16string& name, TQuotedStrState& state) {
  switch (state) {
    case vsStart:
      if (c == quote) {
        state = vs1stQuote;
      } else if (c != kBlank) {
        name.push_back(c);
        state = vsNormal;
      }
      break;
    case vs1stQuote:
      if (c == quote) {
        state = vsQuote;
      } else {
        name.push_back(c);
      }
      break;
    case vsQuote:  // a quote inside: the closing one, or the first of a pair
      if (c == quote) {
        name.push_back(c);
        state = vs1stQuote;
      } else {
        state = vsEnd;
      }
      break;
    case vsNormal:
      if (c == kBlank) {
        state = vsEnd;
      } else {
        name.push_back(c);
      }
      break;
    case vsEnd:
      break;
  }
}

std::u16string ExtractParam(std::u16string_view s, int index, char16_t delimiter, char16_t quote,
                            std::u16string_view defaultValue) {
  if (index < 1) return std::u16string(defaultValue);
  std::size_t i = 0;
  for (int param = 1;; ++param) {
    while (i < s.size() && s[i] == kBlank && s[i] != delimiter) ++i;
    std::u16string value;
    if (i < s.size() && s[i] == quote) {
      for (++i; i < s.size(); ++i) {
        if (s[i] != quote) {
          value.push_back(s[i]);
        } else if (i + 1 < s.size() && s[i + 1] == quote) {
          value.push_back(quote);
          ++i;
        } else {
          ++i;
          break;
        }
      }
      while (i < s.size() && s[i] != delimiter) ++i;  // text behind the closing quote
    } else {
      const std::size_t end = std::min(s.find(delimiter, i), s.size());
      value = StripBlanks(s.substr(i, end - i));
      i = end;
    }
    if (param == index) return value.empty() ? std::u16string(defaultValue) : value;
    if (i >= s.size()) return std::u16string(defaultValue);
    ++i;  // the delimiter
  }
}

// --- uuencode ---------------------------------------------------------------

std::u16string UUEncodeStr(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size() / 3 * 4 + s.size() / kUULineBytes * 2 + 8);
  for (std::size_t line = 0; line < s.size(); line += kUULineBytes) {
    const std::size_t count = std::min<std::size_t>(kUULineBytes, s.size() - line);
    out.push_back(UUChar(static_cast<int>(count)));
    for (std::size_t g = 0; g < count; g += 3) {
      std::uint32_t bits = 0;
      for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t at = line + g + k;
        const std::uint32_t byte = g + k < count ? (s[at] & 0xFFu) : 0u;
        bits = (bits << 8) | byte;
      }
      for (int shift = 18; shift >= 0; shift -= 6) out.push_back(UUChar((bits >> shift) & 0x3F));
    }
    out.push_back(kLF);
  }
  out.push_back(UUChar(0));
  out.push_back(kLF);
  return out;
}

std::u16string UUDecodeStr(std::u16string_view s) {
  std::u16string out;
  std::size_t next = 0;
  while (next < s.size()) {
    const std::size_t end = std::min(s.find(kLF, next), s.size());
    std::u16string_view line = s.substr(next, end - next);
    next = end + 1;
    if (line.ends_with(kCR)) line.remove_suffix(1);
    if (line.empty() || line.starts_with(u"begin ")) continue;
    if (line == u"end") break;
    const std::size_t count = static_cast<std::size_t>(UUValue(line.front()));
    if (count == 0) break;
    line.remove_prefix(1);
    std::size_t produced = 0;
    for (std::size_t g = 0; g < line.size() && produced < count; g += 4) {
      std::uint32_t bits = 0;
      const std::size_t have = std::min<std::size_t>(4, line.size() - g);
      for (std::size_t k = 0; k < 4; ++k) {
        bits = (bits << 6) | static_cast<std::uint32_t>(k < have ? UUValue(line[g + k]) : 0);
      }
      // A short group holds the bytes its characters fill completely.
      const std::size_t bytes = have == 4 ? 3 : have * 6 / 8;
      for (std::size_t k = 0; k < bytes && produced < count; ++k, ++produced) {
        out.push_back(static_cast<char16_t>((bits >> (16 - 8 * k)) & 0xFF));
      }
    }
  }
  return out;
}

// --- Lines and tags in memory -----------------------------------------------

void TextLineCoords(std::u16string_view s, int pos, int& line, int& column) {
  line = 0;
  column = 0;
  if (pos < 1 || pos > static_cast<int>(s.size()) + 1) return;
  const std::size_t target = ToIndex(pos);
  line = 1;
  std::size_t line_start = 0;
  for (std::size_t i = 0; i < target; ++i) {
    const bool ends = s[i] == kLF || (s[i] == kCR && (i + 1 >= s.size() || s[i + 1] != kLF));
    if (ends) {
      ++line;
      line_start = i + 1;
    }
  }
  column = ToPosition(target - line_start);
}

int ReadNextTagInString(std::u16string_view s, int& pos, std::span<const std::u16string> tagList,
                        int high, std::u16string& attr, std::u16string& content) {
  attr.clear();
  content.clear();
  const FoundTag tag = FindTag(s, ToIndex(pos));
  if (tag.open == npos) {
    pos = ToPosition(s.size());
    return LookupTag(u"", tagList, high);
  }
  const TagParts parts = SplitTag(tag.text);
  attr = parts.attr;
  std::size_t behind = tag.close + 1;
  const std::u16string name = LowerCase(parts.name);
  if (!parts.empty_tag && !name.empty() && name.front() != u'/') {
    const std::u16string closing = u"</" + name + u">";
    const std::size_t hit = FindFolded(s, closing, behind);
    const std::size_t content_end = hit == npos ? s.size() : hit;
    content = s.substr(behind, content_end - behind);
    behind = hit == npos ? s.size() : hit + closing.size();
  }
  pos = ToPosition(behind);
  return LookupTag(name, tagList, high);
}

int DetectNextTagInString(std::u16string_view s, int& tagStart, int& tagEnd,
                          std::span<const std::u16string> tagList, int high, std::u16string& attr,
                          bool& isClosing) {
  attr.clear();
  isClosing = false;
  const FoundTag tag = FindTag(s, ToIndex(tagStart));
  if (tag.open == npos) {
    tagStart = 0;
    tagEnd = 0;
    return -1;
  }
  tagStart = ToPosition(tag.open);
  tagEnd = ToPosition(tag.close);
  TagParts parts = SplitTag(tag.text);
  attr = parts.attr;
  if (parts.name.starts_with(u'/')) {
    isClosing = true;
    parts.name.remove_prefix(1);
  }
  return LookupTag(parts.name, tagList, high);
}

}  // namespace Zyn_stringl
