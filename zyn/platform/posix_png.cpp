// PNG files through libpng's simplified API, which reports errors by result
// instead of by longjmp.

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "zyn/platform/canvas.h"
#include "zyn/platform/file_handle.h"
#include "zyn/platform/graphics_backend.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace backend {
namespace {

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace

bool WritePng(std::u16string_view file_name, int width, int height, std::span<const TColor> pixels,
              std::string& error) {
  File f(std::fopen(file_detail::SystemName(file_name).c_str(), "wb"));
  if (!f) {
    error = std::strerror(errno);
    return false;
  }
  std::vector<png_byte> rgb(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
  for (std::size_t i = 0; i < pixels.size() && i * 3 < rgb.size(); ++i) {
    rgb[i * 3] = static_cast<png_byte>(pixels[i]);
    rgb[i * 3 + 1] = static_cast<png_byte>(pixels[i] >> 8);
    rgb[i * 3 + 2] = static_cast<png_byte>(pixels[i] >> 16);
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_RGB;
  const bool ok = png_image_write_to_stdio(&image, f.get(), 0, rgb.data(), 0, nullptr) != 0;
  if (!ok) error = image.message;
  png_image_free(&image);
  if (ok && std::fflush(f.get()) != 0) {
    error = std::strerror(errno);
    return false;
  }
  return ok;
}

int ReadPng(std::u16string_view file_name, std::int64_t max_pixels, int& width, int& height,
            std::vector<TColor>& pixels) {
  File f(std::fopen(file_detail::SystemName(file_name).c_str(), "rb"));
  if (!f) return 1;
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_stdio(&image, f.get()) == 0) return 2;
  const std::int64_t count = std::int64_t{image.width} * image.height;
  if (image.width > 0x7FFFFFFF || image.height > 0x7FFFFFFF || count > max_pixels) {
    png_image_free(&image);
    return 2;
  }
  image.format = PNG_FORMAT_RGB;
  std::vector<png_byte> rgb(static_cast<std::size_t>(count) * 3);
  const png_color white{255, 255, 255};
  if (png_image_finish_read(&image, &white, rgb.data(), 0, nullptr) == 0) {
    png_image_free(&image);
    return 2;
  }
  width = static_cast<int>(image.width);
  height = static_cast<int>(image.height);
  pixels.assign(static_cast<std::size_t>(count), 0);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    pixels[i] = TColor{rgb[i * 3]} | TColor{rgb[i * 3 + 1]} << 8 | TColor{rgb[i * 3 + 2]} << 16;
  }
  return 0;
}

}  // namespace backend

void TBitmap::SaveToFile(std::u16string_view file_name) const {
  std::string error;
  if (!backend::WritePng(file_name, width_, height_, pixels_, error)) {
    throw EFCreateError(u"Cannot create file \"" + std::u16string(file_name) + u"\". " +
                        FromUTF8(error));
  }
}

void TBitmap::LoadFromFile(std::u16string_view file_name) {
  int w = 0;
  int h = 0;
  std::vector<TColor> pixels;
  switch (backend::ReadPng(file_name, kMaxPixels, w, h, pixels)) {
    case 1:
      throw EFOpenError(u"Cannot open file \"" + std::u16string(file_name) + u"\". " +
                        FromUTF8(std::strerror(errno)));
    case 2:
      throw EInvalidGraphic(u"Not a PNG image: \"" + std::u16string(file_name) + u"\"");
    default:
      break;
  }
  pixels_ = std::move(pixels);
  width_ = w;
  height_ = h;
}

}  // namespace zyn::platform
