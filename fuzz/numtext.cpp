// Arbitrary doubles, widths and digit counts for Str and the forms built on
// it; the rest of the input is text for StrToTriState. Str's text must hold
// only number characters, read back to within half a unit of its last digit
// (fixed) or have its exact width (scientific).

#include "zyn/platform/numtext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "zyn/stringl/formatting.h"

namespace {

using zyn::fuzz::Check;

void CheckChars(const std::u16string& s) {
  for (char16_t c : s)
    Check(std::u16string_view(u" -+.0123456789E*NAIF").find(c) != std::u16string_view::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 16) return 0;
  double x;
  std::int32_t width, decimals;
  std::memcpy(&x, data, 8);
  std::memcpy(&width, data + 8, 4);
  std::memcpy(&decimals, data + 12, 4);
  const std::string_view rest(reinterpret_cast<const char*>(data + 16), size - 16);
  const std::u16string text(rest.begin(), rest.end());

  const std::u16string str = zyn::platform::Str(x, width, decimals);
  CheckChars(str);
  Check(str.size() >= static_cast<std::size_t>(std::clamp(width, 0, 255)));
  if (std::isfinite(x) && decimals < 0) {
    Check(str.size() == static_cast<std::size_t>(std::clamp(width, 10, 255)));
  }
  if (std::isfinite(x) && decimals >= 0 && decimals <= 17 && std::fabs(x) < 1e300) {
    const std::string ascii(str.begin(), str.end());
    const std::size_t begin = ascii.find_first_not_of(' ');
    double back = 0;
    std::from_chars(ascii.data() + begin, ascii.data() + ascii.size(), back);
    const double unit = std::pow(10.0, -decimals);
    Check(std::fabs(back - x) <= unit * 0.5 + std::fabs(x) * 1e-15);
  }

  CheckChars(Zyn_stringl::strffForcePlus(x, width, decimals));
  CheckChars(Zyn_stringl::FormatData(x, width, decimals));
  CheckChars(Zyn_stringl::SigDigStr(x, width, decimals, true));
  CheckChars(Zyn_stringl::AutoFormatData(x, decimals));
  Zyn_stringl::TimeString(x, static_cast<std::uint8_t>(width));
  Zyn_stringl::StrToTriState(text);
  Zyn_stringl::SortableNumericString(text, u'.', static_cast<std::int8_t>(width));
  return 0;
}
