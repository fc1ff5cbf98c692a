#include "zyn/html/htmlproducer.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/textfile.h"

namespace {

using namespace Zyn_htmlsupport;
using zyn::platform::FromUTF8;
using zyn::testing::Utf8;

struct Call {
  std::u16string name, params, replacement;
  bool operator==(const Call&) const = default;
};

TEST(THtmlProducerTest, FindsTagsAsTheTemplateMarksThem) {
  struct Case {
    std::u16string_view templ;
    std::vector<Call> calls;
  };
  const Case cases[] = {
      {u"", {}},
      {u"<p>plain <b>html</b> &lt; <", {}},
      {u"<#Author first=1>", {{u"author", u"first=1", u"<#Author first=1>"}}},
      {u"<#a>b c>", {{u"a", u"", u"<#a>"}}},
      {u"<#NAME   Mixed Case  >", {{u"name", u"Mixed Case", u"<#NAME   Mixed Case  >"}}},
      {u"<#>", {{u"", u"", u"<#>"}}},
      {u"<#a><#b>", {{u"a", u"", u"<#a>"}, {u"b", u"", u"<#b>"}}},
      {u"x<#Open", {{u"ope", u"", u"<#Open"}}},
      {u"<#open p q", {{u"open", u"p", u"<#open p q"}}},
      {u"<#", {{u"", u"", u"<#"}}},
      {u"<#a <#b>", {{u"a", u"<#b", u"<#a <#b>"}}},
      {u"<<#\u00c4B>", {{u"\u00c4b", u"", u"<#\u00c4B>"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.templ));
    THtmlProducer producer;
    std::vector<Call> calls;
    producer.SetOnHTMLTag([&](TObject*, const std::u16string& name, const std::u16string& params,
                              std::u16string& replacement) {
      calls.push_back({name, params, replacement});  // the replacement left as it came
    });
    producer.SetTemplate(c.templ);
    EXPECT_EQ(producer.Convert(), c.templ);
    EXPECT_EQ(calls, c.calls);
  }
}

TEST(THtmlProducerTest, ReplacesTagsOnce) {
  THtmlProducer producer;
  producer.SetTemplate(u"<h1><#title></h1><#drop><#x a=1>|<#tag> unclosed <#end");
  producer.SetOnHTMLTag([](TObject*, const std::u16string& name, const std::u16string& params,
                           std::u16string& replacement) {
    if (name == u"title") replacement = u"T&amp;C";
    if (name == u"drop") replacement.clear();
    if (name == u"x") replacement = u"[" + params + u"]";
    if (name == u"tag") replacement = u"<#title>";  // not scanned again
    if (name == u"en") replacement = u"END";
  });
  EXPECT_EQ(producer.Convert(), u"<h1>T&amp;C</h1>[a=1]|<#title> unclosed END");
  // A new template leaves the old result until the next Convert.
  producer.SetTemplate(u"<#drop>");
  EXPECT_EQ(producer.ConvertedHTML(), u"<h1>T&amp;C</h1>[a=1]|<#title> unclosed END");
  EXPECT_EQ(producer.Convert(), u"");
  // Without a handler the template comes back unchanged, unclosed tags too.
  producer.SetOnHTMLTag(nullptr);
  producer.SetTemplate(u"a<#b c>d<#e");
  EXPECT_EQ(producer.Convert(), u"a<#b c>d<#e");
}

TEST(THtmlProducerTest, LargeTemplatesOfTags) {
  // 1 MiB of unclosed tags is one tag; 1 MiB of closed ones one call each.
  // Either is a single pass over the template (the test's time limit tells).
  struct Case {
    std::u16string_view unit;
    bool one_tag;
  };
  for (const Case& c :
       {Case{u"<#a ", true}, Case{u"<#<", true}, Case{u"<#>", false}, Case{u"<<#>", false}}) {
    SCOPED_TRACE(Utf8(c.unit));
    std::u16string templ;
    while (templ.size() < (std::size_t{1} << 20)) templ += c.unit;
    THtmlProducer producer;
    producer.SetTemplate(templ);
    std::size_t calls = 0;
    producer.SetOnHTMLTag(
        [&](TObject*, const std::u16string&, const std::u16string&, std::u16string& replacement) {
          ++calls;
          replacement.clear();
        });
    const std::u16string result = producer.Convert();
    EXPECT_EQ(calls, c.one_tag ? 1 : templ.size() / c.unit.size());
    EXPECT_EQ(result.size(), c.unit[1] == u'<' ? calls : 0);
  }
}

TEST(THtmlProducerTest, HandlerExceptionKeepsTextBeforeTheTag) {
  THtmlProducer producer;
  producer.SetTemplate(u"one <#a> two <#fail> three");
  producer.SetOnHTMLTag([](TObject* sender, const std::u16string& name, const std::u16string&,
                           std::u16string& replacement) {
    EXPECT_NE(dynamic_cast<THtmlProducer*>(sender), nullptr);
    if (name == u"fail") throw std::runtime_error("no");
    replacement = u"A";
  });
  EXPECT_THROW(producer.Convert(), std::runtime_error);
  EXPECT_EQ(producer.ConvertedHTML(), u"one A two ");
}

TEST(THtmlProducerTest, StreamIsACopyOwnedByTheProducer) {
  THtmlProducer producer;
  producer.SetTemplate(u"ab\u00e4\u20ac\u4e2d");
  producer.Convert();
  TStream* first = producer.ConvertedHTMLAsStream();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->Position(), 0);
  std::string bytes(static_cast<std::size_t>(first->Size()), '\0');
  first->ReadBuffer(bytes.data(), static_cast<int>(bytes.size()));
  EXPECT_EQ(bytes, "ab\xe4\x80?");  // the 8-bit code page

  producer.SetTemplate(u"new");
  producer.Convert();
  EXPECT_EQ(first->Size(), 5);  // a copy: Convert doesn't change it
  EXPECT_EQ(producer.ConvertedHTMLAsStream()->Size(), 3);
}

TEST(THtmlProducerTest, FilesAndStreams) {
  zyn::testing::TempDir dir;
  const auto name = [&](const char* file) { return FromUTF8((dir / file).string()); };
  THtmlProducer producer;

  zyn::testing::WriteFileBytes(dir / "t.html", "<p>\xc3\xa4</p>\nline2\r\n\rlast");
  producer.ReadTemplateFromFile(name("t.html"));
  EXPECT_EQ(producer.Template(), u"<p>\u00e4</p>\r\nline2\r\n\r\nlast\r\n");

  zyn::testing::WriteFileBytes(dir / "empty.html", "");
  producer.ReadTemplateFromFile(name("empty.html"));
  EXPECT_EQ(producer.Template(), u"");

  // A missing file raises the text file's error and keeps the template.
  producer.SetTemplate(u"kept");
  EXPECT_THROW(producer.ReadTemplateFromFile(name("missing.html")), zyn::platform::EInOutError);
  EXPECT_EQ(producer.Template(), u"kept");

  // The stream is read from its start, a byte per character, line ends kept.
  zyn::platform::TMemoryStream stream;
  stream.WriteBuffer("a\nb\xe4\x80", 5);
  producer.ReadTemplateFromStream(stream);
  EXPECT_EQ(producer.Template(), u"a\nb\u00e4\u0080");

  // The result goes to the file in UTF-8, with nothing added; bytes that came
  // from a file as non-UTF-8 go back unchanged.
  zyn::testing::WriteFileBytes(dir / "raw.html", "x\xff<#t>");
  producer.ReadTemplateFromFile(name("raw.html"));
  producer.SetOnHTMLTag([](TObject*, const std::u16string&, const std::u16string&,
                           std::u16string& replacement) { replacement = u"\u20ac"; });
  producer.Convert();
  producer.WriteConvertedHTMLToFile(name("out.html"));
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "out.html"), "x\xff\xe2\x82\xac\r\n");
  EXPECT_THROW(producer.WriteConvertedHTMLToFile(name("no/such/dir.html")),
               zyn::platform::EInOutError);
}

}  // namespace
