#include "zyn/filesys/unit.h"

namespace Zyn_filesys {

void initialization() {}
void Finalization() {}

}  // namespace Zyn_filesys
