#include "zyn/stringl/scramble.h"

#include "zyn/platform/random.h"

namespace Zyn_stringl {

namespace {

using Table = std::array<std::uint8_t, 256>;

struct TablePair {
  Table scramble{};
  Table descramble{};
};

// Fills the tables from a source of draws in 1..255: for each code in turn
// the first drawn value that is still free becomes its substitute.
template <typename DrawOneTo255>
constexpr TablePair BuildTables(DrawOneTo255 draw) {
  TablePair t;
  for (int i = 1; i <= 255; ++i) {
    int r = draw();
    while (t.descramble[r] != 0) r = draw();
    t.scramble[i] = static_cast<std::uint8_t>(r);
    t.descramble[r] = static_cast<std::uint8_t>(i);
  }
  return t;
}

// The platform generator's step, usable at compile time, so that the tables of
// the default seed are constant data and correct before any start-up code
// runs. The tests check that it draws exactly what zyn::platform::Random does.
class ConstantGenerator {
 public:
  constexpr explicit ConstantGenerator(int seed) : seed_(static_cast<std::uint32_t>(seed)) {}
  constexpr int operator()() {
    seed_ = seed_ * 134775813u + 1u;
    return static_cast<int>((std::uint64_t{seed_} * 255u) >> 32) + 1;
  }

 private:
  std::uint32_t seed_;
};

constexpr TablePair kDefaultTables = BuildTables(ConstantGenerator(kDefaultScrambleSeed));

std::u16string Translate(std::u16string_view s, const Table& table) {
  std::u16string out(s);
  for (char16_t& c : out) {
    if (c < table.size()) c = table[c];
  }
  return out;
}

}  // namespace

std::array<std::uint8_t, 256> ScrambleTable = kDefaultTables.scramble;
std::array<std::uint8_t, 256> DeScrambleTable = kDefaultTables.descramble;

void InitScramble(int seed) {
  zyn::platform::RandSeed = seed;
  const TablePair t = BuildTables([] { return zyn::platform::Random(255) + 1; });
  ScrambleTable = t.scramble;
  DeScrambleTable = t.descramble;
}

std::u16string Scramble(std::u16string_view s) { return Translate(s, ScrambleTable); }

std::u16string DeScramble(std::u16string_view s) { return Translate(s, DeScrambleTable); }

}  // namespace Zyn_stringl
