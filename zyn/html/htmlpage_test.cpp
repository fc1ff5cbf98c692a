#include "zyn/html/htmlpage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <regex>
#include <string>

#include "testing/zyn_testing.h"
#include "zyn/html/entities.h"
#include "zyn/html/htmlproducer.h"

namespace {

using namespace Zyn_htmlsupport;
using zyn::platform::FromUTF8;
using zyn::platform::ToUTF8;
using zyn::testing::Utf8;

TEST(DefaultHTMLPageTest, FrameOfAPage) {
  EXPECT_EQ(DefaultHTMLHead(u"A & B", u"style.css?v=1&x=\"2\"", u"About <this>", u"de", true),
            u"<!DOCTYPE html>\r\n<html lang=\"de\">\r\n<head>\r\n<meta charset=\"utf-8\">\r\n"
            u"<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\r\n"
            u"<meta name=\"description\" content=\"About &lt;this&gt;\">\r\n"
            u"<title>A &amp; B</title>\r\n"
            u"<link rel=\"stylesheet\" href=\"style.css?v=1&amp;x=&quot;2&quot;\">\r\n"
            u"</head>\r\n<body>\r\n");
  EXPECT_EQ(DefaultHTMLHead(u"", u"", u"", u"", false),
            u"<!DOCTYPE html>\r\n<html>\r\n<head>\r\n<meta charset=\"utf-8\">\r\n"
            u"<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\r\n"
            u"<title>Untitled</title>\r\n</head>\r\n");
  EXPECT_EQ(DefaultHTMLFoot(true), u"</body>\r\n</html>\r\n");
  EXPECT_EQ(DefaultHTMLFoot(false), u"</html>\r\n");
}

TEST(ExtractHTMLBodyTest, CutsTheBodyByTheParsersPositions) {
  struct Case {
    std::u16string_view html, body;
  };
  const Case cases[] = {
      {u"", u""},
      {u"<html><body class=x>\n<p>a</p>\n</body></html>", u"\n<p>a</p>\n"},
      {u"<BODY>x</BODY >tail", u"x"},
      {u"<title>t</title><p>x", u"<p>x"},
      {u"<!-- c --><p>x</p><!-- d -->", u"<p>x</p><!-- d -->"},
      {u"plain", u"plain"},
      {u"<head></head><body></body>", u""},
      {u"<frameset><frame></frameset>", u""},
      {u"<body>\u00e4\U0001F600\xd800<b>\u20ac</b></body>", u"\u00e4\U0001F600\xd800<b>\u20ac</b>"},
      {u"<body><div><p>open", u"<div><p>open"},
      {u"<p>a<body id=2>b", u"<p>a<body id=2>b"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.html));
    EXPECT_EQ(ExtractHTMLBody(c.html), c.body);
  }
}

TEST(ConvertHTMLBodyToTextTest, RendersTextAsABrowser) {
  struct Case {
    std::u16string_view html, text;
  };
  const Case cases[] = {
      {u"", u""},
      {u"  Hello   <b>wo</b>rld \n ", u"Hello world"},
      {u"a <b> b </b> c", u"a b c"},
      {u"<p>one</p><p>two</p>", u"one\n\ntwo"},
      {u"<h1> T </h1>x<div>y</div>z", u"T\nx\ny\nz"},
      {u"a<br>b<br><br>c", u"a\nb\n\nc"},
      {u"a <br> b", u"a\nb"},
      {u"<ul><li>1</li><li> 2 </li></ul>", u"1\n2"},
      {u"<table><tr><td>a</td><td> b </td></tr><tr><th>c</th><td>d</td></tr></table>x",
       u"a\tb\nc\td\nx"},
      {u"<pre>\n a  b\n  c</pre>d", u" a  b\n  c\nd"},
      {u"x<script>var a = '<p>';</script><style>p {}</style><!-- no -->y", u"xy"},
      {u"<p hidden>no</p><template>no</template><noscript>no</noscript>yes", u"yes"},
      {u"&amp; &lt;&auml;&#x20AC;&nbsp;", u"& <\u00e4\u20ac\u00a0"},
      {u"<title>no</title><head><body><p>a", u"a"},
      {u"<frameset></frameset>", u""},
      {u"<svg><title>no</title><text>svg</text></svg>", u"svg"},
      {u"<div><div><p>deep</p></div></div>", u"deep"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.html));
    EXPECT_EQ(ConvertHTMLBodyToText(c.html, u'\n'), c.text);
  }
  EXPECT_EQ(ConvertHTMLBodyToText(u"a<br>b<p>c</p>", u'|'), u"a|b||c");
  // A body as ExtractHTMLBody gives it reads like the page.
  const std::u16string page = u"<title>t</title><body><p>x <i>y</i></p>z</body>";
  EXPECT_EQ(ConvertHTMLBodyToText(ExtractHTMLBody(page), u'\n'),
            ConvertHTMLBodyToText(page, u'\n'));
  // Nesting deeper than a recursive walk could take.
  std::u16string deep;
  for (int i = 0; i < 100000; ++i) deep += u"<span>";
  deep += u"x";
  EXPECT_EQ(ConvertHTMLBodyToText(deep, u'\n'), u"x");
  EXPECT_EQ(ExtractHTMLBody(deep), deep);
}

// Runs the browser on `page` and gives the DOM it dumps; fails the test with
// a clear message when the browser is missing or doesn't answer in time.
std::string DumpDomWithChromium(const std::filesystem::path& page,
                                const std::filesystem::path& profile) {
  const std::string command =
      "timeout 60 chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
      "--disable-background-networking --disable-component-update --disable-sync "
      "--user-data-dir='" +
      profile.string() + "' --dump-dom 'file://" + page.string() + "' 2>/dev/null";
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::string dom;
  char buffer[4096];
  for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) dom.append(buffer, n);
  pclose(pipe);
  return dom;
}

// A page made by THtmlProducer with the default frame opens in a real
// browser; the browser's own innerText of the body equals our text of it,
// and the DOM it gives back has the same body text.
TEST(BrowserTest, ChromiumShowsTheSameBodyText) {
  ASSERT_EQ(std::system("command -v chromium >/dev/null 2>&1"), 0)
      << "chromium is not installed: run tools/bootstrap.sh (Debian package chromium)";
  zyn::testing::TempDir dir;
  const std::u16string body =
      u"<h1>Results &amp; notes</h1>\r\n"
      u"<p>Hello   <b>wo</b>rld, caf\u00e9 \u20ac 5 &lt; 6 &auml;&nbsp;x\r\n  next</p>text\r\n"
      u"<div>div <span> sp </span> end</div><ul><li>one</li><li> two </li></ul>\r\n"
      u"<table><tr><td>a</td><td> b </td></tr><tr><td>c</td><td>d</td></tr></table>\r\n"
      u"<pre>\r\n pre  x\r\n  y</pre>tail<br>after<!-- hidden --><style>p{}</style>\r\n"
      u"<p hidden>not shown</p><blockquote>quote \U0001F600</blockquote>\r\n"
      u"<div><h2>Head</h2><p>a<br></p><p>b</p></div><dl><dt>term</dt><dd>def  one</dd></dl>\r\n"
      u"<ol><li>x<ul><li>nested</li></ul></li><li>y</li></ol>\r\n"
      u"<p>  lead<b> bold </b> <i>it</i>  trail  </p><span>in</span>line<span> </span>next\r\n"
      u"<section><article>art</article></section><hr>after hr\r\n"
      u"<table><caption>cap</caption><thead><tr><th>h1</th><th>h2</th></tr></thead>\r\n"
      u"<tbody><tr><td><p>pc</p></td><td>x</td></tr></tbody></table>\r\n"
      u"&ThickSpace;&fjlig; &#x1F600; &copy2019 <center>c</center><address>addr</address>\r\n"
      u"<textarea>ta</textarea><select><option>o1<option>o2</select><button>btn</button>\r\n"
      u"<details open><summary>sum</summary>det</details><img alt=\"alt\">x<sup>2</sup>\r\n"
      u"<div>  </div><div>y</div><br><br>end<br>";
  THtmlProducer producer;
  producer.SetTemplate(u"<#head><#body><#probe><#foot>");
  producer.SetOnHTMLTag([&](TObject*, const std::u16string& name, const std::u16string&,
                            std::u16string& replacement) {
    if (name == u"head")
      replacement = DefaultHTMLHead(u"Browser test", u"", u"A test page", u"en", true);
    if (name == u"body") replacement = body;
    // Hands the browser's text of the body back through the dumped DOM.
    if (name == u"probe")
      replacement =
          u"<script>document.documentElement.setAttribute('data-text', "
          u"document.body.innerText)</script>\r\n";
    if (name == u"foot") replacement = DefaultHTMLFoot(true);
  });
  const std::u16string page = producer.Convert();
  producer.WriteConvertedHTMLToFile(FromUTF8((dir / "page.html").string()));
  std::filesystem::create_directory(dir / "profile");

  const std::string dom = DumpDomWithChromium(dir / "page.html", dir / "profile");
  ASSERT_NE(dom.find("</html>"), std::string::npos) << "chromium gave no page:\n" << dom;
  std::smatch m;
  ASSERT_TRUE(std::regex_search(dom, m, std::regex("data-text=\"([^\"]*)\""))) << dom;

  const std::u16string ours = ConvertHTMLBodyToText(page, u'\n');
  EXPECT_EQ(Utf8(ours), ToUTF8(ResolveHTMLEntities(FromUTF8(m[1].str()))));
  EXPECT_EQ(Utf8(ConvertHTMLBodyToText(FromUTF8(dom), u'\n')), Utf8(ours));
  EXPECT_NE(ours.find(u"caf\u00e9 \u20ac 5 < 6 \u00e4\u00a0x next"), std::u16string::npos);
}

}  // namespace
