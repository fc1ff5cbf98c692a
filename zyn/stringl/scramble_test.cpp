#include "zyn/stringl/scramble.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "zyn/package.h"
#include "zyn/platform/random.h"

namespace {

using namespace Zyn_stringl;

// The tables as a fresh process has them, before any start-up code.
const auto kStartScramble = ScrambleTable;

class ScrambleTest : public ::testing::Test {
 protected:
  void TearDown() override { InitScramble(kDefaultScrambleSeed); }
};

TEST_F(ScrambleTest, FreshProcessAndFirstLoadHoldTheDefaultSeed) {
  InitScramble(kDefaultScrambleSeed);
  EXPECT_EQ(kStartScramble, ScrambleTable);
  InitScramble(1);
  Initialize();
  EXPECT_EQ(ScrambleTable, kStartScramble);
  InitScramble(1);
  const auto by_hand = ScrambleTable;
  Initialize();  // a nested load changes nothing
  EXPECT_EQ(ScrambleTable, by_hand);
  Finalize();
  Finalize();
}

// Every seed gives a pair of mutually inverse permutations that keep 0. The
// first draw of the platform generator is always free, so it becomes the
// substitute of code 1; so the same seed gives the same tables.
TEST_F(ScrambleTest, TablesAreInversePermutationsFixedBySeed) {
  for (int seed : {0, 1, -1, 4711, 9999, 123456789, INT_MAX, INT_MIN}) {
    SCOPED_TRACE(seed);
    InitScramble(seed);
    EXPECT_EQ(ScrambleTable[0], 0);
    EXPECT_EQ(DeScrambleTable[0], 0);
    bool seen[256] = {};
    for (int c = 1; c < 256; ++c) {
      const int s = ScrambleTable[c];
      ASSERT_GE(s, 1);
      EXPECT_FALSE(seen[s]) << s;
      seen[s] = true;
      EXPECT_EQ(DeScrambleTable[s], c);
    }
    const auto first = ScrambleTable;
    InitScramble(seed);
    EXPECT_EQ(ScrambleTable, first);
    zyn::platform::RandSeed = seed;
    EXPECT_EQ(ScrambleTable[1], zyn::platform::Random(255) + 1);
  }
}

TEST_F(ScrambleTest, DeScrambleUndoesScramble) {
  std::u16string all;
  for (char16_t c = 0; c < 256; ++c) all.push_back(c);
  all += u"\u0100\uFFFF";
  for (int seed : {kDefaultScrambleSeed, -42}) {
    InitScramble(seed);
    const std::u16string scrambled = Scramble(all);
    EXPECT_NE(scrambled, all);
    EXPECT_EQ(scrambled[0], u'\0');
    EXPECT_EQ(scrambled.substr(256), u"\u0100\uFFFF");
    EXPECT_EQ(DeScramble(scrambled), all);
  }
  EXPECT_EQ(Scramble(u""), u"");
}

}  // namespace
