#include "zyn/html/entities.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "testing/zyn_testing.h"

namespace {

using namespace Zyn_htmlsupport;
using zyn::testing::Utf8;

// Expected values from Python's html.unescape, an independent HTML5 reference
// (no case here involves the non-characters it drops and browsers keep).
TEST(ResolveHTMLEntitiesTest, AgreesWithPythonsUnescape) {
  struct Case {
    std::u16string_view in, out;
  };
  // clang-format off
  const Case cases[] = {
      {u"&amp;", u"&"}, {u"&lt;&gt;&quot;&apos;", u"<>\"'"}, {u"&auml;x", u"\u00e4x"},
      {u"&aumlx", u"\u00e4x"}, {u"&notit;", u"\u00acit;"}, {u"&notin;", u"\u2209"},
      {u"&ampxyz;", u"&xyz;"}, {u"&Amp;", u"&Amp;"}, {u"&foo;", u"&foo;"},
      {u"&;", u"&;"}, {u"&#65;&#x42;&#X43;", u"ABC"}, {u"&#65", u"A"},
      {u"&#;", u"&#;"}, {u"&#x;", u"&#x;"}, {u"&#0;", u"\ufffd"},
      {u"&#128;&#x9f;", u"\u20ac\u0178"}, {u"&#x81;", u"\x81"}, {u"&#xD800;", u"\ufffd"},
      {u"&#x110000;", u"\ufffd"}, {u"&#99999999999999999999;", u"\ufffd"},
      {u"&#x1F600;", u"\U0001F600"}, {u"&NotEqualTilde;", u"\u2242\u0338"}, {u"&fjlig;", u"fj"},
      {u"&CounterClockwiseContourIntegral;", u"\u2233"}, {u"&lt:", u"<:"}, {u"&&amp;&", u"&&&"},
      {u"&#38;amp;", u"&amp;"}, {u"&nbsp&nbsp;", u"\u00a0\u00a0"}, {u"&LT", u"<"},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.in));
    EXPECT_EQ(ResolveHTMLEntities(c.in), c.out);
  }
}

TEST(MakeStringHTMLCompatibleTest, EscapesAndResolvesBack) {
  EXPECT_EQ(MakeStringHTMLCompatible(u"a<b>&\"c\"'\u00e4"), u"a&lt;b&gt;&amp;&quot;c&quot;'\u00e4");
  // Every UTF-16 text survives, lone surrogates and text that looks like a
  // reference included.
  std::mt19937 rng(11);
  const std::u16string alphabet = u"&#;x0aAmpltgquot<>\"' \u00e4\xd800\xdc00\u20ac";
  for (int n = 0; n < 3000; ++n) {
    std::u16string s;
    for (int k = rng() % 16; k > 0; --k) s += alphabet[rng() % alphabet.size()];
    SCOPED_TRACE(Utf8(s));
    EXPECT_EQ(ResolveHTMLEntities(MakeStringHTMLCompatible(s)), s);
  }
}

TEST(EntityCharTest, NamesAndNumbersOfSingleCharacters) {
  struct Case {
    char16_t c;
    std::u16string_view entity;
  };
  const Case cases[] = {
      {u'\u00e4', u"&auml;"},    {u'<', u"&lt;"},        {u'&', u"&amp;"},
      {u'"', u"&quot;"},         {u'\u00a0', u"&nbsp;"}, {u'\u2192', u"&rarr;"},
      {u'\u03b5', u"&epsilon;"}, {u'\u20ac', u"&euro;"}, {u'a', u"&#97;"},
      {u'\u4e2d', u"&#20013;"},  {u'\n', u"&NewLine;"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.entity));
    EXPECT_EQ(AnsiToHTMLEntity(c.c), c.entity);
    EXPECT_EQ(HTMLEntityToAnsi(c.entity), c.c);
  }
  // No reference stands for these: they come back as themselves.
  for (char16_t c : {u'\0', u'\x80', u'\x9f', u'\xd800', u'\xdfff'})
    EXPECT_EQ(AnsiToHTMLEntity(c), std::u16string(1, c)) << int(c);
  // Every character of the BMP makes the way through its reference and back,
  // and through escaping and back.
  for (char32_t c = 0; c < 0x10000; ++c) {
    const auto ch = static_cast<char16_t>(c);
    const std::u16string s(1, ch);
    ASSERT_EQ(ResolveHTMLEntities(MakeStringHTMLCompatible(s)), s) << static_cast<unsigned>(c);
    if (c == 0 || (c >= 0x80 && c <= 0x9F) || (c >= 0xD800 && c <= 0xDFFF)) continue;
    ASSERT_EQ(ResolveHTMLEntities(AnsiToHTMLEntity(ch)), s) << static_cast<unsigned>(c);
    ASSERT_EQ(HTMLEntityToAnsi(AnsiToHTMLEntity(ch)), ch) << static_cast<unsigned>(c);
  }
}

TEST(EntityCharTest, ReadsOneReferenceInAnyForm) {
  struct Case {
    std::u16string_view entity;
    char16_t c;
  };
  // clang-format off
  const Case cases[] = {
      {u"auml", u'\u00e4'}, {u"&auml", u'\u00e4'}, {u"#228", u'\u00e4'}, {u"&#xE4", u'\u00e4'},
      {u"#x20AC;", u'\u20ac'}, {u"&#128;", u'\u20ac'}, {u"", 0}, {u"&foo;", 0},
      {u"&ampx;", 0}, {u"&#x1F600;", 0}, {u"&fjlig;", 0}, {u"&lt;x", 0},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.entity));
    EXPECT_EQ(HTMLEntityToAnsi(c.entity), c.c);
  }
}

}  // namespace
