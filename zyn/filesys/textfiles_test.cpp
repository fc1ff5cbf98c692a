#include "zyn/filesys/textfiles.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/cpu_features.h"

namespace Zyn_filesys {
namespace {

using zyn::platform::EInOutError;
using zyn::platform::FromUTF8;
using zyn::testing::ReadFileBytes;
using zyn::testing::TempDir;
using zyn::testing::WriteFileBytes;

std::u16string Name(const std::filesystem::path& p) { return FromUTF8(p.string()); }

std::vector<double> feedback;  // the states CountFeedback was given
void CountFeedback(zyn::platform::TObject* sender, double state, double percent) {
  EXPECT_EQ(sender, nullptr);
  EXPECT_EQ(percent, 0.0);
  feedback.push_back(state);
}

TEST(TextFilesTest, CheckTextFileTypeByFirstBytes) {
  TempDir dir;
  using std::string_literals::operator""s;
  // clang-format off
  const std::pair<std::string, TTextfileType> cases[] = {
      {"", tftUnknown}, {"plain", tftUnknown}, {"\0\0"s, tftUnknown}, {"\xFF\xFE", tftUnicode_le},
      {"\xFF\xFE\0"s, tftUnicode4_le},  // the missing byte counts as 0
      {"\xFF\xFE\0x"s, tftUnicode_le}, {"\0\0\xFE\xFF"s, tftUnicode4_be},
      {"\xFE\xFF\x61\x62", tftUnicode_be}, {"\xEF\xBB\xBFtext", tftUTF8}, {"{\\rtf1", tftRTF}};
  // clang-format on
  for (const auto& [bytes, type] : cases) {
    SCOPED_TRACE(bytes);
    WriteFileBytes(dir / "f", bytes);
    EXPECT_EQ(int{CheckTextFileType(Name(dir / "f"))}, int{type});
  }
  try {
    CheckTextFileType(Name(dir / "missing.txt"));
    FAIL();
  } catch (const EInOutError& e) {
    EXPECT_NE(std::string(e.what()).find("missing.txt"), std::string::npos);
  }
}

TEST(TextFilesTest, EnsureCRLFAndAppend) {
  TempDir dir;
  // clang-format off
  const std::pair<std::string, std::string> cases[] = {
      {"a\rb", "a\r\nb"}, {"a\r", "a\r\n"}, {"\r\rx", "\r\n\rx"}, {"a\nb\r\n", "a\nb\r\n"},
      {"\xC3\xA4\r\xFF", "\xC3\xA4\r\n\xFF"}};
  // clang-format on
  for (const auto& [in, out] : cases) {
    WriteFileBytes(dir / "in", in);
    EnsureCRLFInFile(Name(dir / "in"), Name(dir / "out"));
    EXPECT_EQ(ReadFileBytes(dir / "out"), out) << in;
  }
  AppendToTextFile(Name(dir / "new.txt"), u"first");
  zyn::platform::TStringList list;
  list.Add(u"ä");
  list.Add(u"");
  AppendToTextFile(Name(dir / "new.txt"), &list);
  EXPECT_EQ(ReadFileBytes(dir / "new.txt"), "first\r\n\xC3\xA4\r\n\r\n");
  EXPECT_THROW(AppendToTextFile(Name(dir / "no" / "dir.txt"), u"x"), EInOutError);
}

TEST(TextFilesTest, CountsLinesWithFeedbackAndLastLines) {
  TempDir dir;
  auto lines = [](int n) {
    std::string s;
    for (int i = 1; i <= n; ++i) s += std::to_string(i) + "\r\n";
    return s;
  };
  struct Case {
    std::string text;
    int lines;
    std::vector<double> feedback;
    TStrArray last2;
  };
  // clang-format off
  const Case cases[] = {
      {"", 0, {}, {u"", u""}}, {"a", 1, {}, {u"", u"a"}}, {"a\r\nb\r\nc", 3, {}, {u"b", u"c"}},
      {"\r\r\n", 2, {}, {u"", u""}}, {"a\n\nb\r", 3, {}, {u"", u"b"}},
      {lines(999), 999, {}, {u"998", u"999"}}, {lines(1000), 1000, {1000}, {u"999", u"1000"}},
      {lines(2500) + "x", 2501, {1000, 2000}, {u"2500", u"x"}}};
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 20));
    WriteFileBytes(dir / "t", c.text);
    feedback.clear();
    EXPECT_EQ(CountLinesInTextFile(Name(dir / "t"), CountFeedback), c.lines);
    EXPECT_EQ(feedback, c.feedback);
    int num = -1;
    EXPECT_EQ(ReadLastNLinesOfTextFile(Name(dir / "t"), 2, num), c.last2);
    EXPECT_EQ(num, c.lines);
  }
  // The open forms leave the file at its start.
  WriteFileBytes(dir / "t", "a\r\nb\r\n");
  Textfile tf;
  tf.Assign(Name(dir / "t"));
  tf.Reset();
  tf.ReadLn();
  EXPECT_EQ(CountLinesInTextFile(tf, nullptr), 2);
  EXPECT_EQ(tf.ReadLn(), u"a");
  int num = 0;
  EXPECT_EQ(ReadLastNLinesOfTextFile(tf, 1, num), TStrArray{u"b"});
  EXPECT_EQ(tf.ReadLn(), u"a");
}

// Counting and skipping scan bytes without decoding them; they must find the
// lines ReadLn finds, across buffer boundaries and multi-byte characters, on
// the vector path this processor takes and on the portable one.
TEST(TextFilesTest, SkippingAgreesWithReadingLineByLine) {
  TempDir dir;
  std::mt19937 rng(11);
  const char* pieces[] = {"\r", "\n", "\r\n", "ab", "\xC3\xA4", "\xF0\x9F\x98\x80", "\xFF", "x"};
  for (int round = 0; round < 24; ++round) {
    zyn::platform::AllowCpuExtensions(round % 2 == 0);
    std::string text;
    const std::size_t size = round < 8 ? rng() % 300 : 65536 * 5 + rng() % 5000;
    while (text.size() < size) {
      const int pick = static_cast<int>(rng() % 8);
      text += pick < 3 && rng() % 4 != 0 ? "x" : pieces[pick];
    }
    WriteFileBytes(dir / "r", text);
    Textfile tf;
    tf.Assign(Name(dir / "r"));
    tf.Reset();
    std::vector<std::u16string> expected;
    while (!tf.Eof()) expected.push_back(tf.ReadLn());
    const int n = 1 + static_cast<int>(rng() % 7);
    int num = 0;
    const TStrArray last = ReadLastNLinesOfTextFile(tf, n, num);
    ASSERT_EQ(num, static_cast<int>(expected.size()));
    TStrArray want;
    for (int line = num - n; line < num; ++line)
      want.push_back(line < 0 ? u"" : expected[static_cast<std::size_t>(line)]);
    EXPECT_EQ(last, want);
    // Skipping part of the way, then reading, meets the same line.
    const auto k = static_cast<std::int64_t>(rng() % (expected.size() + 1));
    EXPECT_EQ(tf.SkipLines(k), k);
    if (k < static_cast<std::int64_t>(expected.size())) {
      EXPECT_EQ(tf.ReadLn(), expected[static_cast<std::size_t>(k)]);
    }
  }
  zyn::platform::AllowCpuExtensions(true);
}

TEST(TextFilesTest, WordsAndSearches) {
  TempDir dir;
  WriteFileBytes(dir / "w", "  ab\tcd\r\n\r\nef");
  Textfile tf;
  tf.Assign(Name(dir / "w"));
  tf.Reset();
  for (std::u16string_view w : {u"ab", u"cd", u"ef", u""}) EXPECT_EQ(ReadNextWordInTextFile(tf), w);

  WriteFileBytes(dir / "s", "abc\r\nxdef\r\nÄrger DEF");
  const std::u16string s = Name(dir / "s");
  struct Case {
    std::u16string_view search;
    bool ignore;
    int limit, detected;
  };
  const Case cases[] = {
      {u"def", false, 100, 5},  {u"def", false, 5, 5},   {u"def", false, 4, 0},
      {u"", false, 100, 0},     {u"DEF", true, 100, 5},  {u"DEF", false, 100, 14},
      {u"ärger", true, 100, 0}, {u"zzz", false, 100, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(zyn::testing::Utf8(c.search));
    EXPECT_EQ(DetectStringInFile(s, c.search, c.ignore, c.limit), c.detected);
  }
  std::u16string line = u"stale";
  EXPECT_EQ(FindFirstMatchInTextFile(s, u"ärger", true, line), 1);
  EXPECT_EQ(line, u"Ärger DEF");
  EXPECT_EQ(FindFirstMatchInTextFile(s, u"ärger", false, line), 0);
  EXPECT_EQ(line, u"");
  EXPECT_EQ(FindFirstMatchInTextFile(s, u"DEF", false, line), 7);
  EXPECT_THROW(DetectStringInFile(Name(dir / "none"), u"x", false, 9), EInOutError);
}

TEST(TextFilesTest, GetFileSizeTakesMasksAndNeverRaises) {
  TempDir dir;
  WriteFileBytes(dir / "five.txt", "12345");
  EXPECT_EQ(GetFileSize(Name(dir / "five.txt")), 5);
  EXPECT_EQ(GetFileSize(Name(dir / "*.txt")), 5);
  EXPECT_EQ(GetFileSize(Name(dir / "missing")), -1);
  // Sizes keep their low 32 bits, as a signed value.
  std::filesystem::resize_file(dir / "five.txt", (std::uintmax_t{1} << 32) + 0xFFFFFFFEu);
  EXPECT_EQ(GetFileSize(Name(dir / "five.txt")), -2);
}

}  // namespace
}  // namespace Zyn_filesys
