#include "zyn/html/urltools.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "testing/zyn_testing.h"
#include "zyn/stringl/stringl.h"

namespace {

using namespace Zyn_htmlsupport;
using zyn::testing::Utf8;

struct InOut {
  std::u16string_view in, out;
};

// Checks `f(in) == out` for every row.
template <class F>
void ExpectEach(F f, std::initializer_list<InOut> cases) {
  for (const InOut& c : cases) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(f(c.in), c.out);
  }
}

TEST(URLCodingTest, EncodeAndDecodeInTwoPasses) {
  // clang-format off
  const InOut codes[] = {
      {u"", u""}, {u"a b", u"a%20b"}, {u"%", u"%25"}, {u"Az09-_.~'", u"Az09-_.~'"},
      {u"!*();:@&=+$,/?#[]", u"%21%2A%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%23%5B%5D"},
      {u"\u00e4\t\u20ac\x7f", u"\u00e4\t\u20ac\x7f"},
  };
  // clang-format on
  for (const InOut& c : codes) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(URLEncode(c.in), c.out);
    EXPECT_EQ(URLDecode(c.out), c.in);
  }
  // clang-format off
  ExpectEach([](std::u16string_view in) { return URLDecode(in); }, {
      {u"%2541", u"A"}, {u"%252541", u"%41"}, {u"%e4%E4", u"\u00e4\u00e4"}, {u"%", u"%"},
      {u"a%4", u"a%4"}, {u"%%414", u"\u00a4"}, {u"%zz%2", u"%zz%2"}, {u"+", u"+"},
      {u"%C3%A4", u"\u00c3\u00a4"}, {u"%00%ff", std::u16string_view(u"\0\u00ff", 2)},
      {u"%252", u"%2"}, {u"%25%34%31", u"A"},
  });
  // clang-format on
}

TEST(URLCodingTest, RoundTripOfRandomTexts) {
  std::mt19937 rng(7);
  const std::u16string alphabet = u"%25aZ09 !*()+/?#[]&=\u00e4\u20ac\xd800";
  for (int n = 0; n < 2000; ++n) {
    std::u16string s;
    for (int k = rng() % 12; k > 0; --k) s += alphabet[rng() % alphabet.size()];
    SCOPED_TRACE(Utf8(s));
    // Encoding once protects every '%'; encoding twice also protects a text in
    // which the second decoding pass would find a code.
    EXPECT_EQ(URLDecode(URLEncode(URLEncode(s))), s);
    if (URLDecode(s) == s) {
      EXPECT_EQ(URLDecode(URLEncode(s)), s);
    }
  }
}

TEST(ExtractHTTPPathTest, CutsSchemeAndFileName) {
  // clang-format off
  ExpectEach([](std::u16string_view in) { return ExtractHTTPPath(in); }, {
      {u"", u""}, {u"http://example.org/a/b/index.html", u"example.org/a/b/"},
      {u"hTtP://h/x", u"h/"}, {u"https://h/a/b", u"https://h/a/"},
      {u"http://example.org", u"example.org"}, {u"example.org", u"example.org"},
      {u"see http://h/x http://g/y", u"h/x http://g/"}, {u"/", u"/"},
  });
  // clang-format on
}

TEST(CountWordsHTMLTest, CountsWordsOutsideTagsByWordSeps) {
  struct Case {
    std::u16string_view text;
    bool skip_numbers, in_tag_before;
    int words;
    bool in_tag_after;
  };
  // clang-format off
  const Case cases[] = {
      {u"", false, true, 0, true}, {u"two words ", false, false, 2, false},
      {u"two words", false, false, 1, false}, {u"a b c ", false, false, 0, false},
      {u"word<b class=x y z>", false, false, 1, false}, {u"<p>one two</p>", false, false, 2, false},
      {u"attr=x> then more ", false, true, 2, false}, {u"start <a href", false, false, 1, true},
      {u"3rd x42 42 ", true, false, 1, false}, {u"3rd x42 42 ", false, false, 3, false},
      {u"\u00e4\u00f6 \u0100\u0101.", false, false, 2, false},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.text));
    bool in_tag = c.in_tag_before;
    EXPECT_EQ(CountWordsHTML(c.text, c.skip_numbers, in_tag), c.words);
    EXPECT_EQ(in_tag, c.in_tag_after);
  }
  bool in_tag = false;
  Zyn_stringl::WordSeps.Exclude(u'>');
  // Without '>' as a separator the word before a tag runs on behind it.
  EXPECT_EQ(CountWordsHTML(u"ab<i>cd ", false, in_tag), 1);
  Zyn_stringl::WordSeps = Zyn_stringl::kDefaultWordSeps;
  EXPECT_EQ(CountWordsHTML(u"ab<i>cd ", false, in_tag), 2);
}

}  // namespace
