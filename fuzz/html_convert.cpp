// Runs THtmlProducer::Convert on arbitrary templates (read as UTF-8), once
// with a handler that replaces every tag and once without. Without a handler
// the template must come back unchanged; with one, the tags it was given
// must be the template's pieces that start with "<#", in order, and the
// result the template with each of them replaced.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "zyn/html/htmlproducer.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_htmlsupport;

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string text = zyn::platform::FromUTF8({reinterpret_cast<const char*>(data), size});
  THtmlProducer producer;
  producer.SetTemplate(text);
  Check(producer.Convert() == text);

  // Each tag the handler saw, with the replacement it gave.
  std::vector<std::pair<std::u16string, std::u16string>> tags;
  producer.SetOnHTMLTag([&](TObject*, const std::u16string& name, const std::u16string& params,
                            std::u16string& replacement) {
    Check(replacement.starts_with(u"<#") && name.find(u' ') == std::u16string::npos);
    Check(params.empty() || (params.front() != u' ' && params.back() != u' '));
    Check(name.size() + params.size() + 2 <= replacement.size());
    std::u16string mine = u"[" + name + u"|" + params + u"]";
    tags.emplace_back(replacement, mine);
    replacement = std::move(mine);
  });
  const std::u16string result = producer.Convert();
  Check(result == producer.ConvertedHTML());

  // Every tag starts at the next "<#" of the template; the result is the
  // template with each replaced.
  std::size_t pos = 0;
  std::u16string expected;
  for (const auto& [tag, replacement] : tags) {
    const std::size_t at = text.find(u"<#", pos);
    Check(at != std::u16string::npos && text.compare(at, tag.size(), tag) == 0);
    expected.append(text, pos, at - pos);
    expected += replacement;
    pos = at + tag.size();
  }
  Check(text.find(u"<#", pos) == std::u16string::npos);
  expected.append(text, pos);
  Check(result == expected);

  TStream* stream = producer.ConvertedHTMLAsStream();
  Check(stream->Position() == 0 && stream->Size() == static_cast<std::int64_t>(result.size()));
  return 0;
}
