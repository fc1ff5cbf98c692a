#include "zyn/stringl/stringl.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <tuple>
#include <utility>

#include "zyn/platform/text.h"

namespace Zyn_stringl {
namespace {

using zyn::platform::ToUTF8;
using SV = std::u16string_view;
using Rows = std::initializer_list<std::pair<std::u16string_view, std::u16string_view>>;

// Checks f(input) == wanted for each row of `rows`.
template <typename F>
void ExpectRows(F f, Rows rows) {
  for (const auto& [in, want] : rows) {
    SCOPED_TRACE(ToUTF8(in));
    EXPECT_EQ(f(in), want);
  }
}

TEST(CharTest, ClassesAndWordSeps) {
  EXPECT_FALSE(IsLetter(0xE4) || IsDigitLetter(0xE4) || IsLetter(u'[') || IsLetter(u'@'));
  EXPECT_TRUE(IsHexChar(u'F') && IsHexChar(u'a') && !IsHexChar(u'g') && !IsHexChar(u'G'));
  EXPECT_TRUE(IsUmlaut(0xDF) && IsUmlaut(0xC4) && !IsUmlaut(0xB5) && !IsUmlaut(0xE9));
  const std::u16string_view seps(u"\0\n\r \"#%'()*+,-./:;<=>[\\]{}", 26);
  for (char16_t c = 0; c < 256; ++c) {
    EXPECT_EQ(WordSeps.Contains(c), seps.find(c) != seps.npos) << int(c);
  }
  CharSet s = WordSeps;
  s.Include(0x2000);  // above 255: never a member
  EXPECT_FALSE(s.Contains(0x2000));
  EXPECT_EQ(s, kDefaultWordSeps);
}

TEST(SearchTest, PositionsAndCounts) {
  const std::tuple<SV, SV, int, int, int> cases[] = {
      {u"aa", u"aaa", 1, 1, 1}, {u"aa", u"aaaa", 3, 2, 2},
      {u"", u"abc", 0, 0, 0},   {u"Ab", u"abABab", 0, 0, 3},
      {u"abc", u"ab", 0, 0, 0}, {u"\u00e4", u"\u00c4\u00e4", 2, 1, 1}};
  for (const auto& [sub, s, pos_last, count_sensitive, count_folded] : cases) {
    SCOPED_TRACE(ToUTF8(sub) + " in " + ToUTF8(s));
    EXPECT_EQ(PosLast(sub, s), pos_last);
    EXPECT_EQ(CountStringInString(sub, s, true), count_sensitive);
    EXPECT_EQ(CountStringInString(sub, s, false), count_folded);
  }
  EXPECT_EQ(CountCharInString(u'a', u"aAbA", false), 3);
  EXPECT_EQ(CountCharInString(u'[', u"[{", false), 1);  // '[' and '{' are no case pair
  EXPECT_EQ(FindFirstNonBlank(u"  \tx"), 3);
  EXPECT_EQ(FindFirstNonBlank(u"   "), 0);
  EXPECT_EQ(FindFirstDigit(u"ab3c4"), 3);
  EXPECT_FALSE(TestAllChar(u"", u'x'));
  EXPECT_TRUE(TestAllChar(u"xxx", u'x'));
  EXPECT_TRUE(EqualAnsiStrings(u"\u00e4bc", u"\u00c4BC"));
  EXPECT_TRUE(EqualAnsiStrings(std::u16string(u"ab\0x", 4), std::u16string(u"AB\0y", 4)));
}

TEST(StringContainsTest, ExpandsTokens) {
  // An unknown token is its characters; a wide member is itself.
  // clang-format off
  const std::tuple<SV, SV, bool, bool> cases[] = {
      {u"ab5", u"//dig", true, true}, {u"abC", u"//lc", true, true},
      {u"ABC", u"//uc//dig", true, false}, {u"dig", u"//dig", false, true},
      {u"/d", u"//d", true, false}, {u"g", u"//d//digig", true, false},
      {u"\x07", u"//31dwn", true, false}, {u"\u00e9", u"//128up", true, false},
      {u"\u0100", u"//128up", false, true}, {u"\u0100x", u"\u0100", true, true},
      {u"x", u"", false, true}, {u"", u"", false, false}};
  // clang-format on
  for (const auto& [s, set, contains, other_than] : cases) {
    SCOPED_TRACE(ToUTF8(s) + " / " + ToUTF8(set));
    EXPECT_EQ(StringContains(s, set), contains);
    EXPECT_EQ(StringContainsOtherThan(s, set), other_than);
  }
  for (char16_t c = 0; c < 256; ++c) {
    const std::u16string s(1, c);
    EXPECT_EQ(StringContains(s, u"//dig//uc"), IsDigit(c) || (c >= u'A' && c <= u'Z')) << int(c);
  }
}

TEST(StripTest, BlanksAndChars) {
  ExpectRows(StripLTBlanks, {{u"", u""}, {u"   ", u""}, {u" a\t", u"a\t"}, {u" a b ", u"a b"}});
  ExpectRows(StripLeadingBlanks, {{u"", u""}, {u"   ", u" "}, {u"  a ", u"a "}});
  ExpectRows(StripTrailingBlanks, {{u"", u""}, {u"   ", u" "}, {u" a\t ", u" a\t"}});
  auto leading = [](std::u16string_view s) { return StripLeadingChars(u'x', s); };
  ExpectRows(leading, {{u"", u""}, {u"xxx", u""}, {u"xaxx", u"axx"}});
  auto trailing = [](std::u16string_view s) { return StripTrailingChars(u'x', s); };
  ExpectRows(trailing, {{u"", u""}, {u"xxx", u"x"}, {u"xaxx", u"xa"}});
  ExpectRows(EnsureTrailingBkSlash, {{u"", u""}, {u"a", u"a\\"}, {u"a\\", u"a\\"}});
  auto ensure_leading = [](std::u16string_view s) { return EnsureLeadingChar(u'x', s); };
  ExpectRows(ensure_leading, {{u"", u""}, {u"a", u"xa"}, {u"xa", u"xa"}});
}

TEST(ReplaceTest, StringsAndChars) {
  // clang-format off
  const std::tuple<SV, SV, SV, bool, SV> cases[] = {
      {u"aba", u"a", u"aa", false, u"aabaa"}, {u"aaaa", u"aa", u"a", false, u"aa"},
      {u"abc", u"", u"x", false, u"abc"}, {u"aXbxc", u"x", u"-", false, u"aXb-c"},
      {u"Hello HELLO", u"hello", u"bye", true, u"bye bye"}, {u"xAbx", u"ab", u"AB", true, u"xABx"}};
  // clang-format on
  for (const auto& [s, old_str, new_str, ignore_case, want] : cases) {
    SCOPED_TRACE(ToUTF8(s) + " " + ToUTF8(old_str) + "->" + ToUTF8(new_str));
    EXPECT_EQ(ReplaceStringInString(s, old_str, new_str, ignore_case), want);
  }
  EXPECT_EQ(ReplaceCharInString(u"a.b.c", u'.', u','), u"a,b,c");
  EXPECT_EQ(RemoveCharInString(u"a.b.c", u'.'), u"abc");
  EXPECT_EQ(RemoveMultiChars(u"xxaa  xxx", u'x'), u"xaa  x");
  const std::u16string controls{u'a', 0, 9, 31, 32, 127, 0x80};
  EXPECT_EQ(RemoveControlChars(controls), (std::u16string{u'a', 32, 127, 0x80}));
}

TEST(PadTest, WidthsAndAbbreviation) {
  const std::tuple<SV, int, SV, SV, SV> cases[] = {{u"ab", 5, u"ab   ", u"   ab", u" ab  "},
                                                   {u"abcdef", 3, u"abc", u"abc", u"abc"},
                                                   {u"abc", 0, u"", u"", u""}};
  for (const auto& [s, width, left, right, center] : cases) {
    SCOPED_TRACE(ToUTF8(s) + " " + std::to_string(width));
    const auto w = static_cast<std::uint8_t>(width);
    EXPECT_EQ(LeftString(s, w), left);
    EXPECT_EQ(RightString(s, w), right);
    EXPECT_EQ(CenterString(s, w), center);
  }
  EXPECT_EQ(AbbrevString(u"abcdef", 4), u"ab..");
  EXPECT_EQ(AbbrevString(u"abcdef", 6), u"abcdef");
  EXPECT_EQ(AbbrevString(u"abcdef", 1), u"..");
  EXPECT_EQ(AbbrevString(u"", -1), u"..");
  EXPECT_EQ(MultiChar(u'*', -5), u"*");
  EXPECT_EQ(MultiChar(u'*', 300).size(), 255u);
}

TEST(CaseTest, ChangeCapitalizeTransliterate) {
  EXPECT_EQ(ChangeCase(u"aB3\u00e4\u00c4\u00df"), u"Ab3\u00c4\u00e4\u00df");
  EXPECT_EQ(ReverseString(u"abc"), u"cba");
  ExpectRows(CapitalizeString, {{u"hello wORLD 3rd-place", u"Hello WORLD 3rd-Place"},
                                {u"\u00e4pfel apfel", u"\u00e4pfel Apfel"},
                                {u"x\ty", u"X\tY"}});
  ExpectRows(ExpandDiphthongs, {{u"\u00c4pfel", u"Aepfel"},
                                {u"\u00c4", u"AE"},
                                {u"\u00c4 x", u"AE x"},
                                {u"\u00d6\u00fc", u"OEue"},
                                {u"Stra\u00dfe", u"Strasse"},
                                {u"\u00b5m", u"um"}});
  EXPECT_EQ(ReduceStringToAZ09(u"a-B 9\u00e4"), u"a_B_9_");
  std::u16string all;
  for (char16_t c = 32; c < 128; ++c) all.push_back(c);
  const std::u16string reduced = ReduceStringToFN83CompliantChars(all);
  EXPECT_EQ(std::count(reduced.begin(), reduced.end(), u'_') - 1, 96 - 79);
  EXPECT_EQ(ReduceStringToFN83CompliantChars(u"a b*c\u00e4~"), u"a_b_c_~");
}

}  // namespace
}  // namespace Zyn_stringl
