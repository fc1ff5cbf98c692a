// The portable half of the platform's files: splitting names and matching
// masks. The calls to the operating system are in posix_files.cpp.

#include "zyn/platform/files.h"

#include <vector>

namespace zyn::platform {
namespace {

constexpr bool IsAsciiLetter(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// The index just behind the last separator or drive colon; 0 if none.
std::size_t NameStart(std::u16string_view s) {
  for (std::size_t i = s.size(); i > 0; --i) {
    if (IsPathDelimiter(s[i - 1])) return i;
  }
  if (s.size() >= 2 && s[1] == u':' && IsAsciiLetter(s[0])) return 2;
  return 0;
}

// '*' and '?' matching, iterative with one back-tracking point, so any mask
// costs at most |name| * |mask| steps and no stack.
bool PlainMatch(std::u16string_view name, std::u16string_view mask) {
  std::size_t n = 0, m = 0;
  std::size_t star = std::u16string_view::npos, star_n = 0;
  while (n < name.size()) {
    if (m < mask.size() && mask[m] == u'*') {
      star = m++;
      star_n = n;
    } else if (m < mask.size() && (mask[m] == u'?' || mask[m] == name[n])) {
      ++n;
      ++m;
    } else if (star != std::u16string_view::npos) {
      m = star + 1;
      n = ++star_n;
    } else {
      return false;
    }
  }
  while (m < mask.size() && mask[m] == u'*') ++m;
  return m == mask.size();
}

}  // namespace

std::u16string ExtractFilePath(std::u16string_view FileName) {
  return std::u16string(FileName.substr(0, NameStart(FileName)));
}

std::u16string ExtractFileName(std::u16string_view FileName) {
  return std::u16string(FileName.substr(NameStart(FileName)));
}

std::u16string ExtractFileExt(std::u16string_view FileName) {
  const std::u16string_view name = FileName.substr(NameStart(FileName));
  const std::size_t dot = name.rfind(u'.');
  return dot == std::u16string_view::npos ? std::u16string() : std::u16string(name.substr(dot));
}

std::u16string ChangeFileExt(std::u16string_view FileName, std::u16string_view Extension) {
  const std::size_t start = NameStart(FileName);
  const std::size_t dot = FileName.substr(start).rfind(u'.');
  std::u16string r(dot == std::u16string_view::npos ? FileName : FileName.substr(0, start + dot));
  r += Extension;
  return r;
}

std::u16string ExpandFileName(std::u16string_view FileName) {
  if (FileName.empty()) return {};
  std::u16string joined;
  if (FileName.front() != u'/') {
    joined = GetCurrentDir();
    joined += u'/';
  }
  joined += FileName;
  std::vector<std::u16string_view> parts;
  std::u16string_view rest = joined;
  while (!rest.empty()) {
    const std::size_t slash = rest.find(u'/');
    const std::u16string_view part = rest.substr(0, slash);
    rest = slash == std::u16string_view::npos ? std::u16string_view() : rest.substr(slash + 1);
    if (part.empty() || part == u".") continue;
    if (part == u"..") {
      if (!parts.empty()) parts.pop_back();
      continue;
    }
    parts.push_back(part);
  }
  std::u16string r;
  for (const auto part : parts) {
    r += u'/';
    r += part;
  }
  if (r.empty() || FileName.back() == u'/') r += u'/';
  return r;
}

bool MatchesMask(std::u16string_view name, std::u16string_view mask) {
  if (PlainMatch(name, mask)) return true;
  const bool has_dot = name.find(u'.') != std::u16string_view::npos;
  if (mask.size() >= 2 && mask.substr(mask.size() - 2) == u".*") {
    return !has_dot && PlainMatch(name, mask.substr(0, mask.size() - 2));
  }
  if (!mask.empty() && mask.back() == u'.') {
    return !has_dot && PlainMatch(name, mask.substr(0, mask.size() - 1));
  }
  return false;
}

}  // namespace zyn::platform
