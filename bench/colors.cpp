// TColorArray's nearest-colour search over a 1000-colour scale and its
// interpolated fill of 1 000 000 colours, each beside the plain loop a user
// would write: the search with RGBColorDistance per entry, the fill with a
// floating-point position and std::lerp per channel.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "zyn/colors/colorarray.h"
#include "zyn/colors/colortables.h"
#include "zyn/platform/random.h"

namespace {

using Zyn_zyncolors::TColor;
using Zyn_zyncolors::TColorArray;

constexpr int kProbes = 1024;
constexpr int kFillSize = 1000000;

std::vector<TColor> Probes() {
  zyn::platform::RandSeed = 42;
  std::vector<TColor> probes(kProbes);
  for (TColor& c : probes) c = Zyn_zyncolors::RandomColor();
  return probes;
}

void BM_ColorToIndex_TColorArray(benchmark::State& state) {
  const TColorArray scale;
  const std::vector<TColor> probes = Probes();
  for (auto _ : state) {
    for (TColor c : probes) {
      double distance;
      benchmark::DoNotOptimize(scale.ColorToIndex(c, distance));
      benchmark::DoNotOptimize(distance);
    }
  }
  state.SetItemsProcessed(state.iterations() * kProbes);
}

void BM_ColorToIndex_PlainLoop(benchmark::State& state) {
  const TColorArray source;
  std::vector<TColor> scale(static_cast<std::size_t>(source.Size()));
  for (int i = 1; i <= source.Size(); ++i)
    scale[static_cast<std::size_t>(i - 1)] = source.ColorElem(i);
  const std::vector<TColor> probes = Probes();
  for (auto _ : state) {
    for (TColor c : probes) {
      int best = 1;
      double best_distance = 1.0;
      for (std::size_t k = 0; k < scale.size(); ++k) {
        const double d = Zyn_zyncolors::RGBColorDistance(c, scale[k]);
        if (d < best_distance) best = static_cast<int>(k) + 1, best_distance = d;
      }
      benchmark::DoNotOptimize(best);
      benchmark::DoNotOptimize(best_distance);
    }
  }
  state.SetItemsProcessed(state.iterations() * kProbes);
}

void BM_FillByInterpolation_TColorArray(benchmark::State& state) {
  TColorArray scale;
  scale.SetSize(kFillSize);
  for (auto _ : state) {
    scale.FillByInterpolation(0, Zyn_zyncolors::ColorArray_Rainbow);
    benchmark::DoNotOptimize(scale.ColorElem(kFillSize / 2));
  }
  state.SetItemsProcessed(state.iterations() * kFillSize);
}

void BM_FillByInterpolation_PlainLoop(benchmark::State& state) {
  std::vector<TColor> scale(kFillSize);
  const std::span<const TColor> support = Zyn_zyncolors::ColorArray_Rainbow;
  const double high = static_cast<double>(support.size() - 1);
  for (auto _ : state) {
    for (std::size_t i = 0; i < scale.size(); ++i) {
      const double pos = high * static_cast<double>(i + 1) / kFillSize;
      const auto lo = std::min(static_cast<std::size_t>(pos), support.size() - 2);
      const double f = pos - static_cast<double>(lo);
      const TColor a = support[lo], b = support[lo + 1];
      TColor c = 0;
      for (int shift = 0; shift < 24; shift += 8) {
        const double ca = (a >> shift) & 0xFF, cb = (b >> shift) & 0xFF;
        c |= static_cast<TColor>(std::lerp(ca, cb, f)) << shift;
      }
      scale[i] = c;
    }
    benchmark::DoNotOptimize(scale[kFillSize / 2]);
  }
  state.SetItemsProcessed(state.iterations() * kFillSize);
}

BENCHMARK(BM_ColorToIndex_TColorArray);
BENCHMARK(BM_ColorToIndex_PlainLoop);
BENCHMARK(BM_FillByInterpolation_TColorArray);
BENCHMARK(BM_FillByInterpolation_PlainLoop);

}  // namespace

BENCHMARK_MAIN();
