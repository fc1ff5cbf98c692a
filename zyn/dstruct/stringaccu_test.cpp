#include "zyn/dstruct/stringaccu.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testing/zyn_testing.h"

namespace Zyn_dstruct {
namespace {

using zyn::testing::Utf8;

TEST(TStringAccuTest, TalliesExactStringsInOrderOfFirstAdd) {
  struct Entry {
    std::u16string text;
    int count;
  };
  struct Case {
    const char* name;
    std::vector<std::u16string> adds;
    std::vector<Entry> expect;
  };
  const Case cases[] = {
      {"empty", {}, {}},
      {"case counts", {u"a", u"A", u"a"}, {{u"a", 2}, {u"A", 1}}},
      {"empty string is an entry", {u"", u"x", u""}, {{u"", 2}, {u"x", 1}}},
      {"no folding beyond ASCII",
       {u"\u00e4", u"\u00c4", u"\u00e4 "},
       {{u"\u00e4", 1}, {u"\u00c4", 1}, {u"\u00e4 ", 1}}},
      {"prefix is another string",
       {u"ab", u"a", u"abc", u"a"},
       {{u"ab", 1}, {u"a", 2}, {u"abc", 1}}},
      {"embedded NUL",
       {std::u16string(u"a\0b", 3), u"a"},
       {{std::u16string(u"a\0b", 3), 1}, {u"a", 1}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TStringAccu accu;
    for (const std::u16string& s : c.adds) accu.Add(s);
    ASSERT_EQ(accu.Size(), static_cast<int>(c.expect.size()));
    for (std::size_t i = 0; i < c.expect.size(); ++i) {
      const int ix = static_cast<int>(i) + 1;
      EXPECT_EQ(Utf8(accu.GetString(ix)), Utf8(c.expect[i].text)) << ix;
      EXPECT_EQ(accu.Elem(ix), accu.GetString(ix));
      EXPECT_EQ(accu.GetCount(ix), c.expect[i].count) << ix;
      EXPECT_EQ(accu.Count(ix), accu.GetCount(ix));
    }
  }
}

TEST(TStringAccuTest, IndicesOutsideOneToSizeAreNeutral) {
  TStringAccu accu;
  accu.Add(u"a");
  accu.Add(u"b");
  for (int ix : {0, -1, 3, 1 << 30}) {
    SCOPED_TRACE(ix);
    EXPECT_EQ(accu.GetString(ix), u"");
    EXPECT_EQ(accu.GetCount(ix), 0);
  }
}

TEST(TStringAccuTest, ClearForgetsEverything) {
  TStringAccu accu;
  accu.Add(u"a");
  accu.Add(u"a");
  accu.Clear();
  EXPECT_EQ(accu.Size(), 0);
  EXPECT_EQ(accu.GetCount(1), 0);
  accu.Add(u"a");
  EXPECT_EQ(accu.GetCount(1), 1);
}

}  // namespace
}  // namespace Zyn_dstruct
