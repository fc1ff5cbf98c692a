// Marks: the sheet of all 256 marks and the five frame styles as a PNG, at
// twice their size (the picture in docs/marks.png).

#include "zyn/base/marks.h"

#include <memory>
#include <string>

#include "cli/common.h"
#include "zyn/base/canvas_helpers.h"
#include "zyn/platform/canvas.h"
#include "zyn/platform/text.h"

namespace {

using namespace Zyn_zynbase;
using zyn::platform::FromUTF8;
using zyn::platform::TCanvas;

constexpr int kCell = 32;     // pixels per mark cell
constexpr int kColumns = 16;  // marks per row
constexpr int kTop = 28;      // room for the title
constexpr TColor kInk = 0x7F3F00;

std::u16string Number(int n) { return FromUTF8(std::to_string(n)); }

void DrawMarks(TCanvas& cv) {
  cv.Font().SetSize(7);
  for (int mark = 0; mark < 256; ++mark) {
    const int x = (mark % kColumns) * kCell;
    const int y = kTop + (mark / kColumns) * kCell;
    cv.Pen().SetColor(0xDDDDDD);
    DrawRectangle(cv, x, y, x + kCell, y + kCell);
    cv.Font().SetColor(0x888888);
    cv.Brush().SetStyle(zyn::platform::bsClear);
    cv.TextOut(x + 2, y + 1, Number(mark));
    cv.Pen().SetColor(mark < 52 ? kInk : 0x000000);
    DrawMarkOnCanvas(cv, static_cast<std::uint8_t>(mark), x + kCell / 2, y + kCell / 2 + 4);
  }
}

void DrawFrames(TCanvas& cv, int top) {
  static constexpr const char16_t* kNames[] = {u"fsNone",   u"fsSimple",   u"fsLowered",
                                               u"fsRaised", u"fsEmbossed", u"fsEngraved"};
  cv.Font().SetSize(9);
  cv.Font().SetColor(0x000000);
  for (int style = 0; style < 6; ++style) {
    const int x = 6 + style * 85;
    cv.Brush().SetStyle(zyn::platform::bsClear);
    cv.TextOut(x, top, kNames[style]);
    DrawFrame(cv, static_cast<TFrameStyle>(style), x, top + 18, x + 72, top + 58, 0xFFFFFF,
              0x808080, 0x404040, 0xE0E0E0, 0x0000C0);
  }
}

void WriteSheet(const std::string& out) {
  const int width = kColumns * kCell;
  const int marks_bottom = kTop + 16 * kCell;
  zyn::platform::TBitmap sheet(width + 1, marks_bottom + 80);
  TCanvas& cv = sheet.Canvas();
  cv.Brush().SetColor(0xF4F4F4);
  cv.FillRect(0, 0, sheet.Width(), sheet.Height());
  cv.Font().SetSize(11);
  cv.Font().SetStyle({zyn::platform::fsBold});
  cv.Brush().SetStyle(zyn::platform::bsClear);
  cv.TextOut(6, 6, u"Marks 0 to 255 and the frame styles");
  cv.Font().SetStyle({});
  DrawMarks(cv);
  DrawFrames(cv, marks_bottom + 10);
  // Shown at twice the size, so that every pixel of the marks can be seen.
  zyn::platform::TBitmap big(sheet.Width() * 2, sheet.Height() * 2);
  for (int y = 0; y < big.Height(); ++y) {
    const auto from = sheet.ScanLine(y / 2);
    const auto to = big.ScanLine(y);
    for (int x = 0; x < big.Width(); ++x) to[x] = from[x / 2];
  }
  big.SaveToFile(FromUTF8(out));
}

}  // namespace

namespace zyn_cli {

void AddMarkCommands(CLI::App& app) {
  auto png = std::make_shared<std::string>();
  CLI::App* marks = app.add_subcommand("marks", "Draw the sheet of all 256 marks and the frames");
  marks->add_option("--png", *png, "The PNG file to write")->required();
  marks->callback([png] { WriteSheet(*png); });
}

}  // namespace zyn_cli
