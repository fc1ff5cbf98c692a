// Feeds arbitrary text to the three number scanners. The first byte picks the
// start position, the decimal separator and whether exponents count; the rest
// is the text, read as UTF-8.
#include "zyn/base/scanners.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "zyn/base/univconst.h"
#include "zyn/platform/text.h"

namespace {

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t control = data[0];
  const std::u16string text =
      zyn::platform::FromUTF8({reinterpret_cast<const char*>(data + 1), size - 1});
  const int length = static_cast<int>(text.size());
  const int start = (control & 7) - 1;  // -1 to 6
  const int first = start < 1 ? 1 : start;

  int pos = start;
  zyn::internal::ScanDecimal(text, pos);
  Check(text.empty() ? pos == start : pos >= first && pos <= std::max(first, length + 1));

  pos = start;
  zyn::internal::ScanHex(text, pos);
  Check(pos >= first && pos <= std::max(first, length + 1));

  pos = start;
  const auto sep = static_cast<Zyn_zynbase::TDecPSep>((control >> 3) & 3);
  const double value = zyn::internal::ScanFPNum(text, (control & 0x20) != 0, sep, pos);
  Check(std::isfinite(value) && std::fabs(value) <= Zyn_univconst::uc_MaxDouble);
  Check(pos >= first && pos <= std::max(first, length + 1));
  return 0;
}
