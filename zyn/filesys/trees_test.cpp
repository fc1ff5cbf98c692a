#include "zyn/filesys/trees.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/textfile.h"
#include "zyn/platform/trash.h"

namespace Zyn_filesys {
namespace {

namespace fs = std::filesystem;
using zyn::platform::EInOutError;
using zyn::platform::FromUTF8;
using zyn::platform::TStringList;
using zyn::testing::ReadFileBytes;
using zyn::testing::TempDir;
using zyn::testing::Utf8;
using zyn::testing::WriteFileBytes;

std::u16string U(const fs::path& p) { return FromUTF8(p.string()); }

std::string Pattern(std::size_t n) {
  std::string s(n, '\0');
  for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<char>((i * 131 + i / 7) & 0xFF);
  return s;
}

std::pair<long, long> MTime(const fs::path& p) {
  struct stat st {};
  ::stat(p.c_str(), &st);
  return {st.st_mtim.tv_sec, st.st_mtim.tv_nsec};
}

mode_t Mode(const fs::path& p) {
  struct stat st {};
  ::lstat(p.c_str(), &st);
  return st.st_mode & 07777;
}

// Feedback recorders: the callback types are plain function pointers.
std::vector<std::pair<int, int>> file_calls;
void RecordFile(int bytes, int size) { file_calls.emplace_back(bytes, size); }
void AbortAtFirst(int bytes, int size) {
  RecordFile(bytes, size);
  if (file_calls.size() == 1) AbortAnyFileCopying();
}

struct TreeCall {
  int bytes, size;
  std::string name;
  int files;
};
std::vector<TreeCall> tree_calls;
void RecordTree(int bytes, int size, std::u16string_view name, int files) {
  tree_calls.push_back({bytes, size, Utf8(name), files});
}
void AbortTree(int bytes, int size, std::u16string_view name, int files) {
  RecordTree(bytes, size, name, files);
  if (files == 2) AbortAnyFileCopying();
}

std::vector<std::pair<std::string, int>> scan_calls;
void RecordScan(std::u16string_view dir, int count) { scan_calls.emplace_back(Utf8(dir), count); }

TEST(FileCopyFeedBkTest, FeedbackRunsOncePerRoundAndTwiceAround) {
  TempDir t;
  for (const std::size_t n : {0u, 8191u, 8192u, 8193u, 3u * 8192u}) {
    SCOPED_TRACE(n);
    const std::string data = Pattern(n);
    WriteFileBytes(t / "src", data);
    const struct timespec stamp = {1234567890, 987654321};
    const struct timespec times[2] = {stamp, stamp};
    ::utimensat(AT_FDCWD, (t / "src").c_str(), times, 0);
    file_calls.clear();
    EXPECT_EQ(FileCopyFeedBk(U(t / "src"), U(t / "dst"), false, RecordFile), kCopyOk);
    EXPECT_EQ(ReadFileBytes(t / "dst"), data);
    EXPECT_EQ(MTime(t / "dst"), std::make_pair(stamp.tv_sec, stamp.tv_nsec));
    // Start, one call per round (a multiple of 8192 takes one more, empty
    // round) with the bytes before that round, then the end.
    std::vector<std::pair<int, int>> expected{{0, int(n)}};
    for (std::size_t done = 0;; done += 8192) {
      expected.emplace_back(int(done), int(n));
      if (n - done < 8192) break;
    }
    expected.emplace_back(int(n), int(n));
    EXPECT_EQ(file_calls, expected);
  }
}

TEST(FileCopyFeedBkTest, TargetDirectoryAttributesAndAbort) {
  TempDir t;
  WriteFileBytes(t / "a.txt", Pattern(20000));
  fs::create_directory(t / "into");
  EXPECT_EQ(FileCopyFeedBk(U(t / "a.txt"), U(t / "into"), false, nullptr), kCopyOk);
  EXPECT_EQ(ReadFileBytes(t / "into" / "a.txt"), Pattern(20000));

  // Read-only never travels; the other permission bits do with the flag.
  ::chmod((t / "a.txt").c_str(), 0550);
  EXPECT_EQ(FileCopyFeedBk(U(t / "a.txt"), U(t / "b.txt"), true, nullptr), kCopyOk);
  EXPECT_EQ(Mode(t / "b.txt"), 0750u);

  // Aborting in the first call still lets the first block through.
  file_calls.clear();
  EXPECT_EQ(FileCopyFeedBk(U(t / "a.txt"), U(t / "part"), true, AbortAtFirst), kCopyOk);
  EXPECT_EQ(ReadFileBytes(t / "part"), Pattern(8192));
  EXPECT_EQ(file_calls, (std::vector<std::pair<int, int>>{{0, 20000}, {0, 20000}, {8192, 20000}}));
  EXPECT_EQ(MTime(t / "part"), MTime(t / "a.txt"));
  EXPECT_EQ(Mode(t / "part"), 0750u);
}

TEST(FileCopyFeedBkTest, Statuses) {
  TempDir t;
  WriteFileBytes(t / "s", "data");
  try {
    FileCopyFeedBk(U(t / "missing"), U(t / "x"), false, RecordFile);
    ADD_FAILURE() << "no exception";
  } catch (const EInOutError& e) {
    EXPECT_EQ(e.ErrorCode(), zyn::platform::kIoFileNotFound);
  }
  EXPECT_THROW(FileCopyFeedBk(U(t.path()), U(t / "x"), false, nullptr), EInOutError);
  zyn::platform::IOResult();
  EXPECT_FALSE(fs::exists(t / "x"));

  file_calls.clear();
  EXPECT_EQ(FileCopyFeedBk(U(t / "s"), U(t / "no" / "x"), false, RecordFile), kCopyTargetFailed);
  EXPECT_EQ(file_calls, (std::vector<std::pair<int, int>>{{0, 4}, {0, 4}}));
  // The source named as its own target is refused, not truncated.
  EXPECT_EQ(FileCopyFeedBk(U(t / "s"), U(t / "s"), false, nullptr), kCopyTargetFailed);
  EXPECT_EQ(ReadFileBytes(t / "s"), "data");
  // Real devices that fail: /dev/full takes no byte, /proc/self/mem gives none.
  if (fs::exists("/dev/full")) {
    EXPECT_EQ(FileCopyFeedBk(U(t / "s"), u"/dev/full", false, nullptr), kCopyWriteFailed);
  }
  if (fs::exists("/proc/self/status")) {  // a size of 0, and yet bytes to read
    EXPECT_EQ(FileCopyFeedBk(u"/proc/self/status", U(t / "st"), false, nullptr), kCopyOk);
    EXPECT_NE(ReadFileBytes(t / "st").find("Name:"), std::string::npos);
  }
  if (fs::exists("/proc/self/mem")) {
    EXPECT_EQ(FileCopyFeedBk(u"/proc/self/mem", U(t / "m"), false, nullptr), kCopyReadFailed);
  }
}

// Builds a small tree: files, a hidden file, an empty directory, nested
// directories, a link and a name that isn't UTF-8.
void MakeTree(const fs::path& root) {
  fs::create_directories(root / "empty");
  fs::create_directories(root / "d1" / "d2");
  WriteFileBytes(root / "f1.txt", Pattern(10));
  WriteFileBytes(root / ".hidden", "h");
  WriteFileBytes(root / "d1" / "f2.dat", Pattern(9000));
  WriteFileBytes(root / "d1" / "d2" / "f3", "");
  WriteFileBytes(root / "d1" / "odd\xff\x01name", "odd");
  WriteFileBytes(root / "d1" / "back\\slash*?:", "any byte but / and NUL");
  fs::create_symlink("f1.txt", root / "link");
}

TEST(CopyFileTreeTest, CopiesTreeAsCpDoes) {
  TempDir t;
  MakeTree(t / "src");
  tree_calls.clear();
  CopyFileTree(U(t / "src"), U(t / "dst"), true, RecordTree);
  const std::string diff = "diff -r --no-dereference '" + (t / "src").string() + "' '" +
                           (t / "dst").string() + "' >/dev/null 2>&1";
  EXPECT_EQ(std::system(diff.c_str()), 0);
  EXPECT_EQ(fs::read_symlink(t / "dst" / "link"), "f1.txt");  // the link itself, not its file
  ASSERT_FALSE(tree_calls.empty());
  for (const TreeCall& c : tree_calls)  // all calls for the first file count it as one
    EXPECT_TRUE(c.name != tree_calls.front().name || c.files == 1) << c.name;
  EXPECT_EQ(tree_calls.back().files, 7);  // six files and the link

  // A copy onto an existing copy replaces files and links.
  WriteFileBytes(t / "src" / "f1.txt", "new");
  CopyFileTree(U(t / "src") + u"/", U(t / "dst") + u"/", false, nullptr);
  EXPECT_EQ(std::system(diff.c_str()), 0);
}

TEST(CopyFileTreeTest, SameTreeAbortAndTargetInside) {
  TempDir t;
  MakeTree(t / "a");
  tree_calls.clear();
  CopyFileTree(U(t / "a"), U(t / "A") + u"/", false, RecordTree);
  EXPECT_TRUE(tree_calls.empty());
  EXPECT_FALSE(fs::exists(t / "A"));

  // An abort between two files ends the walk there.
  CopyFileTree(U(t / "a"), U(t / "b"), false, AbortTree);
  EXPECT_EQ(tree_calls.back().files, 2);

  // A target inside the source is not copied into itself.
  CopyFileTree(U(t / "a"), U(t / "a" / "d1" / "copy"), false, nullptr);
  EXPECT_TRUE(fs::exists(t / "a" / "d1" / "copy" / "d1" / "f2.dat"));
  EXPECT_FALSE(fs::exists(t / "a" / "d1" / "copy" / "d1" / "copy"));

  // A source file that can't be opened ends the copy with the exception.
  if (::geteuid() != 0) {
    ::chmod((t / "a" / "f1.txt").c_str(), 0);
    EXPECT_THROW(CopyFileTree(U(t / "a"), U(t / "c"), false, nullptr), EInOutError);
    zyn::platform::IOResult();
  }
}

TEST(DelDirTreeTest, RemovesEverythingOrNamesWhatResisted) {
  TempDir t;
  EXPECT_EQ(DelDirTree(u""), u"");
  EXPECT_EQ(DelDirTree(U(t / "missing")), U(t / "missing") + u"/");

  MakeTree(t / "tree");
  fs::create_directories(t / "outside");
  WriteFileBytes(t / "outside" / "keep", "keep");
  fs::create_directory_symlink(t / "outside", t / "tree" / "d1" / "out");
  EXPECT_EQ(DelDirTree(U(t / "tree")), u"");
  EXPECT_FALSE(fs::exists(t / "tree"));
  EXPECT_EQ(ReadFileBytes(t / "outside" / "keep"), "keep");

  // A read-only file stops the walk; what was removed stays removed.
  fs::create_directories(t / "ro" / "sub");
  WriteFileBytes(t / "ro" / "sub" / "locked", "x");
  ::chmod((t / "ro" / "sub" / "locked").c_str(), 0444);
  EXPECT_EQ(DelDirTree(U(t / "ro")), U(t / "ro" / "sub" / "locked"));
  EXPECT_TRUE(fs::exists(t / "ro" / "sub" / "locked"));

  // A link given as the tree is not entered.
  fs::create_directory_symlink(t / "outside", t / "alias");
  EXPECT_EQ(DelDirTree(U(t / "alias")), U(t / "alias") + u"/");
  EXPECT_EQ(ReadFileBytes(t / "outside" / "keep"), "keep");
}

TEST(DelDirTreeTest, PathsLongerThanTheKernelTakes) {
  TempDir t;
  const std::string name(200, 'n');
  int fd = ::open(t.path().c_str(), O_RDONLY | O_DIRECTORY);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(::mkdirat(fd, "deep", 0777), 0);
  int level = ::openat(fd, "deep", O_RDONLY | O_DIRECTORY);
  ::close(fd);
  for (int i = 0; i < 40; ++i) {  // about 8000 bytes of path
    ASSERT_EQ(::mkdirat(level, name.c_str(), 0777), 0);
    const int next = ::openat(level, name.c_str(), O_RDONLY | O_DIRECTORY);
    ::close(level);
    level = next;
    ASSERT_GE(level, 0);
  }
  const int file = ::openat(level, "leaf", O_WRONLY | O_CREAT, 0666);
  ::close(file);
  ::close(level);

  EXPECT_EQ(CountFiles(U(t / "deep") + u"/*", true, nullptr), 1);
  TStringList list;
  ScanFilesToStrList(U(t / "deep") + u"/leaf", true, &list, nullptr);
  ASSERT_EQ(list.Count(), 1);
  EXPECT_GT(Utf8(list[0]).size(), 8000u);
  EXPECT_EQ(FileDetect(U(t / "deep") + u"/LEAF"), list[0]);
  CopyFileTree(U(t / "deep"), U(t / "copy"), false, nullptr);
  EXPECT_EQ(CountFiles(U(t / "copy") + u"/*", true, nullptr), 1);
  EXPECT_EQ(DelDirTree(U(t / "deep")) + DelDirTree(U(t / "copy")), u"");
  EXPECT_FALSE(fs::exists(t / "deep") || fs::exists(t / "copy"));
}

TEST(DelDirTreeTest, LinkSwapRaceNeverReachesOutside) {
  TempDir t;
  fs::create_directories(t / "outside");
  for (int i = 0; i < 20; ++i) WriteFileBytes(t / "outside" / std::to_string(i), "keep");
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  int rounds = 0;
  for (; rounds < 200 && std::chrono::steady_clock::now() < deadline; ++rounds) {
    const fs::path tree = t / "tree";
    constexpr int kSubs = 8;
    for (int d = 0; d < kSubs; ++d) {
      const fs::path sub = tree / ("sub" + std::to_string(d));
      fs::create_directories(sub);
      for (int i = 0; i < 5; ++i) WriteFileBytes(sub / std::to_string(i), "x");
    }
    std::atomic<bool> stop{false};
    // Keeps exchanging each "subN" with a link to the outside directory,
    // atomically, so each look at a "subN" may meet either.
    std::thread swapper([&] {
      while (!stop.load()) {
        for (int d = 0; d < kSubs; ++d) {
          const std::string sub = (tree / ("sub" + std::to_string(d))).string();
          const std::string link = sub + ".link";
          ::symlink((t / "outside").c_str(), link.c_str());
          ::renameat2(AT_FDCWD, sub.c_str(), AT_FDCWD, link.c_str(), RENAME_EXCHANGE);
        }
      }
    });
    DelDirTree(U(tree));
    stop = true;
    swapper.join();
    std::error_code ignored;
    fs::remove_all(tree, ignored);  // remove_all doesn't follow links either
    ASSERT_EQ(std::distance(fs::directory_iterator(t / "outside"), fs::directory_iterator()), 20)
        << "round " << rounds;
  }
  EXPECT_GT(rounds, 0);
}

TEST(DeleteFilesTest, OneDirectoryNoDotNamesNoDirectories) {
  TempDir t;
  for (const char* name : {"a.txt", "b.txt", "c.csv", ".d.txt", "e.txt"})
    WriteFileBytes(t / name, name);
  fs::create_directories(t / "dir.txt");
  fs::create_directories(t / "sub");
  WriteFileBytes(t / "sub" / "f.txt", "");
  ::chmod((t / "e.txt").c_str(), 0444);
  EXPECT_EQ(DeleteFiles(U(t.path()) + u"/*.txt"), 2);
  for (const char* kept : {".d.txt", "e.txt", "c.csv", "dir.txt", "sub/f.txt"})
    EXPECT_TRUE(fs::exists(t / kept)) << kept;
  EXPECT_EQ(DeleteFiles(U(t / "nowhere") + u"/*"), 0);
}

TEST(ScanTest, FilesFirstThenSubdirectoriesMaskWithoutCase) {
  TempDir t;
  MakeTree(t / "s");
  fs::create_directories(t / "s" / ".git");
  WriteFileBytes(t / "s" / ".git" / "F4.TXT", "");
  WriteFileBytes(t / "s" / "d1" / "d2" / "F5.TXT", "");
  const std::u16string base = U(t / "s") + u"/";

  TStringList list;
  list.Add(u"kept");
  scan_calls.clear();
  ScanFilesToStrList(base + u"*.txt", true, &list, RecordScan);
  ASSERT_EQ(list.Count(), 3);
  EXPECT_EQ(list[0] + u"|" + list[1] + u"|" + list[2],
            u"kept|" + base + u"f1.txt|" + base + u"d1/d2/F5.TXT");
  // One call per directory entered, with the count so far; .git is hidden.
  const std::string b = Utf8(base);
  EXPECT_EQ(scan_calls, (std::vector<std::pair<std::string, int>>{
                            {b, 0}, {b + "d1/", 1}, {b + "d1/d2/", 1}, {b + "empty/", 2}}));

  EXPECT_EQ(CountFiles(base + u"*", false, nullptr), 3);  // f1.txt, .hidden, link
  EXPECT_EQ(CountFiles(base + u"*.*", true, nullptr), 8);
  scan_calls.clear();
  EXPECT_EQ(CountFiles(U(t / "none") + u"/*.x", true, RecordScan), 0);
  EXPECT_EQ(scan_calls.size(), 1u);
  ScanFilesToStrList(base + u"*", true, nullptr, RecordScan);  // no list: nothing at all
  EXPECT_EQ(scan_calls.size(), 1u);
}

TEST(FileDetectTest, DepthFirstIntoPlainDirectoriesOnly) {
  TempDir t;
  fs::create_directories(t / "a" / "b");
  fs::create_directories(t / "a" / ".c");
  WriteFileBytes(t / "a" / "b" / "Target.dat", "");
  WriteFileBytes(t / "a" / ".c" / "other.dat", "");
  EXPECT_EQ(FileDetect(U(t / "a") + u"/target.DAT"), U(t / "a" / "b" / "Target.dat"));
  EXPECT_EQ(FileDetect(U(t / "a") + u"/other.dat"), u"");  // hidden directories aren't entered
  EXPECT_EQ(FileDetect(U(t / "none") + u"/x"), u"");
  // A read-only directory is searched only as the start.
  ::chmod((t / "a" / "b").c_str(), 0555);
  EXPECT_EQ(FileDetect(U(t / "a") + u"/target.dat"), u"");
  EXPECT_EQ(FileDetect(U(t / "a" / "b") + u"/target.dat"), U(t / "a" / "b" / "Target.dat"));
  ::chmod((t / "a" / "b").c_str(), 0755);
}

// A tmpfs mounted for one test, in a mount namespace of this process where
// the kernel allows one, so nothing outside the test sees it.
class TmpfsMount {
 public:
  TmpfsMount(const fs::path& at, const char* options) : path_(at) {
    fs::create_directories(at);
    static const bool private_ns = ::unshare(CLONE_NEWNS) == 0 &&
                                   ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    (void)private_ns;
    mounted_ = ::mount("tmpfs", at.c_str(), "tmpfs", 0, options) == 0;
  }
  TmpfsMount(const TmpfsMount&) = delete;
  TmpfsMount& operator=(const TmpfsMount&) = delete;
  ~TmpfsMount() {
    if (mounted_) ::umount2(path_.c_str(), MNT_DETACH);
  }
  bool mounted() const { return mounted_; }
  void RemountReadOnly() {
    ::mount("tmpfs", path_.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr);
  }

 private:
  fs::path path_;
  bool mounted_ = false;
};

TEST(DirTest, EmptyExistsReadOnly) {
  TempDir t;
  EXPECT_TRUE(DirEmpty(U(t.path())) && DirEmpty(U(t / "missing")));
  WriteFileBytes(t / ".x", "");
  EXPECT_FALSE(DirEmpty(U(t.path()) + u"/"));
  EXPECT_TRUE(DirExists(U(t.path())));
  EXPECT_FALSE(DirExists(U(t / ".x")) || DirExists(u""));
  EXPECT_FALSE(DirIsReadOnly(U(t.path())));
  EXPECT_FALSE(fs::exists(t / "$%$LO%$.$$$"));
  EXPECT_TRUE(DirIsReadOnly(U(t / "missing")));
  if (::geteuid() != 0) {
    ::chmod(t.path().c_str(), 0555);
    EXPECT_TRUE(DirIsReadOnly(U(t.path())));
    ::chmod(t.path().c_str(), 0755);
  } else {
    TmpfsMount ro(t / "ro", "size=1m");
    if (!ro.mounted()) GTEST_SKIP() << "this machine refuses a tmpfs mount";
    ro.RemountReadOnly();
    EXPECT_TRUE(DirIsReadOnly(U(t / "ro")));
  }
}

// Points the trash at a scratch home. Each test runs in a process of its
// own, so nothing needs restoring.
void UseScratchHome(const fs::path& home) {
  ::setenv("HOME", home.c_str(), 1);
  ::unsetenv("XDG_DATA_HOME");
}

std::string InfoPathLine(const fs::path& info) {
  const std::string text = ReadFileBytes(info);
  const std::size_t p = text.find("\nPath=");
  return p == std::string::npos ? "" : text.substr(p + 6, text.find('\n', p + 1) - p - 6);
}

TEST(RecycleBinTest, HomeTrashWithInfoAndNoOverwrite) {
  TempDir t;
  UseScratchHome(t / "home");
  fs::create_directories(t / "data" / "sub");
  WriteFileBytes(t / "data" / "a b%\xc3\xbc.txt", "one");
  WriteFileBytes(t / "data" / "c.txt", "c");
  WriteFileBytes(t / "data" / ".dot.txt", "dot");
  WriteFileBytes(t / "data" / "sub" / "deep.txt", "deep");
  fs::create_symlink("nowhere", t / "data" / "dangling.txt");
  const fs::path trash = t / "home" / ".local" / "share" / "Trash";

  EXPECT_EQ(MoveToRecycleBin(U(t / "data") + u"/*.txt"), 2);
  EXPECT_FALSE(fs::exists(t / "data" / "c.txt"));
  EXPECT_EQ(ReadFileBytes(trash / "files" / "a b%\xc3\xbc.txt") +
                ReadFileBytes(trash / "files" / "c.txt"),
            "onec");
  for (const char* kept : {".dot.txt", "dangling.txt", "sub/deep.txt"})
    EXPECT_TRUE(fs::is_symlink(t / "data" / kept) || fs::exists(t / "data" / kept)) << kept;

  const fs::path info = trash / "info" / "a b%\xc3\xbc.txt.trashinfo";
  const std::string text = ReadFileBytes(info);
  EXPECT_EQ(text.rfind("[Trash Info]\nPath=", 0), 0u) << text;
  EXPECT_EQ(InfoPathLine(info),
            zyn::platform::TrashEscape((t / "data").string()) + "/a%20b%25%C3%BC.txt");
  const std::size_t date = text.find("\nDeletionDate=");
  ASSERT_NE(date, std::string::npos);
  EXPECT_EQ(text.size() - date, std::string("\nDeletionDate=2026-01-01T00:00:00\n").size());

  // The same name again goes beside the first, never over it.
  WriteFileBytes(t / "data" / "c.txt", "c2");
  WriteFileBytes(t / "data" / "d", "d");
  EXPECT_EQ(MoveToRecycleBin(U(t / "data") + u"/c.txt"), 1);
  EXPECT_EQ(ReadFileBytes(trash / "files" / "c.txt") + ReadFileBytes(trash / "files" / "c.2.txt"),
            "cc2");
  EXPECT_TRUE(fs::exists(trash / "info" / "c.2.txt.trashinfo"));
  // A stale .trashinfo claims its name too.
  WriteFileBytes(trash / "info" / "d.trashinfo", "stale");
  EXPECT_EQ(MoveToRecycleBin(U(t / "data") + u"/d"), 1);
  EXPECT_EQ(ReadFileBytes(trash / "files" / "d.2"), "d");
  EXPECT_EQ(ReadFileBytes(trash / "info" / "d.trashinfo"), "stale");
}

TEST(RecycleBinTest, OtherMountUsesItsOwnTrash) {
  TempDir t;
  UseScratchHome(t / "home");
  TmpfsMount mount(t / "mnt", "size=4m,mode=0777");
  if (!mount.mounted()) GTEST_SKIP() << "this machine refuses a tmpfs mount, so no second mount";
  const fs::path mnt = t / "mnt";
  const std::string uid = std::to_string(::getuid());
  fs::create_directories(mnt / "work");
  WriteFileBytes(mnt / "work" / "x.dat", "x");
  EXPECT_EQ(MoveToRecycleBin(U(mnt / "work" / "x.dat")), 1);
  EXPECT_EQ(ReadFileBytes(mnt / (".Trash-" + uid) / "files" / "x.dat"), "x");
  EXPECT_EQ(InfoPathLine(mnt / (".Trash-" + uid) / "info" / "x.dat.trashinfo"), "work/x.dat");
  EXPECT_FALSE(fs::exists(t / "home" / ".local" / "share" / "Trash" / "files" / "x.dat"));

  // A shared .Trash with the sticky bit is used first.
  fs::create_directories(mnt / ".Trash");
  ::chmod((mnt / ".Trash").c_str(), 01777);
  WriteFileBytes(mnt / "y.dat", "y");
  EXPECT_EQ(MoveToRecycleBin(U(mnt / "y.dat")), 1);
  EXPECT_EQ(ReadFileBytes(mnt / ".Trash" / uid / "files" / "y.dat"), "y");

  // A trash directory that is a link is refused, and the file stays.
  fs::remove_all(mnt / (".Trash-" + uid));
  fs::remove_all(mnt / ".Trash");
  fs::create_directories(t / "elsewhere");
  fs::create_directory_symlink(t / "elsewhere", mnt / (".Trash-" + uid));
  WriteFileBytes(mnt / "w.dat", "w");
  EXPECT_EQ(MoveToRecycleBin(U(mnt / "w.dat")), 0);
  EXPECT_EQ(ReadFileBytes(mnt / "w.dat"), "w");
  EXPECT_TRUE(fs::is_empty(t / "elsewhere"));
}

}  // namespace
}  // namespace Zyn_filesys
