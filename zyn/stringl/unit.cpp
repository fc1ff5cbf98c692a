#include "zyn/stringl/unit.h"

#include "zyn/stringl/scramble.h"

namespace Zyn_stringl {

// The frame runs this at the first load only. The tables already hold the
// default seed's values as constant data; seeding again keeps the generator's
// state as a host that loads the library expects it.
void initialization() { InitScramble(kDefaultScrambleSeed); }

void Finalization() {}

}  // namespace Zyn_stringl
