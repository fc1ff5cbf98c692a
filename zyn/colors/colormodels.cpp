#include "zyn/colors/colormodels.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "zyn/platform/random.h"

namespace Zyn_zyncolors {

namespace {

// 0..1, with NaN taken as 0 so that no NaN reaches a conversion to int.
double Clamp01(double x) { return !(x > 0.0) ? 0.0 : (x > 1.0 ? 1.0 : x); }

// Round half to even (the default floating-point rounding mode), limited to
// the range of int; NaN gives 0.
int RoundToInt(double x) {
  if (std::isnan(x)) return 0;
  constexpr double kMax = std::numeric_limits<int>::max();
  constexpr double kMin = std::numeric_limits<int>::min();
  const double r = std::nearbyint(x);
  return r >= kMax ? std::numeric_limits<int>::max()
                   : (r <= kMin ? std::numeric_limits<int>::min() : static_cast<int>(r));
}

int TruncChannel(double x) { return static_cast<int>(x); }  // x lies within 0..255

bool IsHexDigit(char16_t c, std::uint32_t& value) {
  if (c >= u'0' && c <= u'9') {
    value = c - u'0';
  } else if (c >= u'A' && c <= u'F') {
    value = c - u'A' + 10;
  } else if (c >= u'a' && c <= u'f') {
    value = c - u'a' + 10;
  } else {
    return false;
  }
  return true;
}

}  // namespace

TColor InterpolateColor(TColor Color1, TColor Color2, double Fraction) {
  const double f = Clamp01(Fraction);
  const auto mix = [f](int c1, int c2) { return TruncChannel(c1 + f * (c2 - c1)); };
  return PackRGB(mix(RedOf(Color1), RedOf(Color2)), mix(GreenOf(Color1), GreenOf(Color2)),
                 mix(BlueOf(Color1), BlueOf(Color2)));
}

TColor Interpolate3Colors(TColor Color1, TColor Color2, TColor Color3, double Fraction) {
  const double f = Clamp01(Fraction);
  if (f <= 0.5) return InterpolateColor(Color1, Color2, 2 * f);
  return InterpolateColor(Color2, Color3, (f - 0.5) * 2);
}

TColor MeanColor(TColor Color1, TColor Color2) { return InterpolateColor(Color1, Color2, 0.5); }

TColor ReverseRGBColor(TColor Color) {
  return PackRGB(BlueOf(Color), GreenOf(Color), RedOf(Color));
}

TColor InvertColor(TColor Color) {
  return PackRGB(255 - RedOf(Color), 255 - GreenOf(Color), 255 - BlueOf(Color));
}

std::u16string ColorToHexStr(TColor Color) {
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::u16string s(8, u'0');
  for (int i = 7; i >= 0; --i, Color >>= 4) s[static_cast<std::size_t>(i)] = kDigits[Color & 0xF];
  return s;
}

TColor HexStrToColor(std::u16string_view HexStr) {
  const auto first = HexStr.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return 0;
  HexStr = HexStr.substr(first, HexStr.find_last_not_of(u' ') - first + 1);
  if (HexStr.front() == u'$') HexStr.remove_prefix(1);
  TColor value = 0;
  for (std::uint32_t digit; !HexStr.empty() && IsHexDigit(HexStr.front(), digit);
       HexStr.remove_prefix(1)) {
    value = value * 16u + digit;
  }
  return value;
}

void HSItoRGB(double Hue, double Saturation, double Intensity, int& Red, int& Green, int& Blue) {
  const double s = Clamp01(Saturation);
  const double v_in = Clamp01(Intensity);
  const double hue = Hue >= 0.0 && Hue < 360.0 ? Hue : 0.0;
  if (s == 0.0) {
    Red = Green = Blue = RoundToInt(v_in * 255);
    return;
  }
  const double h = hue / 60;
  // hue < 360 keeps i below 6; the limit only guards against a rounding
  // surprise.
  const int i = std::min(static_cast<int>(h), 5);
  const double f = h - i;
  const double v = v_in * 255;
  const double p = v_in * (1 - s) * 255;
  const double q = v_in * (1 - s * f) * 255;
  const double t = v_in * (1 - s * (1 - f)) * 255;
  double r = 0, g = 0, b = 0;
  switch (i) {
    case 0:
      r = v, g = t, b = p;
      break;
    case 1:
      r = q, g = v, b = p;
      break;
    case 2:
      r = p, g = v, b = t;
      break;
    case 3:
      r = p, g = q, b = v;
      break;
    case 4:
      r = t, g = p, b = v;
      break;
    default:
      r = v, g = p, b = q;
      break;
  }
  Red = RoundToInt(r);
  Green = RoundToInt(g);
  Blue = RoundToInt(b);
}

void RGBtoHSI(int Red, int Green, int Blue, double& Hue, double& Saturation, double& Intensity) {
  enum { kRed, kGreen, kBlue } top = kRed;
  int max = Red;
  if (Green > max) max = Green, top = kGreen;
  if (Blue > max) max = Blue, top = kBlue;
  const int min = std::min({Red, Green, Blue});
  // In doubles: channels may be any int, and their difference need not fit.
  const double d = static_cast<double>(max) - min;
  Intensity = max / 255.0;
  if (max == 0) {
    Saturation = 0.0;
    Hue = 0.0;
    return;
  }
  Saturation = d / max;
  if (Saturation == 0.0) {
    Hue = -1.0;
    return;
  }
  double h = 0;
  switch (top) {
    case kRed:
      h = (static_cast<double>(Green) - Blue) / d;
      break;
    case kGreen:
      h = (static_cast<double>(Blue) - Red) / d + 2;
      break;
    case kBlue:
      h = (static_cast<double>(Red) - Green) / d + 4;
      break;
  }
  h *= 60;
  if (h < 0) h += 360;
  Hue = h;
}

void CMYtoRGB(double Cyan, double Magenta, double Yellow, std::uint8_t& Red, std::uint8_t& Green,
              std::uint8_t& Blue) {
  const auto channel = [](double ink) {
    return static_cast<std::uint8_t>(RoundToInt((1 - Clamp01(ink)) * 255));
  };
  Red = channel(Cyan);
  Green = channel(Magenta);
  Blue = channel(Yellow);
}

void RGBtoCMY(std::uint8_t Red, std::uint8_t Green, std::uint8_t Blue, double& Cyan,
              double& Magenta, double& Yellow) {
  Cyan = 1 - Red / 255.0;
  Magenta = 1 - Green / 255.0;
  Yellow = 1 - Blue / 255.0;
}

void CMYKtoCMY(double& Cyan, double& Magenta, double& Yellow, double Black) {
  Cyan = Clamp01(Cyan + Black);
  Magenta = Clamp01(Magenta + Black);
  Yellow = Clamp01(Yellow + Black);
}

void CMYtoCMYK(double& Cyan, double& Magenta, double& Yellow, double& Black) {
  Cyan = Clamp01(Cyan);
  Magenta = Clamp01(Magenta);
  Yellow = Clamp01(Yellow);
  Black = std::min({Cyan, Magenta, Yellow});
  Cyan -= Black;
  Magenta -= Black;
  Yellow -= Black;
}

int RGBtoGray(int Red, int Green, int Blue) {
  return RoundToInt(Red * 0.3 + Green * 0.59 + Blue * 0.11);
}

TColor RGBtoGrayColor(int Red, int Green, int Blue) {
  const int gray = RGBtoGray(Red, Green, Blue);
  return PackRGB(gray, gray, gray);
}

int ColorToGray(TColor Color) { return RGBtoGray(RedOf(Color), GreenOf(Color), BlueOf(Color)); }

TColor ColorToGrayColor(TColor Color) {
  return RGBtoGrayColor(RedOf(Color), GreenOf(Color), BlueOf(Color));
}

double RGBColorDistance(TColor Color1, TColor Color2) {
  const int dr = RedOf(Color1) - RedOf(Color2);
  const int dg = GreenOf(Color1) - GreenOf(Color2);
  const int db = BlueOf(Color1) - BlueOf(Color2);
  return std::sqrt((dr * dr + dg * dg + db * db) / 195075.0);
}

TColor WavelengthToColor(int Wavelength, double Gamma) {
  const int w = Wavelength;
  double red = 0, green = 0, blue = 0;
  if (w >= 380 && w < 440) {
    red = (440 - w) / 60.0, blue = 1;
  } else if (w >= 440 && w < 490) {
    green = (w - 440) / 50.0, blue = 1;
  } else if (w >= 490 && w < 510) {
    green = 1, blue = (510 - w) / 20.0;
  } else if (w >= 510 && w < 580) {
    red = (w - 510) / 70.0, green = 1;
  } else if (w >= 580 && w < 645) {
    red = 1, green = (645 - w) / 65.0;
  } else if (w >= 645 && w < 780) {
    red = 1;
  }
  // In doubles: far outside the spectrum 780 - w would not fit an int.
  double factor = 1.0;
  if (w > 700) {
    factor = (780.0 - w) * 0.7 / 80 + 0.3;
  } else if (w < 420) {
    factor = (w - 380.0) * 0.7 / 40 + 0.3;
  }
  if (factor < 0) factor = 0;
  const auto channel = [&](double base) {
    if (base == 0 || factor == 0) return 0;
    return RoundToInt(std::exp(Gamma * std::log(factor * base)) * 255);
  };
  return PackRGB(channel(red), channel(green), channel(blue));
}

TColor RandomColor() {
  const int red = zyn::platform::Random(256);
  const int green = zyn::platform::Random(256);
  const int blue = zyn::platform::Random(256);
  return PackRGB(red, green, blue);
}

TColor RandomColor(std::uint8_t RedLow, std::uint8_t RedHigh, std::uint8_t GreenLow,
                   std::uint8_t GreenHigh, std::uint8_t BlueLow, std::uint8_t BlueHigh) {
  const auto draw = [](int low, int high) { return low + zyn::platform::Random(high - low + 1); };
  const int red = draw(RedLow, RedHigh);
  const int green = draw(GreenLow, GreenHigh);
  const int blue = draw(BlueLow, BlueHigh);
  return PackRGB(red, green, blue);
}

}  // namespace Zyn_zyncolors
