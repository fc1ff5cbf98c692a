#include "zyn/cpuid/cpuid.h"

#include <cstdint>

namespace Zyn_cpuid {

const std::array<std::u16string_view, 32> CPUFeatureNames = {
    u"Floating Point Unit",
    u"V86 Mode Extensions",
    u"Debug Extensions - I/O breakpoints supported",
    u"Page Size Extensions (4 MB pages supported)",
    u"Time Stamp Counter and RDTSC instruction are available",
    u"Model Specific Registers",
    u"Physical Address Extensions (36-bit address, 2MB pages)",
    u"Machine Check Exception supported",
    u"Compare Exchange Eight Byte instruction available",
    u"Local APIC present (multiprocessor operation support)",
    u"Fast system calls (AMD only)",
    u"Fast system calls",
    u"Memory Type Range Registers",
    u"Page Global Enable",
    u"Machine Check Architecture",
    u"Conditional MOVe instructions",
    u"Page Attribute Table",
    u"36 bit Page Size Extensions",
    u"Processor Serial Number",
    u"Cache Flush",
    u"reserved",
    u"Debug Trace Store",
    u"ACPI support",
    u"MultiMedia Extensions",
    u"FXSAVE and FXRSTOR instructions",
    u"SSE instructions",
    u"SSE2 (WNI) instructions",
    u"self snoop",
    u"reserved",
    u"Automatic clock control",
    u"IA64 instructions",
    u"3DNow! instructions available",
};

namespace {

// Four characters from a word, lowest byte first.
void AppendWord(std::u16string& s, std::uint32_t word) {
  for (int shift = 0; shift < 32; shift += 8) s += static_cast<char16_t>((word >> shift) & 0xFF);
}

void AppendHex8(std::u16string& s, std::uint32_t word) {
  static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  for (int shift = 28; shift >= 0; shift -= 4) s += kDigits[(word >> shift) & 0xF];
}

}  // namespace

bool CPU_IDSupport() { return zyn::platform::CpuIdInstructionPresent(); }

bool LevelAccepted(std::uint32_t level, std::uint32_t highest_standard,
                   std::uint32_t highest_extended) {
  return static_cast<std::int32_t>(level) <= static_cast<std::int32_t>(highest_standard) ||
         level <= highest_extended;
}

TCPUIDResult CPUID(std::uint32_t level) {
  if (!CPU_IDSupport()) {
    throw EZYNCpuIdError(u"Cannot acquire CPU information (CPUID not supported)");
  }
  const std::uint32_t highest_standard = zyn::platform::RunCpuId(kLevelVendor)[0];
  const std::uint32_t highest_extended = zyn::platform::RunCpuId(kLevelHighestExtended)[0];
  if (!LevelAccepted(level, highest_standard, highest_extended)) {
    throw EZYNCpuIdError(u"CPUID: execution level not supported");
  }
  return zyn::platform::RunCpuId(level);
}

std::u16string DecodeVendorString(const TCPUIDResult& level0) {
  std::u16string s;
  AppendWord(s, level0[1]);
  AppendWord(s, level0[3]);
  AppendWord(s, level0[2]);
  // The runtime's string ended at the first zero byte.
  const std::size_t nul = s.find(u'\0');
  if (nul != std::u16string::npos) s.resize(nul);
  return s.size() < 12 ? std::u16string(u"Unknown") : s;
}

int DecodeBrandID(const TCPUIDResult& level1) { return static_cast<int>(level1[1] & 0xFF); }

std::u16string DecodeSerialNumber(const TCPUIDResult& level1) {
  std::u16string s;
  AppendHex8(s, level1[0]);
  AppendHex8(s, level1[3]);
  AppendHex8(s, level1[2]);
  return s;
}

std::u16string DecodeMarketName(std::span<const TCPUIDResult, 3> levels) {
  std::u16string s;
  for (const TCPUIDResult& level : levels) {
    for (std::uint32_t word : level) AppendWord(s, word);
  }
  std::size_t first = 0, last = s.size();
  while (first < last && s[first] <= 32) ++first;
  while (last > first && s[last - 1] <= 32) --last;
  s = s.substr(first, last - first);
  for (char16_t c : s) {
    if (c < 32) return u"unknown";
  }
  return s;
}

std::u16string CPU_VendorString() { return DecodeVendorString(CPUID(kLevelVendor)); }
std::uint32_t CPU_Signature() { return CPUID(kLevelSignature)[0]; }
std::uint32_t CPU_FeatureSet() { return CPUID(kLevelSignature)[3]; }
std::uint32_t CPU_ExtendedFeatureSet() { return CPUID(kLevelExtendedFeatures)[3]; }
int CPU_BrandID() { return DecodeBrandID(CPUID(kLevelSignature)); }
int CPU_Type() { return SignatureType(CPU_Signature()); }
bool CPU_OverDrive() { return CPU_Type() == 1; }
int CPU_Family() { return SignatureFamily(CPU_Signature()); }
int CPU_ExFamily() { return SignatureExFamily(CPU_Signature()); }
int CPU_Model() { return SignatureModel(CPU_Signature()); }
int CPU_ExModel() { return SignatureExModel(CPU_Signature()); }
int CPU_Stepping() { return SignatureStepping(CPU_Signature()); }
std::u16string CPU_SerialNumber() { return DecodeSerialNumber(CPUID(kLevelSignature)); }

std::u16string CPU_MarketName() {
  const std::array<TCPUIDResult, 3> levels = {CPUID(kLevelMarketName), CPUID(kLevelMarketName + 1),
                                              CPUID(kLevelMarketName + 2)};
  return DecodeMarketName(levels);
}

bool CPU_FDIVBugPresent() {
  // volatile keeps the compiler from folding the division at build time,
  // which would test the compiler's arithmetic instead of the processor's.
  volatile double x = 4195835.0;
  volatile double y = 3145727.0;
  const double r = x / y * y - x;
  return !(r == 0.0);
}

int CPU_Count() { return zyn::platform::ProcessorCount(); }

}  // namespace Zyn_cpuid
