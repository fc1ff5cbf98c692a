#include "zyn/streams/tagscan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "zyn/base/scanners.h"
#include "zyn/streams/folded_blocks.h"

namespace Zyn_streams {
namespace {

using streams_detail::FoldAscii;
using streams_detail::kReadBlock;
using streams_detail::NewHitsFrom;
using streams_detail::ReadFoldedBlock;

std::u16string Fold(std::u16string_view s) {
  std::u16string folded(s);
  std::transform(folded.begin(), folded.end(), folded.begin(), FoldAscii);
  return folded;
}

std::u16string StripBlanks(std::u16string_view s) {
  const std::size_t first = s.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  return std::u16string(s.substr(first, s.find_last_not_of(u' ') - first + 1));
}

// A source of characters: a stream gives its bytes, widened. The bytes since
// the last Mark() are kept when `record` is set.
class StreamSource {
 public:
  explicit StreamSource(TStream& stream, std::string* record = nullptr)
      : stream_(stream), record_(record) {}
  bool Next(char16_t& c) {
    std::uint8_t b;
    if (!stream_.ReadByte(b)) return false;
    if (record_ != nullptr) record_->push_back(static_cast<char>(b));
    c = b;
    return true;
  }
  void Mark() {
    if (record_ != nullptr) record_->clear();
  }

 private:
  TStream& stream_;
  std::string* record_;
};

// A text file open for reading; its end test comes before every read.
class TextfileSource {
 public:
  explicit TextfileSource(Textfile& file) : file_(file) {}
  bool Next(char16_t& c) {
    if (file_.Eof()) return false;
    c = file_.ReadChar();
    return true;
  }
  void Mark() {}

 private:
  Textfile& file_;
};

struct TagHeader {
  bool opened = false;  // a "<" was found
  std::u16string name;  // folded
  std::u16string attr;
  bool has_content = false;
};

// Finds the next tag that isn't a "<!...>" one and splits its text.
template <typename Source>
TagHeader ReadTagHeader(Source& source) {
  TagHeader header;
  std::u16string tag;
  char16_t c;
  while (true) {
    header.opened = false;
    while (source.Next(c)) {
      if (c == u'<') {
        header.opened = true;
        break;
      }
    }
    if (!header.opened) break;
    source.Mark();
    while (source.Next(c)) {
      tag.push_back(c);
      if (c == u'>') break;
    }
    if (tag.empty() || tag[0] != u'!') break;
    tag.clear();
  }

  std::u16string_view text(tag);
  const std::size_t blank = text.find(u' ');
  if (const std::size_t close = text.find(u"/>"); close != std::u16string_view::npos) {
    if (blank != std::u16string_view::npos && blank < close) {
      header.attr = StripBlanks(text.substr(blank + 1, close - blank - 1));
      header.name = Fold(text.substr(0, blank));
    } else {
      header.name = Fold(text.substr(0, close));
    }
    return header;
  }
  if (!text.empty()) text.remove_suffix(1);
  if (blank != std::u16string_view::npos && blank < text.size()) {
    header.attr = StripBlanks(text.substr(blank + 1));
    header.name = Fold(text.substr(0, blank));
  } else {
    header.name = Fold(text);
  }
  header.has_content = !header.name.empty() && header.name[0] != u'/';
  return header;
}

// Appends characters to `content` up to the closing tag of `name`, which is
// consumed and cut off again. A closing tag ends in ">", so it is enough to
// look at the end of the content after each ">".
template <typename Source>
void ReadContent(Source& source, std::u16string_view name, std::u16string& content) {
  const std::u16string closing = u"</" + std::u16string(name) + u">";
  char16_t c;
  while (source.Next(c)) {
    content.push_back(c);
    if (c != u'>' || content.size() < closing.size()) continue;
    const std::size_t at = content.size() - closing.size();
    if (std::equal(closing.begin(), closing.end(),
                   content.begin() + static_cast<std::ptrdiff_t>(at),
                   [](char16_t a, char16_t b) { return a == FoldAscii(b); })) {
      content.resize(at);
      return;
    }
  }
}

int Lookup(std::u16string_view folded_name, std::span<const std::u16string> tagList, int high) {
  const int last = std::min(high, static_cast<int>(tagList.size()) - 1);
  for (int i = 0; i <= last; ++i) {
    if (tagList[static_cast<std::size_t>(i)] == folded_name) return i;
  }
  return high;
}

template <typename Source>
int ReadNextTag(Source& source, std::span<const std::u16string> tagList, int high,
                std::u16string& attr, std::u16string& content) {
  attr.clear();
  content.clear();
  TagHeader header = ReadTagHeader(source);
  attr = std::move(header.attr);
  const int index = Lookup(header.name, tagList, high);
  if (header.has_content) ReadContent(source, header.name, content);
  return index;
}

// The modifiers SearchAndReplace knows.
enum class Piece : std::uint8_t { kText, kLineEnd, kTab, kHit, kCount, kUnknown };

struct ReplacePart {
  Piece kind;
  std::u16string text;  // kText: the text; kUnknown: the modifier as written and its character
  char16_t modifier = 0;
};

std::vector<ReplacePart> ParseReplacement(std::u16string_view replace, std::u16string_view mark) {
  std::vector<ReplacePart> parts;
  auto literal = [&parts](std::u16string_view s) {
    if (parts.empty() || parts.back().kind != Piece::kText) parts.push_back({Piece::kText, {}});
    parts.back().text.append(s);
  };
  std::size_t i = 0;
  while (i < replace.size()) {
    if (mark.empty() || replace.substr(i, mark.size()) != mark ||
        i + mark.size() >= replace.size()) {
      literal(replace.substr(i, 1));
      ++i;
      continue;
    }
    const char16_t m = replace[i + mark.size()];
    const std::u16string_view written = replace.substr(i, mark.size() + 1);
    i += mark.size() + 1;
    if (m == mark[0]) {
      literal(mark);
    } else if (m == u'n') {
      parts.push_back({Piece::kLineEnd, {}});
    } else if (m == u't') {
      parts.push_back({Piece::kTab, {}});
    } else if (m == u'h') {
      parts.push_back({Piece::kHit, {}});
    } else if (m == u'c') {
      parts.push_back({Piece::kCount, {}});
    } else {
      parts.push_back({Piece::kUnknown, std::u16string(written), m});
    }
  }
  return parts;
}

void AppendText(std::vector<std::uint8_t>& out, std::u16string_view s) {
  for (char16_t c : s) out.push_back(static_cast<std::uint8_t>(c));
}

}  // namespace

int ReadNextTagInStream(TStream& stream, std::span<const std::u16string> tagList, int high,
                        std::u16string& attr, std::u16string& content) {
  StreamSource source(stream);
  return ReadNextTag(source, tagList, high, attr, content);
}

int ReadNextTagInTextFile(Textfile& file, std::span<const std::u16string> tagList, int high,
                          std::u16string& attr, std::u16string& content) {
  TextfileSource source(file);
  return ReadNextTag(source, tagList, high, attr, content);
}

std::u16string ScanForXMLAttrib(std::u16string_view attribs, std::u16string_view name) {
  return zyn::internal::ScanForXMLAttrib(attribs, name);
}

bool ScanStreamForXMLTag(TStream& stream, std::u16string_view tagName, std::u16string& attr,
                         std::u16string& content) {
  attr.clear();
  content.clear();
  const std::u16string wanted = Fold(tagName);
  StreamSource source(stream);
  while (true) {
    TagHeader header = ReadTagHeader(source);
    if (!header.opened) return false;
    if (header.name != wanted) continue;
    attr = std::move(header.attr);
    if (header.has_content) ReadContent(source, header.name, content);
    return true;
  }
}

std::u16string ReadStreamUntilTagList(TStream& stream, std::span<const std::u16string> tagList,
                                      int high, int& index) {
  index = -1;
  const int last = std::min(high, static_cast<int>(tagList.size()) - 1);
  std::vector<std::u16string> folded_tags;
  for (int i = 0; i <= last; ++i) folded_tags.push_back(Fold(tagList[static_cast<std::size_t>(i)]));

  const std::int64_t start = stream.Position();
  std::u16string buffer;
  std::u16string folded;
  while (true) {
    const std::size_t searched = folded.size();
    const int n = ReadFoldedBlock(stream, buffer, folded);
    // The entry whose first hit ends first; a tie goes to the lower index.
    std::size_t best_end = std::u16string::npos;
    for (std::size_t i = 0; i < folded_tags.size(); ++i) {
      const std::u16string& tag = folded_tags[i];
      if (tag.empty()) continue;
      const std::size_t hit = folded.find(tag, NewHitsFrom(searched, tag.size()));
      if (hit != std::u16string::npos && hit + tag.size() < best_end) {
        best_end = hit + tag.size();
        index = static_cast<int>(i);
      }
    }
    if (index >= 0) {
      buffer.resize(best_end);
      stream.SetPosition(start + static_cast<std::int64_t>(best_end));
      return buffer;
    }
    if (n < kReadBlock) return buffer;
  }
}

void ExtractFromStream(TStream& stream, TMemoryStream& dest, const TStringList& tags) {
  std::vector<std::u16string> wanted;
  for (const std::u16string& tag : tags) wanted.push_back(Fold(tag));
  std::string raw;
  StreamSource source(stream, &raw);
  std::u16string content;
  while (true) {
    const TagHeader header = ReadTagHeader(source);
    if (!header.opened) return;
    if (std::find(wanted.begin(), wanted.end(), header.name) == wanted.end()) continue;
    content.clear();
    if (header.has_content) ReadContent(source, header.name, content);
    const std::uint8_t open = '<';
    dest.WriteBuffer(&open, 1);
    dest.WriteBuffer(raw.data(), static_cast<int>(raw.size()));
  }
}

int SearchAndReplace(TMemoryStream& source, TMemoryStream& dest, std::u16string_view searchText,
                     std::u16string_view replaceText, bool ignoreCase, int startPos, int maxCount,
                     std::u16string_view modifierMark,
                     const TSRUnknownModifierEvent& onUnknownModifier) {
  const auto input = source.Memory();
  std::vector<std::uint8_t> out;
  out.reserve(input.size());
  std::vector<std::uint8_t> pattern;
  AppendText(pattern, searchText);
  const std::vector<ReplacePart> parts = ParseReplacement(replaceText, modifierMark);
  auto fold = [ignoreCase](std::uint8_t b) -> std::uint8_t {
    return (ignoreCase && b >= 'A' && b <= 'Z') ? b + 32 : b;
  };

  const std::size_t begin =
      std::min(static_cast<std::size_t>(std::max(startPos, 1) - 1), input.size());
  out.insert(out.end(), input.begin(), input.begin() + static_cast<std::ptrdiff_t>(begin));
  int count = 0;
  auto at = input.begin() + static_cast<std::ptrdiff_t>(begin);
  const std::boyer_moore_horspool_searcher searcher(
      pattern.begin(), pattern.end(), [&fold](std::uint8_t b) { return std::hash<int>{}(fold(b)); },
      [&fold](std::uint8_t a, std::uint8_t b) { return fold(a) == fold(b); });
  while (!pattern.empty() && (maxCount <= 0 || count < maxCount)) {
    const auto [hit, hit_end] = searcher(at, input.end());
    if (hit == input.end()) break;
    out.insert(out.end(), at, hit);
    ++count;
    for (const ReplacePart& part : parts) {
      switch (part.kind) {
        case Piece::kText:
          AppendText(out, part.text);
          break;
        case Piece::kLineEnd:
          AppendText(out, u"\r\n");
          break;
        case Piece::kTab:
          AppendText(out, u"\t");
          break;
        case Piece::kHit:
          out.insert(out.end(), hit, hit_end);
          break;
        case Piece::kCount: {
          const std::string digits = std::to_string(count);
          out.insert(out.end(), digits.begin(), digits.end());
          break;
        }
        case Piece::kUnknown: {
          if (!onUnknownModifier) {
            AppendText(out, part.text);
            break;
          }
          std::u16string replacement;
          onUnknownModifier(std::u16string_view(&part.modifier, 1), replacement);
          AppendText(out, replacement);
          break;
        }
      }
    }
    at = hit_end;
  }
  out.insert(out.end(), at, input.end());

  dest.Clear();
  dest.SetSize(static_cast<std::int64_t>(out.size()));
  std::copy(out.begin(), out.end(), dest.Memory().begin());
  dest.SetPosition(0);
  return count;
}

}  // namespace Zyn_streams
