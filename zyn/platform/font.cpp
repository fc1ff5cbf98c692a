#include "zyn/platform/font.h"

#include <cmath>
#include <cstdint>

namespace zyn::platform {

namespace {

// Rounds a * b / c to the nearest integer, halves away from zero, as the
// runtime's MulDiv does; 0 for c == 0.
int MulDiv(int a, int b, int c) {
  if (c == 0) return 0;
  const double q = static_cast<double>(static_cast<std::int64_t>(a) * b) / c;
  const double r = std::round(q);
  if (r > 2147483647.0) return 2147483647;
  if (r < -2147483647.0) return -2147483647;
  return static_cast<int>(r);
}

}  // namespace

void TFont::Changed() {
  if (on_change_) on_change_(this);
}

void TFont::SetName(std::u16string_view value) {
  if (value == name_) return;
  name_ = value;
  Changed();
}

int TFont::Size() const noexcept { return -MulDiv(height_, 72, pixels_per_inch_); }

void TFont::SetSize(int value) { SetHeight(-MulDiv(value, pixels_per_inch_, 72)); }

void TFont::SetHeight(int value) {
  if (value == height_) return;
  height_ = value;
  Changed();
}

void TFont::SetStyle(TFontStyles value) {
  if (value == style_) return;
  style_ = value;
  Changed();
}

void TFont::SetColor(TColor value) {
  if (value == color_) return;
  color_ = value;
  Changed();
}

void TFont::SetPixelsPerInch(int value) {
  if (value == pixels_per_inch_) return;
  pixels_per_inch_ = value;
  Changed();
}

void TFont::Assign(const TPersistent& Source) {
  if (const auto* f = dynamic_cast<const TFont*>(&Source)) {
    name_ = f->name_;
    height_ = f->height_;
    style_ = f->style_;
    color_ = f->color_;
    pixels_per_inch_ = f->pixels_per_inch_;
    return;
  }
  TPersistent::Assign(Source);
}

}  // namespace zyn::platform
