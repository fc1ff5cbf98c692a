// Feeds arbitrary files to TFeatureMatrix's block reader. Whatever the bytes,
// the reader gives a result code and leaves a matrix whose every cell can be
// read; a block it loaded must survive a save and a second load unchanged.

#include "zyn/dstruct/featurematrix.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "fuzz/fuzz_support.h"
#include "zyn/platform/text.h"
#include "zyn/platform/textfile.h"

namespace {

using zyn::platform::Textfile;
using Zyn_dstruct::TFeatProps;
using Zyn_dstruct::TFeatureMatrix;

using zyn::fuzz::Check;

// A name cut to its capacity may end in blanks, which its line then loses.
template <std::size_t N>
std::string_view Trimmed(const zyn::platform::BasicShortString<N>& s) {
  std::string_view b = s.bytes();
  while (!b.empty() && b.back() == ' ') b.remove_suffix(1);
  return b;
}

// Every definition and value of the two matrices agree. Values are compared
// as stored texts, seen through a string feature, which takes any text.
void CheckEqual(TFeatureMatrix& a, TFeatureMatrix& b) {
  Check(a.NFeatures() == b.NFeatures() && a.NObjects() == b.NObjects());
  for (int fix = 1; fix <= a.NFeatures(); ++fix) {
    const TFeatProps p = a.FeatProps(fix);
    const TFeatProps q = b.FeatProps(fix);
    Check(p.FeatNum == q.FeatNum && p.FeatKind == q.FeatKind && p.Sorted == q.Sorted);
    Check(Trimmed(p.FeatName) == Trimmed(q.FeatName) && Trimmed(p.Comment) == Trimmed(q.Comment));
    Check(p.PresetValues == q.PresetValues);
    TFeatProps as_text = p;
    as_text.FeatKind = Zyn_dstruct::fkString;
    a.SetFeatProps(fix, as_text);
    b.SetFeatProps(fix, as_text);
    for (int obj = 1; obj <= a.NObjects(); ++obj) Check(a.FeatVal(fix, obj) == b.FeatVal(fix, obj));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const zyn::fuzz::ScratchFiles files{"featurematrix"};
  {
    std::ofstream out(files.in, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  const std::u16string in = zyn::platform::FromUTF8(files.in);
  const std::u16string out = zyn::platform::FromUTF8(files.out);

  Textfile f;
  f.Assign(in, zyn::platform::kCpWindows1252);
  f.Reset();
  TFeatureMatrix first;
  // Small shapes find the same faults as large ones, many times faster.
  first.SetMaxLoadedValues(1 << 14);
  const int result = first.LoadFromOpenFile(f);
  Check(result == 0 || result == -1 || result == -2);
  // Whatever was read, a second block may follow; the reader goes on from there.
  TFeatureMatrix next;
  Check(next.LoadFromOpenFile(f) <= 0);
  f.Close();

  // Every cell of what was read can be asked for; the typed reads raise only
  // the library's and the conversion's exceptions.
  for (int fix = 1; fix <= first.NFeatures() && fix <= 64; ++fix) {
    for (int obj = 1; obj <= first.NObjects() && obj <= 64; ++obj) {
      try {
        first.FeatValAsDouble(fix, obj);
      } catch (const zyn::platform::Exception&) {
      }
    }
  }
  // A large shape is legal, but saving it again costs seconds and finds
  // nothing a small one wouldn't.
  if (result != 0 || first.NFeatures() > 64 || first.NObjects() > 1024) return 0;

  first.Save(out);
  TFeatureMatrix second;
  Check(second.Load(out) == 0);
  CheckEqual(first, second);
  return 0;
}
