// zyn/colors/colormodels.h
//
// Colour arithmetic on the packed TColor (red in bits 0-7, green 8-15, blue
// 16-23): mixing, distance, the HSI, CMY, CMYK and gray views, wavelengths of
// light and random colours. Nothing here throws or keeps state but the shared
// random generator. Colours taken apart ignore their top byte; colours built
// have it 0. "Rounded" is to nearest with ties to even, "truncated" toward 0.

#ifndef ZYN_COLORS_COLORMODELS_H_
#define ZYN_COLORS_COLORMODELS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "zyn/platform/types.h"

namespace Zyn_zyncolors {

using zyn::platform::TColor;

// The channels of a colour and the colour of three channels (low 8 bits each).
constexpr int RedOf(TColor c) { return static_cast<int>(c & 0xFF); }
constexpr int GreenOf(TColor c) { return static_cast<int>((c >> 8) & 0xFF); }
constexpr int BlueOf(TColor c) { return static_cast<int>((c >> 16) & 0xFF); }
constexpr TColor PackRGB(int red, int green, int blue) {
  return (static_cast<TColor>(red) & 0xFF) | ((static_cast<TColor>(green) & 0xFF) << 8) |
         ((static_cast<TColor>(blue) & 0xFF) << 16);
}

// Each channel truncated from c1 + fraction * (c2 - c1); the fraction is
// clamped to 0..1 (NaN counts as 0), so 0 gives Color1 and 1 gives Color2.
TColor InterpolateColor(TColor Color1, TColor Color2, double Fraction);

// Fraction 0..0.5 runs from Color1 to Color2, above 0.5 from Color2 to
// Color3; clamped as InterpolateColor, so 0.5 gives exactly Color2.
TColor Interpolate3Colors(TColor Color1, TColor Color2, TColor Color3, double Fraction);

// InterpolateColor at 0.5: black and white give 7F7F7F.
TColor MeanColor(TColor Color1, TColor Color2);

// Red and blue exchanged.
TColor ReverseRGBColor(TColor Color);

// Each channel c becomes 255 - c.
TColor InvertColor(TColor Color);

// Eight capital hexadecimal digits of all 32 bits, top byte included: red
// gives "000000FF".
std::u16string ColorToHexStr(TColor Color);

// Blanks (code 32) around the text are dropped, a "$" in front is skipped,
// then hexadecimal digits of either case are read up to the first other
// character; only the last eight count. No digits give 0: "12G4" is 0x12.
TColor HexStrToColor(std::u16string_view HexStr);

// Hue in degrees, saturation and intensity 0..1 (clamped; NaN counts as 0)
// to channels 0..255. A hue below 0, at 360 or above, or NaN counts as 0;
// saturation 0 gives the gray of the intensity whatever the hue.
void HSItoRGB(double Hue, double Saturation, double Intensity, int& Red, int& Green, int& Blue);

// The inverse of HSItoRGB up to rounding. Black gives hue 0, any other gray
// hue -1.0; of equal largest channels the first of red, green, blue counts.
void RGBtoHSI(int Red, int Green, int Blue, double& Hue, double& Saturation, double& Intensity);

// Each channel is the rounded (1 - ink) * 255 of its ink, clamped to 0..1.
void CMYtoRGB(double Cyan, double Magenta, double Yellow, std::uint8_t& Red, std::uint8_t& Green,
              std::uint8_t& Blue);

// Each ink is 1 - channel / 255.
void RGBtoCMY(std::uint8_t Red, std::uint8_t Green, std::uint8_t Blue, double& Cyan,
              double& Magenta, double& Yellow);

// Adds Black to each ink and clamps the sums to 0..1, in place.
void CMYKtoCMY(double& Cyan, double& Magenta, double& Yellow, double Black);

// Clamps the inks to 0..1, takes the least of them as Black and subtracts it
// from each, in place.
void CMYtoCMYK(double& Cyan, double& Magenta, double& Yellow, double& Black);

// Rounded red * 0.3 + green * 0.59 + blue * 0.11, summed in that order.
// Channels outside 0..255 are taken as given; a sum beyond the range of int
// gives the nearest end of it.
int RGBtoGray(int Red, int Green, int Blue);
// The colour whose three channels are RGBtoGray (low 8 bits).
TColor RGBtoGrayColor(int Red, int Green, int Blue);
int ColorToGray(TColor Color);
TColor ColorToGrayColor(TColor Color);

// sqrt((dr^2 + dg^2 + db^2) / 195075): 0 for equal colours, 1 for black and
// white.
double RGBColorDistance(TColor Color1, TColor Color2);

// The colour of light of `Wavelength` nanometres: black below 380 and from
// 780; dimmed toward both ends (below 420, above 700); each channel is
// 255 * (F * base) ^ Gamma, rounded. Gamma 0 makes every lit channel 255. A
// negative gamma can push a channel past 255: it keeps its low 8 bits, and
// beyond the range of int (or at infinity) it counts as that range's end; NaN
// gives 0.
TColor WavelengthToColor(int Wavelength, double Gamma);

// Red, green and blue, in this order, each Random(256) of the shared
// generator.
TColor RandomColor();
// Each channel is its low limit + Random(high - low + 1), red first; a low
// limit above its high one gives the low limit (and still draws).
TColor RandomColor(std::uint8_t RedLow, std::uint8_t RedHigh, std::uint8_t GreenLow,
                   std::uint8_t GreenHigh, std::uint8_t BlueLow, std::uint8_t BlueHigh);

}  // namespace Zyn_zyncolors

#endif  // ZYN_COLORS_COLORMODELS_H_
