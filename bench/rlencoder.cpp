// TRLEncoder encode and decode rates in MB/s of data, beside zlib's deflate
// with its run-length strategy (Z_RLE, level 1) and inflate, the choice a
// user would make for a fast run-length-style coder. Two inputs: runs of 1 to
// 40 equal bytes, as in raster images, and random bytes, the worst case.

#include "zyn/dstruct/rlencoder.h"

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using Zyn_dstruct::TRLEncoder;

constexpr std::size_t kDataSize = 1 << 22;
constexpr int kBlock = 4096;

Bytes MakeData(bool runs) {
  Bytes data;
  data.reserve(kDataSize);
  std::uint32_t seed = 12345;
  while (data.size() < kDataSize) {
    seed = seed * 1664525u + 1013904223u;
    const std::size_t len = runs ? 1 + (seed >> 8) % 40 : 1;
    data.insert(data.end(), std::min(len, kDataSize - data.size()),
                static_cast<std::uint8_t>(seed >> 24));
  }
  return data;
}

const Bytes& Data(bool runs) {
  static const Bytes with_runs = MakeData(true);
  static const Bytes random = MakeData(false);
  return runs ? with_runs : random;
}

// The documented calling order, a block of input per Encode.
void RleEncode(TRLEncoder& coder, const Bytes& data, Bytes& coded) {
  coded.clear();
  coder.Reset();
  Bytes block(kBlock);
  for (std::size_t at = 0; at < data.size(); at += kBlock) {
    const int n = static_cast<int>(std::min<std::size_t>(kBlock, data.size() - at));
    bool ready = coder.Encode(std::span(data).subspan(at), n);
    while (ready) {
      coder.GetResult(block);
      coded.insert(coded.end(), block.begin(), block.end());
      ready = coder.Encode({}, 0);
    }
  }
  int n = 0;
  do {
    n = coder.Finish(block);
    coded.insert(coded.end(), block.begin(), block.begin() + n);
  } while (n == kBlock);
}

void RleDecode(TRLEncoder& coder, const Bytes& coded, Bytes& out) {
  out.clear();
  coder.Reset();
  Bytes block(kBlock);
  for (std::uint8_t b : coded) {
    if (coder.Decode(b)) {
      coder.GetResult(block);
      out.insert(out.end(), block.begin(), block.end());
    }
  }
  int n = 0;
  do {
    n = coder.Finish(block);
    out.insert(out.end(), block.begin(), block.begin() + n);
  } while (n == kBlock);
}

void BM_RLEncoder_Encode(benchmark::State& state) {
  const Bytes& data = Data(state.range(0) != 0);
  TRLEncoder coder;
  coder.SetBufLeng(kBlock);
  Bytes coded;
  coded.reserve(3 * data.size());
  for (auto _ : state) {
    RleEncode(coder, data, coded);
    benchmark::DoNotOptimize(coded.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
  state.counters["ratio"] = static_cast<double>(coded.size()) / static_cast<double>(data.size());
}

void BM_RLEncoder_Decode(benchmark::State& state) {
  const Bytes& data = Data(state.range(0) != 0);
  TRLEncoder coder;
  coder.SetBufLeng(kBlock);
  Bytes coded;
  RleEncode(coder, data, coded);
  Bytes out;
  out.reserve(data.size() + kBlock);
  for (auto _ : state) {
    RleDecode(coder, coded, out);
    benchmark::DoNotOptimize(out.data());
  }
  if (out.size() != data.size() + 3) state.SkipWithError("round trip failed");
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

Bytes ZlibDeflate(const Bytes& data) {
  z_stream z{};
  if (deflateInit2(&z, 1, Z_DEFLATED, 15, 8, Z_RLE) != Z_OK) throw std::runtime_error("zlib");
  Bytes out(deflateBound(&z, data.size()));
  z.next_in = const_cast<Bytef*>(data.data());
  z.avail_in = static_cast<uInt>(data.size());
  z.next_out = out.data();
  z.avail_out = static_cast<uInt>(out.size());
  deflate(&z, Z_FINISH);
  out.resize(z.total_out);
  deflateEnd(&z);
  return out;
}

void BM_Zlib_RLE_Deflate(benchmark::State& state) {
  const Bytes& data = Data(state.range(0) != 0);
  std::size_t coded = 0;
  for (auto _ : state) {
    const Bytes out = ZlibDeflate(data);
    coded = out.size();
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
  state.counters["ratio"] = static_cast<double>(coded) / static_cast<double>(data.size());
}

void BM_Zlib_Inflate(benchmark::State& state) {
  const Bytes& data = Data(state.range(0) != 0);
  const Bytes coded = ZlibDeflate(data);
  Bytes out(data.size());
  for (auto _ : state) {
    uLongf len = static_cast<uLongf>(out.size());
    uncompress(out.data(), &len, coded.data(), static_cast<uLong>(coded.size()));
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

// Argument 1: runs of equal bytes; 0: random bytes.
BENCHMARK(BM_RLEncoder_Encode)->Arg(1)->Arg(0);
BENCHMARK(BM_Zlib_RLE_Deflate)->Arg(1)->Arg(0);
BENCHMARK(BM_RLEncoder_Decode)->Arg(1)->Arg(0);
BENCHMARK(BM_Zlib_Inflate)->Arg(1)->Arg(0);

}  // namespace

BENCHMARK_MAIN();
