// THtmlProducer::Convert on templates of 1, 8 and 64 Mi characters with
// 10 000 tags per Mi, beside a plain std::u16string find-and-replace loop doing the same
// replacements, in one run. Both look the replacement up by the tag's name.
// Then the text of a page's body beside the bare gumbo parse of that page.

#include <benchmark/benchmark.h>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <gumbo.h>

#include <random>
#include <string>
#include <unordered_map>

#include "zyn/html/htmlpage.h"
#include "zyn/html/htmlproducer.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_htmlsupport;

constexpr std::size_t kMiB = std::size_t{1} << 20;  // characters of the template
constexpr int kTagsPerMiB = 10000;

const std::unordered_map<std::u16string, std::u16string>& Replacements() {
  static const std::unordered_map<std::u16string, std::u16string> map = {
      {u"title", u"Results of the run"},
      {u"author", u"A. Author"},
      {u"date", u"2026-11-23"},
      {u"value", u"<b>42.0</b>"},
  };
  return map;
}

std::u16string MakeTemplate(std::size_t mebibytes) {
  static const std::u16string kNames[] = {u"Title", u"author", u"DATE", u"value"};
  std::mt19937 rng(42);
  const std::size_t size = mebibytes * kMiB;
  const std::size_t gap = kMiB / kTagsPerMiB;
  std::u16string text;
  text.reserve(size + 64);
  while (text.size() < size) {
    const std::size_t stop = text.size() + gap - 16;
    while (text.size() < stop) {
      text += (rng() % 23 == 0) ? u"<td>" : u"word ";
    }
    text += u"<#";
    text += kNames[rng() % 4];
    text += u" p=1>";
  }
  return text;
}

const std::u16string& Template(std::size_t mebibytes) {
  static std::unordered_map<std::size_t, std::u16string> cache;
  auto it = cache.find(mebibytes);
  if (it == cache.end()) it = cache.emplace(mebibytes, MakeTemplate(mebibytes)).first;
  return it->second;
}

std::u16string Lower(std::u16string s) {
  for (char16_t& c : s)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
  return s;
}

void BM_THtmlProducerConvert(benchmark::State& state) {
  const std::u16string& text = Template(static_cast<std::size_t>(state.range(0)));
  THtmlProducer producer;
  producer.SetTemplate(text);
  producer.SetOnHTMLTag(
      [](TObject*, const std::u16string& name, const std::u16string&, std::u16string& replacement) {
        const auto it = Replacements().find(name);
        if (it != Replacements().end()) replacement = it->second;
      });
  for (auto _ : state) benchmark::DoNotOptimize(producer.Convert().size());
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size() * 2));
}

// What a user would write by hand: find "<#", find ">", look the name up.
void BM_FindAndReplaceLoop(benchmark::State& state) {
  const std::u16string& text = Template(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::u16string out;
    std::size_t pos = 0;
    while (true) {
      const std::size_t start = text.find(u"<#", pos);
      const std::size_t end = start == std::u16string::npos ? start : text.find(u'>', start);
      if (end == std::u16string::npos) break;
      out.append(text, pos, start - pos);
      const std::size_t blank = text.find(u' ', start);
      const std::size_t name_end = blank < end ? blank : end;
      const auto it = Replacements().find(Lower(text.substr(start + 2, name_end - start - 2)));
      if (it != Replacements().end()) {
        out += it->second;
      } else {
        out.append(text, start, end - start + 1);
      }
      pos = end + 1;
    }
    out.append(text, pos);
    benchmark::DoNotOptimize(out.size());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size() * 2));
}

// A page of 1 Mi characters: the text of its body, beside what the parser
// alone costs on the same page in UTF-8 (parse and release).
const std::u16string& Page() {
  static const std::u16string page = [] {
    std::u16string p = DefaultHTMLHead(u"Page", u"", u"", u"en", true);
    while (p.size() < kMiB)
      p += u"<div class=\"c\"><p>Some <b>bold</b> text &amp; more words</p>\r\n"
           u"<ul><li>one</li><li>two &auml;</li></ul></div>\r\n";
    return p + DefaultHTMLFoot(true);
  }();
  return page;
}

void BM_ConvertHTMLBodyToText(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(ConvertHTMLBodyToText(Page(), u'\n').size());
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * Page().size() * 2));
}

void BM_GumboParseAlone(benchmark::State& state) {
  const std::string utf8 = zyn::platform::ToUTF8(Page());
  for (auto _ : state) {
    GumboOutput* output = gumbo_parse_with_options(&kGumboDefaultOptions, utf8.data(), utf8.size());
    benchmark::DoNotOptimize(output->root);
    gumbo_destroy_output(&kGumboDefaultOptions, output);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * Page().size() * 2));
}

BENCHMARK(BM_ConvertHTMLBodyToText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GumboParseAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_THtmlProducerConvert)->Arg(1)->Arg(8)->Arg(64)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindAndReplaceLoop)->Arg(1)->Arg(8)->Arg(64)->Unit(benchmark::kMillisecond);

}  // namespace

// Large strings come from the heap and go back to it, not from fresh pages
// of the system on every allocation: otherwise the 64 MiB rows of both sides
// measure the kernel zeroing pages rather than the conversion.
int main(int argc, char** argv) {
#if defined(__GLIBC__)
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
#endif
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
