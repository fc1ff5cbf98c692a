// Reads arbitrary bytes as a colour block, into a fixed array and with the
// size taken from the block. Whatever the bytes, the reader answers without
// throwing, the array keeps at least one colour, and a block it accepted
// with AdjustSize survives a store and a second load colour for colour (for
// blocks of a size that keeps the runs quick).
//
// The allocation ceiling stands in for a machine's memory: a head line that
// claims two billion colours must be refused by Resize, not allocated.

#include "zyn/colors/colorarray.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "fuzz/fuzz_support.h"
#include "zyn/platform/memory.h"
#include "zyn/platform/text.h"

namespace {

using Zyn_zyncolors::TColorArray;

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const zyn::fuzz::ScratchFiles files{"colorarray"};
  zyn::platform::SetAllocationCeiling(std::uint64_t{1} << 20);
  {
    std::ofstream out(files.in, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  const std::u16string in = zyn::platform::FromUTF8(files.in);
  const std::u16string out = zyn::platform::FromUTF8(files.out);

  TColorArray fixed;
  int events = 0;
  fixed.SetOnChange([&](zyn::platform::TObject*) { ++events; });
  const bool read = fixed.LoadFromFile(in, false);
  Check(fixed.Size() == 1000);
  if (read) Check(events >= 1);

  TColorArray adjusted;
  adjusted.SetSize(7);
  if (adjusted.LoadFromFile(in, true) && adjusted.Size() <= 4096) {
    Check(adjusted.StoreOnFile(1, adjusted.Size(), out));
    TColorArray copy;
    Check(copy.LoadFromFile(out, true));
    Check(copy.IsEqual(&adjusted));
  }
  Check(adjusted.Size() >= 1);
  return 0;
}
