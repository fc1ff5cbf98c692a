#include "zyn/platform/cpuid_instruction.h"

#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__)) && \
    !defined(ZYN_NO_X86_CPUID)
#include <cpuid.h>
#define ZYN_HAVE_X86_CPUID 1
#endif

namespace zyn::platform {

#ifdef ZYN_HAVE_X86_CPUID

namespace {

#if defined(__x86_64__)
using FlagsWord = unsigned long long;
FlagsWord ReadFlags() { return __builtin_ia32_readeflags_u64(); }
void WriteFlags(FlagsWord f) { __builtin_ia32_writeeflags_u64(f); }
#else
using FlagsWord = unsigned int;
FlagsWord ReadFlags() { return __builtin_ia32_readeflags_u32(); }
void WriteFlags(FlagsWord f) { __builtin_ia32_writeeflags_u32(f); }
#endif

constexpr FlagsWord kIdFlag = 0x200000;

}  // namespace

bool CpuIdInstructionPresent() {
  const FlagsWord before = ReadFlags();
  WriteFlags(before ^ kIdFlag);
  const FlagsWord after = ReadFlags();
  WriteFlags(before);  // leave the flag as it was
  return ((before ^ after) & kIdFlag) != 0;
}

CpuIdWords RunCpuId(std::uint32_t level) {
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  __cpuid_count(level, 0, eax, ebx, ecx, edx);
  return {eax, ebx, ecx, edx};
}

#else

bool CpuIdInstructionPresent() { return false; }

CpuIdWords RunCpuId(std::uint32_t) { return {0, 0, 0, 0}; }

#endif

}  // namespace zyn::platform
