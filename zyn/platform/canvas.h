// zyn/platform/canvas.h
//
// A raster to draw on: TBitmap holds 32-bit RGB pixels and gives a TCanvas
// with pen, brush and font. The shapes follow fixed pixel rules (written down
// in docs/design.md); nothing is ever drawn outside the raster, whatever the
// coordinates.

#ifndef ZYN_PLATFORM_CANVAS_H_
#define ZYN_PLATFORM_CANVAS_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/font.h"
#include "zyn/platform/object.h"
#include "zyn/platform/types.h"

namespace zyn::platform {

inline constexpr TColor clBlack = 0x000000;
inline constexpr TColor clWhite = 0xFFFFFF;
// What Pixels gives for a place outside the raster.
inline constexpr TColor clInvalid = 0xFFFFFFFF;

// A bitmap that can't be made: too large, or a file that isn't a PNG.
class EInvalidGraphic : public Exception {
 public:
  using Exception::Exception;
};

// How a brush fills, by the runtime's ordinals. Hatches are 8-pixel patterns
// tied to the raster's origin; their gaps are left as they were.
enum TBrushStyle : std::uint8_t {
  bsSolid,
  bsClear,
  bsHorizontal,
  bsVertical,
  bsFDiagonal,
  bsBDiagonal,
  bsCross,
  bsDiagCross
};

class TPen : public TPersistent {
 public:
  TColor Color() const noexcept { return color_; }
  void SetColor(TColor value) noexcept { color_ = value; }
  // Width in pixels; values below 1 count as 1.
  int Width() const noexcept { return width_; }
  void SetWidth(int value) noexcept { width_ = value < 1 ? 1 : value; }
  TPenStyle Style() const noexcept { return style_; }
  void SetStyle(TPenStyle value) noexcept { style_ = value; }

  void Assign(const TPersistent& Source) override;

 private:
  TColor color_ = clBlack;
  int width_ = 1;
  TPenStyle style_ = psSolid;
};

class TBrush : public TPersistent {
 public:
  TColor Color() const noexcept { return color_; }
  void SetColor(TColor value) noexcept { color_ = value; }
  TBrushStyle Style() const noexcept { return style_; }
  void SetStyle(TBrushStyle value) noexcept { style_ = value; }

  void Assign(const TPersistent& Source) override;

 private:
  TColor color_ = clWhite;
  TBrushStyle style_ = bsSolid;
};

class TBitmap;

// Drawing on the pixels of one bitmap. Coordinates are pixels, x to the
// right and y downward from the top-left pixel 0, 0; any int is allowed, and
// what falls outside the raster is cut off.
class TCanvas : public TPersistent {
 public:
  TCanvas(const TCanvas&) = delete;
  TCanvas& operator=(const TCanvas&) = delete;

  TPen& Pen() noexcept { return pen_; }
  TBrush& Brush() noexcept { return brush_; }
  TFont& Font() noexcept { return font_; }
  const TPen& Pen() const noexcept { return pen_; }
  const TBrush& Brush() const noexcept { return brush_; }
  const TFont& Font() const noexcept { return font_; }

  // The colour of a pixel, clInvalid outside the raster.
  TColor Pixels(int x, int y) const noexcept;
  // Sets one pixel; outside the raster nothing happens.
  void SetPixels(int x, int y, TColor color) noexcept;

  TPoint PenPos() const noexcept { return pen_pos_; }
  void MoveTo(int x, int y) noexcept { pen_pos_ = {x, y}; }
  // A line in the pen from PenPos to x, y, without its end pixel (a pen
  // wider than 1 draws square ends over both points); PenPos becomes x, y.
  void LineTo(int x, int y) noexcept;

  // The pixels left..right-1 by top..bottom-1 (sides given in either order):
  // the pen draws the outer ring of its width, the brush fills the inside.
  void Rectangle(int left, int top, int right, int bottom) noexcept;
  // Fills the same box in the brush only.
  void FillRect(int left, int top, int right, int bottom) noexcept;
  // The ellipse inscribed in the box of Rectangle: a pixel belongs to it
  // when its centre lies in the ellipse; the pen draws the ring of its width.
  void Ellipse(int left, int top, int right, int bottom) noexcept;
  // Closes itself; the brush fills the points inside (even-odd), then the
  // pen draws every edge with both end pixels.
  void Polygon(std::span<const TPoint> points) noexcept;

  // Width and height in pixels of `text` in Font at its resolution.
  int TextWidth(std::u16string_view text) const;
  int TextHeight(std::u16string_view text) const;
  // Writes `text` with its cell's top-left at x, y in the font colour; a
  // solid brush fills the cell first. PenPos moves to the end of the text.
  void TextOut(int x, int y, std::u16string_view text);

  // Copies `source` 1:1 with its top-left pixel on x, y.
  void Draw(int x, int y, const TBitmap& source) noexcept;

  TBitmap& Bitmap() noexcept { return bitmap_; }

 private:
  friend class TBitmap;
  explicit TCanvas(TBitmap& bitmap) : bitmap_(bitmap) {}

  TBitmap& bitmap_;
  TPen pen_;
  TBrush brush_;
  TFont font_;
  TPoint pen_pos_;
};

// A raster of Width x Height pixels, 0x00BBGGRR each (TColor), with its
// canvas. A new bitmap is 0 x 0; new pixels are white.
class TBitmap : public TPersistent {
 public:
  TBitmap();
  TBitmap(int width, int height);
  ~TBitmap() override;

  int Width() const noexcept { return width_; }
  int Height() const noexcept { return height_; }
  // Sizes below 0 count as 0. A raster of more than kMaxPixels pixels raises
  // EInvalidGraphic and leaves the bitmap as it was. Kept pixels stay.
  void SetSize(int width, int height);
  void SetWidth(int value) { SetSize(value, height_); }
  void SetHeight(int value) { SetSize(width_, value); }

  TCanvas& Canvas() noexcept { return *canvas_; }

  // Row y of the raster; an empty span for y outside.
  std::span<TColor> ScanLine(int y) noexcept;
  std::span<const TColor> ScanLine(int y) const noexcept;

  // Writes the raster as an 8-bit RGB PNG; a file that can't be made raises
  // EFCreateError "Cannot create file "<name>". <reason>".
  void SaveToFile(std::u16string_view file_name) const;
  // Reads a PNG of any kind (alpha is laid on white). A missing file raises
  // EFOpenError, anything that isn't a PNG of at most kMaxPixels pixels
  // EInvalidGraphic; the bitmap is then unchanged.
  void LoadFromFile(std::u16string_view file_name);

  void Assign(const TPersistent& Source) override;

  // The largest raster a bitmap holds: 2^28 pixels (1 GiB).
  static constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<TColor> pixels_;
  std::unique_ptr<TCanvas> canvas_;
};

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_CANVAS_H_
