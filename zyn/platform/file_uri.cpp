#include "zyn/platform/file_uri.h"

namespace zyn::platform {

namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool StartsWithNoCase(std::string_view s, std::string_view prefix) {
  if (s.size() < prefix.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    char c = s[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != prefix[i]) return false;
  }
  return true;
}

}  // namespace

std::optional<std::string> FilePathFromURI(std::string_view uri) {
  if (!StartsWithNoCase(uri, "file://")) return std::nullopt;
  std::string_view rest = uri.substr(7);
  const std::size_t slash = rest.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const std::string_view host = rest.substr(0, slash);
  if (!host.empty() && !(host.size() == 9 && StartsWithNoCase(host, "localhost")))
    return std::nullopt;
  rest.remove_prefix(slash);

  std::string path;
  path.reserve(rest.size());
  for (std::size_t i = 0; i < rest.size(); ++i) {
    if (rest[i] == '\0') return std::nullopt;
    if (rest[i] != '%') {
      path += rest[i];
      continue;
    }
    if (rest.size() - i < 3) return std::nullopt;
    const int high = HexValue(rest[i + 1]);
    const int low = HexValue(rest[i + 2]);
    if (high < 0 || low < 0 || (high == 0 && low == 0)) return std::nullopt;
    path += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return path;
}

}  // namespace zyn::platform
