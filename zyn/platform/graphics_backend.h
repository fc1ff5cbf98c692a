// zyn/platform/graphics_backend.h
//
// What the canvas, the screen and the printer ask of the host's libraries:
// PNG files (libpng), glyphs and font lists (FreeType, fontconfig) and PDF
// pages (cairo). Internal to the platform layer.

#ifndef ZYN_PLATFORM_GRAPHICS_BACKEND_H_
#define ZYN_PLATFORM_GRAPHICS_BACKEND_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/font.h"
#include "zyn/platform/types.h"

namespace zyn::platform {
class TBitmap;
}

namespace zyn::platform::backend {

struct TextExtent {
  int width = 0;
  int height = 0;  // ascent + descent, the cell height
  int ascent = 0;
};

// The extent of `text` set in `font` at the font's resolution.
TextExtent MeasureText(const TFont& font, std::u16string_view text);

// Draws the glyphs of `text` in `color`, the cell's top-left at x, y,
// blending the glyphs' coverage into the pixels; clipped to the raster.
void RenderText(const TFont& font, std::u16string_view text, std::int64_t x, std::int64_t y,
                TColor color, TBitmap& target);

// The family names of all installed fonts, sorted, each once.
std::vector<std::u16string> InstalledFontFamilies();

// fontconfig's format of the face a family name selects ("TrueType", "CFF",
// "Type 1", ...); empty if there is none.
std::u16string FontFormat(std::u16string_view family);

// Writes width x height pixels (row by row, TColor) as an RGB PNG; false with
// `error` set on failure.
bool WritePng(std::u16string_view file_name, int width, int height, std::span<const TColor> pixels,
              std::string& error);

// Reads a PNG into `pixels`; 1 if the file can't be opened, 2 if it isn't a
// PNG of at most `max_pixels` pixels, 0 on success.
int ReadPng(std::u16string_view file_name, std::int64_t max_pixels, int& width, int& height,
            std::vector<TColor>& pixels);

// A PDF file being written page by page.
class PdfWriter {
 public:
  // Opens the file; pages are width x height pixels at `pixels_per_inch`.
  // Raises EPrinter if the file can't be made.
  PdfWriter(std::u16string_view file_name, int width, int height, int pixels_per_inch);
  PdfWriter(const PdfWriter&) = delete;
  PdfWriter& operator=(const PdfWriter&) = delete;
  ~PdfWriter();

  // Adds one page holding the bitmap, one pixel per printer dot.
  void AddPage(const TBitmap& page);
  // Completes the file; raises EPrinter if it couldn't be written.
  void Finish();

 private:
  void* surface_ = nullptr;
  std::u16string file_name_;
  double scale_ = 1.0;
};

}  // namespace zyn::platform::backend

#endif  // ZYN_PLATFORM_GRAPHICS_BACKEND_H_
