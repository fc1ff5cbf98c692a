#include "zyn/html/entities.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "zyn/platform/text.h"

namespace Zyn_htmlsupport {

namespace {

struct NamedReference {
  std::string_view name;  // without "&"; with ";" unless it is one of the old short forms
  char32_t first;
  char32_t second;  // 0 for the references of one character
};

struct PreferredName {
  char16_t code;
  std::uint16_t index;  // into kNamedReferences
};

#include "zyn/html/entity_table.inc"

// The longest name in the table, ";" included.
constexpr std::size_t kMaxNameLength = 32;
constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsAlnum(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}
constexpr int DigitValue(char16_t c, bool hex) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (hex && c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (hex && c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

const NamedReference* FindName(std::string_view name) {
  const auto* end = std::end(kNamedReferences);
  const auto* it =
      std::lower_bound(std::begin(kNamedReferences), end, name,
                       [](const NamedReference& r, std::string_view n) { return r.name < n; });
  return it != end && it->name == name ? it : nullptr;
}

void AppendCodePoint(std::u16string& out, char32_t cp) {
  if (cp < 0x10000) {
    out.push_back(static_cast<char16_t>(cp));
  } else {
    cp -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
  }
}

// The character a parser makes of a numeric reference's value.
char32_t NumericValue(char32_t value) {
  if (value == 0 || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return kReplacement;
  if (value >= 0x80 && value <= 0x9F)
    return zyn::platform::CharFromAnsi(static_cast<unsigned char>(value));
  return value;
}

// Reads the reference at s[pos] == '&'. On success appends its characters to
// `out` and gives the number of units it took; 0 if there is none.
std::size_t ReadReference(std::u16string_view s, std::size_t pos, std::u16string& out) {
  std::size_t i = pos + 1;
  if (i < s.size() && s[i] == u'#') {
    ++i;
    const bool hex = i < s.size() && (s[i] == u'x' || s[i] == u'X');
    if (hex) ++i;
    const std::size_t digits_start = i;
    char32_t value = 0;
    for (int d; i < s.size() && (d = DigitValue(s[i], hex)) >= 0; ++i) {
      // Saturate: anything beyond U+10FFFF gives the same replacement.
      value = std::min<char32_t>(value * (hex ? 16 : 10) + static_cast<char32_t>(d), 0x110000);
    }
    if (i == digits_start) return 0;
    if (i < s.size() && s[i] == u';') ++i;
    AppendCodePoint(out, NumericValue(value));
    return i - pos;
  }
  // A run of letters and digits; the names of the table are made of nothing else.
  std::array<char, kMaxNameLength + 1> name;
  std::size_t length = 0;
  while (length < kMaxNameLength && i + length < s.size() && IsAlnum(s[i + length])) {
    name[length] = static_cast<char>(s[i + length]);
    ++length;
  }
  if (length == 0) return 0;
  const NamedReference* hit = nullptr;
  std::size_t taken = 0;
  if (i + length < s.size() && s[i + length] == u';') {
    name[length] = ';';
    hit = FindName(std::string_view(name.data(), length + 1));
    taken = length + 1;
  }
  // Without its ";", only one of the old names matches, the longest first.
  for (std::size_t n = length; hit == nullptr && n >= 2; --n) {
    hit = FindName(std::string_view(name.data(), n));
    taken = n;
  }
  if (hit == nullptr) return 0;
  AppendCodePoint(out, hit->first);
  if (hit->second != 0) AppendCodePoint(out, hit->second);
  return 1 + taken;
}

}  // namespace

std::u16string AnsiToHTMLEntity(char16_t c) {
  const auto* end = std::end(kPreferredNames);
  const auto* it =
      std::lower_bound(std::begin(kPreferredNames), end, c,
                       [](const PreferredName& p, char16_t code) { return p.code < code; });
  if (it != end && it->code == c) {
    const std::string_view name = kNamedReferences[it->index].name;
    std::u16string out = u"&";
    out.append(name.begin(), name.end());
    return out;
  }
  if (c == 0 || (c >= 0x80 && c <= 0x9F) || (c >= 0xD800 && c <= 0xDFFF))
    return std::u16string(1, c);
  std::u16string digits;
  for (unsigned v = c; v != 0; v /= 10)
    digits.insert(digits.begin(), static_cast<char16_t>(u'0' + v % 10));
  return u"&#" + digits + u";";
}

char16_t HTMLEntityToAnsi(std::u16string_view entity) {
  std::u16string text = u"&";
  text.append(entity.starts_with(u'&') ? entity.substr(1) : entity);
  std::u16string out;
  std::size_t taken = ReadReference(text, 0, out);
  if (taken != text.size() && !text.ends_with(u';') && text.size() > 1 && text[1] != u'#') {
    // A name given without its ";".
    text.push_back(u';');
    out.clear();
    taken = ReadReference(text, 0, out);
  }
  return taken == text.size() && out.size() == 1 ? out[0] : char16_t{0};
}

std::u16string MakeStringHTMLCompatible(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size());
  for (char16_t c : s) {
    switch (c) {
      case u'&':
        out += u"&amp;";
        break;
      case u'<':
        out += u"&lt;";
        break;
      case u'>':
        out += u"&gt;";
        break;
      case u'"':
        out += u"&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::u16string ResolveHTMLEntities(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size());
  std::size_t pos = 0;
  while (pos < s.size()) {
    const std::size_t amp = s.find(u'&', pos);
    if (amp == std::u16string_view::npos) break;
    out.append(s.substr(pos, amp - pos));
    const std::size_t taken = ReadReference(s, amp, out);
    if (taken == 0) {
      out.push_back(u'&');
      pos = amp + 1;
    } else {
      pos = amp + taken;
    }
  }
  out.append(s.substr(std::min(pos, s.size())));
  return out;
}

}  // namespace Zyn_htmlsupport
