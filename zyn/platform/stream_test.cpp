#include "zyn/platform/stream.h"

#include <gtest/gtest.h>

#include <numeric>
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

TEST(FileStreamTest, BufferedWritesShowInPositionAndSizeAndReachTheFile) {
  TempDir dir;
  const auto path = dir / "f";
  {
    TFileStream f(Name(path), fmCreate);
    for (int i = 0; i < 100; ++i) f.WriteBuffer("0123456789", 10);
    EXPECT_EQ(f.Position(), 1000);
    EXPECT_EQ(f.Size(), 1000);
    f.SetPosition(995);
    char buf[10];
    EXPECT_EQ(f.Read(buf, 10), 5);
    EXPECT_EQ(std::string(buf, 5), "56789");
    f.SetPosition(2000);  // out of the buffered range: the buffer is written
    f.WriteBuffer("E", 1);
    EXPECT_EQ(f.Size(), 2001);
    f.FlushBuffer();
    EXPECT_EQ(ReadFileBytes(path).size(), 2001u);
  }
  const std::string bytes = ReadFileBytes(path);
  ASSERT_EQ(bytes.size(), 2001u);
  EXPECT_EQ(bytes.substr(990, 10), "0123456789");
  EXPECT_EQ(bytes.substr(1000, 1000), std::string(1000, '\0'));
  EXPECT_EQ(bytes.back(), 'E');
}

// Reads and overwrites across several buffer loads, against a model in memory.
TEST(FileStreamTest, MixedReadsWritesAndSeeksMatchAMemoryModel) {
  TempDir dir;
  const auto path = dir / "f";
  std::string model(300000, '\0');
  for (std::size_t i = 0; i < model.size(); ++i) model[i] = static_cast<char>(i * 7);
  WriteFileBytes(path, model);
  TFileStream f(Name(path), fmOpenReadWrite);
  std::uint32_t seed = 1;
  auto next = [&seed](std::uint32_t n) {
    seed = seed * 1103515245u + 12345u;
    return (seed >> 8) % n;
  };
  std::int64_t pos = 0;
  std::vector<char> buf(200000);
  for (int step = 0; step < 400; ++step) {
    SCOPED_TRACE(step);
    const auto target = static_cast<std::int64_t>(next(static_cast<std::uint32_t>(model.size())));
    const int count = static_cast<int>(next(step % 10 == 0 ? 150000 : 100000));
    ASSERT_EQ(f.Seek(target, soBeginning), target);
    pos = target;
    const std::uint32_t kind = next(3);
    if (kind == 2) {  // byte by byte, through the window and past its end
      for (int i = 0; i < count; ++i) {
        std::uint8_t b = 0;
        const bool got = f.ReadByte(b);
        ASSERT_EQ(got, pos < std::ssize(model));
        if (!got) break;
        ASSERT_EQ(static_cast<char>(b), model[static_cast<std::size_t>(pos)]);
        ++pos;
      }
    } else if (kind == 0) {
      const int got = f.Read(buf.data(), count);
      const int want = static_cast<int>(std::min<std::int64_t>(count, std::ssize(model) - pos));
      ASSERT_EQ(got, want);
      ASSERT_EQ(std::string(buf.data(), static_cast<std::size_t>(got)),
                model.substr(static_cast<std::size_t>(pos), static_cast<std::size_t>(got)));
      pos += got;
    } else {
      for (int i = 0; i < count; ++i)
        buf[static_cast<std::size_t>(i)] = static_cast<char>(step + i);
      f.WriteBuffer(buf.data(), count);
      if (pos + count > std::ssize(model)) model.resize(static_cast<std::size_t>(pos + count));
      model.replace(static_cast<std::size_t>(pos), static_cast<std::size_t>(count), buf.data(),
                    static_cast<std::size_t>(count));
      pos += count;
    }
    ASSERT_EQ(f.Position(), pos);
    ASSERT_EQ(f.Size(), std::ssize(model));
  }
  f.FlushBuffer();
  EXPECT_EQ(ReadFileBytes(path), model);
}

TEST(FileStreamTest, SetSizeCutsTheFile) {
  TempDir dir;
  const auto path = dir / "f";
  TFileStream f(Name(path), fmCreate);
  f.WriteBuffer("abcdef", 6);
  f.SetSize(3);
  EXPECT_EQ(f.Position(), 3);
  EXPECT_EQ(f.Size(), 3);
  f.WriteBuffer("X", 1);
  f.FlushBuffer();
  EXPECT_EQ(ReadFileBytes(path), "abcX");
}

}  // namespace
}  // namespace zyn::platform

namespace zyn::platform {
namespace {

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
