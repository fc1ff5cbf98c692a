// Data: feat show|check, colour name|convert|scale.

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "cli/common.h"
#include "zyn/colors/colorarray.h"
#include "zyn/colors/colormodels.h"
#include "zyn/colors/colortables.h"
#include "zyn/dstruct/featurematrix.h"
#include "zyn/platform/canvas.h"
#include "zyn/platform/casefold.h"
#include "zyn/stringl/formatting.h"

namespace zyn_cli {

namespace {

using zyn::platform::TColor;
using Zyn_dstruct::TFeatureMatrix;

// ---- feat -------------------------------------------------------------------

// Loads the first block of `file`; anything but a read block ends the command
// with the load result explained.
void LoadMatrix(TFeatureMatrix& m, const std::string& file) {
  int result = 0;
  try {
    result = m.Load(Path16(file));
  } catch (const std::exception& e) {
    throw Failure(file, e.what());
  }
  switch (result) {
    case 0:
      return;
    case -1:
      throw Failure(file, "-1, the file doesn't exist");
    case -2:
      throw Failure(file, "-2, the file holds no feature block (no \"#featdef\" or \"#featvals\")");
    default:
      throw Failure(file, std::to_string(result) +
                              ", reading the block failed (a line without its number, a count "
                              "that isn't one, or more than the reader takes)");
  }
}

std::string KindWord(Zyn_dstruct::TFeatKind kind) {
  const auto k = static_cast<std::size_t>(kind);
  return k < Zyn_dstruct::FEATKINDIDS.size() ? Utf8(Zyn_dstruct::FEATKINDIDS[k])
                                             : std::to_string(k);
}

// Rows of cells in columns as wide as their widest cell (in characters), two
// blanks apart, with no blanks at the end of a line.
void WriteTable(const std::vector<std::vector<std::u16string>>& rows) {
  std::vector<std::size_t> width;
  for (const auto& row : rows) {
    if (width.size() < row.size()) width.resize(row.size());
    for (std::size_t c = 0; c < row.size(); ++c) width[c] = std::max(width[c], row[c].size());
  }
  for (const auto& row : rows) {
    std::u16string line;
    for (std::size_t c = 0; c < row.size(); ++c) {
      if (c > 0) line.append(2, u' ');
      line += row[c];
      if (c + 1 < row.size()) line.append(width[c] - row[c].size(), u' ');
    }
    while (!line.empty() && line.back() == u' ') line.pop_back();
    WriteOut(Utf8(line) + "\n");
  }
}

void ShowMatrix(const std::string& file) {
  TFeatureMatrix m;
  LoadMatrix(m, file);
  // The values of an undefined feature can be read only as text of another
  // kind: a copy whose undefined features are strings shows them as stored.
  TFeatureMatrix view;
  view.Assign(m);
  std::vector<std::vector<std::u16string>> rows(2 + static_cast<std::size_t>(m.NObjects()));
  rows[0].push_back(u"object");
  rows[1].push_back(u"");
  for (int fix = 1; fix <= m.NFeatures(); ++fix) {
    Zyn_dstruct::TFeatProps props = m.GetFeatProps(fix);
    rows[0].push_back(props.FeatName.str());
    rows[1].push_back(Path16(KindWord(props.FeatKind)));
    if (props.FeatKind == Zyn_dstruct::fkUndefined) {
      props.FeatKind = Zyn_dstruct::fkString;
      view.SetFeatProps(fix, props);
    }
  }
  for (int obj = 1; obj <= m.NObjects(); ++obj) {
    auto& row = rows[1 + static_cast<std::size_t>(obj)];
    row.push_back(Path16(std::to_string(obj)));
    for (int fix = 1; fix <= m.NFeatures(); ++fix) row.push_back(view.FeatVal(fix, obj));
  }
  WriteTable(rows);
}

void CheckMatrix(const std::string& file) {
  TFeatureMatrix m;
  LoadMatrix(m, file);
  WriteOut(file + ": 0, a feature block was read: " + std::to_string(m.NFeatures()) +
           " features, " + std::to_string(m.NObjects()) + " objects\n");
}

// ---- colour -----------------------------------------------------------------

struct Colour {
  TColor value;
  bool named;  // given by its name, not by its value
};

// A colour given by name (any case; the first row of that name) or as up to
// eight hexadecimal digits of the TColor value, "$" in front allowed. Anything
// else is bad usage.
Colour ParseColour(const std::string& text) {
  const std::u16string name = zyn::platform::LowerCase(Path16(text));
  for (int row = 1; row <= Zyn_zyncolors::AllZYNColorNames.High(); ++row)
    if (zyn::platform::LowerCase(Zyn_zyncolors::AllZYNColorNames[row]) == name)
      return {Zyn_zyncolors::AllZYNColors[row], true};
  const std::string_view digits = std::string_view(text).substr(text.starts_with('$') ? 1 : 0);
  const bool hex =
      !digits.empty() && digits.size() <= 8 &&
      std::all_of(digits.begin(), digits.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
      });
  if (!hex)
    throw CLI::ValidationError("COLOUR", "\"" + text +
                                             "\" is neither a colour name nor up to eight "
                                             "hexadecimal digits");
  return {Zyn_zyncolors::HexStrToColor(Path16(text)), false};
}

std::string Fixed(double x, int decimals) { return Utf8(Zyn_stringl::strff(x, 0, decimals)); }

struct ConvertOptions {
  std::string colour;
  std::vector<int> rgb;
  std::vector<double> hsi, cmy, cmyk;
};

TColor ConvertInput(const ConvertOptions& o) {
  const int given =
      !o.colour.empty() + !o.rgb.empty() + !o.hsi.empty() + !o.cmy.empty() + !o.cmyk.empty();
  if (given != 1)
    throw CLI::ValidationError("colour convert",
                               "give one colour: COLOUR, --rgb, --hsi, --cmy or --cmyk");
  if (!o.colour.empty()) return ParseColour(o.colour).value;
  if (!o.rgb.empty()) return Zyn_zyncolors::PackRGB(o.rgb[0], o.rgb[1], o.rgb[2]);
  int r = 0, g = 0, b = 0;
  if (!o.hsi.empty()) {
    Zyn_zyncolors::HSItoRGB(o.hsi[0], o.hsi[1], o.hsi[2], r, g, b);
    return Zyn_zyncolors::PackRGB(r, g, b);
  }
  double c = 0, m = 0, y = 0;
  if (!o.cmy.empty()) {
    c = o.cmy[0], m = o.cmy[1], y = o.cmy[2];
  } else {
    c = o.cmyk[0], m = o.cmyk[1], y = o.cmyk[2];
    Zyn_zyncolors::CMYKtoCMY(c, m, y, o.cmyk[3]);
  }
  std::uint8_t r8 = 0, g8 = 0, b8 = 0;
  Zyn_zyncolors::CMYtoRGB(c, m, y, r8, g8, b8);
  return Zyn_zyncolors::PackRGB(r8, g8, b8);
}

void Convert(TColor colour) {
  using namespace Zyn_zyncolors;
  const int r = RedOf(colour), g = GreenOf(colour), b = BlueOf(colour);
  double hue = 0, sat = 0, inten = 0;
  RGBtoHSI(r, g, b, hue, sat, inten);
  double c = 0, m = 0, y = 0, k = 0;
  RGBtoCMY(static_cast<std::uint8_t>(r), static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(b),
           c, m, y);
  const std::string cmy = Fixed(c, 4) + " " + Fixed(m, 4) + " " + Fixed(y, 4);
  CMYtoCMYK(c, m, y, k);
  WriteOut("hex:   " + Utf8(ColorToHexStr(colour)) +      //
           "\nname:  " + Utf8(ObtainColorName(colour)) +  //
           "\nrgb:   " + std::to_string(r) + " " + std::to_string(g) + " " + std::to_string(b) +
           "\nhsi:   " + Fixed(hue, 2) + " " + Fixed(sat, 4) + " " + Fixed(inten, 4) +  //
           "\ncmy:   " + cmy +                                                          //
           "\ncmyk:  " + Fixed(c, 4) + " " + Fixed(m, 4) + " " + Fixed(y, 4) + " " + Fixed(k, 4) +
           "\ngray:  " + std::to_string(ColorToGray(colour)) + " " +
           Utf8(ColorToHexStr(ColorToGrayColor(colour))) + "\n");
}

struct Palette {
  const char* name;
  std::span<const TColor> colours;
};

const std::array<Palette, 7> kPalettes = {{
    {"Rainbow", Zyn_zyncolors::ColorArray_Rainbow},
    {"Geo1", Zyn_zyncolors::ColorArray_Geo1},
    {"Geo2", Zyn_zyncolors::ColorArray_Geo2},
    {"Geo3", Zyn_zyncolors::ColorArray_Geo3},
    {"Circle", Zyn_zyncolors::ColorArray_Circle},
    {"MorgenStemning", Zyn_zyncolors::ColorArray_MorgenStemning},
    {"Contrast", Zyn_zyncolors::ColorArray_Contrast},
}};

struct ScaleOptions {
  std::string palette = "Rainbow";
  int size = 1000, levels = 0, height = 32;
  std::string png;
};

void Scale(const ScaleOptions& o) {
  // CLI11 has checked the name, in any case, against the list.
  const auto* palette = std::find_if(kPalettes.begin(), kPalettes.end(), [&](const Palette& p) {
    return zyn::platform::LowerCase(Path16(o.palette)) == zyn::platform::LowerCase(Path16(p.name));
  });
  if (palette == kPalettes.end()) throw CLI::ValidationError("--palette", o.palette);
  Zyn_zyncolors::TColorArray scale;
  scale.SetSize(o.size);
  scale.FillByInterpolation(o.levels, palette->colours);
  if (o.png.empty()) {
    // The colour block of TColorArray::StoreOnFile, with LF line ends, which
    // LoadFromFile reads back as well.
    std::string out = "1 " + std::to_string(scale.Size()) + "\n";
    for (int i = 1; i <= scale.Size(); ++i)
      out += Utf8(Zyn_zyncolors::ColorToHexStr(scale.ColorElem(i))) + "\n";
    WriteOut(out);
    return;
  }
  try {
    zyn::platform::TBitmap strip(scale.Size(), o.height);
    for (int y = 0; y < o.height; ++y) {
      std::span<TColor> row = strip.ScanLine(y);
      for (int x = 0; x < scale.Size(); ++x)
        row[static_cast<std::size_t>(x)] = scale.ColorElem(x + 1);
    }
    strip.SaveToFile(Path16(o.png));
  } catch (const std::exception& e) {
    throw Failure(o.png, e.what());
  }
}

}  // namespace

void AddDataCommands(CLI::App& app) {
  auto feat_file = std::make_shared<std::string>();
  CLI::App* feat =
      app.add_subcommand("feat", "Read a feature file (the block of a TFeatureMatrix)");
  feat->require_subcommand(1);
  CLI::App* show = feat->add_subcommand(
      "show", "Print the matrix as a table: feature names, their kinds, a row per object");
  show->add_option("FILE", *feat_file, "The feature file")->required();
  show->callback([feat_file] { ShowMatrix(*feat_file); });
  CLI::App* check =
      feat->add_subcommand("check", "Load the file and explain the result code (exit 1 unless 0)");
  check->add_option("FILE", *feat_file, "The feature file")->required();
  check->callback([feat_file] { CheckMatrix(*feat_file); });

  CLI::App* colour = app.add_subcommand("colour", "Colour names, models and scales");
  colour->alias("color");
  colour->require_subcommand(1);

  auto names = std::make_shared<std::vector<std::string>>();
  CLI::App* name = colour->add_subcommand(
      "name",
      "The name of each colour value (eight hex digits, blue first: 00FF0000 is Blue), or the "
      "value of each name");
  name->add_option("COLOUR", *names, "Names or hexadecimal TColor values")->required();
  name->callback([names] {
    for (const std::string& text : *names) {
      const Colour c = ParseColour(text);
      WriteOut(Utf8(c.named ? Zyn_zyncolors::ColorToHexStr(c.value)
                            : Zyn_zyncolors::ObtainColorName(c.value)) +
               "\n");
    }
  });

  auto conv = std::make_shared<ConvertOptions>();
  CLI::App* convert =
      colour->add_subcommand("convert", "Show a colour as hex, name, RGB, HSI, CMY, CMYK and gray");
  convert->add_option("COLOUR", conv->colour, "A colour name or hexadecimal TColor value");
  convert->add_option("--rgb", conv->rgb, "Red, green, blue, 0 to 255")
      ->expected(3)
      ->check(CLI::Range(0, 255));
  convert->add_option("--hsi", conv->hsi, "Hue in degrees, saturation and intensity 0 to 1")
      ->expected(3);
  convert->add_option("--cmy", conv->cmy, "Cyan, magenta, yellow, 0 to 1")->expected(3);
  convert->add_option("--cmyk", conv->cmyk, "Cyan, magenta, yellow, black, 0 to 1")->expected(4);
  convert->callback([conv] { Convert(ConvertInput(*conv)); });

  auto scale = std::make_shared<ScaleOptions>();
  CLI::App* sc = colour->add_subcommand(
      "scale",
      "A colour scale made from a palette: its colour block on standard output, or a PNG strip");
  std::vector<std::string> palette_names;
  for (const Palette& p : kPalettes) palette_names.emplace_back(p.name);
  sc->add_option("--palette", scale->palette, "The support colours")
      ->check(CLI::IsMember(palette_names, CLI::ignore_case))
      ->capture_default_str();
  sc->add_option("--size", scale->size, "Number of colours")
      ->check(CLI::Range(1, 1 << 24))
      ->capture_default_str();
  sc->add_option("--levels", scale->levels, "Steps of equal colour (0: a continuous scale)")
      ->check(CLI::Range(0, 1 << 24))
      ->capture_default_str();
  sc->add_option("--png", scale->png, "Write the scale as a PNG strip, a pixel column per colour");
  sc->add_option("--height", scale->height, "Height of the PNG strip in pixels")
      ->check(CLI::Range(1, 4096))
      ->capture_default_str();
  sc->callback([scale] { Scale(*scale); });
}

}  // namespace zyn_cli
