// The character-reference tools on arbitrary text (UTF-8, or raw UTF-16
// units when the first byte is odd): resolving never grows a text, escaping
// and resolving give the text back, and a single reference read back gives
// the character it was written for.
#include "zyn/html/entities.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/fuzz_support.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_htmlsupport;

using zyn::fuzz::Check;

using zyn::fuzz::Text;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string s = Text(data, size);
  // A reference never gives more units than it takes ("&#x10000" is 8, a
  // pair of surrogates 2; the longest expansion, "&nGt;", gives 2 for 5).
  Check(ResolveHTMLEntities(s).size() <= s.size());
  Check(ResolveHTMLEntities(MakeStringHTMLCompatible(s)) == s);

  const char16_t c = HTMLEntityToAnsi(s);
  if (c != 0) {
    const std::u16string resolved = ResolveHTMLEntities(s.starts_with(u'&') ? s : u"&" + s);
    Check(resolved == std::u16string(1, c) || !s.ends_with(u';'));
  }
  if (!s.empty()) {
    const std::u16string entity = AnsiToHTMLEntity(s[0]);
    Check(entity.size() == 1 || HTMLEntityToAnsi(entity) == s[0]);
  }
  return 0;
}
