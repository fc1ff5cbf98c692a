// Feeds arbitrary bytes to the text file as file content: the characters
// read must be exactly the UTF-8 decoding of the bytes, a copy written back
// must reproduce them, and line, integer and tag reading must end cleanly,
// with nothing but EInOutError for bad numbers.

#include "zyn/platform/textfile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"
#include "zyn/streams/tagscan.h"

namespace {

using zyn::platform::EInOutError;
using zyn::platform::FromUTF8;
using zyn::platform::Textfile;

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  static const zyn::testing::TempDir scratch;
  zyn::testing::WriteFileBytes(scratch / "in", bytes);

  Textfile in, out;
  in.Assign(FromUTF8((scratch / "in").string()));
  in.Reset();
  out.Assign(FromUTF8((scratch / "out").string()));
  out.Rewrite();
  std::u16string chars;
  while (!in.Eof()) {
    chars.push_back(in.ReadChar());
    out.WriteChar(chars.back());
  }
  out.Close();
  Check(chars == FromUTF8(bytes));
  Check(zyn::testing::ReadFileBytes(scratch / "out") == bytes);

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
