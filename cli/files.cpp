// Files: copy and copytree with a progress bar, deltree, trash.

#include "zyn/platform/files.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/common.h"
#include "zyn/filesys/trees.h"
#include "zyn/platform/string_list.h"

namespace zyn_cli {

namespace {

using Clock = std::chrono::steady_clock;

// What the progress line shows. The library's feedback is a plain function,
// so the state of the one running copy lives here.
struct Progress {
  std::int64_t total_bytes = 0;
  int total_files = 0;
  std::int64_t done_bytes = 0;  // of the files finished before the current one
  int current_file = 0;
  int current_bytes = 0, current_size = 0;
  Clock::time_point start, last_drawn;
  bool terminal = false;
};
Progress progress;
volatile sig_atomic_t interrupted = 0;

std::string Size(double bytes) {
  static constexpr const char* kUnits[] = {"B", "KiB", "MiB", "GiB", "TiB"};
  int unit = 0;
  while (bytes >= 1024 && unit < 4) {
    bytes /= 1024;
    ++unit;
  }
  char text[32];
  std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, kUnits[unit]);
  return text;
}

void Draw(bool final) {
  const auto now = Clock::now();
  if (!final && now - progress.last_drawn < std::chrono::milliseconds(100)) return;
  progress.last_drawn = now;
  const double seconds = std::chrono::duration<double>(now - progress.start).count();
  const double bytes = static_cast<double>(progress.done_bytes + progress.current_bytes);
  const double rate = seconds > 0 ? bytes / seconds : 0;
  const double total = static_cast<double>(progress.total_bytes);
  const double part = total > 0 ? std::min(bytes / total, 1.0) : 1.0;
  std::string line;
  if (progress.terminal) {
    constexpr int kWidth = 24;
    const int filled = static_cast<int>(part * kWidth);
    line = "\r[" + std::string(static_cast<std::size_t>(filled), '#') +
           std::string(static_cast<std::size_t>(kWidth - filled), '.') + "] ";
  }
  char text[160];
  const double left = rate > 0 ? (total - bytes) / rate : 0;
  std::snprintf(text, sizeof text, "%3.0f%%  %s of %s  %d/%d files  %s/s  %s %.1f s", part * 100,
                Size(bytes).c_str(), Size(total).c_str(), progress.current_file,
                progress.total_files, Size(rate).c_str(), final ? "took" : "left",
                final ? seconds : left);
  line += text;
  if (progress.terminal) line += "\x1b[K";
  if (final) line += "\n";
  std::cerr << line << std::flush;
}

void FileFeedback(int bytes, int size) {
  progress.current_file = 1;
  progress.current_bytes = bytes;
  progress.current_size = size;
  if (progress.terminal) Draw(false);
}

void TreeFeedback(int bytes, int size, std::u16string_view, int files) {
  if (files != progress.current_file) {
    progress.done_bytes += progress.current_size;
    progress.current_file = files;
  }
  progress.current_bytes = bytes;
  progress.current_size = size;
  if (progress.terminal) Draw(false);
}

// Ctrl-C asks the running copy to stop at its next round.
void OnInterrupt(int) {
  interrupted = 1;
  Zyn_filesys::AbortAnyFileCopying();
}

struct InterruptGuard {
  struct sigaction old {};
  InterruptGuard() {
    struct sigaction sa {};
    sa.sa_handler = OnInterrupt;
    sigemptyset(&sa.sa_mask);
    sigaction(SIGINT, &sa, &old);
  }
  ~InterruptGuard() { sigaction(SIGINT, &old, nullptr); }
};

void StartProgress(std::int64_t bytes, int files) {
  progress = Progress{};
  progress.total_bytes = bytes;
  progress.total_files = files;
  progress.start = progress.last_drawn = Clock::now();
  progress.terminal = isatty(STDERR_FILENO) == 1;
}

std::int64_t SizeOf(const std::u16string& name) {
  zyn::platform::TSearchRec rec;
  if (zyn::platform::FindFirst(name, zyn::platform::faAnyFile, rec) != 0) return 0;
  const std::int64_t size = rec.Size;
  zyn::platform::FindClose(rec);
  return size;
}

struct CopyOptions {
  std::string source, target;
  bool attributes = false, yes = false;
  std::vector<std::string> files;
};

}  // namespace

void AddFileCommands(CLI::App& app) {
  auto o = std::make_shared<CopyOptions>();
  CLI::App* copy = app.add_subcommand(
      "copy", "Copy a file, with a progress bar on standard error (Ctrl-C stops it)");
  copy->add_option("SRC", o->source, "The file to copy")->required();
  copy->add_option("DST", o->target, "The copy, or a directory to copy into")->required();
  copy->add_flag("-a,--attributes", o->attributes, "Carry the permissions over too");
  copy->callback([o] {
    const std::u16string source = Path16(o->source);
    if (!zyn::platform::FileExists(source)) throw Failure(o->source, "no such file");
    StartProgress(SizeOf(source), 1);
    InterruptGuard guard;
    const int status =
        Zyn_filesys::FileCopyFeedBk(source, Path16(o->target), o->attributes, FileFeedback);
    Draw(true);
    static constexpr const char* kReasons[] = {"", "can't be opened for copying",
                                               "the target can't be created", "write error",
                                               "read error"};
    if (status < 0 && status >= -4)
      throw Failure(status == -2 ? o->target : o->source, kReasons[-status]);
    if (interrupted) throw Failure(o->source, "copy interrupted");
  });

  CLI::App* tree = app.add_subcommand(
      "copytree", "Copy a directory tree, with a progress bar on standard error (Ctrl-C stops it)");
  tree->add_option("SRC", o->source, "The directory to copy")->required();
  tree->add_option("DST", o->target, "Where the tree goes")->required();
  tree->add_flag("-a,--attributes", o->attributes, "Carry the permissions over too");
  tree->callback([o] {
    const std::u16string source = Path16(o->source);
    if (!Zyn_filesys::DirExists(source)) throw Failure(o->source, "no such directory");
    zyn::platform::TStringList files;
    Zyn_filesys::ScanFilesToStrList(source + u"/*", true, &files, nullptr);
    std::int64_t bytes = 0;
    for (int i = 0; i < files.Count(); ++i) bytes += SizeOf(files[i]);
    StartProgress(bytes, files.Count());
    InterruptGuard guard;
    Zyn_filesys::CopyFileTree(source, Path16(o->target), o->attributes, TreeFeedback);
    progress.done_bytes += progress.current_size;
    progress.current_bytes = 0;
    Draw(true);
    if (interrupted) throw Failure(o->source, "copy interrupted");
  });

  CLI::App* del = app.add_subcommand("deltree", "Delete a directory and everything below it");
  del->add_option("DIR", o->source, "The directory")->required();
  del->add_flag("-y,--yes", o->yes, "Don't ask");
  del->callback([o] {
    if (!Zyn_filesys::DirExists(Path16(o->source))) throw Failure(o->source, "no such directory");
    if (!o->yes) {
      std::cerr << "Delete " << o->source << " and everything below it? [y/N] " << std::flush;
      std::string answer;
      std::getline(std::cin, answer);
      if (answer != "y" && answer != "Y" && answer != "yes")
        throw Failure(o->source, "not deleted (not confirmed)");
    }
    const std::u16string stuck = Zyn_filesys::DelDirTree(Path16(o->source));
    if (!stuck.empty()) throw Failure(Utf8(stuck), "could not be removed");
  });

  CLI::App* trash = app.add_subcommand("trash", "Move files to the desktop's trash");
  trash->add_option("FILE", o->files, "Files or masks such as *.log")->required();
  trash->callback([o] {
    for (const std::string& f : o->files) {
      if (Zyn_filesys::MoveToRecycleBin(Path16(f)) == 0)
        throw Failure(f, "nothing moved to the trash");
    }
  });
}

}  // namespace zyn_cli
