// The stored form of TAssocArray (see docs/assocarray_xml.md):
//
//   <!-- TAssocArray / Zynforge -->
//   <assocarray sig="Zynforge" vers="1.0" id="settings">
//     <numentries val=2 />
//     <assoc key="width" kind=3>640</assoc>
//     <assoc key="title" kind=258>Main &#60;1&#62;</assoc>
//   </assocarray>
//
// Keys, the label and texts are written in printable ASCII only: every other
// code unit (or byte of 8-bit text) and the characters < > & " become
// "&#<decimal>;". So the block reads the same in any encoding, a value can't
// close its tag early, and every text survives a write and a read.

#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "zyn/dstruct/assocarray.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/text.h"
#include "zyn/platform/val.h"
#include "zyn/stringl/words.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::LowerCase;
using zyn::platform::TVarType;
using zyn::platform::varBoolean;
using zyn::platform::varByte;
using zyn::platform::varCurrency;
using zyn::platform::varDate;
using zyn::platform::varDouble;
using zyn::platform::varEmpty;
using zyn::platform::varInt64;
using zyn::platform::varInteger;
using zyn::platform::varLongWord;
using zyn::platform::varNull;
using zyn::platform::varShortInt;
using zyn::platform::varSingle;
using zyn::platform::varSmallint;
using zyn::platform::varString;
using zyn::platform::varUString;
using zyn::platform::varWord;

constexpr std::u16string_view kStartTag = u"<assocarray";
constexpr std::u16string_view kEndTag = u"</assocarray";
constexpr std::u16string_view kSignature = u"zynforge";

// The words of a stored table, with its closing tag; "dummy" stands for any
// other tag.
const std::u16string kXMLTags[] = {u"numentries", u"assoc", u"/assocarray", u"dummy"};
enum XMLTag { kNumEntries, kAssoc, kEndAssocArray, kDummy };

// Blocks of this many bytes go to the stream at once.
constexpr std::size_t kWriteChunk = 1 << 16;

// --- Writing -------------------------------------------------------------------

void AppendUnit(std::string& out, std::uint32_t unit) {
  const bool plain =
      unit >= 0x20 && unit <= 0x7E && unit != '<' && unit != '>' && unit != '&' && unit != '"';
  if (plain) {
    out += static_cast<char>(unit);
    return;
  }
  out += "&#";
  out += std::to_string(unit);
  out += ';';
}

void AppendEscaped(std::string& out, std::u16string_view text) {
  for (char16_t c : text) AppendUnit(out, c);
}

void AppendEscapedBytes(std::string& out, std::string_view bytes) {
  for (char b : bytes) AppendUnit(out, static_cast<unsigned char>(b));
}

void AppendAscii(std::string& out, std::u16string_view ascii) {
  for (char16_t c : ascii) out += static_cast<char>(c);
}

// The value as the block holds it: numbers exactly (a date as its day
// count), texts escaped.
void AppendValue(std::string& out, const Variant& v) {
  switch (v.VarType()) {
    case varEmpty:
    case varNull:
      return;
    case varDate:
      AppendAscii(out, zyn::platform::ShortestFloatText(v.RealValue()));
      return;
    case varString:
      AppendEscapedBytes(out, v.Ansi());
      return;
    case varUString:
      AppendEscaped(out, v.Wide());
      return;
    default:
      AppendAscii(out, v.AsString());
      return;
  }
}

// --- Reading -------------------------------------------------------------------

// One line of the stream, each byte a character, without its CR LF or LF.
// False at the end of the stream with nothing read.
bool ReadLine(zyn::platform::TStream& stream, std::u16string& line) {
  line.clear();
  bool any = false;
  std::uint8_t b = 0;
  while (stream.ReadByte(b)) {
    any = true;
    if (b == '\n') break;
    line += static_cast<char16_t>(b);
  }
  if (!line.empty() && line.back() == u'\r') line.pop_back();
  return any;
}

std::u16string_view StripBlanks(std::u16string_view s) {
  while (!s.empty() && s.front() == u' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == u' ') s.remove_suffix(1);
  return s;
}

// The code unit that "&#n;" at text[i] stands for, with n at most `max`;
// `i` then stands on the ";". -1 if there is no such reference at i.
long Reference(std::u16string_view text, std::size_t& i, long max) {
  if (text[i] != u'&' || i + 2 >= text.size() || text[i + 1] != u'#') return -1;
  std::size_t j = i + 2;
  long value = 0;
  while (j < text.size() && j < i + 7 && text[j] >= u'0' && text[j] <= u'9') {
    value = value * 10 + (text[j] - u'0');
    ++j;
  }
  if (j == i + 2 || j >= text.size() || text[j] != u';' || value > max) return -1;
  i = j;
  return value;
}

// Escaped text back to UTF-16; a character that is no reference stands for
// itself.
std::u16string Unescape(std::u16string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const long unit = Reference(text, i, 0xFFFF);
    out += unit >= 0 ? static_cast<char16_t>(unit) : text[i];
  }
  return out;
}

// Escaped 8-bit text back to bytes. The block's characters are its bytes, so
// a character up to 255 is that byte; a wider one goes through the code page.
std::string UnescapeBytes(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const long unit = Reference(text, i, 0xFF);
    const char16_t c = unit >= 0 ? static_cast<char16_t>(unit) : text[i];
    out += static_cast<char>(c <= 0xFF ? c : zyn::platform::AnsiFromChar(c));
  }
  return out;
}

// The ASCII text of a value; false if it holds anything else.
bool ToAscii(std::u16string_view text, std::string& out) {
  out.clear();
  for (char16_t c : text) {
    if (c > 0x7F) return false;
    out += static_cast<char>(c);
  }
  return true;
}

// A whole decimal number, "-" allowed, within [lo, hi].
bool ParseInteger(std::string_view text, std::int64_t lo, std::int64_t hi, std::int64_t& out) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), out);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && out >= lo &&
         out <= hi;
}

template <typename F>
bool ParseFloat(std::string_view text, F& out) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), out);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// "-"?digits("."digits{1,4})? as ten-thousandths.
bool ParseCurrency(std::string_view text, std::int64_t& out) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction =
      point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  if (whole.empty() || (point != std::string_view::npos && fraction.empty()) ||
      fraction.size() > 4) {
    return false;
  }
  std::uint64_t magnitude = 0;
  for (char c : whole) {
    if (c < '0' || c > '9' || magnitude > (std::numeric_limits<std::uint64_t>::max() - 9) / 10) {
      return false;
    }
    magnitude = magnitude * 10 + static_cast<unsigned>(c - '0');
  }
  if (magnitude > std::numeric_limits<std::uint64_t>::max() / 10000) return false;
  magnitude *= 10000;
  std::uint64_t unit = 1000;
  for (char c : fraction) {
    if (c < '0' || c > '9') return false;
    magnitude += static_cast<unsigned>(c - '0') * unit;
    unit /= 10;
  }
  const std::uint64_t limit = std::uint64_t{1} << 63;  // the magnitude of the smallest amount
  if (magnitude > (negative ? limit : limit - 1)) return false;
  out = negative ? static_cast<std::int64_t>(0 - magnitude) : static_cast<std::int64_t>(magnitude);
  return true;
}

// The value of kind `kind` that the block's text stands for; false if the
// text doesn't read as one.
bool ParseValue(int kind, std::u16string_view text, Variant& out) {
  if (kind == varString) {
    out = Variant::FromAnsi(UnescapeBytes(text));
    return true;
  }
  if (kind == varUString) {
    out = Variant(Unescape(text));
    return true;
  }
  if (kind == varEmpty) {
    out = Variant();
    return text.empty();
  }
  if (kind == varNull) {
    out = Variant::Null();
    return text.empty();
  }
  std::string ascii;
  if (!ToAscii(text, ascii)) return false;
  std::int64_t i = 0;
  switch (kind) {
    case varShortInt:
      return ParseInteger(ascii, -128, 127, i) &&
             (out = Variant(static_cast<std::int8_t>(i)), true);
    case varByte:
      return ParseInteger(ascii, 0, 255, i) && (out = Variant(static_cast<std::uint8_t>(i)), true);
    case varSmallint:
      return ParseInteger(ascii, -32768, 32767, i) &&
             (out = Variant(static_cast<std::int16_t>(i)), true);
    case varWord:
      return ParseInteger(ascii, 0, 65535, i) &&
             (out = Variant(static_cast<std::uint16_t>(i)), true);
    case varInteger:
      return ParseInteger(ascii, std::numeric_limits<std::int32_t>::min(),
                          std::numeric_limits<std::int32_t>::max(), i) &&
             (out = Variant(static_cast<std::int32_t>(i)), true);
    case varLongWord:
      return ParseInteger(ascii, 0, std::numeric_limits<std::uint32_t>::max(), i) &&
             (out = Variant(static_cast<std::uint32_t>(i)), true);
    case varInt64:
      return ParseInteger(ascii, std::numeric_limits<std::int64_t>::min(),
                          std::numeric_limits<std::int64_t>::max(), i) &&
             (out = Variant(i), true);
    case varCurrency:
      return ParseCurrency(ascii, i) && (out = Variant(zyn::platform::TCurrency{i}), true);
    case varBoolean:
      if (ascii != "True" && ascii != "False") return false;
      out = Variant(ascii == "True");
      return true;
    case varSingle: {
      float f = 0;
      return ParseFloat(ascii, f) && (out = Variant(f), true);
    }
    case varDouble:
    case varDate: {
      double d = 0;
      if (!ParseFloat(ascii, d)) return false;
      out = kind == varDate ? Variant(zyn::platform::TDateTime{d}) : Variant(d);
      return true;
    }
    default:
      return false;
  }
}

// One attribute of attribute text, read from `i` by the tag scanner's
// attribute machine. The status: 0 for a whole attribute, 1 for a quote in a
// name, 2 for "=" where a value should start, 3 for "=" in a plain value, 4
// for no text left. `has_value` tells whether an "=" was seen.
int NextAttribute(std::u16string_view text, std::size_t& i, std::u16string& name,
                  std::u16string& value, bool& has_value) {
  enum State { kName, kValueStart, kQuoted, kPlain };
  name.clear();
  value.clear();
  has_value = false;
  if (i >= text.size()) return 4;
  State state = kName;
  int status = 0;
  bool done = false;
  for (; i < text.size() && !done && status == 0; ++i) {
    const char16_t c = text[i];
    switch (state) {
      case kName:
        if (c == u'"') {
          status = 1;
        } else if (c == u'=') {
          state = kValueStart;
          has_value = true;
        } else {
          name += c;
        }
        break;
      case kValueStart:
        if (c == u'"') {
          state = kQuoted;
        } else if (c == u'=') {
          status = 2;
        } else if (c != u' ') {
          value += c;
          state = kPlain;
        }
        break;
      case kQuoted:
        if (c == u'"') {
          done = true;
        } else {
          value += c;
        }
        break;
      case kPlain:
        if (c == u' ' || c == u'"') {
          done = true;
        } else if (c == u'=') {
          status = 3;
        } else {
          value += c;
        }
        break;
    }
  }
  name = StripBlanks(name);
  return status;
}

// The value of the first whole attribute named `name` (ASCII case ignored);
// false if there is none.
bool FindAttribute(std::u16string_view attr, std::u16string_view name, std::u16string& value) {
  std::size_t i = 0;
  std::u16string n;
  bool has_value = false;
  while (NextAttribute(attr, i, n, value, has_value) == 0) {
    if (has_value && LowerCase(n) == name) return true;
  }
  return false;
}

// True if `line` starts the wanted block: "<assocarray" and the signature,
// ASCII case ignored, and for a non-empty `id` (blanks stripped, lower-cased)
// an id attribute that equals it. `label` gets the id as written.
bool IsStartLine(std::u16string_view line, std::u16string_view id, std::u16string& label) {
  const std::u16string folded = LowerCase(line);
  if (folded.find(kStartTag) == std::u16string::npos) return false;
  if (folded.find(kSignature) == std::u16string::npos) return false;
  label.clear();
  const std::size_t at = folded.find(u"id=\"");
  if (at != std::u16string::npos) {
    const std::size_t from = at + 4;
    const std::size_t to = folded.find(u'"', from);
    if (to != std::u16string::npos) label = Unescape(line.substr(from, to - from));
  }
  return id.empty() || LowerCase(StripBlanks(label)) == id;
}

}  // namespace

void TAssocArray::WriteToXMLStream(zyn::platform::TStream& OutStream, bool CreateHeader,
                                   std::u16string_view DataID) const {
  std::string out;
  const auto flush = [&] {
    OutStream.WriteBuffer(out.data(), static_cast<int>(out.size()));
    out.clear();
  };
  if (CreateHeader) out += "<?xml version=\"1.0\"?>\r\n";
  out += "\r\n<!-- TAssocArray / Zynforge -->\r\n<assocarray sig=\"Zynforge\" vers=\"1.0\" id=\"";
  AppendEscaped(out, DataID);
  out += "\">\r\n  <numentries val=";
  out += std::to_string(FNEntries);
  out += " />\r\n";
  for (int pos = 0; pos < FNEntries; ++pos) {
    const Variant& v = FDataArray[static_cast<std::size_t>(pos)];
    out += "  <assoc key=\"";
    AppendEscaped(out, FKeyArray[static_cast<std::size_t>(pos)]);
    out += "\" kind=";
    out += std::to_string(v.VarType());
    out += '>';
    AppendValue(out, v);
    out += "</assoc>\r\n";
    if (out.size() >= kWriteChunk) flush();
  }
  out += "</assocarray>\r\n";
  flush();
}

bool TAssocArray::ReadFromXMLStream(zyn::platform::TStream& InStream, std::u16string_view DataID) {
  const std::u16string id = LowerCase(StripBlanks(DataID));
  std::u16string line;
  std::u16string label;
  std::u16string body;
  bool started = false;
  while (!started && ReadLine(InStream, line)) {
    if (!IsStartLine(line, id, label)) continue;
    started = true;
    // The rest of the start line may already hold tags.
    const std::size_t tag_end = line.find(u'>', LowerCase(line).find(kStartTag));
    if (tag_end != std::u16string::npos) body = line.substr(tag_end + 1);
  }
  if (!started) return false;
  // The block runs to the line of its end tag. Escaped texts hold no '<', so
  // the end tag can't hide in one; reading stops behind that line, where a
  // following block may begin.
  body += u'\n';
  bool at_end = LowerCase(body).find(kEndTag) != std::u16string::npos;
  while (!at_end && ReadLine(InStream, line)) {
    at_end = LowerCase(line).find(kEndTag) != std::u16string::npos;
    body += line;
    body += u'\n';
  }
  if (!at_end) return false;

  // Every entry costs more than a dozen characters of the block, so what is
  // collected here stays in proportion to what was read, whatever
  // "numentries" claims.
  std::int64_t declared = -1;
  bool ended = false;
  std::vector<std::u16string> keys;
  std::vector<Variant> values;
  std::u16string attr;
  std::u16string content;
  std::u16string text;
  int pos = 1;
  while (!ended && pos <= static_cast<int>(body.size())) {
    switch (Zyn_stringl::ReadNextTagInString(body, pos, kXMLTags, kDummy, attr, content)) {
      case kNumEntries: {
        std::string ascii;
        if (!FindAttribute(attr, u"val", text) || !ToAscii(text, ascii) ||
            !ParseInteger(ascii, 0, std::numeric_limits<std::int32_t>::max(), declared)) {
          return false;
        }
        break;
      }
      case kAssoc: {
        std::string ascii;
        std::int64_t kind = 0;
        if (!FindAttribute(attr, u"kind", text) || !ToAscii(text, ascii) ||
            !ParseInteger(ascii, 0, 0xFFFF, kind) ||
            !zyn::platform::IsVarType(static_cast<int>(kind))) {
          return false;
        }
        Variant value;
        if (!ParseValue(static_cast<int>(kind), content, value)) return false;
        if (!FindAttribute(attr, u"key", text)) return false;
        keys.push_back(Unescape(text));
        values.push_back(std::move(value));
        break;
      }
      case kEndAssocArray:
        ended = true;
        break;
      default:
        break;
    }
  }
  if (!ended || declared != static_cast<std::int64_t>(keys.size())) return false;

  // The arrays get the length that adding the entries one by one after a
  // Clear would give them.
  const auto granularity = static_cast<std::size_t>(std::max(FGranularity, 1));
  std::size_t length = granularity;
  while (keys.size() > length) length += 1 + granularity;
  keys.resize(length);
  values.resize(length);
  FKeyArray.swap(keys);
  FDataArray.swap(values);
  FNEntries = static_cast<int>(declared);
  FDataID = label;
  index_valid_ = false;
  return true;
}

int TAssocArray::AddXMLAttributes(std::u16string_view Attributes) {
  int taken = 0;
  std::size_t i = 0;
  std::u16string name;
  std::u16string value;
  bool has_value = false;
  while (NextAttribute(Attributes, i, name, value, has_value) == 0) {
    if (!has_value || name.empty()) continue;
    const bool fits = std::all_of(value.begin(), value.end(), [](char16_t c) {
      return c == u'?' || zyn::platform::AnsiFromChar(c) != '?';
    });
    Add(name, fits ? Variant::FromAnsi(zyn::platform::StringToAnsi(value)) : Variant(value));
    ++taken;
  }
  return taken;
}

}  // namespace Zyn_dstruct
