#include "zyn/dstruct/combinatorics.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// Every arrangement once, ending on the descending one, where it stays; for
// three in this library's order.
TEST(CombinatoricsTest, PermutationsWalkAllArrangementsOnce) {
  for (int n = 1; n <= 7; ++n) {
    SCOPED_TRACE(n);
    TCombination c = FirstArrangement(n);
    std::vector<std::vector<int>> walk{Members(c)};
    while (NextPermutation(c)) {
      walk.push_back(Members(c));
      ASSERT_EQ(c[n + 1], 0xEE);
    }
    int factorial = 1;
    for (int i = 2; i <= n; ++i) factorial *= i;
    EXPECT_EQ(std::set(walk.begin(), walk.end()).size(), static_cast<std::size_t>(factorial));
    EXPECT_EQ(static_cast<int>(walk.size()), factorial);
    std::vector<int> descending(n);
    std::iota(descending.rbegin(), descending.rend(), 1);
    EXPECT_EQ(Members(c), descending);
    EXPECT_FALSE(NextPermutation(c));
    EXPECT_EQ(Members(c), descending);
    if (n == 3) {
      EXPECT_EQ(walk, (std::vector<std::vector<int>>{
                          {1, 2, 3}, {2, 1, 3}, {2, 3, 1}, {1, 3, 2}, {3, 1, 2}, {3, 2, 1}}));
    }
  }
  // Nothing to step from: no members, or 9 3 4 1 (1 at the end, 2 missing).
  TCombination zero = FirstArrangement(0), broken{4, 9, 3, 4, 1};
  EXPECT_FALSE(NextPermutation(zero));
  const TCombination before = broken;
  EXPECT_FALSE(NextPermutation(broken));
  EXPECT_EQ(broken, before);
}

int Nearest(double x, std::vector<double> values) { return IndexOfNearestArrayValue(x, values); }
int Nearest(std::int32_t x, std::vector<std::int32_t> values) {
  return IndexOfNearestArrayValue(x, values);
}

TEST(CombinatoricsTest, NearestValue) {
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Nearest(1.0, {}), -1);
  EXPECT_EQ(Nearest(2.0, {1.0, 3.0}), 0);  // a tie goes to the lower index
  EXPECT_EQ(Nearest(2.0, {3.0, 1.0}), 0);
  EXPECT_EQ(Nearest(2.44, {5.0, -2.0, 9.0, 2.5, 2.4}), 4);
  EXPECT_EQ(Nearest(0.0, {nan, inf, -inf}), -1);
  EXPECT_EQ(Nearest(0.0, {nan, 7.0}), 1);
  EXPECT_EQ(Nearest(-1.0e300, {1.7e308}), -1);  // beyond 1.7e308 apart
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(Nearest(1, std::vector<std::int32_t>{}), -1);
  EXPECT_EQ(Nearest(2, {1, 3}), 0);
  EXPECT_EQ(Nearest(5, {10, -4, 6, 7}), 2);
  EXPECT_EQ(Nearest(kMax, {kMax - 2, kMin}), 1);  // kMin - kMax wraps to 1, nearer than 2
}

}  // namespace
}  // namespace Zyn_dstruct
