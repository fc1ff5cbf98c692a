// The Linux side of the trash: lstat(2) to find the file system of a file,
// openat(2) with O_EXCL for the .trashinfo, renameat2(2) with
// RENAME_NOREPLACE for the move.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string>

#include "zyn/platform/file_handle.h"
#include "zyn/platform/files.h"
#include "zyn/platform/text.h"
#include "zyn/platform/trash.h"

namespace zyn::platform {
namespace {

// A descriptor closed when it goes.
class Fd {
 public:
  explicit Fd(int fd = -1) : fd_(fd) {}
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;
  ~Fd() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }

 private:
  int fd_;
};

constexpr int kDirFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::string Parent(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos || slash == 0) return "/";
  return path.substr(0, slash);
}

// Opens the directory `name` below `at`, creating it with mode 0700 if it is
// missing. A link, or a directory of another user, is refused.
int OpenOwnDir(int at, const char* name) {
  if (::mkdirat(at, name, 0700) != 0 && errno != EEXIST) return -1;
  const int fd = ::openat(at, name, kDirFlags);
  if (fd < 0) return -1;
  struct stat st;
  if (::fstat(fd, &st) != 0 || st.st_uid != ::getuid()) {
    ::close(fd);
    return -1;
  }
  return fd;
}

// The top directory of the mount that holds `dir`: the highest ancestor on
// the same device.
std::string MountTop(std::string dir, dev_t device) {
  while (dir != "/") {
    const std::string up = Parent(dir);
    struct stat st;
    if (::stat(up.c_str(), &st) != 0 || st.st_dev != device) break;
    dir = up;
  }
  return dir;
}

// The user's data directory, "" if neither XDG_DATA_HOME nor HOME names one.
std::string DataHome() {
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg != nullptr && xdg[0] == '/') return xdg;
  if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') {
    return std::string(home) + "/.local/share";
  }
  return {};
}

bool MakeParents(const std::string& path) {
  for (std::size_t i = 1; i <= path.size(); ++i) {
    if (i != path.size() && path[i] != '/') continue;
    const std::string prefix = path.substr(0, i);
    if (::mkdir(prefix.c_str(), 0700) != 0 && errno != EEXIST) return false;
  }
  return true;
}

// The trash directory for a file on `device`, opened, and the directory that
// the Path key is relative to ("" for absolute paths).
bool OpenTrashFor(dev_t device, const std::string& file, int& trash_fd, std::string& relative_to) {
  const std::string data_home = DataHome();
  struct stat st;
  if (!data_home.empty() && MakeParents(data_home) && ::stat(data_home.c_str(), &st) == 0 &&
      st.st_dev == device) {
    const Fd home(::open(data_home.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (home.get() < 0) return false;
    trash_fd = OpenOwnDir(home.get(), "Trash");
    relative_to.clear();
    return trash_fd >= 0;
  }
  const std::string top = MountTop(Parent(file), device);
  const Fd top_fd(::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (top_fd.get() < 0) return false;
  relative_to = top == "/" ? "/" : top + "/";
  const std::string uid = std::to_string(::getuid());
  // $topdir/.Trash must be a real directory with the sticky bit to be used.
  if (::fstatat(top_fd.get(), ".Trash", &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode) &&
      (st.st_mode & S_ISVTX) != 0) {
    const Fd shared(::openat(top_fd.get(), ".Trash", kDirFlags));
    if (shared.get() >= 0) {
      trash_fd = OpenOwnDir(shared.get(), uid.c_str());
      if (trash_fd >= 0) return true;
    }
  }
  trash_fd = OpenOwnDir(top_fd.get(), (".Trash-" + uid).c_str());
  return trash_fd >= 0;
}

// "report.pdf", then "report.2.pdf", "report.3.pdf", ...
std::string Candidate(const std::string& base, int n) {
  if (n == 1) return base;
  std::size_t dot = base.rfind('.');
  if (dot == 0 || dot == std::string::npos) dot = base.size();
  return base.substr(0, dot) + "." + std::to_string(n) + base.substr(dot);
}

std::string DeletionDate() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  char text[64];
  const std::size_t n = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
  return std::string(text, n);
}

bool WriteAll(int fd, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace

std::string TrashEscape(std::string_view path) {
  constexpr std::string_view kKeep = "-_.!~*'()/";
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (const char ch : path) {
    const auto c = static_cast<unsigned char>(ch);
    const bool alnum = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (alnum || kKeep.find(ch) != std::string_view::npos) {
      out += ch;
    } else {
      out += '%';
      out += kHex[c >> 4];
      out += kHex[c & 15];
    }
  }
  return out;
}

bool MoveToTrash(std::u16string_view FileName) {
  const std::string file = file_detail::SystemName(ExpandFileName(FileName));
  struct stat st;
  if (file.size() < 2 || file.back() == '/' || ::lstat(file.c_str(), &st) != 0) return false;
  int raw_trash = -1;
  std::string relative_to;
  if (!OpenTrashFor(st.st_dev, file, raw_trash, relative_to)) return false;
  const Fd trash(raw_trash);
  const Fd files(OpenOwnDir(trash.get(), "files"));
  const Fd info(OpenOwnDir(trash.get(), "info"));
  if (files.get() < 0 || info.get() < 0) return false;

  const std::string original = relative_to.empty() ? file : file.substr(relative_to.size());
  const std::string content =
      "[Trash Info]\nPath=" + TrashEscape(original) + "\nDeletionDate=" + DeletionDate() + "\n";
  const std::string base = file.substr(file.rfind('/') + 1);
  for (int n = 1; n <= 100000; ++n) {
    const std::string name = Candidate(base, n);
    const std::string info_name = name + ".trashinfo";
    const int fd = ::openat(info.get(), info_name.c_str(),
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) {
      if (errno == EEXIST) continue;
      return false;
    }
    const bool written = WriteAll(fd, content);
    const bool closed = ::close(fd) == 0;
    if (!written || !closed) {
      ::unlinkat(info.get(), info_name.c_str(), 0);
      return false;
    }
    int r = ::renameat2(AT_FDCWD, file.c_str(), files.get(), name.c_str(), RENAME_NOREPLACE);
    if (r != 0 && (errno == EINVAL || errno == ENOSYS)) {
      // No exclusive rename on this file system: look first, then move.
      struct stat there;
      if (::fstatat(files.get(), name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
      } else {
        r = ::renameat(AT_FDCWD, file.c_str(), files.get(), name.c_str());
      }
    }
    if (r == 0) return true;
    const int error = errno;
    ::unlinkat(info.get(), info_name.c_str(), 0);
    if (error != EEXIST) return false;
  }
  return false;
}

}  // namespace zyn::platform
