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

#include "zyn/platform/text.h"

namespace {

using namespace Zyn_htmlsupport;

void Check(bool condition) {
  if (!condition) std::abort();
}

std::u16string Text(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || (data[0] & 1) == 0)
    return zyn::platform::FromUTF8({reinterpret_cast<const char*>(data), size});
  std::u16string units((size - 1) / 2, u'\0');
  std::memcpy(units.data(), data + 1, units.size() * 2);
  return units;
}

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
