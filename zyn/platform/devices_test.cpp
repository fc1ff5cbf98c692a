#include "zyn/platform/devices.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "testing/lsan_fontconfig.h"
#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

std::u16string U(const std::filesystem::path& p) { return FromUTF8(p.string()); }

TEST(ScreenTest, ListsTheInstalledFamiliesSorted) {
  const TStringList& fonts = Screen().Fonts();
  EXPECT_GE(fonts.IndexOf(u"DejaVu Sans"), 0);  // fonts-dejavu-core
  for (int i = 1; i < fonts.Count(); ++i) EXPECT_LT(fonts[i - 1], fonts[i]);
  EXPECT_EQ(Screen().FontFormat(u"DejaVu Sans"), u"TrueType");
  EXPECT_EQ(Screen().PixelsPerInch(), 96);
}

TEST(PrinterTest, JobsInOrderOnly) {
  TPrinter p;
  EXPECT_THROW(p.NewPage(), EPrinter);
  EXPECT_THROW(p.EndDoc(), EPrinter);
  EXPECT_THROW(p.BeginDoc(), EPrinter);  // no output chosen
  EXPECT_EQ(p.PageWidth(), 2480);        // A4 at 300 dpi
  EXPECT_EQ(p.PageHeight(), 3508);
  EXPECT_EQ(p.Canvas().Font().PixelsPerInch(), 300);
  EXPECT_EQ(p.Canvas().Font().Size(), 10);
  p.SetPixelsPerInch(600);
  EXPECT_EQ(p.PageWidth(), 4961);
  EXPECT_EQ(p.Canvas().Font().Size(), 10);
  zyn::testing::TempDir dir;
  p.SetOutput(poPdf, U(dir / "no" / "such" / "dir.pdf"));
  EXPECT_THROW(p.BeginDoc(), EPrinter);
  EXPECT_FALSE(p.Printing());
  p.SetPageSize(10, 10);
  p.SetOutput(poPng, U(dir / "p.png"));
  p.BeginDoc();
  EXPECT_THROW(p.BeginDoc(), EPrinter);
  EXPECT_THROW(p.SetPageSize(1, 1), EPrinter);
  p.Abort();
  EXPECT_FALSE(p.Printing());
  EXPECT_EQ(p.Canvas().Bitmap().Width(), 0);  // outside a job nothing is drawn
}

TEST(PrinterTest, PngPagesOnePerFile) {
  zyn::testing::TempDir dir;
  TPrinter p;
  p.SetPageSize(20, 10);
  p.SetOutput(poPng, U(dir / "out.png"));
  p.BeginDoc();
  EXPECT_EQ(p.PageNumber(), 1);
  p.Canvas().SetPixels(3, 4, 0x0000FF);
  p.NewPage();
  EXPECT_EQ(p.Canvas().Pixels(3, 4), clWhite);
  p.Canvas().SetPixels(5, 6, 0x00FF00);
  p.EndDoc();
  TBitmap page;
  page.LoadFromFile(U(dir / "out-1.png"));
  EXPECT_EQ(page.Width(), 20);
  EXPECT_EQ(page.Canvas().Pixels(3, 4), 0x0000FFu);
  page.LoadFromFile(U(dir / "out-2.png"));
  EXPECT_EQ(page.Canvas().Pixels(5, 6), 0x00FF00u);
  EXPECT_EQ(page.Canvas().Pixels(3, 4), clWhite);
  EXPECT_FALSE(std::filesystem::exists(dir / "out-3.png"));
}

TEST(PrinterTest, PdfHoldsEveryPageAtThePrintersSize) {
  zyn::testing::TempDir dir;
  TPrinter p;
  p.SetPageSize(600, 300);  // 2 x 1 inches at 300 dpi: 144 x 72 points
  p.SetOutput(poPdf, U(dir / "job.pdf"));
  p.BeginDoc();
  p.Canvas().TextOut(10, 10, u"page one");
  p.NewPage();
  p.NewPage();
  p.EndDoc();
  const std::string pdf = zyn::testing::ReadFileBytes(dir / "job.pdf");
  ASSERT_EQ(pdf.substr(0, 5), "%PDF-");
  const std::regex page("/Type\\s*/Page[^s]");
  EXPECT_EQ(
      std::distance(std::sregex_iterator(pdf.begin(), pdf.end(), page), std::sregex_iterator()), 3);
  EXPECT_NE(pdf.find("/MediaBox [ 0 0 144 72 ]"), std::string::npos);
}

}  // namespace
}  // namespace zyn::platform
