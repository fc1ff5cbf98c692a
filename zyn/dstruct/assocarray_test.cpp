#include "zyn/dstruct/assocarray.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/stream.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::TCurrency;
using zyn::platform::TDateTime;
using zyn::platform::TMemoryStream;
using zyn::testing::Utf8;

// Adds the (key, value) pairs in order.
void Fill(TAssocArray& a, std::initializer_list<std::pair<std::u16string_view, int>> entries) {
  for (const auto& [key, value] : entries) a.Add(key, Variant(value));
}

std::vector<std::u16string> KeysOf(const TAssocArray& a) {
  std::vector<std::u16string> keys;
  for (int ix = 1; ix <= a.NumEntries(); ++ix) keys.push_back(a.GetKeys(ix));
  return keys;
}

std::vector<Variant> ValuesOf(const TAssocArray& a) {
  std::vector<Variant> values;
  for (int ix = 1; ix <= a.NumEntries(); ++ix) values.push_back(a.GetValues(ix));
  return values;
}

TEST(TAssocArrayTest, CaseRuleAddRemoveAndIndexedAccess) {
  TAssocArray a;
  Fill(a, {{u"Alpha", 1}, {u"ALPHA", 2}, {u"beta", 3}, {u"Gamma", 4}});
  EXPECT_EQ(KeysOf(a), (std::vector<std::u16string>{u"alpha", u"beta", u"gamma"}));
  EXPECT_EQ(ValuesOf(a), (std::vector<Variant>{Variant(2), Variant(3), Variant(4)}));

  TAssocArray exact;
  exact.SetIgnoreCase(false);
  Fill(exact, {{u"Alpha", 1}, {u"ALPHA", 2}});
  EXPECT_EQ(KeysOf(exact), (std::vector<std::u16string>{u"Alpha", u"ALPHA"}));
  EXPECT_TRUE(exact.Resolve(u"alpha").IsNull());

  // Removing the first entry moves the last into its place.
  EXPECT_TRUE(a.Remove(u"ALPHA"));
  EXPECT_EQ(KeysOf(a), (std::vector<std::u16string>{u"gamma", u"beta"}));
  EXPECT_FALSE(a.Remove(u"alpha"));
  EXPECT_TRUE(a.Remove(u"beta"));

  // Out of range: empty key, an empty UTF-16 string (not Null); writes ignored.
  for (int ix : {0, 2, -1}) {
    SCOPED_TRACE(ix);
    EXPECT_EQ(a.GetKeys(ix), u"");
    EXPECT_EQ(a.GetValues(ix), Variant(u""));
    a.SetKeys(ix, u"x");
    a.SetValues(ix, Variant(9));
  }
  EXPECT_EQ(a.NumEntries(), 1);

  // A key written through Keys makes a later equal key unreachable by key.
  a.Add(u"delta", Variant(5));
  a.SetKeys(1, u"DELTA");
  EXPECT_EQ(a.Resolve(u"delta"), Variant(4));
  EXPECT_EQ(a.GetValues(2), Variant(5));
  EXPECT_TRUE(a.Remove(u"Delta"));
  EXPECT_EQ(a.Resolve(u"delta"), Variant(5));
}

TEST(TAssocArrayTest, GrowsByGranularityAndClearStartsAgain) {
  TAssocArray a;
  for (int i = 1; i <= 1024; ++i) {
    const std::string key = std::to_string(i);
    a.Add(std::u16string(key.begin(), key.end()), Variant(i));
  }
  EXPECT_EQ(a.Capacity(), 1024);
  a.Add(u"one more", Variant(0));
  EXPECT_EQ(a.Capacity(), 2049);
  a.SetGranularity(10);  // takes effect at the next Clear
  EXPECT_EQ(a.Capacity(), 2049);
  a.Clear();
  EXPECT_EQ(a.Capacity() * 10 + a.NumEntries(), 100);
  EXPECT_TRUE(a.Resolve(u"one more").IsNull());
  for (int i = 0; i < 11; ++i) a.Add(std::u16string(1, char16_t(u'a' + i)), Variant(i));
  EXPECT_EQ(a.Capacity(), 21);
  a.SetGranularity(0);  // counts as 1
  a.Clear();
  EXPECT_EQ(a.Capacity(), 1);
}

TEST(TAssocArrayTest, ResolveFormsByKind) {
  struct Case {
    Variant value;
    std::u16string_view text;
    double number;
    int integer;
  };
  const Case cases[] = {
      {Variant(std::int16_t{-3}), u"-3", -3, -3},
      {Variant(7), u"7", 7, 7},
      {Variant(2.75f), u"2.75", 2.75, 0},
      {Variant(-1.5), u"-1.5", -1.5, 0},
      {Variant(TCurrency{12345}), u"1.2345", 1.2345, 0},
      {Variant(std::uint8_t{200}), u"200", 200, 200},
      {Variant(std::uint32_t{4000000000u}), u"4000000000", 4e9, -294967296},
      {Variant(std::int64_t{-5000000000}), u"-5000000000", -5e9, -705032704},
      {Variant::FromAnsi(" 12,5e1xyz"), u" 12,5e1xyz", 125, 12},
      {Variant::FromAnsi("abc"), u"abc", 0, 0},
      {Variant(u"42"), u"42", 0, 0},
      {Variant(true), u"True", 0, 0},
      {Variant(TDateTime{2}), u"1900-01-01", 0, 0},
      {Variant(), u"", 0, 0},
      {Variant::Null(), u"", 0, 0},
  };
  TAssocArray a;
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.text));
    a.Add(u"K", c.value);
    EXPECT_EQ(a.Resolve(u"k"), c.value);
    EXPECT_EQ(a.ResolveAsString(u"k"), c.text);
    EXPECT_EQ(a.ResolveAsNumber(u"k"), c.number);
    EXPECT_EQ(a.ResolveAsInt(u"k"), c.integer);
  }
  EXPECT_EQ(a.NumEntries(), 1);
  EXPECT_TRUE(a.Resolve(u"missing").IsNull());
  EXPECT_EQ(a.ResolveAsString(u"missing"), u"");
  EXPECT_EQ(a.ResolveAsNumber(u"missing"), 0.0);
  EXPECT_EQ(a.ResolveAsInt(u"missing"), 0);
  a.Add(u"k", Variant(TDateTime{1e9}));
  EXPECT_THROW(a.ResolveAsString(u"k"), zyn::platform::EConvertError);
}

// The table as the plain linear search describes it, to check the index.
struct LinearModel {
  std::vector<std::u16string> keys;
  std::vector<Variant> values;
  bool ignore_case = true;

  std::u16string Fold(std::u16string_view k) const {
    return ignore_case ? zyn::platform::LowerCase(k) : std::u16string(k);
  }
  int Find(std::u16string_view k) const {
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (Fold(keys[i]) == Fold(k)) return static_cast<int>(i);
    }
    return -1;
  }
  void Add(std::u16string_view k, const Variant& v) {
    const int at = Find(k);
    if (at >= 0) {
      values[static_cast<std::size_t>(at)] = v;
      return;
    }
    keys.push_back(Fold(k));
    values.push_back(v);
  }
  bool Remove(std::u16string_view k) {
    const int at = Find(k);
    if (at < 0) return false;
    keys[static_cast<std::size_t>(at)] = keys.back();
    values[static_cast<std::size_t>(at)] = values.back();
    keys.pop_back();
    values.pop_back();
    return true;
  }
};

TEST(TAssocArrayTest, IndexAnswersAsTheLinearSearch) {
  std::mt19937 gen(2024);
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    TAssocArray a;
    a.SetGranularity(1 + round % 7);
    a.Clear();
    LinearModel m;
    // A small alphabet makes keys collide, in case and as duplicates.
    const auto random_key = [&] {
      std::u16string k(gen() % 3, u'a');
      for (auto& c : k) c = u"aAbB\u00e4\u00c4"[gen() % 6];
      return k;
    };
    for (int step = 0; step < 600; ++step) {
      const std::u16string k = random_key();
      const int n = m.keys.empty() ? 1 : static_cast<int>(m.keys.size());
      const unsigned op = gen() % 10;
      if (op < 3) {
        a.Add(k, Variant(step));
        m.Add(k, Variant(step));
      } else if (op < 5) {
        ASSERT_EQ(a.Remove(k), m.Remove(k));
      } else if (op == 5) {
        const int ix = static_cast<int>(gen() % static_cast<unsigned>(n + 2)) - 1;
        a.SetKeys(ix, k);
        if (ix >= 1 && ix <= static_cast<int>(m.keys.size())) m.keys[std::size_t(ix - 1)] = k;
      } else if (op == 6) {
        a.SetIgnoreCase(!a.IgnoreCase());
        m.ignore_case = a.IgnoreCase();
      } else if (op == 7 && gen() % 20 == 0) {
        a.Clear();
        m = LinearModel{{}, {}, m.ignore_case};
      } else if (op > 7) {
        const int at = m.Find(k);
        ASSERT_EQ(a.Resolve(k), at < 0 ? Variant::Null() : m.values[std::size_t(at)])
            << Utf8(k) << " step " << step;
      }
      ASSERT_EQ(a.NumEntries(), static_cast<int>(m.keys.size()));
    }
    ASSERT_EQ(KeysOf(a), m.keys);
  }
}

// --- The stored form -------------------------------------------------------------

std::string StreamText(TMemoryStream& s) {
  const auto bytes = s.Memory();
  return {bytes.begin(), bytes.end()};
}

TEST(TAssocArrayTest, StoredFormIsDocumentedText) {
  TAssocArray a;
  a.Add(u"Width", Variant(640));
  a.Add(u"title", Variant(u"Main <1> \"x\" & y"));
  TMemoryStream s;
  a.WriteToXMLStream(s, true, u"settings");
  EXPECT_EQ(StreamText(s),
            "<?xml version=\"1.0\"?>\r\n"
            "\r\n"
            "<!-- TAssocArray / Zynforge -->\r\n"
            "<assocarray sig=\"Zynforge\" vers=\"1.0\" id=\"settings\">\r\n"
            "  <numentries val=2 />\r\n"
            "  <assoc key=\"width\" kind=3>640</assoc>\r\n"
            "  <assoc key=\"title\" kind=258>Main &#60;1&#62; &#34;x&#34; &#38; y</assoc>\r\n"
            "</assocarray>\r\n");
}

TEST(TAssocArrayTest, EveryKindKeyAndTextRoundTrips) {
  std::string all_bytes;
  for (int b = 0; b < 256; ++b) all_bytes += static_cast<char>(b);
  std::u16string odd_units = u"\"<>&#;\r\n\t &#65; \u00e4\u20ac";
  odd_units += static_cast<char16_t>(0xD800);  // a lone surrogate
  odd_units += static_cast<char16_t>(0);
  odd_units += static_cast<char16_t>(0xFFFF);

  TAssocArray a;
  a.SetIgnoreCase(false);
  const Variant values[] = {Variant(),
                            Variant::Null(),
                            Variant(std::int16_t{-32768}),
                            Variant(std::numeric_limits<std::int32_t>::min()),
                            Variant(0.1f),
                            Variant(std::numeric_limits<float>::denorm_min()),
                            Variant(-0.0),
                            Variant(std::numeric_limits<double>::quiet_NaN()),
                            Variant(-std::numeric_limits<double>::infinity()),
                            Variant(5e-324),
                            Variant(TCurrency{std::numeric_limits<std::int64_t>::min()}),
                            Variant(TCurrency{std::numeric_limits<std::int64_t>::max()}),
                            Variant(TDateTime{45352.123456789}),
                            Variant(TDateTime{-1e300}),
                            Variant(true),
                            Variant(std::int8_t{-128}),
                            Variant(std::uint8_t{255}),
                            Variant(std::uint16_t{65535}),
                            Variant(std::numeric_limits<std::uint32_t>::max()),
                            Variant(std::numeric_limits<std::int64_t>::min()),
                            Variant::FromAnsi(all_bytes),
                            Variant::FromAnsi(""),
                            Variant(odd_units)};
  int n = 0;
  for (const Variant& v : values) a.Add(odd_units + char16_t(u'A' + n++), v);
  a.Add(u"", Variant(u"empty key"));
  a.Add(u"KEY", Variant(1));
  a.Add(u"key", Variant(2));
  a.SetKeys(a.NumEntries(), u"KEY");  // a duplicate only Keys can write

  TMemoryStream s;
  TAssocArray other;
  other.Add(u"x", Variant(1));
  other.WriteToXMLStream(s, false, u"First");
  a.WriteToXMLStream(s, false, u"  \"Second\" ");
  other.WriteToXMLStream(s, false, u"third");
  for (unsigned char c : StreamText(s)) ASSERT_TRUE(c == '\r' || c == '\n' || (c >= 32 && c < 127));

  // The label is found without regard to case and blanks at its ends; an
  // empty label takes the next block.
  TAssocArray b;
  s.SetPosition(0);
  ASSERT_TRUE(b.ReadFromXMLStream(s, u"\"SECOND\""));
  EXPECT_EQ(b.DataID(), u"  \"Second\" ");
  EXPECT_EQ(KeysOf(b), KeysOf(a));
  EXPECT_EQ(ValuesOf(b), ValuesOf(a));
  EXPECT_EQ(b.Resolve(u"KEY"), Variant(1));
  ASSERT_TRUE(b.ReadFromXMLStream(s, u""));
  EXPECT_EQ(b.DataID(), u"third");
  EXPECT_FALSE(b.ReadFromXMLStream(s, u"first"));  // behind it already
  s.SetPosition(0);
  ASSERT_TRUE(b.ReadFromXMLStream(s, u"first"));
  EXPECT_EQ(ValuesOf(b), ValuesOf(other));
}

TEST(TAssocArrayTest, DamagedBlocksLeaveTheTable) {
  const std::string head = "<assocarray sig=\"Zynforge\" id=\"t\">\r\n";
  const std::string blocks[] = {
      head + "<numentries val=1 />\r\n<assoc key=\"a\" kind=3>1</assoc>\r\n",  // no end tag
      head + "<numentries val=2 />\r\n<assoc key=\"a\" kind=3>1</assoc>\r\n</assocarray>\r\n",
      head + "<numentries val=2147483647 />\r\n</assocarray>\r\n",
      head + "<assoc key=\"a\" kind=3>1</assoc>\r\n</assocarray>\r\n",  // no count
      head + "<numentries val=1 />\r\n<assoc key=\"a\" kind=2>70000</assoc>\r\n</assocarray>\r\n",
      head + "<numentries val=1 />\r\n<assoc key=\"a\" kind=9>1</assoc>\r\n</assocarray>\r\n",
      head + "<numentries val=1 />\r\n<assoc key=\"a\" kind=5>1,5</assoc>\r\n</assocarray>\r\n",
      head + "<numentries val=1 />\r\n<assoc kind=11>True</assoc>\r\n</assocarray>\r\n",
      head + "<numentries val=1 />\r\n<assoc key=\"a\" kind=6>1.23456</assoc>\r\n</assocarray>\r\n",
      "<assocarray id=\"t\">\r\n<numentries val=0 />\r\n</assocarray>\r\n",  // no signature
  };
  for (const std::string& block : blocks) {
    SCOPED_TRACE(block);
    TAssocArray a;
    a.Add(u"kept", Variant(1));
    TMemoryStream s;
    s.WriteBuffer(block.data(), static_cast<int>(block.size()));
    s.SetPosition(0);
    EXPECT_FALSE(a.ReadFromXMLStream(s, u"T"));
    EXPECT_EQ(ValuesOf(a), std::vector<Variant>{Variant(1)});
  }
  // Unknown tags are passed over, and the case of tags and words is free.
  const std::string loose =
      "<ASSOCARRAY SIG=ZYNFORGE id=\"T\"><extra/>\r\n<NumEntries val=\"1\"/>"
      "<Assoc Kind=\"17\" KEY=\"b\">7</ASSOC></AssocArray>";
  TMemoryStream s;
  s.WriteBuffer(loose.data(), static_cast<int>(loose.size()));
  s.SetPosition(0);
  TAssocArray a;
  ASSERT_TRUE(a.ReadFromXMLStream(s, u"t"));
  EXPECT_EQ(a.Resolve(u"b"), Variant(std::uint8_t{7}));
}

TEST(TAssocArrayTest, AddXMLAttributesTakesPairsUpToAnError) {
  struct Case {
    std::u16string_view attributes;
    int taken;
    std::vector<std::u16string> keys;
  };
  const Case cases[] = {
      {u"", 0, {}},
      {u"w=640 Title=\"Main window\"  x = 1 ", 3, {u"w", u"title", u"x"}},
      {u"a=1 b c=2", 2, {u"a", u"b c"}},  // a blank belongs to the name
      {u"a=1 b==2 c=3", 1, {u"a"}},
      {u"a=1 \"b=2", 1, {u"a"}},
      {u"a=1 b=x=y", 1, {u"a"}},
      {u"a=\"open", 1, {u"a"}},
      {u"a", 0, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.attributes));
    TAssocArray a;
    EXPECT_EQ(a.AddXMLAttributes(c.attributes), c.taken);
    EXPECT_EQ(KeysOf(a), c.keys);
  }
  TAssocArray a;
  a.AddXMLAttributes(u"n=\"1,5 m\" z=\"Z\u00fcrich\" j=\"\u65e5\"");
  EXPECT_EQ(a.ResolveAsNumber(u"n"), 1.5);
  EXPECT_EQ(a.Resolve(u"z"), Variant::FromAnsi("Z\xfcrich"));
  EXPECT_EQ(a.Resolve(u"j"), Variant(u"\u65e5"));
}

}  // namespace
}  // namespace Zyn_dstruct
