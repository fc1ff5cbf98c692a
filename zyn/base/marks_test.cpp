#include "zyn/base/marks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testing/lsan_fontconfig.h"
#include "testing/zyn_picture.h"
#include "testing/zyn_testing.h"
#include "zyn/platform/devices.h"

namespace Zyn_zynbase {
namespace {

using zyn::platform::bsClear;
using zyn::platform::bsSolid;
using zyn::platform::clWhite;
using zyn::platform::TBitmap;
using zyn::platform::TCanvas;
using zyn::testing::Picture;
using zyn::testing::ShowsPicture;

constexpr TColor kInk = 0x123456;
constexpr int kSize = 21;    // test bitmaps are 21 x 21
constexpr int kCentre = 10;  // with the mark on pixel 10, 10
const std::map<char, TColor> kColors{{'.', clWhite}, {'#', kInk}};

struct Expected {
  int mark;
  int dx, dy;             // offset of the picture's first pixel from the centre
  std::string_view rows;  // '/' between rows
};

// Each shape as its table of lines, rectangles, ellipses and polygons gives
// it, with LineTo leaving out its end pixel; on any canvas but the printer's.
const std::vector<Expected> kScreenMarks = {
    {0, 0, 0, "#"},
    {1, -1, -1, ".#./###/.#."},
    {2, -2, -2, "..#../..#../#####/..#../..#.."},
    {3, -3, -3, "...#.../...#.../...#.../#######/...#.../...#.../...#..."},
    {4, -1, -1, "#.#/.#./#.#"},
    {5, -2, -2, "#...#/.#.#./..#../.#.#./#...#"},
    {6, -3, -3, "#.....#/.#...#./..#.#../...#.../..#.#../.#...#./#.....#"},
    {7, -1, -1, "###/###/###"},
    {8, -2, -2, "#####/#####/#####/#####/#####"},
    {9, -3, -3, "#######/#######/#######/#######/#######/#######/#######"},
    {10, -1, -1, "###/#.#/###"},
    {11, -2, -2, "#####/#...#/#...#/#...#/#####"},
    {12, -3, -3, "#######/#.....#/#.....#/#.....#/#.....#/#.....#/#######"},
    {13, -3, -3, "...#.../..#.#../.#...#./#..#..#/.#...#./..#.#../...#..."},
    {14, -2, -2, "..#../.###./#####/.###./..#.."},
    {15, -3, -3, "...#.../..###../.#####./#######/.#####./..###../...#..."},
    {16, -2, -2, ".###./#...#/#...#/#...#/.###."},
    {17, -3, -3, "..###../.#...#./#.....#/#.....#/#.....#/.#...#./..###.."},
    {18, -3, -3, "#.#.#.#/.#.#.#./#.#.#.#/.#.#.#./#.#.#.#/.#.#.#./#.#.#.#"},
    {19, -3, -3, "...#.../..#.#../.#...#./#.....#/.#...#./..#.#../...#..."},
    {20, -2, 0, "..#../.#.#./#...#"},
    {21, -3, 0, "...#.../..#.#../.#...#./#.....#"},
    {22, -2, -2, "#...#/.#.#./..#.."},
    {23, -3, -3, "#.....#/.#...#./..#.#../...#..."},
    {24, -3, -3, "..###../.#####./#######/#######/#######/.#####./..###.."},
    {25, -3, -3, "##...##/###.###/.#####./..###../.#####./###.###/##...##"},
    {26, -2, -2, ".###./#####/#####/#####/.###."},
    {27, -2, -2, ".##./#..#/#..#/.##."},
    {28, -2, -2, ".##./####/####/.##."},
    {29, -2, 0, "#####/.###./..#.."},
    {30, -3, 0, "#######/.#####./..###../...#..."},
    {31, -2, 0, "#####/.#.#./..#.."},
    {32, -3, 0, "#######/.#...#./..#.#../...#..."},
    {33, -4, -3, "#########/.#.....#./.#.....#./..#...#../..#...#../...#.#.../...#.#.../....#...."},
    {34, -4, -3, "#########/.#######./.#######./..#####../..#####../...###.../...###.../....#...."},
    {35, -4, -4, "....#..../...#.#.../...#.#.../..#...#../..#...#../.#.....#./.#.....#./#########"},
    {36, -4, -4, "....#..../...###.../...###.../..#####../..#####../.#######./.#######./#########"},
    {37, -3, -7, "...#.../...#.../...#.../...#.../...#.../...#.../...#.../#######"},
    {38, -3, -2, "#######/...#.../...#.../...#.../#######"},
    {39, -3, -3, "..###../.#.#.#./#..#..#/#######/#..#..#/.#.#.#./..###.."},
    {40, -2, -2, "....##/..##.#/##...#/..##.#/....##"},
    {41, -2, -2, "....##/..####/######/..####/....##"},
    {42, -3, -3, "......##/....##.#/..##...#/##.....#/..##...#/....##.#/......##"},
    {43, -3, -3, "......##/....####/..######/########/..######/....####/......##"},
    {44, -3, -2, "##..../#.##../#...##/#.##../##...."},
    {45, -3, -2, "##..../####../######/####../##...."},
    {46, -4, -3, "##....../#.##..../#...##../#.....##/#...##../#.##..../##......"},
    {47, -4, -3, "##....../####..../######../########/######../####..../##......"},
    {48, -3, -3, "#######/#..#..#/#..#..#/#######/#..#..#/#..#..#/#######"},
    {49, -4, -4,
     "....#..../....#..../..#####../..#.#.#../#########/..#.#.#../..#####../....#..../....#...."},
    {50, -4, -4,
     "....#..../.#..#..#./..#.#.#../...###.../#########/...###.../..#.#.#../.#..#..#./....#...."},
    {51, -4, -4,
     "....#..../...###.../....#..../.#..#..#./#########/.#..#..#./....#..../...###.../....#...."},
};

// The marks that differ on the printer's canvas: lines instead of pixels,
// each without its end pixel; mark 18's zero-length lines show nothing with
// a 1-pixel pen.
const std::vector<Expected> kPrinterMarks = {
    {1, -2, -2, "..#./..#./####/..#."},
    {2, -3, -3, "...#../...#../...#../######/...#../...#.."},
    {3, -4, -4, "....#.../....#.../....#.../....#.../########/....#.../....#.../....#..."},
    {4, -2, -2, "#.../.#.#/..#./.#.#/#..."},
    {5, -3, -3, "#...../.#...#/..#.#./...#../..#.#./.#...#/#....."},
    {6, -4, -4, "#......./.#.....#/..#...#./...#.#../....#.../...#.#../..#...#./.#.....#/#......."},
    {18, 0, 0, ""},
    {25, -3, -3, "##..../###.##/.#####/..###./.#####/###.##/##...."},
};

// The mark's picture on the printer's page: its own row there if it has one.
const Expected& OnPrinter(int mark) {
  for (const Expected& e : kPrinterMarks) {
    if (e.mark == mark) return e;
  }
  return kScreenMarks.at(static_cast<std::size_t>(mark));
}

Picture At(const Expected& e) {
  Picture p{kCentre + e.dx, kCentre + e.dy, {}};
  for (std::string_view rest = e.rows; !rest.empty();) {
    const std::size_t end = std::min(rest.find('/'), rest.size());
    p.rows.push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return p;
}

TEST(MarksTest, EveryShapeOnABitmapCanvas) {
  ASSERT_EQ(kScreenMarks.size(), 52u);
  for (const Expected& e : kScreenMarks) {
    SCOPED_TRACE("mark " + std::to_string(e.mark));
    TBitmap b(kSize, kSize);
    b.Canvas().Pen().SetColor(kInk);
    DrawMarkOnCanvas(b.Canvas(), static_cast<std::uint8_t>(e.mark), kCentre, kCentre);
    EXPECT_TRUE(ShowsPicture(b, At(e), kColors));
  }
}

TEST(MarksTest, EveryShapeOnThePrinterPage) {
  zyn::testing::TempDir dir;
  auto& printer = zyn::platform::Printer();
  printer.SetPageSize(kSize, kSize);
  printer.SetOutput(zyn::platform::poPng, zyn::platform::FromUTF8((dir / "page.png").string()));
  printer.BeginDoc();
  TCanvas& cv = printer.Canvas();
  TBitmap page;
  for (int mark = 0; mark < 52; ++mark) {
    SCOPED_TRACE("mark " + std::to_string(mark));
    cv.Brush().SetColor(clWhite);
    cv.Brush().SetStyle(bsSolid);
    cv.FillRect(0, 0, kSize, kSize);
    cv.Pen().SetColor(kInk);
    DrawMarkOnCanvas(cv, static_cast<std::uint8_t>(mark), kCentre, kCentre);
    page.Assign(cv.Bitmap());
    EXPECT_TRUE(ShowsPicture(page, At(OnPrinter(mark)), kColors));
  }
  // With a wider pen mark 18's zero-length lines become squares.
  cv.FillRect(0, 0, kSize, kSize);
  cv.Pen().SetWidth(2);
  DrawMarkOnCanvas(cv, 18, kCentre, kCentre);
  EXPECT_EQ(cv.Pixels(kCentre - 1, kCentre - 1), kInk);
  EXPECT_EQ(cv.Pixels(kCentre + 3, kCentre + 3), kInk);
  EXPECT_EQ(cv.Pixels(kCentre + 4, kCentre + 4), clWhite);
  cv.Pen().SetWidth(1);
  printer.Abort();
}

TEST(MarksTest, BrushColourComesBackAndOpenShapesLeaveASolidBrush) {
  for (int mark = 0; mark < 52; ++mark) {
    SCOPED_TRACE(mark);
    TBitmap b(kSize, kSize);
    TCanvas& cv = b.Canvas();
    cv.Pen().SetColor(kInk);
    cv.Brush().SetColor(0x00FF00);
    cv.Brush().SetStyle(zyn::platform::bsCross);
    DrawMarkOnCanvas(cv, static_cast<std::uint8_t>(mark), kCentre, kCentre);
    EXPECT_EQ(cv.Brush().Color(), 0x00FF00u);
    const bool opens = mark == 16 || mark == 17 || mark == 27 || (mark >= 31 && mark <= 33) ||
                       mark == 35 || mark == 39 || mark == 40 || mark == 42 || mark == 44 ||
                       mark == 46 || (mark >= 48 && mark <= 51);
    EXPECT_EQ(cv.Brush().Style(), opens ? bsSolid : zyn::platform::bsCross);
  }
}

TEST(MarksTest, CharacterMarksWriteTheCharacterCentred) {
  struct Case {
    int mark;
    char16_t shown;
  };
  for (const Case c :
       {Case{200, u'0'}, {209, u'9'}, {210, u'\u00D2'}, {199, u'\u00C7'}, {65, u'A'}, {52, u'4'}}) {
    SCOPED_TRACE(c.mark);
    TBitmap mark_bitmap(40, 40);
    TCanvas& cv = mark_bitmap.Canvas();
    cv.Pen().SetColor(kInk);
    cv.Font().SetColor(0x00FF00);
    DrawMarkOnCanvas(cv, static_cast<std::uint8_t>(c.mark), 20, 20);
    EXPECT_EQ(cv.Font().Color(), kInk);
    EXPECT_EQ(cv.Brush().Style(), bsClear);
    // The same pixels as the character written with its cell's top-left at
    // the centre less half the cell, halves truncated.
    const std::u16string text(1, c.shown);
    const int w = cv.TextWidth(text), h = cv.TextHeight(text);
    TBitmap written(40, 40);
    written.Canvas().Font().SetColor(kInk);
    written.Canvas().Brush().SetStyle(bsClear);
    written.Canvas().TextOut(20 - w / 2, 20 - h / 2, text);
    EXPECT_EQ(zyn::testing::Render(mark_bitmap, kColors), zyn::testing::Render(written, kColors));
    // Inked pixels lie in the character's cell, its top-left at the centre
    // less half its size.
    int inked = 0;
    for (int y = 0; y < 40; ++y) {
      for (int x = 0; x < 40; ++x) {
        if (cv.Pixels(x, y) == clWhite) continue;
        ++inked;
        EXPECT_GE(x, 20 - w / 2 - 1);
        EXPECT_LT(x, 20 - w / 2 + w + 1);
        EXPECT_GE(y, 20 - h / 2);
        EXPECT_LT(y, 20 - h / 2 + h);
      }
    }
    EXPECT_GT(inked, 3);
  }
}

TEST(MarksTest, CreateMarkAsBitmapSizesAndCentres) {
  struct Case {
    int margin, size;
  };
  for (const Case c : {Case{-5, 7}, {0, 7}, {1, 9}, {255, 517}, {300, 517}}) {
    SCOPED_TRACE(c.margin);
    auto b = CreateMarkAsBitmap(7, kInk, 0x0000FF, c.margin);
    ASSERT_EQ(b->Width(), c.size);
    ASSERT_EQ(b->Height(), c.size);
    const int mid = c.size / 2;
    EXPECT_TRUE(ShowsPicture(*b, {mid - 1, mid - 1, {"###", "###", "###"}},
                             {{'.', 0x0000FF}, {'#', kInk}}));
  }
  // Mark 37's stem, 7 pixels above the centre since LineTo leaves out the
  // eighth, is cut by the top edge for margins below 4.
  for (const auto& [margin, stem] : {std::pair{0, 3}, {3, 6}, {4, 7}, {5, 7}}) {
    SCOPED_TRACE(margin);
    auto b = CreateMarkAsBitmap(37, kInk, clWhite, margin);
    int shown = 0;
    for (int y = 0; y < margin + 3; ++y) shown += b->Canvas().Pixels(margin + 3, y) == kInk;
    EXPECT_EQ(shown, stem);
  }
}

TEST(MarksTest, AnyPlaceAndAnyNumberStaysOnTheRaster) {
  const int places[] = {INT_MIN, -9, 0, 3, 6, INT_MAX - 4, INT_MAX};
  TBitmap empty;
  TBitmap b(7, 7);
  b.Canvas().Pen().SetColor(kInk);
  for (int mark = 0; mark < 256; ++mark) {
    for (int x : places) {
      for (int y : {INT_MIN, -2, 3, INT_MAX}) {
        DrawMarkOnCanvas(b.Canvas(), static_cast<std::uint8_t>(mark), x, y);
        DrawMarkOnCanvas(empty.Canvas(), static_cast<std::uint8_t>(mark), x, y);
      }
    }
  }
  EXPECT_EQ(empty.Width(), 0);
}

}  // namespace
}  // namespace Zyn_zynbase
