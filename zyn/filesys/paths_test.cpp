#include "zyn/filesys/paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "testing/zyn_testing.h"
#include "zyn/platform/textfile.h"

namespace Zyn_filesys {
namespace {

using zyn::platform::FromUTF8;
using zyn::testing::TempDir;
using zyn::testing::Utf8;
using zyn::testing::WriteFileBytes;

std::u16string U(const std::filesystem::path& p) { return FromUTF8(p.string()); }

TEST(PathsTest, NamesAndExtensions) {
  struct Case {
    std::u16string_view in, stripped, parent;
  };
  const Case cases[] = {
      {u"c:\\a.b\\file", u"c:\\a.b\\file", u"c:\\a.b\\"},
      {u"archive.tar.gz", u"archive.tar", u""},
      {u"/home/ann/.cfg", u"/home/ann/", u"/home/ann/"},
      {u"c:\\a\\b\\", u"c:\\a\\b\\", u"c:\\a\\"},
      {u"c:\\a\\b", u"c:\\a\\b", u"c:\\a\\"},
      {u"c:\\", u"c:\\", u""},
      {u"/a/b", u"/a/b", u"/a/"},
      {u"/a/b.c/", u"/a/b.c/", u"/a/"},
      {u"a\\b/c.d", u"a\\b/c", u"a\\b/"},
      {u"", u"", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(StripExtension(c.in), c.stripped);
    EXPECT_EQ(ParentDir(c.in), c.parent);
  }
  EXPECT_EQ(StripPath(u"/a/b.txt"), u"b.txt");
  EXPECT_EQ(InsertBeforeFileExt(u"_old", u"c:\\a.b\\data.tar.gz"), u"c:\\a.b\\data_old.tar.gz");
  EXPECT_EQ(InsertBeforeFileExt(u"_old", u"/a.b/data"), u"/a.b/data_old");
  EXPECT_EQ(EnsureDefaultFileExt(u"data", u"txt"), u"data.txt");
  EXPECT_EQ(EnsureDefaultFileExt(u"data", u".txt"), u"data.txt");
  EXPECT_EQ(EnsureDefaultFileExt(u"data.csv", u"txt"), u"data.csv");
  EXPECT_EQ(EnsureDefaultFileExt(u"data.", u"txt"), u"data.");
  EXPECT_EQ(EnsureDefaultFileExt(u"/a.b/data", u""), u"/a.b/data");
  EXPECT_EQ(EnsureDefaultFileExt(u"/a.b/data", u"csv"), u"/a.b/data.csv");
}

TEST(PathsTest, RootsAndDrives) {
  struct Case {
    std::u16string_view in;
    bool root;
    int drive;
  };
  const Case cases[] = {
      {u"c:\\", true, -1},  {u" c:\\ ", true, 0},      {u"c:", false, -1}, {u"/", true, 0},
      {u" / ", true, 0},    {u"\\\\srv\\x", false, 0}, {u"c:/", true, -1}, {u"c:\\a", false, -1},
      {u"/home", false, 0}, {u"Z", false, 25},         {u"b/", false, 1},  {u"", false, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(IsRootDir(c.in), c.root);
    EXPECT_EQ(ExtractDrive(c.in), c.drive);
  }
}

TEST(PathsTest, AbridgeFilePath) {
  struct Case {
    std::u16string_view in;
    int len;
    std::u16string_view out;
  };
  const Case cases[] = {
      {u"c:\\aaa\\bbb\\ccc\\file.txt", 16, u"c:\\..\\..\\..\\file.txt"},
      {u"c:\\aaa\\bbb\\ccc\\file.txt", 23, u"c:\\..\\bbb\\ccc\\file.txt"},
      {u"c:\\aaa\\bbb\\ccc\\file.txt", 24, u"c:\\aaa\\bbb\\ccc\\file.txt"},
      {u"/home/ann/data/x.csv", 15, u"/../../../x.csv"},
      {u"/home/ann/data/x.csv", 18, u"/../../data/x.csv"},
      {u"file.txt", 1, u"file.txt"},
      {u"c:\\a\\b.txt", 3, u"c:\\..\\b.txt"},  // a one-letter name grows
      {u"a//b", 0, u"a/../b"},
      {u"", -5, u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.in) + " " + std::to_string(c.len));
    EXPECT_EQ(AbridgeFilePath(c.in, c.len), c.out);
  }
}

TEST(PathsTest, IsDOS83Path) {
  struct Case {
    std::u16string_view in;
    bool is83;
  };
  const Case cases[] = {
      {u"", true},
      {u"readme.txt", true},
      {u"c:\\longdirname\\x.txt", false},
      {u"c:\\dirname8\\x.txt", true},
      {u"abcdefgh.ijklmnop", true},
      {u"abcdefghi.txt", false},
      {u"abcdefghi", true},  // the last segment may hold nine
      {u"abcdefghij", false},
      {u"a.b.c.d", true},
      {u"my file.txt", false},
      {u"d\u00e4t.txt", false},
      {u"/usr/lib/x.so", true},
      {u"{x}~1!@#$%&'()-^_`.c", false},
      {u"{x}~1!@.#$%&'()-^", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(IsDOS83Path(c.in), c.is83);
  }
}

TEST(PathsTest, DOSToWinPathFindsNamesAsStored) {
  TempDir t;
  std::filesystem::create_directories(t / "Data" / "Sub");
  WriteFileBytes(t / "Data" / "Sub" / "File.TXT", "x");
  WriteFileBytes(t / "Data" / "file.txt", "x");
  const std::u16string base = U(t.path());
  EXPECT_EQ(DOSToWinPath(base + u"/data/SUB/file.txt"), base + u"/Data/Sub/File.TXT");
  // An exact match wins over one equal but for case.
  EXPECT_EQ(DOSToWinPath(base + u"/DATA/file.txt"), base + u"/Data/file.txt");
  EXPECT_EQ(DOSToWinPath(base + u"/data/./sub/../SUB/"), base + u"/Data/Sub/");
  // From the first missing component on, the expanded path comes back as it is.
  EXPECT_EQ(DOSToWinPath(base + u"/data/none/../x"), base + u"/data/x");
  EXPECT_EQ(DOSToWinPath(u"/"), u"/");
}

TEST(PathsTest, SetAllFilenameCaseRenamesLastComponentsOnly) {
  TempDir t;
  std::filesystem::create_directories(t / "Top" / "Sub");
  WriteFileBytes(t / "Top" / "a.TXT", "1");
  WriteFileBytes(t / "Top" / "B.txt", "2");
  WriteFileBytes(t / "Top" / "keep.csv", "3");
  WriteFileBytes(t / "Top" / "Sub" / "c.Txt", "4");
  std::filesystem::create_directories(t / "Top" / "X.txt");
  WriteFileBytes(t / "Top" / "X.txt" / "d.txt", "5");
  const std::u16string top = U(t / "Top");

  SetAllFilenameCase(top + u"/*.txt", true);
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "A.TXT"));
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "B.TXT"));
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "keep.csv"));
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "Sub" / "c.Txt"));  // Sub doesn't match
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "X.TXT" / "D.TXT"));

  SetAllFilenameCase(top + u"/*", false);
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "sub" / "c.txt"));
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "x.txt" / "d.txt"));
  EXPECT_TRUE(std::filesystem::exists(t / "Top" / "a.txt"));

  // A name taken by another entry is never overwritten.
  WriteFileBytes(t / "Top" / "Q", "upper");
  WriteFileBytes(t / "Top" / "q", "lower");
  EXPECT_THROW(SetAllFilenameCase(top + u"/q", true), zyn::platform::EInOutError);
  EXPECT_EQ(zyn::testing::ReadFileBytes(t / "Top" / "Q"), "upper");
  EXPECT_EQ(zyn::testing::ReadFileBytes(t / "Top" / "q"), "lower");
}

}  // namespace
}  // namespace Zyn_filesys
