// cli/common.h
//
// What the zyn command's subcommands share: reading a file or standard
// input, writing standard output, text between the library's UTF-16 and the
// terminal's UTF-8, and the failure that ends a command with exit status 1.

#ifndef ZYN_CLI_COMMON_H_
#define ZYN_CLI_COMMON_H_

#include <CLI/CLI.hpp>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zyn_cli {

// Ends the command with exit status 1 and the line "zyn: <what>: <reason>".
class Failure : public std::runtime_error {
 public:
  Failure(std::string_view what, std::string_view reason)
      : std::runtime_error(std::string(what) + ": " + std::string(reason)) {}
};

// All bytes of a file, or of standard input for "-". A file that can't be
// read raises Failure naming it.
std::vector<std::uint8_t> ReadAll(const std::string& path);

// Writes bytes to standard output, unchanged.
void WriteOut(std::string_view bytes);
inline void WriteOut(const std::vector<std::uint8_t>& bytes) {
  WriteOut(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

// A path as the library takes it, and UTF-16 text as the terminal shows it.
std::u16string Path16(const std::string& path);
std::string Utf8(std::u16string_view text);

// The registration of each group of subcommands.
void AddCodecCommands(CLI::App& app);
void AddTextCommands(CLI::App& app);
void AddFileCommands(CLI::App& app);
void AddHtmlCommands(CLI::App& app);
void AddMarkCommands(CLI::App& app);
void AddDataCommands(CLI::App& app);
void AddSystemCommands(CLI::App& app);

}  // namespace zyn_cli

#endif  // ZYN_CLI_COMMON_H_
