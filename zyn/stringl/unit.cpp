#include "zyn/stringl/unit.h"

namespace Zyn_stringl {

void initialization() {}
void Finalization() {}

}  // namespace Zyn_stringl
