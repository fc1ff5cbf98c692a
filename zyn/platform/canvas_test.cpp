#include "zyn/platform/canvas.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <climits>
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

TEST(CanvasTest, LinesLeaveOutTheirEndPixel) {
  struct Case {
    const char* name;
    int x0, y0, x1, y1;
    Picture want;
  };
  const Case cases[] = {
      {"right", 1, 1, 5, 1, {1, 1, {"####"}}},
      {"left", 5, 1, 1, 1, {2, 1, {"####"}}},
      {"down", 1, 1, 1, 4, {1, 1, {"#", "#", "#"}}},
      {"shallow, halves round up", 0, 0, 5, 2, {0, 0, {"##...", "..##.", "....#"}}},
      {"steep", 0, 0, 2, 5, {0, 0, {"#..", "#..", ".#.", ".#.", "..#"}}},
      {"diagonal up", 0, 4, 4, 0, {0, 1, {"...#", "..#.", ".#..", "#..."}}},
      {"zero length", 3, 3, 3, 3, {0, 0, {}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Sheet s;
    s.cv().MoveTo(c.x0, c.y0);
    s.cv().LineTo(c.x1, c.y1);
    EXPECT_TRUE(ShowsPicture(s.bitmap, c.want, kColors));
    EXPECT_EQ(s.cv().PenPos(), (TPoint{c.x1, c.y1}));
  }
}

TEST(CanvasTest, PenStylesAndWidths) {
  struct Case {
    const char* name;
    TPenStyle style;
    int width;
    Picture want;
  };
  const Case cases[] = {
      {"dot: 3 on, 3 off", psDot, 1, {0, 1, {"###...###..."}}},
      {"alternate", psAlternate, 1, {0, 1, {"#.#.#.#.#.#."}}},
      {"clear", psClear, 1, {0, 0, {}}},
      // Width 3: the band y 0.5..3.5 and x -1.5..13.5 around the line, half
      // open, so rows 0..2 and columns 0..11 (cut by the edge).
      {"wide", psSolid, 3, {0, 0, {"############", "############", "############"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Sheet s;
    s.cv().Pen().SetStyle(c.style);
    s.cv().Pen().SetWidth(c.width);
    s.cv().MoveTo(0, 1);
    s.cv().LineTo(12, 1);
    EXPECT_TRUE(ShowsPicture(s.bitmap, c.want, kColors));
  }
  Sheet s;
  s.cv().Pen().SetWidth(2);
  s.cv().MoveTo(4, 4);
  s.cv().LineTo(4, 4);  // a wide pen's square ends show a zero-length line
  EXPECT_TRUE(ShowsPicture(s.bitmap, {3, 3, {"##", "##"}}, kColors));
}

TEST(CanvasTest, RectangleCoversLeftToRightLessOne) {
  struct Case {
    const char* name;
    int l, t, r, b, width;
    TBrushStyle brush;
    Picture want;
  };
  const Case cases[] = {
      {"pen and brush", 1, 1, 6, 5, 1, bsSolid, {1, 1, {"#####", "#ooo#", "#ooo#", "#####"}}},
      {"corners swapped", 6, 5, 1, 1, 1, bsSolid, {1, 1, {"#####", "#ooo#", "#ooo#", "#####"}}},
      {"clear brush", 1, 1, 4, 4, 1, bsClear, {1, 1, {"###", "#.#", "###"}}},
      {"pen of 2",
       0,
       0,
       6,
       6,
       2,
       bsSolid,
       {0, 0, {"######", "######", "##oo##", "##oo##", "######", "######"}}},
      {"one pixel", 2, 2, 3, 3, 1, bsSolid, {2, 2, {"#"}}},
      {"no width", 2, 2, 2, 6, 1, bsSolid, {0, 0, {}}},
      {"hatched", 0, 0, 10, 3, 1, bsVertical, {0, 0, {"##########", "#.......o#", "##########"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Sheet s;
    s.cv().Pen().SetWidth(c.width);
    s.cv().Brush().SetStyle(c.brush);
    s.cv().Rectangle(c.l, c.t, c.r, c.b);
    EXPECT_TRUE(ShowsPicture(s.bitmap, c.want, kColors));
  }
  Sheet s;
  s.cv().Pen().SetStyle(psClear);
  s.cv().Rectangle(1, 1, 3, 3);  // without a pen the brush fills the whole box
  EXPECT_TRUE(ShowsPicture(s.bitmap, {1, 1, {"oo", "oo"}}, kColors));
}

TEST(CanvasTest, EllipseTakesThePixelsWhoseCentresLieInside) {
  Sheet s;
  s.cv().Ellipse(1, 1, 7, 5);  // 6 x 4: semi-axes 3 and 2 about 4, 3
  EXPECT_TRUE(ShowsPicture(s.bitmap, {1, 1, {".####.", "#oooo#", "#oooo#", ".####."}}, kColors));
  Sheet t;
  t.cv().Pen().SetWidth(2);
  t.cv().Ellipse(0, 0, 7, 7);  // the ring between the 7 and the 3 pixel circles
  EXPECT_TRUE(ShowsPicture(
      t.bitmap,
      {0, 0, {"..###..", ".#####.", "##ooo##", "##ooo##", "##ooo##", ".#####.", "..###.."}},
      kColors));
  Sheet u;
  u.cv().Ellipse(2, 2, 3, 3);
  EXPECT_TRUE(ShowsPicture(u.bitmap, {2, 2, {"#"}}, kColors));
}

TEST(CanvasTest, PolygonFillsItsInsideAndDrawsEveryEdge) {
  const TPoint square[] = {{1, 1}, {4, 1}, {4, 4}, {1, 4}};
  Sheet s;
  s.cv().Polygon(square);
  EXPECT_TRUE(ShowsPicture(s.bitmap, {1, 1, {"####", "#oo#", "#oo#", "####"}}, kColors));
  // Without a pen the rows count half-open: the lowest edge stays out.
  Sheet t;
  t.cv().Pen().SetStyle(psClear);
  t.cv().Polygon(square);
  EXPECT_TRUE(ShowsPicture(t.bitmap, {1, 1, {"oooo", "oooo", "oooo"}}, kColors));
  // Even-odd, edges included: the two halves of a bow tie meet in 3, 2.
  const TPoint bow[] = {{0, 0}, {6, 4}, {6, 0}, {0, 4}};
  Sheet u;
  u.cv().Pen().SetStyle(psClear);
  u.cv().Polygon(bow);
  EXPECT_TRUE(
      ShowsPicture(u.bitmap, {0, 0, {"o.....o", "oo...oo", "ooooooo", "oo...oo"}}, kColors));
  Sheet v;
  v.cv().Polygon(std::span<const TPoint>{});
  const TPoint one[] = {{3, 2}};
  v.cv().Polygon(one);
  EXPECT_TRUE(ShowsPicture(v.bitmap, {3, 2, {"#"}}, kColors));
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
  const TColor colors[] = {0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0x123456};
  for (int x = 0; x < 5; ++x) b.Canvas().SetPixels(x, 1, colors[x]);
  const std::string path = (dir / "b.png").string();
  b.SaveToFile(FromUTF8(path));
  int w = 0, h = 0;
  const std::vector<TColor> seen = ReadWithCairo(path, w, h);
  ASSERT_EQ(w, 5);
  ASSERT_EQ(h, 3);
  for (int x = 0; x < 5; ++x) EXPECT_EQ(seen[5 + x], colors[x]);
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
