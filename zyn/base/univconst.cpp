#include "zyn/base/univconst.h"

namespace Zyn_univconst {

const std::array<double, 1001> uc_LnFactorial = {
#include "zyn/base/lnfactorial_table.inc"
};

void initialization() {}
void Finalization() {}

}  // namespace Zyn_univconst
