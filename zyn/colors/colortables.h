// zyn/colors/colortables.h
//
// The library's named colours, the web colours, the platform's predefined
// colour constants and seven palettes for TColorArray scales, all constant
// data, and ObtainColorName to find a colour's name.

#ifndef ZYN_COLORS_COLORTABLES_H_
#define ZYN_COLORS_COLORTABLES_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "zyn/colors/colormodels.h"

namespace Zyn_zyncolors {

// A constant table whose rows count from 1 to N, as the row numbers the
// library's documentation uses: table[1] is the first row. Rows outside 1..N
// must not be asked for (as with std::array). Iterates over all rows.
template <typename T, std::size_t N>
struct TOneBasedArray {
  std::array<T, N> Rows;

  static constexpr int Low() { return 1; }
  static constexpr int High() { return static_cast<int>(N); }
  constexpr const T& operator[](int Row) const { return Rows[static_cast<std::size_t>(Row - 1)]; }
  constexpr auto begin() const { return Rows.begin(); }
  constexpr auto end() const { return Rows.end(); }
  static constexpr std::size_t size() { return N; }
};

// The 466 named colours, rows 1 to 466: the 16 basic colours Black to White,
// MoneyGreen, Cream and MedGray, then from row 20 (AliceBlue) the others
// alphabetically, each colour followed by its numbered shades. Some names
// share a value (Red, Red1). AllZYNColorNames[n] names AllZYNColors[n].
extern const TOneBasedArray<TColor, 466> AllZYNColors;
extern const TOneBasedArray<std::u16string_view, 466> AllZYNColorNames;

// The 145 web colours in the alphabetical order of their names (AliceBlue,
// AntiqueWhite, Aqua, ...), values only. First index 0.
extern const std::array<TColor, 145> X11Colors;

// The platform's 47 colour constants: elements 0 to 15 the basic colours as
// in AllZYNColors, 16 to 19 the four extra colours, then the system colours
// (0xFF000000 + index) with 0x20000000 (default) and 0x1FFFFFFF (none).
// First index 0.
extern const std::array<TColor, 47> PredefinedColors;

// Support colours for TColorArray::FillByInterpolation, first index 0.
// ColorArray_Rainbow is the default scale of every new TColorArray;
// ColorArray_Circle starts and ends with red, so its scale closes on itself.
extern const std::array<TColor, 11> ColorArray_Geo1;
extern const std::array<TColor, 11> ColorArray_Geo2;
extern const std::array<TColor, 11> ColorArray_Geo3;
extern const std::array<TColor, 11> ColorArray_Rainbow;
extern const std::array<TColor, 7> ColorArray_Circle;
extern const std::array<TColor, 7> ColorArray_MorgenStemning;
extern const std::array<TColor, 16> ColorArray_Contrast;

// The name of the first row of AllZYNColors that holds the whole 32-bit
// value, else its ColorToHexStr text: 0xFF0000 is "Blue" (not "Blue1"),
// 0xFF000005 is "FF000005".
std::u16string ObtainColorName(TColor Color);

}  // namespace Zyn_zyncolors

#endif  // ZYN_COLORS_COLORTABLES_H_
