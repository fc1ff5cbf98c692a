// zyn/platform/devices.h
//
// The screen and the printer of the host, as the drawing code sees them: the
// screen's font list and resolution, and a printer whose pages are bitmaps
// written to a PDF file or to PNG files.

#ifndef ZYN_PLATFORM_DEVICES_H_
#define ZYN_PLATFORM_DEVICES_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "zyn/platform/canvas.h"
#include "zyn/platform/object.h"
#include "zyn/platform/string_list.h"

namespace zyn::platform {

namespace backend {
class PdfWriter;
}

// A print job used out of order, or a page that couldn't be written.
class EPrinter : public Exception {
 public:
  using Exception::Exception;
};

class TScreen : public TObject {
 public:
  // The family names of the installed fonts, sorted, read from fontconfig at
  // the first call.
  const TStringList& Fonts();
  // The format of the face an installed family name selects, as fontconfig
  // names it: "TrueType", "CFF", "Type 1", ...; empty if there is none.
  std::u16string FontFormat(std::u16string_view family) const;
  // 96 unless the host sets another; values below 1 count as 1.
  int PixelsPerInch() const noexcept { return pixels_per_inch_; }
  void SetPixelsPerInch(int value) noexcept { pixels_per_inch_ = value < 1 ? 1 : value; }

 private:
  std::unique_ptr<TStringList> fonts_;
  int pixels_per_inch_ = kDefaultPixelsPerInch;
};

// The process's screen.
TScreen& Screen();

// Where the printer's pages go.
enum TPrintOutput : std::uint8_t { poPdf, poPng };

// A printer whose page is a bitmap at PixelsPerInch (300 by default), A4
// unless the host sets a size. EndDoc writes the pages: poPdf makes one PDF
// file, poPng one PNG per page, "out.png" becoming "out-1.png", "out-2.png".
// Outside a job the canvas has no pixels and draws nothing.
class TPrinter : public TObject {
 public:
  TPrinter();
  ~TPrinter() override;

  TCanvas& Canvas() noexcept { return page_.Canvas(); }

  int PixelsPerInch() const noexcept { return pixels_per_inch_; }
  // Sets the resolution and an A4 page at it. Raises EPrinter during a job.
  void SetPixelsPerInch(int value);
  int PageWidth() const noexcept { return page_width_; }
  int PageHeight() const noexcept { return page_height_; }
  // A page of width x height printer pixels. Raises EPrinter during a job.
  void SetPageSize(int width, int height);
  // Raises EPrinter during a job.
  void SetOutput(TPrintOutput kind, std::u16string_view file_name);
  TPrintOutput OutputKind() const noexcept { return output_kind_; }
  const std::u16string& OutputFile() const noexcept { return output_file_; }

  bool Printing() const noexcept { return printing_; }
  // The number of the page being drawn, from 1.
  int PageNumber() const noexcept { return page_number_; }

  // Starts a job on a white page. EPrinter "Printing in progress" if one
  // runs, "No output file chosen" without SetOutput; a PDF file that can't
  // be made raises EPrinter.
  void BeginDoc();
  // Writes the page and starts a white one. EPrinter "Printer is not
  // currently printing" outside a job.
  void NewPage();
  // Writes the last page and ends the job, also if writing fails.
  void EndDoc();
  // Ends the job without writing anything more.
  void Abort();

 private:
  void WritePage();
  void Finish();

  TBitmap page_;
  int pixels_per_inch_ = 300;
  int page_width_ = 0;
  int page_height_ = 0;
  TPrintOutput output_kind_ = poPdf;
  std::u16string output_file_;
  bool printing_ = false;
  int page_number_ = 0;
  std::unique_ptr<backend::PdfWriter> pdf_;
};

// The process's printer.
TPrinter& Printer();

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_DEVICES_H_
