#include "zyn/filesys/trees.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <vector>

#include "zyn/platform/casefold.h"
#include "zyn/platform/dir_walk.h"
#include "zyn/platform/files.h"
#include "zyn/platform/textfile.h"
#include "zyn/platform/trash.h"

namespace Zyn_filesys {

using namespace zyn::platform;

namespace {

constexpr int kRound = 8192;
constexpr std::u16string_view kProbeName = u"$%$LO%$.$$$";

std::atomic<bool> abort_flag{false};

// What a running CopyFileTree shares with the feedback of its file copies.
struct TreeCopyState {
  TTreeCopyFeedBack feedback = nullptr;
  std::u16string current_name;
  int files = 0;
  int last_bytes = 0;
  int last_size = 0;
};
TreeCopyState tree_copy;

int Clamp32(std::int64_t v) {
  return v > std::numeric_limits<int>::max() ? std::numeric_limits<int>::max()
                                             : static_cast<int>(v);
}

std::u16string WithSeparator(std::u16string_view path) {
  std::u16string r(path);
  if (!r.empty() && !IsPathDelimiter(r.back())) r += u'/';
  return r;
}

// Closes a file handle when it goes, also when a feedback throws.
class HandleGuard {
 public:
  explicit HandleGuard(int handle) : handle_(handle) {}
  HandleGuard(const HandleGuard&) = delete;
  HandleGuard& operator=(const HandleGuard&) = delete;
  ~HandleGuard() { FileClose(handle_); }
  int get() const { return handle_; }

 private:
  int handle_;
};

// Raises the input/output exception a text file gives for `name`.
[[noreturn]] void RaiseOpenFailure(std::u16string_view name) {
  Textfile probe;
  probe.Assign(name);
  probe.Reset();  // raises with the status that names the failure
  throw EInOutError(kIoAccessDenied, u"File access denied (" + std::u16string(name) + u")");
}

// The kernel copies up to this much ahead of the rounds. What lies beyond
// the round an abort ends is cut off again, so the target is the same as
// with round-by-round copying, with a few hundred calls for a large file
// instead of one or two per 8192 bytes.
constexpr std::int64_t kAhead = std::int64_t{1} << 20;

// The bytes of a copy: those the kernel has copied ahead (`ahead`), and the
// rounds taken of them.
struct CopyState {
  int source, target;
  bool in_kernel = true;
  std::int64_t ahead = 0;
};

// One round's block, from what the kernel copied ahead or else by read and
// write. Its length; `status` becomes -4 or -3 on a failure.
std::int64_t NextBlock(CopyState& c, std::int64_t copied, std::span<std::uint8_t> buffer,
                       int& status) {
  while (c.in_kernel && c.ahead - copied < kRound) {
    const std::int64_t n = FileCopyRange(c.source, c.target, kAhead);
    if (n <= 0) {
      // The offsets stand at `ahead`: read and write go on from there. A
      // read confirms the end too, since some files (those of /proc) give
      // nothing to the kernel's copy and all to a read.
      c.in_kernel = false;
    } else {
      c.ahead += n;
    }
  }
  std::int64_t block = std::min<std::int64_t>(kRound, c.ahead - copied);
  if (block == kRound || c.in_kernel) return block;
  const int n = FileRead(c.source, buffer.first(static_cast<std::size_t>(kRound - block)));
  if (n < 0) {
    status = kCopyReadFailed;
    return block;
  }
  if (n > 0 && FileWrite(c.target, buffer.first(static_cast<std::size_t>(n))) < 0) {
    status = kCopyWriteFailed;
  }
  c.ahead += n;
  return block + n;
}

// The rounds of a copy between two open files and the steps around them.
int CopyRounds(int source, int target, int status, std::int64_t size, bool copy_attributes,
               TFileCopyFeedBack feedback) {
  std::vector<std::uint8_t> buffer(kRound);
  const int size32 = Clamp32(size);
  std::int64_t copied = 0;
  if (feedback != nullptr) feedback(0, size32);
  if (status == kCopyOk) {
    CopyState c{source, target};
    for (;;) {
      const std::int64_t block = NextBlock(c, copied, buffer, status);
      if (feedback != nullptr) feedback(Clamp32(copied), size32);
      copied += block;
      if (block < kRound || status != kCopyOk || abort_flag.load()) break;
    }
    if (c.ahead > copied) FileTruncate(target, copied);
  }
  if (status == kCopyOk) {
    TFileTime stamp;
    if (FileGetDate(source, stamp)) FileSetDate(target, stamp);
    if (copy_attributes) FileCopyPermissions(source, target);
  }
  if (feedback != nullptr) feedback(Clamp32(copied), size32);
  return status;
}

void TreeRoundFeedback(int bytes, int size) {
  tree_copy.last_bytes = bytes;
  tree_copy.last_size = size;
  if (tree_copy.feedback != nullptr) {
    tree_copy.feedback(bytes, size, tree_copy.current_name, tree_copy.files);
  }
}

void CopyWalk(DirHandle& source, DirHandle& target, const std::u16string& source_path,
              const std::u16string& target_path, bool copy_attributes, const DirHandle& root) {
  DirEntry e;
  while (!abort_flag.load() && source.Next(e)) {
    if ((e.attr & faDirectory) != 0) {
      DirHandle from, to;
      // A target inside the source is not copied into itself.
      if (source.OpenChild(e.name, from) != 0 || from.SameAs(root)) continue;
      if (target.MakeDir(e.name) != 0 || target.OpenChild(e.name, to) != 0) continue;
      CopyWalk(from, to, source_path + e.name + u'/', target_path + e.name + u'/', copy_attributes,
               root);
    } else if ((e.attr & faSymLink) != 0) {
      tree_copy.current_name = target_path + e.name;
      ++tree_copy.files;
      std::u16string link;
      if (source.ReadLink(e.name, link) == 0 && target.MakeLink(link, e.name) == EEXIST &&
          target.RemoveFile(e.name) == 0) {
        target.MakeLink(link, e.name);
      }
      tree_copy.last_bytes = tree_copy.last_size = 0;
      TreeRoundFeedback(0, 0);
    } else if ((e.attr & faSysFile) == 0) {
      tree_copy.current_name = target_path + e.name;
      ++tree_copy.files;
      abort_flag = false;
      const HandleGuard from(source.OpenFileRead(e.name));
      if (from.get() < 0) RaiseOpenFailure(source_path + e.name);
      const std::int64_t size = FileSize(from.get());
      const HandleGuard to(target.CreateFile(e.name));
      int status = size < 0 ? kCopySourceFailed : kCopyOk;
      if (to.get() < 0) status = kCopyTargetFailed;
      CopyRounds(from.get(), to.get(), status, size < 0 ? 0 : size, copy_attributes,
                 TreeRoundFeedback);
      if (tree_copy.feedback != nullptr) {
        tree_copy.feedback(tree_copy.last_bytes, tree_copy.last_size, tree_copy.current_name,
                           tree_copy.files);
      }
    }
  }
}

std::u16string DeleteContents(DirHandle& dir, const std::u16string& path) {
  DirEntry e;
  while (dir.Next(e)) {
    if ((e.attr & faDirectory) != 0) {
      const std::u16string sub = path + e.name + u'/';
      std::u16string result;
      {
        DirHandle child;
        if (dir.OpenChild(e.name, child) == 0) result = DeleteContents(child, sub);
      }
      if (result.empty()) {
        const int error = dir.RemoveDir(e.name);
        if (error != 0 && error != ENOENT) result = sub;
      }
      if (!result.empty()) return result;
    } else if ((e.attr & faReadOnly) != 0) {
      return path + e.name;
    } else if (const int error = dir.RemoveFile(e.name); error != 0 && error != ENOENT) {
      return path + e.name;
    }
  }
  return {};
}

void ScanWalk(DirHandle& dir, const std::u16string& path, const std::u16string& mask,
              bool recursive, TStringList* list, TScanFilesFeedback feedback, int& count) {
  if (feedback != nullptr) feedback(path, count);
  std::vector<std::u16string> subdirs;
  DirEntry e;
  while (dir.Next(e)) {
    if ((e.attr & faDirectory) == 0) {
      if (MatchesMask(AnsiLowerCase(e.name), mask)) {
        if (list != nullptr) list->Add(path + e.name);
        ++count;
      }
    } else if (recursive && (e.attr & faHidden) == 0) {
      subdirs.push_back(e.name);
    }
  }
  for (const std::u16string& name : subdirs) {
    DirHandle child;
    if (dir.OpenChild(name, child) == 0) {
      ScanWalk(child, path + name + u'/', mask, recursive, list, feedback, count);
    }
  }
}

int Scan(std::u16string_view FileMask, bool Recursive, TStringList* List,
         TScanFilesFeedback FeedBack) {
  const std::u16string path = ExtractFilePath(FileMask);
  const std::u16string mask = AnsiLowerCase(ExtractFileName(FileMask));
  int count = 0;
  DirHandle dir;
  if (DirHandle::Open(path, true, dir) == 0) {
    ScanWalk(dir, path, mask, Recursive, List, FeedBack, count);
  } else if (FeedBack != nullptr) {
    FeedBack(path, count);
  }
  return count;
}

std::u16string Detect(DirHandle& dir, const std::u16string& path, const std::u16string& mask) {
  std::vector<std::u16string> subdirs;
  DirEntry e;
  while (dir.Next(e)) {
    if ((e.attr & (faHidden | faSysFile | faVolumeID | faDirectory)) == 0) {
      if (MatchesMask(AnsiLowerCase(e.name), mask)) return path + e.name;
    } else if (e.attr == faDirectory) {
      subdirs.push_back(e.name);
    }
  }
  for (const std::u16string& name : subdirs) {
    DirHandle child;
    if (dir.OpenChild(name, child) != 0) continue;
    std::u16string found = Detect(child, path + name + u'/', mask);
    if (!found.empty()) return found;
  }
  return {};
}

// The files of one directory that DeleteFiles and MoveToRecycleBin act on.
std::vector<std::u16string> FilesOfMask(std::u16string_view FileMask) {
  std::vector<std::u16string> names;
  TSearchRec f;
  for (int r = FindFirst(ExpandFileName(FileMask), faAnyFile, f); r == 0; r = FindNext(f)) {
    if (f.Name.front() == u'.' || (f.Attr & (faVolumeID | faDirectory)) != 0) continue;
    names.push_back(f.Name);
  }
  FindClose(f);
  return names;
}

}  // namespace

void AbortAnyFileCopying() { abort_flag = true; }

int FileCopyFeedBk(std::u16string_view Source, std::u16string_view Target, bool CopyAttributes,
                   TFileCopyFeedBack FeedBack) {
  abort_flag = false;
  std::u16string target(Target);
  if (DirExists(target)) target = WithSeparator(target) + ExtractFileName(Source);
  const HandleGuard source(FileOpen(Source, fmOpenRead | fmShareDenyWrite));
  if (source.get() < 0) RaiseOpenFailure(Source);
  const std::int64_t size = FileSize(source.get());
  int status = size < 0 ? kCopySourceFailed : kCopyOk;
  // Creating the source itself as the target would truncate it first.
  const bool same = IsSameFile(source.get(), target);
  const HandleGuard copy(same ? -1 : FileCreate(target));
  if (copy.get() < 0) status = kCopyTargetFailed;
  return CopyRounds(source.get(), copy.get(), status, size < 0 ? 0 : size, CopyAttributes,
                    FeedBack);
}

void CopyFileTree(std::u16string_view SourceDir, std::u16string_view TargetDir, bool CopyAttributes,
                  TTreeCopyFeedBack FeedBack) {
  tree_copy = TreeCopyState{FeedBack, {}, 0, 0, 0};
  abort_flag = false;
  const std::u16string source = WithSeparator(SourceDir), target = WithSeparator(TargetDir);
  if (AnsiStrIComp(source, target) == 0) return;
  if (!target.empty()) ForceDirectories(target);
  DirHandle from, to;
  if (DirHandle::Open(source, true, from) != 0 || DirHandle::Open(target, true, to) != 0) return;
  DirHandle root;
  DirHandle::Open(target, true, root);
  CopyWalk(from, to, source, target, CopyAttributes, root);
}

std::u16string DelDirTree(std::u16string_view Directory) {
  if (Directory.empty()) return {};
  const std::u16string dir = WithSeparator(Directory);
  std::u16string result;
  {
    DirHandle handle;
    if (DirHandle::Open(dir, false, handle) == 0) result = DeleteContents(handle, dir);
  }
  if (result.empty() && !RemoveDir(dir)) result = dir;
  return result;
}

int DeleteFiles(std::u16string_view FileMask) {
  const std::u16string path = ExtractFilePath(FileMask);
  int count = 0;
  for (const std::u16string& name : FilesOfMask(FileMask)) {
    if (DeleteFile(path + name)) ++count;
  }
  return count;
}

int MoveToRecycleBin(std::u16string_view FileMask) {
  const std::u16string path = ExtractFilePath(FileMask);
  int count = 0;
  for (const std::u16string& name : FilesOfMask(FileMask)) {
    if (FileExists(path + name) && MoveToTrash(path + name)) ++count;
  }
  return count;
}

void ScanFilesToStrList(std::u16string_view FileMask, bool Recursive, TStringList* List,
                        TScanFilesFeedback FeedBack) {
  if (List != nullptr) Scan(FileMask, Recursive, List, FeedBack);
}

int CountFiles(std::u16string_view FileMask, bool Recursive, TScanFilesFeedback FeedBack) {
  return Scan(FileMask, Recursive, nullptr, FeedBack);
}

std::u16string FileDetect(std::u16string_view FileName) {
  const std::u16string path = ExtractFilePath(FileName);
  DirHandle dir;
  if (DirHandle::Open(path, true, dir) != 0) return {};
  return Detect(dir, path, AnsiLowerCase(ExtractFileName(FileName)));
}

bool DirEmpty(std::u16string_view Directory) {
  TSearchRec f;
  for (int r = FindFirst(WithSeparator(Directory) + u"*", faAnyFile, f); r == 0; r = FindNext(f)) {
    if (f.Name != u"." && f.Name != u"..") return false;
  }
  return true;
}

bool DirExists(std::u16string_view Directory) { return DirectoryExists(Directory); }

bool DirIsReadOnly(std::u16string_view Directory) {
  const std::u16string probe = WithSeparator(Directory) + std::u16string(kProbeName);
  Textfile file;
  file.Assign(probe);
  try {
    file.Rewrite();
  } catch (const EInOutError&) {
    IOResult();
    return true;
  }
  file.Close();
  if (!DeleteFile(probe)) {
    throw EInOutError(kIoAccessDenied, u"File access denied (" + probe + u")");
  }
  return false;
}

void ReleaseTreeCopyState() { tree_copy = TreeCopyState{}; }

}  // namespace Zyn_filesys
