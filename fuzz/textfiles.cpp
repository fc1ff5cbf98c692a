// Arbitrary bytes as a text file through the text-file tools and both forms
// of the ASC header reader: nothing may crash, and counting lines by
// skipping must agree with reading them one by one.

#include "zyn/filesys/textfiles.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_support.h"
#include "testing/zyn_testing.h"
#include "zyn/filesys/ascheader.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"

namespace {

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Zyn_filesys;
  static const zyn::testing::TempDir scratch;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  zyn::testing::WriteFileBytes(scratch / "in", bytes);
  const std::u16string name = zyn::platform::FromUTF8((scratch / "in").string());

  CheckTextFileType(name);
  zyn::platform::Textfile tf;
  tf.Assign(name);
  tf.Reset();
  int read = 0;
  while (!tf.Eof()) {
    tf.ReadLn();
    ++read;
  }
  Check(CountLinesInTextFile(tf, nullptr) == read);
  int counted = -1;
  const int n = size > 0 ? 1 + data[0] % 8 : 1;
  Check(ReadLastNLinesOfTextFile(tf, n, counted).size() == static_cast<std::size_t>(n));
  Check(counted == read);
  while (!ReadNextWordInTextFile(tf).empty()) {
  }
  tf.Close();

  std::u16string text;
  int n1 = 0, n2 = 0;
  bool f1, f2, f3, f4;
  const int status = ReadHeaderOfASC(name, text, n1, n2, f1, f2, f3, f4);
  Check(status <= 0 && status >= -4);
  zyn::platform::TMemoryStream m;
  m.WriteBuffer(bytes.data(), static_cast<std::int64_t>(bytes.size()));
  m.SetPosition(0);
  const int stream_status = ReadHeaderOfASC(&m, text, n1, n2, f1, f2, f3, f4);
  Check(stream_status == 0 || stream_status == -3);
  return 0;
}
