#include "zyn/platform/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

using zyn::testing::TempDir;
using zyn::testing::Utf8;
using zyn::testing::WriteFileBytes;

std::u16string U(const std::filesystem::path& p) { return FromUTF8(p.string()); }

TEST(FileNamesTest, SplitAtEitherSeparatorAndDriveColon) {
  struct Case {
    std::u16string_view in, path, name, ext;
  };
  const Case cases[] = {
      {u"/a/b.txt", u"/a/", u"b.txt", u".txt"},
      {u"c:\\a.b\\file", u"c:\\a.b\\", u"file", u""},
      {u"c:x.tar.gz", u"c:", u"x.tar.gz", u".gz"},
      {u"a/b\\c.", u"a/b\\", u"c.", u"."},
      {u".cfg", u"", u".cfg", u".cfg"},
      {u"/", u"/", u"", u""},
      {u"12:30.log", u"", u"12:30.log", u".log"},
      {u"", u"", u"", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(ExtractFilePath(c.in), c.path);
    EXPECT_EQ(ExtractFileName(c.in), c.name);
    EXPECT_EQ(ExtractFileExt(c.in), c.ext);
  }
  EXPECT_EQ(ChangeFileExt(u"/a.b/c.txt", u".csv"), u"/a.b/c.csv");
  EXPECT_EQ(ChangeFileExt(u"/a.b/c", u".csv"), u"/a.b/c.csv");
  EXPECT_EQ(ChangeFileExt(u"c.tar.gz", u""), u"c.tar");
}

TEST(FileNamesTest, ExpandFileNameResolvesDotsByText) {
  EXPECT_EQ(ExpandFileName(u"/a/./b/../c"), u"/a/c");
  EXPECT_EQ(ExpandFileName(u"/a//b/"), u"/a/b/");
  EXPECT_EQ(ExpandFileName(u"/.."), u"/");
  EXPECT_EQ(ExpandFileName(u"/a/.."), u"/");
  EXPECT_EQ(ExpandFileName(u""), u"");
  const std::u16string cwd = FromUTF8(std::filesystem::current_path().string());
  EXPECT_EQ(ExpandFileName(u"x/y"), (cwd == u"/" ? u"" : cwd) + u"/x/y");
  EXPECT_EQ(GetCurrentDir(), cwd);
}

TEST(MaskTest, StarAndQuestionMarkAsTheRuntimeMatched) {
  struct Case {
    std::u16string_view name, mask;
    bool match;
  };
  const Case cases[] = {
      {u"a.txt", u"*.*", true},     {u"README", u"*.*", true},
      {u"README", u"*.", true},     {u"a.txt", u"*.", false},
      {u"a.txt", u"*.txt", true},   {u"a.TXT", u"*.txt", false},
      {u"ab", u"a?", true},         {u"a", u"a?", false},
      {u"abc", u"a*c", true},       {u"abcbc", u"a*bc", true},
      {u"abd", u"a*c", false},      {u"", u"*", true},
      {u"x", u"", false},           {u"data1.csv", u"data?.*", true},
      {u"data1", u"data?.*", true}, {u"*x", u"*x", true},
      {u"a*b", u"a*", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.name) + " ~ " + Utf8(c.mask));
    EXPECT_EQ(MatchesMask(c.name, c.mask), c.match);
  }
  // A pathological mask stays linear enough to finish at once.
  EXPECT_FALSE(MatchesMask(std::u16string(5000, u'a'), std::u16string(200, u'*') + u"b"));
}

std::vector<std::pair<std::string, int>> Find(const std::u16string& mask, int attr) {
  std::vector<std::pair<std::string, int>> found;
  TSearchRec f;
  for (int r = FindFirst(mask, attr, f); r == 0; r = FindNext(f)) {
    found.emplace_back(Utf8(f.Name), f.Attr);
  }
  FindClose(f);
  std::sort(found.begin(), found.end());
  return found;
}

TEST(FindTest, FilterKeepsOutHiddenAndDirectoriesNotAskedFor) {
  TempDir t;
  WriteFileBytes(t / "a.txt", "abc");
  WriteFileBytes(t / ".hidden", "");
  WriteFileBytes(t / "ro", "");
  std::filesystem::permissions(t / "ro", std::filesystem::perms::owner_read);
  std::filesystem::create_directory(t / "sub");
  std::filesystem::create_directory_symlink("/", t / "link");
  const std::u16string dir = U(t.path()) + u"/";

  using V = std::vector<std::pair<std::string, int>>;
  EXPECT_EQ(Find(dir + u"*", faArchive),
            (V{{"a.txt", faArchive}, {"link", faSymLink}, {"ro", faArchive | faReadOnly}}));
  EXPECT_EQ(Find(dir + u"*.*", faAnyFile), (V{{".", faDirectory | faHidden},
                                              {"..", faDirectory | faHidden},
                                              {".hidden", faArchive | faHidden},
                                              {"a.txt", faArchive},
                                              {"link", faSymLink},
                                              {"ro", faArchive | faReadOnly},
                                              {"sub", faDirectory}}));
  EXPECT_EQ(Find(dir + u"sub", faDirectory), (V{{"sub", faDirectory}}));
  EXPECT_EQ(Find(dir + u"sub", 0), V{});
  EXPECT_EQ(Find(dir + u"nothing*", faAnyFile), V{});
  EXPECT_EQ(Find(U(t / "missing") + u"/*", faAnyFile), V{});

  TSearchRec f;
  ASSERT_EQ(FindFirst(dir + u"a.txt", faAnyFile, f), 0);
  EXPECT_EQ(f.Size, 3);
  EXPECT_NE(FindNext(f), 0);
}

TEST(FileHandleTest, ReadWriteSeekDates) {
  TempDir t;
  const std::u16string name = U(t / "f.bin");
  int h = FileCreate(name);
  ASSERT_GE(h, 0);
  const std::uint8_t data[] = {1, 2, 3, 4, 5};
  EXPECT_EQ(FileWrite(h, data), 5);
  EXPECT_EQ(FileSeek(h, 1, 0), 1);
  std::uint8_t back[8] = {};
  EXPECT_EQ(FileRead(h, back), 4);
  EXPECT_EQ(back[0], 2);
  const TFileTime stamp{1'000'000'000, 123'456'789};
  EXPECT_TRUE(FileSetDate(h, stamp));
  TFileTime got;
  EXPECT_TRUE(FileGetDate(h, got));
  EXPECT_EQ(got, stamp);
  FileClose(h);
  EXPECT_EQ(FileOpen(U(t.path()), fmOpenRead), -1);  // a directory is no file
  h = FileOpen(name, fmOpenRead | fmShareDenyWrite);
  EXPECT_EQ(FileWrite(h, data), -1);
  FileClose(h);
}

TEST(NamedFileTest, AttributesExistenceAndRemoval) {
  TempDir t;
  const std::u16string file = U(t / "f"), dir = U(t / "d");
  WriteFileBytes(t / "f", "x");
  EXPECT_EQ(FileGetAttr(file), faArchive);
  EXPECT_EQ(FileSetAttr(file, faReadOnly), 0);
  EXPECT_EQ(FileGetAttr(file), faArchive | faReadOnly);
  EXPECT_FALSE(DeleteFile(file));  // read-only files resist, as they did
  EXPECT_EQ(FileSetAttr(file, 0), 0);
  EXPECT_EQ(FileGetAttr(U(t / "missing")), -1);

  EXPECT_TRUE(ForceDirectories(dir + u"/x/y/"));
  EXPECT_TRUE(DirectoryExists(dir + u"/x/y"));
  EXPECT_FALSE(FileExists(dir));
  EXPECT_FALSE(ForceDirectories(file + u"/sub"));
  EXPECT_FALSE(DeleteFile(dir));
  EXPECT_FALSE(RemoveDir(dir));  // not empty

  WriteFileBytes(t / "g", "keep");
  EXPECT_FALSE(RenameFile(file, U(t / "g")));  // never replaces
  EXPECT_EQ(zyn::testing::ReadFileBytes(t / "g"), "keep");
  EXPECT_TRUE(RenameFile(file, U(t / "h")));
}

}  // namespace
}  // namespace zyn::platform

namespace zyn::platform {
namespace {

// A name holding a NUL must reach no file at all: cut at the NUL it would
// name "a", which exists here and must stay untouched.
TEST(FileNamesTest, NameWithNulReachesNoFile) {
  TempDir dir;
  WriteFileBytes(dir / "a", "keep");
  const std::u16string bad = FromUTF8((dir / "a").string()) + std::u16string(1, u'\0') + u"x";
  EXPECT_FALSE(FileExists(bad));
  EXPECT_EQ(FileOpen(bad, fmOpenRead), -1);
  EXPECT_EQ(FileGetAttr(bad), -1);
  EXPECT_FALSE(DeleteFile(bad));
  EXPECT_FALSE(RenameFile(bad, FromUTF8((dir / "b").string())));
  const int created = FileCreate(bad);
  EXPECT_EQ(created, -1);
  if (created >= 0) FileClose(created);
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "a"), "keep");
}

}  // namespace
}  // namespace zyn::platform
