#include "zyn/base/canvas_helpers.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "zyn/platform/casefold.h"
#include "zyn/platform/devices.h"

namespace Zyn_zynbase {

namespace {

// A coordinate one step beside an int, held in range: what lies beyond
// INT_MAX is off every raster anyway.
int Beside(int v, int step) {
  return static_cast<int>(std::clamp<std::int64_t>(
      std::int64_t{v} + step, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// The double ring in colours a (outer left and top), b (outer right and
// bottom), c and d (the same of the inner ring).
void DoubleRing(TCanvas& cv, int l, int t, int r, int b, TColor a, TColor bb, TColor c, TColor d) {
  auto& pen = cv.Pen();
  pen.SetColor(a);
  cv.MoveTo(l, b);
  cv.LineTo(l, t);
  cv.LineTo(Beside(r, 1), t);
  cv.MoveTo(r, Beside(t, 1));
  pen.SetColor(bb);
  cv.LineTo(r, b);
  cv.LineTo(Beside(l, -1), b);
  pen.SetColor(c);
  cv.MoveTo(Beside(l, 1), Beside(b, -1));
  cv.LineTo(Beside(l, 1), Beside(t, 1));
  cv.LineTo(r, Beside(t, 1));
  cv.MoveTo(Beside(r, -1), Beside(t, 2));
  pen.SetColor(d);
  cv.LineTo(Beside(r, -1), Beside(b, -1));
  cv.LineTo(l, Beside(b, -1));
}

}  // namespace

void DrawRectangle(TCanvas& canvas, int left, int top, int right, int bottom) {
  canvas.MoveTo(left, top);
  canvas.LineTo(left, bottom);
  canvas.LineTo(right, bottom);
  canvas.LineTo(right, top);
  canvas.LineTo(left, top);
}

void DrawFrame(TCanvas& canvas, TFrameStyle FrameStyle, int left, int top, int right, int bottom,
               TColor Color1, TColor Color2, TColor Color3, TColor Color4, TColor Color5) {
  switch (FrameStyle) {
    case fsSimple:
      canvas.Pen().SetColor(Color5);
      DrawRectangle(canvas, left, top, right, bottom);
      break;
    case fsLowered:
      DoubleRing(canvas, left, top, right, bottom, Color3, Color1, Color4, Color2);
      break;
    case fsRaised:
      DoubleRing(canvas, left, top, right, bottom, Color1, Color4, Color2, Color3);
      break;
    case fsEmbossed:
      DoubleRing(canvas, left, top, right, bottom, Color1, Color3, Color3, Color1);
      break;
    case fsEngraved:
      DoubleRing(canvas, left, top, right, bottom, Color3, Color1, Color1, Color3);
      break;
    default:
      break;
  }
}

void SetCanvasFontSizeScaled(TCanvas& canvas, int Size) {
  zyn::platform::TFont& font = canvas.Font();
  const int screen_ppi = zyn::platform::Screen().PixelsPerInch();
  if (font.PixelsPerInch() != screen_ppi) {
    const int own = font.PixelsPerInch();
    font.SetPixelsPerInch(screen_ppi);
    font.SetSize(Size);
    font.SetPixelsPerInch(own);
  } else {
    font.SetSize(Size);
  }
}

bool FontIsTrueType(std::u16string_view FontName) {
  const zyn::platform::TStringList& fonts = zyn::platform::Screen().Fonts();
  const auto it = std::find_if(fonts.begin(), fonts.end(), [&](const std::u16string& name) {
    return zyn::platform::AnsiStrIComp(name, FontName) == 0;
  });
  if (it == fonts.end()) {
    throw EZYNError(u"Font \"" + std::u16string(FontName) + u"\" is not installed");
  }
  return zyn::platform::Screen().FontFormat(*it) == u"TrueType";
}

void PrintBitmap(const TBitmap& Bitmap, int X, int Y) {
  zyn::platform::Printer().Canvas().Draw(X, Y, Bitmap);
}

}  // namespace Zyn_zynbase
