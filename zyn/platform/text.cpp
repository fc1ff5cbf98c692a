#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }
bool IsContinuation(unsigned char b) { return (b & 0xC0) == 0x80; }

void AppendUTF8(std::string& out, char32_t cp) {
  auto put = [&out](unsigned v) { out.push_back(static_cast<char>(v)); };
  if (cp < 0x80) {
    put(cp);
  } else if (cp < 0x800) {
    put(0xC0 | (cp >> 6));
    put(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    put(0xE0 | (cp >> 12));
    put(0x80 | ((cp >> 6) & 0x3F));
    put(0x80 | (cp & 0x3F));
  } else {
    put(0xF0 | (cp >> 18));
    put(0x80 | ((cp >> 12) & 0x3F));
    put(0x80 | ((cp >> 6) & 0x3F));
    put(0x80 | (cp & 0x3F));
  }
}

void AppendUTF16(std::u16string& out, char32_t cp) {
  if (cp < 0x10000) {
    out.push_back(static_cast<char16_t>(cp));
  } else {
    cp -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
  }
}

// Length of the valid UTF-8 sequence at the start of `s`, or 0 if there is
// none; stores the code point in `cp`. Overlong forms, surrogates and values
// above U+10FFFF are not valid.
std::size_t DecodeUTF8(std::string_view s, char32_t& cp) {
  const auto b0 = static_cast<unsigned char>(s[0]);
  std::size_t len;
  char32_t min;
  if (b0 < 0x80) {
    cp = b0;
    return 1;
  } else if ((b0 & 0xE0) == 0xC0) {
    len = 2, min = 0x80, cp = b0 & 0x1F;
  } else if ((b0 & 0xF0) == 0xE0) {
    len = 3, min = 0x800, cp = b0 & 0x0F;
  } else if ((b0 & 0xF8) == 0xF0) {
    len = 4, min = 0x10000, cp = b0 & 0x07;
  } else {
    return 0;
  }
  if (s.size() < len) return 0;
  for (std::size_t i = 1; i < len; ++i) {
    const auto b = static_cast<unsigned char>(s[i]);
    if (!IsContinuation(b)) return 0;
    cp = (cp << 6) | (b & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
  return len;
}

}  // namespace

std::string StringToAnsi(std::u16string_view s) {
  std::string out(s.size(), '\0');
  for (std::size_t i = 0; i < s.size(); ++i) out[i] = static_cast<char>(AnsiFromChar(s[i]));
  return out;
}

std::u16string AnsiToString(std::string_view bytes) {
  std::u16string out(bytes.size(), u'\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    out[i] = CharFromAnsi(static_cast<unsigned char>(bytes[i]));
  }
  return out;
}

std::string ToUTF8(std::u16string_view s) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    const char16_t c = s[i];
    if (IsHighSurrogate(c) && i + 1 < s.size() && IsLowSurrogate(s[i + 1])) {
      AppendUTF8(out, 0x10000 + ((char32_t{c} - 0xD800) << 10) + (s[i + 1] - 0xDC00));
      ++i;
    } else if (c >= 0xDC80 && c <= 0xDCFF) {
      out.push_back(static_cast<char>(c - 0xDC00));
    } else if (IsHighSurrogate(c) || IsLowSurrogate(c)) {
      AppendUTF8(out, kReplacement);
    } else {
      AppendUTF8(out, c);
    }
  }
  return out;
}

std::u16string FromUTF8(std::string_view s) {
  std::u16string out;
  out.reserve(s.size());
  while (!s.empty()) {
    char32_t cp;
    std::size_t len = DecodeUTF8(s, cp);
    if (len == 0) {
      out.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(s[0])));
      len = 1;
    } else {
      AppendUTF16(out, cp);
    }
    s.remove_prefix(len);
  }
  return out;
}

}  // namespace zyn::platform
