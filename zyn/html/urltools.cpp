#include "zyn/html/urltools.h"

#include "zyn/stringl/stringl.h"

namespace Zyn_htmlsupport {

namespace {

constexpr char16_t kHexDigits[] = u"0123456789ABCDEF";

constexpr bool IsReserved(char16_t c) {
  return kURLReservedChars.find(c) != std::u16string_view::npos;
}

constexpr int HexValue(char16_t c) {
  if (c <= u'9') return c - u'0';
  return (c | 0x20) - u'a' + 10;
}

std::u16string DecodePass(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == u'%' && i + 2 < s.size() && Zyn_stringl::IsHexChar(s[i + 1]) &&
        Zyn_stringl::IsHexChar(s[i + 2])) {
      out.push_back(static_cast<char16_t>(HexValue(s[i + 1]) * 16 + HexValue(s[i + 2])));
      i += 2;
    } else {
      out.push_back(s[i]);
    }
  }
  return out;
}

}  // namespace

std::u16string URLEncode(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size());
  for (char16_t c : s) {
    if (IsReserved(c)) {
      // Every reserved character is below 128, so two digits always suffice.
      out += u'%';
      out += kHexDigits[c >> 4];
      out += kHexDigits[c & 15];
    } else {
      out += c;
    }
  }
  return out;
}

std::u16string URLDecode(std::u16string_view s) { return DecodePass(DecodePass(s)); }

std::u16string ExtractHTTPPath(std::u16string_view s) {
  constexpr std::u16string_view kScheme = u"http://";
  std::u16string_view rest = s;
  for (std::size_t i = 0; i + kScheme.size() <= s.size(); ++i) {
    bool hit = true;
    for (std::size_t k = 0; k < kScheme.size() && hit; ++k) {
      char16_t c = s[i + k];
      if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
      hit = c == kScheme[k];
    }
    if (hit) {
      rest = s.substr(i + kScheme.size());
      break;
    }
  }
  const std::size_t slash = rest.rfind(u'/');
  if (slash == std::u16string_view::npos) return std::u16string(rest);
  return std::u16string(rest.substr(0, slash + 1));
}

int CountWordsHTML(std::u16string_view text, bool skipNumbers, bool& inTag) {
  int count = 0;
  int length = 0;
  char16_t first = 0;
  for (char16_t c : text) {
    if (c == u'<') inTag = true;
    if (c == u'>') inTag = false;
    if (inTag) continue;
    if (c <= 255 && Zyn_stringl::WordSeps.Contains(c)) {
      if (length >= 2 && !(skipNumbers && Zyn_stringl::IsDigit(first))) ++count;
      length = 0;
    } else {
      if (length == 0) first = c;
      if (length < 2) ++length;
    }
  }
  return count;
}

}  // namespace Zyn_htmlsupport
