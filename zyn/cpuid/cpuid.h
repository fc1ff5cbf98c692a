// zyn/cpuid/cpuid.h
//
// What processor the library runs on: vendor, signature fields, feature
// flags, market name and processor count, read through the CPUID
// instruction. Decoding is kept apart from reading: the Decode* functions
// turn the words of one level into a result and never touch the processor.

#ifndef ZYN_CPUID_CPUID_H_
#define ZYN_CPUID_CPUID_H_

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "zyn/cpuid/unit.h"
#include "zyn/platform/cpuid_instruction.h"

namespace Zyn_cpuid {

// The four words of one level: EAX, EBX, ECX, EDX.
using TCPUIDResult = zyn::platform::CpuIdWords;

// The bits of CPU_FeatureSet; each value's ordinal is its bit number.
enum TCPUFeatures : std::uint8_t {
  cpuft_fpu,
  cpuft_vme,
  cpuft_de,
  cpuft_pse,
  cpuft_tsc,
  cpuft_msr,
  cpuft_pae,
  cpuft_mce,
  cpuft_cx8,
  cpuft_apic,
  cpuft_sepamd,
  cpuft_sep,
  cpuft_mtrr,
  cpuft_pge,
  cpuft_mca,
  cpuft_cmov,
  cpuft_pat,
  cpuft_pse36,
  cpuft_serial,
  cpuft_clflush,
  cpuft_reserved1,
  cpuft_dts,
  cpuft_acpi,
  cpuft_mmx,
  cpuft_xsr,
  cpuft_simd,
  cpuft_simd2,
  cpuft_ss,
  cpuft_reserved2,
  cpuft_tm,
  cpuft_ia64,
  cpuft_3dnow,
};

// A description of each feature bit, indexed by TCPUFeatures.
extern const std::array<std::u16string_view, 32> CPUFeatureNames;

// The levels this unit reads.
inline constexpr std::uint32_t kLevelVendor = 0;
inline constexpr std::uint32_t kLevelSignature = 1;
inline constexpr std::uint32_t kLevelHighestExtended = 0x80000000;
inline constexpr std::uint32_t kLevelExtendedFeatures = 0x80000001;
inline constexpr std::uint32_t kLevelMarketName = 0x80000002;  // to 0x80000004

// ---- Reading --------------------------------------------------------------

// True if the processor has the CPUID instruction (bit 21 of the flags
// register can be toggled); false on every processor that isn't x86.
bool CPU_IDSupport();

// The words of `level`. Raises EZYNCpuIdError "Cannot acquire CPU
// information (CPUID not supported)" without the instruction, and "CPUID:
// execution level not supported" unless LevelAccepted says yes.
TCPUIDResult CPUID(std::uint32_t level);

// True if `level`, as a signed number, is at most `highest_standard`, or, as
// an unsigned number, at most `highest_extended`. Levels from 0x80000000 on
// are negative as signed numbers and so always pass.
bool LevelAccepted(std::uint32_t level, std::uint32_t highest_standard,
                   std::uint32_t highest_extended);

// ---- Live queries (each reads the processor afresh) -----------------------
// All but CPU_IDSupport, CPU_FDIVBugPresent and CPU_Count raise as CPUID does.

std::u16string CPU_VendorString();
std::uint32_t CPU_Signature();
std::uint32_t CPU_FeatureSet();
std::uint32_t CPU_ExtendedFeatureSet();
int CPU_BrandID();
int CPU_Type();
bool CPU_OverDrive();
int CPU_Family();
int CPU_ExFamily();
int CPU_Model();
int CPU_ExModel();
int CPU_Stepping();
std::u16string CPU_SerialNumber();
std::u16string CPU_MarketName();

// True if 4195835 / 3145727 * 3145727 - 4195835 isn't exactly 0 (the
// division fault of early Pentium processors); needs no CPUID.
bool CPU_FDIVBugPresent();

// The processors this process may run on.
int CPU_Count();

// ---- Decoders -------------------------------------------------------------

// EBX, EDX, ECX of level 0 as twelve characters, lowest byte first; "Unknown"
// if a zero byte shortens it below twelve.
std::u16string DecodeVendorString(const TCPUIDResult& level0);
// The low byte of EBX of level 1.
int DecodeBrandID(const TCPUIDResult& level1);
// EAX, EDX, ECX of level 1 as 24 upper-case hexadecimal digits.
std::u16string DecodeSerialNumber(const TCPUIDResult& level1);
// The 48 characters of levels 0x80000002 to 0x80000004, trimmed of every
// character up to code 32 at both ends; "unknown" if one below 32 remains.
std::u16string DecodeMarketName(std::span<const TCPUIDResult, 3> levels);

// Fields of a signature; each is its own bit field, not combined with another.
constexpr int SignatureStepping(std::uint32_t sig) { return static_cast<int>(sig & 0xF); }
constexpr int SignatureModel(std::uint32_t sig) { return static_cast<int>((sig >> 4) & 0xF); }
constexpr int SignatureFamily(std::uint32_t sig) { return static_cast<int>((sig >> 8) & 0xF); }
constexpr int SignatureType(std::uint32_t sig) { return static_cast<int>((sig >> 12) & 0x3); }
constexpr int SignatureExModel(std::uint32_t sig) { return static_cast<int>((sig >> 16) & 0xF); }
constexpr int SignatureExFamily(std::uint32_t sig) { return static_cast<int>((sig >> 20) & 0xFF); }

}  // namespace Zyn_cpuid

#endif  // ZYN_CPUID_CPUID_H_
