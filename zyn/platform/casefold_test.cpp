#include "zyn/platform/casefold.h"

#include <gtest/gtest.h>
#include <locale.h>
#include <wctype.h>

#include "testing/zyn_testing.h"

namespace zyn::platform {
namespace {

TEST(CaseFoldTest, AsciiAndLocaleFolding) {
  struct Case {
    std::u16string_view in, ascii_upper, ascii_lower, locale_upper, locale_lower;
  };
  const Case cases[] = {
      {u"", u"", u"", u"", u""},
      {u"aZ09_", u"AZ09_", u"az09_", u"AZ09_", u"az09_"},
      {u"J\u00e4n", u"J\u00e4N", u"j\u00e4n", u"J\u00c4N", u"j\u00e4n"},
      {u"\u00ff\u00df", u"\u00ff\u00df", u"\u00ff\u00df", u"\u0178\u00df", u"\u00ff\u00df"},
      {u"\u0416\u0436", u"\u0416\u0436", u"\u0416\u0436", u"\u0416\u0416", u"\u0436\u0436"},
      {u"\u03a3\u03c3\u03c2", u"\u03a3\u03c3\u03c2", u"\u03a3\u03c3\u03c2", u"\u03a3\u03a3\u03a3",
       u"\u03c3\u03c3\u03c2"},
      {u"\xD800\xDC00", u"\xD800\xDC00", u"\xD800\xDC00", u"\xD800\xDC00", u"\xD800\xDC00"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Utf8(c.in));
    EXPECT_EQ(UpperCase(c.in), c.ascii_upper);
    EXPECT_EQ(LowerCase(c.in), c.ascii_lower);
    EXPECT_EQ(AnsiUpperCase(c.in), c.locale_upper);
    EXPECT_EQ(AnsiLowerCase(c.in), c.locale_lower);
  }
}

TEST(CaseFoldTest, AsciiFoldingTouchesOnlyLetters) {
  for (int c = 0; c < 0x10000; ++c) {
    const auto ch = static_cast<char16_t>(c);
    const bool lower = c >= 'a' && c <= 'z';
    const bool upper = c >= 'A' && c <= 'Z';
    EXPECT_EQ(UpCase(ch), lower ? ch - 32 : ch);
    EXPECT_EQ(LowCase(ch), upper ? ch + 32 : ch);
  }
}

TEST(CaseFoldTest, CaseInsensitiveComparison) {
  struct Case {
    std::u16string_view a, b;
    int sign;
  };
  const Case cases[] = {
      {u"", u"", 0},        {u"abc", u"ABC", 0}, {u"\u00e4", u"\u00c4", 0},
      {u"abc", u"abd", -1}, {u"abd", u"ABC", 1}, {u"ab", u"abc", -1},
      {u"abc", u"ab", 1},   {u"a", u"_", -1},  // 'A' (0x41) sorts before '_' (0x5F)
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Utf8(c.a) + " vs " + testing::Utf8(c.b));
    const int r = AnsiStrIComp(c.a, c.b);
    EXPECT_EQ((r > 0) - (r < 0), c.sign);
  }
  EXPECT_EQ(AnsiStrLIComp(u"abcX", u"ABCy", 3), 0);
  EXPECT_LT(AnsiStrLIComp(u"abcX", u"ABCy", 4), 0);
  EXPECT_EQ(AnsiStrLIComp(u"ab", u"AB", 10), 0);
}

// Locale folding is Unicode's simple one-to-one mapping, which is also what
// the C library's towupper/towlower give in the C.UTF-8 locale.
TEST(CaseFoldTest, LocaleFoldingAgreesWithTheCLibrary) {
  const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
  if (utf8 == locale_t{}) GTEST_SKIP() << "no C.UTF-8 locale on this machine";
  int mismatches = 0;
  for (wint_t c = 0; c < 0x10000; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    const auto ch = static_cast<char16_t>(c);
    const auto up = static_cast<wint_t>(towupper_l(c, utf8));
    const auto low = static_cast<wint_t>(towlower_l(c, utf8));
    // A mapping out of the BMP can't be one code unit; such characters stay.
    const char16_t want_up = up < 0x10000 ? static_cast<char16_t>(up) : ch;
    const char16_t want_low = low < 0x10000 ? static_cast<char16_t>(low) : ch;
    if (AnsiUpCaseChar(ch) != want_up || AnsiLowCaseChar(ch) != want_low) {
      ADD_FAILURE() << std::hex << "U+" << c << ": upper " << +AnsiUpCaseChar(ch) << " vs "
                    << +want_up << ", lower " << +AnsiLowCaseChar(ch) << " vs " << +want_low;
      if (++mismatches == 20) break;
    }
  }
  freelocale(utf8);
  EXPECT_EQ(AnsiLowCaseChar(u'\u0130'), u'\u0069');
  EXPECT_EQ(AnsiUpCaseChar(u'\u1FB3'), u'\u1FBC');
}

}  // namespace
}  // namespace zyn::platform
