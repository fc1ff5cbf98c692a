// zyn/base/canvas_helpers.h
//
// Drawing helpers the chart controls share: rectangle outlines, frames in
// five styles, a font size that keeps its screen height on any canvas, the
// TrueType test of a font, and a bitmap printed dot for dot.

#ifndef ZYN_BASE_CANVAS_HELPERS_H_
#define ZYN_BASE_CANVAS_HELPERS_H_

#include <string_view>

#include "zyn/base/zynbase.h"
#include "zyn/platform/canvas.h"

namespace Zyn_zynbase {

using zyn::platform::TBitmap;
using zyn::platform::TCanvas;

// The outline through the four corners, sides included, in the current pen:
// lines from left, top down to left, bottom, across, up and back.
void DrawRectangle(TCanvas& canvas, int left, int top, int right, int bottom);

// A frame on the box left..right by top..bottom, all inclusive. fsSimple is
// DrawRectangle in Color5; the other styles draw an outer and an inner ring
// from Color1 to Color4 (their table in docs/design.md). The pen keeps the
// last colour set; fsNone touches nothing.
void DrawFrame(TCanvas& canvas, TFrameStyle FrameStyle, int left, int top, int right, int bottom,
               TColor Color1, TColor Color2, TColor Color3, TColor Color4, TColor Color5);

// Sets the canvas font's size so that it has the pixel height it has on the
// screen (Screen's PixelsPerInch); the font's own resolution is kept.
void SetCanvasFontSizeScaled(TCanvas& canvas, int Size);

// Whether the installed family `FontName` is a TrueType font. A name not in
// Screen().Fonts() (compared without case) raises EZYNError
// "Font "<name>" is not installed".
bool FontIsTrueType(std::u16string_view FontName);

// Copies the bitmap onto the printer's page with its top-left pixel at X, Y,
// one bitmap pixel on one printer pixel. Starts and ends no print job.
void PrintBitmap(const TBitmap& Bitmap, int X, int Y);

}  // namespace Zyn_zynbase

#endif  // ZYN_BASE_CANVAS_HELPERS_H_
