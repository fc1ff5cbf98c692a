#include "zyn/base/marks.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <limits>
#include <string>

#include "zyn/platform/devices.h"

namespace Zyn_zynbase {

namespace {

using zyn::platform::TBitmap;
using zyn::platform::TCanvas;
using zyn::platform::TPoint;

// Draws one mark's parts relative to its centre. Coordinates beyond the int
// range are held at its ends; they lie off every raster.
class MarkPen {
 public:
  MarkPen(TCanvas& canvas, int x, int y) : cv_(canvas), x_(x), y_(y) {}

  int X(int dx) const { return Clamp(std::int64_t{x_} + dx); }
  int Y(int dy) const { return Clamp(std::int64_t{y_} + dy); }

  void Pixel(int dx, int dy) { cv_.SetPixels(X(dx), Y(dy), cv_.Pen().Color()); }

  void Line(int x0, int y0, int x1, int y1) {
    cv_.MoveTo(X(x0), Y(y0));
    cv_.LineTo(X(x1), Y(y1));
  }

  // MoveTo the first point, LineTo each further one.
  void Path(std::initializer_list<std::array<int, 2>> points) {
    bool first = true;
    for (const auto& p : points) {
      if (first) {
        cv_.MoveTo(X(p[0]), Y(p[1]));
      } else {
        cv_.LineTo(X(p[0]), Y(p[1]));
      }
      first = false;
    }
  }

  void Rectangle(int l, int t, int r, int b) { cv_.Rectangle(X(l), Y(t), X(r), Y(b)); }
  void Ellipse(int l, int t, int r, int b) { cv_.Ellipse(X(l), Y(t), X(r), Y(b)); }
  void Polygon(std::initializer_list<std::array<int, 2>> points) {
    std::array<TPoint, 4> pts{};
    std::size_t n = 0;
    for (const auto& p : points) pts[n++] = TPoint{X(p[0]), Y(p[1])};
    cv_.Polygon(std::span<const TPoint>(pts.data(), n));
  }

  // Filled: the brush takes the pen colour, its style stays.
  void Filled() { cv_.Brush().SetColor(cv_.Pen().Color()); }
  // Open shapes are drawn with a clear brush, which is solid afterwards.
  template <typename Draw>
  void Open(Draw draw) {
    cv_.Brush().SetStyle(zyn::platform::bsClear);
    draw();
    cv_.Brush().SetStyle(zyn::platform::bsSolid);
  }

 private:
  static int Clamp(std::int64_t v) {
    return static_cast<int>(std::clamp<std::int64_t>(v, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
  }

  TCanvas& cv_;
  int x_;
  int y_;
};

// The pluses and crosses of marks 1 to 6 in pixels, reaching `r` from 0, 0.
void PixelPlus(MarkPen& m, int r) {
  for (int d = -r; d <= r; ++d) {
    m.Pixel(0, d);
    m.Pixel(d, 0);
  }
}

void PixelCross(MarkPen& m, int r) {
  for (int d = -r; d <= r; ++d) {
    m.Pixel(d, d);
    m.Pixel(d, -d);
  }
}

void DrawShape(TCanvas& cv, MarkPen& m, int mark, bool printer) {
  switch (mark) {
    case 0:
      m.Pixel(0, 0);
      break;
    case 1:
    case 2:
    case 3: {
      const int r = mark;
      if (printer) {
        m.Line(-r - 1, 0, r + 1, 0);
        m.Line(0, -r - 1, 0, r + 1);
      } else {
        PixelPlus(m, r);
      }
      break;
    }
    case 4:
    case 5:
    case 6: {
      const int r = mark - 3;
      if (printer) {
        m.Line(-r - 1, -r - 1, r + 1, r + 1);
        m.Line(-r - 1, r + 1, r + 1, -r - 1);
      } else {
        PixelCross(m, r);
      }
      break;
    }
    case 7:
    case 8:
    case 9: {
      const int r = mark - 6;
      m.Filled();
      m.Rectangle(-r, -r, r + 1, r + 1);
      break;
    }
    case 10:
    case 11:
    case 12: {
      const int r = mark - 9;
      m.Path({{-r, -r}, {-r, r}, {r, r}, {r, -r}, {-r, -r}});
      break;
    }
    case 13:
      m.Path({{-3, 0}, {0, 3}, {3, 0}, {0, -3}, {-3, 0}});
      m.Pixel(0, 0);
      break;
    case 14:
      m.Filled();
      m.Polygon({{-2, 0}, {0, 2}, {2, 0}, {0, -2}});
      break;
    case 15:
      m.Filled();
      m.Polygon({{-3, 0}, {0, 3}, {3, 0}, {0, -3}});
      break;
    case 16:
      m.Open([&] { m.Ellipse(-2, -2, 3, 3); });
      break;
    case 17:
      m.Open([&] { m.Ellipse(-3, -3, 4, 4); });
      break;
    case 18:
      for (int dy = -3; dy <= 3; ++dy) {
        for (int dx = -3; dx <= 3; ++dx) {
          if ((dx + dy) % 2 != 0) continue;
          if (printer) {
            m.Line(dx, dy, dx, dy);
          } else {
            m.Pixel(dx, dy);
          }
        }
      }
      break;
    case 19:
      m.Path({{-3, 0}, {0, 3}, {3, 0}, {0, -3}, {-3, 0}});
      break;
    case 20:
      m.Line(0, 0, -3, 3);
      m.Line(0, 0, 3, 3);
      break;
    case 21:
      m.Line(0, 0, -4, 4);
      m.Line(0, 0, 4, 4);
      break;
    case 22:
      m.Line(0, 0, -3, -3);
      m.Line(0, 0, 3, -3);
      break;
    case 23:
      m.Line(0, 0, -4, -4);
      m.Line(0, 0, 4, -4);
      break;
    case 24:
      m.Filled();
      m.Ellipse(-3, -3, 4, 4);
      break;
    case 25:
      if (printer) {
        m.Line(-3, -3, 3, 3);
        m.Line(-3, -2, 2, 3);
        m.Line(-2, -3, 3, 2);
        m.Line(-3, 3, 3, -3);
        m.Line(-3, 2, 2, -3);
        m.Line(-2, 3, 3, -2);
      } else {
        m.Line(-3, -3, 4, 4);
        m.Line(-3, -2, 3, 4);
        m.Line(-2, -3, 4, 3);
        m.Line(-3, 3, 4, -4);
        m.Line(-3, 2, 3, -4);
        m.Line(-2, 3, 4, -3);
      }
      break;
    case 26:
      m.Filled();
      m.Ellipse(-2, -2, 3, 3);
      break;
    case 27:
      m.Open([&] { m.Ellipse(-2, -2, 2, 2); });
      break;
    case 28:
      m.Filled();
      m.Ellipse(-2, -2, 2, 2);
      break;
    case 29:
      m.Filled();
      m.Polygon({{-2, 0}, {0, 2}, {2, 0}});
      break;
    case 30:
      m.Filled();
      m.Polygon({{-3, 0}, {0, 3}, {3, 0}});
      break;
    case 31:
      m.Open([&] { m.Polygon({{-2, 0}, {0, 2}, {2, 0}}); });
      break;
    case 32:
      m.Open([&] { m.Polygon({{-3, 0}, {0, 3}, {3, 0}}); });
      break;
    case 33:
      m.Open([&] { m.Polygon({{-4, -3}, {0, 4}, {4, -3}}); });
      break;
    case 34:
      m.Filled();
      m.Polygon({{-4, -3}, {0, 4}, {4, -3}});
      break;
    case 35:
      m.Open([&] { m.Polygon({{-4, 3}, {0, -4}, {4, 3}}); });
      break;
    case 36:
      m.Filled();
      m.Polygon({{-4, 3}, {0, -4}, {4, 3}});
      break;
    case 37:
      m.Line(-3, 0, 4, 0);
      m.Line(0, 0, 0, -8);
      break;
    case 38:
      m.Line(-3, -2, 4, -2);
      m.Line(-3, 2, 4, 2);
      m.Line(0, -2, 0, 2);
      break;
    case 39:
      m.Open([&] { m.Ellipse(-3, -3, 4, 4); });
      m.Line(-3, 0, 4, 0);
      m.Line(0, -3, 0, 4);
      break;
    case 40:
      m.Open([&] { m.Polygon({{3, -2}, {-2, 0}, {3, 2}}); });
      break;
    case 41:
      m.Filled();
      m.Polygon({{3, -2}, {-2, 0}, {3, 2}});
      break;
    case 42:
      m.Open([&] { m.Polygon({{4, -3}, {-3, 0}, {4, 3}}); });
      break;
    case 43:
      m.Filled();
      m.Polygon({{4, -3}, {-3, 0}, {4, 3}});
      break;
    case 44:
      m.Open([&] { m.Polygon({{-3, -2}, {2, 0}, {-3, 2}}); });
      break;
    case 45:
      m.Filled();
      m.Polygon({{-3, -2}, {2, 0}, {-3, 2}});
      break;
    case 46:
      m.Open([&] { m.Polygon({{-4, -3}, {3, 0}, {-4, 3}}); });
      break;
    case 47:
      m.Filled();
      m.Polygon({{-4, -3}, {3, 0}, {-4, 3}});
      break;
    case 48:
      m.Open([&] { m.Rectangle(-3, -3, 4, 4); });
      m.Line(-3, 0, 4, 0);
      m.Line(0, -3, 0, 4);
      break;
    case 49:
      m.Open([&] { m.Rectangle(-2, -2, 3, 3); });
      m.Line(-4, 0, 5, 0);
      m.Line(0, -4, 0, 5);
      break;
    case 50:
      cv.Brush().SetStyle(zyn::platform::bsSolid);
      m.Line(-4, 0, 5, 0);
      m.Line(0, -4, 0, 5);
      m.Line(-3, -3, 4, 4);
      m.Line(-3, 3, 4, -4);
      break;
    case 51:
      cv.Brush().SetStyle(zyn::platform::bsSolid);
      m.Line(-4, 0, 5, 0);
      m.Line(0, -4, 0, 5);
      m.Line(-1, -3, 2, -3);
      m.Line(-1, 3, 2, 3);
      m.Line(-3, -1, -3, 2);
      m.Line(3, -1, 3, 2);
      break;
    default:
      break;
  }
}

}  // namespace

void DrawMarkOnCanvas(TCanvas& canvas, std::uint8_t Mark, int X, int Y) {
  MarkPen m(canvas, X, Y);
  if (Mark >= 52) {
    const char16_t code = static_cast<char16_t>(Mark >= 200 && Mark <= 209 ? Mark - 152 : Mark);
    const std::u16string text(1, code);
    const int w = canvas.TextWidth(text);
    const int h = canvas.TextHeight(text);
    canvas.Font().SetColor(canvas.Pen().Color());
    canvas.Brush().SetStyle(zyn::platform::bsClear);
    canvas.TextOut(m.X(-(w / 2)), m.Y(-(h / 2)), text);
    return;
  }
  const TColor brush_color = canvas.Brush().Color();
  const bool printer = &canvas == &zyn::platform::Printer().Canvas();
  DrawShape(canvas, m, Mark, printer);
  canvas.Brush().SetColor(brush_color);
}

std::unique_ptr<TBitmap> CreateMarkAsBitmap(std::uint8_t Mark, TColor MarkColor, TColor BkColor,
                                            int Margin) {
  const int margin = std::clamp(Margin, 0, 255);
  const int size = 2 * margin + 7;
  auto bitmap = std::make_unique<TBitmap>(size, size);
  TCanvas& cv = bitmap->Canvas();
  cv.Pen().SetColor(BkColor);
  cv.Brush().SetColor(BkColor);
  cv.Brush().SetStyle(zyn::platform::bsSolid);
  cv.Rectangle(0, 0, size, size);
  cv.Pen().SetColor(MarkColor);
  DrawMarkOnCanvas(cv, Mark, margin + 3, margin + 3);
  return bitmap;
}

}  // namespace Zyn_zynbase
