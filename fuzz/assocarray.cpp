// Feeds arbitrary bytes to TAssocArray's stored-form reader and to
// AddXMLAttributes, and builds tables of every value kind from the bytes.
// Whatever the input, reading gives True or False and leaves the table as it
// was on False; every table that exists must survive a write and a read
// entry for entry.

#include "zyn/dstruct/assocarray.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"

namespace {

using zyn::platform::Variant;
using Zyn_dstruct::TAssocArray;

using zyn::fuzz::Check;

bool SameTable(const TAssocArray& a, const TAssocArray& b) {
  if (a.NumEntries() != b.NumEntries()) return false;
  for (int ix = 1; ix <= a.NumEntries(); ++ix) {
    if (a.GetKeys(ix) != b.GetKeys(ix) || !(a.GetValues(ix) == b.GetValues(ix))) return false;
  }
  return true;
}

void CheckRoundTrip(const TAssocArray& a) {
  zyn::platform::TMemoryStream s;
  a.WriteToXMLStream(s, true, a.DataID());
  a.WriteToXMLStream(s, false, a.DataID() + u"2");
  s.SetPosition(0);
  TAssocArray b;
  Check(b.ReadFromXMLStream(s, a.DataID() + u"2"));
  Check(SameTable(a, b));
  s.SetPosition(0);
  Check(b.ReadFromXMLStream(s, u""));
  Check(SameTable(a, b) && b.DataID() == a.DataID());
}

// Reads little pieces of the input, zeros behind its end.
struct Bytes {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t at = 0;

  bool Empty() const { return at >= size; }
  std::uint64_t Take(std::size_t n) {
    std::uint64_t v = 0;
    for (std::size_t i = 0; i < n; ++i) v = v << 8 | (at < size ? data[at++] : 0);
    return v;
  }
  std::u16string Text() {
    std::u16string s(Take(1) % 8, u'\0');
    for (auto& c : s) c = static_cast<char16_t>(Take(1) % 2 ? Take(2) : Take(1) % 128);
    return s;
  }
};

Variant MakeValue(Bytes& in) {
  const std::uint64_t raw = in.Take(8);
  double d = 0;
  std::memcpy(&d, &raw, sizeof d);
  switch (in.Take(1) % 17) {
    case 0:
      return Variant();
    case 1:
      return Variant::Null();
    case 2:
      return Variant(static_cast<std::int16_t>(raw));
    case 3:
      return Variant(static_cast<std::int32_t>(raw));
    case 4:
      return Variant(static_cast<float>(d));
    case 5:
      return Variant(d);
    case 6:
      return Variant(zyn::platform::TCurrency{static_cast<std::int64_t>(raw)});
    case 7:
      return Variant(zyn::platform::TDateTime{d});
    case 8:
      return Variant(raw % 2 == 0);
    case 9:
      return Variant(static_cast<std::int8_t>(raw));
    case 10:
      return Variant(static_cast<std::uint8_t>(raw));
    case 11:
      return Variant(static_cast<std::uint16_t>(raw));
    case 12:
      return Variant(static_cast<std::uint32_t>(raw));
    case 13:
      return Variant(static_cast<std::int64_t>(raw));
    case 14:
      return Variant::FromAnsi(zyn::platform::StringToAnsi(in.Text()));
    default:
      return Variant(in.Text());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The bytes as a stream holding stored blocks.
  {
    zyn::platform::TMemoryStream s;
    s.WriteBuffer(data, static_cast<int>(size));
    s.SetPosition(0);
    TAssocArray a;
    a.Add(u"before", Variant(1));
    const bool loaded = a.ReadFromXMLStream(s, size % 2 ? u"" : u"t");
    if (!loaded) Check(a.NumEntries() == 1 && a.Resolve(u"before") == Variant(1));
    CheckRoundTrip(a);
  }
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  // The bytes as attribute text.
  {
    TAssocArray a;
    a.SetIgnoreCase(size % 3 != 0);
    const int taken = a.AddXMLAttributes(zyn::platform::FromUTF8(bytes));
    Check(taken >= 0 && a.NumEntries() <= taken);
    CheckRoundTrip(a);
  }
  // The bytes as a recipe for a table, keys written through Keys included.
  {
    Bytes in{data, size};
    TAssocArray a;
    a.SetGranularity(static_cast<int>(in.Take(1) % 4));
    a.SetDataID(in.Text());
    while (!in.Empty()) {
      const std::uint64_t op = in.Take(1);
      if (op % 8 == 7) {
        a.SetKeys(static_cast<int>(in.Take(1)), in.Text());
      } else if (op % 8 == 6) {
        a.Remove(in.Text());
      } else {
        const std::u16string key = in.Text();
        a.Add(key, MakeValue(in));
      }
    }
    CheckRoundTrip(a);
  }
  return 0;
}
