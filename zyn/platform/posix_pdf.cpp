// PDF pages through cairo: each printer page is one image, one bitmap pixel
// per printer dot.

#include <cairo-pdf.h>
#include <cairo.h>

#include <algorithm>

#include "zyn/platform/canvas.h"
#include "zyn/platform/devices.h"
#include "zyn/platform/file_handle.h"
#include "zyn/platform/graphics_backend.h"
#include "zyn/platform/text.h"

namespace zyn::platform::backend {

namespace {
cairo_surface_t* Surface(void* p) { return static_cast<cairo_surface_t*>(p); }
}  // namespace

PdfWriter::PdfWriter(std::u16string_view file_name, int width, int height, int pixels_per_inch)
    : file_name_(file_name), scale_(72.0 / std::max(pixels_per_inch, 1)) {
  cairo_surface_t* s = cairo_pdf_surface_create(file_detail::SystemName(file_name).c_str(),
                                                width * scale_, height * scale_);
  if (cairo_surface_status(s) != CAIRO_STATUS_SUCCESS) {
    const std::u16string reason = FromUTF8(cairo_status_to_string(cairo_surface_status(s)));
    cairo_surface_destroy(s);
    throw EPrinter(u"Cannot create file \"" + file_name_ + u"\". " + reason);
  }
  surface_ = s;
}

PdfWriter::~PdfWriter() {
  if (surface_ != nullptr) cairo_surface_destroy(Surface(surface_));
}

void PdfWriter::AddPage(const TBitmap& page) {
  const int w = page.Width();
  const int h = page.Height();
  cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, h);
  if (cairo_surface_status(image) == CAIRO_STATUS_SUCCESS) {
    cairo_surface_flush(image);
    unsigned char* data = cairo_image_surface_get_data(image);
    const int stride = cairo_image_surface_get_stride(image);
    for (int y = 0; y < h; ++y) {
      auto* row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
      const auto src = page.ScanLine(y);
      for (int x = 0; x < w; ++x) {
        const TColor c = src[static_cast<std::size_t>(x)];
        row[x] = (c & 0xFF) << 16 | (c & 0xFF00) | ((c >> 16) & 0xFF);
      }
    }
    cairo_surface_mark_dirty(image);
    cairo_t* cr = cairo_create(Surface(surface_));
    cairo_scale(cr, scale_, scale_);
    cairo_set_source_surface(cr, image, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
    cairo_paint(cr);
    cairo_destroy(cr);
  }
  cairo_surface_destroy(image);
  cairo_surface_show_page(Surface(surface_));
}

void PdfWriter::Finish() {
  cairo_surface_t* s = Surface(surface_);
  cairo_surface_finish(s);
  const cairo_status_t status = cairo_surface_status(s);
  cairo_surface_destroy(s);
  surface_ = nullptr;
  if (status != CAIRO_STATUS_SUCCESS) {
    throw EPrinter(u"Cannot write file \"" + file_name_ + u"\". " +
                   FromUTF8(cairo_status_to_string(status)));
  }
}

}  // namespace zyn::platform::backend
