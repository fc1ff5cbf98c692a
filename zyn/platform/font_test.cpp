#include "zyn/platform/font.h"

#include <gtest/gtest.h>

namespace zyn::platform {
namespace {

TEST(FontTest, DefaultsHeightAndFiringOnlyOnChange) {
  TFont f;
  EXPECT_EQ(f.Name(), kDefaultFontName);
  EXPECT_EQ(f.Size(), 10);
  EXPECT_EQ(f.Height(), -13);  // 10 * 96 / 72 = 13.33
  int fired = 0;
  f.SetOnChange([&](TObject*) { ++fired; });
  f.SetSize(10);
  f.SetName(kDefaultFontName);
  EXPECT_EQ(fired, 0);
  f.SetPixelsPerInch(300);
  f.SetSize(9);
  EXPECT_EQ(f.Height(), -38);  // 37.5 rounds away from zero
  f.SetHeight(-38);
  EXPECT_EQ(f.Size(), 9);
  f.SetStyle({fsBold, fsStrikeOut});
  EXPECT_EQ(f.Style().Bits(), 0b1001);
  EXPECT_EQ(fired, 3);
  // A new resolution keeps the pixels and changes the points.
  f.SetPixelsPerInch(96);
  EXPECT_EQ(f.Height(), -38);
  EXPECT_EQ(f.Size(), 29);  // 38 * 72 / 96 = 28.5
}

TEST(FontTest, AssignCopiesAllButHandlerAndFiresNothing) {
  TFont a, b;
  a.SetName(u"Liberation Serif");
  a.SetSize(14);
  a.SetColor(0xFF);
  a.SetStyle({fsItalic});
  int fired = 0;
  b.SetOnChange([&](TObject*) { ++fired; });
  b.Assign(a);
  EXPECT_EQ(fired, 0);
  EXPECT_EQ(b.Name(), u"Liberation Serif");
  EXPECT_EQ(b.Size(), 14);
  EXPECT_EQ(b.Color(), 0xFFu);
  EXPECT_TRUE(b.Style().Contains(fsItalic));
  EXPECT_FALSE(a.OnChange());
}

}  // namespace
}  // namespace zyn::platform
