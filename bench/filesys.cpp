// Copying files and trees beside the tool a user would run instead: one
// 256 MiB file with FileCopyFeedBk and with `cp`, and a tree of 10 000 small
// files with CopyFileTree and with `cp -r`, in the same run on a warm cache.
// The "Feedback" row counts feedback calls, as a progress bar would.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "zyn/filesys/trees.h"
#include "zyn/platform/text.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBigFile = std::size_t{256} << 20;
constexpr int kTreeDirs = 100;
constexpr int kFilesPerDir = 100;

const fs::path& Scratch() {
  static const fs::path path = [] {
    auto p = fs::temp_directory_path() / "zyn_bench_filesys";
    fs::remove_all(p);
    fs::create_directories(p);
    return p;
  }();
  return path;
}

std::u16string U(const fs::path& p) { return zyn::platform::FromUTF8(p.string()); }

void WriteFile(const fs::path& p, std::size_t size, std::mt19937& generator) {
  std::vector<char> bytes(size);
  for (auto& b : bytes) b = static_cast<char>(generator());
  std::ofstream(p, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(size));
}

const fs::path& BigFile() {
  static const fs::path path = [] {
    const fs::path p = Scratch() / "big.bin";
    std::mt19937 generator(1);
    std::ofstream out(p, std::ios::binary);
    std::vector<char> chunk(1 << 20);
    for (std::size_t done = 0; done < kBigFile; done += chunk.size()) {
      for (auto& b : chunk) b = static_cast<char>(generator());
      out.write(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    }
    return p;
  }();
  return path;
}

// 100 directories of 100 files of 100 to 4000 bytes.
const fs::path& SmallTree() {
  static const fs::path path = [] {
    const fs::path p = Scratch() / "tree";
    std::mt19937 generator(2);
    for (int d = 0; d < kTreeDirs; ++d) {
      const fs::path dir = p / ("dir" + std::to_string(d));
      fs::create_directories(dir);
      for (int f = 0; f < kFilesPerDir; ++f) {
        WriteFile(dir / ("file" + std::to_string(f) + ".dat"), 100 + generator() % 3900, generator);
      }
    }
    return p;
  }();
  return path;
}

void Shell(const std::string& command, benchmark::State& state) {
  if (std::system(command.c_str()) != 0) state.SkipWithError(("failed: " + command).c_str());
}

int feedback_calls = 0;
void CountCalls(int, int) { ++feedback_calls; }

void BM_CopyFile_Zyn(benchmark::State& state) {
  const fs::path target = Scratch() / "big.copy";
  const auto feedback = state.range(0) != 0 ? CountCalls : nullptr;
  for (auto _ : state) {
    if (Zyn_filesys::FileCopyFeedBk(U(BigFile()), U(target), false, feedback) != 0) {
      state.SkipWithError("copy failed");
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kBigFile));
  fs::remove(target);
}
BENCHMARK(BM_CopyFile_Zyn)->ArgName("Feedback")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_CopyFile_Cp(benchmark::State& state) {
  const fs::path target = Scratch() / "big.cp";
  const std::string command = "cp '" + BigFile().string() + "' '" + target.string() + "'";
  for (auto _ : state) Shell(command, state);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kBigFile));
  fs::remove(target);
}
BENCHMARK(BM_CopyFile_Cp)->Unit(benchmark::kMillisecond);

void BM_CopyTree_Zyn(benchmark::State& state) {
  const fs::path target = Scratch() / "tree.copy";
  for (auto _ : state) {
    state.PauseTiming();
    fs::remove_all(target);
    state.ResumeTiming();
    Zyn_filesys::CopyFileTree(U(SmallTree()), U(target), false, nullptr);
  }
  state.SetItemsProcessed(state.iterations() * kTreeDirs * kFilesPerDir);
  fs::remove_all(target);
}
BENCHMARK(BM_CopyTree_Zyn)->Unit(benchmark::kMillisecond);

void BM_CopyTree_CpR(benchmark::State& state) {
  const fs::path target = Scratch() / "tree.cp";
  const std::string command = "cp -r '" + SmallTree().string() + "' '" + target.string() + "'";
  for (auto _ : state) {
    state.PauseTiming();
    fs::remove_all(target);
    state.ResumeTiming();
    Shell(command, state);
  }
  state.SetItemsProcessed(state.iterations() * kTreeDirs * kFilesPerDir);
  fs::remove_all(target);
}
BENCHMARK(BM_CopyTree_CpR)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  // Both inputs exist and are read once before any timing: a warm cache.
  const std::string warm = "cat '" + BigFile().string() + "' >/dev/null && find '" +
                           SmallTree().string() + "' -type f -exec cat {} + >/dev/null";
  if (std::system(warm.c_str()) != 0) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  fs::remove_all(Scratch());
  return 0;
}
