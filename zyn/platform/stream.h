// zyn/platform/stream.h
//
// The platform's byte streams: the abstract TStream with its exact-count
// transfers ReadBuffer and WriteBuffer, and three kinds of stream: in memory
// (TMemoryStream), over a string in the 8-bit code page (TStringStream), and
// over a file, buffered (TFileStream). Positions and sizes count bytes from 0.

#ifndef ZYN_PLATFORM_STREAM_H_
#define ZYN_PLATFORM_STREAM_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/object.h"

namespace zyn::platform {

// Where a seek offset counts from.
enum TSeekOrigin : std::uint8_t { soBeginning, soCurrent, soEnd };

// A stream operation that can't be done: a short ReadBuffer or WriteBuffer,
// a seek before the start, a write ending beyond INT64_MAX, a size a stream
// can't take.
class EStreamError : public Exception {
 public:
  using Exception::Exception;
};
// ReadBuffer got fewer bytes than asked for: "Stream read error".
class EReadError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};
// WriteBuffer placed fewer bytes than asked for: "Stream write error".
class EWriteError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};
// A file stream's file can't be opened: Cannot open file "<name>". <reason>
class EFOpenError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};
// A file stream's file can't be created: Cannot create file "<name>". <reason>
class EFCreateError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};

class TStream : public TObject {
 public:
  // Reads at most `Count` bytes into `Buffer`; the number read, 0 at the end
  // of the stream or for a `Count` of 0 or less.
  virtual int Read(void* Buffer, int Count) = 0;
  // Writes at most `Count` bytes from `Buffer`; the number written, 0 for a
  // `Count` of 0 or less or when the stream takes nothing. A write that would
  // end beyond INT64_MAX raises EStreamError "Invalid stream position" and
  // writes nothing.
  virtual int Write(const void* Buffer, int Count) = 0;
  // Moves the position and gives the new one. A target before the start
  // raises EStreamError and leaves the position; a target behind the end is
  // allowed: reading there gives nothing, writing there fills the gap with 0.
  virtual std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) = 0;

  // Reads exactly `Count` bytes or raises EReadError; on the short read the
  // bytes that were there stand at the front of `Buffer`.
  void ReadBuffer(void* Buffer, int Count);
  // Writes exactly `Count` bytes or raises EWriteError. A `Count` of 0 writes
  // nothing.
  void WriteBuffer(const void* Buffer, int Count);

  std::int64_t Position() { return Seek(0, soCurrent); }
  void SetPosition(std::int64_t Value) { Seek(Value, soBeginning); }
  // The number of bytes in the stream. The base form seeks to the end and back.
  virtual std::int64_t Size();
  // Cuts or extends (with 0 bytes) the stream; the position stays unless it
  // lies behind the new end, then it moves to the end. The base form raises
  // EStreamError: not every stream can change its size.
  virtual void SetSize(std::int64_t NewSize);

  // One byte, exactly as `Read(&b, 1) == 1` gives it. A stream that keeps a
  // buffer lets this take bytes from it without a virtual call, which is what
  // makes byte-at-a-time readers fast.
  bool ReadByte(std::uint8_t& b) {
    if (window_next_ != window_end_) {
      b = *window_next_++;
      return true;
    }
    return Read(&b, 1) == 1;
  }

  // The bytes ReadByte would give next without a call; often none. Taking
  // `n` of them with SkipBuffered(n) is the same as `n` ReadByte calls, which
  // lets a reader scan a run of bytes at once.
  std::span<const std::uint8_t> BufferedBytes() const noexcept {
    return {window_next_, static_cast<std::size_t>(window_end_ - window_next_)};
  }
  void SkipBuffered(std::size_t n) noexcept { window_next_ += n; }

  // Copies `Count` bytes from `Source`'s position to this stream's; with a
  // `Count` of 0 or less, everything from `Source`'s start to its end.
  // The number of bytes copied. A short source raises EReadError.
  std::int64_t CopyFrom(TStream& Source, std::int64_t Count);

 protected:
  // Buffered bytes at the position that ReadByte may take directly; empty by
  // default. A stream that sets them must count what ReadByte took from them
  // as read before it does anything else.
  const std::uint8_t* window_next_ = nullptr;
  const std::uint8_t* window_end_ = nullptr;
};

// A stream in memory. The bytes are the object's; `Memory()` shows them.
class TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;

  int Read(void* Buffer, int Count) override;
  int Write(const void* Buffer, int Count) override;
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
  std::int64_t Size() override { return static_cast<std::int64_t>(data_.size()); }
  // Allocation failure raises std::bad_alloc (or std::length_error).
  void SetSize(std::int64_t NewSize) override;

  // The bytes of the stream, valid until the next change of size.
  std::span<std::uint8_t> Memory() { return data_; }
  std::span<const std::uint8_t> Memory() const { return data_; }
  // Empties the stream; the position goes to 0.
  void Clear();

  // Replaces the content with all of `Stream`, from its start; position 0.
  void LoadFromStream(TStream& Stream);
  // Writes the whole content to `Stream` at its position.
  void SaveToStream(TStream& Stream) const;
  // The same with a named file; failures as TFileStream's.
  void LoadFromFile(std::u16string_view FileName);
  void SaveToFile(std::u16string_view FileName) const;

 private:
  std::vector<std::uint8_t> data_;
  std::int64_t position_ = 0;
};

// A memory stream built from a string: one byte per character in the 8-bit
// code page (a character the code page can't hold becomes '?'), position 0.
class TStringStream : public TMemoryStream {
 public:
  explicit TStringStream(std::u16string_view AString = u"");

  // The whole content, each byte read back through the 8-bit code page.
  std::u16string DataString() const;
};

// Open modes of TFileStream: one access mode, or fmCreate, combined by `|`
// with a share mode. Linux has no share modes: they are accepted and ignored.
inline constexpr std::uint16_t fmOpenRead = 0x0000;
inline constexpr std::uint16_t fmOpenWrite = 0x0001;
inline constexpr std::uint16_t fmOpenReadWrite = 0x0002;
inline constexpr std::uint16_t fmShareCompat = 0x0000;
inline constexpr std::uint16_t fmShareExclusive = 0x0010;
inline constexpr std::uint16_t fmShareDenyWrite = 0x0020;
inline constexpr std::uint16_t fmShareDenyRead = 0x0030;
inline constexpr std::uint16_t fmShareDenyNone = 0x0040;
// Creates the file, or empties an existing one, for reading and writing.
inline constexpr std::uint16_t fmCreate = 0xFF00;

namespace file_detail {
class FileHandle;
}

// A stream over a named file, with a buffer of `kBufferSize` bytes between the
// caller and the file so that reading or writing a byte at a time is cheap.
// Position() and Size() always tell the stream's logical state, buffered
// bytes included. Written bytes reach the file when the buffer is full, on a
// seek out of the buffered range, on FlushBuffer and on destruction.
class TFileStream : public TStream {
 public:
  static constexpr int kBufferSize = 64 * 1024;

  // Opens `AFileName` in `Mode` (fmOpenRead and the other constants above).
  // A file that can't be opened raises EFOpenError, one that can't be created
  // EFCreateError; an unknown access mode raises EFOpenError.
  TFileStream(std::u16string_view AFileName, std::uint16_t Mode);
  // Writes what is still buffered; a failure here can't be reported (call
  // FlushBuffer first to see it).
  ~TFileStream() override;

  // Read gives fewer bytes than asked only at the end of the file; a read
  // error of the system ends the read early like the end of the file. Write
  // gives 0 on a stream opened without write access, and fewer bytes than
  // asked when the system refuses to take buffered bytes.
  int Read(void* Buffer, int Count) override;
  int Write(const void* Buffer, int Count) override;
  // A seek leaves the buffer in place when the target lies inside it.
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
  std::int64_t Size() override;
  // Writes the buffer, then cuts or extends the file; EStreamError on failure.
  void SetSize(std::int64_t NewSize) override;

  // Writes buffered bytes to the file; EWriteError if the system refuses.
  void FlushBuffer();

  const std::u16string& FileName() const { return file_name_; }

 private:
  friend class FileStreamWindowLease;
  // The window of ReadByte: taken back into buffer_cursor_ at the start of
  // every operation that uses the position, offered again at its end. Only
  // a plain TFileStream offers it, so that a class derived from it that
  // overrides Read sees every byte.
  void TakeBackWindow();
  void OfferWindow();
  // Read's general path: through the buffer, refilling it as needed.
  int ReadThroughBuffer(void* Buffer, int Count);
  // Writes the buffer if it holds unwritten bytes; false on failure.
  bool WriteBack();
  // Empties the buffer at the logical position (after a WriteBack).
  void Rebase();

  std::u16string file_name_;
  std::unique_ptr<file_detail::FileHandle> file_;
  bool readable_ = false;
  bool writable_ = false;
  // The buffer mirrors the file bytes [buffer_start_, buffer_start_ + buffer_length_);
  // the logical position is buffer_start_ + buffer_cursor_.
  std::vector<std::uint8_t> buffer_;
  std::int64_t buffer_start_ = 0;
  int buffer_length_ = 0;
  int buffer_cursor_ = 0;
  bool buffer_dirty_ = false;
};

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_STREAM_H_
