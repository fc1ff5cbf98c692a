#include "zyn/stringl/scramble.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "zyn/package.h"
#include "zyn/platform/random.h"

namespace {

using Zyn_stringl::DeScramble;
using Zyn_stringl::DeScrambleTable;
using Zyn_stringl::InitScramble;
using Zyn_stringl::kDefaultScrambleSeed;
using Zyn_stringl::Scramble;
using Zyn_stringl::ScrambleTable;

// The tables as a fresh process has them, taken before any test runs.
const auto kStartScramble = ScrambleTable;
const auto kStartDeScramble = DeScrambleTable;

// Every test leaves the default tables behind.
class ScrambleTest : public ::testing::Test {
 protected:
  void TearDown() override { InitScramble(kDefaultScrambleSeed); }
};

TEST_F(ScrambleTest, FreshProcessHoldsTheTablesOfTheDefaultSeed) {
  InitScramble(kDefaultScrambleSeed);
  EXPECT_EQ(kStartScramble, ScrambleTable);
  EXPECT_EQ(kStartDeScramble, DeScrambleTable);
}

TEST_F(ScrambleTest, FirstLoadSeedsTheDefaultTables) {
  InitScramble(1);
  Initialize();
  EXPECT_EQ(ScrambleTable, kStartScramble);
  InitScramble(1);
  const auto seeded_by_hand = ScrambleTable;
  Initialize();  // nested load: no effect
  EXPECT_EQ(ScrambleTable, seeded_by_hand);
  Finalize();
  Finalize();
}

TEST_F(ScrambleTest, TablesAreMutualInversePermutationsForEverySeed) {
  for (int seed : {0, 1, -1, 2, 4711, 9999, 123456789, INT_MAX, INT_MIN}) {
    SCOPED_TRACE(seed);
    InitScramble(seed);
    EXPECT_EQ(ScrambleTable[0], 0);
    EXPECT_EQ(DeScrambleTable[0], 0);
    bool seen[256] = {};
    for (int c = 1; c < 256; ++c) {
      const int s = ScrambleTable[c];
      ASSERT_GE(s, 1);
      EXPECT_FALSE(seen[s]) << "value " << s << " twice";
      seen[s] = true;
      EXPECT_EQ(DeScrambleTable[s], c);
    }
  }
}

TEST_F(ScrambleTest, SeedFixesTheTablesThroughThePlatformGenerator) {
  InitScramble(77);
  const auto first = ScrambleTable;
  const std::int32_t seed_after = zyn::platform::RandSeed;
  InitScramble(78);
  EXPECT_NE(ScrambleTable, first);
  InitScramble(77);
  EXPECT_EQ(ScrambleTable, first);
  EXPECT_EQ(zyn::platform::RandSeed, seed_after);  // the host's sequence moved on alike

  // The first draw is never taken, so it is the substitute of code 1.
  zyn::platform::RandSeed = 77;
  EXPECT_EQ(ScrambleTable[1], zyn::platform::Random(255) + 1);
}

TEST_F(ScrambleTest, DeScrambleUndoesScramble) {
  for (int seed : {kDefaultScrambleSeed, 5, -42}) {
    SCOPED_TRACE(seed);
    InitScramble(seed);
    std::u16string all;
    for (char16_t c = 0; c < 256; ++c) all.push_back(c);
    all += u"\u0100\u20AC\uFFFF";
    const std::u16string scrambled = Scramble(all);
    ASSERT_EQ(scrambled.size(), all.size());
    EXPECT_NE(scrambled, all);
    EXPECT_EQ(scrambled[0], u'\0');
    EXPECT_EQ(scrambled.substr(256), u"\u0100\u20AC\uFFFF");  // above 255: unchanged
    EXPECT_EQ(DeScramble(scrambled), all);
  }
  EXPECT_EQ(Scramble(u""), u"");
  EXPECT_EQ(DeScramble(u""), u"");
}

}  // namespace
