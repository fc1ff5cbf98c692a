// zyn/platform/file_handle.h
//
// The platform layer's own handle on an open operating-system file, used by
// TFileStream and Textfile. Internal to the platform layer: other folders use
// the stream and text-file classes. Failures come back as an error number
// (errno on Linux), never as an exception.

#ifndef ZYN_PLATFORM_FILE_HANDLE_H_
#define ZYN_PLATFORM_FILE_HANDLE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zyn::platform::file_detail {

enum class OpenKind : std::uint8_t {
  kRead,            // existing file, read only
  kWrite,           // existing file, write only
  kReadWrite,       // existing file, read and write
  kCreate,          // created or truncated, read and write
  kCreateWriteOnly  // created or truncated, write only
};

// A file name in the system's encoding (UTF-8, with the lossless rule of
// FromUTF8). A name holding a NUL gives "", which names no file: the system
// would read the name only up to the NUL and reach another file.
std::string SystemName(std::u16string_view name);

class FileHandle {
 public:
  FileHandle() = default;
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  ~FileHandle();

  // Opens `utf8_name`; 0 on success, else the error number. Closes any file
  // held before. A name holding a NUL byte is refused as invalid: the
  // system would read it only up to the NUL and open another file.
  int Open(const std::string& utf8_name, OpenKind kind);
  // 0 on success, else the error number. Closing a closed handle is a no-op.
  int Close();
  bool IsOpen() const { return fd_ >= 0; }

  // Transfers at the file's own offset; the count done, or -1 with `error` set.
  // They retry on interruption, so a short count means end of file (read) or
  // a full device (write, with error set).
  std::int64_t Read(void* buffer, std::size_t count, int& error);
  std::int64_t Write(const void* buffer, std::size_t count, int& error);
  // Transfers at an explicit offset, leaving the file's own offset alone.
  std::int64_t ReadAt(void* buffer, std::size_t count, std::int64_t offset, int& error);
  std::int64_t WriteAt(const void* buffer, std::size_t count, std::int64_t offset, int& error);

  // Moves the file's own offset: to `offset` from the start, or to the end.
  // The new offset, or -1 with `error` set.
  std::int64_t SeekTo(std::int64_t offset, int& error);
  std::int64_t SeekToEnd(int& error);

  // The file's size, or -1 with `error` set.
  std::int64_t Size(int& error) const;
  // 0 on success, else the error number.
  int Truncate(std::int64_t size);

 private:
  int fd_ = -1;
};

// A short English text for an error number, e.g. "No such file or directory".
std::string ErrorText(int error);

// Error numbers the callers tell apart.
bool IsNotFound(int error);
bool IsInvalidName(int error);
bool IsPathNotFound(int error);
bool IsAccessDenied(int error);
bool IsTooManyOpenFiles(int error);
bool IsDiskFull(int error);

}  // namespace zyn::platform::file_detail

#endif  // ZYN_PLATFORM_FILE_HANDLE_H_
