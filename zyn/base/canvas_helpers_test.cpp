#include "zyn/base/canvas_helpers.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "testing/lsan_fontconfig.h"
#include "testing/zyn_picture.h"
#include "testing/zyn_testing.h"
#include "zyn/platform/devices.h"
#include "zyn/platform/text.h"

namespace Zyn_zynbase {
namespace {

using zyn::platform::clWhite;
using zyn::testing::ShowsPicture;

// Colours 1 to 5 of DrawFrame, shown as the letters a to e.
const std::map<char, TColor> kColors{{'.', clWhite},  {'a', 0x000001}, {'b', 0x000002},
                                     {'c', 0x000003}, {'d', 0x000004}, {'e', 0x000005}};

TEST(DrawFrameTest, EachStyleColoursItsRings) {
  // The double ring on 1, 1 .. 6, 5 with the roles A (outer left and top),
  // B (outer right and bottom), C and D (the same inside); the bottom-left
  // corner goes to B and the inner one to D, which are drawn later.
  const std::vector<std::string> ring = {"........", ".AAAAAA.", ".ACCCCB.", ".AC..DB.",
                                         ".ADDDDB.", ".BBBBBB.", "........"};
  struct Case {
    TFrameStyle style;
    const char* roles;  // the colour letters for A, B, C, D
    TColor pen_after;
  };
  const Case cases[] = {{fsLowered, "cadb", 2},
                        {fsRaised, "adbc", 3},
                        {fsEmbossed, "acca", 1},
                        {fsEngraved, "caac", 3}};
  for (const Case& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.style));
    std::vector<std::string> want = ring;
    for (std::string& row : want) {
      for (char& ch : row) {
        if (ch >= 'A' && ch <= 'D') ch = c.roles[ch - 'A'];
      }
    }
    TBitmap b(8, 7);
    DrawFrame(b.Canvas(), c.style, 1, 1, 6, 5, 1, 2, 3, 4, 5);
    EXPECT_TRUE(ShowsPicture(b, {0, 0, {want.begin(), want.end()}}, kColors));
    EXPECT_EQ(b.Canvas().Pen().Color(), c.pen_after);
  }
  TBitmap b(8, 7);
  DrawFrame(b.Canvas(), fsSimple, 1, 1, 6, 5, 1, 2, 3, 4, 5);
  EXPECT_TRUE(ShowsPicture(b, {1, 1, {"eeeeee", "e....e", "e....e", "e....e", "eeeeee"}}, kColors));
  b.Canvas().Pen().SetColor(0x000009);
  DrawFrame(b.Canvas(), fsNone, 0, 0, 7, 6, 1, 2, 3, 4, 5);
  EXPECT_EQ(b.Canvas().Pen().Color(), 0x000009u);
}

TEST(DrawRectangleTest, AllFourSidesInclusive) {
  TBitmap b(6, 6);
  b.Canvas().Pen().SetColor(1);
  DrawRectangle(b.Canvas(), 1, 1, 1, 4);  // left == right: a vertical line
  EXPECT_TRUE(ShowsPicture(b, {1, 1, {"a", "a", "a", "a"}}, kColors));
  DrawFrame(b.Canvas(), fsSimple, INT_MIN, INT_MIN, INT_MAX, INT_MAX, 1, 1, 1, 1, 1);
  DrawFrame(b.Canvas(), fsRaised, INT_MAX, INT_MAX, INT_MIN, INT_MIN, 1, 1, 1, 1, 1);
}

TEST(SetCanvasFontSizeScaledTest, KeepsTheScreenHeightAndTheFontsResolution) {
  zyn::platform::TBitmap b(1, 1);
  auto& font = b.Canvas().Font();
  for (int ppi : {96, 300, 600}) {
    SCOPED_TRACE(ppi);
    font.SetPixelsPerInch(ppi);
    SetCanvasFontSizeScaled(b.Canvas(), 10);
    EXPECT_EQ(font.PixelsPerInch(), ppi);
    EXPECT_EQ(font.Height(), -13);  // 10 points at 96 dpi
  }
}

TEST(FontIsTrueTypeTest, InstalledFontsOnly) {
  EXPECT_TRUE(FontIsTrueType(u"DejaVu Sans"));
  EXPECT_TRUE(FontIsTrueType(u"dejavu sans"));
  try {
    FontIsTrueType(u"Zyn No Such Font");
    FAIL() << "no exception";
  } catch (const EZYNError& e) {
    EXPECT_EQ(e.Message(), u"Font \"Zyn No Such Font\" is not installed");
  }
}

TEST(PrintBitmapTest, OnePixelOnOnePrinterPixel) {
  zyn::testing::TempDir dir;
  auto& printer = zyn::platform::Printer();
  printer.SetPageSize(6, 4);
  printer.SetOutput(zyn::platform::poPng, zyn::platform::FromUTF8((dir / "p.png").string()));
  printer.BeginDoc();
  TBitmap b(3, 2);
  b.Canvas().SetPixels(0, 0, 1);
  b.Canvas().SetPixels(2, 1, 2);
  PrintBitmap(b, 4, 2);  // cut by the page's edge
  PrintBitmap(b, -2, 0);
  PrintBitmap(b, INT_MAX, INT_MIN);
  EXPECT_TRUE(ShowsPicture(printer.Canvas().Bitmap(),
                           {0, 0, {"......", "b.....", "....a.", "......"}}, kColors));
  printer.EndDoc();
}

}  // namespace
}  // namespace Zyn_zynbase
