#include "zyn/platform/textfile.h"

#include <gtest/gtest.h>

#include <tuple>

#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

using zyn::testing::ReadFileBytes;
using zyn::testing::TempDir;
using zyn::testing::Utf8;
using zyn::testing::WriteFileBytes;

std::u16string Name(const std::filesystem::path& p) { return FromUTF8(p.string()); }

// Every line of a file read by ReadLn.
std::vector<std::u16string> Lines(const std::filesystem::path& path, int code_page = 0) {
  Textfile f;
  f.Assign(Name(path), code_page);
  f.Reset();
  std::vector<std::u16string> lines;
  while (!f.Eof()) lines.push_back(f.ReadLn());
  f.Close();
  return lines;
}

TEST(TextfileTest, WritesCrLfInUtf8OrAnEightBitCodePage) {
  TempDir dir;
  Textfile f;
  f.Assign(Name(dir / "t"));
  f.Rewrite();
  f.WriteString(u"J\u00e4n ");
  f.WriteInteger(-42);
  f.WriteChar(u'!');
  f.WriteLn();
  f.WriteLn(u"\U0001F600");
  f.WriteChar(u'\xD83D');  // a pair written in two pieces still joins
  f.WriteChar(u'\xDE00');
  f.Close();
  EXPECT_EQ(ReadFileBytes(dir / "t"), "J\xc3\xa4n -42!\r\n\xf0\x9f\x98\x80\r\n\xf0\x9f\x98\x80");
  WriteFileBytes(dir / "t", "\xe4\x80\r\n");
  EXPECT_EQ(Lines(dir / "t", kCpWindows1252), std::vector<std::u16string>{u"\u00e4\u20ac"});
  EXPECT_EQ(Lines(dir / "t", kCpLatin1), std::vector<std::u16string>{u"\u00e4\u0080"});
  f.Assign(Name(dir / "t"), kCpWindows1252);
  f.Rewrite();
  f.WriteString(u"\u00e4\u20ac\u4e00");
  f.Close();
  EXPECT_EQ(ReadFileBytes(dir / "t"), "\xe4\x80?");
  EXPECT_THROW(f.Assign(u"x", 437), EInOutError);
  EXPECT_EQ(IOResult(), kIoUnsupportedCodePage);
}

TEST(TextfileTest, ReadLnAcceptsEveryLineEnd) {
  // clang-format off
  const std::tuple<std::string_view, std::vector<std::u16string>> cases[] = {
      {"", {}}, {"a", {u"a"}}, {"a\r\n", {u"a"}}, {"a\r\nb\nc\rd", {u"a", u"b", u"c", u"d"}},
      {"\r\n\r\n", {u"", u""}}, {"a\n\rb", {u"a", u"", u"b"}}, {"a\r\r\nb", {u"a", u"", u"b"}},
  };
  // clang-format on
  TempDir dir;
  for (const auto& [bytes, lines] : cases) {
    SCOPED_TRACE(std::string(bytes));
    WriteFileBytes(dir / "t", bytes);
    EXPECT_EQ(Lines(dir / "t"), lines);
  }
}

TEST(TextfileTest, InvalidUtf8SurvivesAReadWriteRoundTrip) {
  TempDir dir;
  // Long enough that sequences straddle the reader's chunks at every offset.
  std::string bytes;
  const std::string_view pieces[] = {
      "\xe2\x82\xac", "\xf0\x9f\x98\x80", "\xff", "\xc3", "\xed\xa0\x80", "a", "\xc3\xa4"};
  for (int i = 0; i < 70000; ++i) bytes += pieces[static_cast<std::size_t>(i * 5 + i / 7) % 7];
  WriteFileBytes(dir / "in", bytes);
  Textfile in, out;
  in.Assign(Name(dir / "in"));
  in.Reset();
  out.Assign(Name(dir / "out"));
  out.Rewrite();
  std::u16string all;
  while (!in.Eof()) {
    const char16_t c = in.ReadChar();
    all.push_back(c);
    out.WriteChar(c);
  }
  out.Close();
  EXPECT_EQ(all, FromUTF8(bytes));
  EXPECT_EQ(ReadFileBytes(dir / "out"), bytes);
}

TEST(TextfileTest, ReadIntegerSkipsWhiteSpaceAndLineEnds) {
  TempDir dir;
  WriteFileBytes(dir / "t", " 12\r\n\t-7 +3 $ff 0x10 -2147483648\r\nrest");
  Textfile f;
  f.Assign(Name(dir / "t"));
  f.Reset();
  for (int want : {12, -7, 3, 255, 16, -2147483647 - 1}) EXPECT_EQ(f.ReadInteger(), want);
  EXPECT_EQ(f.ReadLn(), u"");  // the number leaves its line end unread
  EXPECT_EQ(f.ReadLn(), u"rest");
  EXPECT_EQ(f.ReadInteger(), 0);  // at the end: 0, no error
}

// Runs `script` on a text file: R Reset, W Rewrite, A Append, C Close, E Eof,
// l WriteLn, r ReadLn, c ReadChar, i ReadInteger.
// clang-format off
void RunScript(Textfile& f, std::string_view script) {
  for (char op : script) {
    switch (op) {
      case 'R': f.Reset(); break;
      case 'W': f.Rewrite(); break;
      case 'A': f.Append(); break;
      case 'C': f.Close(); break;
      case 'E': f.Eof(); break;
      case 'l': f.WriteLn(); break;
      case 'r': f.ReadLn(); break;
      case 'c': f.ReadChar(); break;
      case 'i': f.ReadInteger(); break;
    }
  }
}
// clang-format on

// Runs `script`, which must fail with `status`, raised and left for IOResult.
void ExpectStatus(Textfile& f, std::string_view script, int status) {
  try {
    RunScript(f, script);
    ADD_FAILURE() << "no exception";
  } catch (const EInOutError& e) {
    EXPECT_EQ(e.ErrorCode(), status);
  }
  EXPECT_EQ(IOResult(), status);
  EXPECT_EQ(IOResult(), 0);  // cleared by the first call
}

TEST(TextfileTest, FailuresRaiseWithTheirStatus) {
  struct Case {
    const char* file;  // its content, or nullptr for a missing file
    const char* name;  // below the scratch directory; "" for the directory itself
    std::string_view script;
    int status;
  };
  // clang-format off
  const Case cases[] = {
      {nullptr, "missing", "R", kIoFileNotFound}, {nullptr, "missing", "A", kIoFileNotFound},
      {nullptr, "missing/x", "W", kIoFileNotFound}, {nullptr, "", "R", kIoAccessDenied},
      {"a", "t", "C", kIoFileNotOpen}, {"a", "t", "E", kIoFileNotOpen},
      {"a", "t", "Rl", kIoNotOpenForOutput}, {"a", "t", "Wr", kIoNotOpenForInput},
      {"a", "t", "Rcc", kIoReadError}, {"x", "t", "Ri", kIoInvalidNumericInput},
      {"12x", "t", "Ri", kIoInvalidNumericInput}, {"-", "t", "Ri", kIoInvalidNumericInput},
      {"$", "t", "Ri", kIoInvalidNumericInput}, {"2147483648", "t", "Ri", kIoInvalidNumericInput},
  };
  // clang-format on
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.name << " " << c.script);
    if (c.file != nullptr) WriteFileBytes(dir / c.name, c.file);
    Textfile f;
    f.Assign(Name(*c.name ? dir / c.name : dir.path()));
    ExpectStatus(f, c.script, c.status);
  }
  // A NUL would cut the name short and reach another file: refused.
  WriteFileBytes(dir / "a", "x");
  for (const char open : {'R', 'W', 'A'}) {
    SCOPED_TRACE(open);
    Textfile f;
    f.Assign(Name(dir / "a") + std::u16string(u"\0b", 2));
    ExpectStatus(f, std::string(1, open), kIoInvalidFileName);
  }
  EXPECT_EQ(ReadFileBytes(dir / "a"), "x");
  Textfile unassigned;
  ExpectStatus(unassigned, "R", kIoFileNotAssigned);
}

TEST(TextfileTest, AppendResetAndRewind) {
  TempDir dir;
  WriteFileBytes(dir / "t", "one\r\n");
  Textfile f;
  f.Assign(Name(dir / "t"));
  f.Append();
  f.WriteLn(u"two");
  f.Flush();
  EXPECT_EQ(ReadFileBytes(dir / "t"), "one\r\ntwo\r\n");
  f.Reset();  // closes the output and opens for reading
  EXPECT_EQ(f.ReadLn(), u"one");
  f.Reset();  // rewinds
  EXPECT_EQ(f.ReadLn(), u"one");
  EXPECT_EQ(f.ReadLn(), u"two");
  EXPECT_TRUE(f.Eof());
  EXPECT_EQ(f.ReadLn(), u"");
  f.Rewrite();
  f.Close();
  EXPECT_EQ(ReadFileBytes(dir / "t"), "");
}

}  // namespace
}  // namespace zyn::platform
