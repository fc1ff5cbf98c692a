// The text-file tools on a large file of mixed line lengths, each beside the
// shell tool a user would run instead, in one run: CountLinesInTextFile and
// `wc -l`, ReadLastNLinesOfTextFile(10) and `tail -n 10` (reading the whole
// file through a pipe, and seeking from the end), DetectStringInFile and
// `grep -F -b -m1`. Wall-clock times, since the peers are child processes.
// ZYN_BENCH_TEXT_MB sets the file size (default 1024).

#include "zyn/filesys/textfiles.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "zyn/platform/text.h"

namespace {

const std::filesystem::path& TestFile() {
  static const std::filesystem::path path = [] {
    const char* mb = std::getenv("ZYN_BENCH_TEXT_MB");
    const std::size_t size = (mb ? std::strtoull(mb, nullptr, 10) : 1024) << 20;
    auto p = std::filesystem::temp_directory_path() /
             ("zyn_bench_text_" + std::to_string(std::random_device{}()) + ".txt");
    std::ofstream out(p, std::ios::binary);
    std::mt19937 rng(5);
    std::string block;
    std::size_t written = 0;
    while (written < size) {
      block.clear();
      while (block.size() < (1u << 20)) {
        // Mostly short lines, some empty, now and then a very long one.
        const unsigned kind = rng() % 100;
        const std::size_t length = kind < 5 ? 0 : kind < 99 ? rng() % 120 : 2000 + rng() % 20000;
        for (std::size_t i = 0; i < length; ++i)
          block.push_back(i % 7 == 6 ? ' ' : static_cast<char>('a' + rng() % 26));
        block += kind % 3 == 0 ? "\n" : "\r\n";
      }
      out.write(block.data(), static_cast<std::streamsize>(block.size()));
      written += block.size();
    }
    out << "the needle stands here\r\n";
    return p;
  }();
  return path;
}

std::u16string Name() { return zyn::platform::FromUTF8(TestFile().string()); }

void Shell(benchmark::State& state, const std::string& command) {
  const std::string line = command + " > /dev/null";
  for (auto _ : state) {
    if (std::system(line.c_str()) != 0) state.SkipWithError(("failed: " + command).c_str());
  }
}

void BM_CountLines(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Zyn_filesys::CountLinesInTextFile(Name(), nullptr));
}
void BM_WcL(benchmark::State& state) { Shell(state, "wc -l < '" + TestFile().string() + "'"); }

void BM_ReadLast10(benchmark::State& state) {
  int lines = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(Zyn_filesys::ReadLastNLinesOfTextFile(Name(), 10, lines));
}
void BM_TailThroughPipe(benchmark::State& state) {
  Shell(state, "cat '" + TestFile().string() + "' | tail -n 10");
}
void BM_TailFromEnd(benchmark::State& state) {
  Shell(state, "tail -n 10 < '" + TestFile().string() + "'");
}

void BM_Detect(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(Zyn_filesys::DetectStringInFile(Name(), u"needle", false, 2000000000));
}
void BM_GrepF(benchmark::State& state) {
  Shell(state, "grep -F -b -m1 needle '" + TestFile().string() + "'");
}

BENCHMARK(BM_CountLines)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WcL)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadLast10)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TailThroughPipe)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TailFromEnd)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Detect)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GrepF)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  TestFile();  // made before the clock runs
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  std::error_code ignored;
  std::filesystem::remove(TestFile(), ignored);
}
