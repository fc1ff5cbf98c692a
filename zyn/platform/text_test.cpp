#include "zyn/platform/text.h"

#include <gtest/gtest.h>

#include "testing/zyn_testing.h"

namespace zyn::platform {
namespace {

TEST(TextTest, Utf8RoundTripsValidText) {
  struct Case {
    std::u16string_view utf16;
    std::string_view utf8;
  };
  const Case cases[] = {
      {u"", ""},
      {u"abc", "abc"},
      {u"J\u00e4n", "J\xc3\xa4n"},
      {u"\u20ac", "\xe2\x82\xac"},
      {u"\U0001F600", "\xf0\x9f\x98\x80"},  // a surrogate pair joins into one code point
      {u"\u07ff\u0800\uffff", "\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.utf8));
    EXPECT_EQ(ToUTF8(c.utf16), c.utf8);
    EXPECT_EQ(FromUTF8(c.utf8), c.utf16);
  }
}

TEST(TextTest, InvalidUtf8BytesSurviveTheRoundTrip) {
  const std::string_view cases[] = {
      "\x80",              // lone continuation byte
      "\xc3",              // truncated sequence
      "\xc0\xaf",          // overlong slash
      "\xed\xa0\x80",      // encoded surrogate
      "\xf4\x90\x80\x80",  // above U+10FFFF
      "a\xff"
      "b\xfe",
  };
  for (std::string_view bytes : cases) {
    const std::u16string wide = FromUTF8(bytes);
    for (char16_t c : wide) {
      if (c >= 0x80) {
        EXPECT_TRUE(c >= 0xDC80 && c <= 0xDCFF) << int(c);
      }
    }
    EXPECT_EQ(ToUTF8(wide), bytes);
  }
  std::string every_byte;
  for (int b = 0; b < 256; ++b) every_byte.push_back(static_cast<char>(b));
  EXPECT_EQ(ToUTF8(FromUTF8(every_byte)), every_byte);
}

TEST(TextTest, LoneSurrogatesOutsideTheEscapeRangeBecomeReplacement) {
  EXPECT_EQ(ToUTF8(u"\xD800"), "\xef\xbf\xbd");
  EXPECT_EQ(ToUTF8(std::u16string{u'\xDFFF', u'a'}),
            "\xef\xbf\xbd"
            "a");
}

TEST(TextTest, EveryAnsiByteSurvivesUtf16) {
  for (int b = 0; b < 256; ++b) {
    const auto byte = static_cast<unsigned char>(b);
    EXPECT_EQ(AnsiFromChar(CharFromAnsi(byte)), byte) << b;
  }
  EXPECT_EQ(CharFromAnsi(0x80), u'\u20ac');
  EXPECT_EQ(CharFromAnsi(0x81), u'\u0081');
  EXPECT_EQ(CharFromAnsi(0x9F), u'\u0178');
  EXPECT_EQ(CharFromAnsi(0xE4), u'\u00e4');
  EXPECT_EQ(AnsiFromChar(u'\u0416'), '?');  // Cyrillic has no byte here
  EXPECT_EQ(StringToAnsi(u"\u20acx\u0416"), "\x80x?");
  EXPECT_EQ(AnsiToString("\x80x\xff"), u"\u20acx\u00ff");
}

TEST(TextTest, ShortStringCutsToItsCapacity) {
  constexpr BasicShortString<4> juin(u"juin");
  static_assert(juin.size() == 4);
  EXPECT_EQ(juin.str(), u"juin");
  const BasicShortString<3> cut(std::u16string_view(u"abcdef"));
  EXPECT_EQ(cut.str(), u"abc");
  EXPECT_EQ(BasicShortString<4>(u"f\u00e9v").bytes(), "f\xe9v");
  EXPECT_EQ(ShortString(std::u16string(300, u'x')).size(), 255u);
  EXPECT_EQ(BasicShortString<2>::FromBytes("\x81\x82\x83").bytes(), "\x81\x82");
  EXPECT_EQ(BasicShortString<5>(u"ab"), BasicShortString<5>::FromBytes("ab"));
  EXPECT_TRUE(BasicShortString<5>().empty());
}

}  // namespace
}  // namespace zyn::platform
