// The Linux side of DirHandle: openat(2), fstatat(2) and unlinkat(2) on
// directory descriptors opened with O_NOFOLLOW | O_DIRECTORY.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "zyn/platform/dir_walk.h"
#include "zyn/platform/file_handle.h"
#include "zyn/platform/posix_attr.h"
#include "zyn/platform/text.h"

namespace zyn::platform {

using posix_detail::AttrOf;
namespace {

constexpr int kDirFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

}  // namespace

// The readdir(3) state over the handle's descriptor; closing it closes
// the descriptor too.
struct DirHandle::Listing {
  DIR* dir = nullptr;
};

namespace {

void CloseHandle(int& fd, std::unique_ptr<DirHandle::Listing>& listing) {
  if (listing) {
    ::closedir(listing->dir);
  } else if (fd >= 0) {
    ::close(fd);
  }
  listing.reset();
  fd = -1;
}

}  // namespace

DirHandle::DirHandle() = default;
DirHandle::DirHandle(int fd) : fd_(fd) {}

DirHandle::DirHandle(DirHandle&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)), listing_(std::move(other.listing_)) {}

DirHandle& DirHandle::operator=(DirHandle&& other) noexcept {
  if (this != &other) {
    CloseHandle(fd_, listing_);
    fd_ = std::exchange(other.fd_, -1);
    listing_ = std::move(other.listing_);
  }
  return *this;
}

DirHandle::~DirHandle() { CloseHandle(fd_, listing_); }

int DirHandle::Open(std::u16string_view path, bool follow_last, DirHandle& out) {
  std::string native = file_detail::SystemName(path.empty() ? std::u16string_view(u".") : path);
  // A trailing '/' would make the kernel follow a link as the last component.
  while (!follow_last && native.size() > 1 && native.back() == '/') native.pop_back();
  const int flags = follow_last ? (kDirFlags & ~O_NOFOLLOW) : kDirFlags;
  int fd;
  do {
    fd = ::open(native.c_str(), flags);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return errno;
  out = DirHandle(fd);
  return 0;
}

int DirHandle::OpenChild(std::u16string_view name, DirHandle& out) const {
  int fd;
  do {
    fd = ::openat(fd_, file_detail::SystemName(name).c_str(), kDirFlags);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return errno;
  out = DirHandle(fd);
  return 0;
}

bool DirHandle::Next(DirEntry& entry) {
  if (fd_ < 0) return false;
  if (!listing_) {
    // The listing reads through the handle's own descriptor: the *at calls
    // don't use its offset, and a deep walk needs one descriptor per level.
    listing_ = std::make_unique<Listing>();
    listing_->dir = ::fdopendir(fd_);
    if (listing_->dir == nullptr) {
      listing_.reset();
      return false;
    }
  }
  for (;;) {
    const dirent* d = ::readdir(listing_->dir);
    if (d == nullptr) return false;
    const std::string_view native = d->d_name;
    if (native == "." || native == "..") continue;
    const std::u16string name = FromUTF8(native);
    if (Stat(name, entry) == 0) return true;
  }
}

void DirHandle::Rewind() {
  if (listing_) ::rewinddir(listing_->dir);
}

int DirHandle::Stat(std::u16string_view name, DirEntry& entry) const {
  struct stat st;
  if (::fstatat(fd_, file_detail::SystemName(name).c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0)
    return errno;
  entry.name.assign(name);
  entry.attr = AttrOf(st, name);
  entry.size = st.st_size;
  return 0;
}

int DirHandle::RemoveFile(std::u16string_view name) const {
  return ::unlinkat(fd_, file_detail::SystemName(name).c_str(), 0) == 0 ? 0 : errno;
}

int DirHandle::RemoveDir(std::u16string_view name) const {
  return ::unlinkat(fd_, file_detail::SystemName(name).c_str(), AT_REMOVEDIR) == 0 ? 0 : errno;
}

int DirHandle::MakeDir(std::u16string_view name) const {
  const std::string native = file_detail::SystemName(name);
  if (::mkdirat(fd_, native.c_str(), 0777) == 0) return 0;
  const int error = errno;
  struct stat st;
  if (error == EEXIST && ::fstatat(fd_, native.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 &&
      S_ISDIR(st.st_mode)) {
    return 0;
  }
  return error;
}

int DirHandle::OpenFileRead(std::u16string_view name) const {
  int fd;
  do {
    fd = ::openat(fd_, file_detail::SystemName(name).c_str(),
                  O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return -1;
  struct stat st;
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return -1;
  }
  // Plain files ignore O_NONBLOCK, which only kept a fifo from blocking the open.
  ::fcntl(fd, F_SETFL, 0);
  return fd;
}

int DirHandle::CreateFile(std::u16string_view name) const {
  int fd;
  do {
    fd = ::openat(fd_, file_detail::SystemName(name).c_str(),
                  O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
  } while (fd < 0 && errno == EINTR);
  return fd < 0 ? -1 : fd;
}

int DirHandle::ReadLink(std::u16string_view name, std::u16string& target) const {
  std::string buffer(256, '\0');
  const std::string native = file_detail::SystemName(name);
  for (;;) {
    const ssize_t n = ::readlinkat(fd_, native.c_str(), buffer.data(), buffer.size());
    if (n < 0) return errno;
    if (static_cast<std::size_t>(n) < buffer.size()) {
      buffer.resize(static_cast<std::size_t>(n));
      target = FromUTF8(buffer);
      return 0;
    }
    if (buffer.size() > (1u << 20)) return ENAMETOOLONG;
    buffer.resize(buffer.size() * 2);
  }
}

int DirHandle::MakeLink(std::u16string_view target, std::u16string_view name) const {
  return ::symlinkat(file_detail::SystemName(target).c_str(), fd_,
                     file_detail::SystemName(name).c_str()) == 0
             ? 0
             : errno;
}

bool DirHandle::SameAs(const DirHandle& other) const {
  struct stat a, b;
  return fd_ >= 0 && other.fd_ >= 0 && ::fstat(fd_, &a) == 0 && ::fstat(other.fd_, &b) == 0 &&
         a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool IsSameFile(int handle, std::u16string_view name) {
  struct stat a, b;
  return ::fstat(handle, &a) == 0 && ::stat(file_detail::SystemName(name).c_str(), &b) == 0 &&
         a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::int64_t FileSize(int handle) {
  struct stat st;
  return ::fstat(handle, &st) == 0 ? st.st_size : -1;
}

bool FileTruncate(int handle, std::int64_t size) {
  int r;
  do {
    r = ::ftruncate(handle, static_cast<off_t>(size));
  } while (r != 0 && errno == EINTR);
  return r == 0;
}

bool FileCopyPermissions(int from_handle, int to_handle) {
  struct stat st;
  if (::fstat(from_handle, &st) != 0) return false;
  return ::fchmod(to_handle, (st.st_mode & 07777) | S_IWUSR) == 0;
}

std::int64_t FileCopyRange(int from_handle, int to_handle, std::int64_t count) {
  for (;;) {
    const ssize_t n = ::copy_file_range(from_handle, nullptr, to_handle, nullptr,
                                        static_cast<std::size_t>(count), 0);
    if (n >= 0) return n;
    if (errno != EINTR) return -1;
  }
}

}  // namespace zyn::platform
