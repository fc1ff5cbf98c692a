#include "zyn/streams/tagscan.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"

namespace Zyn_streams {
namespace {

using zyn::platform::FromUTF8;
using zyn::testing::TempDir;
using zyn::testing::Utf8;

TMemoryStream& Fill(TMemoryStream& m, std::string_view bytes) {
  m.WriteBuffer(bytes.data(), static_cast<int>(bytes.size()));
  m.SetPosition(0);
  return m;
}

std::u16string Wide(std::string_view s) { return {s.begin(), s.end()}; }

struct Tag {
  int index;
  std::u16string attr, content;
  friend bool operator==(const Tag&, const Tag&) = default;
  friend std::ostream& operator<<(std::ostream& os, const Tag& t) {
    return os << t.index << " [" << Utf8(t.attr) << "] [" << Utf8(t.content) << "]";
  }
};

const std::vector<std::u16string> kList = {u"x",  u"b", u"a",    u"img", u"br",
                                           u"/a", u"c", u"?xml", u"",    u"unknown"};
constexpr int kHigh = 9;

// Reads `count` tags from `text`, through a stream and through a text file;
// both must agree.
std::vector<Tag> ReadTags(std::string_view text, int count) {
  auto read = [count](auto next) {
    std::vector<Tag> tags(static_cast<std::size_t>(count));
    for (Tag& t : tags) t.index = next(t.attr, t.content);
    return tags;
  };
  TMemoryStream m;
  Fill(m, text);
  TempDir dir;
  zyn::testing::WriteFileBytes(dir / "t", text);
  Textfile f;
  f.Assign(FromUTF8((dir / "t").string()), zyn::platform::kCpLatin1);
  f.Reset();
  const std::vector<Tag> tags =
      read([&](auto& a, auto& c) { return ReadNextTagInStream(m, kList, kHigh, a, c); });
  EXPECT_EQ(read([&](auto& a, auto& c) { return ReadNextTagInTextFile(f, kList, kHigh, a, c); }),
            tags);
  return tags;
}

TEST(TagScanTest, ReadNextTag) {
  const std::tuple<std::string_view, std::vector<Tag>> cases[] = {
      {"x<A b = 1>hello</a>rest<c/>", {{2, u"b = 1", u"hello"}, {6, u"", u""}}},
      {"<img src=x/>", {{3, u"src=x", u""}, {8, u"", u""}}},
      {"<br/><br /><BR  a=1  />", {{4, u"", u""}, {4, u"", u""}, {4, u"a=1", u""}}},
      {"<!-- a>b --><c>t</c>", {{6, u"", u"t"}}},
      {"</a>", {{5, u"", u""}, {8, u"", u""}}},
      {"<a>no end", {{2, u"", u"no end"}}},
      {"<a><a>x</a></a>", {{2, u"", u"<a>x"}, {5, u"", u""}}},
      {"<zz k='v'>in<b>side</b></ZZ>", {{kHigh, u"k='v'", u"in<b>side</b>"}}},
      {"<a>line\r\n<!--c-->end</A >x</A>", {{2, u"", u"line\r\n<!--c-->end</A >x"}}},
      {"<?xml version=1?>text", {{7, u"version=1?", u"text"}}},
      {"", {{8, u"", u""}}},
      {"<", {{8, u"", u""}}},
      {"<a", {{8, u"", u""}}},  // the last character of an unfinished tag goes, as ">" would
      {"<ab", {{2, u"", u""}}},
      {"<a b=\">\">", {{2, u"b=\"", u"\">"}}},
      {"<a\nb>x</a\nb>", {{kHigh, u"", u"x"}}},
  };
  for (const auto& [text, tags] : cases) {
    SCOPED_TRACE(std::string(text));
    EXPECT_EQ(ReadTags(text, static_cast<int>(tags.size())), tags);
  }
}

TEST(TagScanTest, LookupIsBoundedByHigh) {
  const std::vector<std::u16string> list = {u"a", u"b", u"c"};
  const std::tuple<std::string_view, int, int> cases[] = {
      {"<c/>", 2, 2},   {"<c/>", 1, 1}, {"<a/>", 0, 0}, {"<b/>", 0, 0},
      {"<b/>", -1, -1}, {"<z/>", 5, 5}, {"<b/>", 5, 1},
  };
  for (const auto& [text, high, index] : cases) {
    SCOPED_TRACE(testing::Message() << std::string(text) << " high " << high);
    TMemoryStream m;
    std::u16string attr, content;
    EXPECT_EQ(ReadNextTagInStream(Fill(m, text), list, high, attr, content), index);
  }
}

TEST(TagScanTest, ScanForXMLAttrib) {
  const std::tuple<std::u16string_view, std::u16string_view, std::u16string_view> cases[] = {
      {u"size=12 Color=\"dark red\"", u"color", u"dark red"},
      {u"size=12 Color=\"dark red\"", u"x", u""},
      {u"a==1 b=2", u"b", u""},
      {u"a", u"a", u""},
      {u" a = 1 ", u"a", u"1"},
      {u"a=1 b=\"x=y \" c=3", u"c", u"3"},
      {u"a=1 b=\"x=y \" c=3", u"b", u"x=y "},
      {u"a=\"open", u"a", u"open"},
      {u"a=1=2 b=3", u"b", u""},
      {u"\"a\"=1", u"a", u""},
      {u"a=1\"b=2", u"b", u"2"},
      {u"a=x b=y a=z", u"a", u"x"},
      {u"A B=1", u"a b", u"1"},
  };
  for (const auto& [attribs, name, value] : cases) {
    SCOPED_TRACE(Utf8(attribs) + " / " + Utf8(name));
    EXPECT_EQ(ScanForXMLAttrib(attribs, name), value);
  }
}

TEST(TagScanTest, ScanStreamForXMLTagFindsNestedTags) {
  TMemoryStream m;
  Fill(m, "<doc><!-- <Font> --><label x=1><FONT size=3>Arial</font></label><font/>");
  std::u16string attr, content;
  EXPECT_TRUE(ScanStreamForXMLTag(m, u"Font", attr, content));
  EXPECT_EQ(attr, u"size=3");
  EXPECT_EQ(content, u"Arial");
  EXPECT_TRUE(ScanStreamForXMLTag(m, u"font", attr, content));
  EXPECT_EQ(attr, u"");
  EXPECT_EQ(content, u"");
  EXPECT_FALSE(ScanStreamForXMLTag(m, u"font", attr, content));
  EXPECT_EQ(m.Position(), m.Size());
}

TEST(TagScanTest, ReadStreamUntilTagList) {
  const std::vector<std::u16string> list = {u"</TD>", u"", u"<tr", u"d>"};
  const std::tuple<std::string, int, std::size_t, int> cases[] = {
      {"a<td>b</td><tr>", 3, 5, 3},  // "d>" is complete first
      {"a<td>b</td><tr>", 2, 11, 0},
      {"xx<TR>", 3, 5, 2},
      {std::string(300, '.') + "</td>", 0, 305, 0},
      {"nothing", 3, 7, -1},
      {"</td>", -1, 5, -1},
  };
  for (const auto& [text, high, length, want_index] : cases) {
    SCOPED_TRACE(text);
    TMemoryStream m;
    Fill(m, text);
    int index = 9;
    EXPECT_EQ(ReadStreamUntilTagList(m, list, high, index), Wide(text.substr(0, length)));
    EXPECT_EQ(index, want_index);
    EXPECT_EQ(m.Position(), static_cast<std::int64_t>(length));
  }
}

TEST(TagScanTest, ExtractFromStream) {
  TMemoryStream in, out;
  Fill(in, "<doc><Item a=1>one</ITEM> text <other><item/></other><item>open");
  out.WriteBuffer(">", 1);
  zyn::platform::TStringList tags;
  tags.Add(u"ITEM");
  ExtractFromStream(in, out, tags);
  EXPECT_EQ(std::string(out.Memory().begin(), out.Memory().end()),
            "><Item a=1>one</ITEM><item/><item>open");
}

TEST(TagScanTest, SearchAndReplace) {
  struct Case {
    std::string_view source, search, replace;
    bool ignore_case;
    int start, max;
    std::u16string_view mark;
    std::string_view result;
    int count;
  };
  const Case cases[] = {
      {"a-b-c", "-", "+", false, 1, 0, u"", "a+b+c", 2},
      {"Ab ab AB", "ab", "x", true, 1, 0, u"", "x x x", 3},
      {"Ab ab AB", "ab", "x", false, 1, 0, u"", "Ab x AB", 1},
      {"aaaa", "a", "b", false, 3, 0, u"", "aabb", 2},
      {"aa", "a", "b", false, -5, 0, u"", "bb", 2},
      {"aa", "a", "b", false, 9, 0, u"", "aa", 0},
      {"aaaa", "a", "b", false, 1, 3, u"", "bbba", 3},
      {"aaa", "aa", "x", false, 1, 0, u"", "xa", 1},
      {"abc", "", "x", false, 1, 0, u"", "abc", 0},
      {"k:v;K:w", "k", "[\\h\\c\\t\\n\\\\]", true, 1, 0, u"\\", "[k1\t\r\n\\]:v;[K2\t\r\n\\]:w", 2},
      {"k", "k", "\\n", false, 1, 0, u"", "\\n", 1},
      {"k", "k", "x\\", false, 1, 0, u"\\", "x\\", 1},
      {"k", "k", "%%h%%%", false, 1, 0, u"%%", "k%%", 1},
      {"k", "k", "<\\q>", false, 1, 0, u"\\", "<Q>", 1},
      {"a.b.", ".", "", false, 1, 0, u"", "ab", 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.source << " " << c.search << " " << c.replace << " "
                                    << c.ignore_case << c.start << c.max);
    TMemoryStream src, dst;
    Fill(src, c.source);
    src.SetPosition(1);
    dst.WriteBuffer("old content", 11);
    const TSRUnknownModifierEvent upper = [](std::u16string_view m, std::u16string& r) {
      r = std::u16string(1, static_cast<char16_t>(m[0] - 32));
    };
    EXPECT_EQ(SearchAndReplace(src, dst, Wide(c.search), Wide(c.replace), c.ignore_case, c.start,
                               c.max, c.mark, upper),
              c.count);
    EXPECT_EQ(std::string(dst.Memory().begin(), dst.Memory().end()), c.result);
    EXPECT_EQ(dst.Position(), 0);
    EXPECT_EQ(src.Position(), 1);
  }
  TMemoryStream both;  // in place, and without an event
  Fill(both, "k");
  EXPECT_EQ(SearchAndReplace(both, both, u"k", u"\\q\\h", false, 1, 0, u"\\", nullptr), 1);
  EXPECT_EQ(std::string(both.Memory().begin(), both.Memory().end()), "\\qk");
}

}  // namespace
}  // namespace Zyn_streams
