// zyn/platform/random.h
//
// The one seeded pseudo-random generator of the process, shared by the
// library and its host: a 32-bit linear congruential generator
// (RandSeed = RandSeed * 134775813 + 1, modulo 2^32). The same seed gives the
// same sequence on every machine. Not safe for use from two threads at once.

#ifndef ZYN_PLATFORM_RANDOM_H_
#define ZYN_PLATFORM_RANDOM_H_

#include <cstdint>

namespace zyn::platform {

// The generator's state. Assigning it restarts the sequence from that seed.
extern std::int32_t RandSeed;

// A double from 0 up to but not including 1.
double Random();

// An integer from 0 to n - 1; 0 when n is 0 or negative.
std::int32_t Random(std::int32_t n);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_RANDOM_H_
