#include <sched.h>
#include <unistd.h>

#include "zyn/platform/cpuid_instruction.h"

namespace zyn::platform {

int ProcessorCount() {
#ifdef __linux__
  cpu_set_t set;
  CPU_ZERO(&set);
  if (::sched_getaffinity(0, sizeof set, &set) == 0) {
    const int count = CPU_COUNT(&set);
    if (count > 0) return count;
  }
#endif
  const long online = ::sysconf(_SC_NPROCESSORS_ONLN);
  return online > 0 ? static_cast<int>(online) : 1;
}

}  // namespace zyn::platform
