#include "zyn/filesys/unit.h"

#include "zyn/filesys/trees.h"

namespace Zyn_filesys {

void initialization() {}
void Finalization() { ReleaseTreeCopyState(); }

}  // namespace Zyn_filesys
