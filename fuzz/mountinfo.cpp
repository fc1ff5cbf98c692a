// Feeds arbitrary text to the mount-table reader and the drive selection.
// Every entry it gives must have a mount point and a type, and the drives
// must start with the root and never exceed 26.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "zyn/platform/drives.h"

namespace {

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zyn::platform;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::vector<MountEntry> entries = ParseMountInfo(text);
  for (const MountEntry& e : entries) {
    Check(!e.mount_point.empty() && !e.fs_type.empty());
    Check(DriveTypeOf(e.fs_type, false) >= kDriveRemovable);
  }
  const std::vector<MountEntry> drives =
      SelectDrives(entries, [](const std::string& p) { return p.size() % 3 != 0; });
  Check(!drives.empty() && drives.size() <= 26 && drives[0].mount_point == "/");
  return 0;
}
