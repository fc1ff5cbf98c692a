#include "zyn/platform/random.h"

namespace zyn::platform {

std::int32_t RandSeed = 0;

namespace {

std::uint32_t NextRandom() {
  const auto next = static_cast<std::uint32_t>(RandSeed) * 134775813u + 1u;
  RandSeed = static_cast<std::int32_t>(next);
  return next;
}

}  // namespace

double Random() { return NextRandom() * (1.0 / 4294967296.0); }

std::int32_t Random(std::int32_t n) {
  if (n <= 0) {
    NextRandom();
    return 0;
  }
  return static_cast<std::int32_t>((std::uint64_t{NextRandom()} * static_cast<std::uint32_t>(n)) >>
                                   32);
}

}  // namespace zyn::platform
