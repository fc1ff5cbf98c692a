#include "zyn/dstruct/unit.h"

namespace Zyn_dstruct {

void initialization() {}
void Finalization() {}

}  // namespace Zyn_dstruct
