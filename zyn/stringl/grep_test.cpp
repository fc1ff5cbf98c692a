#include "zyn/stringl/grep.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/textfile.h"
#include "zyn/stringl/unit.h"

namespace Zyn_stringl {
namespace {

using zyn::testing::Utf8;

std::string CharText(int code) {
  const bool plain =
      code >= 0x21 && code < 0x7F && code != '-' && code != ']' && code != '\\' && code != '"';
  if (plain) return std::string(1, static_cast<char>(code));
  char buf[8];
  std::snprintf(buf, sizeof buf, "\\x%02x", code);
  return buf;
}

// A set as ranges of member codes: "[a-cx]".
std::string SetText(const TCharArr256& params) {
  std::string out = "[";
  for (int c = 0; c < 256; ++c) {
    if (params[c] != u'*') continue;
    int end = c;
    while (end + 1 < 256 && params[end + 1] == u'*') ++end;
    out += CharText(c);
    if (end > c) out += "-" + CharText(end);
    c = end;
  }
  return out + "]";
}

std::string LiteralText(const TGrepToken& t) {
  std::string out = "\"";
  for (int k = 1; k <= t.NumChars; ++k) {
    out += t.Params[k] < 256 ? CharText(t.Params[k]) : Utf8(std::u16string(1, t.Params[k]));
  }
  return out + "\"";
}

std::string OperandText(const TGrepToken& t) {
  if (t.NumChars < 0) return SetText(t.Params);
  return t.NumChars == 0 ? "." : LiteralText(t);
}

// The compiled table in a compact form: `"ab" *[0-9] ^ $ . +"abc" ?.`.
std::string TokensText(const TGrep& grep) {
  std::string out;
  for (int i = 1; i <= grep.NrOfRegExpTokens(); ++i) {
    const TGrepToken t = grep.GetRegExpToken(i);
    if (!out.empty()) out += ' ';
    switch (t.Action) {
      case taNormal:
        out += LiteralText(t);
        break;
      case taAnyByte:
        out += '.';
        break;
      case taEol:
        out += '$';
        break;
      case taBol:
        out += '^';
        break;
      case taSet:
        out += SetText(t.Params);
        break;
      case taMult0:
        out += '*' + OperandText(t);
        break;
      case taMult1:
        out += '+' + OperandText(t);
        break;
      case taOpti:
        out += '?' + OperandText(t);
        break;
    }
  }
  return out;
}

struct CompileCase {
  std::u16string_view pattern;
  int error;
  std::string tokens;
  bool ignore_case = false;
};

void CheckCompile(const CompileCase& c) {
  SCOPED_TRACE(Utf8(c.pattern) + (c.ignore_case ? " (ignoring case)" : ""));
  TGrep grep;
  grep.SetStopOnError(false);
  grep.SetIgnoreCase(c.ignore_case);
  grep.SetRegExp(c.pattern);
  EXPECT_EQ(grep.LastError(), c.error);
  EXPECT_EQ(TokensText(grep), c.tokens);
}

TEST(GrepCompileTest, ErrorsStopTheTableWhereTheyOccur) {
  const CompileCase cases[] = {
      {u"", 0, ""},
      {u"*a", 1, ""},
      {u"?a", 1, ""},
      {u"+a", 1, ""},
      {u"$a", 1, ""},
      {u"\\#2A", 1, ""},  // the hex escape makes a multiplier
      {u"a^", 2, "\"a\""},
      {u"^^", 2, "^"},
      {u"(a^b)", 2, "\"a\""},
      {u"ab$c", 3, "\"ab\" $"},
      {u"[]", 4, "[]"},
      {u"[a^]", 5, "[a]"},
      {u"[^^]", 5, "[]"},
      {u"[a]]", 6, "[a]"},
      {u"a]", 6, "\"a\""},
      {u"[-a]", 7, "[]"},
      {u"[a]-b", 7, "[a]"},
      {u"a)", 8, "\"a\""},
      {u"(a))", 8, "\"a\""},
      {u"^*", 9, "^"},
      {u"a**", 9, "*\"a\""},
      {u"a*+", 9, "*\"a\""},
      {u"[ab]*?", 9, "*[a-b]"},
      {u".+*", 9, "+."},
      {u"(ab)*(cd)*", 9, "*\"abcd\""},
  };
  for (const CompileCase& c : cases) CheckCompile(c);
}

TEST(GrepCompileTest, TokensOfTheDialect) {
  const CompileCase cases[] = {
      {u"abc", 0, "\"abc\""},
      {u"ab$", 0, "\"ab\" $"},
      {u"^a.b", 0, "^ \"a\" . \"b\""},
      {u"abc+", 0, "\"ab\" +\"c\""},
      {u"(abc)+", 0, "+\"abc\""},
      {u"a*b", 0, "*\"a\" \"b\""},
      {u".*x", 0, "*. \"x\""},
      {u"[ab]?c", 0, "?[a-b] \"c\""},
      {u"-a", 0, "\"\\x2da\""},
      {u"a-", 0, "\"a\\x2d\""},
      {u"(a)-b", 0, "\"a\" \"\\x2db\""},
      {u"[a]b", 0, "[a] \"b\""},
      {u"(a", 0, "\"a\""},
      {u"[a", 0, "[a]"},
      {u"a\\", 0, "\"a\\x00\""},
      {u"\\.\\*\\(", 0, "\".*(\""},
      // Groups: every character but ')', '\' and '^' is literal, and a group
      // right behind a group continues its token.
      {u"(a\\^b)", 0, "\"a^b\""},
      {u"(a\\)b)", 0, "\"a)b\""},
      {u"(a[b*.$)", 0, "\"a[b*.$\""},
      {u"(ab)(cd)", 0, "\"abcd\""},
      {u"(ab)*(cd)", 0, "*\"abcd\""},
      {u"(ab)c", 0, "\"ab\" \"c\""},
      {u"x(ab)", 0, "\"x\" \"ab\""},
      {u"()*", 0, "*."},
      {u"()", 0, "\"\""},
      // Sets, ranges and escapes inside them.
      {u"[z-a]", 0, "[a-z]"},
      {u"[a-c-e]", 0, "[a-e]"},
      {u"[e-c-a]", 0, "[a-e]"},
      {u"[ax-]", 0, "[\\x5d-x]"},  // ']' ends the range, not the set
      {u"[ax-", 0, "[ax]"},
      {u"[a-]]", 0, "[\\x5d-a]"},
      {u"[a-\\]", 0, "[\\x5c-a]"},
      {u"[\\]]", 0, "[\\x5d]"},
      {u"[\\^]", 0, "[^]"},
      {u"[\\-a]", 0, "[\\x2da]"},
      {u"[a\\-z]", 0, "[\\x2daz]"},
      {u"[$.*+?(]", 0, "[$(*-+.?]"},
      {u"[)]", 0, "[)]"},
      {u"[^]", 0, "[\\x00-\\xff]"},
      {u"[^a-y]", 0, "[\\x00-`z-\\xff]"},
      {u"[^a", 0, "[a]"},  // the inversion of an open set stays pending
      // LastChar starts as 'A' and outlives a set.
      {u"[^-z]", 0, "[\\x00-@{-\\xff]"},
      {u"[q][^-z]", 0, "[q] [\\x00-p{-\\xff]"},
      {u"\\m[^-z]", 0, "\"m\" [\\x00-@{-\\xff]"},  // not at the start
      {u"a\\m[^-z]", 0, "\"am\" [\\x00-l{-\\xff]"},
      {u"[a]k[^-z]", 0, "[a] \"k\" [\\x00-j{-\\xff]"},
      {u"b[^-z]", 0, "\"b\" [\\x00-@{-\\xff]"},
      // Characters above 255 are never set members.
      {u"[\u20ACa]", 0, "[a]"},
      {u"[\u00FE-\u20AC]", 0, "[\\xfe-\\xff]"},
      {u"(\u20AC)", 0, "\"\u20AC\""},
      // Hex escapes.
      {u"a\\#2A", 0, "*\"a\""},
      {u"\\\\#2A", 0, "\"\\x5c#2A\""},
      {u"\\#5C#41", 0, "\"#41\""},
      {u"[\\#41-\\#43]", 0, "[A-C]"},
      {u"\\#$4x", 0, "\"\\x04x\""},
      {u"\\# 9x", 0, "\"\\x09x\""},
      {u"\\#zzx", 0, "\"\\x00x\""},
      {u"\\#4", 0, "\"\\x04\""},
      {u"\\#", 0, "\"\\x00\""},
      // Case folding comes before the hex escapes.
      {u"[A-Z]", 0, "[a-z]", true},
      {u"ABC", 0, "\"abc\"", true},
      {u"\\#41B", 0, "\"Ab\"", true},
  };
  for (const CompileCase& c : cases) CheckCompile(c);
}

TEST(GrepCompileTest, PatternsBeyondTheTable) {
  const std::u16string run(300, u'a');
  TGrep grep;
  grep.SetStopOnError(false);
  grep.SetRegExp(run + u"*");  // a long literal goes on in a new token
  EXPECT_EQ(grep.LastError(), 0);
  ASSERT_EQ(grep.NrOfRegExpTokens(), 3);
  EXPECT_EQ(grep.GetRegExpToken(1).NumChars, 255);
  EXPECT_EQ(grep.GetRegExpToken(2).NumChars, 44);
  EXPECT_EQ(grep.GetRegExpToken(3).Action, taMult0);

  grep.SetRegExp(u"(" + run + u")");
  EXPECT_EQ(grep.LastError(), 10);
  EXPECT_EQ(grep.GetRegExpToken(1).NumChars, 255);

  grep.SetRegExp(std::u16string(64, u'.'));
  EXPECT_EQ(grep.LastError(), 0);
  grep.SetRegExp(std::u16string(65, u'.'));
  EXPECT_EQ(grep.LastError(), 10);
  EXPECT_EQ(grep.NrOfRegExpTokens(), 64);

  std::u16string pattern;
  for (int i = 0; i < 32; ++i) pattern += u"ab";
  grep.SetRegExp(pattern + u"+");  // the multiplier needs a 65th token
  EXPECT_EQ(grep.LastError(), 0);
  grep.SetRegExp(std::u16string(63, u'.') + u"ab+");
  EXPECT_EQ(grep.LastError(), 10);
  EXPECT_EQ(TGrep().LastError(), 0);
  EXPECT_EQ(GrepErrorText(10), u"reg.exp. too long");
}

TEST(GrepCompileTest, OldTokensKeepActionAndParams) {
  TGrep grep;
  grep.SetRegExp(u"[ab]");
  int start = 0;
  ASSERT_TRUE(grep.MatchString(u"b", start));
  grep.SetRegExp(u"");
  TGrepToken t = grep.GetRegExpToken(1);
  EXPECT_EQ(t.Action, taSet);
  EXPECT_EQ(t.NumChars, 0);
  EXPECT_EQ(t.ValidFrom, 0);
  EXPECT_EQ(t.Params[u'a'], u'*');

  grep.SetRegExp(u"x");
  t = grep.GetRegExpToken(1);
  EXPECT_EQ(t.Action, taNormal);
  EXPECT_EQ(t.Params[1], u'x');
  EXPECT_EQ(t.Params[u'b'], u'*');  // a new literal writes only its characters
}

TEST(GrepCompileTest, TokenIndexIsClamped) {
  TGrep grep;
  grep.SetRegExp(u"a.[b]");
  for (int index : {-1, 0, 1}) EXPECT_EQ(grep.RegExpToken(index).Action, taNormal) << index;
  for (int index : {3, 4, 99}) EXPECT_EQ(grep.RegExpToken(index).Action, taSet) << index;
  EXPECT_EQ(grep.RegExpToken(2).Action, taAnyByte);
}

TEST(GrepCompileTest, SetRegExpRaisesOnlyWhenAsked) {
  TGrep grep;
  grep.SetName(u"Grep1");
  try {
    grep.SetRegExp(u"a[]");
    FAIL() << "no exception";
  } catch (const EZYNStringlError& e) {
    EXPECT_EQ(e.Message(), u"Component \"Grep1\": error in regular expression - empty set");
  }
  EXPECT_EQ(grep.RegExp(), u"a[]");
  EXPECT_EQ(grep.LastError(), 4);
  EXPECT_EQ(grep.NrOfRegExpTokens(), 2);

  grep.SetStopOnError(false);
  EXPECT_NO_THROW(grep.SetRegExp(u"a)"));
  EXPECT_EQ(grep.LastError(), 8);

  grep.SetStopOnError(true);
  grep.SetRegExp(u"A\\#41");
  EXPECT_NO_THROW(grep.SetIgnoreCase(true));
  EXPECT_EQ(TokensText(grep), "\"aA\"");
  grep.SetStopOnError(false);
  grep.SetRegExp(u"*");
  grep.SetStopOnError(true);
  EXPECT_NO_THROW(grep.SetIgnoreCase(false));  // recompiling never raises
  EXPECT_EQ(grep.LastError(), 1);
}

TEST(GrepTest, InitialValues) {
  TGrep grep;
  EXPECT_EQ(grep.RegExp(), u"");
  EXPECT_FALSE(grep.IgnoreCase());
  EXPECT_EQ(grep.SearchStartPos(), 1);
  EXPECT_TRUE(grep.StopOnError());
  EXPECT_EQ(grep.MatchStartPos(), 0);
  EXPECT_EQ(grep.MatchEndPos(), 0);
  EXPECT_EQ(grep.NrOfRegExpTokens(), 0);
  EXPECT_EQ(grep.LastError(), 0);
  EXPECT_EQ(grep.ClassName(), u"TGrep");
}

struct MatchCase {
  std::u16string_view pattern;
  std::u16string_view text;
  bool found;
  int start;
  int end;                      // MatchEndPos, checked on a match only
  std::vector<int> valid_from;  // ValidFrom of each token
  int search_start = 1;
  bool ignore_case = false;
};

void CheckMatch(const MatchCase& c) {
  SCOPED_TRACE(Utf8(c.pattern) + " in \"" + Utf8(c.text) + "\" from " +
               std::to_string(c.search_start) + (c.ignore_case ? " ignoring case" : ""));
  TGrep grep;
  grep.SetIgnoreCase(c.ignore_case);
  grep.SetRegExp(c.pattern);
  grep.SetSearchStartPos(c.search_start);
  int start = -7;
  EXPECT_EQ(grep.MatchString(c.text, start), c.found);
  EXPECT_EQ(start, c.start);
  EXPECT_EQ(grep.MatchStartPos(), c.start);
  if (c.found) {
    EXPECT_EQ(grep.MatchEndPos(), c.end);
  }
  std::vector<int> valid_from;
  for (int i = 1; i <= grep.NrOfRegExpTokens(); ++i) {
    valid_from.push_back(grep.GetRegExpToken(i).ValidFrom);
  }
  EXPECT_EQ(valid_from, c.valid_from);
  EXPECT_EQ(grep.SearchStartPos(), c.search_start);
}

TEST(GrepMatchTest, SingleTokens) {
  const MatchCase cases[] = {
      {u"abc", u"xabcx", true, 2, 4, {2}},
      {u"abc", u"xabx", false, 0, 0, {0}},
      {u"b", u"abab", true, 4, 4, {4}, 3},
      {u"a", u"abab", false, 0, 0, {0}, 5},
      {u"a", u"xa", true, 2, 2, {2}, 0},  // a start below 1 counts as 1
      {u"^", u"abc", true, 1, 1, {1}},
      {u"^", u"", true, 1, 1, {1}},
      {u"[0-9]", u"ab7", true, 3, 3, {3}},
      {u"[^a]", u"a\u20AC", false, 0, 0, {0}},  // codes above 255 are no members
      {u".", u"\u20AC", true, 1, 1, {1}},
      {u"(\u20AC)", u"x\u20AC", true, 2, 2, {2}},
      {u"a+", u"bbaa", true, 3, 4, {3}},
      {u"a?", u"b", true, 1, 0, {1}},
      {u"[ab]+", u"xaby", true, 2, 3, {2}},
      {u"(ab)+", u"xabab", true, 2, 5, {2}},
      // A lone '*' token matches the whole text from 1.
      {u".*", u"abc", true, 1, 3, {1}, 2},
      {u".*", u"abc", true, 1, 3, {1}, 3},
      {u".*", u"", true, 1, 0, {1}, 9},
      {u"a*", u"bbb", true, 1, 3, {1}},
      {u"()*", u"xy", true, 1, 2, {1}},
  };
  for (const MatchCase& c : cases) CheckMatch(c);
}

TEST(GrepMatchTest, SequencesAndMultipliers) {
  const MatchCase cases[] = {
      {u"a.c", u"abc", true, 1, 3, {1, 2, 3}},
      {u"ab.", u"ab", true, 1, 3, {1, 3}},  // '.' has no end test
      {u"a[0-9]*", u"a123", true, 1, 4, {1, 2}},
      {u"a[0-9]*", u"a12b", true, 1, 3, {1, 2}},
      {u"a[0-9]*", u"ab", true, 1, 1, {1, 2}},
      {u"a[0-9]*", u"a", false, 1, 0, {1, 0}},
      {u"a[0-9]?", u"a", true, 1, 1, {1, 2}},
      {u"a*b", u"aaab", true, 1, 4, {1, 4}},
      {u"a.*c", u"abcabc", true, 1, 3, {1, 2, 3}},  // lazy inside
      {u"a.*", u"abc", true, 1, 3, {1, 2}},         // greedy at the end
      {u"a.+", u"a", true, 1, 1, {1, 2}},
      {u"a.?", u"a", true, 1, 1, {1, 2}},
      {u"a.?b", u"ab", true, 1, 2, {1, 2, 2}},
      {u"a.?c", u"abc", true, 1, 3, {1, 2, 3}},
      {u"a.+c", u"acbc", true, 1, 4, {1, 2, 4}},
      {u"^b", u"ab", false, 1, 0, {1, 0}},  // one attempt only
      {u"^a", u"xa", false, 1, 0, {1, 0}, 0},
      {u"^a", u"a", true, 1, 1, {1, 1}, 0},
      {u"^a", u"aa", false, 0, 0, {0, 0}, 2},
      {u"b$", u"ab", true, 2, 2, {2, 3}},
      {u"b$", u"ba", false, 1, 0, {1, 0}},
      {u"a$", u"", false, 0, 0, {0, 0}},
      {u"ab?", u"ab", true, 1, 2, {1, 2}},
      {u"ab?", u"ac", true, 1, 1, {1, 2}},
      {u"a[bc]?d", u"acd", true, 1, 3, {1, 2, 3}},
      {u"[0-9]+x", u"a12x", true, 2, 4, {2, 4}},
      {u"[0-9]+x", u"a12y3x", true, 5, 6, {5, 6}},
      {u"x[0-9]*y", u"x12y", true, 1, 4, {1, 2, 4}},
      {u"(ab)+c", u"ababc", true, 1, 5, {1, 5}},
      {u"x(ab)*c", u"xababc", true, 1, 6, {1, 2, 6}},
      {u"x(ab)*", u"xababa", true, 1, 5, {1, 2}},
      {u"x(ab)?y", u"xaby", true, 1, 4, {1, 2, 4}},
      {u"x(ab)?", u"xa", true, 1, 1, {1, 2}},
      {u"x[0-9]+", u"x12a", true, 1, 3, {1, 2}},
      {u"x[0-9]?", u"x1", true, 1, 2, {1, 2}},
      // A copy cut off by the end of the text passes the test of '+'; it
      // then takes the rest of the text.
      {u"x(abc)+", u"xab", true, 1, 3, {1, 2}},
      {u"(abc)+$", u"xab", true, 2, 3, {2, 4}},
      {u"x(abc)+y", u"xab", false, 1, 0, {1, 2, 0}},
      // The empty pattern on a new object.
      {u"", u"abcdef", true, 3, 2, {}, 3},
      // The last ValidFrom of token 1 stands after a failed search.
      {u"a[0-9]", u"xaay", false, 3, 0, {3, 0}},
  };
  for (const MatchCase& c : cases) CheckMatch(c);
}

TEST(GrepMatchTest, IgnoringCase) {
  const MatchCase cases[] = {
      {u"ABC", u"xaBc", true, 2, 4, {2}, 1, true},
      {u"\\#41", u"A", false, 0, 0, {0}, 1, true},  // the text is folded, this 'A' is not
      {u"[A-C]x", u"bX", true, 1, 2, {1, 2}, 1, true},
      {u"x[a-c]*", u"XABCD", true, 1, 4, {1, 2}, 1, true},
      {u"ABC", u"xaBc", false, 0, 0, {0}},
  };
  for (const MatchCase& c : cases) CheckMatch(c);
}

TEST(GrepMatchTest, RepeatedSearchesAndOldTokens) {
  TGrep grep;
  grep.SetRegExp(u"b");
  int start = 0;
  ASSERT_TRUE(grep.MatchString(u"ab", start));
  EXPECT_FALSE(grep.MatchString(u"xxx", start));
  EXPECT_EQ(start, 2);  // token 1 last passed at 2
  EXPECT_EQ(grep.MatchEndPos(), 2);

  // A lone '*' token with a start behind the text writes nothing.
  grep.SetRegExp(u".*");
  grep.SetSearchStartPos(4);
  start = 42;
  EXPECT_FALSE(grep.MatchString(u"abc", start));
  EXPECT_EQ(start, 42);
  EXPECT_EQ(grep.MatchStartPos(), 2);
  EXPECT_EQ(grep.RegExpToken(1).ValidFrom, 0);
  grep.SetSearchStartPos(1);

  // An empty pattern runs token 1 with its old Action: here a set.
  grep.SetRegExp(u"[ab]");
  grep.SetRegExp(u"");
  EXPECT_FALSE(grep.MatchString(u"xy", start));
  EXPECT_TRUE(grep.MatchString(u"xb", start));
  EXPECT_EQ(start, 2);

  // A failed pattern matches as far as it was built.
  grep.SetStopOnError(false);
  grep.SetRegExp(u"ab)");
  EXPECT_TRUE(grep.MatchString(u"cab", start));
  EXPECT_EQ(grep.MatchEndPos(), 3);
}

// Skipping attempts where token 1 can't pass must change no result: the
// same pattern behind an empty group, which passes everywhere, gives the same
// outcome and ValidFrom values.
TEST(GrepMatchTest, SkippedAttemptsChangeNothing) {
  const std::u16string_view patterns[] = {u"ab",     u"a[0-9]*b", u"[xy]z", u"a.*b",  u"b+c",
                                          u"[ab]?c", u"ba*",      u"AB",    u"[A-B]c"};
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> letter(0, 5), length(0, 12);
  const char16_t alphabet[] = u"abcxyB";
  for (int round = 0; round < 300; ++round) {
    std::u16string text;
    for (int n = length(rng); n > 0; --n) text += alphabet[letter(rng)];
    // Beyond len + 1 the empty group fails where a leading '?' would pass.
    const int search_start =
        std::uniform_int_distribution<int>(0, static_cast<int>(text.size()) + 1)(rng);
    for (bool ignore_case : {false, true}) {
      for (std::u16string_view pattern : patterns) {
        SCOPED_TRACE(Utf8(pattern) + " in " + Utf8(text) + " from " + std::to_string(search_start));
        TGrep plain, shifted;
        for (TGrep* g : {&plain, &shifted}) {
          g->SetIgnoreCase(ignore_case);
          g->SetSearchStartPos(search_start);
        }
        plain.SetRegExp(pattern);
        shifted.SetRegExp(u"()" + std::u16string(pattern));
        ASSERT_EQ(shifted.NrOfRegExpTokens(), plain.NrOfRegExpTokens() + 1);
        int plain_start = 0, shifted_start = 0;
        const bool found = plain.MatchString(text, plain_start);
        ASSERT_EQ(shifted.MatchString(text, shifted_start), found);
        if (found) {
          EXPECT_EQ(plain.MatchEndPos(), shifted.MatchEndPos());
          EXPECT_EQ(plain_start, shifted.RegExpToken(2).ValidFrom);
        }
        for (int t = 1; t <= plain.NrOfRegExpTokens(); ++t) {
          EXPECT_EQ(plain.RegExpToken(t).ValidFrom, shifted.RegExpToken(t + 1).ValidFrom) << t;
        }
      }
    }
  }
}

TEST(GrepPrintTest, OneLinePerTokenAndTheError) {
  zyn::testing::TempDir dir;
  const std::u16string name = zyn::platform::FromUTF8((dir / "table.txt").string());
  TGrep grep;
  grep.SetStopOnError(false);
  grep.SetRegExp(u"^a.bc[x-z]*(de)+.?[\\#41]?$");
  grep.PrintRegExp(name);
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "table.txt"),
            "    taBol: \r\n"
            " taNormal: a\r\n"
            "taAnyByte: \r\n"
            " taNormal: bc\r\n"
            "  taMult0: (set) xyz\r\n"
            "  taMult1: (string) de\r\n"
            "   taOpti: (anychar) \r\n"
            "   taOpti: (set) A\r\n"
            "    taEol: \r\n"
            "no errors\r\n");

  grep.SetRegExp(u"a[b]c[]");
  grep.PrintRegExp(name);  // replaces the file
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "table.txt"),
            " taNormal: a\r\n    taSet: b\r\n taNormal: c\r\n    taSet: \r\nempty set\r\n");

  EXPECT_THROW(grep.PrintRegExp(zyn::platform::FromUTF8((dir / "no" / "such.txt").string())),
               zyn::platform::EInOutError);
}

}  // namespace
}  // namespace Zyn_stringl
