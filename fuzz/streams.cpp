// Feeds arbitrary bytes to the readers of Zyn_streams: ReadLnStream under
// every line-end rule, the two number scanners in all their modes, the tag
// reader with attribute lookup, and the other stream scanners. Each must end,
// stay within its input and keep its promises on results.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "zyn/base/univconst.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/string_list.h"
#include "zyn/streams/numscan.h"
#include "zyn/streams/streamio.h"
#include "zyn/streams/tagscan.h"

namespace {

using zyn::platform::TMemoryStream;
using namespace Zyn_streams;

using zyn::fuzz::Check;

void Lines(TMemoryStream& m, std::int64_t size) {
  for (int rule : {0, 1, 2, 3, 4, 9}) {
    m.SetPosition(0);
    bool eof = false;
    std::int64_t total = 0;
    while (!eof) {
      total += std::ssize(ReadLnStream(m, eof, rule));
      Check(m.Position() <= size && total <= size);
    }
    Check(m.Position() == size);
  }
}

void Numbers(TMemoryStream& m, std::int64_t size) {
  // -1 the decimal scanner; 0 to 4 the separator modes, 5 to 9 again with exponent.
  for (int mode = -1; mode < 10; ++mode) {
    m.SetPosition(0);
    while (m.Position() < size) {
      const std::int64_t before = m.Position();
      const double v = mode < 0 ? ScanStreamDecimal(m) : ScanStreamFPNum(m, mode >= 5, mode % 5);
      Check(m.Position() > before);
      Check(std::isfinite(v) && std::fabs(v) <= Zyn_univconst::uc_MaxDouble);
    }
  }
}

void Tags(TMemoryStream& m, std::int64_t size) {
  const std::vector<std::u16string> list = {u"a", u"b", u"", u"/a", u"?xml", u"spare"};
  const int high = static_cast<int>(list.size()) - 1;
  m.SetPosition(0);
  std::u16string attr, content;
  do {
    const int index = ReadNextTagInStream(m, list, high, attr, content);
    Check(index >= 0 && index <= high);
    Check(static_cast<std::int64_t>(attr.size() + content.size()) <= size);
    for (const char16_t* name : {u"a", u"B", u"", u"size"}) {
      Check(ScanForXMLAttrib(attr, name).size() <= attr.size());
    }
  } while (m.Position() < size);

  m.SetPosition(0);
  while (ScanStreamForXMLTag(m, u"a", attr, content)) Check(m.Position() <= size);
  Check(m.Position() == size);

  zyn::platform::TStringList names;
  names.Add(u"a");
  names.Add(u"B");
  TMemoryStream out;
  m.SetPosition(0);
  ExtractFromStream(m, out, names);
  Check(out.Size() <= size);
}

void Searches(TMemoryStream& m, std::int64_t size, const std::uint8_t* data) {
  const std::vector<std::u16string> texts = {u"</A>", u"\r\n", u"x"};
  int status = 0;
  for (const std::u16string& text : texts) {
    m.SetPosition(0);
    Check(std::ssize(ReadStreamUntil(m, text, status)) == m.Position());
  }
  m.SetPosition(0);
  Check(std::ssize(ReadStreamUntilTagList(m, texts, 2, status)) == m.Position());
  Check(status >= -1 && status <= 2);

  // The first bytes are the pattern, the next ones the replacement.
  const std::size_t n = static_cast<std::size_t>(size);
  const std::u16string pattern(data, data + std::min<std::size_t>(n, 2));
  const std::u16string replacement(data + std::min<std::size_t>(n, 2),
                                   data + std::min<std::size_t>(n, 6));
  TMemoryStream out;
  const int count =
      SearchAndReplace(m, out, pattern, replacement, (n & 1) != 0, static_cast<int>(n % 5) - 1,
                       static_cast<int>(n % 3), u"\\",
                       [](std::u16string_view modifier, std::u16string& r) { r = modifier; });
  Check(count >= 0 && count <= size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 1 << 16) return 0;
  TMemoryStream m;
  m.WriteBuffer(data, static_cast<int>(size));
  const auto n = static_cast<std::int64_t>(size);
  Lines(m, n);
  Numbers(m, n);
  Tags(m, n);
  Searches(m, n, data);
  return 0;
}
