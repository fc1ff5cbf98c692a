// strff and FormatData beside what a C++ user would write instead:
// std::to_chars and snprintf, on the same values and digit counts.
// Run: ./build/bench/bench/bench_numtext

#include "zyn/platform/numtext.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include "zyn/stringl/formatting.h"

namespace {

// Values over many magnitudes, both signs, as a measurement table holds them.
const std::vector<double>& Values() {
  static const std::vector<double> values = [] {
    std::mt19937_64 rng(42);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-4, 6);
    std::vector<double> v(1024);
    for (double& x : v) x = mantissa(rng) * std::pow(10.0, exponent(rng));
    return v;
  }();
  return values;
}

template <typename F>
void Run(benchmark::State& state, F format) {
  const std::vector<double>& values = Values();
  std::size_t i = 0;
  for (auto _ : state) {
    format(values[i]);
    i = (i + 1) & 1023;
  }
}

// The two peers, writing into a stack buffer as a C++ user would.
void ToChars(double x, std::chars_format format, int precision) {
  char buf[64];
  auto r = std::to_chars(buf, buf + sizeof buf, x, format, precision);
  benchmark::DoNotOptimize(r.ptr);
  benchmark::DoNotOptimize(buf);
}
void Snprintf(double x, const char* format) {
  char buf[64];
  benchmark::DoNotOptimize(std::snprintf(buf, sizeof buf, format, x));
  benchmark::DoNotOptimize(buf);
}

// Fixed notation, width 12, 4 decimals.
void BM_Fixed_strff(benchmark::State& state) {
  Run(state, [](double x) { benchmark::DoNotOptimize(Zyn_stringl::strff(x, 12, 4)); });
}
void BM_Fixed_Str(benchmark::State& state) {
  Run(state, [](double x) { benchmark::DoNotOptimize(zyn::platform::Str(x, 12, 4)); });
}
void BM_Fixed_to_chars(benchmark::State& state) {
  Run(state, [](double x) { ToChars(x, std::chars_format::fixed, 4); });
}
void BM_Fixed_snprintf(benchmark::State& state) {
  Run(state, [](double x) { Snprintf(x, "%12.4f"); });
}

// Scientific notation, 6 significant digits and a two-digit exponent.
void BM_Scientific_strff(benchmark::State& state) {
  Run(state, [](double x) { benchmark::DoNotOptimize(Zyn_stringl::strff(x, 12, -2)); });
}
void BM_Scientific_to_chars(benchmark::State& state) {
  Run(state, [](double x) { ToChars(x, std::chars_format::scientific, 5); });
}
void BM_Scientific_snprintf(benchmark::State& state) {
  Run(state, [](double x) { Snprintf(x, "%12.5E"); });
}

// FormatData with width 10 and 3 decimals: fixed inside its range,
// scientific outside; the peers get the same choice of format.
void BM_FormatData(benchmark::State& state) {
  Run(state, [](double x) { benchmark::DoNotOptimize(Zyn_stringl::FormatData(x, 10, 3)); });
}
bool FixedRange(double x) {
  const double a = std::fabs(x);
  return x == 0 || (a <= 99999.999 && a >= 0.001);
}
void BM_FormatData_to_chars(benchmark::State& state) {
  Run(state, [](double x) {
    FixedRange(x) ? ToChars(x, std::chars_format::fixed, 3)
                  : ToChars(x, std::chars_format::scientific, 9);
  });
}
void BM_FormatData_snprintf(benchmark::State& state) {
  Run(state, [](double x) { FixedRange(x) ? Snprintf(x, "%10.3f") : Snprintf(x, "%16.9E"); });
}

BENCHMARK(BM_Fixed_strff);
BENCHMARK(BM_Fixed_Str);
BENCHMARK(BM_Fixed_to_chars);
BENCHMARK(BM_Fixed_snprintf);
BENCHMARK(BM_Scientific_strff);
BENCHMARK(BM_Scientific_to_chars);
BENCHMARK(BM_Scientific_snprintf);
BENCHMARK(BM_FormatData);
BENCHMARK(BM_FormatData_to_chars);
BENCHMARK(BM_FormatData_snprintf);

}  // namespace

BENCHMARK_MAIN();
