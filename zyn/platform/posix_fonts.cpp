// Text through fontconfig (which face a TFont names) and FreeType (its
// metrics and glyphs). Faces are opened once and kept for the process; one
// lock guards them, since FreeType faces carry their current size.

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <string>
#include <tuple>

#include "zyn/platform/canvas.h"
#include "zyn/platform/graphics_backend.h"
#include "zyn/platform/text.h"

namespace zyn::platform::backend {
namespace {

// The largest em drawn, in pixels: a glyph bitmap stays below 4 MiB.
constexpr int kMaxEmPixels = 2048;

class FontEngine {
 public:
  static FontEngine& Get() {
    static FontEngine engine;
    return engine;
  }

  std::mutex& Lock() { return lock_; }

  // The face for name and style, at the font's pixel size; null if no font
  // at all can be had.
  FT_Face Face(const TFont& font) {
    if (library_ == nullptr) return nullptr;
    const bool bold = font.Style().Contains(fsBold);
    const bool italic = font.Style().Contains(fsItalic);
    const auto key = std::make_tuple(font.Name(), bold, italic);
    auto it = faces_.find(key);
    if (it == faces_.end()) it = faces_.emplace(key, Open(font.Name(), bold, italic)).first;
    FT_Face face = it->second;
    if (face == nullptr) return nullptr;
    FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(EmPixels(face, font.Height())));
    return face;
  }

  // The advance of `c` in 26.6 pixels, remembered: measuring runs for every
  // character mark, and FreeType loads a glyph anew each time.
  long Advance(FT_Face face, char16_t c) {
    const auto key = std::make_tuple(face, face->size->metrics.y_ppem, c);
    if (const auto it = advances_.find(key); it != advances_.end()) return it->second;
    const long advance = FT_Load_Char(face, c, FT_LOAD_DEFAULT) == 0 ? face->glyph->advance.x : 0;
    if (advances_.size() >= 65536) advances_.clear();
    advances_.emplace(key, advance);
    return advance;
  }

  std::vector<std::u16string> Families() {
    std::vector<std::u16string> names;
    FcPattern* pattern = FcPatternCreate();
    FcObjectSet* objects = FcObjectSetBuild(FC_FAMILY, nullptr);
    FcFontSet* set = FcFontList(nullptr, pattern, objects);
    if (set != nullptr) {
      for (int i = 0; i < set->nfont; ++i) {
        FcChar8* family = nullptr;
        for (int k = 0; FcPatternGetString(set->fonts[i], FC_FAMILY, k, &family) == FcResultMatch;
             ++k) {
          names.push_back(FromUTF8(reinterpret_cast<const char*>(family)));
        }
      }
      FcFontSetDestroy(set);
    }
    FcObjectSetDestroy(objects);
    FcPatternDestroy(pattern);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
  }

  std::u16string Format(std::u16string_view family) {
    FcPattern* match = Match(family, false, false);
    if (match == nullptr) return {};
    std::u16string result;
    FcChar8* format = nullptr;
    if (FcPatternGetString(match, FC_FONTFORMAT, 0, &format) == FcResultMatch) {
      result = FromUTF8(reinterpret_cast<const char*>(format));
    }
    FcPatternDestroy(match);
    return result;
  }

 private:
  FontEngine() {
    if (FT_Init_FreeType(&library_) != 0) library_ = nullptr;
  }
  ~FontEngine() {
    for (auto& [key, face] : faces_) {
      if (face != nullptr) FT_Done_Face(face);
    }
    if (library_ != nullptr) FT_Done_FreeType(library_);
  }

  static int EmPixels(FT_Face face, int height) {
    long em = height < 0 ? -static_cast<long>(height) : 0;
    if (height > 0) {
      // A positive height is the cell: ascent plus descent.
      const long cell = face->ascender - face->descender;
      em = cell > 0 ? std::lround(static_cast<double>(height) * face->units_per_EM / cell) : height;
    }
    return static_cast<int>(std::clamp<long>(em, 1, kMaxEmPixels));
  }

  static FcPattern* Match(std::u16string_view family, bool bold, bool italic) {
    FcPattern* pattern = FcPatternCreate();
    const std::string name = ToUTF8(family);
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(name.c_str()));
    FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, pattern, &result);
    FcPatternDestroy(pattern);
    return match;
  }

  FT_Face Open(std::u16string_view family, bool bold, bool italic) {
    FcPattern* match = Match(family, bold, italic);
    if (match == nullptr) return nullptr;
    FcChar8* file = nullptr;
    int index = 0;
    FT_Face face = nullptr;
    if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch) {
      FcPatternGetInteger(match, FC_INDEX, 0, &index);
      if (FT_New_Face(library_, reinterpret_cast<const char*>(file), index, &face) != 0) {
        face = nullptr;
      }
    }
    FcPatternDestroy(match);
    return face;
  }

  std::mutex lock_;
  FT_Library library_ = nullptr;
  std::map<std::tuple<std::u16string, bool, bool>, FT_Face> faces_;
  std::map<std::tuple<FT_Face, FT_UShort, char16_t>, long> advances_;
};

long Ceil26_6(long v) { return (v + 63) >> 6; }

// Ascent and descent of the face at its size, whole pixels.
void CellMetrics(FT_Face face, int& ascent, int& descent) {
  ascent = static_cast<int>(Ceil26_6(face->size->metrics.ascender));
  descent = static_cast<int>(Ceil26_6(-face->size->metrics.descender));
}

}  // namespace

TextExtent MeasureText(const TFont& font, std::u16string_view text) {
  FontEngine& engine = FontEngine::Get();
  std::lock_guard guard(engine.Lock());
  FT_Face face = engine.Face(font);
  if (face == nullptr) return {};
  TextExtent e;
  int descent = 0;
  CellMetrics(face, e.ascent, descent);
  e.height = e.ascent + descent;
  long width = 0;
  for (char16_t c : text) width += engine.Advance(face, c);
  e.width = static_cast<int>(std::min<long>((width + 32) >> 6, 0x7FFFFFFF));
  return e;
}

void RenderText(const TFont& font, std::u16string_view text, std::int64_t x, std::int64_t y,
                TColor color, TBitmap& target) {
  FontEngine& engine = FontEngine::Get();
  std::lock_guard guard(engine.Lock());
  FT_Face face = engine.Face(font);
  if (face == nullptr) return;
  int ascent = 0;
  int descent = 0;
  CellMetrics(face, ascent, descent);
  const std::int64_t baseline = y + ascent;
  const std::int64_t w = target.Width();
  const std::int64_t h = target.Height();
  // Glyphs reach above the ascent and below the descent only a little; a
  // cell a whole em away from the raster draws nothing.
  const std::int64_t em = face->size->metrics.y_ppem;
  if (y >= h + em || y + ascent + descent + em <= 0 || x >= w + em) return;
  const unsigned fr = color & 0xFF;
  const unsigned fg = (color >> 8) & 0xFF;
  const unsigned fb = (color >> 16) & 0xFF;
  std::int64_t pen_x = x * 64;
  const auto blend = [](unsigned dst, unsigned src, unsigned a) {
    return (src * a + dst * (255 - a) + 127) / 255;
  };
  for (char16_t c : text) {
    if (FT_Load_Char(face, c, FT_LOAD_RENDER) != 0) continue;
    const FT_GlyphSlot g = face->glyph;
    const std::int64_t gx = ((pen_x + 32) >> 6) + g->bitmap_left;
    const std::int64_t gy = baseline - g->bitmap_top;
    pen_x += g->advance.x;
    const FT_Bitmap& bm = g->bitmap;
    if (bm.pixel_mode != FT_PIXEL_MODE_GRAY && bm.pixel_mode != FT_PIXEL_MODE_MONO) continue;
    for (unsigned row = 0; row < bm.rows; ++row) {
      const std::int64_t py = gy + row;
      if (py < 0 || py >= h) continue;
      auto line = target.ScanLine(static_cast<int>(py));
      const unsigned char* src = bm.buffer + static_cast<std::ptrdiff_t>(row) * bm.pitch;
      for (unsigned col = 0; col < bm.width; ++col) {
        const std::int64_t px = gx + col;
        if (px < 0 || px >= w) continue;
        unsigned a = bm.pixel_mode == FT_PIXEL_MODE_GRAY
                         ? src[col]
                         : ((src[col / 8] >> (7 - col % 8)) & 1u) * 255u;
        if (a == 0) continue;
        TColor& d = line[static_cast<std::size_t>(px)];
        d = blend(d & 0xFF, fr, a) | blend((d >> 8) & 0xFF, fg, a) << 8 |
            blend((d >> 16) & 0xFF, fb, a) << 16;
      }
    }
  }
  // Underline and strike-out as bars of the face's underline thickness.
  const long thick =
      std::max<long>(1, FT_MulFix(face->underline_thickness, face->size->metrics.y_scale) >> 6);
  const std::int64_t x_end = (pen_x + 32) >> 6;
  const auto bar = [&](std::int64_t top) {
    for (std::int64_t py = top; py < top + thick; ++py) {
      if (py < 0 || py >= h) continue;
      auto line = target.ScanLine(static_cast<int>(py));
      for (std::int64_t px = std::max<std::int64_t>(x, 0); px < std::min(x_end, w); ++px) {
        line[static_cast<std::size_t>(px)] = color & 0xFFFFFF;
      }
    }
  };
  if (font.Style().Contains(fsUnderline)) {
    bar(baseline - (FT_MulFix(face->underline_position, face->size->metrics.y_scale) >> 6));
  }
  if (font.Style().Contains(fsStrikeOut)) bar(baseline - ascent / 3);
}

std::vector<std::u16string> InstalledFontFamilies() {
  FontEngine& engine = FontEngine::Get();
  std::lock_guard guard(engine.Lock());
  return engine.Families();
}

std::u16string FontFormat(std::u16string_view family) {
  FontEngine& engine = FontEngine::Get();
  std::lock_guard guard(engine.Lock());
  return engine.Format(family);
}

}  // namespace zyn::platform::backend
