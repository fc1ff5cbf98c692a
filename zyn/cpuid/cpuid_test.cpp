#include "zyn/cpuid/cpuid.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "testing/zyn_testing.h"

namespace Zyn_cpuid {
namespace {

using zyn::testing::Utf8;

// Packs 48 bytes into the twelve words of the market-name levels, lowest
// byte first, as the processor delivers them.
std::array<TCPUIDResult, 3> MarketLevels(std::string_view bytes) {
  std::array<TCPUIDResult, 3> levels{};
  for (std::size_t i = 0; i < 48 && i < bytes.size(); ++i) {
    levels[i / 16][(i / 4) % 4] |= std::uint32_t{static_cast<unsigned char>(bytes[i])}
                                   << (8 * (i % 4));
  }
  return levels;
}

TEST(CpuIdDecodeTest, SignatureFields) {
  // An Ivy Bridge, a Zen 3, an OverDrive processor, every bit, none.
  using F = std::array<int, 6>;  // stepping, model, family, type, ex model, ex family
  using P = std::pair<std::uint32_t, F>;
  for (auto [sig, want] :
       {P{0x000306A9, F{9, 10, 6, 0, 3, 0}}, P{0x00A20F10, F{0, 1, 15, 0, 2, 10}},
        P{0x00001632, F{2, 3, 6, 1, 0, 0}}, P{0x0FF03FFF, F{15, 15, 15, 3, 0, 255}}, P{0, F{}}}) {
    EXPECT_EQ((F{SignatureStepping(sig), SignatureModel(sig), SignatureFamily(sig),
                 SignatureType(sig), SignatureExModel(sig), SignatureExFamily(sig)}),
              want)
        << sig;
  }
}

TEST(CpuIdDecodeTest, VendorBrandAndSerial) {
  EXPECT_EQ(DecodeVendorString({0x16, 0x756e6547, 0x6c65746e, 0x49656e69}), u"GenuineIntel");
  EXPECT_EQ(DecodeVendorString({0x10, 0x68747541, 0x444d4163, 0x69746e65}), u"AuthenticAMD");
  EXPECT_EQ(DecodeVendorString({0, 0x68747541, 0x00000063, 0x69746e65}), u"Unknown");
  EXPECT_EQ(DecodeBrandID({0, 0xFFFFFF80, 0, 0}), 0x80);
  EXPECT_EQ(DecodeBrandID({0, 0x12345600, 0, 0}), 0);
  EXPECT_EQ(DecodeSerialNumber({0x000306A9, 0, 0x0000000A, 0x0000BEEF}),
            u"000306A90000BEEF0000000A");
}

TEST(CpuIdDecodeTest, MarketNameTrimming) {
  using namespace std::string_literals;
  using M = std::pair<std::string, std::u16string>;
  for (const auto& [bytes, name] :
       {M{"      Intel(R) Core(TM) i7-3770 CPU @ 3.40GHz"s,
          u"Intel(R) Core(TM) i7-3770 CPU @ 3.40GHz"},
        M{"AMD EPYC 7B13"s + std::string(35, '\0'), u"AMD EPYC 7B13"},
        M{"AMD\0EPYC"s + std::string(40, ' '), u"unknown"}, M{"  A\tB  "s, u"unknown"},
        M{"\x01\x02 x \x1f"s, u"x"}, M{std::string(48, '\0'), u""},
        M{"\xC4\xFF name"s, u"\u00C4\u00FF name"}}) {
    EXPECT_EQ(DecodeMarketName(MarketLevels(bytes)), name) << Utf8(name);
  }
}

TEST(CpuIdDecodeTest, LevelRule) {
  // As unsigned numbers, standard levels lie below the extended ones, so a
  // processor with extended levels accepts every standard level, and a level
  // negative as a signed number is no exception.
  using L = std::array<std::uint32_t, 4>;  // level, standard, extended, accepted
  for (auto [level, standard, extended, accepted] :
       {L{0, 0x16, 0x80000008, 1}, L{0x16, 0x16, 0x80000008, 1}, L{0x17, 0x16, 0x16, 0},
        L{0x80000004, 0x16, 0x80000008, 1}, L{0x17, 0x16, 0x80000008, 1},
        L{0x80000009, 0x16, 0x80000008, 1}, L{0xFFFFFFFF, 0x16, 0, 1}, L{0x7FFFFFFF, 0x16, 0x16, 0},
        L{1, 0, 0, 0}}) {
    EXPECT_EQ(LevelAccepted(level, standard, extended), accepted != 0) << level;
  }
}

TEST(CpuIdTest, DivisionIsRight) { EXPECT_FALSE(CPU_FDIVBugPresent()); }

// The first processor's block of /proc/cpuinfo as key and value.
std::map<std::string, std::string> CpuInfo() {
  std::map<std::string, std::string> info;
  std::ifstream in("/proc/cpuinfo");
  std::string line;
  while (std::getline(in, line) && !line.empty()) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    const std::size_t key_end = line.find_last_not_of(" \t", colon - 1);
    info[line.substr(0, key_end == std::string::npos ? 0 : key_end + 1)] =
        colon + 2 <= line.size() ? line.substr(colon + 2) : "";
  }
  return info;
}

TEST(CpuIdTest, LiveValuesAgreeWithProcCpuinfo) {
  if (!CPU_IDSupport()) GTEST_SKIP() << "no CPUID on this build";
  const auto info = CpuInfo();
  if (!info.contains("vendor_id")) GTEST_SKIP() << "/proc/cpuinfo has no x86 fields";

  EXPECT_EQ(Utf8(CPU_VendorString()), info.at("vendor_id"));
  // The kernel adds the extended family to family 15, and the extended
  // model to the model from family 6 on.
  const int family = CPU_Family() == 15 ? 15 + CPU_ExFamily() : CPU_Family();
  const int model = CPU_Family() >= 6 ? CPU_ExModel() * 16 + CPU_Model() : CPU_Model();
  EXPECT_EQ(family, std::stoi(info.at("cpu family")));
  EXPECT_EQ(model, std::stoi(info.at("model")));
  EXPECT_EQ(CPU_Stepping(), std::stoi(info.at("stepping")));
  EXPECT_EQ(Utf8(CPU_MarketName()), info.at("model name"));

  std::istringstream flags(info.at("flags"));
  std::set<std::string> has;
  for (std::string f; flags >> f;) has.insert(f);
  const std::uint32_t set = CPU_FeatureSet();
  for (auto [name, bit] :
       {std::pair{"fpu", cpuft_fpu}, std::pair{"tsc", cpuft_tsc}, std::pair{"sse2", cpuft_simd2},
        std::pair{"mmx", cpuft_mmx}, std::pair{"cmov", cpuft_cmov}}) {
    EXPECT_EQ((set >> bit) & 1, has.contains(name) ? 1u : 0u) << name;
  }
  EXPECT_EQ((CPU_ExtendedFeatureSet() >> 29) & 1, has.contains("lm") ? 1u : 0u);

  EXPECT_EQ(CPU_SerialNumber().size(), 24u);
  char signature[16];
  std::snprintf(signature, sizeof signature, "%08X", static_cast<unsigned>(CPU_Signature()));
  EXPECT_EQ(Utf8(CPU_SerialNumber().substr(0, 8)), signature);
}

TEST(CpuIdTest, WithoutTheInstructionEveryReaderRaises) {
  if (CPU_IDSupport()) GTEST_SKIP() << "this processor has CPUID";
  const auto raises = [](auto read) {
    try {
      read();
      ADD_FAILURE() << "no exception";
    } catch (const EZYNCpuIdError& e) {
      EXPECT_EQ(e.Message(), u"Cannot acquire CPU information (CPUID not supported)");
    }
  };
  const auto all_raise = [&](auto... readers) { (raises(readers), ...); };
  all_raise(CPU_VendorString, CPU_Signature, CPU_FeatureSet, CPU_ExtendedFeatureSet, CPU_BrandID,
            CPU_Type, CPU_OverDrive, CPU_Family, CPU_ExFamily, CPU_Model, CPU_ExModel, CPU_Stepping,
            CPU_SerialNumber, CPU_MarketName);
  EXPECT_GE(CPU_Count(), 1);
}

}  // namespace
}  // namespace Zyn_cpuid
