// zyn/platform/cpu_features.h
//
// Which processor extensions the library's fast paths may use. The processor
// is asked (CPUID on x86-64) on the first call, never at load; elsewhere every
// extension reads as absent and the portable code runs.

#ifndef ZYN_PLATFORM_CPU_FEATURES_H_
#define ZYN_PLATFORM_CPU_FEATURES_H_

namespace zyn::platform {

// Extensions a fast path needs, as far as they are present and allowed.
struct CpuExtensions {
  bool carryless_multiply = false;  // PCLMULQDQ
  bool sse41 = false;               // SSE4.1 (and with it SSSE3)
  bool sha = false;                 // the SHA extensions (SHA1RNDS4 and kin)
  bool avx2 = false;                // AVX2, with the system saving its registers
};

// The extensions of this processor; all false while AllowCpuExtensions(false)
// is in force.
CpuExtensions UsableCpuExtensions();

// Switches the fast paths off (false) or back on (true, the default) for the
// whole process, so that tests and benchmarks can run the portable code on
// any machine. Results never depend on it.
void AllowCpuExtensions(bool allow);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_CPU_FEATURES_H_
