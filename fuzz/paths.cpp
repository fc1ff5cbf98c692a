// Feeds arbitrary masks and names to the mask matcher and the path functions.
// The first byte picks a wanted length for AbridgeFilePath; the rest, read
// as UTF-8, is split at the first NUL into a mask and a name. The matcher is
// checked against a plain recursive reference on short inputs.
#include "zyn/filesys/paths.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "zyn/platform/files.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_filesys;
using namespace zyn::platform;

using zyn::fuzz::Check;

bool Reference(std::u16string_view name, std::u16string_view mask) {
  if (mask.empty()) return name.empty();
  if (mask[0] == u'*') {
    for (std::size_t i = 0; i <= name.size(); ++i) {
      if (Reference(name.substr(i), mask.substr(1))) return true;
    }
    return false;
  }
  return !name.empty() && (mask[0] == u'?' || mask[0] == name[0]) &&
         Reference(name.substr(1), mask.substr(1));
}

bool StartsWith(std::u16string_view s, std::u16string_view prefix) {
  return s.substr(0, prefix.size()) == prefix;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const int wanted = static_cast<int>(data[0]) - 16;
  const std::u16string all = FromUTF8({reinterpret_cast<const char*>(data + 1), size - 1});
  const std::size_t nul = all.find(u'\0');
  const std::u16string_view mask = std::u16string_view(all).substr(0, nul);
  const std::u16string_view name = nul == std::u16string::npos
                                       ? std::u16string_view()
                                       : std::u16string_view(all).substr(nul + 1);

  const bool match = MatchesMask(name, mask);
  if (name.size() <= 12 && mask.size() <= 12) {
    bool expected = Reference(name, mask);
    const bool no_dot = name.find(u'.') == std::u16string_view::npos;
    if (!expected && no_dot && mask.size() >= 2 && mask.substr(mask.size() - 2) == u".*") {
      expected = Reference(name, mask.substr(0, mask.size() - 2));
    } else if (!expected && no_dot && !mask.empty() && mask.back() == u'.') {
      expected = Reference(name, mask.substr(0, mask.size() - 1));
    }
    Check(match == expected);
  }

  const std::u16string_view path = mask;
  Check(ExtractFilePath(path) + ExtractFileName(path) == path);
  Check(StartsWith(path, StripExtension(path)));
  Check(StartsWith(path, ParentDir(path)));
  const std::u16string ext = ExtractFileExt(path);
  Check(ext.empty() || ext[0] == u'.');
  Check(ChangeFileExt(path, ext) == path);
  const std::u16string abridged = AbridgeFilePath(path, wanted);
  Check(ExtractFileName(abridged) == ExtractFileName(path) || abridged == path);
  IsRootDir(path);
  IsDOS83Path(path);
  const int drive = ExtractDrive(path);
  Check(drive >= -1 && drive <= 25);
  Check(InsertBeforeFileExt(name, path).size() == path.size() + name.size());
  const std::u16string ensured = EnsureDefaultFileExt(path, name);
  Check(StartsWith(ensured, path));
  if (!path.empty() && path[0] == u'/') {
    const std::u16string expanded = ExpandFileName(path);
    Check(!expanded.empty() && expanded[0] == u'/');
    Check(expanded.find(u"/./") == std::u16string::npos);
    Check(expanded.find(u"//") == std::u16string::npos);
  }
  return 0;
}
