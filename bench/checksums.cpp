// CRC-16, CRC-32, SHA-1 and ASCII85 on 1 MiB, each beside what a user would
// pick instead: a byte-table loop, zlib's crc32(), OpenSSL's SHA-1 and a plain
// ASCII85 loop, on the same bytes in one run.
// The "Portable" rows run with the processor's extensions switched off.

#include "zyn/dstruct/checksums.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/cpu_features.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"

namespace {

using zyn::platform::TMemoryStream;

constexpr std::size_t kSize = 1 << 20;

const std::vector<std::uint8_t>& Message() {
  static const std::vector<std::uint8_t> bytes = [] {
    std::mt19937 generator(1);
    std::vector<std::uint8_t> b(kSize);
    for (auto& x : b) x = static_cast<std::uint8_t>(generator());
    return b;
  }();
  return bytes;
}

// The message as a file in the temporary directory, written once.
const std::filesystem::path& MessageFile() {
  static const std::filesystem::path path = [] {
    auto p = std::filesystem::temp_directory_path() / "zyn_bench_checksums.bin";
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(Message().data()), kSize);
    return p;
  }();
  return path;
}

void Finish(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * kSize);
}

// --- CRC-16 -----------------------------------------------------------------
// No common library has CRC-16/XMODEM; the peer is the byte-table loop a user
// would write from the catalogue entry.

constexpr std::array<std::uint16_t, 256> kPeerCrc16Table = [] {
  std::array<std::uint16_t, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    unsigned value = i << 8;
    for (int bit = 0; bit < 8; ++bit) value = value & 0x8000 ? (value << 1) ^ 0x1021 : value << 1;
    table[i] = static_cast<std::uint16_t>(value);
  }
  return table;
}();

void BM_Crc16_Zyn(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Zyn_dstruct::CRC16ofBuffer(Message(), static_cast<int>(kSize), Zyn_dstruct::crcCCITT));
  }
  Finish(state);
}
BENCHMARK(BM_Crc16_Zyn);

void BM_Crc16_ByteTable(benchmark::State& state) {
  for (auto _ : state) {
    std::uint16_t crc = 0xFFFF;
    for (const std::uint8_t b : Message()) {
      crc = static_cast<std::uint16_t>(crc << 8 ^ kPeerCrc16Table[(crc >> 8) ^ b]);
    }
    benchmark::DoNotOptimize(crc);
  }
  Finish(state);
}
BENCHMARK(BM_Crc16_ByteTable);

// --- CRC-32 -----------------------------------------------------------------

void BM_Crc32_Zyn(benchmark::State& state) {
  zyn::platform::AllowCpuExtensions(state.range(0) != 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(Zyn_dstruct::CRC32ofBuffer(Message(), static_cast<int>(kSize)));
  }
  zyn::platform::AllowCpuExtensions(true);
  Finish(state);
}
BENCHMARK(BM_Crc32_Zyn)->ArgName("fast")->Arg(1)->Arg(0);

void BM_Crc32_Zlib(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(crc32(0, Message().data(), kSize));
  Finish(state);
}
BENCHMARK(BM_Crc32_Zlib);

void BM_Crc32File_Zyn(benchmark::State& state) {
  const std::u16string name = zyn::platform::FromUTF8(MessageFile().string());
  for (auto _ : state) benchmark::DoNotOptimize(Zyn_dstruct::CalcCRC32ofFile(name));
  Finish(state);
}
BENCHMARK(BM_Crc32File_Zyn);

void BM_Crc32File_Zlib(benchmark::State& state) {
  std::vector<std::uint8_t> block(64 * 1024);
  for (auto _ : state) {
    std::FILE* file = std::fopen(MessageFile().c_str(), "rb");
    uLong crc = crc32(0, nullptr, 0);
    for (std::size_t n; (n = std::fread(block.data(), 1, block.size(), file)) > 0;) {
      crc = crc32(crc, block.data(), static_cast<uInt>(n));
    }
    std::fclose(file);
    benchmark::DoNotOptimize(crc);
  }
  Finish(state);
}
BENCHMARK(BM_Crc32File_Zlib);

// --- SHA-1 ------------------------------------------------------------------

void BM_Sha1Stream_Zyn(benchmark::State& state) {
  zyn::platform::AllowCpuExtensions(state.range(0) != 0);
  TMemoryStream stream;
  stream.Write(Message().data(), static_cast<int>(kSize));
  for (auto _ : state) {
    stream.SetPosition(0);
    benchmark::DoNotOptimize(Zyn_dstruct::SHA1FromStream(stream));
  }
  zyn::platform::AllowCpuExtensions(true);
  Finish(state);
}
BENCHMARK(BM_Sha1Stream_Zyn)->ArgName("fast")->Arg(1)->Arg(0);

void BM_Sha1_OpenSsl(benchmark::State& state) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  for (auto _ : state) {
    EVP_Digest(Message().data(), kSize, digest, nullptr, EVP_sha1(), nullptr);
    benchmark::DoNotOptimize(digest);
  }
  Finish(state);
}
BENCHMARK(BM_Sha1_OpenSsl);

void BM_Sha1File_Zyn(benchmark::State& state) {
  const std::u16string name = zyn::platform::FromUTF8(MessageFile().string());
  for (auto _ : state) benchmark::DoNotOptimize(Zyn_dstruct::SHA1FromFile(name));
  Finish(state);
}
BENCHMARK(BM_Sha1File_Zyn);

void BM_Sha1File_OpenSsl(benchmark::State& state) {
  std::vector<std::uint8_t> block(64 * 1024);
  unsigned char digest[EVP_MAX_MD_SIZE];
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  for (auto _ : state) {
    std::FILE* file = std::fopen(MessageFile().c_str(), "rb");
    EVP_DigestInit_ex(context, EVP_sha1(), nullptr);
    for (std::size_t n; (n = std::fread(block.data(), 1, block.size(), file)) > 0;) {
      EVP_DigestUpdate(context, block.data(), n);
    }
    EVP_DigestFinal_ex(context, digest, nullptr);
    std::fclose(file);
    benchmark::DoNotOptimize(digest);
  }
  EVP_MD_CTX_free(context);
  Finish(state);
}
BENCHMARK(BM_Sha1File_OpenSsl);

// --- ASCII85 ----------------------------------------------------------------
// The peer is what a user would write without the library: a plain loop over
// the bytes into a std::string and back, the same code (groups of four, "z",
// n + 1 digits for a short tail, "~>"; CR and LF skipped on reading).

std::string PlainAscii85Encode(std::span<const std::uint8_t> bytes) {
  std::string out;
  out.reserve(bytes.size() / 4 * 5 + 7);
  std::size_t i = 0;
  for (; i < bytes.size(); i += 4) {
    const std::size_t n = std::min<std::size_t>(4, bytes.size() - i);
    std::uint32_t value = 0;
    for (std::size_t k = 0; k < n; ++k) value = value << 8 | bytes[i + k];
    if (n == 4 && value == 0) {
      out += 'z';
      continue;
    }
    char digits[5];
    for (std::size_t k = n + 1; k-- > 0;) {
      digits[k] = static_cast<char>('!' + value % 85);
      value /= 85;
    }
    out.append(digits, n + 1);
  }
  out += "~>";
  return out;
}

std::vector<std::uint8_t> PlainAscii85Decode(std::string_view text) {
  std::vector<std::uint8_t> out;
  out.reserve(text.size() / 5 * 4 + 4);
  std::uint32_t sum = 0;
  int digits = 0;
  for (const char c : text) {
    if (c == '\r' || c == '\n') continue;
    if (c == '~') break;
    if (c == 'z' && digits == 0) {
      out.insert(out.end(), 4, 0);
      continue;
    }
    sum = sum * 85 + static_cast<std::uint32_t>(c - '!');
    if (++digits == 5) {
      for (int k = 3; k >= 0; --k) out.push_back(static_cast<std::uint8_t>(sum >> (8 * k)));
      sum = 0;
      digits = 0;
    }
  }
  for (int k = digits - 2; k >= 0; --k) out.push_back(static_cast<std::uint8_t>(sum >> (8 * k)));
  return out;
}

void BM_Ascii85Encode_Zyn(benchmark::State& state) {
  TMemoryStream source;
  source.Write(Message().data(), static_cast<int>(kSize));
  for (auto _ : state) {
    TMemoryStream dest;
    source.SetPosition(0);
    Zyn_dstruct::EncodeASCII85(source, dest);
    benchmark::DoNotOptimize(dest.Memory().data());
  }
  Finish(state);
}
BENCHMARK(BM_Ascii85Encode_Zyn);

void BM_Ascii85Encode_PlainLoop(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(PlainAscii85Encode(Message()).data());
  Finish(state);
}
BENCHMARK(BM_Ascii85Encode_PlainLoop);

// Bytes processed are the decoded bytes, so all rows count the same 1 MiB.
void BM_Ascii85Decode_Zyn(benchmark::State& state) {
  TMemoryStream source, encoded;
  source.Write(Message().data(), static_cast<int>(kSize));
  source.SetPosition(0);
  Zyn_dstruct::EncodeASCII85(source, encoded);
  for (auto _ : state) {
    TMemoryStream dest;
    encoded.SetPosition(0);
    benchmark::DoNotOptimize(Zyn_dstruct::DecodeASCII85(encoded, dest));
  }
  Finish(state);
}
BENCHMARK(BM_Ascii85Decode_Zyn);

void BM_Ascii85Decode_PlainLoop(benchmark::State& state) {
  const std::string text = PlainAscii85Encode(Message());
  if (PlainAscii85Decode(text) != Message()) state.SkipWithError("the peer decodes wrongly");
  for (auto _ : state) benchmark::DoNotOptimize(PlainAscii85Decode(text).data());
  Finish(state);
}
BENCHMARK(BM_Ascii85Decode_PlainLoop);

}  // namespace

BENCHMARK_MAIN();
