// TStringArray against what a user would otherwise take: a
// std::vector<std::string> of case-folded keys sorted by std::sort, and plain
// assignment and reads of std::string cells.
//
// The sort of the table compares eight-byte folded prefixes held in a working
// array and reads a text from its pool only when they tie; one peer sorts
// keys folded beforehand (folding is not timed), another the texts with a
// case-folding compare. All start each iteration from the same unsorted rows.

#include "zyn/dstruct/stringarray.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using Zyn_dstruct::ShortString;
using Zyn_dstruct::TStringArray;

// Short texts of 4 to 12 letters of both cases and digits, the same for a
// given count.
std::vector<std::string> RandomTexts(int count) {
  static constexpr std::string_view kAlphabet =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  std::mt19937 gen(12345u + static_cast<unsigned>(count));
  std::uniform_int_distribution<int> length(4, 12);
  std::uniform_int_distribution<int> letter(0, static_cast<int>(kAlphabet.size()) - 1);
  std::vector<std::string> texts(static_cast<std::size_t>(count));
  for (auto& t : texts) {
    t.resize(static_cast<std::size_t>(length(gen)));
    for (auto& ch : t) ch = kAlphabet[static_cast<std::size_t>(letter(gen))];
  }
  return texts;
}

std::string FoldAscii(std::string s) {
  for (auto& ch : s) {
    if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch + 32);
  }
  return s;
}

void FillTable(TStringArray& table, const std::vector<std::string>& texts) {
  table.SetAllocRowsBy(static_cast<int>(texts.size()));
  table.SetNrRows(static_cast<int>(texts.size()));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    table.SetString(1, static_cast<int>(i) + 1, ShortString::FromBytes(texts[i]));
  }
}

void BM_TStringArraySort(benchmark::State& state) {
  const auto texts = RandomTexts(static_cast<int>(state.range(0)));
  TStringArray table;
  FillTable(table, texts);
  for (auto _ : state) {
    state.PauseTiming();
    table.UnSort();
    state.ResumeTiming();
    table.Sort(1, 0, true);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdSortFoldedKeys(benchmark::State& state) {
  auto texts = RandomTexts(static_cast<int>(state.range(0)));
  for (auto& t : texts) t = FoldAscii(std::move(t));
  std::vector<std::string> keys;
  for (auto _ : state) {
    state.PauseTiming();
    keys = texts;
    state.ResumeTiming();
    std::sort(keys.begin(), keys.end());
    benchmark::DoNotOptimize(keys.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The peer as most code has it: the texts themselves, compared with a
// case-folding compare (ASCII, as the table folds).
void BM_StdSortFoldingCompare(benchmark::State& state) {
  const auto texts = RandomTexts(static_cast<int>(state.range(0)));
  const auto less = [](const std::string& a, const std::string& b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
      const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
      return static_cast<unsigned char>(fold(x)) < static_cast<unsigned char>(fold(y));
    });
  };
  std::vector<std::string> keys;
  for (auto _ : state) {
    state.PauseTiming();
    keys = texts;
    state.ResumeTiming();
    std::sort(keys.begin(), keys.end(), less);
    benchmark::DoNotOptimize(keys.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_TStringArraySetString(benchmark::State& state) {
  const auto texts = RandomTexts(static_cast<int>(state.range(0)));
  std::vector<ShortString> cells;
  for (const auto& t : texts) cells.push_back(ShortString::FromBytes(t));
  TStringArray table;
  table.SetAllocRowsBy(static_cast<int>(texts.size()));
  table.SetNrRows(static_cast<int>(texts.size()));
  for (auto _ : state) {
    state.PauseTiming();
    table.Clear();
    state.ResumeTiming();
    for (std::size_t i = 0; i < cells.size(); ++i) {
      table.SetString(1, static_cast<int>(i) + 1, cells[i]);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_VectorStringAssign(benchmark::State& state) {
  const auto texts = RandomTexts(static_cast<int>(state.range(0)));
  std::vector<std::string> cells;
  for (auto _ : state) {
    state.PauseTiming();
    cells.assign(texts.size(), std::string());
    cells.shrink_to_fit();
    state.ResumeTiming();
    for (std::size_t i = 0; i < texts.size(); ++i) cells[i] = texts[i];
    benchmark::DoNotOptimize(cells.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_TStringArrayGetString(benchmark::State& state) {
  const auto texts = RandomTexts(static_cast<int>(state.range(0)));
  TStringArray table;
  FillTable(table, texts);
  table.Sort(1, 0, true);  // reads go through the index, as in use
  for (auto _ : state) {
    std::size_t total = 0;
    for (int r = 1; r <= table.NrOfRows(); ++r) total += table.GetString(1, r).size();
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_VectorStringRead(benchmark::State& state) {
  const auto texts = RandomTexts(static_cast<int>(state.range(0)));
  std::vector<std::size_t> order(texts.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return FoldAscii(texts[a]) < FoldAscii(texts[b]);
  });
  for (auto _ : state) {
    std::size_t total = 0;
    for (std::size_t i : order) {
      std::string copy = texts[i];
      total += copy.size();
      benchmark::DoNotOptimize(copy.data());
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_TStringArraySort)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdSortFoldedKeys)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdSortFoldingCompare)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TStringArraySetString)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VectorStringAssign)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TStringArrayGetString)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VectorStringRead)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
