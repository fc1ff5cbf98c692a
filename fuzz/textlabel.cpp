// Reads arbitrary bytes as a file of label blocks, by identifier and then on
// from where the first read stopped; the label that results must write and
// be found again.

#include "zyn/base/textlabel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_support.h"
#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"

namespace {

using zyn::platform::FromUTF8;
using zyn::platform::Textfile;

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const zyn::testing::TempDir scratch;
  zyn::testing::WriteFileBytes(scratch / "in",
                               std::string(reinterpret_cast<const char*>(data), size));
  Zyn_zynbase::TCustomTextLabel label;
  Textfile in;
  in.Assign(FromUTF8((scratch / "in").string()));
  in.Reset();
  label.ReadFromOpenXMLFile(in, u"label1");
  label.ReadFromOpenXMLFile(in, u"");
  in.Close();

  Textfile out;
  out.Assign(FromUTF8((scratch / "out").string()));
  out.Rewrite();
  label.WriteToOpenXMLFile(out, true, u"again", 3);
  out.Close();
  // A caption holding '>' or "</" can't come back whole, but the block is
  // always found and read to its end tag.
  Zyn_zynbase::TCustomTextLabel back;
  out.Reset();
  Check(back.ReadFromOpenXMLFile(out, u"AGAIN") ||
        label.Caption().find_first_of(u"<>") != std::u16string::npos);
  out.Close();
  return 0;
}
