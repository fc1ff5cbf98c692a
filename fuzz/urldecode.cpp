// URLDecode on arbitrary text (UTF-8, or raw UTF-16 units when the first
// byte is odd), with the round trips of URLEncode and the other URL tools.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/fuzz_support.h"
#include "zyn/html/urltools.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_htmlsupport;

using zyn::fuzz::Check;

using zyn::fuzz::Text;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string s = Text(data, size);
  const std::u16string decoded = URLDecode(s);
  Check(decoded.size() <= s.size());
  Check(URLDecode(URLEncode(URLEncode(s))) == s);
  if (decoded == s) Check(URLDecode(URLEncode(s)) == s);

  const std::u16string path = ExtractHTTPPath(s);
  Check(path.size() <= s.size());
  bool in_tag = size > 0 && (data[0] & 2) != 0;
  const bool skip_numbers = size > 0 && (data[0] & 4) != 0;
  Check(CountWordsHTML(s, skip_numbers, in_tag) <= static_cast<int>(s.size()) / 2 + 1);
  return 0;
}
