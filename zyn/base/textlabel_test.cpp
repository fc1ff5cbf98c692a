#include "zyn/base/textlabel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <sstream>
#include <string>

#include "testing/zyn_testing.h"
#include "zyn/platform/numtext.h"

namespace Zyn_zynbase {
namespace {

using zyn::platform::Textfile;
using zyn::testing::ReadFileBytes;
using zyn::testing::TempDir;
using zyn::testing::Utf8;
using zyn::testing::WriteFileBytes;

std::u16string U16(const std::filesystem::path& p) { return zyn::platform::FromUTF8(p.string()); }

// Every field as one line to compare whole: the position, the caption, then
// layer, shadow offsets, colours (border, background, shadow), the
// alignments, attach mode, style, transparent and visible, and the font.
std::string Fields(const TCustomTextLabel& l) {
  const zyn::platform::TFont& f = l.Font();
  std::ostringstream s;
  s << l.PosX() << ' ' << l.PosY() << '|' << Utf8(l.Caption()) << '|' << l.Layer() << ' '
    << l.ShadowDx() << ' ' << l.ShadowDy() << std::hex << ' ' << l.ColorBrd() << ' ' << l.ColorBkg()
    << ' ' << l.ColorShadow() << std::dec << ' ' << +l.Alignment() << ' ' << +l.VertAlignment()
    << ' ' << +l.ScreenPos() << ' ' << +l.Mode() << ' ' << l.Transpar() << l.Visible() << '|'
    << Utf8(f.Name()) << ' ' << f.Size() << ' ' << std::hex << f.Color() << ' '
    << +f.Style().Bits();
  return s.str();
}

// Writes labels with the given identifiers into one file.
void WriteLabels(const std::filesystem::path& path,
                 std::initializer_list<std::pair<TCustomTextLabel*, std::u16string>> labels,
                 int indent = 0) {
  Textfile tf;
  tf.Assign(U16(path));
  tf.Rewrite();
  bool first = true;
  for (auto& [label, id] : labels) {
    label->WriteToOpenXMLFile(tf, first, id, indent);
    first = false;
  }
  tf.Close();
}

TEST(TextLabelTest, DefaultsAndSetterRules) {
  TCustomTextLabel l;
  // taCenter, vaBottom, tlamNone, tlsimple, opaque and visible.
  EXPECT_EQ(Fields(l), "100 10||1 0 0 0 c0c0c0 808080 2 2 0 1 01|DejaVu Sans 10 0 0");

  int fired = 0;
  l.SetOnChange([&](zyn::platform::TObject*) { ++fired; });
  l.SetTxtLblLayer(17);
  l.SetTxtLblLayer(0);
  EXPECT_EQ(fired, 0);
  l.SetTxtLblLayer(16);
  l.SetTxtLblPosX(100.0);  // same value still fires
  l.SetTxtLblCaption(u"a\tb\nc\x1f\r");
  EXPECT_EQ(l.Caption(), u"a b\nc  ");
  zyn::platform::TFont f;
  f.SetName(u"Liberation Mono");
  l.SetTxtLblFont(f);
  EXPECT_EQ(fired, 4);
}

TEST(TextLabelTest, BlockIsWrittenByteForByte) {
  TempDir dir;
  TCustomTextLabel l;
  l.SetTxtLblPosX(12345.678);
  l.SetTxtLblPosY(-0.5);
  l.SetTxtLblCaption(u"Peak\nÄrger");
  l.SetTxtLblColorBrd(0xFF0000FF);  // top byte dropped
  l.SetTxtLblShadowDx(-2);
  l.SetTxtLblTranspar(true);
  l.SetTxtLblAlignment(zyn::platform::taLeftJustify);
  l.SetTxtLblScreenPos(tlamBoth);
  zyn::platform::TFont f;
  f.SetStyle({zyn::platform::fsStrikeOut, zyn::platform::fsBold});
  f.SetColor(0xABCDEF);
  l.SetTxtLblFont(f);
  l.SetTxtLblMode(tlBox);
  WriteLabels(dir / "a.xml", {{&l, u"L1"}}, 0);
  EXPECT_EQ(
      ReadFileBytes(dir / "a.xml"),
      " <?xml version=\"1.0\"?>\r\n"
      "\r\n"
      " <!-- TCustomTextLabel / Zynforge -->\r\n"
      " <custtextlbl sig=\"Zynforge\" vers=\"1.0\" id=\"L1\">\r\n"
      "   <posxy x= 1.235E+0004 y=-5.000E-0001 />\r\n"
      "   <caption>Peak\n\xC3\x84rger</caption>\r\n"
      "   <colors brd=$0000FF bg=$C0C0C0 shdw=$808080 />\r\n"
      "   <shadowofs dx=-2 dy=0 />\r\n"
      "   <layer val=1 />\r\n"
      "   <transparent val=1 />\r\n"
      "   <visible val=1 />\r\n"
      "   <alignment horiz=taLeftJustify vert=vaBottom />\r\n"
      "   <attachmode val=tlamBoth />\r\n"
      "   <font name=\"DejaVu Sans\" size=10 color=$ABCDEF style=\"fsBold fsStrikeOut\" />\r\n"
      "   <style val=tlBox />\r\n"
      " </custtextlbl>\r\n");
  // The indentation is clamped to 255 and the header line is optional.
  WriteLabels(dir / "b.xml", {{&l, u""}}, 1000);
  const std::string b = ReadFileBytes(dir / "b.xml");
  EXPECT_EQ(b.find(std::string(255, ' ') + "<?xml"), 0u);
  EXPECT_NE(b.find("\r\n\r\n" + std::string(255, ' ') + "<!--"), std::string::npos);
  EXPECT_EQ(b.find(std::string(256, ' ') + "<!--"), std::string::npos);
}

// Block texts, read with an identifier, against the result and the fields.
TEST(TextLabelTest, ReadsBlocksByTheirRules) {
  struct Row {
    const char* name;
    std::string file;
    std::u16string id;
    bool result;
    std::string fields;  // as Fields gives them afterwards; any change fires once
  };
  const std::string start = "<custtextlbl sig=\"ZynForge\" id=\" Label1 \">\n";
  const std::string defaults = Fields(TCustomTextLabel());
  const Row rows[] = {
      {"layer without range check, colors tag empties colours",
       start + "<layer val=99 /><colors /></custtextlbl>", u"LABEL1", true,
       "100 10||99 0 0 0 0 0 2 2 0 1 01|DejaVu Sans 10 0 0"},
      {"absent tag keeps fields; exact alignment names",
       start + "<alignment horiz=TALEFTJUSTIFY vert=\"vaTop\" /></custtextlbl>", u"label1", true,
       "100 10||1 0 0 0 c0c0c0 808080 2 0 0 1 01|DejaVu Sans 10 0 0"},
      {"caption keeps a tab and ends at '>', whose rest eats the next tag",
       start + "<caption>a\tb>c</caption>\n<layer val=3 />\n<visible val=0 /></custtextlbl>",
       u"label1", true, "100 10|a\tb|1 0 0 0 c0c0c0 808080 2 2 0 1 00|DejaVu Sans 10 0 0"},
      {"position with comma and exponent; transparent only for 1",
       start + "<posxy x=\"1,5e2\" y=-3 /><transparent val=2 /><visible val=0 /></custtextlbl>",
       u"label1", true, "150 -3||1 0 0 0 c0c0c0 808080 2 2 0 1 00|DejaVu Sans 10 0 0"},
      {"font, attach mode and style are restored",
       start + "<font name=\"Mono X\" size=7 color=$0000FF style=\"fsItalic bogus\" />"
               "<attachmode val=tlamYOnly /><style val=tlShadow /></custtextlbl>",
       u"label1", true, "100 10||1 0 0 0 c0c0c0 808080 2 2 2 4 01|Mono X 7 ff 2"},
      {"other identifier", start + "<layer val=5 /></custtextlbl>", u"label2", false, defaults},
      {"no id attribute never matches a non-empty identifier",
       "<custtextlbl sig=zynforge><layer val=5 /></custtextlbl>", u"x", false, defaults},
      {"signature missing", "<custtextlbl id=\"label1\"><layer val=5 /></custtextlbl>", u"label1",
       false, defaults},
      {"empty identifier takes the first block", start + "<layer val=5 /></custtextlbl>", u"", true,
       "100 10||5 0 0 0 c0c0c0 808080 2 2 0 1 01|DejaVu Sans 10 0 0"},
      {"truncated block keeps what was read", start + "<layer val=5 /><caption>ab", u"label1",
       false, "100 10|a|5 0 0 0 c0c0c0 808080 2 2 0 1 01|DejaVu Sans 10 0 0"},
      {"unterminated tag at the end", start + "<layer val=5 /><colors brd=$", u"label1", false,
       "100 10||5 0 0 0 0 0 2 2 0 1 01|DejaVu Sans 10 0 0"},
  };
  TempDir dir;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    WriteFileBytes(dir / "l.xml", row.file);
    TCustomTextLabel l;
    int fired = 0;
    l.SetOnChange([&](zyn::platform::TObject*) { ++fired; });
    Textfile tf;
    tf.Assign(U16(dir / "l.xml"));
    tf.Reset();
    EXPECT_EQ(l.ReadFromOpenXMLFile(tf, row.id), row.result);
    EXPECT_EQ(fired, row.fields == defaults ? 0 : 1);
    EXPECT_EQ(Fields(l), row.fields);
  }
}

TEST(TextLabelTest, ThreeLabelsInOneFileByIdentifierAndInOrder) {
  TempDir dir;
  TCustomTextLabel a, b, c;
  a.SetTxtLblCaption(u"first");
  b.SetTxtLblCaption(u"second");
  c.SetTxtLblCaption(u"third");
  WriteLabels(dir / "three.xml", {{&a, u"A"}, {&b, u"B"}, {&c, u"C"}}, 2);
  Textfile tf;
  tf.Assign(U16(dir / "three.xml"));
  for (const auto& [id, caption] :
       {std::pair{u"c", u"third"}, {u"A", u"first"}, {u"b", u"second"}}) {
    tf.Reset();
    TCustomTextLabel l;
    ASSERT_TRUE(l.ReadFromOpenXMLFile(tf, id)) << Utf8(id);
    EXPECT_EQ(l.Caption(), caption);
  }
  // Without a rewind each call goes on where the last one stopped.
  tf.Reset();
  TCustomTextLabel l;
  for (std::u16string_view caption : {u"first", u"second", u"third"}) {
    ASSERT_TRUE(l.ReadFromOpenXMLFile(tf, u""));
    EXPECT_EQ(l.Caption(), caption);
  }
  EXPECT_FALSE(l.ReadFromOpenXMLFile(tf, u""));
  tf.Close();
}

TEST(TextLabelTest, RandomLabelsRoundTrip) {
  std::mt19937 rng(7);
  auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
  TempDir dir;
  for (int round = 0; round < 200; ++round) {
    TCustomTextLabel w;
    // The block carries any caption without '>' or "</", and no character
    // below 32 but the line feed, which the setter keeps.
    std::u16string caption;
    for (int i = pick(40); i > 0; --i) {
      char16_t ch = static_cast<char16_t>(pick(3) == 0 ? 32 + pick(0xD700) : 32 + pick(95));
      if (ch == u'>' || ch == u'/') ch = u'"';
      caption += pick(10) == 0 ? u'\n' : ch;
    }
    w.SetTxtLblCaption(caption);
    w.SetTxtLblPosX(std::ldexp(static_cast<double>(pick(2000) - 1000), pick(40) - 20));
    w.SetTxtLblPosY(pick(10000) - 5000);
    w.SetTxtLblLayer(1 + pick(16));
    w.SetTxtLblShadowDx(pick(100) - 50);
    w.SetTxtLblColorBkg(static_cast<TColor>(rng()) & 0xFFFFFF);
    w.SetTxtLblAlignment(static_cast<zyn::platform::TAlignment>(pick(3)));
    w.SetTxtLblVertAlignment(static_cast<TVerticalAlignment>(pick(3)));
    w.SetTxtLblScreenPos(static_cast<TTxtLblAttachMode>(pick(4)));
    w.SetTxtLblMode(static_cast<TTxtLblMode>(pick(5)));
    w.SetTxtLblTranspar(pick(2) == 1);
    w.SetTxtLblVisible(pick(2) == 1);
    zyn::platform::TFont f;
    f.SetName(pick(2) ? u"DejaVu Serif" : u"Noto Sans Ünicode");
    f.SetSize(1 + pick(72));
    f.SetStyle(zyn::platform::TFontStyles{});
    if (pick(2)) f.SetStyle({zyn::platform::fsUnderline, zyn::platform::fsItalic});
    w.SetTxtLblFont(f);
    WriteLabels(dir / "r.xml", {{&w, u"r"}}, pick(8));

    TCustomTextLabel r;
    Textfile tf;
    tf.Assign(U16(dir / "r.xml"));
    tf.Reset();
    ASSERT_TRUE(r.ReadFromOpenXMLFile(tf, u"R"));
    SCOPED_TRACE(Utf8(caption));
    // Positions keep four significant digits; everything else comes back whole.
    EXPECT_NEAR(r.PosX(), w.PosX(), std::abs(w.PosX()) * 5e-4);
    EXPECT_EQ(r.PosY(), std::stod(Utf8(zyn::platform::Str(w.PosY(), 12, -2))));
    r.SetTxtLblPosX(w.PosX());
    r.SetTxtLblPosY(w.PosY());
    EXPECT_EQ(Fields(r), Fields(w));
  }
}

TEST(TextLabelTest, AssignCopiesEverythingWithoutFiring) {
  TCustomTextLabel a, b;
  int fired = 0;
  a.SetOnChange([&](zyn::platform::TObject*) { ++fired; });
  a.SetTxtLblCaption(u"x");
  zyn::platform::TFont f;
  f.SetSize(33);
  a.SetTxtLblFont(f);
  fired = 0;
  b.Assign(a);
  EXPECT_EQ(fired, 0);
  EXPECT_EQ(Fields(b), Fields(a));
  b.SetTxtLblVisible(false);
  EXPECT_EQ(fired, 1);
}

}  // namespace
}  // namespace Zyn_zynbase
