// zyn/dstruct/combinatorics.h
//
// Stepping through all k-subsets and all permutations of 1..n, where the
// caller's array is the whole state, and finding the array element nearest
// to a value.

#ifndef ZYN_DSTRUCT_COMBINATORICS_H_
#define ZYN_DSTRUCT_COMBINATORICS_H_

#include <array>
#include <cstdint>
#include <span>

namespace Zyn_dstruct {

// Element 0 holds the number of members, elements 1 up to it the members
// (1-based values); elements behind them are never touched.
using TCombination = std::array<std::uint8_t, 256>;

// Turns the k-subset of 1..n in `c` (k = c[0], members ascending) into its
// successor in ascending lexicographic order: true if it did, false (array
// unchanged) if `c` held the last one. Start with 1, 2, ..., k. Gives false
// for k = 0; n above 255 can't be represented and makes members wrap.
bool NextCombination(TCombination& c, int n);

// Turns the permutation of 1..n in `c` (n = c[0]) into its successor in this
// library's order (value 1 walks right; at the end it returns to the front
// and the rest take one step): 1 2 3, 2 1 3, 2 3 1, 1 3 2, 3 1 2, 3 2 1. True
// if it did; false, array unchanged, on the last (descending) arrangement,
// for n below 2, and when `c` holds no valid permutation.
bool NextPermutation(TCombination& c);

// The index of the element nearest to `x` (absolute difference), the lowest
// of equally near ones; -1 if `values` is empty or no distance is below
// 1.7e308 (NaN, infinities). The array needs no order.
int IndexOfNearestArrayValue(double x, std::span<const double> values);

// As above; the difference is taken in wrapping 32-bit arithmetic.
int IndexOfNearestArrayValue(std::int32_t x, std::span<const std::int32_t> values);

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_COMBINATORICS_H_
