#include "zyn/colors/unit.h"

namespace Zyn_zyncolors {

void initialization() {}
void Finalization() {}

}  // namespace Zyn_zyncolors
