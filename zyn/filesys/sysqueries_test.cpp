#include "zyn/filesys/sysqueries.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "testing/zyn_testing.h"
#include "zyn/platform/drives.h"
#include "zyn/platform/random.h"

namespace Zyn_filesys {
namespace {

namespace fs = std::filesystem;
using zyn::platform::RandSeed;
using zyn::testing::Utf8;

TEST(SysDirsTest, FixedDirectoriesAndTemp) {
  EXPECT_EQ(GetSystemDir() + u"|" + GetWindowsDir(), u"/usr/lib|/");
  zyn::testing::TempDir dir;
  const char* old = ::getenv("TMPDIR");
  const std::string saved = old ? old : "";
  for (const std::string& tmp : {dir.path().string(), dir.path().string() + "/"}) {
    ::setenv("TMPDIR", tmp.c_str(), 1);
    EXPECT_EQ(Utf8(GetTempDir()), dir.path().string() + "/");
  }
  zyn::testing::WriteFileBytes(dir / "file", "x");
  for (const char* not_a_dir : {"/file", "/missing"}) {
    ::setenv("TMPDIR", (dir.path().string() + not_a_dir).c_str(), 1);
    EXPECT_EQ(GetTempDir(), u"/tmp/");
  }
  ::unsetenv("TMPDIR");
  EXPECT_EQ(GetTempDir(), u"/tmp/");
  if (old) ::setenv("TMPDIR", saved.c_str(), 1);
}

TEST(GetEnviroVarTest, NameWithoutRegardToCaseLastMatchWins) {
  ::setenv("ZYN_SQ_VAR", "first", 1);
  ::setenv("ZYN_SQ_VARIANT", "longer", 1);
  struct Case {
    std::u16string_view name, value;
  };
  const Case cases[] = {
      {u"ZYN_SQ_VAR", u"first"}, {u"zyn_sq_var", u"first"}, {u"Zyn_Sq_Variant", u"longer"},
      {u"ZYN_SQ_VA", u""},       {u"ZYN_SQ_VAR=", u""},     {u"", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.name));
    EXPECT_EQ(GetEnviroVar(c.name), c.value);
  }
  // Linux keeps names that differ in case apart; the later entry wins.
  ::setenv("zyn_sq_var", "second", 1);
  EXPECT_EQ(GetEnviroVar(u"ZYN_SQ_VAR"), u"second");
  ::setenv("ZYN_SQ_EMPTY", "", 1);
  EXPECT_EQ(GetEnviroVar(u"zyn_sq_empty"), u"");
  for (const char* n : {"ZYN_SQ_VAR", "ZYN_SQ_VARIANT", "zyn_sq_var", "ZYN_SQ_EMPTY"})
    ::unsetenv(n);
}

// Drives on a fake mount table. The removable disk is faked: no machine here
// has one.
class DrivesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    saved_ = zyn::platform::CurrentDriveSources();
    const std::string d = dir_.path().string();
    for (const char* sub : {"usb", "ram", "net", "cd", "full", "sys/block/sdb"}) {
      fs::create_directories(dir_ / sub);
    }
    zyn::testing::WriteFileBytes(dir_ / "sys/block/sdb/removable", "1\n");
    fs::create_directory_symlink(dir_ / "sys/block/sdb", dir_ / "sys/8:16");
    // A directory where the probe file would go: creating the probe fails.
    fs::create_directories(dir_ / "full/$%$LO%$.$$$");
    std::string table = "20 1 0:5 / /proc rw - proc proc rw\n21 1 8:1 / / rw - ext4 /dev/sda1 rw\n";
    for (const char* row :
         {"22 1 8:16 /usb rw - vfat /dev/sdb rw", "23 1 0:40 /ram rw - tmpfs tmpfs rw",
          "24 1 0:41 /net rw - nfs4 srv:/x rw", "25 1 11:0 /cd ro - iso9660 /dev/sr0 ro",
          "26 1 8:2 /full rw - ext4 /dev/sda2 rw"}) {
      const std::string_view r = row;
      const std::size_t mount = r.find('/');  // mounted below the scratch directory
      table += std::string(r.substr(0, mount)) + "/ " + d + std::string(r.substr(mount)) + "\n";
    }
    zyn::testing::WriteFileBytes(dir_ / "mountinfo", table);
    zyn::platform::SetDriveSources({(dir_ / "mountinfo").string(), (dir_ / "sys").string()});
  }
  void TearDown() override { zyn::platform::SetDriveSources(saved_); }

  zyn::testing::TempDir dir_;
  zyn::platform::DriveSources saved_;
};

TEST_F(DrivesTest, ListReplacesFormerContents) {
  zyn::platform::TStringList list;
  list.Add(u"old");
  BuildDriveList(&list);
  ASSERT_EQ(list.Count(), 6);
  EXPECT_EQ(list[0] + list[1] + list[5], u"A:B:F:");
}

TEST_F(DrivesTest, TypesOfEachDrive) {
  const int expected[] = {3, 2, 6, 4, 5, 3, 1, 1};
  for (int n = 0; n < 8; ++n) {
    SCOPED_TRACE(n);
    EXPECT_EQ(GetDiskDriveType(static_cast<std::uint8_t>(n)), expected[n]);
  }
  for (int n : {26, 27, 200, 255}) EXPECT_EQ(GetDiskDriveType(static_cast<std::uint8_t>(n)), 0);
}

TEST_F(DrivesTest, FreeBytesFromTheFileSystem) {
  // Other programs write to the same disk meanwhile: compare within 256 MiB.
  EXPECT_NEAR(static_cast<double>(DiskFreeExtended(1)),
              static_cast<double>(fs::space(dir_ / "usb").available), 256.0 * (1 << 20));
  for (int n : {6, 25, 26, 255}) EXPECT_EQ(DiskFreeExtended(static_cast<std::uint8_t>(n)), -1);
}

TEST_F(DrivesTest, ReadOnlyProbe) {
  EXPECT_FALSE(DiskIsReadOnly(1));
  EXPECT_FALSE(fs::exists(dir_ / "usb/$%$LO%$.$$$"));  // the probe is gone again
  for (int n : {5, 6, 26})
    EXPECT_TRUE(DiskIsReadOnly(static_cast<std::uint8_t>(n))) << n;  // 6, 26: none
}

TEST(RealDrivesTest, RootIsDriveA) {
  zyn::platform::TStringList list;
  BuildDriveList(&list);
  ASSERT_GE(list.Count(), 1);
  EXPECT_EQ(list[0], u"A:");
  EXPECT_GE(DiskFreeExtended(0), 0);
  EXPECT_EQ(GetDiskDriveType(static_cast<std::uint8_t>(list.Count())), 1);
}

// ---- Passwords --------------------------------------------------------------

bool In(std::u16string_view set, char16_t c) { return set.find(c) != set.npos; }
bool IsVowel(char16_t c) { return In(u"aeiouy", c); }
bool IsConsonant(char16_t c) { return In(u"bcdfghjklmnpqrstvwxz", c); }
bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

TEST(InventPasswordTest, ShapeForEveryLength) {
  for (int requested = -3; requested <= 20; ++requested) {
    const int n = std::clamp(requested, 4, 14);
    const std::size_t digits_at = n - 2 >= 7 ? 6 : static_cast<std::size_t>(n - 2);
    for (std::int32_t seed : {0, 1, 4711, -99999}) {
      SCOPED_TRACE(::testing::Message() << "length " << requested << " seed " << seed);
      RandSeed = seed;
      const std::u16string p = InventPassword(requested);
      ASSERT_EQ(p.size(), static_cast<std::size_t>(n));
      EXPECT_TRUE(IsDigit(p[digits_at]) && IsDigit(p[digits_at + 1])) << Utf8(p);
      std::u16string letters = p;
      letters.erase(digits_at, 2);
      for (std::size_t i = 0; i < letters.size(); ++i) {
        // Odd lengths start with a vowel, so vowels sit where i has n's parity.
        const bool vowel_place = (i % 2 == 1) != (n % 2 == 1);
        EXPECT_TRUE(vowel_place ? IsVowel(letters[i]) : IsConsonant(letters[i])) << Utf8(p);
      }
    }
  }
}

TEST(InventPasswordTest, PinnedSeeds) {
  struct Case {
    std::int32_t seed;
    int length;
    bool caps, special;
    std::u16string_view p;
  };
  // Replayed by hand from the generator's sequence.
  const Case cases[] = {
      {1, 8, false, false, u"bygere16"},
      {4711, 14, false, false, u"vovosy88fodime"},
      {4711, 11, false, false, u"upupuw43epa"},
      {12345, 14, true, false, u"KEcOQI24lAbyZe"},
      {12345, 14, true, true, u"KEcOQ#26lAbyZe"},
      {7, 3, true, true, u"Gy25"},
      {1, 8, true, true, u"=yge5E16"},
      {99, 100, true, true, u"DerA6U!280rIZ5"},
      {99, 0, false, false, u"de67"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.seed);
    RandSeed = c.seed;
    EXPECT_EQ(Utf8(InventPassword(c.length, c.caps, c.special)), Utf8(c.p));
    if (!c.caps && !c.special) {
      RandSeed = c.seed;
      EXPECT_EQ(Utf8(InventPassword(c.length)), Utf8(c.p));
    }
  }
}

TEST(InventPasswordTest, RatesOfCapitalsAndReplacements) {
  RandSeed = 2024;
  constexpr int kDraws = 4000;
  int letters = 0, capitals = 0, positions = 0, specials = 0, changed = 0;
  for (int i = 0; i < kDraws; ++i) {
    const std::int32_t seed = RandSeed;
    const std::u16string plain = InventPassword(14);
    RandSeed = seed;
    const std::u16string caps = InventPassword(14, true, false);
    for (std::size_t k = 0; k < caps.size(); ++k) {
      if (IsDigit(plain[k])) {
        EXPECT_EQ(caps[k], plain[k]);
        continue;
      }
      ++letters;
      capitals += caps[k] != plain[k];
    }
    RandSeed = seed;
    const std::u16string special = InventPassword(14, false, true);
    for (std::size_t k = 0; k < special.size(); ++k) {
      ++positions;
      specials += In(u"_!$%#=", special[k]);
      changed += special[k] != plain[k];
    }
  }
  // Expected: half of the letters; a fifth of the positions replaced, 6/16
  // of those by a special character (a digit may replace a digit unseen).
  EXPECT_NEAR(static_cast<double>(capitals) / letters, 0.5, 0.02);
  EXPECT_NEAR(static_cast<double>(specials) / positions, 0.2 * 6 / 16, 0.01);
  EXPECT_NEAR(static_cast<double>(changed) / positions, 0.2, 0.015);
}

TEST(InventPasswordTest, FlagsReachOnlyTheRequestedPositions) {
  for (std::int32_t seed = 0; seed < 200; ++seed) {
    RandSeed = seed;
    const std::u16string plain = InventPassword(2);
    RandSeed = seed;
    const std::u16string p = InventPassword(2, true, true);
    ASSERT_EQ(p.size(), 4u);
    EXPECT_EQ(p.substr(2), plain.substr(2));
  }
}

}  // namespace
}  // namespace Zyn_filesys
