#include "zyn/platform/devices.h"

#include <cmath>

#include "zyn/platform/graphics_backend.h"

namespace zyn::platform {

namespace {

constexpr double kA4WidthInches = 210.0 / 25.4;
constexpr double kA4HeightInches = 297.0 / 25.4;

int A4Pixels(double inches, int pixels_per_inch) {
  return static_cast<int>(std::lround(inches * pixels_per_inch));
}

// "out.png" and page 2 give "out-2.png"; a name without extension gets the
// number at its end.
std::u16string PageFileName(const std::u16string& name, int page) {
  std::u16string number = u"-";
  for (char c : std::to_string(page)) number += static_cast<char16_t>(c);
  const std::size_t slash = name.find_last_of(u'/');
  const std::size_t dot = name.find_last_of(u'.');
  if (dot == std::u16string::npos || (slash != std::u16string::npos && dot < slash) ||
      dot == (slash == std::u16string::npos ? 0 : slash + 1)) {
    return name + number;
  }
  return name.substr(0, dot) + number + name.substr(dot);
}

}  // namespace

const TStringList& TScreen::Fonts() {
  if (!fonts_) {
    auto list = std::make_unique<TStringList>();
    for (const std::u16string& name : backend::InstalledFontFamilies()) list->Add(name);
    fonts_ = std::move(list);
  }
  return *fonts_;
}

std::u16string TScreen::FontFormat(std::u16string_view family) const {
  return backend::FontFormat(family);
}

TScreen& Screen() {
  static TScreen screen;
  return screen;
}

TPrinter::TPrinter()
    : page_width_(A4Pixels(kA4WidthInches, 300)), page_height_(A4Pixels(kA4HeightInches, 300)) {
  Canvas().Font().SetPixelsPerInch(pixels_per_inch_);
  Canvas().Font().SetSize(kDefaultFontSize);
}

TPrinter::~TPrinter() = default;

void TPrinter::SetPixelsPerInch(int value) {
  if (printing_) throw EPrinter(u"Printing in progress");
  pixels_per_inch_ = value < 1 ? 1 : value;
  page_width_ = A4Pixels(kA4WidthInches, pixels_per_inch_);
  page_height_ = A4Pixels(kA4HeightInches, pixels_per_inch_);
  const int size = Canvas().Font().Size();
  Canvas().Font().SetPixelsPerInch(pixels_per_inch_);
  Canvas().Font().SetSize(size);
}

void TPrinter::SetPageSize(int width, int height) {
  if (printing_) throw EPrinter(u"Printing in progress");
  page_width_ = width < 0 ? 0 : width;
  page_height_ = height < 0 ? 0 : height;
}

void TPrinter::SetOutput(TPrintOutput kind, std::u16string_view file_name) {
  if (printing_) throw EPrinter(u"Printing in progress");
  output_kind_ = kind;
  output_file_ = file_name;
}

void TPrinter::BeginDoc() {
  if (printing_) throw EPrinter(u"Printing in progress");
  if (output_file_.empty()) throw EPrinter(u"No output file chosen");
  if (output_kind_ == poPdf) {
    pdf_ = std::make_unique<backend::PdfWriter>(output_file_, page_width_, page_height_,
                                                pixels_per_inch_);
  }
  try {
    page_.SetSize(page_width_, page_height_);
  } catch (...) {
    pdf_.reset();
    throw;
  }
  page_.Canvas().Brush().SetColor(clWhite);
  page_.Canvas().Brush().SetStyle(bsSolid);
  page_.Canvas().FillRect(0, 0, page_width_, page_height_);
  page_.Canvas().MoveTo(0, 0);
  printing_ = true;
  page_number_ = 1;
}

void TPrinter::WritePage() {
  if (output_kind_ == poPdf) {
    pdf_->AddPage(page_);
  } else {
    page_.SaveToFile(PageFileName(output_file_, page_number_));
  }
}

void TPrinter::NewPage() {
  if (!printing_) throw EPrinter(u"Printer is not currently printing");
  WritePage();
  TCanvas& c = page_.Canvas();
  const TColor color = c.Brush().Color();
  const TBrushStyle style = c.Brush().Style();
  c.Brush().SetColor(clWhite);
  c.Brush().SetStyle(bsSolid);
  c.FillRect(0, 0, page_width_, page_height_);
  c.Brush().SetColor(color);
  c.Brush().SetStyle(style);
  c.MoveTo(0, 0);
  ++page_number_;
}

void TPrinter::Finish() {
  printing_ = false;
  page_number_ = 0;
  page_.SetSize(0, 0);
}

void TPrinter::EndDoc() {
  if (!printing_) throw EPrinter(u"Printer is not currently printing");
  try {
    WritePage();
    if (pdf_) pdf_->Finish();
  } catch (...) {
    pdf_.reset();
    Finish();
    throw;
  }
  pdf_.reset();
  Finish();
}

void TPrinter::Abort() {
  pdf_.reset();
  Finish();
}

TPrinter& Printer() {
  static TPrinter printer;
  return printer;
}

}  // namespace zyn::platform
