#include "cli/common.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>

#include "zyn/platform/text.h"

namespace zyn_cli {

std::vector<std::uint8_t> ReadAll(const std::string& path) {
  std::vector<std::uint8_t> bytes;
  if (path == "-") {
    std::cin >> std::noskipws;
    bytes.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    return bytes;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Failure(path, std::strerror(errno));
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (in.bad()) throw Failure(path, "read error");
  return bytes;
}

void WriteOut(std::string_view bytes) {
  std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::u16string Path16(const std::string& path) { return zyn::platform::FromUTF8(path); }

std::string Utf8(std::u16string_view text) { return zyn::platform::ToUTF8(text); }

}  // namespace zyn_cli
