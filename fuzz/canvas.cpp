// Random canvas calls on a small bitmap, with any coordinates, sizes, pen
// widths and mark numbers: every pixel written must lie on the raster (the
// sanitizers see any write beside it) and the bitmap keeps its size. Inputs
// starting with the first byte of the PNG signature are read as a PNG file
// instead, which must load or raise EInvalidGraphic and nothing else.

#include "zyn/platform/canvas.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/fuzz_support.h"
#include "testing/lsan_fontconfig.h"
#include "testing/zyn_testing.h"
#include "zyn/base/canvas_helpers.h"
#include "zyn/base/marks.h"
#include "zyn/platform/text.h"

namespace {

using namespace zyn::platform;

// Reads the input as a stream of small values; zeros once it runs out.
class Reader {
 public:
  Reader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool More() const { return pos_ < size_; }
  std::uint8_t Byte() { return pos_ < size_ ? data_[pos_++] : 0; }
  int Int() {
    std::uint32_t v = 0;
    for (int i = 0; i < 4; ++i) v = v << 8 | Byte();
    int out;
    std::memcpy(&out, &v, sizeof out);
    return out;
  }
  // Mostly small numbers near the raster, sometimes any int.
  int Coord() {
    const std::uint8_t kind = Byte();
    if (kind < 200) return static_cast<int>(kind % 40) - 10;
    return Int();
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t pos_ = 0;
};

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 0 && data[0] == 0x89) {
    static const zyn::testing::TempDir scratch;
    zyn::testing::WriteFileBytes(scratch / "in.png",
                                 std::string(reinterpret_cast<const char*>(data), size));
    TBitmap b(2, 2);
    try {
      b.LoadFromFile(FromUTF8((scratch / "in.png").string()));
    } catch (const EInvalidGraphic&) {
      Check(b.Width() == 2 && b.Height() == 2);
    }
    return 0;
  }
  Reader in(data, size);
  const int w = in.Byte() % 24;
  const int h = in.Byte() % 24;
  TBitmap b(w, h);
  TCanvas& cv = b.Canvas();
  for (int steps = 0; in.More() && steps < 64; ++steps) {
    switch (in.Byte() % 12) {
      case 0:
        cv.Pen().SetWidth(in.Byte() < 240 ? in.Byte() % 6 : in.Int());
        cv.Pen().SetStyle(static_cast<TPenStyle>(in.Byte() % 9));
        cv.Pen().SetColor(static_cast<TColor>(in.Int()));
        break;
      case 1:
        cv.Brush().SetStyle(static_cast<TBrushStyle>(in.Byte() % 8));
        cv.Brush().SetColor(static_cast<TColor>(in.Int()));
        break;
      case 2:
        cv.MoveTo(in.Coord(), in.Coord());
        cv.LineTo(in.Coord(), in.Coord());
        break;
      case 3: {
        const int l = in.Coord(), t = in.Coord(), r = in.Coord(), bt = in.Coord();
        cv.Rectangle(l, t, r, bt);
        cv.Ellipse(l, t, r, bt);
        break;
      }
      case 4: {
        TPoint pts[6];
        const int n = in.Byte() % 7;
        for (int i = 0; i < n; ++i) pts[i] = {in.Coord(), in.Coord()};
        cv.Polygon(std::span<const TPoint>(pts, static_cast<std::size_t>(n)));
        break;
      }
      case 5:
        Zyn_zynbase::DrawMarkOnCanvas(cv, in.Byte(), in.Coord(), in.Coord());
        break;
      case 6: {
        const int x = in.Coord(), y = in.Coord();
        const std::u16string text(in.Byte() % 4, static_cast<char16_t>(in.Byte() | in.Byte() << 8));
        cv.TextOut(x, y, text);
        break;
      }
      case 7:
        cv.Font().SetSize(in.Byte() < 250 ? in.Byte() % 30 - 5 : in.Int() % 3000);
        break;
      case 8:
        Zyn_zynbase::DrawFrame(cv, static_cast<Zyn_zynbase::TFrameStyle>(in.Byte() % 6), in.Coord(),
                               in.Coord(), in.Coord(), in.Coord(), 1, 2, 3, 4, 5);
        break;
      case 9: {
        const auto mark = Zyn_zynbase::CreateMarkAsBitmap(in.Byte(), 0, 0xFFFFFF, in.Byte() - 8);
        cv.Draw(in.Coord(), in.Coord(), *mark);
        break;
      }
      case 10:
        cv.SetPixels(in.Coord(), in.Coord(), static_cast<TColor>(in.Int()));
        Check(cv.Pixels(in.Coord(), in.Coord()) != 0x01000000);
        break;
      default:
        cv.FillRect(in.Coord(), in.Coord(), in.Coord(), in.Coord());
        break;
    }
  }
  Check(b.Width() == w && b.Height() == h);
  for (int y = 0; y < h; ++y) {
    for (TColor c : b.ScanLine(y)) Check(c <= 0xFFFFFF);
  }
  return 0;
}
