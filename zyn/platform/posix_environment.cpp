#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "zyn/platform/environment.h"
#include "zyn/platform/files.h"
#include "zyn/platform/text.h"

extern char** environ;

namespace zyn::platform {

std::vector<std::u16string> EnvironmentStrings() {
  std::vector<std::u16string> entries;
  for (char** e = environ; e != nullptr && *e != nullptr; ++e) entries.push_back(FromUTF8(*e));
  return entries;
}

std::u16string EnvironmentValue(std::u16string_view name) {
  const char* value = ::getenv(ToUTF8(name).c_str());
  return value == nullptr ? std::u16string() : FromUTF8(value);
}

std::u16string TemporaryDirectory() {
  std::u16string dir = EnvironmentValue(u"TMPDIR");
  if (dir.empty() || !DirectoryExists(dir)) dir = u"/tmp";
  if (dir.back() != u'/') dir += u'/';
  return dir;
}

std::u16string SystemLibraryDirectory() { return u"/usr/lib"; }

std::u16string SystemRootDirectory() { return u"/"; }

bool ReadSmallFile(std::u16string_view path, std::string& content, std::size_t max_bytes) {
  content.clear();
  FILE* f = std::fopen(ToUTF8(path).c_str(), "rb");
  if (f == nullptr) return false;
  char buffer[4096];
  bool ok = true;
  while (content.size() < max_bytes) {
    const std::size_t want = std::min(sizeof buffer, max_bytes - content.size());
    const std::size_t got = std::fread(buffer, 1, want, f);
    content.append(buffer, got);
    if (got < want) {
      ok = std::ferror(f) == 0;
      break;
    }
  }
  std::fclose(f);
  return ok;
}

}  // namespace zyn::platform
