#include "zyn/stringl/stringl.h"

#include <gtest/gtest.h>

#include <string>

#include "zyn/platform/text.h"

namespace Zyn_stringl {
namespace {

using zyn::platform::ToUTF8;

TEST(CharTest, ClassesAreAsciiOnly) {
  for (char16_t c = 0; c < 0x300; ++c) {
    SCOPED_TRACE(static_cast<int>(c));
    const bool digit = c >= u'0' && c <= u'9';
    const bool letter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    const bool hex = digit || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    EXPECT_EQ(IsDigit(c), digit);
    EXPECT_EQ(IsLetter(c), letter);
    EXPECT_EQ(IsDigitLetter(c), digit || letter);
    EXPECT_EQ(IsHexChar(c), hex);
  }
  int umlauts = 0;
  for (char16_t c = 0; c < 0x300; ++c) umlauts += IsUmlaut(c) ? 1 : 0;
  EXPECT_EQ(umlauts, 7);
  EXPECT_TRUE(IsUmlaut(0xDF));
  EXPECT_FALSE(IsUmlaut(0xB5));
}

TEST(WordSepsTest, StartsWithItsTwentySixMembers) {
  int members = 0;
  for (char16_t c = 0; c < 256; ++c) members += WordSeps.Contains(c) ? 1 : 0;
  EXPECT_EQ(members, 26);
  for (char16_t c : std::u16string_view(u" \"#%'()*+,-./:;<=>[\\]{}"))
    EXPECT_TRUE(WordSeps.Contains(c));
  EXPECT_TRUE(WordSeps.Contains(0) && WordSeps.Contains(10) && WordSeps.Contains(13));
  EXPECT_FALSE(WordSeps.Contains(u'!') || WordSeps.Contains(9) || WordSeps.Contains(u'?'));
  CharSet s = WordSeps;
  s.Include(0x2000);  // above 255: never a member
  EXPECT_FALSE(s.Contains(0x2000));
  EXPECT_EQ(s, kDefaultWordSeps);
}

TEST(SearchTest, PositionsAndCounts) {
  struct Case {
    std::u16string_view sub, s;
    int pos_last, count_sensitive, count_folded;
  };
  const Case cases[] = {
      {u"aa", u"aaa", 1, 1, 1},    {u"aa", u"aaaa", 3, 2, 2},
      {u"", u"abc", 0, 0, 0},      {u"b", u"", 0, 0, 0},
      {u"Ab", u"abABab", 0, 0, 3}, {u"ab", u"xxabyyab", 7, 2, 2},
      {u"abc", u"ab", 0, 0, 0},    {u"\u00e4", u"\u00c4\u00e4", 2, 1, 1},  // no locale folding
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.sub) + " in " + ToUTF8(c.s));
    EXPECT_EQ(PosLast(c.sub, c.s), c.pos_last);
    EXPECT_EQ(CountStringInString(c.sub, c.s, true), c.count_sensitive);
    EXPECT_EQ(CountStringInString(c.sub, c.s, false), c.count_folded);
  }
  EXPECT_EQ(CountCharInString(u'a', u"aAbA", true), 1);
  EXPECT_EQ(CountCharInString(u'a', u"aAbA", false), 3);
  EXPECT_EQ(CountCharInString(u'[', u"[{", false), 1);  // '[' and '{' are no case pair
  EXPECT_EQ(FindFirstNonBlank(u"  \tx"), 3);
  EXPECT_EQ(FindFirstNonBlank(u"   "), 0);
  EXPECT_EQ(FindFirstNonBlank(u""), 0);
  EXPECT_EQ(FindFirstDigit(u"ab3c4"), 3);
  EXPECT_EQ(FindFirstDigit(u"abc"), 0);
  EXPECT_FALSE(TestAllChar(u"", u'x'));
  EXPECT_TRUE(TestAllChar(u"xxx", u'x'));
  EXPECT_FALSE(TestAllChar(u"xxX", u'x'));
}

TEST(StringContainsTest, ExpandsTokens) {
  struct Case {
    std::u16string_view s, set;
    bool contains, other_than;
  };
  const std::u16string control(1, char16_t{7});
  const std::u16string high(1, char16_t{0xE9});
  const Case cases[] = {
      {u"abc", u"//dig", false, true},
      {u"ab5", u"//dig", true, true},
      {u"123", u"//dig", true, false},
      {u"abc", u"//lc", true, false},
      {u"abC", u"//lc", true, true},
      {u"ABC", u"//uc//dig", true, false},
      {u"abc", u"//dig//uc", false, true},
      {u"a/b", u"/", true, true},
      {u"dig", u"//dig", false, true},  // the token is no member set of its letters
      {u"//", u"//dig", false, true},
      {u"/d", u"//d", true, false},  // an unknown token stands for its characters
      {u"g", u"//d//digig", true, false},
      {control, u"//31dwn", true, false},
      {high, u"//128up", true, false},
      {u"\u0100", u"//128up", false, true},  // 256 is no member of "//128up"
      {u"\u0100x", u"\u0100", true, true},   // a wide member stands for itself
      {u"\u0100", u"\u0100", true, false},
      {u"", u"", false, false},
      {u"x", u"", false, true},
      {u"xx", u"//lc//lc", true, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.s) + " / " + ToUTF8(c.set));
    EXPECT_EQ(StringContains(c.s, c.set), c.contains);
    EXPECT_EQ(StringContainsOtherThan(c.s, c.set), c.other_than);
  }
  for (char16_t c = 0; c < 256; ++c) {
    const std::u16string s(1, c);
    EXPECT_EQ(StringContains(s, u"//dig//uc"), IsDigit(c) || (c >= u'A' && c <= u'Z')) << int(c);
  }
}

TEST(EqualAnsiStringsTest, FoldsLocaleAndStopsAtNul) {
  EXPECT_TRUE(EqualAnsiStrings(u"\u00e4bc", u"\u00c4BC"));
  EXPECT_FALSE(EqualAnsiStrings(u"abc", u"abd"));
  EXPECT_TRUE(EqualAnsiStrings(std::u16string(u"ab\0x", 4), std::u16string(u"AB\0y", 4)));
  EXPECT_TRUE(EqualAnsiStrings(u"", u""));
}

TEST(StripTest, OnlyBlankCountsAsBlank) {
  struct Case {
    std::u16string_view in, both, leading, trailing;
  };
  const Case cases[] = {
      {u"", u"", u"", u""},
      {u"   ", u"", u" ", u" "},
      {u" a\t", u"a\t", u"a\t", u" a\t"},
      {u"  a b  ", u"a b", u"a b  ", u"  a b"},
      {u"x", u"x", u"x", u"x"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.in));
    EXPECT_EQ(StripLTBlanks(c.in), c.both);
    EXPECT_EQ(StripLeadingBlanks(c.in), c.leading);
    EXPECT_EQ(StripTrailingBlanks(c.in), c.trailing);
  }
}

TEST(StripTest, CharsAndEnsure) {
  struct Case {
    std::u16string_view in, leading, trailing, ensure_trailing, ensure_leading;
  };
  const Case cases[] = {
      {u"", u"", u"", u"", u""},
      {u"xxx", u"", u"x", u"xxx", u"xxx"},
      {u"xaxx", u"axx", u"xa", u"xaxx", u"xaxx"},
      {u"axa", u"axa", u"axa", u"axax", u"xaxa"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.in));
    EXPECT_EQ(StripLeadingChars(u'x', c.in), c.leading);
    EXPECT_EQ(StripTrailingChars(u'x', c.in), c.trailing);
    EXPECT_EQ(EnsureTrailingChar(u'x', c.in), c.ensure_trailing);
    EXPECT_EQ(EnsureLeadingChar(u'x', c.in), c.ensure_leading);
  }
  EXPECT_EQ(EnsureTrailingBkSlash(u""), u"");
  EXPECT_EQ(EnsureTrailingBkSlash(u"a"), u"a\\");
  EXPECT_EQ(EnsureTrailingBkSlash(u"a\\"), u"a\\");
}

TEST(ReplaceTest, StringsAndChars) {
  struct Case {
    std::u16string_view s, old_str, new_str;
    bool ignore_case;
    std::u16string_view want;
  };
  const Case cases[] = {
      {u"aba", u"a", u"aa", false, u"aabaa"},
      {u"aaaa", u"aa", u"a", false, u"aa"},
      {u"abc", u"", u"x", false, u"abc"},
      {u"aXbxc", u"x", u"-", false, u"aXb-c"},
      {u"aXbxc", u"x", u"-", true, u"a-b-c"},
      {u"Hello HELLO", u"hello", u"bye", true, u"bye bye"},
      {u"Hello", u"hello", u"bye", false, u"Hello"},
      {u"abab", u"ab", u"", false, u""},
      {u"", u"a", u"b", false, u""},
      {u"xAbx", u"ab", u"AB", true, u"xABx"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.s) + " " + ToUTF8(c.old_str) + "->" + ToUTF8(c.new_str));
    EXPECT_EQ(ReplaceStringInString(c.s, c.old_str, c.new_str, c.ignore_case), c.want);
  }
  EXPECT_EQ(ReplaceCharInString(u"a.b.c", u'.', u','), u"a,b,c");
  EXPECT_EQ(RemoveCharInString(u"a.b.c", u'.'), u"abc");
  EXPECT_EQ(RemoveMultiChars(u"a  b   c d", u' '), u"a b c d");
  EXPECT_EQ(RemoveMultiChars(u"xxaaxx", u'x'), u"xaax");
  const std::u16string controls{u'a', 0, 9, 31, 32, 127, 0x80, u'b'};
  EXPECT_EQ(RemoveControlChars(controls), (std::u16string{u'a', 32, 127, 0x80, u'b'}));
}

TEST(PadTest, WidthsAndAbbreviation) {
  struct Case {
    std::u16string_view s;
    int width;
    std::u16string_view left, right, center;
  };
  const Case cases[] = {
      {u"ab", 5, u"ab   ", u"   ab", u" ab  "},
      {u"abcdef", 3, u"abc", u"abc", u"abc"},
      {u"abc", 3, u"abc", u"abc", u"abc"},
      {u"abc", 0, u"", u"", u""},
      {u"", 2, u"  ", u"  ", u"  "},
      {u"a", 4, u"a   ", u"   a", u" a  "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.s) + " " + std::to_string(c.width));
    const auto w = static_cast<std::uint8_t>(c.width);
    EXPECT_EQ(LeftString(c.s, w), c.left);
    EXPECT_EQ(RightString(c.s, w), c.right);
    EXPECT_EQ(CenterString(c.s, w), c.center);
  }
  EXPECT_EQ(LeftString(u"", 255).size(), 255u);
  struct Abbrev {
    std::u16string_view s;
    int max_len;
    std::u16string_view want;
  };
  const Abbrev abbrevs[] = {{u"abcdef", 4, u"ab.."},
                            {u"abcdef", 6, u"abcdef"},
                            {u"abcdef", 3, u"a.."},
                            {u"abcdef", 2, u".."},
                            {u"abcdef", -1, u".."},
                            {u"", -1, u".."},
                            {u"", 0, u""}};
  for (const Abbrev& a : abbrevs) {
    SCOPED_TRACE(a.max_len);
    EXPECT_EQ(AbbrevString(a.s, a.max_len), a.want);
  }
  EXPECT_EQ(MultiChar(u'*', 0), u"*");
  EXPECT_EQ(MultiChar(u'*', -5), u"*");
  EXPECT_EQ(MultiChar(u'*', 3), u"***");
  EXPECT_EQ(MultiChar(u'*', 300).size(), 255u);
}

TEST(CaseTest, ChangeCapitalizeReverse) {
  EXPECT_EQ(ChangeCase(u"aB3\u00e4\u00c4\u00df"), u"Ab3\u00c4\u00e4\u00df");
  struct Case {
    std::u16string_view in, want;
  };
  const Case cases[] = {
      {u"hello wORLD 3rd-place", u"Hello WORLD 3rd-Place"},
      {u"\u00e4pfel apfel", u"\u00e4pfel Apfel"},  // a non-ASCII start uses up the flag
      {u"a1b c", u"A1b C"},
      {u"x\ty", u"X\tY"},
      {u"", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.in));
    EXPECT_EQ(CapitalizeString(c.in), c.want);
  }
  EXPECT_EQ(ReverseString(u"abc"), u"cba");
  EXPECT_EQ(ReverseString(u""), u"");
}

TEST(TransliterateTest, DiphthongsAndReductions) {
  struct Case {
    std::u16string_view in, want;
  };
  const Case cases[] = {
      {u"\u00c4pfel", u"Aepfel"},
      {u"\u00c4", u"AE"},
      {u"\u00c4 x", u"AE x"},
      {u"\u00d6\u00fc", u"OEue"},  // an umlaut behind a capital is not a to z
      {u"\u00dcb", u"Ueb"},
      {u"Stra\u00dfe", u"Strasse"},
      {u"\u00b5m", u"um"},
      {u"\u00e4\u00f6\u00fc", u"aeoeue"},
      {u"\u00c4B", u"AEB"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUTF8(c.in));
    EXPECT_EQ(ExpandDiphthongs(c.in), c.want);
  }
  EXPECT_EQ(ReduceStringToAZ09(u"a-B 9\u00e4"), u"a_B_9_");
  std::u16string all;
  for (char16_t c = 32; c < 128; ++c) all.push_back(c);
  const std::u16string reduced = ReduceStringToFN83CompliantChars(all);
  EXPECT_EQ(reduced.size(), all.size());
  EXPECT_EQ(std::count(reduced.begin(), reduced.end(), u'_') - 1, 96 - 79);
  EXPECT_EQ(ReduceStringToFN83CompliantChars(u"a b*c\u00e4~"), u"a_b_c_~");
}

}  // namespace
}  // namespace Zyn_stringl
