// ExtractHTMLBody and ConvertHTMLBodyToText on arbitrary documents (UTF-8,
// or raw UTF-16 units when the first byte is odd): the parser must take
// anything, and the body must be a piece of the document.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "fuzz/fuzz_support.h"
#include "zyn/html/htmlpage.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_htmlsupport;

using zyn::fuzz::Check;

using zyn::fuzz::Text;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string html = Text(data, size);
  try {
    const std::u16string body = ExtractHTMLBody(html);
    Check(body.empty() || html.find(body) != std::u16string::npos);
    const std::u16string text = ConvertHTMLBodyToText(html, u'\n');
    // Text comes only from the document's characters and references.
    Check(text.empty() || !html.empty());
  } catch (const std::bad_alloc&) {
    // The parser's memory ran out: reported, nothing else.
  }
  return 0;
}
