#include "zyn/dstruct/combinatorics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>
#include <vector>

namespace Zyn_dstruct {
namespace {

TCombination FirstArrangement(int count) {
  TCombination c{};
  c.fill(0xEE);  // behind the members; must stay untouched
  c[0] = static_cast<std::uint8_t>(count);
  for (int i = 1; i <= count; ++i) c[i] = static_cast<std::uint8_t>(i);
  return c;
}

std::vector<int> Members(const TCombination& c) { return {c.begin() + 1, c.begin() + 1 + c[0]}; }

std::int64_t Binomial(int n, int k) {
  std::int64_t r = 1;
  for (int i = 1; i <= k; ++i) r = r * (n - k + i) / i;
  return r;
}

TEST(CombinatoricsTest, CombinationsWalkAllSubsetsAscending) {
  for (int n = 1; n <= 9; ++n) {
    for (int k = 1; k <= n; ++k) {
      SCOPED_TRACE(testing::Message() << "n=" << n << " k=" << k);
      TCombination c = FirstArrangement(k);
      std::vector<std::vector<int>> seen{Members(c)};
      while (NextCombination(c, n)) {
        ASSERT_LT(seen.back(), Members(c));
        seen.push_back(Members(c));
        ASSERT_TRUE(std::is_sorted(seen.back().begin(), seen.back().end()));
        ASSERT_GE(seen.back().front(), 1);
        ASSERT_LE(seen.back().back(), n);
        ASSERT_EQ(c[k + 1], 0xEE);
      }
      EXPECT_EQ(static_cast<std::int64_t>(seen.size()), Binomial(n, k));
      const TCombination last = c;  // n-k+1 .. n
      EXPECT_EQ(seen.back().front(), n - k + 1);
      EXPECT_FALSE(NextCombination(c, n));
      EXPECT_EQ(c, last);
    }
  }
  TCombination empty = FirstArrangement(0);
  EXPECT_FALSE(NextCombination(empty, 5));
  EXPECT_EQ(empty, FirstArrangement(0));
}

TEST(CombinatoricsTest, PermutationsOfThreeInTheLibrarysOrder) {
  TCombination c = FirstArrangement(3);
  std::vector<std::vector<int>> seen{Members(c)};
  while (NextPermutation(c)) seen.push_back(Members(c));
  const std::vector<std::vector<int>> expected{{1, 2, 3}, {2, 1, 3}, {2, 3, 1},
                                               {1, 3, 2}, {3, 1, 2}, {3, 2, 1}};
  EXPECT_EQ(seen, expected);
  EXPECT_FALSE(NextPermutation(c));
  EXPECT_EQ(Members(c), (std::vector<int>{3, 2, 1}));
}

TEST(CombinatoricsTest, PermutationsWalkAllArrangementsOnce) {
  for (int n = 1; n <= 7; ++n) {
    SCOPED_TRACE(n);
    TCombination c = FirstArrangement(n);
    std::set<std::vector<int>> seen{Members(c)};
    while (NextPermutation(c)) {
      ASSERT_TRUE(seen.insert(Members(c)).second) << "repeated arrangement";
      ASSERT_EQ(c[n + 1], 0xEE);
    }
    int factorial = 1;
    for (int i = 2; i <= n; ++i) factorial *= i;
    EXPECT_EQ(static_cast<int>(seen.size()), factorial);
    std::vector<int> descending(n);
    std::iota(descending.rbegin(), descending.rend(), 1);
    EXPECT_EQ(Members(c), descending);
  }
}

TEST(CombinatoricsTest, NoPermutationToStepFrom) {
  TCombination zero = FirstArrangement(0);
  EXPECT_FALSE(NextPermutation(zero));
  TCombination broken = FirstArrangement(4);
  broken[1] = 9;  // 9 3 4 1: value 1 stands at the end, value 2 is missing
  broken[2] = 3;
  broken[3] = 4;
  broken[4] = 1;
  const TCombination before = broken;
  EXPECT_FALSE(NextPermutation(broken));
  EXPECT_EQ(broken, before);
}

TEST(CombinatoricsTest, NearestValue) {
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct Case {
    const char* name;
    std::vector<double> values;
    double x;
    int expected;
  };
  const Case cases[] = {
      {"empty", {}, 1.0, -1},
      {"tie goes to the lower index", {1.0, 3.0}, 2.0, 0},
      {"tie, reversed", {3.0, 1.0}, 2.0, 0},
      {"unordered", {5.0, -2.0, 9.0, 2.5, 2.4}, 2.44, 4},
      {"only NaN and infinities", {nan, inf, -inf}, 0.0, -1},
      {"NaN skipped", {nan, 7.0}, 0.0, 1},
      {"beyond 1.7e308 apart", {1.7e308}, -1.0e300, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(IndexOfNearestArrayValue(c.x, c.values), c.expected);
  }
}

TEST(CombinatoricsTest, NearestIntegerWrapsItsDifference) {
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  struct Case {
    const char* name;
    std::vector<std::int32_t> values;
    std::int32_t x;
    int expected;
  };
  const Case cases[] = {
      {"empty", {}, 1, -1},
      {"tie goes to the lower index", {1, 3}, 2, 0},
      {"plain", {10, -4, 6, 7}, 5, 2},
      // kMin - kMax wraps to 1, nearer than the 2 of kMax - 2.
      {"wrapping", {kMax - 2, kMin}, kMax, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(IndexOfNearestArrayValue(c.x, c.values), c.expected);
  }
}

}  // namespace
}  // namespace Zyn_dstruct
