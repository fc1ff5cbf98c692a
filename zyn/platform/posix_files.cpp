// The Linux side of the platform's files: open(2), fstatat(2), opendir(3)
// and their kin behind the runtime's names.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "zyn/platform/dir_walk.h"
#include "zyn/platform/file_handle.h"
#include "zyn/platform/files.h"
#include "zyn/platform/posix_attr.h"
#include "zyn/platform/text.h"

namespace zyn::platform {

using posix_detail::AttrOf;

namespace {

std::string Native(std::u16string_view name) { return file_detail::SystemName(name); }

bool HasWildcard(std::u16string_view mask) {
  return mask.find_first_of(u"*?") != std::u16string_view::npos;
}

// Attributes outside the filter that keep an entry out.
constexpr int kFilterable = faHidden | faSysFile | faVolumeID | faDirectory;

}  // namespace

struct TSearchRec::State {
  std::u16string mask;
  int filter = 0;
  int dir_fd = -1;
  DIR* dir = nullptr;
  bool single = false;  // a mask without wildcards, looked up directly

  ~State() {
    if (dir != nullptr) {
      ::closedir(dir);
    } else if (dir_fd >= 0) {
      ::close(dir_fd);
    }
  }
};

namespace {

// Fills `f` from the entry `name` of the open directory; false if it
// vanished or the filter keeps it out.
bool Accept(TSearchRec::State& s, std::u16string_view name, const char* native, TSearchRec& f) {
  struct stat st;
  if (::fstatat(s.dir_fd, native, &st, AT_SYMLINK_NOFOLLOW) != 0) return false;
  const int attr = AttrOf(st, name);
  if ((attr & kFilterable & ~s.filter) != 0) return false;
  f.Name.assign(name);
  f.Attr = attr;
  f.Size = st.st_size;
  f.TimeSec = st.st_mtim.tv_sec;
  f.TimeNsec = static_cast<std::int32_t>(st.st_mtim.tv_nsec);
  return true;
}

}  // namespace

int FindFirst(std::u16string_view Path, int Attr, TSearchRec& F) {
  FindClose(F);
  auto state = std::make_shared<TSearchRec::State>();
  state->mask = ExtractFileName(Path);
  state->filter = Attr;
  std::u16string dir = ExtractFilePath(Path);
  if (dir.empty()) dir = u".";
  if (state->mask.empty()) return ENOENT;
  state->dir_fd = ::open(Native(dir).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (state->dir_fd < 0) return errno;
  F.FindHandle = state;
  if (!HasWildcard(state->mask)) {
    state->single = true;
    if (Accept(*state, state->mask, Native(state->mask).c_str(), F)) return 0;
    FindClose(F);
    return ENOENT;
  }
  state->dir = ::fdopendir(state->dir_fd);
  if (state->dir == nullptr) {
    const int error = errno;
    FindClose(F);
    return error;
  }
  const int r = FindNext(F);
  if (r != 0) FindClose(F);
  return r;
}

int FindNext(TSearchRec& F) {
  TSearchRec::State* s = F.FindHandle.get();
  if (s == nullptr || s->single || s->dir == nullptr) return ENOENT;
  for (;;) {
    errno = 0;
    const dirent* d = ::readdir(s->dir);
    if (d == nullptr) return errno != 0 ? errno : ENOENT;
    const std::u16string name = FromUTF8(d->d_name);
    if (!MatchesMask(name, s->mask)) continue;
    if (Accept(*s, name, d->d_name, F)) return 0;
  }
}

void FindClose(TSearchRec& F) { F.FindHandle.reset(); }

std::u16string GetCurrentDir() {
  std::string buffer(256, '\0');
  for (;;) {
    if (::getcwd(buffer.data(), buffer.size()) != nullptr) {
      buffer.resize(std::char_traits<char>::length(buffer.c_str()));
      return FromUTF8(buffer);
    }
    if (errno != ERANGE || buffer.size() > (1u << 20)) return u"/";
    buffer.resize(buffer.size() * 2);
  }
}

int FileOpen(std::u16string_view FileName, int Mode) {
  int flags = O_RDONLY;
  if ((Mode & 3) == fmOpenWrite) flags = O_WRONLY;
  if ((Mode & 3) == fmOpenReadWrite) flags = O_RDWR;
  int fd;
  do {
    fd = ::open(Native(FileName).c_str(), flags | O_CLOEXEC);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return -1;
  struct stat st;
  if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
    ::close(fd);
    return -1;
  }
  return fd;
}

int FileCreate(std::u16string_view FileName) {
  int fd;
  do {
    fd = ::open(Native(FileName).c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  } while (fd < 0 && errno == EINTR);
  return fd < 0 ? -1 : fd;
}

int FileRead(int Handle, std::span<std::uint8_t> Buffer) {
  std::size_t done = 0;
  while (done < Buffer.size()) {
    const ssize_t n = ::read(Handle, Buffer.data() + done, Buffer.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      return -1;
    }
    if (n == 0) break;
    done += static_cast<std::size_t>(n);
  }
  return static_cast<int>(done);
}

int FileWrite(int Handle, std::span<const std::uint8_t> Buffer) {
  std::size_t done = 0;
  while (done < Buffer.size()) {
    const ssize_t n = ::write(Handle, Buffer.data() + done, Buffer.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      return -1;
    }
    if (n == 0) return -1;
    done += static_cast<std::size_t>(n);
  }
  return static_cast<int>(done);
}

std::int64_t FileSeek(int Handle, std::int64_t Offset, int Origin) {
  const int whence = Origin == 1 ? SEEK_CUR : Origin == 2 ? SEEK_END : SEEK_SET;
  const off_t r = ::lseek(Handle, static_cast<off_t>(Offset), whence);
  return r < 0 ? -1 : r;
}

void FileClose(int Handle) {
  if (Handle >= 0) ::close(Handle);
}

bool FileGetDate(int Handle, TFileTime& Time) {
  struct stat st;
  if (::fstat(Handle, &st) != 0) return false;
  Time = {st.st_mtim.tv_sec, static_cast<std::int32_t>(st.st_mtim.tv_nsec)};
  return true;
}

bool FileSetDate(int Handle, const TFileTime& Time) {
  struct timespec times[2];
  times[0].tv_sec = 0;
  times[0].tv_nsec = UTIME_OMIT;
  times[1].tv_sec = static_cast<time_t>(Time.Sec);
  times[1].tv_nsec = Time.Nsec;
  return ::futimens(Handle, times) == 0;
}

bool FileAge(std::u16string_view FileName, TFileTime& Time) {
  struct stat st;
  if (::stat(Native(FileName).c_str(), &st) != 0) return false;
  Time = {st.st_mtim.tv_sec, static_cast<std::int32_t>(st.st_mtim.tv_nsec)};
  return true;
}

int FileGetAttr(std::u16string_view FileName) {
  struct stat st;
  if (FileName.empty() || ::stat(Native(FileName).c_str(), &st) != 0) return -1;
  std::u16string_view name = FileName;
  while (name.size() > 1 && IsPathDelimiter(name.back())) name.remove_suffix(1);
  return AttrOf(st, ExtractFileName(name));
}

int FileSetAttr(std::u16string_view FileName, int Attr) {
  const std::string native = Native(FileName);
  struct stat st;
  if (::stat(native.c_str(), &st) != 0) return errno;
  mode_t mode = st.st_mode & 07777;
  if ((Attr & faReadOnly) != 0) {
    mode &= ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH);
  } else {
    mode |= S_IWUSR;
  }
  if (mode == (st.st_mode & 07777)) return 0;
  return ::chmod(native.c_str(), mode) == 0 ? 0 : errno;
}

bool FileExists(std::u16string_view FileName) {
  struct stat st;
  return !FileName.empty() && ::stat(Native(FileName).c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool DirectoryExists(std::u16string_view Directory) {
  struct stat st;
  return !Directory.empty() && ::stat(Native(Directory).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool CreateDir(std::u16string_view Directory) {
  return !Directory.empty() && ::mkdir(Native(Directory).c_str(), 0777) == 0;
}

bool ForceDirectories(std::u16string_view Directory) {
  if (Directory.empty()) return false;
  const std::string path = Native(ExpandFileName(Directory));
  // Create from the top down; components that exist are passed.
  for (std::size_t i = 1; i <= path.size(); ++i) {
    if (i != path.size() && path[i] != '/') continue;
    const std::string prefix = path.substr(0, i);
    if (::mkdir(prefix.c_str(), 0777) != 0 && errno != EEXIST) {
      struct stat st;
      if (::stat(prefix.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) return false;
    }
  }
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool DeleteFile(std::u16string_view FileName) {
  const std::string native = Native(FileName);
  struct stat st;
  if (FileName.empty() || ::lstat(native.c_str(), &st) != 0) return false;
  if (S_ISDIR(st.st_mode)) return false;
  if (!S_ISLNK(st.st_mode) && (st.st_mode & S_IWUSR) == 0) return false;
  return ::unlink(native.c_str()) == 0;
}

bool RemoveDir(std::u16string_view Directory) {
  return !Directory.empty() && ::rmdir(Native(Directory).c_str()) == 0;
}

bool RenameFile(std::u16string_view OldName, std::u16string_view NewName) {
  const std::string from = Native(OldName), to = Native(NewName);
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // A file system without the no-replace flag: look first, then rename.
  struct stat st;
  if (::lstat(to.c_str(), &st) == 0) return false;
  return ::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace zyn::platform
