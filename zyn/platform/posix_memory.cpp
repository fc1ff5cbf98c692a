#include <cstdio>

#include "zyn/platform/memory.h"

namespace zyn::platform {

namespace {

std::uint64_t ceiling = 0;

// Below this an allocation is always tried: a failure is an ordinary
// std::bad_alloc, and asking the system costs more than it saves.
constexpr std::uint64_t kAlwaysAllowed = std::uint64_t{64} << 20;

}  // namespace

std::optional<std::uint64_t> AvailableMemory() {
  std::FILE* f = std::fopen("/proc/meminfo", "r");
  if (f == nullptr) return std::nullopt;
  std::optional<std::uint64_t> result;
  char line[256];
  while (std::fgets(line, sizeof line, f) != nullptr) {
    unsigned long long kib = 0;
    if (std::sscanf(line, "MemAvailable: %llu kB", &kib) == 1) {
      result = static_cast<std::uint64_t>(kib) * 1024;
      break;
    }
  }
  std::fclose(f);
  return result;
}

void SetAllocationCeiling(std::uint64_t Bytes) { ceiling = Bytes; }

std::uint64_t AllocationCeiling() { return ceiling; }

bool AllocationAllowed(std::uint64_t Bytes) {
  if (ceiling != 0 && Bytes > ceiling) return false;
  if (Bytes < kAlwaysAllowed) return true;
  const auto available = AvailableMemory();
  return !available || Bytes <= *available;
}

}  // namespace zyn::platform
