// Feeds arbitrary text to the ASCII85 decoder, and arbitrary bytes through an
// encode-decode round trip, which must give them back unchanged. Plain memory
// streams go through the block path; a derived class takes the group path,
// which must give the same bytes, status and positions.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "zyn/dstruct/checksums.h"
#include "zyn/platform/stream.h"

namespace {

using zyn::platform::TMemoryStream;

struct GroupPathStream : TMemoryStream {};

bool SameBytes(const TMemoryStream& a, const TMemoryStream& b) {
  const auto x = a.Memory();
  const auto y = b.Memory();
  return x.size() == y.size() && (x.empty() || std::memcmp(x.data(), y.data(), x.size()) == 0);
}

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
  GroupPathStream group_text, group_decoded;
  Fill(group_text, data, size);
  if (Zyn_dstruct::DecodeASCII85(group_text, group_decoded) != status) std::abort();
  if (!SameBytes(decoded, group_decoded) || text.Position() != group_text.Position()) std::abort();

  TMemoryStream source, encoded, round_trip;
  Fill(source, data, size);
  Zyn_dstruct::EncodeASCII85(source, encoded);
  GroupPathStream group_source, group_encoded;
  Fill(group_source, data, size);
  Zyn_dstruct::EncodeASCII85(group_source, group_encoded);
  if (!SameBytes(encoded, group_encoded)) std::abort();
  encoded.SetPosition(0);
  if (Zyn_dstruct::DecodeASCII85(encoded, round_trip) != 0) std::abort();
  const auto back = round_trip.Memory();
  if (back.size() != size || (size > 0 && std::memcmp(back.data(), data, size) != 0)) std::abort();
  return 0;
}
