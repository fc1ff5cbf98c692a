#include "zyn/platform/drives.h"

#include <gtest/gtest.h>

#include "testing/zyn_testing.h"

namespace zyn::platform {
namespace {

// "mount point,type,source,major:minor;" for each entry.
std::string Show(const std::vector<MountEntry>& entries) {
  std::string s;
  for (const MountEntry& e : entries) {
    s += e.mount_point + "," + e.fs_type + "," + e.source + "," + std::to_string(e.major) + ":" +
         std::to_string(e.minor) + ";";
  }
  return s;
}

TEST(MountInfoTest, ParsesFieldsEscapesAndOptionalTags) {
  const std::string text =
      "27 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
      "30 27 0:27 / /media/my\\040disk rw - vfat /dev/sdb1 rw\n"
      "garbage line\n"
      "31 27 x:1 / /bad rw - ext4 /dev/sdc rw\n"
      "32 27 0:44 / /mnt/nfs rw master:3 propagate_from:2 - nfs4 srv:/export rw\r\n"
      "33 27 0:45 / /cut";
  EXPECT_EQ(
      Show(ParseMountInfo(text)),
      "/,ext4,/dev/vda,254:0;/media/my disk,vfat,/dev/sdb1,0:27;/mnt/nfs,nfs4,srv:/export,0:44;");
}

TEST(MountInfoTest, ParsesThisMachinesTable) {
  std::string text = zyn::testing::ReadFileBytes("/proc/self/mountinfo");
  ASSERT_FALSE(text.empty());
  const std::vector<MountEntry> e = ParseMountInfo(text);
  std::size_t lines = 0;
  for (char c : text) lines += c == '\n';
  EXPECT_EQ(e.size(), lines);
}

TEST(DriveTypeTest, KindsOfFileSystem) {
  struct Case {
    std::string_view type;
    bool removable;
    int code;
  };
  const Case cases[] = {
      {"ext4", false, kDriveFixed},    {"ext4", true, kDriveRemovable},
      {"vfat", true, kDriveRemovable}, {"nfs", false, kDriveRemote},
      {"cifs", true, kDriveRemote},    {"fuse.sshfs", false, kDriveRemote},
      {"iso9660", true, kDriveCdRom},  {"udf", false, kDriveCdRom},
      {"tmpfs", false, kDriveRamDisk}, {"ramfs", false, kDriveRamDisk},
      {"overlay", false, kDriveFixed},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type));
    EXPECT_EQ(DriveTypeOf(c.type, c.removable), c.code);
  }
  EXPECT_TRUE(IsPseudoFileSystem("proc"));
  EXPECT_TRUE(IsPseudoFileSystem("cgroup2"));
  EXPECT_FALSE(IsPseudoFileSystem("tmpfs"));
}

TEST(SelectDrivesTest, RootFirstPseudoAndPlumbingLeftOutRemountsKeepTheirPlace) {
  const std::vector<MountEntry> entries = ParseMountInfo(
      "1 0 0:1 / /home rw - ext4 /dev/sda2 rw\n"
      "2 0 0:2 / /proc rw - proc proc rw\n"
      "3 0 0:3 / /dev/shm rw - tmpfs tmpfs rw\n"
      "4 0 0:4 / /sys/fs/x rw - ext4 /dev/sdz rw\n"
      "5 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
      "6 0 0:5 / /tmp rw - tmpfs tmpfs rw\n"
      "7 0 0:6 / /etc/hosts rw - ext4 /dev/sda1 rw\n"
      "8 0 0:7 / /home rw - nfs srv:/home rw\n"
      "9 0 0:8 / /devices rw - ext4 /dev/sdc rw\n");
  const auto is_dir = [](const std::string& p) { return p != "/etc/hosts"; };
  const std::vector<MountEntry> d = SelectDrives(entries, is_dir);
  EXPECT_EQ(Show(d),
            "/,ext4,/dev/sda1,8:1;/home,nfs,srv:/home,0:7;"
            "/tmp,tmpfs,tmpfs,0:5;/devices,ext4,/dev/sdc,0:8;");

  std::string many;
  for (int i = 0; i < 40; ++i) many += "1 0 0:1 / /m" + std::to_string(i) + " rw - ext4 x rw\n";
  const std::vector<MountEntry> capped = SelectDrives(ParseMountInfo(many), is_dir);
  ASSERT_EQ(capped.size(), 26u);
  EXPECT_EQ(capped[0].fs_type, "rootfs");  // no "/" in the table: the root still is drive A
  EXPECT_EQ(capped[25].mount_point, "/m24");
}

}  // namespace
}  // namespace zyn::platform
