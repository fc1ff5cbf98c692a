#include <sys/stat.h>
#include <sys/statvfs.h>

#include <limits>

#include "zyn/platform/drives.h"
#include "zyn/platform/environment.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

DriveSources& Sources() {
  static DriveSources sources;
  return sources;
}

bool IsDirectory(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The "removable" flag of a block device; a partition has none of its own
// and takes its disk's, one directory up from the partition's.
bool IsRemovable(unsigned major, unsigned minor) {
  if (major == 0) return false;  // no block device: tmpfs, overlay, network
  const std::string dir =
      Sources().block_devices + "/" + std::to_string(major) + ":" + std::to_string(minor);
  for (const char* name : {"/removable", "/../removable"}) {
    std::string flag;
    if (ReadSmallFile(FromUTF8(dir + name), flag, 16) && !flag.empty()) return flag[0] == '1';
  }
  return false;
}

bool DriveEntry(int number, MountEntry& entry) {
  if (number < 0 || number > 25) return false;
  std::vector<MountEntry> drives = MountedDrives();
  if (static_cast<std::size_t>(number) >= drives.size()) return false;
  entry = std::move(drives[static_cast<std::size_t>(number)]);
  return true;
}

}  // namespace

void SetDriveSources(DriveSources sources) { Sources() = std::move(sources); }

const DriveSources& CurrentDriveSources() { return Sources(); }

std::vector<MountEntry> MountedDrives() {
  std::string table;
  if (!ReadSmallFile(FromUTF8(Sources().mount_table), table, std::size_t{16} << 20)) return {};
  return SelectDrives(ParseMountInfo(table), IsDirectory);
}

std::u16string DriveRoot(int number) {
  MountEntry entry;
  return DriveEntry(number, entry) ? FromUTF8(entry.mount_point) : std::u16string();
}

int DriveType(int number) {
  MountEntry entry;
  if (!DriveEntry(number, entry)) return kDriveNoRootDir;
  return DriveTypeOf(entry.fs_type, IsRemovable(entry.major, entry.minor));
}

std::int64_t DriveFreeBytes(int number) {
  MountEntry entry;
  if (!DriveEntry(number, entry)) return -1;
  struct statvfs fs {};
  if (::statvfs(entry.mount_point.c_str(), &fs) != 0) return -1;
  const unsigned long long bytes = static_cast<unsigned long long>(fs.f_bavail) * fs.f_frsize;
  constexpr auto kMax = static_cast<unsigned long long>(std::numeric_limits<std::int64_t>::max());
  return static_cast<std::int64_t>(bytes > kMax ? kMax : bytes);
}

}  // namespace zyn::platform
