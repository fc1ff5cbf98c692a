// Text: grep, lines, tail, detect, asc-header.

#include "zyn/platform/text.h"

#include <memory>
#include <string>
#include <vector>

#include "cli/common.h"
#include "zyn/filesys/ascheader.h"
#include "zyn/filesys/textfiles.h"
#include "zyn/stringl/grep.h"

namespace zyn_cli {

namespace {

// The lines of a text as the library's text files read them: CR LF, LF and
// a lone CR each end one.
std::vector<std::u16string> Lines(std::u16string_view text) {
  std::vector<std::u16string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find_first_of(u"\r\n", start);
    if (end == std::u16string_view::npos) {
      lines.emplace_back(text.substr(start));
      break;
    }
    lines.emplace_back(text.substr(start, end - start));
    start = end + 1;
    if (text[end] == u'\r' && start < text.size() && text[start] == u'\n') ++start;
  }
  return lines;
}

struct GrepOptions {
  std::string pattern;
  std::vector<std::string> files{"-"};
  bool ignore_case = false, numbers = false, count = false, positions = false;
};

void RunGrep(const GrepOptions& o) {
  Zyn_stringl::TGrep grep;
  grep.SetIgnoreCase(o.ignore_case);
  try {
    grep.SetRegExp(zyn::platform::FromUTF8(o.pattern));
  } catch (const std::exception& e) {
    throw CLI::ValidationError("PATTERN", e.what());
  }
  const bool names = o.files.size() > 1;
  for (const std::string& file : o.files) {
    const std::vector<std::uint8_t> bytes = ReadAll(file);
    const std::vector<std::u16string> lines = Lines(zyn::platform::FromUTF8(
        std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size())));
    const std::string prefix = names ? file + ":" : "";
    int matching = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const std::u16string& line = lines[i];
      const std::string where = prefix + (o.numbers ? std::to_string(i + 1) + ":" : "");
      // Every match: search again behind the last one.
      int from = 1, found = 0;
      while (from <= static_cast<int>(line.size()) + 1) {
        grep.SetSearchStartPos(from);
        int start = 0;
        if (!grep.MatchString(line, start)) break;
        ++found;
        const int first = grep.MatchStartPos(), last = grep.MatchEndPos();
        if (o.positions && !o.count) {
          const auto length = static_cast<std::size_t>(std::max(last - first + 1, 0));
          WriteOut(
              where + std::to_string(first) + "-" + std::to_string(last) + ":" +
              Utf8(std::u16string_view(line).substr(static_cast<std::size_t>(first - 1), length)) +
              "\n");
        }
        if (!o.positions) break;
        from = std::max(last + 1, first + 1);
      }
      if (found == 0) continue;
      ++matching;
      if (!o.count && !o.positions) WriteOut(where + Utf8(line) + "\n");
    }
    if (o.count) WriteOut(prefix + std::to_string(matching) + "\n");
  }
}

void FileArg(CLI::App* sub, const std::shared_ptr<std::string>& file) {
  sub->add_option("FILE", *file, "The text file")->required();
}

}  // namespace

void AddTextCommands(CLI::App& app) {
  auto grep = std::make_shared<GrepOptions>();
  CLI::App* g = app.add_subcommand(
      "grep",
      "Print the lines that match PATTERN, in the library's own expression dialect "
      "(exit status 0 whether or not a line matched)");
  g->add_option("PATTERN", grep->pattern, "The expression")->required();
  g->add_option("FILE", grep->files, "Files to search (\"-\" for standard input)");
  g->add_flag("-i,--ignore-case", grep->ignore_case, "Fold case");
  g->add_flag("-n,--line-number", grep->numbers, "Put the line number in front");
  g->add_flag("-c,--count", grep->count, "Print only the number of matching lines");
  g->add_flag("-p,--positions", grep->positions,
              "Print each match as START-END:TEXT, 1-based, as the matcher reports it");
  g->callback([grep] { RunGrep(*grep); });

  auto file = std::make_shared<std::string>();
  CLI::App* lines = app.add_subcommand("lines", "Count the lines of a text file");
  FileArg(lines, file);
  lines->callback([file] {
    WriteOut(std::to_string(Zyn_filesys::CountLinesInTextFile(Path16(*file), nullptr)) + "\n");
  });

  auto tail_file = std::make_shared<std::string>();
  auto count = std::make_shared<int>(10);
  CLI::App* tail = app.add_subcommand("tail", "Print the last lines of a text file");
  FileArg(tail, tail_file);
  tail->add_option("-n,--lines", *count, "How many lines")->check(CLI::Range(1, 1 << 20));
  tail->callback([tail_file, count] {
    int total = 0;
    const auto last = Zyn_filesys::ReadLastNLinesOfTextFile(Path16(*tail_file), *count, total);
    // A file shorter than N lines gives empty strings first; leave them out.
    const std::size_t skip = total < *count ? static_cast<std::size_t>(*count - total) : 0;
    for (std::size_t i = skip; i < last.size(); ++i) WriteOut(Utf8(last[i]) + "\n");
  });

  auto detect_file = std::make_shared<std::string>();
  CLI::App* detect =
      app.add_subcommand("detect", "Tell the kind of a text file by its first bytes");
  FileArg(detect, detect_file);
  detect->callback([detect_file] {
    static constexpr const char* kNames[] = {"tftUnicode_le  UTF-16, little-endian",
                                             "tftUnicode_be  UTF-16, big-endian",
                                             "tftUnicode4_le UTF-32, little-endian",
                                             "tftUnicode4_be UTF-32, big-endian",
                                             "tftRTF         Rich Text Format",
                                             "tftUTF8        UTF-8 with a byte-order mark",
                                             "tftUnknown     no mark: plain text or unknown"};
    WriteOut(std::string(kNames[Zyn_filesys::CheckTextFileType(Path16(*detect_file))]) + "\n");
  });

  auto asc_file = std::make_shared<std::string>();
  CLI::App* asc = app.add_subcommand("asc-header", "Read the four-line header of an ASC data file");
  FileArg(asc, asc_file);
  asc->callback([asc_file] {
    std::u16string text;
    int n1 = 0, n2 = 0;
    bool f[4] = {};
    const int status =
        Zyn_filesys::ReadHeaderOfASC(Path16(*asc_file), text, n1, n2, f[0], f[1], f[2], f[3]);
    auto word = [](bool b) { return b ? "TRUE" : "FALSE"; };
    WriteOut("text:  " + Utf8(text) + "\nn1:    " + std::to_string(n1) +
             "\nn2:    " + std::to_string(n2) + "\nflags: " + word(f[0]) + " " + word(f[1]) + " " +
             word(f[2]) + " " + word(f[3]) + "\n");
    static constexpr const char* kReasons[] = {
        "", "line 2 holds no integer", "line 3 holds no integer",
        "line 4 lacks TRUE/FALSE keywords", "line 1 holds a bare LF (lines must end in CR LF)"};
    if (status != 0)
      throw Failure(*asc_file,
                    std::string(kReasons[-status]) + " (status " + std::to_string(status) + ")");
  });
}

}  // namespace zyn_cli
