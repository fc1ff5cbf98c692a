// zyn/platform/drives.h
//
// Drive numbers on a system without drive letters. The real file systems
// mounted in this process's mount namespace, read from its mount table,
// become drives 0 ("A") to 25 ("Z"): the root "/" is always drive 0, the
// others follow in the order of the mount table. Pseudo file systems and
// mounts below /proc, /sys and /dev are left out.

#ifndef ZYN_PLATFORM_DRIVES_H_
#define ZYN_PLATFORM_DRIVES_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zyn::platform {

// One line of a mount table.
struct MountEntry {
  std::string mount_point;  // escapes such as "\040" decoded
  std::string fs_type;      // "ext4", "fuse.sshfs", ...
  std::string source;       // "/dev/sda1", "server:/export", ...
  unsigned major = 0;       // device number of the file system
  unsigned minor = 0;
};

// The entries of a text in the form of /proc/<pid>/mountinfo, in its order.
// Lines that don't have that form are passed over.
std::vector<MountEntry> ParseMountInfo(std::string_view text);

// True for file systems that hold no files of a user: proc, sysfs, cgroup,
// devpts and their kin. tmpfs and ramfs are not among them.
bool IsPseudoFileSystem(std::string_view fs_type);

// The runtime's drive type codes.
inline constexpr int kDriveUnknown = 0;
inline constexpr int kDriveNoRootDir = 1;
inline constexpr int kDriveRemovable = 2;
inline constexpr int kDriveFixed = 3;
inline constexpr int kDriveRemote = 4;
inline constexpr int kDriveCdRom = 5;
inline constexpr int kDriveRamDisk = 6;

// The type code of a file system of type `fs_type` on a device whose
// "removable" flag is `removable`: remote for network file systems, CD-ROM
// for iso9660 and udf, RAM disk for tmpfs and ramfs, then removable or fixed.
int DriveTypeOf(std::string_view fs_type, bool removable);

// The drives of a parsed mount table, in drive order, at most 26. Entries are
// taken if their file system is real, their mount point lies outside /proc,
// /sys and /dev, and `is_directory` says it is a directory; a mount point
// mounted again keeps its place and takes the later entry.
std::vector<MountEntry> SelectDrives(const std::vector<MountEntry>& entries,
                                     const std::function<bool(const std::string&)>& is_directory);

// Where the drive functions read the system's state. A test, or a host that
// runs in a sandbox, may point them at a tree of its own.
struct DriveSources {
  std::string mount_table = "/proc/self/mountinfo";
  std::string block_devices = "/sys/dev/block";  // holds "<major>:<minor>/removable"
};
void SetDriveSources(DriveSources sources);
const DriveSources& CurrentDriveSources();

// The drives as they are now, read afresh on every call; empty if the mount
// table can't be read.
std::vector<MountEntry> MountedDrives();

// The mount point of drive `number` ("/" for 0), "" if there is no such drive.
std::u16string DriveRoot(int number);

// The type code of drive `number`: kDriveNoRootDir if there is no such drive.
int DriveType(int number);

// Bytes available to this process on drive `number` (blocks free to an
// unprivileged user times the fragment size); -1 on failure or for no drive.
std::int64_t DriveFreeBytes(int number);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_DRIVES_H_
