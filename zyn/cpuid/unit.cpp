#include "zyn/cpuid/unit.h"

namespace Zyn_cpuid {

void initialization() {}
void Finalization() {}

}  // namespace Zyn_cpuid
