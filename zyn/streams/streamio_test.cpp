#include "zyn/streams/streamio.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"

namespace Zyn_streams {
namespace {

using zyn::platform::TMemoryStream;
using zyn::testing::Utf8;

std::string Bytes(const TMemoryStream& m) { return {m.Memory().begin(), m.Memory().end()}; }

TMemoryStream& Fill(TMemoryStream& m, std::string_view bytes) {
  m.WriteBuffer(bytes.data(), static_cast<int>(bytes.size()));
  m.SetPosition(0);
  return m;
}

// Records the size of every Write it gets.
class WriteLog : public TMemoryStream {
 public:
  int Write(const void* Buffer, int Count) override {
    writes.push_back(Count);
    return TMemoryStream::Write(Buffer, Count);
  }
  std::vector<int> writes;
};

TEST(StreamIoTest, ValuesAndTextsAsBytes) {
  TMemoryStream m;
  WriteStringStream(m, u"");
  WriteStringStream(m, u"A\u00e4\u20ac\uffff");  // low bytes only
  WriteLnStream(m, u"ab");
  WriteLnStream(m, u"");
  WriteLongintToStream(m, -2);
  WriteLongintToStream(m, 0x12345678);
  WriteSingleToStream(m, 1.0f);
  WriteDoubleToStream(m, -2.0);
  WriteExtendedToStream(m, 1.0);  // an extended is a double
  const char want[] =
      "A\xe4\xac\xff"
      "ab\r\n\r\n\xfe\xff\xff\xff\x78\x56\x34\x12"
      "\0\0\x80\x3f"
      "\0\0\0\0\0\0\0\xc0"
      "\0\0\0\0\0\0\xf0\x3f";
  EXPECT_EQ(Bytes(m), std::string(want, sizeof want - 1));
  m.SetPosition(10);
  bool eof = true;
  EXPECT_EQ(ReadLongintFromStream(m, eof), -2);
  EXPECT_EQ(ReadLongintFromStream(m, eof), 0x12345678);
  EXPECT_EQ(ReadSingleFromStream(m, eof), 1.0f);
  EXPECT_EQ(ReadDoubleFromStream(m, eof), -2.0);
  EXPECT_EQ(ReadExtendedFromStream(m, eof), 1.0);
  EXPECT_FALSE(eof);
}

double Longint(TStream& s, bool& eof) { return ReadLongintFromStream(s, eof); }
double Single(TStream& s, bool& eof) { return ReadSingleFromStream(s, eof); }

// A short read sets eof and keeps the bytes that came, the rest being 0.
TEST(StreamIoTest, ShortReadsKeepWhatArrived) {
  struct Case {
    std::string_view bytes;
    double (*read)(TStream&, bool&);
    double value;
  };
  const Case cases[] = {
      {"\x34\x12", Longint, 0x1234},
      {"", Longint, 0},
      {std::string_view("\0\0\x80", 3), Single, 1.1754943508e-38},
      {std::string_view("\0\0\0\0\0\0\xf0", 7), ReadDoubleFromStream,
       std::bit_cast<double>(std::uint64_t{0x00f0000000000000})},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes.size());
    TMemoryStream m;
    bool eof = false;
    EXPECT_FLOAT_EQ(c.read(Fill(m, c.bytes), eof), c.value);
    EXPECT_TRUE(eof);
  }
}

TEST(StreamIoTest, LongStringsGoInBlocksOf4096) {
  const std::tuple<std::size_t, std::vector<int>> cases[] = {
      {0, {}}, {4096, {4096}}, {4097, {4096, 1}}, {9000, {4096, 4096, 808}}};
  for (const auto& [length, writes] : cases) {
    SCOPED_TRACE(length);
    WriteLog m;
    std::u16string s(length, u'x');
    for (std::size_t i = 0; i < s.size(); ++i) s[i] = static_cast<char16_t>(i % 251);
    WriteStringStream(m, s);
    EXPECT_EQ(m.writes, writes);
    ASSERT_EQ(m.Memory().size(), length);
    for (std::size_t i = 0; i < length; ++i) ASSERT_EQ(m.Memory()[i], i % 251);
  }
}

TEST(StreamIoTest, ReadLnStreamByRule) {
  const std::tuple<std::string_view, int, std::vector<std::u16string>> cases[] = {
      {"", 0, {u""}},
      {"ab\n", 0, {u"ab", u""}},
      {"ab\r\ncd", 0, {u"ab", u"cd"}},
      {"a\rb\nc", 0, {u"a\rb", u"c"}},
      {"ab\r\ncd", 1, {u"ab", u"\ncd"}},
      {"ab\r\ncd", 2, {u"ab", u"", u"cd"}},
      {"a\n\rb\r\nc", 3, {u"a", u"b\r\nc"}},
      {"a\nb\rc\r\nd", 4, {u"a\nb\rc", u"d"}},
      {"a\r\n\r\n", 4, {u"a", u"", u""}},
      {"x\r\r\n", 4, {u"x\r", u""}},  // only two line-end bytes go
      {"x\r\r\r\n", 4, {u"x\r\r", u""}},
      {"a\r\nb\n", 9, {u"a\r\nb\n"}},
      {"a\r\nb", -1, {u"a\r\nb"}},
      {std::string_view("\xe4\xff\0z", 4), 0, {std::u16string(u"\u00e4\u00ff\0z", 4)}},
  };
  for (const auto& [bytes, lineEnd, lines] : cases) {
    SCOPED_TRACE(testing::Message() << '"' << std::string(bytes) << "\" rule " << lineEnd);
    TMemoryStream m;
    Fill(m, bytes);
    std::vector<std::u16string> got;
    bool eof = false;
    while (!eof && got.size() < 10) got.push_back(ReadLnStream(m, eof, lineEnd));
    EXPECT_EQ(got, lines);
  }
}

// A file stream hands its buffered bytes to ReadLnStream as runs; a memory
// stream gives them one Read at a time. Over a file larger than the file
// stream's buffer, with line ends across its edges, both give the same lines
// under every rule.
TEST(StreamIoTest, ReadLnStreamSameThroughBufferedRuns) {
  std::mt19937 rng(3);
  std::string bytes(300'000, 'x');
  for (char& b : bytes) {
    const unsigned r = rng() % 100;
    b = r < 3 ? '\n' : r < 6 ? '\r' : r < 7 ? '\xE9' : 'a';
  }
  zyn::testing::TempDir dir;
  zyn::testing::WriteFileBytes(dir / "lines", bytes);
  for (const int rule : {-1, 0, 1, 2, 3, 4, 5}) {
    SCOPED_TRACE(rule);
    zyn::platform::TFileStream file(zyn::platform::FromUTF8((dir / "lines").string()),
                                    zyn::platform::fmOpenRead);
    TMemoryStream memory;
    Fill(memory, bytes);
    for (bool eof = false; !eof;) {
      bool memory_eof = false;
      const std::u16string line = ReadLnStream(file, eof, rule);
      ASSERT_EQ(line, ReadLnStream(memory, memory_eof, rule));
      ASSERT_EQ(eof, memory_eof);
      ASSERT_EQ(file.Position(), memory.Position());
    }
  }
}

TEST(StreamIoTest, WholeStreamFunctions) {
  TMemoryStream m;
  std::string bytes(600, 'a');
  bytes[100] = bytes[599] = '\n';
  bytes[300] = '\xff';
  Fill(m, bytes);
  m.SetPosition(1);
  const std::u16string rest = StreamAsString(m);
  ASSERT_EQ(rest.size(), 599u);
  EXPECT_EQ(rest[299], u'\u00ff');
  EXPECT_EQ(m.Position(), 600);
  m.SetPosition(0);
  EXPECT_EQ(CountLinesInStream(m), 2);
  EXPECT_EQ(m.Position(), 600);
  m.SetPosition(0);
  EXPECT_TRUE(FindInStream(m, 0xff));
  EXPECT_EQ(m.Position(), 301);
  EXPECT_FALSE(FindInStream(m, 0xff));
  EXPECT_FALSE(FindInStream(m, 'a'));  // at the end
  TMemoryStream tail;
  EXPECT_EQ(CountLinesInStream(Fill(tail, "a\nb")), 1);
}

TEST(StreamIoTest, ReadStreamUntil) {
  struct Case {
    std::string bytes;
    std::int64_t start;
    std::u16string_view text;
    std::size_t result_length;  // from the start
    int status;
    std::int64_t position;
  };
  const Case cases[] = {
      {std::string(254, '.') + "XYZW" + std::string(10, '.'), 0, u"yzw", 258, 0, 258},
      {"the end.", 0, u"END", 7, 0, 7},
      {"abcabc", 2, u"ab", 3, 0, 5},
      {std::string(1000, '.') + "end", 0, u"end", 1003, 0, 1003},
      {"abc", 0, u"x", 3, -1, 3},  // absent: everything read
      {"abc", 1, u"", 2, -1, 3},
      {"", 0, u"a", 0, -1, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes + " / " + Utf8(c.text));
    TMemoryStream m;
    Fill(m, c.bytes).SetPosition(c.start);
    int status = 7;
    const std::u16string got = ReadStreamUntil(m, c.text, status);
    const std::string expected = c.bytes.substr(static_cast<std::size_t>(c.start), c.result_length);
    EXPECT_EQ(got, std::u16string(expected.begin(), expected.end()));
    EXPECT_EQ(status, c.status);
    EXPECT_EQ(m.Position(), c.position);
  }
}

}  // namespace
}  // namespace Zyn_streams
