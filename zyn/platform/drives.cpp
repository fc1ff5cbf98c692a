#include "zyn/platform/drives.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zyn::platform {
namespace {

// The next field of a mountinfo line, separated by single blanks.
std::string_view NextField(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  std::string_view field = line.substr(0, end);
  line.remove_prefix(end < line.size() ? end + 1 : end);
  return field;
}

// The kernel writes blank, tab, newline and backslash in paths as "\ooo".
std::string Unescape(std::string_view field) {
  std::string out;
  out.reserve(field.size());
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && i + 3 < field.size()) {
      const std::string_view digits = field.substr(i + 1, 3);
      if (std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '7'; })) {
        const int value = (digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0');
        if (value < 256) {
          out += static_cast<char>(value);
          i += 3;
          continue;
        }
      }
    }
    out += field[i];
  }
  return out;
}

bool ParseDevice(std::string_view field, unsigned& major, unsigned& minor) {
  const std::size_t colon = field.find(':');
  if (colon == std::string_view::npos) return false;
  const char* const a = field.data();
  const auto r1 = std::from_chars(a, a + colon, major);
  const auto r2 = std::from_chars(a + colon + 1, a + field.size(), minor);
  return r1.ec == std::errc() && r1.ptr == a + colon && r2.ec == std::errc() &&
         r2.ptr == a + field.size();
}

bool ParseLine(std::string_view line, MountEntry& entry) {
  // id parent major:minor root mount-point options [optional...] - type source super-options
  NextField(line);
  NextField(line);
  if (!ParseDevice(NextField(line), entry.major, entry.minor)) return false;
  NextField(line);
  const std::string_view mount_point = NextField(line);
  NextField(line);
  while (!line.empty()) {
    if (NextField(line) == "-") break;
  }
  const std::string_view type = NextField(line);
  const std::string_view source = NextField(line);
  if (mount_point.empty() || type.empty()) return false;
  entry.mount_point = Unescape(mount_point);
  entry.fs_type = Unescape(type);
  entry.source = Unescape(source);
  return true;
}

bool BelowDirectory(const std::string& path, std::string_view dir) {
  return path.size() >= dir.size() && path.compare(0, dir.size(), dir) == 0 &&
         (path.size() == dir.size() || path[dir.size()] == '/');
}

}  // namespace

std::vector<MountEntry> ParseMountInfo(std::string_view text) {
  std::vector<MountEntry> entries;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    MountEntry entry;
    if (ParseLine(text.substr(0, end), entry)) entries.push_back(std::move(entry));
    text.remove_prefix(end < text.size() ? end + 1 : end);
  }
  return entries;
}

bool IsPseudoFileSystem(std::string_view fs_type) {
  static constexpr std::array<std::string_view, 22> kPseudo = {
      "autofs",    "binfmt_misc", "bpf",      "cgroup",         "cgroup2",    "configfs",
      "debugfs",   "devpts",      "devtmpfs", "efivarfs",       "fusectl",    "hugetlbfs",
      "mqueue",    "nsfs",        "proc",     "pstore",         "rpc_pipefs", "securityfs",
      "selinuxfs", "sysfs",       "tracefs",  "fuse.gvfsd-fuse"};
  return std::find(kPseudo.begin(), kPseudo.end(), fs_type) != kPseudo.end();
}

int DriveTypeOf(std::string_view fs_type, bool removable) {
  static constexpr std::array<std::string_view, 14> kRemote = {
      "nfs", "nfs4", "cifs", "smb3",       "smbfs",          "ncpfs", "afs",
      "9p",  "ceph", "coda", "fuse.sshfs", "fuse.glusterfs", "davfs", "fuse.rclone"};
  if (std::find(kRemote.begin(), kRemote.end(), fs_type) != kRemote.end()) return kDriveRemote;
  if (fs_type == "iso9660" || fs_type == "udf") return kDriveCdRom;
  if (fs_type == "tmpfs" || fs_type == "ramfs") return kDriveRamDisk;
  return removable ? kDriveRemovable : kDriveFixed;
}

std::vector<MountEntry> SelectDrives(const std::vector<MountEntry>& entries,
                                     const std::function<bool(const std::string&)>& is_directory) {
  std::vector<MountEntry> drives;
  drives.push_back(MountEntry{"/", "rootfs", "", 0, 0});
  for (const MountEntry& e : entries) {
    if (IsPseudoFileSystem(e.fs_type) || e.mount_point.empty() || e.mount_point.front() != '/' ||
        BelowDirectory(e.mount_point, "/proc") || BelowDirectory(e.mount_point, "/sys") ||
        BelowDirectory(e.mount_point, "/dev")) {
      continue;
    }
    const auto same = std::find_if(drives.begin(), drives.end(), [&](const MountEntry& d) {
      return d.mount_point == e.mount_point;
    });
    if (same != drives.end()) {
      *same = e;
    } else if (drives.size() < 26 && is_directory(e.mount_point)) {
      drives.push_back(e);
    }
  }
  return drives;
}

}  // namespace zyn::platform
