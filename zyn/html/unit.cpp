#include "zyn/html/unit.h"

namespace Zyn_htmlsupport {

void initialization() {}
void Finalization() {}

}  // namespace Zyn_htmlsupport
