#include "zyn/platform/stream.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"

namespace zyn::platform {
namespace {

using zyn::testing::ReadFileBytes;
using zyn::testing::TempDir;
using zyn::testing::WriteFileBytes;

std::u16string Name(const std::filesystem::path& p) { return FromUTF8(p.string()); }

std::string Bytes(std::span<const std::uint8_t> m) { return {m.begin(), m.end()}; }

TEST(MemoryStreamTest, ReadWriteSeekAndGaps) {
  TMemoryStream m;
  m.WriteBuffer("abc", 3);
  EXPECT_EQ(m.Position(), 3);
  EXPECT_EQ(m.Seek(5, soBeginning), 5);
  m.WriteBuffer("z", 1);  // the gap fills with 0
  EXPECT_EQ(Bytes(m.Memory()), std::string("abc\0\0z", 6));
  EXPECT_EQ(m.Seek(-2, soEnd), 4);
  char buf[8] = {};
  EXPECT_EQ(m.Read(buf, 8), 2);
  EXPECT_EQ(m.Read(buf, 8), 0);
  m.SetPosition(100);
  EXPECT_EQ(m.Read(buf, 1), 0);
  EXPECT_THROW(m.Seek(-1, soBeginning), EStreamError);
  EXPECT_EQ(m.Position(), 100);
  m.SetSize(2);
  EXPECT_EQ(m.Position(), 2);
  EXPECT_EQ(Bytes(m.Memory()), "ab");
}

// A stream that takes only a few bytes per write.
class TinyStream : public TMemoryStream {
 public:
  explicit TinyStream(int limit) : limit_(limit) {}
  int Write(const void* Buffer, int Count) override {
    const int n = std::min(Count, limit_);
    limit_ -= n;
    return TMemoryStream::Write(Buffer, n);
  }

 private:
  int limit_;
};

TEST(StreamTest, WriteBufferRaisesOnShortWrite) {
  TinyStream s(2);
  EXPECT_THROW(s.WriteBuffer("abc", 3), EWriteError);
  EXPECT_EQ(Bytes(s.Memory()), "ab");
}

// A write whose end the position can't hold is refused before it moves
// anything.
TEST(StreamTest, WriteNearTheLargestPositionRaises) {
  constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
  TempDir dir;
  TMemoryStream memory;
  TFileStream file(Name(dir / "f"), fmCreate);
  for (TStream* s : std::initializer_list<TStream*>{&memory, &file}) {
    SCOPED_TRACE(testing::Utf8(s->ClassName()));
    for (const std::int64_t position : {kMax, kMax - 1, kMax - 2}) {
      s->SetPosition(position);
      EXPECT_THROW(s->Write("abc", 3), EStreamError);
      EXPECT_THROW(s->WriteBuffer("abc", 3), EStreamError);
      EXPECT_EQ(s->Position(), position);
    }
    s->SetPosition(0);
    s->WriteBuffer("ok", 2);
    EXPECT_EQ(s->Position(), 2);
  }
  file.FlushBuffer();
  EXPECT_EQ(ReadFileBytes(dir / "f"), "ok");
}

// The system would read a name only up to a NUL and open another file.
TEST(FileStreamTest, NameWithANulIsRefused) {
  TempDir dir;
  const std::u16string name = Name(dir / "a") + std::u16string(1, u'\0') + u"b";
  EXPECT_THROW(TFileStream(name, fmCreate), EFCreateError);
  EXPECT_FALSE(std::filesystem::exists(dir / "a"));  // cut at the NUL, it would have been made
  WriteFileBytes(dir / "a", "x");
  for (const std::uint16_t mode : {fmOpenRead, fmOpenWrite, fmOpenReadWrite}) {
    EXPECT_THROW(TFileStream(name, mode), EFOpenError) << mode;
  }
  TMemoryStream m;
  EXPECT_THROW(m.LoadFromFile(name), EFOpenError);
  m.WriteBuffer("new", 3);
  EXPECT_THROW(m.SaveToFile(name), EFCreateError);
  EXPECT_EQ(ReadFileBytes(dir / "a"), "x");
}

TEST(StringStreamTest, OneBytePerCharacterInTheEightBitCodePage) {
  TStringStream s(u"A\u00e4\u20ac\u4e00");
  EXPECT_EQ(s.Position(), 0);
  EXPECT_EQ(Bytes(s.Memory()), "A\xe4\x80?");
  EXPECT_EQ(s.DataString(), u"A\u00e4\u20ac?");
  EXPECT_EQ(s.Size(), 4);
}

TEST(FileStreamTest, MissingFileAndBadModeRaise) {
  TempDir dir;
  EXPECT_THROW(TFileStream(Name(dir / "missing"), fmOpenRead), EFOpenError);
  EXPECT_THROW(TFileStream(Name(dir / "no" / "such"), fmCreate), EFCreateError);
  WriteFileBytes(dir / "f", "x");
  EXPECT_THROW(TFileStream(Name(dir / "f"), 3), EFOpenError);
  try {
    TFileStream(Name(dir / "missing"), fmOpenRead);
  } catch (const EFOpenError& e) {
    EXPECT_EQ(e.Message().rfind(u"Cannot open file \"" + Name(dir / "missing") + u"\". ", 0), 0u);
  }
}

// Seeking past the end of the buffered range writes the buffer; the gap
// behind the old end fills with 0.
TEST(FileStreamTest, BufferedWritesShowInPositionAndSizeAndReachTheFile) {
  TempDir dir;
  TFileStream f(Name(dir / "f"), fmCreate);
  for (int i = 0; i < 100; ++i) f.WriteBuffer("0123456789", 10);
  EXPECT_EQ(f.Size(), 1000);
  f.SetPosition(2000);
  f.WriteBuffer("E", 1);
  EXPECT_EQ(f.Size(), 2001);
  f.FlushBuffer();
  const std::string bytes = ReadFileBytes(dir / "f");
  ASSERT_EQ(bytes.size(), 2001u);
  EXPECT_EQ(bytes.substr(990, 10), "0123456789");
  EXPECT_EQ(bytes.substr(1000, 1000), std::string(1000, '\0'));
  EXPECT_EQ(bytes.back(), 'E');
  f.SetSize(3);  // cuts the file
  EXPECT_EQ(f.Position(), 3);
  EXPECT_EQ(f.Size(), 3);
  f.WriteBuffer("X", 1);
  f.FlushBuffer();
  EXPECT_EQ(ReadFileBytes(dir / "f"), "012X");
}

// Reads and overwrites across several buffer loads, against a model in memory.
TEST(FileStreamTest, MixedReadsWritesAndSeeksMatchAMemoryModel) {
  TempDir dir;
  std::string model(300000, '\0');
  for (std::size_t i = 0; i < model.size(); ++i) model[i] = static_cast<char>(i * 7);
  WriteFileBytes(dir / "f", model);
  TFileStream f(Name(dir / "f"), fmOpenReadWrite);
  std::mt19937 rng(1);
  auto next = [&rng](std::size_t n) { return static_cast<std::size_t>(rng() % n); };
  std::vector<char> buf(200000);
  for (int step = 0; step < 400; ++step) {
    SCOPED_TRACE(step);
    std::size_t pos = next(model.size());
    const std::size_t count = next(step % 10 == 0 ? 150000 : 100000);
    ASSERT_EQ(f.Seek(static_cast<std::int64_t>(pos), soBeginning), static_cast<std::int64_t>(pos));
    switch (next(3)) {
      case 0: {
        const std::size_t want = std::min(count, model.size() - pos);
        ASSERT_EQ(f.Read(buf.data(), static_cast<int>(count)), static_cast<int>(want));
        ASSERT_EQ(std::string_view(buf.data(), want), std::string_view(model).substr(pos, want));
        pos += want;
        break;
      }
      case 1:  // byte by byte, through the window and past its end
        for (std::size_t i = 0; i < count; ++i, ++pos) {
          std::uint8_t b = 0;
          ASSERT_EQ(f.ReadByte(b), pos < model.size());
          if (pos >= model.size()) break;
          ASSERT_EQ(static_cast<char>(b), model[pos]);
        }
        break;
      default:
        for (std::size_t i = 0; i < count; ++i) buf[i] = static_cast<char>(step + i);
        f.WriteBuffer(buf.data(), static_cast<int>(count));
        model.resize(std::max(model.size(), pos + count));
        model.replace(pos, count, buf.data(), count);
        pos += count;
    }
    ASSERT_EQ(f.Position(), static_cast<std::int64_t>(pos));
    ASSERT_EQ(f.Size(), std::ssize(model));
  }
  f.FlushBuffer();
  EXPECT_EQ(ReadFileBytes(dir / "f"), model);
}

// A class derived from TFileStream sees every byte through its own Read.
class CountingFileStream : public TFileStream {
 public:
  using TFileStream::TFileStream;
  int Read(void* Buffer, int Count) override {
    ++reads;
    return TFileStream::Read(Buffer, Count);
  }
  int reads = 0;
};

TEST(FileStreamTest, ReadByteGoesThroughAnOverriddenRead) {
  TempDir dir;
  WriteFileBytes(dir / "f", "abc");
  CountingFileStream f(Name(dir / "f"), fmOpenRead);
  std::uint8_t b;
  while (f.ReadByte(b)) {
  }
  EXPECT_EQ(f.reads, 4);
}

}  // namespace
}  // namespace zyn::platform
