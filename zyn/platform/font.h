// zyn/platform/font.h
//
// The font and pen settings that labels, crosshairs and canvases share. They
// are plain data: nothing here draws; a canvas reads them when it draws.

#ifndef ZYN_PLATFORM_FONT_H_
#define ZYN_PLATFORM_FONT_H_

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "zyn/platform/object.h"
#include "zyn/platform/types.h"

namespace zyn::platform {

// How a pen draws a line, by the runtime's ordinals; psSolid is 0.
enum TPenStyle : std::uint8_t {
  psSolid,
  psDash,
  psDot,
  psDashDot,
  psDashDotDot,
  psClear,
  psInsideFrame,
  psUserStyle,
  psAlternate
};

// A set of TFontStyle values.
class TFontStyles {
 public:
  constexpr TFontStyles() = default;
  constexpr TFontStyles(std::initializer_list<TFontStyle> styles) {
    for (TFontStyle s : styles) Include(s);
  }

  constexpr bool Contains(TFontStyle s) const { return (bits_ >> s) & 1u; }
  constexpr void Include(TFontStyle s) { bits_ = static_cast<std::uint8_t>(bits_ | (1u << s)); }
  constexpr void Exclude(TFontStyle s) { bits_ = static_cast<std::uint8_t>(bits_ & ~(1u << s)); }
  constexpr bool Empty() const { return bits_ == 0; }
  // The set as bits, fsBold in bit 0.
  constexpr std::uint8_t Bits() const { return bits_; }

  friend constexpr bool operator==(TFontStyles, TFontStyles) = default;

 private:
  std::uint8_t bits_ = 0;
};

// The face a new font names: a sans-serif family every Linux desktop has
// (fonts-dejavu-core).
inline constexpr std::u16string_view kDefaultFontName = u"DejaVu Sans";
// The size of a new font in points.
inline constexpr int kDefaultFontSize = 10;
// The resolution a new font converts points at: the screen's usual 96 dpi.
inline constexpr int kDefaultPixelsPerInch = 96;

// A font description: family name, size, styles, colour, and the resolution
// at which points turn into pixels. The height in pixels is what the font
// keeps: a new resolution leaves it and changes Size. Setters fire OnChange
// only when the value changes; Assign copies everything but OnChange and
// fires nothing.
class TFont : public TPersistent {
 public:
  TFont() = default;

  const std::u16string& Name() const noexcept { return name_; }
  void SetName(std::u16string_view value);

  // Size in points at PixelsPerInch: -round(Height * 72 / ppi).
  int Size() const noexcept;
  // Sets Height to -round(value * ppi / 72), halves away from 0.
  void SetSize(int value);

  // The height in pixels, negative for a character height (the em) as the
  // runtime gives it, positive for a cell height.
  int Height() const noexcept { return height_; }
  void SetHeight(int value);

  TFontStyles Style() const noexcept { return style_; }
  void SetStyle(TFontStyles value);

  TColor Color() const noexcept { return color_; }
  void SetColor(TColor value);

  int PixelsPerInch() const noexcept { return pixels_per_inch_; }
  void SetPixelsPerInch(int value);

  const TNotifyEvent& OnChange() const noexcept { return on_change_; }
  void SetOnChange(TNotifyEvent handler) { on_change_ = std::move(handler); }

  void Assign(const TPersistent& Source) override;

 private:
  void Changed();

  std::u16string name_{kDefaultFontName};
  int height_ = -13;  // kDefaultFontSize at kDefaultPixelsPerInch
  TFontStyles style_;
  TColor color_ = 0;
  int pixels_per_inch_ = kDefaultPixelsPerInch;
  TNotifyEvent on_change_;
};

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_FONT_H_
