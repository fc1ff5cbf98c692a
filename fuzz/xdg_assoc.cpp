// Feeds arbitrary text to the readers of globs2, mimeapps.list and desktop
// entries. The first byte picks the length of the extension or MIME type
// taken from the front of the rest; what remains is the file's text.
#include "zyn/filesys/xdg_assoc.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"

namespace {

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Zyn_filesys::xdg;
  if (size < 1) return 0;
  const std::string_view all(reinterpret_cast<const char*>(data + 1), size - 1);
  const std::size_t key_length = std::min<std::size_t>(data[0] & 15, all.size());
  const std::string_view key = all.substr(0, key_length);
  const std::string_view text = all.substr(key_length);

  std::string type;
  int rank = -1;
  if (BetterMimeTypeFromGlobs(text, key, type, rank)) {
    Check(!type.empty() && rank >= 0 && rank <= 2001);
  } else {
    Check(type.empty() && rank == -1);
  }
  for (const std::string& id : DefaultApplications(text, key)) {
    Check(!id.empty() && id.find(';') == std::string::npos);
  }
  std::string exec;
  if (!DesktopEntryExec(text, exec)) Check(exec.empty());
  return 0;
}
