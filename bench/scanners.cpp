// Reading a line of numbers with the library's scanners, beside what a C++
// user would pick instead: std::from_chars and std::strtod on the same text
// in 8 bits.
#include "zyn/base/scanners.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdlib>
#include <string>

namespace {

// 1000 numbers of the kind the feature and colour files hold, blank-separated.
std::string MakeLine() {
  std::string line;
  for (int i = 0; i < 1000; ++i) {
    line += std::to_string(i * 37 % 1000) + "." + std::to_string(i % 97) + "e-" +
            std::to_string(i % 5) + " ";
  }
  return line;
}

const std::string kLine = MakeLine();
const std::u16string kLine16(kLine.begin(), kLine.end());

void BM_ScanFPNum(benchmark::State& state) {
  for (auto _ : state) {
    double sum = 0;
    for (int pos = 1; pos <= static_cast<int>(kLine16.size());) {
      sum += zyn::internal::ScanFPNum(kLine16, true, Zyn_zynbase::dsDot, pos);
    }
    benchmark::DoNotOptimize(sum);
  }
}

void BM_FromChars(benchmark::State& state) {
  for (auto _ : state) {
    double sum = 0;
    const char* p = kLine.data();
    const char* end = p + kLine.size();
    while (p < end) {
      double v = 0;
      p = std::from_chars(p, end, v).ptr + 1;
      sum += v;
    }
    benchmark::DoNotOptimize(sum);
  }
}

void BM_Strtod(benchmark::State& state) {
  for (auto _ : state) {
    double sum = 0;
    const char* p = kLine.c_str();
    char* next = nullptr;
    for (double v = std::strtod(p, &next); next != p; v = std::strtod(p, &next)) {
      sum += v;
      p = next;
    }
    benchmark::DoNotOptimize(sum);
  }
}

}  // namespace

BENCHMARK(BM_ScanFPNum);
BENCHMARK(BM_FromChars);
BENCHMARK(BM_Strtod);
BENCHMARK_MAIN();
