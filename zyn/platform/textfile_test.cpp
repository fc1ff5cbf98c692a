#include "zyn/platform/textfile.h"

#include <gtest/gtest.h>

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

TEST(TextfileTest, WritesCrLfAndUtf8) {
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
}

TEST(TextfileTest, ReadLnAcceptsEveryLineEnd) {
  struct Case {
    std::string_view bytes;
    std::vector<std::u16string> lines;
  };
  const Case cases[] = {
      {"", {}},
      {"a", {u"a"}},
      {"a\r\n", {u"a"}},
      {"a\r\nb\nc\rd", {u"a", u"b", u"c", u"d"}},
      {"\r\n\r\n", {u"", u""}},
      {"a\n\rb", {u"a", u"", u"b"}},
      {"a\r\r\nb", {u"a", u"", u"b"}},
  };
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.bytes));
    WriteFileBytes(dir / "t", c.bytes);
    EXPECT_EQ(Lines(dir / "t"), c.lines);
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

TEST(TextfileTest, EightBitCodePages) {
  TempDir dir;
  WriteFileBytes(dir / "t", "\xe4\x80\r\n");
  EXPECT_EQ(Lines(dir / "t", kCpWindows1252), std::vector<std::u16string>{u"\u00e4\u20ac"});
  EXPECT_EQ(Lines(dir / "t", kCpLatin1), std::vector<std::u16string>{u"\u00e4\u0080"});
  Textfile f;
  f.Assign(Name(dir / "t"), kCpWindows1252);
  f.Rewrite();
  f.WriteString(u"\u00e4\u20ac\u4e00");
  f.Close();
  EXPECT_EQ(ReadFileBytes(dir / "t"), "\xe4\x80?");
  EXPECT_THROW(f.Assign(u"x", 437), EInOutError);
  EXPECT_EQ(IOResult(), kIoUnsupportedCodePage);
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

TEST(TextfileTest, ReadIntegerRaisesOnOtherText) {
  TempDir dir;
  for (std::string_view bad : {"x", "12x", "-", "$", "2147483648", "1.5"}) {
    SCOPED_TRACE(std::string(bad));
    WriteFileBytes(dir / "t", bad);
    Textfile f;
    f.Assign(Name(dir / "t"));
    f.Reset();
    try {
      f.ReadInteger();
      ADD_FAILURE() << "no exception";
    } catch (const EInOutError& e) {
      EXPECT_EQ(e.ErrorCode(), kIoInvalidNumericInput);
    }
    EXPECT_EQ(IOResult(), kIoInvalidNumericInput);
    EXPECT_EQ(IOResult(), 0);  // cleared by the first call
  }
}

TEST(TextfileTest, FailuresRaiseWithTheirStatus) {
  TempDir dir;
  WriteFileBytes(dir / "t", "a");
  struct Case {
    const char* what;
    std::function<void(Textfile&)> run;
    int status;
  };
  const std::u16string missing = Name(dir / "missing");
  const std::u16string nodir = Name(dir / "missing" / "x");
  const std::u16string exists = Name(dir / "t");
  const Case cases[] = {
      {"reset missing",
       [&](Textfile& f) {
         f.Assign(missing);
         f.Reset();
       },
       kIoFileNotFound},
      {"append missing",
       [&](Textfile& f) {
         f.Assign(missing);
         f.Append();
       },
       kIoFileNotFound},
      {"rewrite in missing dir",
       [&](Textfile& f) {
         f.Assign(nodir);
         f.Rewrite();
       },
       kIoFileNotFound},
      {"reset a directory",
       [&](Textfile& f) {
         f.Assign(Name(dir.path()));
         f.Reset();
       },
       kIoAccessDenied},
      {"not assigned", [&](Textfile& f) { f.Reset(); }, kIoFileNotAssigned},
      {"close closed",
       [&](Textfile& f) {
         f.Assign(exists);
         f.Close();
       },
       kIoFileNotOpen},
      {"eof closed",
       [&](Textfile& f) {
         f.Assign(exists);
         f.Eof();
       },
       kIoFileNotOpen},
      {"write to input",
       [&](Textfile& f) {
         f.Assign(exists);
         f.Reset();
         f.WriteLn();
       },
       kIoNotOpenForOutput},
      {"read from output",
       [&](Textfile& f) {
         f.Assign(Name(dir / "o"));
         f.Rewrite();
         f.ReadLn();
       },
       kIoNotOpenForInput},
      {"read behind end",
       [&](Textfile& f) {
         f.Assign(exists);
         f.Reset();
         f.ReadChar();
         f.ReadChar();
       },
       kIoReadError},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Textfile f;
    try {
      c.run(f);
      ADD_FAILURE() << "no exception";
    } catch (const EInOutError& e) {
      EXPECT_EQ(e.ErrorCode(), c.status);
    }
    EXPECT_EQ(IOResult(), c.status);
  }
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

TEST(TextfileTest, DestructorWritesPendingOutput) {
  TempDir dir;
  {
    Textfile f;
    f.Assign(Name(dir / "t"));
    f.Rewrite();
    f.WriteString(u"kept");
  }
  EXPECT_EQ(ReadFileBytes(dir / "t"), "kept");
}

}  // namespace
}  // namespace zyn::platform
