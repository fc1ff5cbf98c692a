#include "zyn/platform/stream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <typeinfo>

#include "zyn/platform/file_handle.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

using file_detail::FileHandle;
using file_detail::OpenKind;

// The target of a seek, or raises for one before the start (or one that
// overflows the position type).
std::int64_t SeekTarget(std::int64_t offset, TSeekOrigin origin, std::int64_t current,
                        std::int64_t end) {
  std::int64_t base = 0;
  if (origin == soCurrent) base = current;
  if (origin == soEnd) base = end;
  constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
  if (offset < -base || (offset > 0 && base > kMax - offset)) {
    throw EStreamError(u"Invalid stream position");
  }
  return base + offset;
}

// Where a write of `count` bytes at `position` ends; raises, as a seek there
// would, when that lies beyond the position type.
std::int64_t WriteEnd(std::int64_t position, int count) {
  if (position > std::numeric_limits<std::int64_t>::max() - count) {
    throw EStreamError(u"Invalid stream position");
  }
  return position + count;
}

std::u16string FileMessage(std::u16string_view verb, std::u16string_view name, int error) {
  return u"Cannot " + std::u16string(verb) + u" file \"" + std::u16string(name) + u"\". " +
         FromUTF8(file_detail::ErrorText(error));
}

}  // namespace

// --- TStream ---

void TStream::ReadBuffer(void* Buffer, int Count) {
  auto* bytes = static_cast<std::uint8_t*>(Buffer);
  int done = 0;
  while (done < Count) {
    const int n = Read(bytes + done, Count - done);
    if (n <= 0) break;
    done += n;
  }
  if (done < Count) throw EReadError(u"Stream read error");
}

void TStream::WriteBuffer(const void* Buffer, int Count) {
  const auto* bytes = static_cast<const std::uint8_t*>(Buffer);
  int done = 0;
  while (done < Count) {
    const int n = Write(bytes + done, Count - done);
    if (n <= 0) break;
    done += n;
  }
  if (done < Count) throw EWriteError(u"Stream write error");
}

std::int64_t TStream::Size() {
  const std::int64_t position = Seek(0, soCurrent);
  const std::int64_t end = Seek(0, soEnd);
  Seek(position, soBeginning);
  return end;
}

void TStream::SetSize(std::int64_t /*NewSize*/) {
  throw EStreamError(u"The size of a " + ClassName() + u" can't be changed");
}

std::int64_t TStream::CopyFrom(TStream& Source, std::int64_t Count) {
  if (Count <= 0) {
    Source.SetPosition(0);
    Count = Source.Size();
  }
  constexpr int kChunk = 64 * 1024;
  std::vector<std::uint8_t> chunk(static_cast<std::size_t>(std::min<std::int64_t>(Count, kChunk)));
  std::int64_t left = Count;
  while (left > 0) {
    const int n = static_cast<int>(std::min<std::int64_t>(left, kChunk));
    Source.ReadBuffer(chunk.data(), n);
    WriteBuffer(chunk.data(), n);
    left -= n;
  }
  return Count;
}

// --- TMemoryStream ---

int TMemoryStream::Read(void* Buffer, int Count) {
  const auto size = static_cast<std::int64_t>(data_.size());
  if (Count <= 0 || position_ >= size) return 0;
  const int n = static_cast<int>(std::min<std::int64_t>(Count, size - position_));
  std::memcpy(Buffer, data_.data() + position_, static_cast<std::size_t>(n));
  position_ += n;
  return n;
}

int TMemoryStream::Write(const void* Buffer, int Count) {
  if (Count <= 0) return 0;
  const std::int64_t end = WriteEnd(position_, Count);
  if (end > static_cast<std::int64_t>(data_.size())) data_.resize(static_cast<std::size_t>(end));
  std::memcpy(data_.data() + position_, Buffer, static_cast<std::size_t>(Count));
  position_ = end;
  return Count;
}

std::int64_t TMemoryStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  position_ = SeekTarget(Offset, Origin, position_, static_cast<std::int64_t>(data_.size()));
  return position_;
}

void TMemoryStream::SetSize(std::int64_t NewSize) {
  if (NewSize < 0) throw EStreamError(u"Invalid stream size");
  if (static_cast<std::uint64_t>(NewSize) > data_.max_size()) throw std::bad_alloc();
  data_.resize(static_cast<std::size_t>(NewSize));
  position_ = std::min(position_, NewSize);
}

void TMemoryStream::Clear() {
  data_.clear();
  data_.shrink_to_fit();
  position_ = 0;
}

void TMemoryStream::LoadFromStream(TStream& Stream) {
  Stream.SetPosition(0);
  const std::int64_t size = Stream.Size();
  SetSize(size);
  position_ = 0;
  std::int64_t done = 0;
  while (done < size) {
    const int n = static_cast<int>(std::min<std::int64_t>(size - done, 1 << 30));
    Stream.ReadBuffer(data_.data() + done, n);
    done += n;
  }
}

void TMemoryStream::SaveToStream(TStream& Stream) const {
  std::size_t done = 0;
  while (done < data_.size()) {
    const int n = static_cast<int>(std::min<std::size_t>(data_.size() - done, 1 << 30));
    Stream.WriteBuffer(data_.data() + done, n);
    done += static_cast<std::size_t>(n);
  }
}

void TMemoryStream::LoadFromFile(std::u16string_view FileName) {
  TFileStream file(FileName, fmOpenRead | fmShareDenyWrite);
  LoadFromStream(file);
}

void TMemoryStream::SaveToFile(std::u16string_view FileName) const {
  TFileStream file(FileName, fmCreate);
  SaveToStream(file);
  file.FlushBuffer();
}

// --- TStringStream ---

TStringStream::TStringStream(std::u16string_view AString) {
  const std::string bytes = StringToAnsi(AString);
  WriteBuffer(bytes.data(), static_cast<int>(bytes.size()));
  SetPosition(0);
}

std::u16string TStringStream::DataString() const {
  const auto bytes = Memory();
  return AnsiToString({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

// --- TFileStream ---

TFileStream::TFileStream(std::u16string_view AFileName, std::uint16_t Mode)
    : file_name_(AFileName), file_(std::make_unique<FileHandle>()) {
  const std::string name = ToUTF8(AFileName);
  if ((Mode & fmCreate) == fmCreate) {
    if (const int error = file_->Open(name, OpenKind::kCreate); error != 0) {
      throw EFCreateError(FileMessage(u"create", AFileName, error));
    }
    readable_ = writable_ = true;
    return;
  }
  OpenKind kind;
  switch (Mode & 0x0003) {
    case fmOpenRead:
      kind = OpenKind::kRead;
      readable_ = true;
      break;
    case fmOpenWrite:
      kind = OpenKind::kWrite;
      writable_ = true;
      break;
    case fmOpenReadWrite:
      kind = OpenKind::kReadWrite;
      readable_ = writable_ = true;
      break;
    default:
      throw EFOpenError(u"Cannot open file \"" + file_name_ + u"\". Invalid open mode");
  }
  if (const int error = file_->Open(name, kind); error != 0) {
    throw EFOpenError(FileMessage(u"open", AFileName, error));
  }
}

TFileStream::~TFileStream() { WriteBack(); }

// Holds the ReadByte window back for the length of one operation.
class FileStreamWindowLease {
 public:
  explicit FileStreamWindowLease(TFileStream& stream) : stream_(stream) {
    stream_.TakeBackWindow();
  }
  FileStreamWindowLease(const FileStreamWindowLease&) = delete;
  FileStreamWindowLease& operator=(const FileStreamWindowLease&) = delete;
  ~FileStreamWindowLease() { stream_.OfferWindow(); }

 private:
  TFileStream& stream_;
};

void TFileStream::TakeBackWindow() {
  if (window_end_ == nullptr) return;
  buffer_cursor_ = static_cast<int>(window_next_ - buffer_.data());
  window_next_ = window_end_ = nullptr;
}

void TFileStream::OfferWindow() {
  if (!readable_ || buffer_cursor_ >= buffer_length_ || typeid(*this) != typeid(TFileStream)) {
    return;
  }
  window_next_ = buffer_.data() + buffer_cursor_;
  window_end_ = buffer_.data() + buffer_length_;
}

bool TFileStream::WriteBack() {
  if (!buffer_dirty_) return true;
  buffer_dirty_ = false;
  int error = 0;
  const std::int64_t n = file_->WriteAt(buffer_.data(), static_cast<std::size_t>(buffer_length_),
                                        buffer_start_, error);
  return n == buffer_length_;
}

void TFileStream::Rebase() {
  buffer_start_ += buffer_cursor_;
  buffer_length_ = 0;
  buffer_cursor_ = 0;
}

void TFileStream::FlushBuffer() {
  if (!WriteBack()) throw EWriteError(u"Stream write error");
}

int TFileStream::Read(void* Buffer, int Count) {
  FileStreamWindowLease lease(*this);
  // Byte-at-a-time readers come here once per byte: serve them straight from
  // the buffer, without the set-up of the general path.
  if (Count == 1 && buffer_cursor_ < buffer_length_ && readable_) {
    *static_cast<std::uint8_t*>(Buffer) = buffer_[static_cast<std::size_t>(buffer_cursor_++)];
    return 1;
  }
  return ReadThroughBuffer(Buffer, Count);
}

int TFileStream::ReadThroughBuffer(void* Buffer, int Count) {
  if (!readable_ || Count <= 0) return 0;
  auto* out = static_cast<std::uint8_t*>(Buffer);
  int done = 0;
  while (done < Count) {
    const int available = buffer_length_ - buffer_cursor_;
    if (available > 0) {
      const int n = std::min(available, Count - done);
      std::memcpy(out + done, buffer_.data() + buffer_cursor_, static_cast<std::size_t>(n));
      buffer_cursor_ += n;
      done += n;
      continue;
    }
    if (!WriteBack()) break;
    Rebase();
    const int left = Count - done;
    int error = 0;
    if (left >= kBufferSize) {
      const std::int64_t n =
          file_->ReadAt(out + done, static_cast<std::size_t>(left), buffer_start_, error);
      if (n > 0) {
        buffer_start_ += n;
        done += static_cast<int>(n);
      }
      break;
    }
    if (buffer_.empty()) buffer_.resize(kBufferSize);
    const std::int64_t n = file_->ReadAt(buffer_.data(), buffer_.size(), buffer_start_, error);
    if (n <= 0) break;
    buffer_length_ = static_cast<int>(n);
  }
  return done;
}

int TFileStream::Write(const void* Buffer, int Count) {
  FileStreamWindowLease lease(*this);
  if (!writable_ || Count <= 0) return 0;
  WriteEnd(buffer_start_ + buffer_cursor_, Count);
  const auto* in = static_cast<const std::uint8_t*>(Buffer);
  int done = 0;
  while (done < Count) {
    if (buffer_cursor_ == kBufferSize) {
      if (!WriteBack()) break;
      Rebase();
    }
    const int left = Count - done;
    if (buffer_length_ == 0 && left >= kBufferSize) {
      int error = 0;
      const std::int64_t n =
          file_->WriteAt(in + done, static_cast<std::size_t>(left), buffer_start_, error);
      if (n > 0) {
        buffer_start_ += n;
        done += static_cast<int>(n);
      }
      break;
    }
    if (buffer_.empty()) buffer_.resize(kBufferSize);
    const int n = std::min(kBufferSize - buffer_cursor_, left);
    std::memcpy(buffer_.data() + buffer_cursor_, in + done, static_cast<std::size_t>(n));
    buffer_cursor_ += n;
    buffer_length_ = std::max(buffer_length_, buffer_cursor_);
    buffer_dirty_ = true;
    done += n;
  }
  return done;
}

std::int64_t TFileStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  FileStreamWindowLease lease(*this);
  const std::int64_t current = buffer_start_ + buffer_cursor_;
  if (Origin == soCurrent && Offset == 0) return current;
  const std::int64_t target =
      SeekTarget(Offset, Origin, current, Origin == soEnd ? Size() : current);
  if (target >= buffer_start_ && target <= buffer_start_ + buffer_length_) {
    buffer_cursor_ = static_cast<int>(target - buffer_start_);
    return target;
  }
  const bool written = WriteBack();
  buffer_start_ = target;
  buffer_length_ = 0;
  buffer_cursor_ = 0;
  if (!written) throw EWriteError(u"Stream write error");
  return target;
}

std::int64_t TFileStream::Size() {
  int error = 0;
  const std::int64_t on_disk = std::max<std::int64_t>(file_->Size(error), 0);
  return buffer_dirty_ ? std::max(on_disk, buffer_start_ + buffer_length_) : on_disk;
}

void TFileStream::SetSize(std::int64_t NewSize) {
  if (NewSize < 0) throw EStreamError(u"Invalid stream size");
  FileStreamWindowLease lease(*this);
  FlushBuffer();
  const std::int64_t position = std::min(buffer_start_ + buffer_cursor_, NewSize);
  buffer_start_ = position;
  buffer_length_ = 0;
  buffer_cursor_ = 0;
  if (!writable_ || file_->Truncate(NewSize) != 0) {
    throw EStreamError(u"Cannot change the size of \"" + file_name_ + u"\"");
  }
}

}  // namespace zyn::platform
