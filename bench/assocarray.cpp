// TAssocArray beside std::unordered_map<std::u16string, Variant>, the table a
// user would otherwise take. Each iteration fills a new table with N random
// keys and then resolves every key once, in another order. The table runs
// with IgnoreCase true (its default) and false; the map once with the keys
// as they are and once folded by the caller, which is what a map needs to
// ignore case. Times per item should stay flat from 1 000 to 1 000 000 keys.

#include "zyn/dstruct/assocarray.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "zyn/platform/casefold.h"

namespace {

using zyn::platform::Variant;
using Zyn_dstruct::TAssocArray;

// 8 to 16 letters of both cases and digits, the same for a given count.
std::vector<std::u16string> RandomKeys(std::int64_t count) {
  static constexpr std::u16string_view kAlphabet =
      u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  std::mt19937 gen(777u + static_cast<unsigned>(count));
  std::uniform_int_distribution<int> length(8, 16);
  std::uniform_int_distribution<int> letter(0, static_cast<int>(kAlphabet.size()) - 1);
  std::vector<std::u16string> keys(static_cast<std::size_t>(count));
  for (auto& k : keys) {
    k.resize(static_cast<std::size_t>(length(gen)));
    for (auto& c : k) c = kAlphabet[static_cast<std::size_t>(letter(gen))];
  }
  return keys;
}

struct Workload {
  std::vector<std::u16string> keys;
  std::vector<std::u16string> lookups;  // the same keys, shuffled
  explicit Workload(std::int64_t n) : keys(RandomKeys(n)), lookups(keys) {
    std::shuffle(lookups.begin(), lookups.end(), std::mt19937(99));
  }
};

void BM_TAssocArray(benchmark::State& state, bool ignore_case) {
  const Workload w(state.range(0));
  for (auto _ : state) {
    TAssocArray table;
    table.SetIgnoreCase(ignore_case);
    for (std::size_t i = 0; i < w.keys.size(); ++i) {
      table.Add(w.keys[i], Variant(static_cast<int>(i)));
    }
    for (const auto& k : w.lookups) {
      Variant v = table.Resolve(k);
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_UnorderedMap(benchmark::State& state, bool fold) {
  const Workload w(state.range(0));
  for (auto _ : state) {
    std::unordered_map<std::u16string, Variant> table;
    for (std::size_t i = 0; i < w.keys.size(); ++i) {
      table.insert_or_assign(fold ? zyn::platform::LowerCase(w.keys[i]) : w.keys[i],
                             Variant(static_cast<int>(i)));
    }
    for (const auto& k : w.lookups) {
      const auto it = fold ? table.find(zyn::platform::LowerCase(k)) : table.find(k);
      Variant v = it == table.end() ? Variant::Null() : it->second;
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* b) {
  b->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(BM_TAssocArray, IgnoreCase, true)->Apply(Sizes);
BENCHMARK_CAPTURE(BM_UnorderedMap, FoldedKeys, true)->Apply(Sizes);
BENCHMARK_CAPTURE(BM_TAssocArray, ExactCase, false)->Apply(Sizes);
BENCHMARK_CAPTURE(BM_UnorderedMap, ExactKeys, false)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
