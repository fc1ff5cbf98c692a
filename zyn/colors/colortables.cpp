#include "zyn/colors/colortables.h"

#include <algorithm>

namespace Zyn_zyncolors {

// The tables are transcribed by tools/gen_colors.py.
#include "zyn/colors/colortables.inc"

std::u16string ObtainColorName(TColor Color) {
  const auto row = std::find(AllZYNColors.begin(), AllZYNColors.end(), Color);
  if (row == AllZYNColors.end()) return ColorToHexStr(Color);
  return std::u16string(
      AllZYNColorNames.Rows[static_cast<std::size_t>(row - AllZYNColors.begin())]);
}

}  // namespace Zyn_zyncolors
