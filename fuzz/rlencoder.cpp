// Feeds arbitrary bytes to TRLEncoder twice: as coded input to the decoder,
// whose output must match a plain reading of the code, and as data through
// encode-then-decode, which must give the data back. The first byte picks the
// block length and how the data is cut into Encode calls.

#include "zyn/dstruct/rlencoder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "fuzz/fuzz_support.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Zyn_dstruct::TRLEncoder;

using zyn::fuzz::Check;

// The code read directly: literals, and count copies for each full triple.
Bytes ReferenceDecode(std::span<const std::uint8_t> coded) {
  Bytes out;
  for (std::size_t i = 0; i < coded.size(); ++i) {
    if (coded[i] != 0xA5) {
      out.push_back(coded[i]);
    } else if (i + 2 < coded.size()) {
      out.insert(out.end(), coded[i + 1], coded[i + 2]);
      i += 2;
    } else {
      break;
    }
  }
  return out;
}

// Finish until it delivers less than a block; returns the number of calls.
int FinishInto(TRLEncoder& coder, Bytes& out) {
  Bytes block(static_cast<std::size_t>(coder.BufLeng()));
  int calls = 0, n = 0;
  do {
    n = coder.Finish(block);
    Check(n >= 0 && n <= coder.BufLeng());
    ++calls;
    out.insert(out.end(), block.begin(), block.begin() + n);
  } while (n == coder.BufLeng());
  return calls;
}

// The documented calling order: Encode `chunk` bytes at a time or Decode each
// byte, GetResult whenever a block is ready, then Finish. Decoding drops the
// three bytes each Finish adds behind the data.
Bytes Code(TRLEncoder& coder, bool encode, std::span<const std::uint8_t> in, std::size_t chunk) {
  coder.Reset();
  Bytes out;
  Bytes block(static_cast<std::size_t>(coder.BufLeng()));
  for (std::size_t at = 0; at < in.size(); at += encode ? chunk : 1) {
    const std::size_t n = std::min(chunk, in.size() - at);
    if (encode ? coder.Encode(in.subspan(at), static_cast<int>(n)) : coder.Decode(in[at])) {
      coder.GetResult(block);
      out.insert(out.end(), block.begin(), block.end());
    }
  }
  const auto calls = static_cast<std::size_t>(FinishInto(coder, out));
  if (!encode) {
    Check(out.size() >= 3 * calls);
    out.resize(out.size() - 3 * calls);
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t shape = data[0];
  const std::span<const std::uint8_t> all(data + 1, size - 1);

  TRLEncoder coder;
  // Block lengths from 4 to 259. Those below 85 let a decoded run overfill
  // the buffer, which then grows; delivering from an overfilled buffer takes
  // time in the square of what is held, so those get short inputs only.
  const int buf_leng = 4 + (shape & 0x3F) * 4 + (shape >> 6);
  coder.SetBufLeng(buf_leng);
  const std::span<const std::uint8_t> input =
      buf_leng < 85 ? all.first(std::min<std::size_t>(all.size(), 32)) : all;
  const std::size_t chunk = 1 + static_cast<std::size_t>(shape % 13) * 37;

  Check(Code(coder, false, input, 1) == ReferenceDecode(input));

  const Bytes coded = Code(coder, true, input, chunk);
  Check(ReferenceDecode(coded) == Bytes(input.begin(), input.end()));
  Check(Code(coder, false, coded, 1) == Bytes(input.begin(), input.end()));
  return 0;
}
