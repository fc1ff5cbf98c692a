#include "zyn/dstruct/stringaccu.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Zyn_dstruct {
namespace {

TEST(TStringAccuTest, TalliesExactStringsInOrderOfFirstAdd) {
  struct Case {
    std::vector<std::u16string> adds, strings;
    std::vector<int> counts;
  };
  const Case cases[] = {
      {{}, {}, {}},
      {{u"a", u"A", u"a"}, {u"a", u"A"}, {2, 1}},
      {{u"", u"x", u""}, {u"", u"x"}, {2, 1}},
      {{u"\u00e4", u"\u00c4", u"\u00e4 "}, {u"\u00e4", u"\u00c4", u"\u00e4 "}, {1, 1, 1}},
      {{u"ab", u"a", u"abc", u"a"}, {u"ab", u"a", u"abc"}, {1, 2, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.adds.size());
    TStringAccu accu;
    for (const std::u16string& s : c.adds) accu.Add(s);
    ASSERT_EQ(accu.Size(), static_cast<int>(c.strings.size()));
    for (int ix = 0; ix <= accu.Size() + 1; ++ix) {
      const bool valid = ix >= 1 && ix <= accu.Size();
      const auto i = static_cast<std::size_t>(ix - valid);
      EXPECT_EQ(accu.Elem(ix), valid ? c.strings[i] : u"") << ix;
      EXPECT_EQ(accu.Count(ix), valid ? c.counts[i] : 0) << ix;
    }
    accu.Clear();
    EXPECT_EQ(accu.Size() + accu.GetCount(1), 0);
  }
}

}  // namespace
}  // namespace Zyn_dstruct
