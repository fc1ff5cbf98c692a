// System: cpuid, password.

#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "cli/common.h"
#include "zyn/cpuid/cpuid.h"
#include "zyn/filesys/sysqueries.h"
#include "zyn/platform/random.h"

namespace zyn_cli {

namespace {

std::string Hex8(std::uint32_t value) {
  char text[12];
  std::snprintf(text, sizeof text, "%08X", value);
  return text;
}

std::string DescribeCpu() {
  using namespace Zyn_cpuid;
  std::string out =
      "vendor:     " + Utf8(CPU_VendorString()) + "\nmarket:     " + Utf8(CPU_MarketName()) +
      "\nsignature:  " + Hex8(CPU_Signature()) + "\nfamily:     " + std::to_string(CPU_Family()) +
      "\nmodel:      " + std::to_string(CPU_Model()) +
      "\nstepping:   " + std::to_string(CPU_Stepping()) +
      "\nex family:  " + std::to_string(CPU_ExFamily()) +
      "\nex model:   " + std::to_string(CPU_ExModel()) +
      "\ntype:       " + std::to_string(CPU_Type()) +
      "\nbrand id:   " + std::to_string(CPU_BrandID()) +
      "\ncount:      " + std::to_string(CPU_Count()) +
      "\nfdiv bug:   " + (CPU_FDIVBugPresent() ? "yes" : "no") +
      "\nextended:   " + Hex8(CPU_ExtendedFeatureSet()) +
      "\nfeatures:   " + Hex8(CPU_FeatureSet()) + "\n";
  const std::uint32_t set = CPU_FeatureSet();
  for (std::size_t bit = 0; bit < CPUFeatureNames.size(); ++bit)
    if (set >> bit & 1) out += "  " + Utf8(CPUFeatureNames[bit]) + "\n";
  return out;
}

void ShowCpu() {
  // Without the instruction (on a processor that isn't x86) every query
  // raises the unit's own error, whose message ends the command.
  try {
    WriteOut(DescribeCpu());
  } catch (const std::exception& e) {
    throw Failure("cpuid", e.what());
  }
}

struct PasswordOptions {
  int length = 8;
  bool caps = false, special = false;
  std::optional<std::int32_t> seed;
};

void InventPassword(const PasswordOptions& o) {
  // A fresh password each run, from the system's entropy; --seed repeats one.
  zyn::platform::RandSeed = o.seed ? *o.seed : static_cast<std::int32_t>(std::random_device{}());
  WriteOut(Utf8(Zyn_filesys::InventPassword(o.length, o.caps, o.special)) + "\n");
}

}  // namespace

void AddSystemCommands(CLI::App& app) {
  CLI::App* cpu = app.add_subcommand(
      "cpuid", "The processor: vendor, market name, signature fields, count and features by name");
  cpu->callback(ShowCpu);

  auto pw = std::make_shared<PasswordOptions>();
  CLI::App* password = app.add_subcommand(
      "password", "Invent a pronounceable password: consonants and vowels with two digits");
  password
      ->add_option("-l,--length", pw->length,
                   "Length; below 4 or above 14 counts as the nearer limit")
      ->capture_default_str();
  password->add_flag("-c,--caps", pw->caps, "Turn about half of the letters into capitals");
  password->add_flag("-s,--special", pw->special,
                     "Replace about one character in five by one of _!$%#= or a digit");
  password->add_option("--seed", pw->seed,
                       "Seed the generator for a repeatable password (default: the system's "
                       "entropy)");
  password->callback([pw] { InventPassword(*pw); });
}

}  // namespace zyn_cli
