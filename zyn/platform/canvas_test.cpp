#include "zyn/platform/canvas.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <map>
#include <string>

#include "testing/lsan_fontconfig.h"
#include "testing/zyn_picture.h"
#include "testing/zyn_testing.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

using zyn::testing::Picture;
using zyn::testing::ShowsPicture;

constexpr TColor kPen = 0x000000;
constexpr TColor kFill = 0x0000FF;
const std::map<char, TColor> kColors{{'.', clWhite}, {'#', kPen}, {'o', kFill}};

// A white bitmap whose canvas draws in kPen and fills in kFill.
struct Sheet {
  explicit Sheet(int w = 12, int h = 8) : bitmap(w, h) {
    cv().Pen().SetColor(kPen);
    cv().Brush().SetColor(kFill);
  }
  TCanvas& cv() { return bitmap.Canvas(); }
  TBitmap bitmap;
};

// A picture at x, y whose rows are separated by '/'.
Picture At(int x, int y, std::string_view rows) {
  Picture p{x, y, {}};
  for (std::string_view rest = rows; !rest.empty();) {
    const std::size_t end = std::min(rest.find('/'), rest.size());
    p.rows.push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return p;
}

TEST(CanvasTest, ShapesTakeTheirPixels) {
  const auto line = [](int x0, int y0, int x1, int y1) {
    return [=](TCanvas& cv) {
      cv.MoveTo(x0, y0);
      cv.LineTo(x1, y1);
      EXPECT_EQ(cv.PenPos(), (TPoint{x1, y1}));
    };
  };
  const auto rect = [](int l, int t, int r, int b, TBrushStyle brush = bsSolid) {
    return [=](TCanvas& cv) {
      cv.Brush().SetStyle(brush);
      cv.Rectangle(l, t, r, b);
    };
  };
  const TPoint square[] = {{1, 1}, {4, 1}, {4, 4}, {1, 4}};
  const TPoint bow[] = {{0, 0}, {6, 4}, {6, 0}, {0, 4}};
  const TPoint one[] = {{3, 2}};
  struct Case {
    const char* name;
    TPenStyle pen;
    int width;
    std::function<void(TCanvas&)> draw;
    Picture want;
  };
  const Case cases[] = {
      // Lines leave out their end pixel.
      {"line right", psSolid, 1, line(1, 1, 5, 1), At(1, 1, "####")},
      {"line left", psSolid, 1, line(5, 1, 1, 1), At(2, 1, "####")},
      {"line down", psSolid, 1, line(1, 1, 1, 4), At(1, 1, "#/#/#")},
      {"shallow, halves round up", psSolid, 1, line(0, 0, 5, 2), At(0, 0, "##.../..##./....#")},
      {"steep", psSolid, 1, line(0, 0, 2, 5), At(0, 0, "#../#../.#./.#./..#")},
      {"diagonal up", psSolid, 1, line(0, 4, 4, 0), At(0, 1, "...#/..#./.#../#...")},
      {"zero length", psSolid, 1, line(3, 3, 3, 3), At(0, 0, "")},
      {"dot: 3 on, 3 off", psDot, 1, line(0, 1, 12, 1), At(0, 1, "###...###...")},
      {"alternate", psAlternate, 1, line(0, 1, 12, 1), At(0, 1, "#.#.#.#.#.#.")},
      {"clear pen", psClear, 1, line(0, 1, 12, 1), At(0, 0, "")},
      // Width 3: the band y 0.5..3.5 and x -1.5..13.5 around the line, half
      // open, so rows 0..2 and columns 0..11 (cut by the edge).
      {"wide", psSolid, 3, line(0, 1, 12, 1), At(0, 0, "############/############/############")},
      {"wide pen's square ends", psSolid, 2, line(4, 4, 4, 4), At(3, 3, "##/##")},
      // Rectangles cover left to right less one.
      {"pen and brush", psSolid, 1, rect(1, 1, 6, 5), At(1, 1, "#####/#ooo#/#ooo#/#####")},
      {"corners swapped", psSolid, 1, rect(6, 5, 1, 1), At(1, 1, "#####/#ooo#/#ooo#/#####")},
      {"clear brush", psSolid, 1, rect(1, 1, 4, 4, bsClear), At(1, 1, "###/#.#/###")},
      {"pen of 2", psSolid, 2, rect(0, 0, 6, 6),
       At(0, 0, "######/######/##oo##/##oo##/######/######")},
      {"one pixel", psSolid, 1, rect(2, 2, 3, 3), At(2, 2, "#")},
      {"no width", psSolid, 1, rect(2, 2, 2, 6), At(0, 0, "")},
      {"hatched", psSolid, 1, rect(0, 0, 10, 3, bsVertical),
       At(0, 0, "##########/#.......o#/##########")},
      {"without a pen the brush fills the box", psClear, 1, rect(1, 1, 3, 3), At(1, 1, "oo/oo")},
      // Ellipses take the pixels whose centres lie inside.
      {"ellipse 6 x 4", psSolid, 1, [](TCanvas& cv) { cv.Ellipse(1, 1, 7, 5); },
       At(1, 1, ".####./#oooo#/#oooo#/.####.")},
      {"ring between 7 and 3 pixel circles", psSolid, 2,
        [](TCanvas& cv) { cv.Ellipse(0, 0, 7, 7); },
       At(0, 0, "..###../.#####./##ooo##/##ooo##/##ooo##/.#####./..###..")},
      {"ellipse of one pixel", psSolid, 1, [](TCanvas& cv) { cv.Ellipse(2, 2, 3, 3); },
       At(2, 2, "#")},
      // Polygons fill their inside and draw every edge.
      {"polygon", psSolid, 1, [&](TCanvas& cv) { cv.Polygon(square); },
       At(1, 1, "####/#oo#/#oo#/####")},
      // Without a pen the rows count half-open: the lowest edge stays out.
      {"polygon without pen", psClear, 1, [&](TCanvas& cv) { cv.Polygon(square); },
       At(1, 1, "oooo/oooo/oooo")},
      // Even-odd, edges included: the two halves of a bow tie meet in 3, 2.
      {"bow tie", psClear, 1, [&](TCanvas& cv) { cv.Polygon(bow); },
       At(0, 0, "o.....o/oo...oo/ooooooo/oo...oo")},
      {"empty and one-point polygons", psSolid, 1,
       [&](TCanvas& cv) {
         cv.Polygon(std::span<const TPoint>{});
         cv.Polygon(one);
       },
       At(3, 2, "#")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Sheet s;
    s.cv().Pen().SetStyle(c.pen);
    s.cv().Pen().SetWidth(c.width);
    c.draw(s.cv());
    EXPECT_TRUE(ShowsPicture(s.bitmap, c.want, kColors));
  }
}

TEST(CanvasTest, NothingLandsOutsideTheRaster) {
  const int far[] = {INT_MIN, -1000000000, -1, 0, 5, 1000000000, INT_MAX};
  Sheet s(6, 5);
  TBitmap empty;
  for (int width : {1, 3, INT_MAX}) {
    for (TCanvas* cv : {&s.cv(), &empty.Canvas()}) {
      cv->Pen().SetWidth(width);
      for (int a : far) {
        for (int b : far) {
          cv->MoveTo(a, b);
          cv->LineTo(b, a);
          cv->Rectangle(a, b, b, a);
          cv->Ellipse(a, a, b, b);
          const TPoint pts[] = {{a, b}, {b, a}, {a, a}, {INT_MAX, INT_MIN}};
          cv->Polygon(pts);
          cv->SetPixels(a, b, kPen);
          cv->TextOut(a, b, u"Wg");
        }
      }
    }
  }
  EXPECT_EQ(empty.Canvas().Pixels(0, 0), clInvalid);
  EXPECT_EQ(s.cv().Pixels(6, 0), clInvalid);
  EXPECT_EQ(s.cv().Pixels(-1, 0), clInvalid);
  // A line far across the raster still hits exactly the pixels on its way.
  Sheet d(8, 8);
  d.cv().MoveTo(-1000000000, -1000000000);
  d.cv().LineTo(1000000000, 1000000000);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(d.cv().Pixels(i, i), kPen) << i;
  EXPECT_EQ(d.cv().Pixels(1, 0), clWhite);
}

TEST(CanvasTest, TextUsesTheFontsMetrics) {
  Sheet s(80, 40);
  TCanvas& cv = s.cv();
  EXPECT_EQ(cv.TextWidth(u""), 0);
  const int height = cv.TextHeight(u"A");
  // DejaVu Sans at 13 pixels: ascent 0.928 em and descent 0.236 em.
  EXPECT_GE(height, 15);
  EXPECT_LE(height, 17);
  EXPECT_LT(cv.TextWidth(u"iii"), cv.TextWidth(u"WWW"));
  EXPECT_EQ(cv.TextWidth(u"ab") + cv.TextWidth(u"cd"), cv.TextWidth(u"abcd"));
  cv.Font().SetPixelsPerInch(300);
  cv.Font().SetSize(10);
  EXPECT_GE(cv.TextHeight(u"A") * 10, height * 28);  // 300 / 96 = 3.1
  cv.Font().SetPixelsPerInch(96);
  cv.Font().SetSize(10);
  // A solid brush fills exactly the cell; the glyphs come in the font colour.
  cv.Font().SetColor(0x00FF00);
  cv.TextOut(5, 6, u"H");
  const int w = cv.TextWidth(u"H");
  EXPECT_EQ(cv.Pixels(5, 6), kFill);
  EXPECT_EQ(cv.Pixels(5 + w - 1, 6 + height - 1), kFill);
  EXPECT_EQ(cv.Pixels(5 + w, 6), clWhite);
  EXPECT_EQ(cv.Pixels(5, 6 + height), clWhite);
  int inked = 0;
  for (int y = 6; y < 6 + height; ++y) {
    for (int x = 5; x < 5 + w; ++x) inked += cv.Pixels(x, y) != kFill;
  }
  EXPECT_GT(inked, 15);  // two stems and a bar, edges blended
  EXPECT_EQ(cv.PenPos(), (TPoint{5 + w, 6}));
}

TEST(CanvasTest, BitmapSizeAndCopies) {
  TBitmap b(3, 2);
  b.Canvas().SetPixels(2, 1, 0x123456);
  b.SetSize(4, 4);
  EXPECT_EQ(b.Canvas().Pixels(2, 1), 0x123456u);
  EXPECT_EQ(b.Canvas().Pixels(3, 3), clWhite);
  b.SetSize(-3, 2);
  EXPECT_EQ(b.Width(), 0);
  EXPECT_THROW(b.SetSize(1 << 15, 1 << 15), EInvalidGraphic);
  EXPECT_EQ(b.Height(), 2);
  TBitmap src(2, 2);
  src.Canvas().SetPixels(0, 0, 1);
  src.Canvas().SetPixels(1, 1, 2);
  TBitmap dst(3, 3);
  dst.Canvas().Draw(-1, 2, src);
  EXPECT_EQ(dst.Canvas().Pixels(0, 2), clWhite);  // src (1, 0)
  dst.Canvas().Draw(1, 1, src);
  EXPECT_EQ(dst.Canvas().Pixels(1, 1), 1u);
  EXPECT_EQ(dst.Canvas().Pixels(2, 2), 2u);
  dst.Canvas().Draw(INT_MAX, INT_MIN, src);
}

// Reads a PNG with cairo, the independent reader, as TColor rows.
std::vector<TColor> ReadWithCairo(const std::string& path, int& w, int& h) {
  cairo_surface_t* s = cairo_image_surface_create_from_png(path.c_str());
  std::vector<TColor> out;
  w = cairo_image_surface_get_width(s);
  h = cairo_image_surface_get_height(s);
  const unsigned char* data = cairo_image_surface_get_data(s);
  const int stride = cairo_image_surface_get_stride(s);
  for (int y = 0; y < h; ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(data + y * stride);
    for (int x = 0; x < w; ++x) {
      const std::uint32_t p = row[x];  // 0xAARRGGBB
      out.push_back((p >> 16 & 0xFF) | (p & 0xFF00) | (p & 0xFF) << 16);
    }
  }
  cairo_surface_destroy(s);
  return out;
}

TEST(CanvasTest, PngFilesRoundTripAndCairoReadsThem) {
  zyn::testing::TempDir dir;
  TBitmap b(5, 3);
  const std::vector<TColor> colors = {0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0x123456};
  for (int x = 0; x < 5; ++x) b.Canvas().SetPixels(x, 1, colors[x]);
  const std::string path = (dir / "b.png").string();
  b.SaveToFile(FromUTF8(path));
  int w = 0, h = 0;
  const std::vector<TColor> seen = ReadWithCairo(path, w, h);
  ASSERT_EQ(std::pair(w, h), std::pair(5, 3));
  EXPECT_EQ(std::vector<TColor>(seen.begin() + 5, seen.begin() + 10), colors);
  EXPECT_EQ(seen[0], clWhite);
  TBitmap c;
  c.LoadFromFile(FromUTF8(path));
  ASSERT_EQ(c.Width(), 5);
  for (int x = 0; x < 5; ++x) EXPECT_EQ(c.Canvas().Pixels(x, 1), colors[x]);

  zyn::testing::WriteFileBytes(dir / "bad.png", "\x89PNG\r\n\x1a\nnot really");
  EXPECT_THROW(c.LoadFromFile(FromUTF8((dir / "bad.png").string())), EInvalidGraphic);
  EXPECT_EQ(c.Width(), 5);
  EXPECT_THROW(c.LoadFromFile(FromUTF8((dir / "none.png").string())), EFOpenError);
  EXPECT_THROW(b.SaveToFile(FromUTF8((dir / "no" / "dir.png").string())), EFCreateError);
  TBitmap empty;
  EXPECT_THROW(empty.SaveToFile(FromUTF8((dir / "e.png").string())), EFCreateError);
}

}  // namespace
}  // namespace zyn::platform
