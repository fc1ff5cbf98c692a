// zyn/platform/types.h
//
// Small value types of the platform that the library's types refer to.

#ifndef ZYN_PLATFORM_TYPES_H_
#define ZYN_PLATFORM_TYPES_H_

#include <cstdint>

#include "zyn/platform/variant.h"

namespace zyn::platform {

// A packed colour: red in bits 0 to 7, green in 8 to 15, blue in 16 to 23.
// The top byte may hold a system colour index; colour functions ignore it.
using TColor = std::uint32_t;

// A pair of signed 32-bit pixel coordinates.
struct TPoint {
  std::int32_t X = 0;
  std::int32_t Y = 0;
  friend constexpr bool operator==(const TPoint&, const TPoint&) = default;
};

// Horizontal text alignment, by ordinal.
enum TAlignment : std::uint8_t { taLeftJustify, taRightJustify, taCenter };

// The styles of a font, by ordinal.
enum TFontStyle : std::uint8_t { fsBold, fsItalic, fsUnderline, fsStrikeOut };

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_TYPES_H_
