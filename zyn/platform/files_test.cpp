#include "zyn/platform/files.h"

#include <gtest/gtest.h>

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
  // Each row: name, then "path|name|extension".
  const std::pair<std::u16string_view, std::string_view> cases[] = {
      {u"/a/b.txt", "/a/|b.txt|.txt"},
      {u"c:\\a.b\\file", "c:\\a.b\\|file|"},
      {u"c:x.tar.gz", "c:|x.tar.gz|.gz"},
      {u"a/b\\c.", "a/b\\|c.|."},
      {u".cfg", "|.cfg|.cfg"},
      {u"/", "/||"},
      {u"12:30.log", "|12:30.log|.log"},
      {u"", "||"},
  };
  for (const auto& [in, parts] : cases) {
    SCOPED_TRACE(Utf8(in));
    EXPECT_EQ(Utf8(ExtractFilePath(in)) + "|" + Utf8(ExtractFileName(in)) + "|" +
                  Utf8(ExtractFileExt(in)),
              parts);
  }
  for (std::u16string_view in : {u"/a.b/c.txt", u"/a.b/c"})
    EXPECT_EQ(ChangeFileExt(in, u".csv"), u"/a.b/c.csv");
  EXPECT_EQ(ChangeFileExt(u"c.tar.gz", u""), u"c.tar");
}

TEST(FileNamesTest, ExpandFileNameResolvesDotsByText) {
  EXPECT_EQ(ExpandFileName(u"/a/./b/../c"), u"/a/c");
  EXPECT_EQ(ExpandFileName(u"/a//b/"), u"/a/b/");
  EXPECT_EQ(ExpandFileName(u"/.."), u"/");
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
      {u"README", u"*.*", true},   {u"README", u"*.", true},     {u"a.txt", u"*.", false},
      {u"a.TXT", u"*.txt", false}, {u"ab", u"a?", true},         {u"a", u"a?", false},
      {u"abcbc", u"a*bc", true},   {u"abd", u"a*c", false},      {u"", u"*", true},
      {u"x", u"", false},          {u"data1", u"data?.*", true}, {u"a*b", u"a*", true},
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
  const V dots{{".", faDirectory | faHidden}, {"..", faDirectory | faHidden}};
  V all = dots;
  all.insert(all.end(), {{".hidden", faArchive | faHidden},
                         {"a.txt", faArchive},
                         {"link", faSymLink},
                         {"ro", faArchive | faReadOnly},
                         {"sub", faDirectory}});
  EXPECT_EQ(Find(dir + u"*.*", faAnyFile), all);
  EXPECT_EQ(Find(dir + u"sub", faDirectory), (V{{"sub", faDirectory}}));
  for (const std::u16string& mask : {dir + u"nothing*", U(t / "missing") + u"/*"})
    EXPECT_EQ(Find(mask, faAnyFile), V{});
  EXPECT_EQ(Find(dir + u"sub", 0), V{});

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
  EXPECT_EQ(back[0] + back[3], 2 + 5);
  const TFileTime stamp{1'000'000'000, 123'456'789};
  EXPECT_TRUE(FileSetDate(h, stamp));
  TFileTime got;
  EXPECT_TRUE(FileGetDate(h, got) && got == stamp);
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
  ASSERT_EQ(FileSetAttr(file, faReadOnly), 0);
  EXPECT_EQ(FileGetAttr(file), faArchive | faReadOnly);
  EXPECT_FALSE(DeleteFile(file));  // read-only files resist, as they did
  EXPECT_EQ(FileSetAttr(file, 0), 0);
  EXPECT_EQ(FileGetAttr(U(t / "missing")), -1);

  EXPECT_TRUE(ForceDirectories(dir + u"/x/y/") && DirectoryExists(dir + u"/x/y"));
  EXPECT_FALSE(FileExists(dir));
  EXPECT_FALSE(ForceDirectories(file + u"/sub"));
  EXPECT_FALSE(DeleteFile(dir) || RemoveDir(dir));  // a directory, and not empty

  WriteFileBytes(t / "g", "keep");
  EXPECT_FALSE(RenameFile(file, U(t / "g")));  // never replaces
  EXPECT_EQ(zyn::testing::ReadFileBytes(t / "g"), "keep");
  EXPECT_TRUE(RenameFile(file, U(t / "h")));
}

// A name holding a NUL must reach no file at all: cut at the NUL it would
// name "a", which exists here and must stay untouched.
TEST(FileNamesTest, NameWithNulReachesNoFile) {
  TempDir dir;
  WriteFileBytes(dir / "a", "keep");
  const std::u16string bad = U(dir / "a") + std::u16string(1, u'\0') + u"x";
  EXPECT_FALSE(FileExists(bad));
  EXPECT_EQ(FileOpen(bad, fmOpenRead), -1);
  EXPECT_EQ(FileGetAttr(bad), -1);
  EXPECT_FALSE(DeleteFile(bad));
  EXPECT_FALSE(RenameFile(bad, U(dir / "b")));
  EXPECT_EQ(FileCreate(bad), -1);
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "a"), "keep");
}

}  // namespace
}  // namespace zyn::platform
