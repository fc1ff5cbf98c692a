// zyn/platform/dir_walk.h
//
// Directories opened once and worked on by entry name, for the tree walks of
// the file system tools. Every entry below an open directory is reached
// through that directory's descriptor and never through a symbolic link, so
// a directory swapped for a link while a walk runs is not followed, and no
// path grows beyond what the kernel takes: trees of any depth can be walked.

#ifndef ZYN_PLATFORM_DIR_WALK_H_
#define ZYN_PLATFORM_DIR_WALK_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "zyn/platform/files.h"

namespace zyn::platform {

// One entry of an open directory, as it stands (links not followed).
struct DirEntry {
  std::u16string name;
  int attr = 0;  // the attributes FindFirst reports (faDirectory, faSymLink, ...)
  std::int64_t size = 0;
};

class DirHandle {
 public:
  DirHandle();
  DirHandle(DirHandle&& other) noexcept;
  DirHandle& operator=(DirHandle&& other) noexcept;
  DirHandle(const DirHandle&) = delete;
  DirHandle& operator=(const DirHandle&) = delete;
  ~DirHandle();

  // Opens the directory `path` ("" is the current directory). With
  // `follow_last` false a link as the last component is refused, links
  // further up are the caller's and followed. 0 or an error number.
  static int Open(std::u16string_view path, bool follow_last, DirHandle& out);
  // Opens the subdirectory `name`, refusing a link. 0 or an error number.
  int OpenChild(std::u16string_view name, DirHandle& out) const;

  bool IsOpen() const { return fd_ >= 0; }
  // True if both handles are open on the same directory.
  bool SameAs(const DirHandle& other) const;

  // The next entry other than "." and ".."; false at the end or on a read
  // error. An entry that vanishes between listing and looking is passed over.
  bool Next(DirEntry& entry);
  // Starts the listing again.
  void Rewind();

  // Looks at the entry `name` without following a link. 0 or an error number.
  int Stat(std::u16string_view name, DirEntry& entry) const;
  // Removes the file or link `name`. 0 or an error number.
  int RemoveFile(std::u16string_view name) const;
  // Removes the empty subdirectory `name`. 0 or an error number.
  int RemoveDir(std::u16string_view name) const;
  // Creates the subdirectory `name` (0777 less the umask); an existing
  // directory counts as success. 0 or an error number.
  int MakeDir(std::u16string_view name) const;
  // Opens the file `name` for reading, refusing a link: a file handle, or -1.
  int OpenFileRead(std::u16string_view name) const;
  // Creates or truncates the file `name` for writing, refusing a link: a file
  // handle, or -1.
  int CreateFile(std::u16string_view name) const;
  // The text of the link `name`. 0 or an error number.
  int ReadLink(std::u16string_view name, std::u16string& target) const;
  // Creates the link `name` pointing to `target`. 0 or an error number.
  int MakeLink(std::u16string_view target, std::u16string_view name) const;

 private:
  explicit DirHandle(int fd);
  int fd_ = -1;

 public:
  struct Listing;  // internal

 private:
  std::unique_ptr<Listing> listing_;
};

// True if `name` (links followed) is the file open as `handle`.
bool IsSameFile(int handle, std::u16string_view name);
// The size of an open file, or -1.
std::int64_t FileSize(int handle);
// Cuts or extends an open file to `size` bytes. False on failure.
bool FileTruncate(int handle, std::int64_t size);
// Gives `to_handle` the permission bits of `from_handle`, with owner write
// added: a read-only source never gives a read-only copy. False on failure.
bool FileCopyPermissions(int from_handle, int to_handle);
// Copies up to `count` bytes from the offset of one open file to that of
// another inside the kernel. The count copied (0 at the end), or -1 when
// the pair can't be copied this way or it failed; the offsets then stand
// where they stood, so a read and a write can take over.
std::int64_t FileCopyRange(int from_handle, int to_handle, std::int64_t count);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_DIR_WALK_H_
