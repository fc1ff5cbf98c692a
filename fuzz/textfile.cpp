// Feeds arbitrary bytes to the text file as file content: the characters
// read must be exactly the UTF-8 decoding of the bytes, a copy written back
// must reproduce them, and line, integer and tag reading must end cleanly,
// with nothing but EInOutError for bad numbers.

#include "zyn/platform/textfile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "zyn/platform/text.h"
#include "zyn/streams/tagscan.h"

namespace {

using zyn::platform::EInOutError;
using zyn::platform::FromUTF8;
using zyn::platform::Textfile;

void Check(bool ok) {
  if (!ok) std::abort();
}

// A scratch directory for the process, removed when it ends.
struct ScratchDir {
  ScratchDir() {
    std::random_device rd;
    path = std::filesystem::temp_directory_path() /
           ("zyn_fuzz_textfile_" + std::to_string(rd()) + std::to_string(rd()));
    std::filesystem::create_directories(path);
  }
  ~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;
};

const std::filesystem::path& Scratch() {
  static const ScratchDir dir;
  return dir.path;
}

std::string ReadBytes(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const auto in_path = Scratch() / "in";
  const auto out_path = Scratch() / "out";
  {
    std::ofstream out(in_path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  const std::u16string in_name = FromUTF8(in_path.string());

  Textfile in, out;
  in.Assign(in_name);
  in.Reset();
  out.Assign(FromUTF8(out_path.string()));
  out.Rewrite();
  std::u16string chars;
  while (!in.Eof()) {
    chars.push_back(in.ReadChar());
    out.WriteChar(chars.back());
  }
  out.Close();
  Check(chars == FromUTF8(bytes));
  Check(ReadBytes(out_path) == bytes);

  in.Reset();
  std::size_t total = 0;
  while (!in.Eof()) total += in.ReadLn().size();
  Check(total <= chars.size());

  in.Reset();
  try {
    for (int i = 0; i < 1000 && !in.Eof(); ++i) in.ReadInteger();
  } catch (const EInOutError& e) {
    Check(e.ErrorCode() == zyn::platform::kIoInvalidNumericInput);
  }
  Check(zyn::platform::IOResult() >= 0);

  in.Reset();
  const std::vector<std::u16string> list = {u"a", u"", u"spare"};
  std::u16string attr, content;
  do {
    const int index = Zyn_streams::ReadNextTagInTextFile(in, list, 2, attr, content);
    Check(index >= 0 && index <= 2);
  } while (!in.Eof());
  in.Close();
  return 0;
}
