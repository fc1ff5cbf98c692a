#include "zyn/platform/canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "zyn/platform/graphics_backend.h"
#include "zyn/platform/text.h"

namespace zyn::platform {

namespace {

using i64 = std::int64_t;

constexpr TColor kRgbMask = 0x00FFFFFF;

#if defined(__SIZEOF_INT128__)
__extension__ typedef __int128 Wide;
// floor((2 * i * d + n) / (2 * n)) and its remainder, for n > 0: the minor
// coordinate of step i of a line, halves rounded up. Products of two
// coordinate differences need more than 64 bits.
void RoundedStep(i64 i, i64 d, i64 n, i64& q, i64& r) {
  const Wide num = Wide{2} * i * d + n;
  const Wide den = Wide{2} * n;
  Wide qq = num / den;
  Wide rr = num % den;
  if (rr < 0) {
    rr += den;
    --qq;
  }
  q = static_cast<i64>(qq);
  r = static_cast<i64>(rr);
}
#else
void RoundedStep(i64 i, i64 d, i64 n, i64& q, i64& r) {
  // Without a 128-bit type the start of a long clipped line is found in
  // long double; the steps after it are exact.
  const long double v = (2.0L * i * d + n) / (2.0L * n);
  q = static_cast<i64>(std::floor(v));
  r = static_cast<i64>(2 * i * d + n - q * 2 * n);
  while (r < 0) r += 2 * n, --q;
  while (r >= 2 * n) r -= 2 * n, ++q;
}
#endif

// Runs of on and off pixels of the dashed styles of a 1-pixel pen.
std::span<const int> DashPattern(TPenStyle style) {
  static constexpr std::array<int, 2> kDash{18, 6};
  static constexpr std::array<int, 2> kDot{3, 3};
  static constexpr std::array<int, 4> kDashDot{9, 6, 3, 6};
  static constexpr std::array<int, 6> kDashDotDot{9, 3, 3, 3, 3, 3};
  static constexpr std::array<int, 2> kAlternate{1, 1};
  switch (style) {
    case psDash:
      return kDash;
    case psDot:
      return kDot;
    case psDashDot:
      return kDashDot;
    case psDashDotDot:
      return kDashDotDot;
    case psAlternate:
      return kAlternate;
    default:
      return {};
  }
}

bool PatternOn(std::span<const int> pattern, i64 i) {
  if (pattern.empty()) return true;
  int period = 0;
  for (int run : pattern) period += run;
  i64 at = i % period;
  for (std::size_t k = 0; k < pattern.size(); ++k) {
    if (at < pattern[k]) return k % 2 == 0;
    at -= pattern[k];
  }
  return false;
}

bool HatchHit(TBrushStyle style, i64 x, i64 y) {
  const auto m8 = [](i64 v) { return ((v % 8) + 8) % 8; };
  switch (style) {
    case bsSolid:
      return true;
    case bsHorizontal:
      return m8(y) == 0;
    case bsVertical:
      return m8(x) == 0;
    case bsFDiagonal:
      return m8(x - y) == 0;
    case bsBDiagonal:
      return m8(x + y) == 0;
    case bsCross:
      return m8(x) == 0 || m8(y) == 0;
    case bsDiagCross:
      return m8(x - y) == 0 || m8(x + y) == 0;
    default:
      return false;
  }
}

struct Point2 {
  double x, y;
};

// Sets pixels of one bitmap, always inside its raster.
class Painter {
 public:
  explicit Painter(TBitmap& bitmap) : bitmap_(bitmap), w_(bitmap.Width()), h_(bitmap.Height()) {}

  i64 Width() const { return w_; }
  i64 Height() const { return h_; }

  void Plot(i64 x, i64 y, TColor color) {
    if (x >= 0 && y >= 0 && x < w_ && y < h_) {
      bitmap_.ScanLine(static_cast<int>(y))[static_cast<std::size_t>(x)] = color & kRgbMask;
    }
  }

  // Pixels x0..x1 of row y (both included) in `color`, through a hatch.
  void Span(i64 y, i64 x0, i64 x1, TColor color, TBrushStyle style = bsSolid) {
    if (y < 0 || y >= h_) return;
    x0 = std::max<i64>(x0, 0);
    x1 = std::min<i64>(x1, w_ - 1);
    if (x0 > x1) return;
    auto row = bitmap_.ScanLine(static_cast<int>(y));
    color &= kRgbMask;
    if (style == bsSolid) {
      std::fill(row.begin() + x0, row.begin() + x1 + 1, color);
      return;
    }
    for (i64 x = x0; x <= x1; ++x) {
      if (HatchHit(style, x, y)) row[static_cast<std::size_t>(x)] = color;
    }
  }

  // The box x0..x1-1 by y0..y1-1.
  void Box(i64 x0, i64 y0, i64 x1, i64 y1, TColor color, TBrushStyle style = bsSolid) {
    y0 = std::max<i64>(y0, 0);
    y1 = std::min<i64>(y1, h_);
    for (i64 y = y0; y < y1; ++y) Span(y, x0, x1 - 1, color, style);
  }

  // A 1-pixel line: step i of n along the longer axis, the other coordinate
  // rounded (halves up). The steps 0..n-1 are drawn, and n too if
  // `with_end`; only the steps inside the raster are visited.
  void ThinLine(i64 x0, i64 y0, i64 x1, i64 y1, bool with_end, TColor color,
                std::span<const int> pattern) {
    const i64 dx = x1 - x0;
    const i64 dy = y1 - y0;
    const i64 n = std::max(dx < 0 ? -dx : dx, dy < 0 ? -dy : dy);
    const i64 last = with_end ? n : n - 1;
    if (last < 0) return;
    if (n == 0) {
      Plot(x0, y0, color);
      return;
    }
    const bool x_major = (dx < 0 ? -dx : dx) >= (dy < 0 ? -dy : dy);
    const i64 major0 = x_major ? x0 : y0;
    const i64 minor0 = x_major ? y0 : x0;
    const i64 step = (x_major ? dx : dy) > 0 ? 1 : -1;
    const i64 d = x_major ? dy : dx;
    const i64 limit = x_major ? w_ : h_;
    i64 lo = step > 0 ? -major0 : major0 - (limit - 1);
    i64 hi = step > 0 ? limit - 1 - major0 : major0;
    lo = std::max<i64>(lo, 0);
    hi = std::min(hi, last);
    if (lo > hi) return;
    i64 q = 0;
    i64 r = 0;
    RoundedStep(lo, d, n, q, r);
    const i64 den = 2 * n;
    for (i64 i = lo; i <= hi; ++i) {
      if (PatternOn(pattern, i)) {
        const i64 major = major0 + i * step;
        const i64 minor = minor0 + q;
        if (x_major) {
          Plot(major, minor, color);
        } else {
          Plot(minor, major, color);
        }
      }
      r += 2 * d;
      while (r >= den) r -= den, ++q;
      while (r < 0) r += den, --q;
    }
  }

  // Fills the polygon `pts` by the even-odd rule, sampling each pixel at its
  // own grid point. Rows count half-open (a point on the lowest edge is
  // out); `inclusive` takes points on the left and right edges in, else
  // only those on left edges.
  void FillPolygon(std::span<const Point2> pts, bool inclusive, TColor color, TBrushStyle style) {
    if (pts.empty() || h_ == 0 || w_ == 0) return;
    double ymin = pts[0].y;
    double ymax = pts[0].y;
    for (const Point2& p : pts) {
      ymin = std::min(ymin, p.y);
      ymax = std::max(ymax, p.y);
    }
    const i64 row0 = std::max<i64>(0, static_cast<i64>(std::max(std::ceil(ymin), -1.0)));
    const double top_row = std::min(std::ceil(ymax) - 1, static_cast<double>(h_ - 1));
    if (top_row < 0) return;
    const i64 row1 = static_cast<i64>(top_row);
    std::vector<double> xs;
    for (i64 y = row0; y <= row1; ++y) {
      xs.clear();
      const double fy = static_cast<double>(y);
      for (std::size_t k = 0; k < pts.size(); ++k) {
        const Point2& a = pts[k];
        const Point2& b = pts[(k + 1) % pts.size()];
        if (a.y == b.y) continue;
        const Point2& lo = a.y < b.y ? a : b;
        const Point2& hi = a.y < b.y ? b : a;
        if (lo.y <= fy && fy < hi.y) {
          xs.push_back(lo.x + (fy - lo.y) * (hi.x - lo.x) / (hi.y - lo.y));
        }
      }
      std::sort(xs.begin(), xs.end());
      for (std::size_t k = 0; k + 1 < xs.size(); k += 2) {
        const double from = std::ceil(xs[k]);
        const double to = inclusive ? std::floor(xs[k + 1]) : std::ceil(xs[k + 1]) - 1;
        const double cut_from = std::max(from, -1.0);
        const double cut_to = std::min(to, static_cast<double>(w_));
        if (cut_from > cut_to) continue;
        Span(y, static_cast<i64>(cut_from), static_cast<i64>(cut_to), color, style);
      }
    }
  }

  // A line of a pen `width` > 1 pixels: the rectangle around it, with
  // square ends reaching width / 2 beyond both points.
  void WideLine(i64 x0, i64 y0, i64 x1, i64 y1, int width, TColor color) {
    const double dx = static_cast<double>(x1 - x0);
    const double dy = static_cast<double>(y1 - y0);
    const double len = std::hypot(dx, dy);
    const double ux = len > 0 ? dx / len : 1.0;
    const double uy = len > 0 ? dy / len : 0.0;
    const double half = width / 2.0;
    const double ax = static_cast<double>(x0) - ux * half;
    const double ay = static_cast<double>(y0) - uy * half;
    const double bx = static_cast<double>(x1) + ux * half;
    const double by = static_cast<double>(y1) + uy * half;
    const double nx = -uy * half;
    const double ny = ux * half;
    const std::array<Point2, 4> quad{
        Point2{ax + nx, ay + ny}, {bx + nx, by + ny}, {bx - nx, by - ny}, {ax - nx, ay - ny}};
    FillPolygon(quad, false, color, bsSolid);
  }

 private:
  TBitmap& bitmap_;
  i64 w_;
  i64 h_;
};

// A box given by two corners in either order, as [x0, x1) x [y0, y1).
struct Box {
  i64 x0, y0, x1, y1;
};

Box Normalized(int left, int top, int right, int bottom) {
  return {std::min<i64>(left, right), std::min<i64>(top, bottom), std::max<i64>(left, right),
          std::max<i64>(top, bottom)};
}

// Whether the centre of pixel x, y lies in the ellipse inscribed in the box
// of doubled size a x b around the doubled centre cx, cy. All values are in
// half pixels, so the test is exact in integers for the usual sizes.
bool InEllipse(i64 x, i64 y, i64 cx2, i64 cy2, i64 a, i64 b) {
  if (a <= 0 || b <= 0) return false;
  const i64 px = 2 * x + 1 - cx2;
  const i64 py = 2 * y + 1 - cy2;
  if (a < (1 << 15) && b < (1 << 15)) {
    return px * px * b * b + py * py * a * a <= a * a * b * b;
  }
  const double fx = static_cast<double>(px) / static_cast<double>(a);
  const double fy = static_cast<double>(py) / static_cast<double>(b);
  return fx * fx + fy * fy <= 1.0;
}

}  // namespace

void TPen::Assign(const TPersistent& Source) {
  if (const auto* p = dynamic_cast<const TPen*>(&Source)) {
    color_ = p->color_;
    width_ = p->width_;
    style_ = p->style_;
    return;
  }
  TPersistent::Assign(Source);
}

void TBrush::Assign(const TPersistent& Source) {
  if (const auto* b = dynamic_cast<const TBrush*>(&Source)) {
    color_ = b->color_;
    style_ = b->style_;
    return;
  }
  TPersistent::Assign(Source);
}

TColor TCanvas::Pixels(int x, int y) const noexcept {
  const TBitmap& b = bitmap_;
  if (x < 0 || y < 0 || x >= b.Width() || y >= b.Height()) return clInvalid;
  return b.ScanLine(y)[static_cast<std::size_t>(x)];
}

void TCanvas::SetPixels(int x, int y, TColor color) noexcept { Painter(bitmap_).Plot(x, y, color); }

void TCanvas::LineTo(int x, int y) noexcept {
  const TPoint from = pen_pos_;
  pen_pos_ = {x, y};
  if (pen_.Style() == psClear) return;
  Painter p(bitmap_);
  if (pen_.Width() > 1) {
    p.WideLine(from.X, from.Y, x, y, pen_.Width(), pen_.Color());
  } else {
    p.ThinLine(from.X, from.Y, x, y, false, pen_.Color(), DashPattern(pen_.Style()));
  }
}

void TCanvas::FillRect(int left, int top, int right, int bottom) noexcept {
  if (brush_.Style() == bsClear) return;
  const Box b = Normalized(left, top, right, bottom);
  Painter(bitmap_).Box(b.x0, b.y0, b.x1, b.y1, brush_.Color(), brush_.Style());
}

void TCanvas::Rectangle(int left, int top, int right, int bottom) noexcept {
  const Box b = Normalized(left, top, right, bottom);
  if (b.x0 == b.x1 || b.y0 == b.y1) return;
  Painter p(bitmap_);
  const bool pen = pen_.Style() != psClear;
  const i64 w = pen ? pen_.Width() : 0;
  if (brush_.Style() != bsClear) {
    p.Box(b.x0 + w, b.y0 + w, b.x1 - w, b.y1 - w, brush_.Color(), brush_.Style());
  }
  if (!pen) return;
  const TColor c = pen_.Color();
  const std::span<const int> pattern = w == 1 ? DashPattern(pen_.Style()) : std::span<const int>{};
  if (!pattern.empty() && b.x1 - b.x0 > 1 && b.y1 - b.y0 > 1) {
    // Dashes run round the ring from the top-left corner, clockwise.
    p.ThinLine(b.x0, b.y0, b.x1 - 1, b.y0, false, c, pattern);
    p.ThinLine(b.x1 - 1, b.y0, b.x1 - 1, b.y1 - 1, false, c, pattern);
    p.ThinLine(b.x1 - 1, b.y1 - 1, b.x0, b.y1 - 1, false, c, pattern);
    p.ThinLine(b.x0, b.y1 - 1, b.x0, b.y0, false, c, pattern);
    return;
  }
  const i64 top_end = std::min(b.y0 + w, b.y1);
  const i64 bottom_start = std::max(b.y1 - w, top_end);
  p.Box(b.x0, b.y0, b.x1, top_end, c);
  p.Box(b.x0, bottom_start, b.x1, b.y1, c);
  p.Box(b.x0, top_end, std::min(b.x0 + w, b.x1), bottom_start, c);
  p.Box(std::max(b.x1 - w, b.x0 + w), top_end, b.x1, bottom_start, c);
}

void TCanvas::Ellipse(int left, int top, int right, int bottom) noexcept {
  const Box b = Normalized(left, top, right, bottom);
  if (b.x0 == b.x1 || b.y0 == b.y1) return;
  Painter p(bitmap_);
  const bool pen = pen_.Style() != psClear;
  const bool brush = brush_.Style() != bsClear;
  if (!pen && !brush) return;
  const i64 w = pen ? pen_.Width() : 0;
  const i64 cx2 = b.x0 + b.x1;
  const i64 cy2 = b.y0 + b.y1;
  const i64 a = b.x1 - b.x0;
  const i64 bb = b.y1 - b.y0;
  // The ring of the pen lies between the ellipse and the one whose box is
  // `w` smaller on every side.
  const i64 ia = a - 2 * w;
  const i64 ib = bb - 2 * w;
  const i64 y0 = std::max<i64>(b.y0, 0);
  const i64 y1 = std::min<i64>(b.y1, p.Height());
  const i64 x0 = std::max<i64>(b.x0, 0);
  const i64 x1 = std::min<i64>(b.x1, p.Width());
  for (i64 y = y0; y < y1; ++y) {
    for (i64 x = x0; x < x1; ++x) {
      if (!InEllipse(x, y, cx2, cy2, a, bb)) continue;
      if (InEllipse(x, y, cx2, cy2, ia, ib)) {
        if (brush && HatchHit(brush_.Style(), x, y)) p.Plot(x, y, brush_.Color());
      } else if (pen) {
        p.Plot(x, y, pen_.Color());
      }
    }
  }
}

void TCanvas::Polygon(std::span<const TPoint> points) noexcept {
  if (points.empty()) return;
  Painter p(bitmap_);
  if (brush_.Style() != bsClear) {
    std::vector<Point2> pts;
    pts.reserve(points.size());
    for (const TPoint& q : points) {
      pts.push_back({static_cast<double>(q.X), static_cast<double>(q.Y)});
    }
    p.FillPolygon(pts, true, brush_.Color(), brush_.Style());
  }
  if (pen_.Style() == psClear) return;
  for (std::size_t k = 0; k < points.size(); ++k) {
    const TPoint& a = points[k];
    const TPoint& b = points[(k + 1) % points.size()];
    if (pen_.Width() > 1) {
      p.WideLine(a.X, a.Y, b.X, b.Y, pen_.Width(), pen_.Color());
    } else {
      p.ThinLine(a.X, a.Y, b.X, b.Y, true, pen_.Color(), DashPattern(pen_.Style()));
    }
  }
}

int TCanvas::TextWidth(std::u16string_view text) const {
  return backend::MeasureText(font_, text).width;
}

int TCanvas::TextHeight(std::u16string_view text) const {
  return backend::MeasureText(font_, text).height;
}

void TCanvas::TextOut(int x, int y, std::u16string_view text) {
  const backend::TextExtent e = backend::MeasureText(font_, text);
  if (brush_.Style() != bsClear) {
    Painter(bitmap_).Box(x, y, i64{x} + e.width, i64{y} + e.height, brush_.Color(), brush_.Style());
  }
  backend::RenderText(font_, text, x, y, font_.Color(), bitmap_);
  const i64 end = i64{x} + e.width;
  pen_pos_ = {static_cast<int>(std::clamp<i64>(end, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max())),
              y};
}

void TCanvas::Draw(int x, int y, const TBitmap& source) noexcept {
  Painter p(bitmap_);
  const i64 sx0 = std::max<i64>(0, -i64{x});
  const i64 sx1 = std::min<i64>(source.Width(), p.Width() - x);
  if (sx0 >= sx1) return;
  for (int sy = 0; sy < source.Height(); ++sy) {
    const i64 ty = i64{y} + sy;
    if (ty < 0) continue;
    if (ty >= p.Height()) break;
    const auto from = source.ScanLine(sy);
    const auto to = bitmap_.ScanLine(static_cast<int>(ty));
    std::copy(from.begin() + sx0, from.begin() + sx1, to.begin() + (x + sx0));
  }
}

TBitmap::TBitmap() : canvas_(new TCanvas(*this)) {}

TBitmap::TBitmap(int width, int height) : TBitmap() { SetSize(width, height); }

TBitmap::~TBitmap() = default;

void TBitmap::SetSize(int width, int height) {
  width = std::max(width, 0);
  height = std::max(height, 0);
  if (width == width_ && height == height_) return;
  if (i64{width} * height > kMaxPixels) {
    throw EInvalidGraphic(u"Bitmap too large: " + FromUTF8(std::to_string(width)) + u" x " +
                          FromUTF8(std::to_string(height)) + u" pixels");
  }
  std::vector<TColor> pixels(static_cast<std::size_t>(i64{width} * height), clWhite);
  const int keep_w = std::min(width, width_);
  const int keep_h = std::min(height, height_);
  for (int y = 0; y < keep_h; ++y) {
    std::copy_n(pixels_.begin() + static_cast<std::ptrdiff_t>(i64{y} * width_), keep_w,
                pixels.begin() + static_cast<std::ptrdiff_t>(i64{y} * width));
  }
  pixels_ = std::move(pixels);
  width_ = width;
  height_ = height;
}

std::span<TColor> TBitmap::ScanLine(int y) noexcept {
  if (y < 0 || y >= height_) return {};
  return {pixels_.data() + static_cast<std::size_t>(i64{y} * width_),
          static_cast<std::size_t>(width_)};
}

std::span<const TColor> TBitmap::ScanLine(int y) const noexcept {
  if (y < 0 || y >= height_) return {};
  return {pixels_.data() + static_cast<std::size_t>(i64{y} * width_),
          static_cast<std::size_t>(width_)};
}

void TBitmap::Assign(const TPersistent& Source) {
  if (const auto* b = dynamic_cast<const TBitmap*>(&Source)) {
    if (b == this) return;
    pixels_ = b->pixels_;
    width_ = b->width_;
    height_ = b->height_;
    return;
  }
  TPersistent::Assign(Source);
}

}  // namespace zyn::platform
