#include "zyn/streams/unit.h"

namespace Zyn_streams {

void initialization() {}
void Finalization() {}

}  // namespace Zyn_streams
