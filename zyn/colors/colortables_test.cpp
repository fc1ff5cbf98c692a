#include "zyn/colors/colortables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "testing/zyn_testing.h"

namespace Zyn_zyncolors {
namespace {

using zyn::testing::Utf8;

int RowOf(std::u16string_view name) {
  for (int n = AllZYNColorNames.Low(); n <= AllZYNColorNames.High(); ++n) {
    if (AllZYNColorNames[n] == name) return n;
  }
  return 0;
}

std::u16string Folded(std::u16string_view s) {
  std::u16string f(s);
  for (char16_t& c : f) c = (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c;
  return f;
}

TEST(NamedColorsTest, RowsCountFromOneInTheirOrder) {
  EXPECT_EQ(AllZYNColors.Low(), 1);
  EXPECT_EQ(AllZYNColors.High(), 466);
  EXPECT_EQ(AllZYNColorNames.High(), 466);
  struct Case {
    int row;
    std::u16string_view name;
    TColor value;
  };
  const Case cases[] = {
      {1, u"Black", 0x000000},         {2, u"Maroon", 0x000080},      {10, u"Red", 0x0000FF},
      {16, u"White", 0xFFFFFF},        {17, u"MoneyGreen", 0xC0DCC0}, {18, u"Cream", 0xF0FBFF},
      {19, u"MedGray", 0xA4A0A0},      {20, u"AliceBlue", 0xFFF8F0},  {48, u"Bronze", 0x778899},
      {466, u"YellowGreen", 0x32CD9A},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.row);
    EXPECT_EQ(AllZYNColorNames[c.row], c.name);
    EXPECT_EQ(AllZYNColors[c.row], c.value);
  }
  // From row 20 on, alphabetical (a colour before its numbered shades).
  for (int n = 21; n <= 466; ++n) {
    SCOPED_TRACE(Utf8(AllZYNColorNames[n]));
    EXPECT_LT(Folded(AllZYNColorNames[n - 1]), Folded(AllZYNColorNames[n]));
  }
  const std::set<std::u16string_view> names(AllZYNColorNames.begin(), AllZYNColorNames.end());
  EXPECT_EQ(names.size(), 466u);
  for (TColor c : AllZYNColors) EXPECT_EQ(c >> 24, 0u);
}

// Web colours as the CSS colour module defines them (#RRGGBB), an independent
// source for the rows of the same names.
TEST(NamedColorsTest, WebColoursAgreeWithCss) {
  struct Case {
    std::u16string_view name;
    TColor rgb;
  };
  const Case cases[] = {
      {u"AliceBlue", 0xF0F8FF},     {u"Crimson", 0xDC143C},        {u"DarkOrange", 0xFF8C00},
      {u"Gold", 0xFFD700},          {u"HotPink", 0xFF69B4},        {u"Indigo", 0x4B0082},
      {u"LawnGreen", 0x7CFC00},     {u"MediumPurple", 0x9370DB},   {u"Navy", 0x000080},
      {u"OliveDrab", 0x6B8E23},     {u"PapayaWhip", 0xFFEFD5},     {u"RebeccaPurple", 0x663399},
      {u"SteelBlue", 0x4682B4},     {u"Tomato", 0xFF6347},         {u"YellowGreen", 0x9ACD32},
      {u"DarkSlateGray", 0x2F4F4F}, {u"LightSlateGray", 0x778899}, {u"SlateGray", 0x708090},
      {u"Teal", 0x008080},          {u"Silver", 0xC0C0C0},         {u"CornflowerBlue", 0x6495ED},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.name));
    const int row = RowOf(c.name);
    ASSERT_GT(row, 0);
    EXPECT_EQ(AllZYNColors[row], ReverseRGBColor(c.rgb));
  }
}

TEST(NamedColorsTest, X11ColoursAreNamedRows) {
  EXPECT_EQ(X11Colors.size(), 145u);
  for (auto [at, name] :
       {std::pair{0, u"AliceBlue"}, {2, u"Aqua"}, {114, u"RebeccaPurple"}, {144, u"YellowGreen"}}) {
    EXPECT_EQ(X11Colors[at], AllZYNColors[RowOf(name)]) << at;
  }
  for (TColor c : X11Colors) {
    EXPECT_NE(std::find(AllZYNColors.begin(), AllZYNColors.end(), c), AllZYNColors.end()) << c;
  }
}

TEST(NamedColorsTest, PredefinedColoursAndPalettes) {
  EXPECT_EQ(PredefinedColors.size(), 47u);
  for (int n = 1; n <= 16; ++n) EXPECT_EQ(PredefinedColors[n - 1], AllZYNColors[n]) << n;
  EXPECT_EQ(PredefinedColors[17], 0x00F0CAA6u);
  EXPECT_EQ(PredefinedColors[29], 0x20000000u);
  EXPECT_EQ(PredefinedColors[40], 0x1FFFFFFFu);
  EXPECT_EQ(PredefinedColors[46], 0xFF000008u);
  EXPECT_EQ(ColorArray_Geo3[5], 0x4AA885u);
  EXPECT_EQ(ColorArray_Rainbow.back(), 0x000040u);
  EXPECT_EQ(ColorArray_Circle.back(), ColorArray_Circle.front());
  EXPECT_EQ(ColorArray_Contrast[10], 0xC5CD18u);
}

TEST(ObtainColorNameTest, LowerRowWinsElseHex) {
  struct Case {
    TColor color;
    std::u16string_view want;
  };
  const Case cases[] = {
      {0xFF0000, u"Blue"},       {0xFF00FF, u"Fuchsia"},    {0x0000FF, u"Red"},
      {0x123456, u"00123456"},   {0xFF000005, u"FF000005"}, {0x32CD9A, u"OliveDrab3"},
      {0x000000, u"Black"},      {0x808080, u"Gray"},       {0xA4A0A0, u"MedGray"},
      {0x01000000, u"01000000"}, {0x32CD32, u"LimeGreen"},  {0x578B2E, u"SeaGreen"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.color);
    EXPECT_EQ(ObtainColorName(c.color), c.want);
  }
  // Every row's name is found for its value unless an earlier row holds it.
  for (int n = 1; n <= 466; ++n) {
    const std::u16string name = ObtainColorName(AllZYNColors[n]);
    EXPECT_EQ(AllZYNColors[RowOf(name)], AllZYNColors[n]);
    EXPECT_LE(RowOf(name), n);
  }
}

}  // namespace
}  // namespace Zyn_zyncolors
