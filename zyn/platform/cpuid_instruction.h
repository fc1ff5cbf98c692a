// zyn/platform/cpuid_instruction.h
//
// The x86 CPUID instruction and the number of processors this process may
// use. On other processors, or in a build configured with ZYN_X86_CPUID off,
// the instruction reads as absent.

#ifndef ZYN_PLATFORM_CPUID_INSTRUCTION_H_
#define ZYN_PLATFORM_CPUID_INSTRUCTION_H_

#include <array>
#include <cstdint>

namespace zyn::platform {

// The four words one CPUID level gives: EAX, EBX, ECX, EDX, in this order.
using CpuIdWords = std::array<std::uint32_t, 4>;

// True if the processor has CPUID: bit 21 of the flags register can be
// toggled. Always false where the instruction can't exist.
bool CpuIdInstructionPresent();

// Runs CPUID with `level` in EAX (and 0 in ECX), unchecked: a level beyond
// the processor's range gives whatever the processor gives for it. All zero
// where the instruction doesn't exist.
CpuIdWords RunCpuId(std::uint32_t level);

// The processors this process may run on (its affinity mask), or the
// processors online if that can't be asked; at least 1.
int ProcessorCount();

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_CPUID_INSTRUCTION_H_
