#include "zyn/dstruct/combinatorics.h"

#include <algorithm>
#include <cmath>

#include "zyn/base/univconst.h"

namespace Zyn_dstruct {

bool NextCombination(TCombination& c, int n) {
  const int k = c[0];
  for (int p = k; p >= 1; --p) {
    if (c[p] < n - k + p) {
      ++c[p];
      for (int q = p + 1; q <= k; ++q) c[q] = static_cast<std::uint8_t>(c[q - 1] + 1);
      return true;
    }
  }
  return false;
}

bool NextPermutation(TCombination& c) {
  const int n = c[0];
  // Level m moves value n - m + 1 within positions 1..m. Descend while that
  // value already stands at the end of its range; the levels passed over
  // then bring their value back to the front, innermost first.
  int m = n;
  for (; m > 1; --m) {
    const std::uint8_t v = static_cast<std::uint8_t>(n - m + 1);
    const auto first = c.begin() + 1;
    const auto found = std::find(first, first + m, v);
    if (found == first + m) return false;  // not a permutation of 1..n
    if (found != first + m - 1) break;
  }
  if (m <= 1) return false;
  const auto first = c.begin() + 1;
  auto at = std::find(first, first + m, static_cast<std::uint8_t>(n - m + 1));
  std::iter_swap(at, at + 1);
  for (int level = m + 1; level <= n; ++level) std::rotate(first, first + level - 1, first + level);
  return true;
}

int IndexOfNearestArrayValue(double x, std::span<const double> values) {
  double best_distance = Zyn_univconst::uc_MaxDouble;
  int best = -1;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double distance = std::fabs(values[i] - x);
    if (distance < best_distance) {
      best_distance = distance;
      best = static_cast<int>(i);
    }
  }
  return best;
}

int IndexOfNearestArrayValue(std::int32_t x, std::span<const std::int32_t> values) {
  double best_distance = Zyn_univconst::uc_MaxDouble;
  int best = -1;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto difference = static_cast<std::int32_t>(static_cast<std::uint32_t>(values[i]) -
                                                      static_cast<std::uint32_t>(x));
    const double distance = std::fabs(static_cast<double>(difference));
    if (distance < best_distance) {
      best_distance = distance;
      best = static_cast<int>(i);
    }
  }
  return best;
}

}  // namespace Zyn_dstruct
