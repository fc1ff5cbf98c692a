// Feeds arbitrary text to the reader of file:// URIs. A path it gives must
// be absolute, hold no NUL and be no longer than the URI; escaping the path
// again must give it back.
#include "zyn/platform/file_uri.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"

namespace {

using zyn::fuzz::Check;

std::string Escaped(std::string_view path) {
  std::string uri = "file://";
  for (const char c : path) {
    char hex[4];
    std::snprintf(hex, sizeof hex, "%%%02X", static_cast<unsigned char>(c));
    uri += (c == '/') ? std::string(1, c) : std::string(hex);
  }
  return uri;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zyn::platform::FilePathFromURI;
  const std::string_view uri(reinterpret_cast<const char*>(data), size);
  const auto path = FilePathFromURI(uri);
  if (!path) return 0;
  Check(!path->empty() && path->front() == '/');
  Check(path->find('\0') == std::string::npos);
  Check(path->size() <= uri.size());
  Check(FilePathFromURI(Escaped(*path)) == path);
  return 0;
}
