#include "zyn/platform/string_list.h"

#include <gtest/gtest.h>

namespace zyn::platform {
namespace {

TEST(StringListTest, AddInsertDeleteAndBounds) {
  TStringList l;
  EXPECT_EQ(l.Add(u"b"), 0);
  EXPECT_EQ(l.Add(u"d"), 1);
  l.Insert(0, u"a");
  l.Insert(2, u"c");
  l.Insert(4, u"e");
  ASSERT_EQ(l.Count(), 5);
  EXPECT_EQ(l.Text(), u"a\r\nb\r\nc\r\nd\r\ne\r\n");
  l.Delete(4);
  l.Put(0, u"A");
  EXPECT_EQ(l[0], u"A");
  EXPECT_EQ(l.IndexOf(u"c"), 2);
  EXPECT_EQ(l.IndexOf(u"C"), -1);
  for (int bad : {-1, 4}) {
    SCOPED_TRACE(bad);
    EXPECT_THROW(l.Strings(bad), EStringListError);
    EXPECT_THROW(l.Delete(bad), EStringListError);
  }
  EXPECT_THROW(l.Insert(5, u"x"), EStringListError);
  try {
    l.Strings(7);
  } catch (const EStringListError& e) {
    EXPECT_EQ(e.Message(), u"List index out of bounds (7)");
  }
  l.Clear();
  EXPECT_EQ(l.Count(), 0);
}

TEST(StringListTest, SetTextSplitsOnEveryLineEnd) {
  struct Case {
    std::u16string_view text;
    std::vector<std::u16string> lines;
  };
  const Case cases[] = {
      {u"", {}},
      {u"a", {u"a"}},
      {u"a\r\n", {u"a"}},
      {u"a\r\nb\nc\rd", {u"a", u"b", u"c", u"d"}},
      {u"\n\r\n\r", {u"", u"", u""}},
      {u"a\n\rb", {u"a", u"", u"b"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lines.size());
    TStringList l;
    l.SetText(c.text);
    EXPECT_EQ(std::vector<std::u16string>(l.begin(), l.end()), c.lines);
  }
}

}  // namespace
}  // namespace zyn::platform
