#include "zyn/streams/streamio.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <span>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "zyn/streams/folded_blocks.h"

namespace Zyn_streams {
namespace {

using streams_detail::FoldAscii;
using streams_detail::kReadBlock;
using streams_detail::NewHitsFrom;
using streams_detail::ReadFoldedBlock;

constexpr int kWriteBlock = 4096;

template <typename Bits>
void WriteLittleEndian(TStream& stream, Bits bits) {
  std::array<std::uint8_t, sizeof(Bits)> bytes;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(bits >> (8 * i));
  }
  stream.WriteBuffer(bytes.data(), static_cast<int>(bytes.size()));
}

template <typename Bits>
Bits ReadLittleEndian(TStream& stream, bool& eof) {
  std::array<std::uint8_t, sizeof(Bits)> bytes{};
  eof = false;
  try {
    stream.ReadBuffer(bytes.data(), static_cast<int>(bytes.size()));
  } catch (...) {
    eof = true;  // what arrived stays; the rest is 0
  }
  Bits bits = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bits |= static_cast<Bits>(Bits{bytes[i]} << (8 * i));
  return bits;
}

bool ReadByte(TStream& stream, std::uint8_t& b) { return stream.ReadByte(b); }

// Whether byte `b`, behind `previous`, ends a line under rule `LineEnd`.
template <int LineEnd>
bool EndsLine(std::uint8_t b, std::uint8_t previous) {
  if constexpr (LineEnd == 0) return b == 10;
  if constexpr (LineEnd == 1) return b == 13;
  if constexpr (LineEnd == 2) return b == 10 || b == 13;
  if constexpr (LineEnd == 3) return b == 13 && previous == 10;
  if constexpr (LineEnd == 4) return b == 10 && previous == 13;
  return false;
}

// The index of the byte of `bytes` that ends a line under rule `LineEnd`,
// `previous` being the byte in front of them; npos if none does.
template <int LineEnd>
std::size_t FindLineEnd(std::span<const std::uint8_t> bytes, std::uint8_t previous) {
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  const auto find = [&bytes](std::uint8_t value, std::size_t from) {
    const void* hit = std::memchr(bytes.data() + from, value, bytes.size() - from);
    return hit == nullptr
               ? kNone
               : static_cast<std::size_t>(static_cast<const std::uint8_t*>(hit) - bytes.data());
  };
  if constexpr (LineEnd == 0) return find(10, 0);
  if constexpr (LineEnd == 1) return find(13, 0);
  if constexpr (LineEnd == 2) return std::min(find(10, 0), find(13, 0));
  if constexpr (LineEnd == 3 || LineEnd == 4) {
    constexpr std::uint8_t kLast = LineEnd == 3 ? 13 : 10;
    constexpr std::uint8_t kFirst = LineEnd == 3 ? 10 : 13;
    for (std::size_t at = find(kLast, 0); at != kNone; at = find(kLast, at + 1)) {
      if ((at == 0 ? previous : bytes[at - 1]) == kFirst) return at;
    }
  }
  return kNone;
}

// One character per byte, appended.
void AppendBytes(std::u16string& line, std::span<const std::uint8_t> bytes) {
  if (line.empty()) {  // most lines: built in one pass, without clearing first
    line = std::u16string(bytes.begin(), bytes.end());
    return;
  }
  const std::size_t old = line.size();
  line.resize(old + bytes.size());
  char16_t* out = line.data() + old;
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  for (; i + 16 <= bytes.size(); i += 16) {
    const __m128i in = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_unpacklo_epi8(in, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), _mm_unpackhi_epi8(in, zero));
  }
#endif
  for (; i < bytes.size(); ++i) out[i] = bytes[i];
}

// Reads bytes into `line` until the rule is met (true) or the stream ends
// (false). Bytes the stream holds buffered are scanned as a run, the same as
// taking them one by one; the others come through ReadByte.
template <int LineEnd>
bool ReadLineBytes(TStream& stream, std::u16string& line) {
  std::uint8_t previous = 0;
  for (;;) {
    const std::span<const std::uint8_t> buffered = stream.BufferedBytes();
    if (buffered.empty()) {
      std::uint8_t b;
      if (!ReadByte(stream, b)) return false;
      line.push_back(b);
      if (EndsLine<LineEnd>(b, previous)) return true;
      previous = b;
      continue;
    }
    const std::size_t end = FindLineEnd<LineEnd>(buffered, previous);
    const bool ended = end < buffered.size();
    const std::size_t take = ended ? end + 1 : buffered.size();
    AppendBytes(line, buffered.first(take));
    stream.SkipBuffered(take);
    if (ended) return true;
    previous = buffered[take - 1];
  }
}

bool IsLineEndChar(char16_t c) { return c == 10 || c == 13; }

}  // namespace

void WriteStringStream(TStream& stream, std::u16string_view s) {
  std::array<std::uint8_t, kWriteBlock> block;
  while (!s.empty()) {
    const std::size_t n = std::min<std::size_t>(s.size(), block.size());
    for (std::size_t i = 0; i < n; ++i) block[i] = static_cast<std::uint8_t>(s[i]);
    stream.WriteBuffer(block.data(), static_cast<int>(n));
    s.remove_prefix(n);
  }
}

void WriteLnStream(TStream& stream, std::u16string_view s) {
  WriteStringStream(stream, s);
  const std::uint8_t crlf[2] = {13, 10};
  stream.WriteBuffer(crlf, 2);
}

void WriteLongintToStream(TStream& stream, std::int32_t value) {
  WriteLittleEndian(stream, static_cast<std::uint32_t>(value));
}

void WriteSingleToStream(TStream& stream, float value) {
  WriteLittleEndian(stream, std::bit_cast<std::uint32_t>(value));
}

void WriteDoubleToStream(TStream& stream, double value) {
  WriteLittleEndian(stream, std::bit_cast<std::uint64_t>(value));
}

void WriteExtendedToStream(TStream& stream, double value) { WriteDoubleToStream(stream, value); }

std::int32_t ReadLongintFromStream(TStream& stream, bool& eof) {
  return static_cast<std::int32_t>(ReadLittleEndian<std::uint32_t>(stream, eof));
}

float ReadSingleFromStream(TStream& stream, bool& eof) {
  return std::bit_cast<float>(ReadLittleEndian<std::uint32_t>(stream, eof));
}

double ReadDoubleFromStream(TStream& stream, bool& eof) {
  return std::bit_cast<double>(ReadLittleEndian<std::uint64_t>(stream, eof));
}

double ReadExtendedFromStream(TStream& stream, bool& eof) {
  return ReadDoubleFromStream(stream, eof);
}

std::u16string ReadLnStream(TStream& stream, bool& eof, int lineEnd) {
  std::u16string line;
  bool ended;
  switch (lineEnd) {
    case 0:
      ended = ReadLineBytes<0>(stream, line);
      break;
    case 1:
      ended = ReadLineBytes<1>(stream, line);
      break;
    case 2:
      ended = ReadLineBytes<2>(stream, line);
      break;
    case 3:
      ended = ReadLineBytes<3>(stream, line);
      break;
    case 4:
      ended = ReadLineBytes<4>(stream, line);
      break;
    default:
      ended = ReadLineBytes<-1>(stream, line);
      break;
  }
  eof = !ended;
  if (ended) {
    for (int k = 0; k < 2 && !line.empty() && IsLineEndChar(line.back()); ++k) line.pop_back();
  }
  return line;
}

std::u16string StreamAsString(TStream& stream) {
  std::u16string text;
  std::array<std::uint8_t, kReadBlock> block;
  int n;
  while ((n = stream.Read(block.data(), kReadBlock)) > 0)
    text.append(block.begin(), block.begin() + n);
  return text;
}

bool FindInStream(TStream& stream, std::uint8_t value) {
  std::uint8_t b;
  while (ReadByte(stream, b)) {
    if (b == value) return true;
  }
  return false;
}

int CountLinesInStream(TStream& stream) {
  int lines = 0;
  std::uint8_t b;
  while (ReadByte(stream, b)) lines += b == 10;
  return lines;
}

std::u16string ReadStreamUntil(TStream& stream, std::u16string_view text, int& status) {
  status = -1;
  std::u16string folded_text(text);
  std::transform(folded_text.begin(), folded_text.end(), folded_text.begin(), FoldAscii);
  const std::int64_t start = stream.Position();
  std::u16string buffer;
  std::u16string folded;
  while (true) {
    const std::size_t searched = folded.size();
    const int n = ReadFoldedBlock(stream, buffer, folded);
    if (!folded_text.empty()) {
      const std::size_t hit = folded.find(folded_text, NewHitsFrom(searched, folded_text.size()));
      if (hit != std::u16string::npos) {
        status = 0;
        buffer.resize(hit + folded_text.size());
        stream.SetPosition(start + static_cast<std::int64_t>(buffer.size()));
        return buffer;
      }
    }
    if (n < kReadBlock) return buffer;
  }
}

}  // namespace Zyn_streams
