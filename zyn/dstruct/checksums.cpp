#include "zyn/dstruct/checksums.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstring>
#include <typeinfo>
#include <utility>

#include "zyn/platform/cpu_features.h"

#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>
#define ZYN_X86_FAST_PATHS 1
#endif

namespace Zyn_dstruct {
namespace {

// ---------------------------------------------------------------------------
// Tables, built by the compiler: constant data from load time.

constexpr std::array<std::uint16_t, 256> MakeCrc16Table() {
  std::array<std::uint16_t, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    unsigned value = i << 8;
    for (int bit = 0; bit < 8; ++bit) value = (value & 0x8000) ? (value << 1) ^ 0x1021 : value << 1;
    table[i] = static_cast<std::uint16_t>(value);
  }
  return table;
}

constexpr auto kCrc16Table = MakeCrc16Table();

// kCrc16Tables[k][i] is the CRC-16 of byte i followed by k zero bytes; [0] is
// kCrc16Table. With them sixteen bytes take sixteen independent lookups
// instead of a chain of sixteen dependent ones ("slicing by sixteen").
using Crc16Tables = std::array<std::array<std::uint16_t, 256>, 16>;

constexpr Crc16Tables MakeCrc16Tables() {
  Crc16Tables tables{};
  tables[0] = MakeCrc16Table();
  for (std::size_t k = 1; k < tables.size(); ++k) {
    for (std::size_t i = 0; i < 256; ++i) {
      const std::uint16_t before = tables[k - 1][i];
      tables[k][i] = static_cast<std::uint16_t>(before << 8 ^ tables[0][before >> 8]);
    }
  }
  return tables;
}

constexpr Crc16Tables kCrc16Tables = MakeCrc16Tables();

// kCrc32Tables[0] is the byte-wise table of the reflected polynomial;
// kCrc32Tables[k][i] is the CRC of byte i followed by k zero bytes, which lets
// the portable path take sixteen bytes per step ("slicing by sixteen").
using Crc32Tables = std::array<std::array<std::uint32_t, 256>, 16>;

constexpr Crc32Tables MakeCrc32Tables() {
  Crc32Tables tables{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value & 1) ? (value >> 1) ^ 0xEDB88320u : value >> 1;
    tables[0][i] = value;
  }
  for (std::size_t k = 1; k < tables.size(); ++k) {
    for (std::size_t i = 0; i < 256; ++i) {
      const std::uint32_t previous = tables[k - 1][i];
      tables[k][i] = (previous >> 8) ^ tables[0][previous & 0xFF];
    }
  }
  return tables;
}

constexpr Crc32Tables kCrc32Tables = MakeCrc32Tables();

static_assert(kCrc16Table[1] == 0x1021 && kCrc16Table[2] == 0x2042);
static_assert(kCrc32Tables[0][1] == 0x77073096);

std::uint32_t LoadLittleEndian32(const std::uint8_t* p) {
  return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 |
         std::uint32_t{p[3]} << 24;
}

std::uint32_t LoadBigEndian32(const std::uint8_t* p) {
  return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 |
         std::uint32_t{p[3]};
}

// ---------------------------------------------------------------------------
// CRC-32 bulk update. `crc` is the running value (not inverted).

std::uint32_t Crc32Portable(std::uint32_t crc, const std::uint8_t* p, std::size_t n) {
  const auto& t = kCrc32Tables;
  for (; n >= 16; p += 16, n -= 16) {
    const std::uint32_t w0 = LoadLittleEndian32(p) ^ crc;
    const std::uint32_t w1 = LoadLittleEndian32(p + 4);
    const std::uint32_t w2 = LoadLittleEndian32(p + 8);
    const std::uint32_t w3 = LoadLittleEndian32(p + 12);
    crc = t[15][w0 & 0xFF] ^ t[14][(w0 >> 8) & 0xFF] ^ t[13][(w0 >> 16) & 0xFF] ^ t[12][w0 >> 24] ^
          t[11][w1 & 0xFF] ^ t[10][(w1 >> 8) & 0xFF] ^ t[9][(w1 >> 16) & 0xFF] ^ t[8][w1 >> 24] ^
          t[7][w2 & 0xFF] ^ t[6][(w2 >> 8) & 0xFF] ^ t[5][(w2 >> 16) & 0xFF] ^ t[4][w2 >> 24] ^
          t[3][w3 & 0xFF] ^ t[2][(w3 >> 8) & 0xFF] ^ t[1][(w3 >> 16) & 0xFF] ^ t[0][w3 >> 24];
  }
  for (; n > 0; ++p, --n) crc = t[0][(crc ^ *p) & 0xFF] ^ (crc >> 8);
  return crc;
}

#ifdef ZYN_X86_FAST_PATHS

__attribute__((target("pclmul,sse4.1"))) inline __m128i Load128(const std::uint8_t* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

// `into` times x^128 (by the constants in `k`), plus `next`.
__attribute__((target("pclmul,sse4.1"))) inline __m128i Fold128(__m128i into, __m128i next,
                                                                __m128i k) {
  const __m128i low = _mm_clmulepi64_si128(into, k, 0x00);
  const __m128i high = _mm_clmulepi64_si128(into, k, 0x11);
  return _mm_xor_si128(_mm_xor_si128(high, next), low);
}

// Folds 64 bytes at a time with carry-less multiplication (four 128-bit lanes),
// then reduces to 32 bits by Barrett's method. The constants are powers of x
// modulo the polynomial in the reflected domain. Needs n >= 64, n % 16 == 0.
__attribute__((target("pclmul,sse4.1"))) std::uint32_t Crc32Clmul(std::uint32_t crc,
                                                                  const std::uint8_t* p,
                                                                  std::size_t n) {
  const __m128i k1k2 = _mm_set_epi64x(0x01c6e41596, 0x0154442bd4);
  const __m128i k3k4 = _mm_set_epi64x(0x00ccaa009e, 0x01751997d0);
  const __m128i k5 = _mm_set_epi64x(0, 0x0163cd6124);
  const __m128i polynomial = _mm_set_epi64x(0x01f7011641, 0x01db710641);
  const __m128i low32 = _mm_setr_epi32(-1, 0, -1, 0);

  __m128i x1 = _mm_xor_si128(Load128(p), _mm_cvtsi32_si128(static_cast<int>(crc)));
  __m128i x2 = Load128(p + 16);
  __m128i x3 = Load128(p + 32);
  __m128i x4 = Load128(p + 48);
  p += 64;
  n -= 64;
  for (; n >= 64; p += 64, n -= 64) {
    x1 = Fold128(x1, Load128(p), k1k2);
    x2 = Fold128(x2, Load128(p + 16), k1k2);
    x3 = Fold128(x3, Load128(p + 32), k1k2);
    x4 = Fold128(x4, Load128(p + 48), k1k2);
  }

  // Four lanes into one, then the remaining 16-byte blocks.
  x1 = Fold128(x1, x2, k3k4);
  x1 = Fold128(x1, x3, k3k4);
  x1 = Fold128(x1, x4, k3k4);
  for (; n >= 16; p += 16, n -= 16) x1 = Fold128(x1, Load128(p), k3k4);

  // 128 bits to 64, then to 32.
  x2 = _mm_clmulepi64_si128(x1, k3k4, 0x10);
  x1 = _mm_xor_si128(_mm_srli_si128(x1, 8), x2);
  x2 = _mm_srli_si128(x1, 4);
  x1 = _mm_and_si128(x1, low32);
  x1 = _mm_xor_si128(_mm_clmulepi64_si128(x1, k5, 0x00), x2);

  x2 = _mm_and_si128(x1, low32);
  x2 = _mm_clmulepi64_si128(x2, polynomial, 0x10);
  x2 = _mm_and_si128(x2, low32);
  x2 = _mm_clmulepi64_si128(x2, polynomial, 0x00);
  x1 = _mm_xor_si128(x1, x2);
  return static_cast<std::uint32_t>(_mm_extract_epi32(x1, 1));
}

#endif  // ZYN_X86_FAST_PATHS

std::uint32_t UpdateCrc32(std::uint32_t crc, const std::uint8_t* p, std::size_t n) {
#ifdef ZYN_X86_FAST_PATHS
  if (n >= 64) {
    const auto extensions = zyn::platform::UsableCpuExtensions();
    if (extensions.carryless_multiply && extensions.sse41) {
      const std::size_t bulk = n & ~std::size_t{15};
      crc = Crc32Clmul(crc, p, bulk);
      p += bulk;
      n -= bulk;
    }
  }
#endif
  return Crc32Portable(crc, p, n);
}

std::size_t ClampedCount(std::span<const std::uint8_t> buffer, int count) {
  return count <= 0 ? 0 : std::min(static_cast<std::size_t>(count), buffer.size());
}

// ---------------------------------------------------------------------------
// SHA-1 (FIPS 180).

using Sha1State = std::array<std::uint32_t, 5>;
using Sha1Compressor = void (*)(Sha1State& state, const std::uint8_t* blocks, std::size_t count);

// One SHA-1 round of group kGroup: e takes the sum, b its rotation. Called with
// the five words in turn rotated, so no word moves between rounds.
template <int kGroup>
inline void Sha1Round(std::uint32_t a, std::uint32_t& b, std::uint32_t c, std::uint32_t d,
                      std::uint32_t& e, std::uint32_t w) {
  std::uint32_t f;
  std::uint32_t k;
  if constexpr (kGroup == 0) {
    f = d ^ (b & (c ^ d));
    k = 0x5A827999;
  } else if constexpr (kGroup == 1) {
    f = b ^ c ^ d;
    k = 0x6ED9EBA1;
  } else if constexpr (kGroup == 2) {
    f = (b & c) | (d & (b | c));
    k = 0x8F1BBCDC;
  } else {
    f = b ^ c ^ d;
    k = 0xCA62C1D6;
  }
  e += std::rotl(a, 5) + f + k + w;
  b = std::rotl(b, 30);
}

template <int kGroup>
inline void Sha1Rounds20(std::uint32_t& a, std::uint32_t& b, std::uint32_t& c, std::uint32_t& d,
                         std::uint32_t& e, const std::uint32_t* w) {
  for (int t = 0; t < 20; t += 5) {
    Sha1Round<kGroup>(a, b, c, d, e, w[t]);
    Sha1Round<kGroup>(e, a, b, c, d, w[t + 1]);
    Sha1Round<kGroup>(d, e, a, b, c, w[t + 2]);
    Sha1Round<kGroup>(c, d, e, a, b, w[t + 3]);
    Sha1Round<kGroup>(b, c, d, e, a, w[t + 4]);
  }
}

void Sha1CompressPortable(Sha1State& state, const std::uint8_t* blocks, std::size_t count) {
  std::array<std::uint32_t, 80> w{};
  for (; count > 0; --count, blocks += 64) {
    for (int t = 0; t < 16; ++t) w[t] = LoadBigEndian32(blocks + 4 * t);
    for (int t = 16; t < 80; ++t) w[t] = std::rotl(w[t - 3] ^ w[t - 8] ^ w[t - 14] ^ w[t - 16], 1);
    std::uint32_t a = state[0], b = state[1], c = state[2], d = state[3], e = state[4];
    Sha1Rounds20<0>(a, b, c, d, e, w.data());
    Sha1Rounds20<1>(a, b, c, d, e, w.data() + 20);
    Sha1Rounds20<2>(a, b, c, d, e, w.data() + 40);
    Sha1Rounds20<3>(a, b, c, d, e, w.data() + 60);
    state[0] += a;
    state[1] += b;
    state[2] += c;
    state[3] += d;
    state[4] += e;
  }
  // The message schedule holds derived message words; leave none behind.
  std::fill(w.begin(), w.end(), 0u);
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

#ifdef ZYN_X86_FAST_PATHS

// Rounds 4g to 4g + 3 by SHA1RNDS4 (round function g / 5), and the share of
// the message schedule (SHA1MSG1, SHA1MSG2) that falls to the words of this
// group, w[g % 4]: a step starts once its inputs are loaded and stops when no
// later group needs it. e[g % 2] takes the words, e[(g + 1) % 2] keeps abcd
// for the next group.
template <int g>
__attribute__((target("sha,sse4.1"), always_inline)) inline void Sha1Group(__m128i& abcd,
                                                                           __m128i (&e)[2],
                                                                           __m128i (&w)[4]) {
  const __m128i m = w[g % 4];
  if constexpr (g == 0) {
    e[0] = _mm_add_epi32(e[0], m);
  } else {
    e[g % 2] = _mm_sha1nexte_epu32(e[g % 2], m);
  }
  e[(g + 1) % 2] = abcd;
  abcd = _mm_sha1rnds4_epu32(abcd, e[g % 2], g / 5);
  if constexpr (g >= 3 && g <= 18) w[(g + 1) % 4] = _mm_sha1msg2_epu32(w[(g + 1) % 4], m);
  if constexpr (g >= 1 && g <= 16) w[(g + 3) % 4] = _mm_sha1msg1_epu32(w[(g + 3) % 4], m);
  if constexpr (g >= 2 && g <= 17) w[(g + 2) % 4] = _mm_xor_si128(w[(g + 2) % 4], m);
}

template <int... g>
__attribute__((target("sha,sse4.1"), always_inline)) inline void Sha1Groups(
    __m128i& abcd, __m128i (&e)[2], __m128i (&w)[4], std::integer_sequence<int, g...>) {
  (Sha1Group<g>(abcd, e, w), ...);
}

// Eighty rounds a block, twenty groups of four.
__attribute__((target("sha,sse4.1"))) void Sha1CompressSha(Sha1State& state,
                                                           const std::uint8_t* blocks,
                                                           std::size_t count) {
  const __m128i kByteSwap = _mm_set_epi64x(0x0001020304050607LL, 0x08090a0b0c0d0e0fLL);
  __m128i abcd =
      _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(state.data())), 0x1B);
  __m128i e0 = _mm_set_epi32(static_cast<int>(state[4]), 0, 0, 0);
  for (; count > 0; --count, blocks += 64) {
    const __m128i abcd_saved = abcd;
    __m128i e[2] = {e0, abcd};
    __m128i w[4];
    for (int i = 0; i < 4; ++i) {
      w[i] = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(blocks + 16 * i)),
                              kByteSwap);
    }
    Sha1Groups(abcd, e, w, std::make_integer_sequence<int, 20>{});
    e0 = _mm_sha1nexte_epu32(e[0], e0);
    abcd = _mm_add_epi32(abcd, abcd_saved);
  }
  _mm_storeu_si128(reinterpret_cast<__m128i*>(state.data()), _mm_shuffle_epi32(abcd, 0x1B));
  state[4] = static_cast<std::uint32_t>(_mm_extract_epi32(e0, 3));
}

#endif  // ZYN_X86_FAST_PATHS

Sha1Compressor ChooseSha1Compressor() {
#ifdef ZYN_X86_FAST_PATHS
  const auto extensions = zyn::platform::UsableCpuExtensions();
  if (extensions.sha && extensions.sse41) return Sha1CompressSha;
#endif
  return Sha1CompressPortable;
}

// The running SHA-1 of a message given in pieces.
class Sha1Context {
 public:
  void Update(std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) return;
    bit_count_ += static_cast<std::uint64_t>(bytes.size()) * 8;
    const std::uint8_t* p = bytes.data();
    std::size_t n = bytes.size();
    if (fill_ > 0) {
      const std::size_t take = std::min(n, block_.size() - fill_);
      std::memcpy(block_.data() + fill_, p, take);
      fill_ += take;
      p += take;
      n -= take;
      if (fill_ < block_.size()) return;
      CompressBuffer();
    }
    if (n >= 64) {
      compress_(state_, p, n / 64);
      p += n / 64 * 64;
      n %= 64;
    }
    if (n > 0) std::memcpy(block_.data(), p, n);
    fill_ = n;
  }

  // The digest; the context is wiped afterwards and must not be used again.
  TSHACode Finish() {
    // The buffer is all zero behind the fill index, so padding writes only
    // the 0x80 byte and the length.
    block_[fill_] = 0x80;
    if (fill_ >= 56) CompressBuffer();
    for (int i = 0; i < 8; ++i) block_[63 - i] = static_cast<std::uint8_t>(bit_count_ >> (8 * i));
    CompressBuffer();
    TSHACode digest;
    for (std::size_t i = 0; i < 20; ++i) {
      digest[i] = static_cast<std::uint8_t>(state_[i / 4] >> (24 - 8 * (i % 4)));
    }
    Wipe();
    return digest;
  }

  ~Sha1Context() { Wipe(); }

 private:
  void CompressBuffer() {
    compress_(state_, block_.data(), 1);
    block_.fill(0);
    fill_ = 0;
  }

  void Wipe() {
    volatile std::uint8_t* bytes = block_.data();
    for (std::size_t i = 0; i < block_.size(); ++i) bytes[i] = 0;
    volatile std::uint32_t* words = state_.data();
    for (std::size_t i = 0; i < state_.size(); ++i) words[i] = 0;
    bit_count_ = 0;
    fill_ = 0;
  }

  std::uint64_t bit_count_ = 0;  // modulo 2^64, as the padding carries it
  std::size_t fill_ = 0;
  Sha1State state_ = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  std::array<std::uint8_t, 64> block_{};
  Sha1Compressor compress_ = ChooseSha1Compressor();
};

}  // namespace

std::uint16_t CalcNextCRC16(std::uint8_t b, std::uint16_t crc) {
  return static_cast<std::uint16_t>((crc << 8) ^ kCrc16Table[(crc >> 8) ^ b]);
}

std::uint16_t CRC16ofBuffer(std::span<const std::uint8_t> buffer, int count, TCRC16Mode mode) {
  std::uint16_t crc = mode == crcCCITT ? 0xFFFF : 0;
  std::span<const std::uint8_t> rest = buffer.first(ClampedCount(buffer, count));
  // Sixteen bytes a step: the running value enters as the first two bytes,
  // and each byte's share of the CRC sixteen bytes on is one lookup.
  const Crc16Tables& t = kCrc16Tables;
  for (; rest.size() >= 16; rest = rest.subspan(16)) {
    const std::uint8_t* p = rest.data();
    crc = static_cast<std::uint16_t>(
        t[15][p[0] ^ (crc >> 8)] ^ t[14][p[1] ^ (crc & 0xFF)] ^ t[13][p[2]] ^ t[12][p[3]] ^
        t[11][p[4]] ^ t[10][p[5]] ^ t[9][p[6]] ^ t[8][p[7]] ^ t[7][p[8]] ^ t[6][p[9]] ^
        t[5][p[10]] ^ t[4][p[11]] ^ t[3][p[12]] ^ t[2][p[13]] ^ t[1][p[14]] ^ t[0][p[15]]);
  }
  for (std::uint8_t b : rest) crc = CalcNextCRC16(b, crc);
  return crc;
}

std::uint32_t CalcNextCRC32(std::uint8_t b, std::uint32_t crc) {
  return kCrc32Tables[0][(crc ^ b) & 0xFF] ^ (crc >> 8);
}

std::uint32_t CRC32ofBuffer(std::span<const std::uint8_t> buffer, int count) {
  return ~UpdateCrc32(0xFFFFFFFF, buffer.data(), ClampedCount(buffer, count));
}

TSHACode SHA1FromBytes(std::span<const std::uint8_t> bytes) {
  Sha1Context context;
  context.Update(bytes);
  return context.Finish();
}

TSHACode SHA1FromString(std::u16string_view s) {
  Sha1Context context;
  std::array<std::uint8_t, 1024> chunk;
  while (!s.empty()) {
    const std::size_t units = std::min(s.size(), chunk.size() / 2);
    for (std::size_t i = 0; i < units; ++i) {
      chunk[2 * i] = static_cast<std::uint8_t>(s[i] & 0xFF);
      chunk[2 * i + 1] = static_cast<std::uint8_t>(s[i] >> 8);
    }
    context.Update(std::span(chunk).first(2 * units));
    s.remove_prefix(units);
  }
  return context.Finish();
}

std::uint32_t CalcCRC32ofFile(std::u16string_view FileName) {
  std::uint32_t crc = 0xFFFFFFFF;
  try {
    zyn::platform::TFileStream file(FileName, zyn::platform::fmOpenRead);
    std::array<std::uint8_t, 4096> block;
    for (int n; (n = file.Read(block.data(), static_cast<int>(block.size()))) > 0;) {
      crc = UpdateCrc32(crc, block.data(), std::min(static_cast<std::size_t>(n), block.size()));
    }
  } catch (...) {
    crc = 0xFFFFFFFF;  // every failure reads as the CRC of nothing
  }
  return ~crc;
}

TSHACode SHA1FromStream(zyn::platform::TStream& Stream) {
  Sha1Context context;
  std::array<std::uint8_t, 1024> block;
  for (int n; (n = Stream.Read(block.data(), static_cast<int>(block.size()))) > 0;) {
    context.Update(std::span(block).first(std::min(static_cast<std::size_t>(n), block.size())));
  }
  return context.Finish();
}

TSHACode SHA1FromFile(std::u16string_view FileName) {
  zyn::platform::TFileStream file(FileName, zyn::platform::fmOpenRead);
  return SHA1FromStream(file);
}

std::u16string SHA1DigestToHex(const TSHACode& digest) {
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::u16string hex;
  hex.reserve(2 * digest.size());
  for (std::uint8_t b : digest) {
    hex += kDigits[b >> 4];
    hex += kDigits[b & 0xF];
  }
  return hex;
}

namespace {

using zyn::platform::TMemoryStream;
using zyn::platform::TStream;

// The stream as a memory stream of a class whose Read and Write are known to
// be TMemoryStream's, or null. Only those are read and written in blocks.
TMemoryStream* PlainMemoryStream(TStream& stream) {
  if (typeid(stream) != typeid(TMemoryStream) &&
      typeid(stream) != typeid(zyn::platform::TStringStream)) {
    return nullptr;
  }
  return static_cast<TMemoryStream*>(&stream);
}

// Reads a stream through its Read, one byte through ReadByte.
class StreamSource {
 public:
  explicit StreamSource(TStream& stream) : stream_(stream) {}
  int Read(std::uint8_t* out, int count) { return std::min(stream_.Read(out, count), count); }
  bool Next(std::uint8_t& c) { return stream_.ReadByte(c); }
  void Done() {}

 private:
  TStream& stream_;
};

// Reads a plain memory stream straight from its bytes. Done() leaves the
// position where the same reads through Read would have left it.
class MemorySource {
 public:
  explicit MemorySource(TMemoryStream& stream) : stream_(stream) {
    const std::span<const std::uint8_t> bytes = stream.Memory();
    const std::int64_t position = stream.Position();
    begin_ = next_ = bytes.data() + std::min<std::int64_t>(position, std::ssize(bytes));
    end_ = bytes.data() + bytes.size();
  }
  int Read(std::uint8_t* out, int count) {
    if (end_ - next_ >= count) {  // the usual case, a copy of a constant size once inlined
      std::memcpy(out, next_, static_cast<std::size_t>(count));
      next_ += count;
      return count;
    }
    const int n = static_cast<int>(end_ - next_);
    if (n > 0)
      std::memcpy(out, next_, static_cast<std::size_t>(n));  // an empty stream has no bytes at all
    next_ += n;
    return n;
  }
  bool Next(std::uint8_t& c) {
    if (next_ == end_) return false;
    c = *next_++;
    return true;
  }
  // Takes the next five bytes if all of them are digits "!".."u": a whole
  // group with nothing to skip, look at or report.
  bool TakeFiveDigits(std::array<std::uint8_t, 5>& group) {
    if (end_ - next_ < 5) return false;
    for (int i = 0; i < 5; ++i) {
      if (static_cast<std::uint8_t>(next_[i] - '!') > 'u' - '!') return false;
    }
    std::memcpy(group.data(), next_, 5);
    next_ += 5;
    return true;
  }
  void Done() {
    if (next_ != begin_) stream_.SetPosition(stream_.Position() + (next_ - begin_));
  }

 private:
  TMemoryStream& stream_;
  const std::uint8_t* begin_;
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

// Writes each piece through the stream's Write as it comes.
class StreamSink {
 public:
  explicit StreamSink(TStream& stream) : stream_(stream) {}
  void Put(const void* bytes, int count) { stream_.Write(bytes, count); }
  void Done() {}

 private:
  TStream& stream_;
};

// Collects pieces for a plain memory stream, which takes any count whole, and
// writes them a block at a time.
class MemorySink {
 public:
  explicit MemorySink(TStream& stream) : stream_(stream) {}
  void Put(const void* bytes, int count) {
    if (block_.size() - used_ < static_cast<std::size_t>(count)) Done();
    std::memcpy(block_.data() + used_, bytes, static_cast<std::size_t>(count));
    used_ += static_cast<std::size_t>(count);
  }
  void Done() {
    if (used_ > 0) stream_.Write(block_.data(), static_cast<int>(used_));
    used_ = 0;
  }

 private:
  TStream& stream_;
  std::array<std::uint8_t, 4096> block_;
  std::size_t used_ = 0;
};

template <typename Source, typename Sink>
void EncodeGroups(Source& source, Sink& sink) {
  std::array<std::uint8_t, 4> group;
  for (;;) {
    const int n = source.Read(group.data(), 4);
    if (n <= 0) break;
    if (n == 4) {
      std::uint32_t value = std::uint32_t{group[0]} << 24 | std::uint32_t{group[1]} << 16 |
                            std::uint32_t{group[2]} << 8 | group[3];
      if (value == 0) {
        sink.Put("z", 1);
        continue;
      }
      std::array<char, 5> digits;
      for (int i = 4; i >= 0; --i) {
        digits[static_cast<std::size_t>(i)] = static_cast<char>('!' + value % 85);
        value /= 85;
      }
      sink.Put(digits.data(), 5);
      continue;
    }
    // A short group is its own number: n + 1 digits hold any n bytes.
    std::uint32_t value = 0;
    for (int i = 0; i < n; ++i) value = value << 8 | group[static_cast<std::size_t>(i)];
    std::array<char, 5> digits;
    for (int i = n; i >= 0; --i) {
      digits[static_cast<std::size_t>(i)] = static_cast<char>('!' + value % 85);
      value /= 85;
    }
    sink.Put(digits.data(), n + 1);
    break;
  }
  sink.Put("~>", 2);
  source.Done();
  sink.Done();
}

template <typename Source, typename Sink>
int DecodeGroups(Source& source, Sink& sink) {
  // The next character that is not CR or LF; false at the end of the source.
  const auto next = [&source](std::uint8_t& c) {
    for (;;) {
      if (!source.Next(c)) return false;
      if (c != '\r' && c != '\n') return true;
    }
  };
  int status = 0;
  std::array<std::uint8_t, 5> group;
  for (;;) {
    if constexpr (requires { source.TakeFiveDigits(group); }) {
      if (source.TakeFiveDigits(group)) {
        std::uint32_t sum = 0;
        for (const std::uint8_t c : group) sum = sum * 85u + static_cast<std::uint32_t>(c - '!');
        const std::array<std::uint8_t, 4> bytes = {
            static_cast<std::uint8_t>(sum >> 24), static_cast<std::uint8_t>(sum >> 16),
            static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum)};
        sink.Put(bytes.data(), 4);
        continue;
      }
    }
    if (!next(group[0])) break;
    if (group[0] == 'z') {
      constexpr std::array<std::uint8_t, 4> kZeros{};
      sink.Put(kZeros.data(), 4);
      continue;
    }
    int held = 1;
    bool last = false;
    while (held < 5 && !last) {
      if (next(group[static_cast<std::size_t>(held)])) {
        ++held;
      } else {
        last = true;  // source exhausted inside the group
      }
    }
    int digits = held;
    for (int i = held - 1; i >= 0; --i) {
      if (group[static_cast<std::size_t>(i)] == '~') {
        digits = i;
        last = true;
        break;
      }
    }
    std::uint32_t sum = 0;
    for (int i = 0; i < digits; ++i) {
      const std::uint8_t c = group[static_cast<std::size_t>(i)];
      if (c < '!' || c > 'u') status = c == 'z' ? -2 : -1;
      sum = sum * 85u + static_cast<std::uint32_t>(c - '!');  // wraps, as the format allows
    }
    if (digits >= 2) {
      std::array<std::uint8_t, 4> bytes;
      for (int i = 0; i < digits - 1; ++i) {
        bytes[static_cast<std::size_t>(i)] =
            static_cast<std::uint8_t>(sum >> (8 * (digits - 2 - i)));
      }
      sink.Put(bytes.data(), digits - 1);
    }
    if (last) break;
  }
  source.Done();
  sink.Done();
  return status;
}

// Runs `codec` with the fastest source and sink the two streams allow. The
// block paths give the same bytes, status and positions as the plain ones;
// a stream that is both source and destination takes the plain path.
template <typename Codec>
auto WithSourceAndSink(TStream& source_stream, TStream& dest_stream, Codec codec) {
  TMemoryStream* memory_source =
      &source_stream == &dest_stream ? nullptr : PlainMemoryStream(source_stream);
  const bool memory_dest = &source_stream != &dest_stream && PlainMemoryStream(dest_stream);
  const auto with_sink = [&](auto& source) {
    if (memory_dest) {
      MemorySink sink(dest_stream);
      return codec(source, sink);
    }
    StreamSink sink(dest_stream);
    return codec(source, sink);
  };
  if (memory_source != nullptr) {
    MemorySource source(*memory_source);
    return with_sink(source);
  }
  StreamSource source(source_stream);
  return with_sink(source);
}

}  // namespace

void EncodeASCII85(zyn::platform::TStream& Source, zyn::platform::TStream& Dest) {
  WithSourceAndSink(Source, Dest, [](auto& source, auto& sink) { EncodeGroups(source, sink); });
}

int DecodeASCII85(zyn::platform::TStream& Source, zyn::platform::TStream& Dest) {
  return WithSourceAndSink(Source, Dest,
                           [](auto& source, auto& sink) { return DecodeGroups(source, sink); });
}

}  // namespace Zyn_dstruct
