// 1 000 000 marks on a 4096 x 4096 bitmap, beside cairo drawing the same
// shapes on an image surface of that size without antialiasing: the filled
// square of mark 9, the disc of mark 24 and the circle of mark 17.

#include "zyn/base/marks.h"

#include <benchmark/benchmark.h>
#include <cairo.h>

#include <cstdint>
#include <vector>

#include "zyn/platform/canvas.h"

namespace {

constexpr int kSide = 4096;
constexpr int kMarks = 1000000;

struct Place {
  int x, y;
};

// The same pseudo-random places for every row.
const std::vector<Place>& Places() {
  static const std::vector<Place> places = [] {
    std::vector<Place> p(kMarks);
    std::uint32_t seed = 12345;
    for (Place& q : p) {
      seed = seed * 1664525u + 1013904223u;
      q.x = static_cast<int>(seed >> 20);
      seed = seed * 1664525u + 1013904223u;
      q.y = static_cast<int>(seed >> 20);
    }
    return p;
  }();
  return places;
}

void ZynMarks(benchmark::State& state, std::uint8_t mark) {
  zyn::platform::TBitmap bitmap(kSide, kSide);
  auto& cv = bitmap.Canvas();
  cv.Pen().SetColor(0x804020);
  for (auto _ : state) {
    for (const Place& p : Places()) Zyn_zynbase::DrawMarkOnCanvas(cv, mark, p.x, p.y);
    benchmark::DoNotOptimize(bitmap.ScanLine(0).data());
  }
  state.SetItemsProcessed(state.iterations() * kMarks);
}

enum class Shape { kSquare, kDisc, kCircle };

void CairoShapes(benchmark::State& state, Shape shape) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kSide, kSide);
  cairo_t* cr = cairo_create(surface);
  cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
  cairo_set_source_rgb(cr, 0.125, 0.25, 0.5);
  cairo_set_line_width(cr, 1.0);
  for (auto _ : state) {
    for (const Place& p : Places()) {
      switch (shape) {
        case Shape::kSquare:
          cairo_rectangle(cr, p.x - 3, p.y - 3, 7, 7);
          cairo_fill(cr);
          break;
        case Shape::kDisc:
          cairo_arc(cr, p.x + 0.5, p.y + 0.5, 3.5, 0, 6.283185307179586);
          cairo_fill(cr);
          break;
        case Shape::kCircle:
          cairo_arc(cr, p.x + 0.5, p.y + 0.5, 3.0, 0, 6.283185307179586);
          cairo_stroke(cr);
          break;
      }
    }
    cairo_surface_flush(surface);
    benchmark::DoNotOptimize(cairo_image_surface_get_data(surface));
  }
  state.SetItemsProcessed(state.iterations() * kMarks);
  cairo_destroy(cr);
  cairo_surface_destroy(surface);
}

BENCHMARK_CAPTURE(ZynMarks, square_mark9, 9)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CairoShapes, square, Shape::kSquare)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ZynMarks, disc_mark24, 24)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CairoShapes, disc, Shape::kDisc)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ZynMarks, circle_mark17, 17)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CairoShapes, circle, Shape::kCircle)->Unit(benchmark::kMillisecond);
// A plus of pixels and a filled triangle, for the other ways of drawing.
BENCHMARK_CAPTURE(ZynMarks, plus_mark3, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ZynMarks, triangle_mark36, 36)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
