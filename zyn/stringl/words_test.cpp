#include "zyn/stringl/words.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/stringl/stringl.h"

namespace {

using namespace Zyn_stringl;
using namespace std::string_view_literals;
using zyn::testing::Utf8;
using Strings = std::vector<std::u16string>;
using SV = std::u16string_view;

TEST(WordsTest, ExtractWordAndCountWords) {
  // clang-format off
  const std::tuple<SV, int, SV, int, int> cases[] = {
      {u"hello world", 3, u"hello", 1, 5}, {u"hello world", 6, u" ", 6, 6},
      {u"hello world", 0, u"", 0, 0}, {u"hello world", 12, u"", 0, 0},
      {u"(a+bc)", 4, u"bc", 4, 5}, {u"\u00FC\u00DF.", 1, u"\u00FC\u00DF", 1, 2}};
  // clang-format on
  for (const auto& [s, pos, word, want_start, want_end] : cases) {
    SCOPED_TRACE(Utf8(s) + " at " + std::to_string(pos));
    int start = -1, end = -1;
    EXPECT_EQ(ExtractWordFromString(s, pos, start, end), word);
    EXPECT_EQ(std::pair(start, end), std::pair(want_start, want_end));
  }
  EXPECT_EQ(CountWords(u"one two"), 1);
  EXPECT_EQ(CountWords(u"one two."), 2);
  EXPECT_EQ(CountWords(u"a b c ab,,cd;"), 2);
  const CharSet saved = WordSeps;
  WordSeps.Include(u'x');
  EXPECT_EQ(CountWords(u"abxcdx"), 2);
  WordSeps = saved;
}

TEST(WordsTest, ExtractSubString) {
  // clang-format off
  const std::tuple<SV, int, SV, SV> cases[] = {
      {u"a;b;c", 0, u";", u"a"}, {u"a;b;c", 2, u";", u"c"}, {u"a;b;c", 3, u";", u""},
      {u"a;;c", 1, u";", u""}, {u"a;;c", 2, u";", u"c"}, {u";b", 0, u";", u""},
      {u";b", 1, u";", u"b"}, {u"a;", 1, u";", u""}, {u"a;b", -1, u";", u""},
      {u"a\0;b"sv, 1, u";", u""}, {u"ab::cd::ef", 2, u"::", u"ef"}, {u"xabAB", 1, u"ab", u""},
      {u"a;b", 0, u"", u"a;b"}, {u"a;b", 1, u"", u""}};
  // clang-format on
  for (const auto& [s, index, delimiter, field] : cases) {
    SCOPED_TRACE(Utf8(s) + " #" + std::to_string(index) + " by " + Utf8(delimiter));
    EXPECT_EQ(ExtractSubString(s, index, delimiter), field);
  }
}

TEST(TokenizeTest, PlainAndEscapedForms) {
  // Escape 0: the plain form. A doubled escape still keeps a separator; the
  // replacements ignore ASCII case.
  // clang-format off
  const std::tuple<SV, SV, char16_t, Strings> cases[] = {
      {u"a,b", u",", 0, {u"a", u"b"}}, {u"a,", u",", 0, {u"a", u""}}, {u"", u",", 0, {u""}},
      {u"a,b", u"", 0, {u"a,b"}}, {u"a<>b<>", u"<>", 0, {u"a", u"b", u""}},
      {u"a\\,b,c", u",", u'\\', {u"a,b", u"c"}}, {u"a\\\\,b", u",", u'\\', {u"a,b"}},
      {u"a\\\\b,c", u",", u'\\', {u"a\\b", u"c"}}, {u",\\,", u",", u'\\', {u"", u","}},
      {u"aqxbQQc", u"x", u'q', {u"axbqc"}}, {u"a\\b\\\\c", u"", u'\\', {u"a\\b\\\\c"}}};
  // clang-format on
  for (const auto& [s, separator, escape, want] : cases) {
    SCOPED_TRACE(Utf8(s) + " by " + Utf8(separator));
    Strings tokens{u"stale"};
    const int n = escape ? Tokenize(s, separator, escape, tokens) : Tokenize(s, separator, tokens);
    EXPECT_EQ(n, static_cast<int>(want.size()));
    EXPECT_EQ(tokens, want);
  }
}

TEST(TokenizeTest, ThousandthTokenTakesTheRest) {
  std::u16string s;
  for (int i = 0; i < 1500; ++i) s += std::u16string{static_cast<char16_t>(u'a' + i % 26), u';'};
  for (bool escaped : {false, true}) {
    Strings tokens;
    EXPECT_EQ(escaped ? Tokenize(s, u";", u'\\', tokens) : Tokenize(s, u";", tokens), 1000);
    ASSERT_EQ(tokens.size(), 1000u);
    EXPECT_EQ(tokens[998], u"k");
    EXPECT_EQ(tokens[999], s.substr(999 * 2));
  }
}

TEST(ReadLnStringTest, EveryLineEnd) {
  const std::u16string s = u"ab\r\ncd\n\re\tf";
  // Line end kind, the lines (the last one with endOfString true), the positions after each.
  // clang-format off
  const std::tuple<int, Strings, std::vector<int>> cases[] = {
      {0, {u"ab", u"cd", u"ef"}, {5, 8, 12}}, {1, {u"ab", u"cd", u"ef"}, {4, 9, 12}},
      {2, {u"ab", u"", u"cd", u"", u"ef"}, {4, 5, 8, 9, 12}}, {3, {u"abcd", u"ef"}, {9, 12}},
      {4, {u"ab", u"cdef"}, {5, 12}}, {9, {u"abcdef"}, {12}}};
  // clang-format on
  for (const auto& [line_end, lines, positions] : cases) {
    int pos = 1;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      SCOPED_TRACE(std::to_string(line_end) + " line " + std::to_string(i));
      bool eos = true;
      EXPECT_EQ(ReadLnString(s, pos, eos, line_end), lines[i]);
      EXPECT_EQ(eos, i + 1 == lines.size());
      EXPECT_EQ(pos, positions[i]);
    }
  }
  int pos = 3;
  bool eos = true;
  EXPECT_EQ(ReadLnString(u"ab\n", pos, eos, 0), u"");
  EXPECT_FALSE(eos);
  EXPECT_EQ(ReadLnString(u"ab\n", pos, eos, 0), u"");
  EXPECT_TRUE(eos);
}

TEST(WordsTest, NumberedPosStringIxIsAbbreviation) {
  EXPECT_EQ(NumberedPos(u"bc", u"abcabc", 1, 2, false), 5);
  EXPECT_EQ(NumberedPos(u"bc", u"abcabc", 3, 1, false), 5);
  EXPECT_EQ(NumberedPos(u"bc", u"abcabc", 1, 3, false), 0);
  EXPECT_EQ(NumberedPos(u"bc", u"abcabc", 1, 0, false), 0);
  EXPECT_EQ(NumberedPos(u"BC", u"abcaBc", -4, 2, true), 5);
  EXPECT_EQ(NumberedPos(u"aa", u"aaaa", 1, 2, false), 3);
  const Strings list{u"a", u"b", u"Feat", u"b"};
  EXPECT_EQ(StringIx(u"b", list, 3), 2);
  EXPECT_EQ(StringIx(u"c", list, 3), 0);
  EXPECT_EQ(StringIx(u"feat", true, list, 3), 0);
  EXPECT_EQ(StringIx(u"FEAT", false, list, 3), 3);
  EXPECT_EQ(StringIx(u"FEAT", false, list, 1), 0);  // only entries 0 to high
  EXPECT_EQ(StringIx(u"b", list, 99), 2);
  for (auto s : {u"NASA", u"ABCd", u"UN-Ab"}) EXPECT_TRUE(IsAbbreviation(s)) << Utf8(s);
  for (auto s : {u"ABcd", u"Ab", u"A", u""}) EXPECT_FALSE(IsAbbreviation(s)) << Utf8(s);
}

TEST(WordsTest, ProcessHexChars) {
  // clang-format off
  const std::pair<std::u16string_view, std::u16string_view> cases[] = {
      {u"a\\#41b\\\\c\\d", u"aAb\\c\\d"}, {u"\\#4a\\#6A", u"Jj"}, {u"\\#$f\\# 9", u"\x0F\t"},
      {u"\\#zz!", u"\0!"sv}, {u"\\#4", u"\x04"}, {u"end\\", u"end\\"}, {u"\\\\\\#41", u"\\A"},
      {u"\\#5C#41", u"\\#41"}};
  // clang-format on
  for (const auto& [in, out] : cases) EXPECT_EQ(ProcessHexChars(in), out) << Utf8(in);
}

TEST(WordsTest, ParseQuotedNameAndExtractParam) {
  const std::tuple<std::u16string_view, std::u16string_view, TQuotedStrState> cases[] = {
      {u"  plain rest", u"plain", vsEnd},
      {u"plain", u"plain", vsNormal},
      {u"'it''s' x", u"it's", vsEnd},
      {u"'open", u"open", vs1stQuote},
      {u"''x", u"", vsEnd}};
  for (const auto& [input, expected, expected_state] : cases) {
    std::u16string name;
    TQuotedStrState state = vsStart;
    for (char16_t ch : input) ParseQuotedName(ch, u'\'', name, state);
    EXPECT_EQ(name, expected) << Utf8(input);
    EXPECT_EQ(state, expected_state) << Utf8(input);
  }
  const std::u16string_view s = u"a, \"b,c\" , ,d\"\"e,\"say \"\"hi\"\"\"";
  const Strings params{u"-", u"a", u"b,c", u"-", u"d\"\"e", u"say \"hi\"", u"-"};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(ExtractParam(s, i, u',', u'"', u"-"), params[i]) << i;
}

TEST(UUCodeTest, KnownFormsRoundTripAndDamage) {
  for (const auto& [plain, coded] : {std::pair{u""sv, u"`\n"sv},
                                     {u"Cat"sv, u"#0V%T\n`\n"sv},
                                     {u"\0\0\0"sv, u"#````\n`\n"sv},
                                     {u"ab"sv, u"\"86(`\n`\n"sv}}) {
    EXPECT_EQ(UUEncodeStr(plain), coded);
    EXPECT_EQ(UUDecodeStr(coded), plain);
  }
  std::u16string bytes;
  for (int i = 0; i < 300; ++i) bytes.push_back(static_cast<char16_t>((i * 7) & 0xFF));
  const std::u16string coded = UUEncodeStr(bytes);
  EXPECT_EQ(coded.find(u'\n'), 61u);         // 45 bytes a line
  EXPECT_EQ(coded.substr(6 * 62, 1), u">");  // then 30
  EXPECT_EQ(UUDecodeStr(u"begin 644 x\r\n" + ReplaceStringInString(coded, u"\n", u"\r\n", false) +
                        u"end\r\n"),
            bytes);
  EXPECT_EQ(UUEncodeStr(u"\u0141"), UUEncodeStr(u"A"));  // low 8 bits only
  // clang-format off
  const std::pair<const char16_t*, const char16_t*> damaged[] = {
      {u"#0V", u"C"}, {u"#0V%", u"Ca"}, {u"!0V%T", u"C"}, {u" 0V%T\n#0V%T", u""},
      {u"end\n#0V%T", u""}, {u"\n#0V%T", u"Cat"}};
  // clang-format on
  for (const auto& [text, plain] : damaged) EXPECT_EQ(UUDecodeStr(text), plain) << Utf8(text);
}

TEST(WordsTest, TextLineCoords) {
  const std::u16string_view s = u"ab\ncd\r\ne\rf";
  const int cases[][3] = {{3, 1, 3},  {4, 2, 1},  {7, 2, 4},  {8, 3, 1},
                          {10, 4, 1}, {11, 4, 2}, {12, 0, 0}, {0, 0, 0}};
  for (const auto& [pos, line, column] : cases) {
    int l = -1, c = -1;
    TextLineCoords(s, pos, l, c);
    EXPECT_EQ(std::pair(l, c), std::pair(line, column)) << pos;
  }
}

TEST(TagInStringTest, ReadsTagsOneAfterTheOther) {
  const Strings tags{u"x", u"br", u"a", u"img", u""};
  const std::u16string s =
      u"x<A b = 1>hello</a><!-- c>d --><img src=x/><br /></a><q>no end<a><a>x</A>";
  // Index, attributes, content, position after. A stray closing tag is an unknown
  // name; at the end the empty entry answers.
  // clang-format off
  const std::tuple<int, SV, SV, int> steps[] = {{2, u"b = 1", u"hello", 20}, {3, u"src=x", u"", 44}, {1, u"", u"", 50},
                        {4, u"", u"", 54}, {4, u"", u"no end<a><a>x</A>", 74}, {4, u"", u"", 74}};
  // clang-format on
  int pos = 1;
  for (const auto& [index, want_attr, want_content, pos_after] : steps) {
    SCOPED_TRACE(pos);
    std::u16string attr, content;
    EXPECT_EQ(ReadNextTagInString(s, pos, tags, 4, attr, content), index);
    EXPECT_EQ(attr, want_attr);
    EXPECT_EQ(content, want_content);
    EXPECT_EQ(pos, pos_after);
  }
  std::u16string attr, content;
  pos = 1;
  EXPECT_EQ(ReadNextTagInString(u"<a><a>x</A></a>", pos, tags, 4, attr, content), 2);
  EXPECT_EQ(content, u"<a>x");
  EXPECT_EQ(pos, 12);
}

TEST(TagInStringTest, DetectNextTag) {
  const Strings tags{u"b", u"i"};
  const std::u16string s = u"t<!x><B k=1>u</b><I/><z";
  // clang-format off
  const std::tuple<int, int, int, SV, bool> steps[] = {
      {0, 6, 12, u"k=1", false}, {0, 14, 17, u"", true}, {1, 18, 21, u"", false},
      {-1, 0, 0, u"", false}};
  // clang-format on
  int start = 1, end = 0;
  for (const auto& [index, want_start, want_end, want_attr, want_closing] : steps) {
    SCOPED_TRACE(start);
    std::u16string attr = u"stale";
    bool closing = true;
    EXPECT_EQ(DetectNextTagInString(s, start, end, tags, 1, attr, closing), index);
    EXPECT_EQ(std::pair(start, end), std::pair(want_start, want_end));
    EXPECT_EQ(attr, want_attr);
    EXPECT_EQ(closing, want_closing);
    start = end + 1;
  }
}

}  // namespace
