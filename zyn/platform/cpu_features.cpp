#include "zyn/platform/cpu_features.h"

#include <atomic>

#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__)) && \
    !defined(ZYN_NO_X86_CPUID)
#include <cpuid.h>
#define ZYN_CPUID_AVAILABLE 1
#endif

namespace zyn::platform {
namespace {

std::atomic<bool> extensions_allowed{true};

CpuExtensions AskProcessor() {
  CpuExtensions found;
#ifdef ZYN_CPUID_AVAILABLE
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  bool ymm_saved = false;
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) != 0) {
    found.carryless_multiply = (ecx & (1u << 1)) != 0;
    found.sse41 = (ecx & (1u << 19)) != 0 && (ecx & (1u << 9)) != 0;
    // AVX registers are usable only if the system saves them (OSXSAVE, XCR0).
    if ((ecx & (1u << 27)) != 0 && (ecx & (1u << 28)) != 0) {
      unsigned xcr0_low = 0, xcr0_high = 0;
      __asm__("xgetbv" : "=a"(xcr0_low), "=d"(xcr0_high) : "c"(0));
      ymm_saved = (xcr0_low & 6u) == 6u;
    }
  }
  if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0) {
    found.sha = (ebx & (1u << 29)) != 0;
    found.avx2 = ymm_saved && (ebx & (1u << 5)) != 0;
  }
#endif
  return found;
}

}  // namespace

CpuExtensions UsableCpuExtensions() {
  static const CpuExtensions present = AskProcessor();
  if (!extensions_allowed.load(std::memory_order_relaxed)) return {};
  return present;
}

void AllowCpuExtensions(bool allow) { extensions_allowed.store(allow, std::memory_order_relaxed); }

}  // namespace zyn::platform
