// Feeds arbitrary files to TStringArray's XML reader. Whatever the bytes, the
// reader gives True or False and leaves a usable table; a table it loaded
// must survive a save and a second load cell for cell.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "fuzz/fuzz_support.h"
#include "zyn/dstruct/stringarray.h"
#include "zyn/platform/text.h"

namespace {

using Zyn_dstruct::ShortString;
using Zyn_dstruct::TStringArray;

using zyn::fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const zyn::fuzz::ScratchFiles files{"stringarray_xml"};
  {
    std::ofstream out(files.in, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  const std::u16string in = zyn::platform::FromUTF8(files.in);
  const std::u16string out = zyn::platform::FromUTF8(files.out);

  TStringArray table;
  table.SetString(1, 1, ShortString(u"before"));
  const bool loaded = table.LoadFromXMLFile(in, size % 2 ? u"" : u"t");
  if (!loaded) Check(table.GetString(1, 1) == ShortString(u"before"));

  // The table is usable either way.
  table.SetString(0, table.NrOfRows(), ShortString(u"x"));
  table.Sort(1, 0, true);
  table.GarbageCollection();
  for (int r = 1; r <= table.NrOfRows(); ++r) {
    Check(table.GetSortOrder(r) >= 1 && table.GetSortOrder(r) <= table.NrOfRows());
  }

  if (loaded) {
    table.UnSort();
    table.SaveAsXMLFile(out, u"again");
    TStringArray copy;
    Check(copy.LoadFromXMLFile(out, u"again"));
    Check(copy.NrOfColumns() == table.NrOfColumns() && copy.NrOfRows() == table.NrOfRows());
    for (int r = 1; r <= table.NrOfRows(); ++r)
      for (int c = 0; c <= table.NrOfColumns(); ++c)
        Check(copy.GetString(c, r) == table.GetString(c, r));
  }
  return 0;
}
