// zyn/stringl/scramble.h
//
// A reversible character substitution that keeps a text from plain view; no
// protection against a reader who tries. One pair of global tables, rebuilt
// from a seed; the tables of the default seed are there from process start.

#ifndef ZYN_STRINGL_SCRAMBLE_H_
#define ZYN_STRINGL_SCRAMBLE_H_

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace Zyn_stringl {

// The seed the unit's start-up uses, and that the tables hold in a fresh
// process.
inline constexpr int kDefaultScrambleSeed = 4711;

// ScrambleTable maps a code 0..255 to its substitute, DeScrambleTable back.
// Entry 0 is 0 in both; entries 1..255 are a permutation of 1..255.
extern std::array<std::uint8_t, 256> ScrambleTable;
extern std::array<std::uint8_t, 256> DeScrambleTable;

// Rebuilds both tables from `seed` through the process-wide generator: sets
// zyn::platform::RandSeed to `seed` and draws from it, so the host's own
// sequence of random numbers moves on too.
void InitScramble(int seed);

// Each character of code 0..255 replaced through ScrambleTable; characters
// above 255 stay as they are. The length never changes.
std::u16string Scramble(std::u16string_view s);

// The inverse of Scramble under the same seed: DeScramble(Scramble(s)) == s.
std::u16string DeScramble(std::u16string_view s);

}  // namespace Zyn_stringl

#endif  // ZYN_STRINGL_SCRAMBLE_H_
