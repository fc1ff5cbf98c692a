// Feeds arbitrary text to the string splitters and decoders. The first byte
// picks a field index and an escape character, the second the length of the
// separator taken from the front of the rest; what remains is the text. All
// of it is read as UTF-8.
#include "zyn/stringl/words.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_stringl;

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const int index = (data[0] & 0x0F) - 1;
  const char16_t escape = (data[0] & 0x10) ? u'\\' : u',';
  const std::u16string all =
      zyn::platform::FromUTF8({reinterpret_cast<const char*>(data + 2), size - 2});
  const std::size_t sep_length = std::min<std::size_t>(data[1] & 3, all.size());
  const std::u16string_view separator = std::u16string_view(all).substr(0, sep_length);
  const std::u16string_view text = std::u16string_view(all).substr(sep_length);

  TOpenStringArray tokens;
  const int count = Tokenize(text, separator, tokens);
  Check(count >= 1 && count <= kMaxTokens && tokens.size() == static_cast<std::size_t>(count));
  std::u16string joined = tokens[0];
  for (std::size_t i = 1; i < tokens.size(); ++i) joined += std::u16string(separator) + tokens[i];
  Check(joined == text);

  const int escaped = Tokenize(text, separator, escape, tokens);
  Check(escaped >= 1 && escaped <= count && tokens.size() == static_cast<std::size_t>(escaped));

  const std::u16string field = ExtractSubString(text, index, separator);
  Check(field.empty() || text.find(field) != std::u16string_view::npos);

  Check(ProcessHexChars(text).size() <= text.size());

  const std::u16string decoded = UUDecodeStr(text);
  for (char16_t c : decoded) Check(c <= 0xFF);
  Check(UUDecodeStr(UUEncodeStr(decoded)) == decoded);
  return 0;
}
