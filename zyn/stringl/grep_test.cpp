#include "zyn/stringl/grep.h"

#include <gtest/gtest.h>

#include <climits>
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

// Printable ASCII as itself; other codes, and - ] \ ", as \xNN.
std::string Ch(int code) {
  if (code > 0x20 && code < 0x7F &&
      std::string_view("-]\\\"").find(char(code)) == std::string::npos)
    return std::string(1, char(code));
  char buf[8];
  std::snprintf(buf, sizeof buf, "\\x%02x", code);
  return buf;
}

// The table compactly: a literal "ab", a set [a-cx], `.`, `^`, `$`, and a
// multiplier * + ? in front of its operand (`.` for any character).
std::string TokensText(const TGrep& grep) {
  std::string out;
  for (int i = 1; i <= grep.NrOfRegExpTokens(); ++i) {
    const TGrepToken t = grep.GetRegExpToken(i);
    out += std::string(i > 1 ? " " : "") + " .$^ *+?"[t.Action];
    if (out.back() == ' ') out.pop_back();
    if (t.Action == taSet || t.NumChars < 0) {
      out += '[';
      for (int c = 0, end; c < 256; c = end + 1) {
        for (end = c; t.Params[c] == u'*' && end + 1 < 256 && t.Params[end + 1] == u'*';) ++end;
        if (t.Params[c] == u'*') out += Ch(c) + (end > c ? "-" + Ch(end) : "");
      }
      out += ']';
    } else if (t.Action == taNormal || t.NumChars > 0) {
      out += '"';
      for (int k = 1; k <= t.NumChars; ++k) out += Ch(t.Params[k]);
      out += '"';
    } else if (t.Action >= taMult0) {
      out += '.';
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

TEST(GrepCompileTest, Table) {
  // clang-format off
  const CompileCase cases[] = {
      // Errors stop the table where they occur; a hex escape can make a multiplier.
      {u"", 0, ""}, {u"*a", 1, ""}, {u"$a", 1, ""}, {u"\\#2A", 1, ""}, {u"a^", 2, "\"a\""},
      {u"(a^b)", 2, "\"a\""}, {u"ab$c", 3, "\"ab\" $"}, {u"[]", 4, "[]"}, {u"[a^]", 5, "[a]"},
      {u"[a]]", 6, "[a]"}, {u"[-a]", 7, "[]"}, {u"[a]-b", 7, "[a]"}, {u"a)", 8, "\"a\""},
      {u"^*", 9, "^"}, {u"a*+", 9, "*\"a\""}, {u"[ab]*?", 9, "*[a-b]"},
      {u"(ab)*(cd)*", 9, "*\"abcd\""},
      // Tokens and multipliers.
      {u"ab$", 0, "\"ab\" $"}, {u"^a.b", 0, "^ \"a\" . \"b\""}, {u"abc+", 0, "\"ab\" +\"c\""},
      {u"(abc)+", 0, "+\"abc\""}, {u".*x", 0, "*. \"x\""}, {u"[ab]?c", 0, "?[a-b] \"c\""},
      {u"-a", 0, "\"\\x2da\""}, {u"(a)-b", 0, "\"a\" \"\\x2db\""}, {u"[a", 0, "[a]"},
      {u"a\\", 0, "\"a\\x00\""}, {u"\\.\\*\\(", 0, "\".*(\""},
      // Groups: a quoted string; a group right behind a group goes on in its token.
      {u"(a\\^b)", 0, "\"a^b\""}, {u"(a\\)b)", 0, "\"a)b\""}, {u"(a[b*.$)", 0, "\"a[b*.$\""},
      {u"(ab)(cd)", 0, "\"abcd\""}, {u"(ab)*(cd)", 0, "*\"abcd\""}, {u"()*", 0, "*."},
      {u"x(ab)c", 0, "\"x\" \"ab\" \"c\""},
      // Sets, ranges and escapes in them. In "[ax-]" the ']' ends the range, not the
      // set; the inversion of an open set stays pending.
      {u"[z-a]", 0, "[a-z]"}, {u"[e-c-a]", 0, "[a-e]"}, {u"[ax-]", 0, "[\\x5d-x]"},
      {u"[ax-", 0, "[ax]"}, {u"[a-\\]", 0, "[\\x5c-a]"}, {u"[\\^]", 0, "[^]"},
      {u"[\\-a]", 0, "[\\x2da]"}, {u"[$.*+?()]", 0, "[$(-+.?]"}, {u"[^]", 0, "[\\x00-\\xff]"},
      {u"[^a-y]", 0, "[\\x00-`z-\\xff]"}, {u"[^a", 0, "[a]"},
      // LastChar starts as 'A', outlives a set, and is set by `\` in Normal.
      {u"[^-z]", 0, "[\\x00-@{-\\xff]"}, {u"[q][^-z]", 0, "[q] [\\x00-p{-\\xff]"},
      {u"\\m[^-z]", 0, "\"m\" [\\x00-@{-\\xff]"}, {u"a\\m[^-z]", 0, "\"am\" [\\x00-l{-\\xff]"},
      {u"[a]k[^-z]", 0, "[a] \"k\" [\\x00-j{-\\xff]"},
      // Characters above 255 are no set members.
      {u"[\u20ACa]", 0, "[a]"}, {u"[\u00FE-\u20AC]", 0, "[\\xfe-\\xff]"},
      {u"(\u20AC)", 0, "\"\\x20ac\""},
      // Hex escapes.
      {u"a\\#2A", 0, "*\"a\""}, {u"\\\\#2A", 0, "\"\\x5c#2A\""}, {u"\\#5C#41", 0, "\"#41\""},
      {u"[\\#41-\\#43]", 0, "[A-C]"}, {u"\\#$4x", 0, "\"\\x04x\""}, {u"\\# 9x", 0, "\"\\x09x\""},
      {u"\\#zzx", 0, "\"\\x00x\""}, {u"\\#", 0, "\"\\x00\""},
      // Case folding comes before the hex escapes.
      {u"[A-Z]", 0, "[a-z]", true}, {u"\\#41B", 0, "\"Ab\"", true}};
  // clang-format on
  for (const CompileCase& c : cases) {
    SCOPED_TRACE(Utf8(c.pattern) + (c.ignore_case ? " (ignoring case)" : ""));
    TGrep grep;
    grep.SetStopOnError(false);
    grep.SetIgnoreCase(c.ignore_case);
    grep.SetRegExp(c.pattern);
    EXPECT_EQ(grep.LastError(), c.error);
    EXPECT_EQ(TokensText(grep), c.tokens);
  }
}

TEST(GrepCompileTest, PatternsBeyondTheTable) {
  const std::u16string run(300, u'a');
  TGrep grep;
  grep.SetStopOnError(false);
  grep.SetRegExp(run + u"*");  // a long literal goes on in a new token
  EXPECT_EQ(grep.LastError(), 0);
  EXPECT_EQ(TokensText(grep),
            "\"" + std::string(255, 'a') + "\" \"" + std::string(44, 'a') + "\" *\"a\"");
  grep.SetRegExp(u"(" + run + u")");
  EXPECT_EQ(grep.LastError(), 10);
  grep.SetRegExp(std::u16string(64, u'.'));
  EXPECT_EQ(grep.LastError(), 0);
  grep.SetRegExp(std::u16string(63, u'.') + u"ab+");  // the multiplier needs a 65th token
  EXPECT_EQ(grep.LastError(), 10);
  EXPECT_EQ(grep.NrOfRegExpTokens(), 64);
  EXPECT_EQ(GrepErrorText(10), u"reg.exp. too long");
}

TEST(GrepCompileTest, OldTokensAndTheIndexOfRegExpToken) {
  TGrep grep;
  grep.SetRegExp(u"[ab].a");
  for (int i : {-1, 0, 1}) EXPECT_EQ(grep.RegExpToken(i).Action, taSet) << i;
  for (int i : {3, 4}) EXPECT_EQ(grep.RegExpToken(i).Action, taNormal) << i;
  grep.SetRegExp(u"");  // Action and Params stay, NumChars and ValidFrom are cleared
  EXPECT_EQ(grep.RegExpToken(1).Action, taSet);
  EXPECT_EQ(grep.RegExpToken(1).NumChars, 0);
  grep.SetRegExp(u"x");  // a new literal writes only its characters
  EXPECT_EQ(grep.RegExpToken(1).Params[1], u'x');
  EXPECT_EQ(grep.RegExpToken(1).Params[u'b'], u'*');
}

TEST(GrepCompileTest, SetRegExpRaisesOnlyWhenAsked) {
  TGrep grep;
  grep.SetName(u"Grep1");
  try {
    grep.SetRegExp(u"a[]");
    ADD_FAILURE() << "no exception";
  } catch (const EZYNStringlError& e) {
    EXPECT_EQ(e.Message(), u"Component \"Grep1\": error in regular expression - empty set");
  }
  EXPECT_EQ(grep.RegExp(), u"a[]");
  EXPECT_EQ(grep.NrOfRegExpTokens(), 2);
  EXPECT_NO_THROW(grep.SetIgnoreCase(true));  // recompiling never raises
  EXPECT_EQ(grep.LastError(), 4);
  grep.SetStopOnError(false);
  EXPECT_NO_THROW(grep.SetRegExp(u"a)"));
  EXPECT_EQ(grep.LastError(), 8);
}

struct MatchCase {
  std::u16string_view pattern, text;
  bool found;
  int start, end;               // end: MatchEndPos, checked on a match only
  std::vector<int> valid_from;  // of each token
  int search_start = 1;
  bool ignore_case = false;
};

TEST(GrepMatchTest, Table) {
  // clang-format off
  const MatchCase cases[] = {
      {u"abc", u"xabcx", true, 2, 4, {2}}, {u"abc", u"xabx", false, 0, 0, {0}},
      {u"b", u"abab", true, 4, 4, {4}, 3}, {u"a", u"abab", false, 0, 0, {0}, 5},
      // A position below 1 holds no character; the search starts there all the same.
      {u"a", u"xa", true, 2, 2, {2}, 0}, {u"", u"", true, 0, -1, {}, 0},
      {u"", u"ab", true, -3, -4, {}, -3}, {u"^", u"x", false, 0, 0, {0}, 0},
      {u"^a", u"a", false, 0, 0, {0, 0}, -1}, {u".b", u"b", true, 0, 1, {0, 1}, 0},
      {u"a?b", u"b", true, 1, 1, {1, 1}, -3}, {u"a?", u"b", true, -3, -4, {-3}, -3},
      {u".*b", u"ab", true, -1000, 2, {-1000, 2}, -1000}, {u"[b]", u"ab", true, 2, 2, {2}, -9},
      {u"..z", u"ab", false, 2, 0, {2, 3, 0}, INT_MIN}, {u".*z", u"ab", false, 2, 0, {2, 0}, INT_MIN},
      {u"[^a]", u"a\u20AC", false, 0, 0, {0}}, {u".", u"\u20AC", true, 1, 1, {1}},
      {u"a+", u"bbaa", true, 3, 4, {3}}, {u"a?", u"b", true, 1, 0, {1}},
      {u"(ab)+", u"xabab", true, 2, 5, {2}},
      // A lone `*` token matches the whole text from 1.
      {u".*", u"abc", true, 1, 3, {1}, 3}, {u".*", u"", true, 1, 0, {1}, 9},
      {u"a*", u"bbb", true, 1, 3, {1}}, {u"a.c", u"abc", true, 1, 3, {1, 2, 3}},
      {u"ab.", u"ab", true, 1, 3, {1, 3}}, {u"a[0-9]*", u"a123", true, 1, 4, {1, 2}},
      {u"a[0-9]*", u"a12b", true, 1, 3, {1, 2}}, {u"a[0-9]*", u"ab", true, 1, 1, {1, 2}},
      {u"a[0-9]*", u"a", false, 1, 0, {1, 0}}, {u"a[0-9]?", u"a", true, 1, 1, {1, 2}},
      {u"a*b", u"aaab", true, 1, 4, {1, 4}},
      // `*` is lazy inside the pattern, greedy at its end.
      {u"a.*c", u"abcabc", true, 1, 3, {1, 2, 3}}, {u"a.*", u"abc", true, 1, 3, {1, 2}},
      {u"a.?", u"a", true, 1, 1, {1, 2}}, {u"a.?c", u"abc", true, 1, 3, {1, 2, 3}},
      {u"a.+c", u"acbc", true, 1, 4, {1, 2, 4}}, {u"^b", u"ab", false, 1, 0, {1, 0}},
      {u"^a", u"aa", false, 0, 0, {0, 0}, 2}, {u"b$", u"ab", true, 2, 2, {2, 3}},
      {u"b$", u"ba", false, 1, 0, {1, 0}}, {u"ab?", u"ab", true, 1, 2, {1, 2}},
      {u"a[bc]?d", u"acd", true, 1, 3, {1, 2, 3}}, {u"[0-9]+x", u"a12y3x", true, 5, 6, {5, 6}},
      {u"(ab)+c", u"ababc", true, 1, 5, {1, 5}}, {u"x(ab)*", u"xababa", true, 1, 5, {1, 2}},
      {u"x(ab)?y", u"xaby", true, 1, 4, {1, 2, 4}}, {u"x(ab)?", u"xa", true, 1, 1, {1, 2}},
      // A first '+' copy cut off by the end of the text takes the rest of it.
      {u"x(abc)+", u"xab", true, 1, 3, {1, 2}}, {u"(abc)+$", u"xab", true, 2, 3, {2, 4}},
      {u"x(abc)+y", u"xab", false, 1, 0, {1, 2, 0}},
      // The empty pattern of a new object; where token 1 last passed after a failure.
      {u"", u"abcdef", true, 3, 2, {}, 3}, {u"a[0-9]", u"xaay", false, 3, 0, {3, 0}},
      // The text is folded, the 'A' from a hex escape is not.
      {u"ABC", u"xaBc", true, 2, 4, {2}, 1, true}, {u"ABC", u"xaBc", false, 0, 0, {0}},
      {u"\\#41", u"A", false, 0, 0, {0}, 1, true},
      {u"x[A-C]*", u"XABCD", true, 1, 4, {1, 2}, 1, true}};
  // clang-format on
  for (const MatchCase& c : cases) {
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
    EXPECT_TRUE(!c.found || grep.MatchEndPos() == c.end) << "end " << grep.MatchEndPos();
    std::vector<int> valid_from;
    for (int i = 1; i <= grep.NrOfRegExpTokens(); ++i)
      valid_from.push_back(grep.RegExpToken(i).ValidFrom);
    EXPECT_EQ(valid_from, c.valid_from);
  }
}

TEST(GrepMatchTest, StateLeftByEarlierCalls) {
  TGrep grep;
  grep.SetRegExp(u"b");
  int start = 0;
  ASSERT_TRUE(grep.MatchString(u"ab", start));
  EXPECT_FALSE(grep.MatchString(u"xxx", start));
  EXPECT_EQ(start, 2);  // token 1 last passed at 2

  grep.SetRegExp(u".*");  // a lone `*` with a start behind the text writes nothing
  grep.SetSearchStartPos(4);
  EXPECT_FALSE(grep.MatchString(u"abc", start));
  EXPECT_EQ(grep.RegExpToken(1).ValidFrom, 0);
  EXPECT_EQ(grep.MatchStartPos(), 2);

  grep.SetSearchStartPos(1);
  grep.SetRegExp(u"[ab]");
  grep.SetRegExp(u"");  // token 1 keeps its old Action: a set
  EXPECT_FALSE(grep.MatchString(u"xy", start));
  EXPECT_TRUE(grep.MatchString(u"xb", start));
  EXPECT_EQ(start, 2);

  grep.SetStopOnError(false);
  grep.SetRegExp(u"ab)");  // matched as far as it was built
  EXPECT_TRUE(grep.MatchString(u"cab", start));
  EXPECT_EQ(grep.MatchEndPos(), 3);
}

// Skipping attempts where token 1 can't pass must change no result: behind an
// empty group, which passes everywhere, a pattern gives the same outcome.
void ExpectSameAsUnskipped(std::u16string_view pattern, std::u16string_view text, int search_start,
                           bool ignore_case) {
  SCOPED_TRACE(Utf8(pattern) + " in " + Utf8(text) + " from " + std::to_string(search_start) +
               (ignore_case ? " ignoring case" : ""));
  TGrep plain, shifted;
  for (TGrep* g : {&plain, &shifted}) {
    g->SetIgnoreCase(ignore_case);
    g->SetSearchStartPos(search_start);
  }
  plain.SetRegExp(pattern);
  shifted.SetRegExp(u"()" + std::u16string(pattern));
  int plain_start = 0, shifted_start = 0;
  const bool found = plain.MatchString(text, plain_start);
  ASSERT_EQ(shifted.MatchString(text, shifted_start), found);
  if (found) {
    EXPECT_EQ(plain.MatchEndPos(), shifted.MatchEndPos());
  }
  EXPECT_EQ(plain_start, shifted.RegExpToken(2).ValidFrom);
  for (int t = 2; t <= plain.NrOfRegExpTokens(); ++t) {
    EXPECT_EQ(plain.RegExpToken(t).ValidFrom, shifted.RegExpToken(t + 1).ValidFrom) << t;
  }
}

TEST(GrepMatchTest, SkippedAttemptsChangeNothing) {
  const std::u16string_view patterns[] = {u"ab",  u"a[0-9]*b", u"[xy]z", u"a.*b",   u"b+c",
                                          u".+c", u"[ab]?c",   u"AB",    u"[A-B]c", u".?x"};
  std::mt19937 rng(7);
  for (int round = 0; round < 300; ++round) {
    std::u16string text;
    for (int n = rng() % 13; n > 0; --n) text += u"abcxyB"[rng() % 6];
    const int search_start = static_cast<int>(rng() % (text.size() + 5)) - 3;
    for (std::u16string_view pattern : patterns) {
      ExpectSameAsUnskipped(pattern, text, search_start, round % 2 == 1);
    }
  }
}

// The scan for token 1 goes several units at a time: a hit at every offset of
// texts around that width, in the units left over at the end, and next to
// surrogates and units above 255 whose low byte looks like the hit.
TEST(GrepMatchTest, SkippingFindsHitsAtEveryOffset) {
  const std::u16string_view patterns[] = {
      u"a7B",     u"B",       u"\\#41",           u"[0-9]b",       u"[^ -~]",
      u"[A-B]",   u"[\\#ff]", u"[a-df-hk-mp-rt]", u"[a-z_0-9A-Z]", u"\u20ac",
      u"\u20ac7", u"7\u20ac", u"a\\#41",          u"ab",           u"B7a"};
  const std::u16string_view fillers[] = {u"-", u"\u0161\u0162\u20ac", u"\xd83d\xde00Y"};
  for (const std::u16string_view filler : fillers) {
    for (std::size_t size = 0; size <= 40; ++size) {
      std::u16string base;
      while (base.size() < size) base += filler;
      base.resize(size);
      for (std::size_t at = 0; at <= size; ++at) {
        std::u16string text = base;
        text.replace(at, std::min<std::size_t>(3, size - at), u"a7B");  // may run past the end
        text.resize(size);
        for (std::u16string_view pattern : patterns) {
          for (const bool ignore_case : {false, true}) {
            ExpectSameAsUnskipped(pattern, text, at % 3 == 0 ? 1 : static_cast<int>(at),
                                  ignore_case);
          }
        }
      }
    }
  }
}

// A multiplier passes over the tries where the token behind it can't pass.
// An empty group put in between passes everywhere and hands on at once, so
// with it every try is made: both forms must give the same results.
TEST(GrepMatchTest, TriesPassedOverChangeNothing) {
  struct Pair {
    std::u16string_view pattern, tried;
    int before;  // tokens up to the multiplier; the group follows them
  };
  const Pair pairs[] = {
      {u"a.*b", u"a.*()b", 2},
      {u"x.+yz", u"x.+()yz", 2},
      {u".*ab", u".*()ab", 1},
      {u"a[0-9]*b", u"a[0-9]*()b", 2},
      {u"[A-Z][a-z]+ing", u"[A-Z][a-z]+()ing", 2},
      {u"ab?c", u"ab?()c", 2},
      {u"a.?[bc]", u"a.?()[bc]", 2},
      {u"a[^x]*\\#41", u"a[^x]*()\\#41", 2},
  };
  std::mt19937 rng(11);
  for (int round = 0; round < 400; ++round) {
    std::u16string text;
    for (int n = rng() % 24; n > 0; --n) text += u"abcxyzAB0Ing"[rng() % 12];
    const int search_start = static_cast<int>(rng() % (text.size() + 4)) - 2;
    const bool ignore_case = round % 2 == 1;
    for (const Pair& pair : pairs) {
      SCOPED_TRACE(Utf8(pair.pattern) + " in " + Utf8(text) + " from " +
                   std::to_string(search_start) + (ignore_case ? " ignoring case" : ""));
      TGrep plain, tried;
      for (TGrep* g : {&plain, &tried}) {
        g->SetIgnoreCase(ignore_case);
        g->SetSearchStartPos(search_start);
      }
      plain.SetRegExp(pair.pattern);
      tried.SetRegExp(pair.tried);
      int plain_start = 0, tried_start = 0;
      const bool found = plain.MatchString(text, plain_start);
      ASSERT_EQ(tried.MatchString(text, tried_start), found);
      EXPECT_EQ(plain_start, tried_start);
      if (found) {
        EXPECT_EQ(plain.MatchEndPos(), tried.MatchEndPos());
      }
      for (int t = 1; t <= plain.NrOfRegExpTokens(); ++t) {
        const int u = t <= pair.before ? t : t + 1;
        EXPECT_EQ(plain.RegExpToken(t).ValidFrom, tried.RegExpToken(u).ValidFrom) << t;
      }
    }
  }
}

TEST(GrepPrintTest, OneLinePerTokenAndTheError) {
  zyn::testing::TempDir dir;
  const std::u16string name = zyn::platform::FromUTF8((dir / "table.txt").string());
  TGrep grep;
  grep.SetRegExp(u"^a.bc[x-z]*(de)+.?[\\#41]?$");
  grep.PrintRegExp(name);
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "table.txt"),
            "    taBol: \r\n taNormal: a\r\ntaAnyByte: \r\n taNormal: bc\r\n"
            "  taMult0: (set) xyz\r\n  taMult1: (string) de\r\n   taOpti: (anychar) \r\n"
            "   taOpti: (set) A\r\n    taEol: \r\nno errors\r\n");
  grep.SetStopOnError(false);
  grep.SetRegExp(u"[b][]");
  grep.PrintRegExp(name);  // replaces the file
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "table.txt"),
            "    taSet: b\r\n    taSet: \r\nempty set\r\n");
  EXPECT_THROW(grep.PrintRegExp(zyn::platform::FromUTF8((dir / "no" / "such.txt").string())),
               zyn::platform::EInOutError);
}

}  // namespace
}  // namespace Zyn_stringl
