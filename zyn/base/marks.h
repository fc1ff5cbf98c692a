// zyn/base/marks.h
//
// Marks: the small symbols charts put on data points. Numbers 0 to 51 are
// shapes of fixed pixel sizes, all other numbers characters, each drawn in
// the canvas's pen colour around a centre pixel.

#ifndef ZYN_BASE_MARKS_H_
#define ZYN_BASE_MARKS_H_

#include <cstdint>
#include <memory>

#include "zyn/base/zynbase.h"
#include "zyn/platform/canvas.h"

namespace Zyn_zynbase {

// Draws mark `Mark` centred on X, Y in the pen colour. Shapes (0 to 51)
// leave the brush colour as it was; the open ones leave the brush style
// solid. On the printer's canvas the marks made of pixels are drawn with
// lines. A character (52 to 255; 200 to 209 are the digits "0" to "9") is
// written in the canvas font, and leaves the font colour at the pen colour
// and the brush style clear.
void DrawMarkOnCanvas(zyn::platform::TCanvas& canvas, std::uint8_t Mark, int X, int Y);

// A new square bitmap of 2 * margin + 7 pixels (margin clamped to 0..255)
// in BkColor, with the mark in MarkColor on its centre pixel.
std::unique_ptr<zyn::platform::TBitmap> CreateMarkAsBitmap(std::uint8_t Mark, TColor MarkColor,
                                                           TColor BkColor, int Margin);

}  // namespace Zyn_zynbase

#endif  // ZYN_BASE_MARKS_H_
