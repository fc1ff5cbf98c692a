// Feeds arbitrary text to the ASCII85 decoder, and arbitrary bytes through an
// encode-decode round trip, which must give them back unchanged.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "zyn/dstruct/checksums.h"
#include "zyn/platform/stream.h"

namespace {

using zyn::platform::TMemoryStream;

void Fill(TMemoryStream& stream, const std::uint8_t* data, std::size_t size) {
  stream.Write(data, static_cast<int>(size));
  stream.SetPosition(0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > (1 << 20)) return 0;

  TMemoryStream text, decoded;
  Fill(text, data, size);
  const int status = Zyn_dstruct::DecodeASCII85(text, decoded);
  if (status != 0 && status != -1 && status != -2) std::abort();
  // Each group of at most five characters gives at most four bytes.
  if (decoded.Size() > static_cast<std::int64_t>(size) * 4) std::abort();

  TMemoryStream source, encoded, round_trip;
  Fill(source, data, size);
  Zyn_dstruct::EncodeASCII85(source, encoded);
  encoded.SetPosition(0);
  if (Zyn_dstruct::DecodeASCII85(encoded, round_trip) != 0) std::abort();
  const auto back = round_trip.Memory();
  if (back.size() != size || (size > 0 && std::memcmp(back.data(), data, size) != 0)) std::abort();
  return 0;
}
