// The XML-like block of TStringArray (see docs/stringarray_xml.md):
//
//   <!-- TStringArray / Zynforge -->
//   <strarray sig="Zynforge" vers="1.0" id="prices">
//     <numcols val=2 />
//     <numrows val=3 />
//     <cell col=1 row=1>a&#60;b</cell>
//   </strarray>
//
// Cell texts are written in printable ASCII only, every other byte and the
// characters < > & " as "&#<decimal byte>;", so any text survives whatever
// encoding the file has and can never close its tag early.

#include <algorithm>
#include <string>
#include <vector>

#include "zyn/dstruct/stringarray.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/val.h"
#include "zyn/stringl/words.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::LowerCase;

constexpr std::u16string_view kStartTag = u"<strarray";
constexpr std::u16string_view kEndTag = u"</strarray";
constexpr std::u16string_view kSignature = u"zynforge";

// The words of a stored table, with its closing tag; "dummy" stands for any
// other tag.
const std::u16string kXMLTags[] = {u"numcols", u"numrows", u"cell", u"/strarray", u"dummy"};
enum XMLTag { kNumCols, kNumRows, kCell, kEndStrArray, kDummy };

// A block claiming more cells than this is taken as damaged rather than
// allocated: (columns + 1) * rows words of 4 bytes, 256 MiB at most.
constexpr std::int64_t kMaxXMLCells = std::int64_t{1} << 26;

bool NeedsEscape(unsigned char b) {
  return b < 0x20 || b > 0x7E || b == '<' || b == '>' || b == '&' || b == '"';
}

std::u16string EscapeCell(std::string_view bytes) {
  std::u16string out;
  out.reserve(bytes.size());
  for (char ch : bytes) {
    const auto b = static_cast<unsigned char>(ch);
    if (!NeedsEscape(b)) {
      out += static_cast<char16_t>(b);
      continue;
    }
    out += u"&#";
    for (char d : std::to_string(b)) out += static_cast<char16_t>(d);
    out += u';';
  }
  return out;
}

// The cell byte a character of the file stands for: "&#n;" with n up to 255
// is byte n; a byte the file's encoding couldn't decode (U+DC80..U+DCFF) is
// that byte; anything else goes through the 8-bit code page.
std::string UnescapeCell(std::u16string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size() && out.size() < 255; ++i) {
    if (text[i] == u'&' && i + 2 < text.size() && text[i + 1] == u'#') {
      std::size_t j = i + 2;
      int value = 0;
      while (j < text.size() && j < i + 5 && text[j] >= u'0' && text[j] <= u'9') {
        value = value * 10 + (text[j] - u'0');
        ++j;
      }
      if (j > i + 2 && j < text.size() && text[j] == u';' && value <= 255) {
        out += static_cast<char>(value);
        i = j;
        continue;
      }
    }
    const char16_t c = text[i];
    out += (c >= 0xDC80 && c <= 0xDCFF) ? static_cast<char>(c - 0xDC00)
                                        : static_cast<char>(zyn::platform::AnsiFromChar(c));
  }
  return out;
}

// An identifier as it can stand between the quotes of the start tag.
std::u16string QuotableID(std::u16string_view id) {
  std::u16string out(id);
  for (auto& c : out) {
    if (c == u'"' || c == u'<' || c == u'>' || c < u' ') c = u'_';
  }
  return out;
}

std::u16string_view StripBlanks(std::u16string_view s) {
  while (!s.empty() && s.front() == u' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == u' ') s.remove_suffix(1);
  return s;
}

// The value of attribute `name` in attribute text of blank-separated
// name=value pairs, quotes removed; empty if absent.
std::u16string_view AttrValue(std::u16string_view attr, std::u16string_view name) {
  std::size_t i = 0;
  while (i < attr.size()) {
    while (i < attr.size() && attr[i] == u' ') ++i;
    const std::size_t start = i;
    while (i < attr.size() && attr[i] != u' ') ++i;
    const std::u16string_view pair = attr.substr(start, i - start);
    const std::size_t eq = pair.find(u'=');
    if (eq == std::u16string_view::npos) continue;
    if (LowerCase(pair.substr(0, eq)) != name) continue;
    std::u16string_view value = pair.substr(eq + 1);
    if (value.size() >= 2 && value.front() == u'"' && value.back() == u'"') {
      value = value.substr(1, value.size() - 2);
    }
    return value;
  }
  return {};
}

// The integer value of an attribute; 0 if absent or not a number.
int IntAttr(std::u16string_view attr, std::u16string_view name) {
  int value = 0;
  int code = 0;
  zyn::platform::Val(AttrValue(attr, name), value, code);
  return code == 0 ? value : 0;
}

// True if a lower-cased line starts the wanted table: "<strarray" and the
// signature anywhere, and for a non-empty `id` the quoted id attribute.
bool IsStartLine(std::u16string_view line, std::u16string_view id) {
  if (line.find(kStartTag) == std::u16string_view::npos) return false;
  if (line.find(kSignature) == std::u16string_view::npos) return false;
  if (id.empty()) return true;
  const std::size_t at = line.find(u"id=\"");
  if (at == std::u16string_view::npos) return false;
  const std::size_t from = at + 4;
  const std::size_t to = line.find(u'"', from);
  if (to == std::u16string_view::npos) return false;
  return StripBlanks(line.substr(from, to - from)) == id;
}

struct LoadedCell {
  int col;
  int row;
  std::string text;
};

}  // namespace

void TStringArray::WriteToOpenXMLFile(zyn::platform::Textfile& f, bool CreateHeader,
                                      std::u16string_view DataID) const {
  if (CreateHeader) f.WriteLn(u"<?xml version=\"1.0\"?>");
  f.WriteLn();
  f.WriteLn(u"<!-- TStringArray / Zynforge -->");
  f.WriteLn(u"<strarray sig=\"Zynforge\" vers=\"1.0\" id=\"" + QuotableID(DataID) + u"\">");
  f.WriteString(u"  <numcols val=");
  f.WriteInteger(FNCol);
  f.WriteLn(u" />");
  f.WriteString(u"  <numrows val=");
  f.WriteInteger(FNRow);
  f.WriteLn(u" />");
  for (int r = 1; r <= FNRow; ++r) {
    for (int c = 0; c <= FNCol; ++c) {
      const std::string_view text = CellBytes(c, r);
      if (text.empty()) continue;
      f.WriteString(u"  <cell col=");
      f.WriteInteger(c);
      f.WriteString(u" row=");
      f.WriteInteger(r);
      f.WriteString(u">");
      f.WriteString(EscapeCell(text));
      f.WriteLn(u"</cell>");
    }
  }
  f.WriteLn(u"</strarray>");
}

void TStringArray::SaveAsXMLFile(std::u16string_view FName, std::u16string_view DataID) const {
  zyn::platform::Textfile f;
  f.Assign(FName);
  f.Rewrite();
  WriteToOpenXMLFile(f, true, DataID);
  f.Close();
}

bool TStringArray::ReadFromOpenXMLFile(zyn::platform::Textfile& f, std::u16string_view DataID) {
  const std::u16string id = LowerCase(StripBlanks(DataID));
  // Find the start line; the rest of it may already hold tags.
  std::u16string body;
  bool started = false;
  while (!started && !f.Eof()) {
    const std::u16string line = f.ReadLn();
    const std::u16string folded = LowerCase(line);
    if (!IsStartLine(folded, id)) continue;
    started = true;
    const std::size_t tag_end = folded.find(u'>', folded.find(kStartTag));
    if (tag_end != std::u16string::npos) body = line.substr(tag_end + 1);
  }
  if (!started) return false;
  // The block runs to the line of its end tag. Cell texts hold no '<', so
  // the end tag can't hide in one; reading stops behind that line, where a
  // following table may begin.
  body += u'\n';
  bool at_end = body.find(kEndTag) != std::u16string::npos;
  while (!at_end && !f.Eof()) {
    const std::u16string line = f.ReadLn();
    at_end = LowerCase(line).find(kEndTag) != std::u16string::npos;
    body += line;
    body += u'\n';
  }

  int n_cols = 0;
  int n_rows = 0;
  bool ended = false;
  std::vector<LoadedCell> cells;
  std::u16string attr;
  std::u16string content;
  int pos = 1;
  while (!ended && pos <= static_cast<int>(body.size())) {
    switch (Zyn_stringl::ReadNextTagInString(body, pos, kXMLTags, kDummy, attr, content)) {
      case kNumCols:
        n_cols = IntAttr(attr, u"val");
        break;
      case kNumRows:
        n_rows = IntAttr(attr, u"val");
        break;
      case kCell:
        cells.push_back({IntAttr(attr, u"col"), IntAttr(attr, u"row"), UnescapeCell(content)});
        break;
      case kEndStrArray:
        ended = true;
        break;
      default:
        break;
    }
  }
  if (!ended || n_cols < 1 || n_rows < 1) return false;
  if ((static_cast<std::int64_t>(n_cols) + 1) * n_rows > kMaxXMLCells) return false;

  // Built aside and taken over whole, so a block that can't be loaded leaves
  // the table as it was.
  TStringArray loaded;
  loaded.SetAllocRowsBy(FAllocRowsBy);
  if (!loaded.Resize(n_cols, n_rows)) return false;
  for (const LoadedCell& cell : cells) {
    loaded.SetString(cell.col, cell.row, ShortString::FromBytes(cell.text));
  }
  TakeStorage(loaded);
  Changed();
  return true;
}

bool TStringArray::LoadFromXMLFile(std::u16string_view FName, std::u16string_view DataID) {
  zyn::platform::Textfile f;
  try {
    f.Assign(FName);
    f.Reset();
    const bool found = ReadFromOpenXMLFile(f, DataID);
    f.Close();
    return found;
  } catch (const zyn::platform::EInOutError&) {
    return false;
  }
}

}  // namespace Zyn_dstruct
