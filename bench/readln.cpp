// Reading the lines of a 64 MiB text file: ReadLnStream on a TFileStream
// against std::getline on an std::ifstream, in one run. The file has CR LF
// line ends and lines of 0 to 120 characters.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"
#include "zyn/streams/streamio.h"

namespace {

constexpr std::size_t kFileSize = 64u << 20;

const std::filesystem::path& TestFile() {
  static const std::filesystem::path path = [] {
    auto p = std::filesystem::temp_directory_path() /
             ("zyn_bench_readln_" + std::to_string(std::random_device{}()) + ".txt");
    std::mt19937 rng(42);
    std::string text;
    text.reserve(kFileSize + 256);
    while (text.size() < kFileSize) {
      const std::size_t length = rng() % 121;
      for (std::size_t i = 0; i < length; ++i) text.push_back(static_cast<char>('a' + rng() % 26));
      text += "\r\n";
    }
    std::ofstream(p, std::ios::binary)
        .write(text.data(), static_cast<std::streamsize>(text.size()));
    return p;
  }();
  return path;
}

struct Cleanup {
  ~Cleanup() {
    std::error_code ignored;
    std::filesystem::remove(TestFile(), ignored);
  }
};

void BM_ReadLnStream(benchmark::State& state) {
  const std::u16string name = zyn::platform::FromUTF8(TestFile().string());
  std::size_t lines = 0;
  for (auto _ : state) {
    zyn::platform::TFileStream stream(name, zyn::platform::fmOpenRead);
    bool eof = false;
    lines = 0;
    while (true) {
      const std::u16string line = Zyn_streams::ReadLnStream(stream, eof, 0);
      if (eof) break;
      benchmark::DoNotOptimize(line.data());
      ++lines;
    }
  }
  state.counters["lines"] = static_cast<double>(lines);
  state.SetBytesProcessed(
      static_cast<std::int64_t>(state.iterations() * std::filesystem::file_size(TestFile())));
}

void BM_StdGetline(benchmark::State& state) {
  std::size_t lines = 0;
  for (auto _ : state) {
    std::ifstream in(TestFile(), std::ios::binary);
    std::string line;
    lines = 0;
    while (std::getline(in, line)) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      benchmark::DoNotOptimize(line.data());
      ++lines;
    }
  }
  state.counters["lines"] = static_cast<double>(lines);
  state.SetBytesProcessed(
      static_cast<std::int64_t>(state.iterations() * std::filesystem::file_size(TestFile())));
}

BENCHMARK(BM_ReadLnStream)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_StdGetline)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

int main(int argc, char** argv) {
  TestFile();
  Cleanup cleanup;
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
