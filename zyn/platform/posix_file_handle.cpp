// The Linux side of FileHandle: open(2), read(2), pread(2) and their kin.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "zyn/platform/file_handle.h"
#include "zyn/platform/text.h"

namespace zyn::platform::file_detail {
namespace {

int OpenFlags(OpenKind kind) {
  switch (kind) {
    case OpenKind::kRead:
      return O_RDONLY;
    case OpenKind::kWrite:
      return O_WRONLY;
    case OpenKind::kReadWrite:
      return O_RDWR;
    case OpenKind::kCreate:
      return O_RDWR | O_CREAT | O_TRUNC;
    case OpenKind::kCreateWriteOnly:
      return O_WRONLY | O_CREAT | O_TRUNC;
  }
  return O_RDONLY;
}

// Runs a transfer until `count` bytes are done, the call gives 0, or it fails
// with something other than an interruption.
template <typename Transfer>
std::int64_t Loop(std::size_t count, int& error, Transfer transfer) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t n = transfer(done, count - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      error = errno;
      return done > 0 ? static_cast<std::int64_t>(done) : -1;
    }
    if (n == 0) break;
    done += static_cast<std::size_t>(n);
  }
  return static_cast<std::int64_t>(done);
}

}  // namespace

FileHandle::~FileHandle() { Close(); }

std::string SystemName(std::u16string_view name) {
  if (name.find(u'\0') != std::u16string_view::npos) return {};
  return ToUTF8(name);
}

int FileHandle::Open(const std::string& utf8_name, OpenKind kind) {
  Close();
  if (utf8_name.find('\0') != std::string::npos) return EINVAL;
  int fd;
  do {
    fd = ::open(utf8_name.c_str(), OpenFlags(kind) | O_CLOEXEC, 0666);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return errno;
  struct stat st;
  if (::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
    ::close(fd);
    return EISDIR;
  }
  fd_ = fd;
  return 0;
}

int FileHandle::Close() {
  if (fd_ < 0) return 0;
  const int result = ::close(fd_);
  fd_ = -1;
  return (result == 0 || errno == EINTR) ? 0 : errno;
}

std::int64_t FileHandle::Read(void* buffer, std::size_t count, int& error) {
  auto* bytes = static_cast<char*>(buffer);
  return Loop(count, error,
              [&](std::size_t done, std::size_t left) { return ::read(fd_, bytes + done, left); });
}

std::int64_t FileHandle::Write(const void* buffer, std::size_t count, int& error) {
  const auto* bytes = static_cast<const char*>(buffer);
  const std::int64_t n = Loop(count, error, [&](std::size_t done, std::size_t left) {
    return ::write(fd_, bytes + done, left);
  });
  if (n >= 0 && static_cast<std::size_t>(n) < count && error == 0) error = ENOSPC;
  return n;
}

std::int64_t FileHandle::ReadAt(void* buffer, std::size_t count, std::int64_t offset, int& error) {
  auto* bytes = static_cast<char*>(buffer);
  return Loop(count, error, [&](std::size_t done, std::size_t left) {
    return ::pread(fd_, bytes + done, left, static_cast<off_t>(offset + done));
  });
}

std::int64_t FileHandle::WriteAt(const void* buffer, std::size_t count, std::int64_t offset,
                                 int& error) {
  const auto* bytes = static_cast<const char*>(buffer);
  const std::int64_t n = Loop(count, error, [&](std::size_t done, std::size_t left) {
    return ::pwrite(fd_, bytes + done, left, static_cast<off_t>(offset + done));
  });
  if (n >= 0 && static_cast<std::size_t>(n) < count && error == 0) error = ENOSPC;
  return n;
}

std::int64_t FileHandle::SeekTo(std::int64_t offset, int& error) {
  const off_t r = ::lseek(fd_, static_cast<off_t>(offset), SEEK_SET);
  if (r < 0) error = errno;
  return r;
}

std::int64_t FileHandle::SeekToEnd(int& error) {
  const off_t r = ::lseek(fd_, 0, SEEK_END);
  if (r < 0) error = errno;
  return r;
}

std::int64_t FileHandle::Size(int& error) const {
  struct stat st;
  if (::fstat(fd_, &st) != 0) {
    error = errno;
    return -1;
  }
  return st.st_size;
}

int FileHandle::Truncate(std::int64_t size) {
  int r;
  do {
    r = ::ftruncate(fd_, static_cast<off_t>(size));
  } while (r != 0 && errno == EINTR);
  return r == 0 ? 0 : errno;
}

std::string ErrorText(int error) {
  char buffer[256];
  // The GNU form may return a static string instead of filling the buffer.
#if defined(__GLIBC__) && defined(_GNU_SOURCE)
  return ::strerror_r(error, buffer, sizeof buffer);
#else
  if (::strerror_r(error, buffer, sizeof buffer) != 0) return "Error " + std::to_string(error);
  return buffer;
#endif
}

bool IsNotFound(int error) { return error == ENOENT; }
bool IsInvalidName(int error) { return error == EINVAL || error == ENAMETOOLONG; }
bool IsPathNotFound(int error) { return error == ENOTDIR; }
bool IsAccessDenied(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EISDIR ||
         error == ETXTBSY || error == EBADF;
}
bool IsTooManyOpenFiles(int error) { return error == EMFILE || error == ENFILE; }
bool IsDiskFull(int error) { return error == ENOSPC || error == EDQUOT || error == EFBIG; }

}  // namespace zyn::platform::file_detail
