#include "zyn/dstruct/featurematrix.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <random>

#include "testing/zyn_testing.h"
#include "zyn/dstruct/stringarray.h"
#include "zyn/platform/numconv.h"
#include "zyn/stringl/stringl.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::EConvertError;
using zyn::platform::FromUTF8;
using zyn::platform::Textfile;
using zyn::testing::TempDir;
using zyn::testing::Utf8;
using Zyn_zynbase::tsFalse;
using Zyn_zynbase::tsTrue;
using Zyn_zynbase::tsUndefined;

// The message the matrix "fm" raises with `text`.
std::u16string Fm(std::u16string_view text) { return u"Component \"fm\": " + std::u16string(text); }

// A matrix named "fm" with one feature of each kind 0 to 4 and `objs` objects;
// it counts its OnChange events.
struct Fixture {
  TFeatureMatrix m;
  int events = 0;
  explicit Fixture(int objs = 2) {
    m.SetName(u"fm");
    m.Resize(5, objs);
    for (int k = 0; k < 5; ++k) {
      TFeatProps p;
      p.FeatKind = static_cast<TFeatKind>(k);
      m.SetFeatProps(k + 1, p);
    }
    m.SetOnChange([this](zyn::platform::TObject*) { ++events; });
  }
};

// The message of what `f` raised, "" if it raised nothing.
std::u16string Raised(const std::function<void()>& f) {
  try {
    f();
  } catch (const zyn::platform::Exception& e) {
    return e.Message();
  }
  return {};
}

TEST(FeatureMatrixTest, TextsAreCheckedByKind) {
  const std::u16string_view refusal[] = {u"", u"is not a valid integer number",
                                         u"is not a valid floating point number", u"",
                                         u"is not a valid tri-state value"};
  struct Case {
    TFeatKind kind;
    std::u16string_view text;
    bool accepted;
  };
  const Case cases[] = {{fkInteger, u"", true},       {fkInteger, u"+5", true},
                        {fkInteger, u"+", false},     {fkInteger, u" 5", false},
                        {fkDouble, u" -2.5e3", true}, {fkDouble, u"12abc", true},
                        {fkDouble, u".", true},       {fkDouble, u"1e-04200x", true},
                        {fkDouble, u"1e4201", false}, {fkDouble, u"-", false},
                        {fkDouble, u"E5", false},     {fkDouble, u"1..2", false},
                        {fkString, u" a b ", true},   {fkTriState, u"TRUE", true},
                        {fkTriState, u"yes", false},  {static_cast<TFeatKind>(9), u"any", true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.text) + " kind " + std::to_string(c.kind));
    Fixture fx;
    TFeatProps p;
    p.FeatKind = c.kind;
    fx.m.SetFeatProps(2, p);
    fx.events = 0;
    const std::u16string error = Raised([&] { fx.m.SetFeatValStr(2, 2, c.text); });
    if (c.accepted) {
      EXPECT_EQ(error, u"");
      EXPECT_EQ(fx.m.FeatVal(2, 2), c.text);
    } else {
      EXPECT_EQ(error, Fm(u"feature value \"" + std::u16string(c.text) + u"\" " +
                          std::u16string(refusal[c.kind])));
      EXPECT_EQ(fx.m.FeatVal(2, 2), u"");
    }
    EXPECT_EQ(fx.events, c.accepted ? 1 : 0);
  }
  Fixture fx;
  EXPECT_EQ(Raised([&] { fx.m.SetFeatValStr(1, 1, u""); }), Fm(u"feature 1 is undefined"));
}

TEST(FeatureMatrixTest, TypedReadsLookAtTheTextOnly) {
  // What each read gives: the value, "-" for the library's refusal, "!" for
  // the conversion's EConvertError.
  struct Case {
    std::u16string_view text;
    std::string as_int, as_double, as_tri;
  };
  const Case cases[] = {{u"", "-", "-", "2"},
                        {u"+5", "5", "5", "-"},
                        {u"2147483648", "!", "2147483648", "-"},
                        {u"-3.5", "-", "-3.5", "-"},
                        {u"12abc", "-", "!", "-"},
                        {u"1e4200", "-", "!", "-"},
                        {u"TRUE", "-", "-", "1"},
                        {u"False", "-", "-", "0"}};
  auto read = [](auto getter) -> std::string {
    try {
      return getter();
    } catch (const EConvertError&) {
      return "!";
    } catch (const EZYNDStructError&) {
      return "-";
    }
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.text));
    Fixture fx;
    fx.m.SetFeatValStr(4, 1, c.text);
    EXPECT_EQ(read([&] { return std::to_string(fx.m.FeatValAsInt(4, 1)); }), c.as_int);
    EXPECT_EQ(read([&] { return Utf8(zyn::platform::FloatToStr(fx.m.FeatValAsDouble(4, 1))); }),
              c.as_double);
    EXPECT_EQ(read([&] { return std::to_string(fx.m.FeatValAsTriState(4, 1)); }), c.as_tri);
  }
  Fixture fx;
  fx.m.SetFeatValStr(4, 1, u"x");
  EXPECT_EQ(Raised([&] { fx.m.FeatValAsInt(4, 1); }), Fm(u"feature is not an integer"));
  EXPECT_EQ(Raised([&] { fx.m.FeatValAsDouble(4, 1); }),
            Fm(u"feature is not a floating point number"));
  EXPECT_EQ(Raised([&] { fx.m.FeatValAsTriState(4, 1); }), Fm(u"feature is not a tri-state value"));
  fx.m.SetFeatValStr(4, 1, u"17");
  fx.m.SetFeatProps(4, TFeatProps{});  // the value stays, and typed reads see it
  EXPECT_EQ(fx.m.FeatValAsInt(4, 1), 17);
  EXPECT_EQ(Raised([&] { fx.m.FeatVal(4, 1); }), Fm(u"feature 4 is undefined"));
}

TEST(FeatureMatrixTest, TypedWritesAndFillTakeTheirKinds) {
  using Write = void (*)(TFeatureMatrix&, int);
  // On the features of kind 0 to 4: the text stored, or "-" for the refusal
  // with `error`, in which "#" stands for the feature's index.
  struct Case {
    Write write;
    std::array<std::u16string_view, 5> stored;
    std::u16string_view error;
  };
  const Case cases[] = {{[](TFeatureMatrix& m, int f) { m.SetFeatValint(f, 2, -5); },
                         {u"-", u"-5", u"-5", u"-5", u"-"},
                         u"feature is not of numeric or string type"},
                        {[](TFeatureMatrix& m, int f) { m.SetFeatValDouble(f, 2, 0.1); },
                         {u"-", u"-", u"0.1", u"0.1", u"-"},
                         u"feature is not a floating point or string type"},
                        {[](TFeatureMatrix& m, int f) { m.SetFeatValTriState(f, 2, tsTrue); },
                         {u"-", u"-", u"-", u"true", u"true"},
                         u"feature is not a tri-state or string type"},
                        {[](TFeatureMatrix& m, int f) { m.Fill(f, 7); },
                         {u"-", u"7", u"-", u"-", u"-"},
                         u"feature # is not an integer number"},
                        {[](TFeatureMatrix& m, int f) { m.Fill(f, 2.5); },
                         {u"-", u"-", u"2.5", u"-", u"-"},
                         u"feature # is not floating point number"},
                        {[](TFeatureMatrix& m, int f) { m.Fill(f, tsFalse); },
                         {u"-", u"-", u"-", u"-", u"false"},
                         u"feature # is not a tri-state value"}};
  for (const Case& c : cases) {
    for (int fix = 1; fix <= 5; ++fix) {
      SCOPED_TRACE(Utf8(c.error) + " on feature " + std::to_string(fix));
      Fixture fx;
      const std::u16string error = Raised([&] { c.write(fx.m, fix); });
      const std::u16string_view want = c.stored[static_cast<std::size_t>(fix - 1)];
      if (want == u"-") {
        std::u16string message = Fm(c.error);
        if (const auto at = message.find(u'#'); at != message.npos) {
          message.replace(at, 1, FromUTF8(std::to_string(fix)));
        }
        EXPECT_EQ(error, message);
      } else {
        EXPECT_EQ(error + fx.m.FeatVal(fix, 2), want);
      }
      EXPECT_EQ(fx.events, want == u"-" ? 0 : 1);
    }
  }
  Fixture fx;
  EXPECT_EQ(Raised([&] { fx.m.Fill(2, u""); }),
            Fm(u"feature value \"\" is not a valid integer number"));
  EXPECT_TRUE(fx.m.Fill(5, u"TRUE"));
  EXPECT_EQ(fx.m.FeatVal(5, 1) + fx.m.FeatVal(5, 2), u"TRUETRUE");
  EXPECT_FALSE(fx.m.Fill(6, u"x"));
  EXPECT_EQ(fx.events, 1);
}

TEST(FeatureMatrixTest, OutOfRangeIsNeutralAndSilent) {
  TFeatureMatrix m;
  int events = 0;
  m.SetOnChange([&](zyn::platform::TObject*) { ++events; });
  EXPECT_EQ(m.FeatVal(1, 1) + m.FeatProps(1).FeatName.str(), u"undefined");
  EXPECT_EQ(m.FeatValAsInt(0, 0) + m.FeatValAsDouble(1, 1), 0.0);
  EXPECT_EQ(m.FeatValAsTriState(1, 1), tsUndefined);
  EXPECT_FALSE(m.Fill(1, 1.0));
  m.SetFeatValStr(1, 1, u"x");
  m.SetFeatProps(1, TFeatProps{});
  m.InsertObject(1);
  m.RemoveObject(1);
  m.InsertFeature(2);
  EXPECT_FALSE(m.Resize(-1, 3));
  m.SetNObjs(-1);
  EXPECT_EQ(m.NFeatures() + m.NObjects() + events, 0);
}

TEST(FeatureMatrixTest, ShapeOperationsMoveValuesAndFireTheirEvents) {
  Fixture fx(3);
  for (int obj = 1; obj <= 3; ++obj) fx.m.SetFeatValint(2, obj, obj * 10);
  fx.m.SetFeatValStr(4, 2, u"s");
  auto column = [&](int fix) {
    std::u16string s;
    for (int obj = 1; obj <= fx.m.NObjects(); ++obj) s += fx.m.FeatVal(fix, obj) + u",";
    return s;
  };
  fx.events = 0;
  fx.m.InsertObject(2);
  EXPECT_EQ(fx.events, 2);  // ClearObject's and its own
  EXPECT_EQ(column(2) + column(4), u"10,0,20,30,,,s,,");
  fx.m.ClearObject(3);
  fx.m.CopyObject(4, 1);
  fx.m.RemoveObject(3);
  EXPECT_EQ(column(2) + column(4), u"30,0,30,,,,");
  fx.m.ClearFeature(3);
  EXPECT_EQ(column(3), u"0,0,0,");
  fx.events = 0;
  fx.m.ResetToDefault();
  EXPECT_EQ(fx.events, 3);  // once per object
  EXPECT_EQ(column(2), u"0,0,0,");
  fx.m.InsertFeature(2);
  EXPECT_EQ(fx.m.FeatProps(2).FeatName.str(), u"undefined");
  EXPECT_EQ(fx.m.FeatProps(3).FeatKind, fkInteger);
  EXPECT_EQ(fx.m.FeatValAsTriState(2, 1), tsUndefined);  // empty, else it would raise
  fx.m.InsertFeature(8);                                 // behind NFeatures + 1: nothing
  fx.m.InsertFeature(7);                                 // appends
  fx.m.SetNFeats(8);  // gained by growing: the zero state, empty name
  EXPECT_EQ(fx.m.FeatProps(8), TFeatProps{});
  fx.m.SetNObjs(1);
  fx.m.RemoveObject(1);
  EXPECT_EQ(fx.m.NObjects() * 10 + fx.m.NFeatures(), 8);
}

TEST(FeatureMatrixTest, ResizeFailureKeepsTheOldShape) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "operator new aborts under AddressSanitizer";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
  GTEST_SKIP() << "operator new aborts under AddressSanitizer";
#endif
#endif
  Fixture fx;
  fx.m.SetFeatValStr(4, 2, u"kept");
  fx.events = 0;
  EXPECT_FALSE(fx.m.Resize(INT_MAX, INT_MAX));
  EXPECT_EQ(fx.m.NFeatures() * 10 + fx.m.NObjects() + fx.events, 52);
  EXPECT_EQ(fx.m.FeatVal(4, 2), u"kept");
}

TEST(FeatureMatrixTest, SearchAndAssign) {
  Fixture fx;
  TFeatProps p;
  p.FeatName = u"Speed";
  p.FeatNum = 11;
  p.FeatKind = fkString;
  fx.m.SetFeatProps(3, p);
  p.FeatName = u"speed";
  fx.m.SetFeatProps(4, p);
  EXPECT_EQ(fx.m.FindFeatName(u"SPEED") * 10 + fx.m.FindFeatNum(11), 33);
  EXPECT_EQ(fx.m.FindFeatName(u"spee") + fx.m.FindFeatNum(12), -2);

  fx.m.SetFeatValStr(4, 2, u"2.5");
  TFeatureMatrix copy;
  copy.Assign(fx.m);
  EXPECT_EQ(fx.events, 3);  // Assign fires nothing
  EXPECT_EQ(copy.FeatProps(4), p);
  copy.SetFeatValStr(4, 1, u"1");  // the handler came along, the values are copies
  EXPECT_EQ(fx.events, 4);
  EXPECT_EQ(fx.m.FeatVal(4, 1) + copy.FeatVal(4, 2), u"2.5");
  TStringArray other;
  EXPECT_THROW(copy.Assign(other), EConvertError);
  EXPECT_EQ(copy.NFeatures(), 5);
}

// --- The file ------------------------------------------------------------------

constexpr std::string_view kExampleBlock =
    "#featdef 2 1\r\n"
    "1 fplFeatNum 10\r\n"
    "1 fplFeatName speed\r\n"
    "1 fplFeatKind fkDouble\r\n"
    "1 fplComment top speed\r\n"
    "1 fplPresets \r\n"
    "1 fplSorted FALSE\r\n"
    "2 fplFeatNum 11\r\n"
    "2 fplFeatName colour\r\n"
    "2 fplFeatKind fkString\r\n"
    "2 fplComment \r\n"
    "2 fplPresets red,green\r\n"
    "2 fplSorted TRUE\r\n"
    "#featvals 2 2\r\n"
    "1 1 3.5\r\n"
    "2 1 red\r\n"
    "1 2 4.25\r\n"
    "#featend\r\n";

std::u16string Path(const TempDir& dir, std::string_view name) {
  return FromUTF8((dir / name).string());
}

// Every definition and value: "num name kind sorted comment=v1,v2;" per feature.
std::u16string Dump(const TFeatureMatrix& m) {
  TFeatureMatrix strings;  // a copy whose features all take any text
  strings.Assign(m);
  std::u16string s;
  for (int fix = 1; fix <= m.NFeatures(); ++fix) {
    TFeatProps p = m.FeatProps(fix);
    s += FromUTF8(std::to_string(p.FeatNum) + " ") + p.FeatName.str() +
         FromUTF8(" " + std::to_string(p.FeatKind) + " " + std::to_string(p.Sorted) + " ") +
         p.Comment.str() + u"=";
    p.FeatKind = fkString;
    strings.SetFeatProps(fix, p);
    for (int obj = 1; obj <= m.NObjects(); ++obj) s += strings.FeatVal(fix, obj) + u",";
    s += u";";
  }
  return s;
}

TEST(FeatureMatrixFileTest, ExampleBlockRoundTripsByteForByte) {
  TempDir dir;
  zyn::testing::WriteFileBytes(dir / "in.txt", kExampleBlock);
  TFeatureMatrix m;
  int events = 0;
  m.SetOnChange([&](zyn::platform::TObject*) { ++events; });
  ASSERT_EQ(m.Load(Path(dir, "in.txt")), 0);
  EXPECT_EQ(events, 2);  // the Clear at the start, and the end
  EXPECT_EQ(Dump(m), u"10 speed 2 0 top speed=3.5,4.25,;11 colour 3 1 =red,,;");
  m.Save(Path(dir, "out.txt"));
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "out.txt"), kExampleBlock);

  TFeatureMatrix().Save(Path(dir, "empty.txt"));
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "empty.txt"),
            "#featdef 0 1\r\n#featvals 0 0\r\n#featend\r\n");
  EXPECT_EQ(m.Load(Path(dir, "empty.txt")), 0);
  EXPECT_EQ(Dump(m), u"");
}

TEST(FeatureMatrixFileTest, ReaderRules) {
  struct Case {
    std::string_view name, text;
    int result;  // of LoadFromOpenFile
    std::u16string_view dump;
  };
  const Case cases[] = {
      {"nothing", "text only\n#other x\n#featdef\n# featdef 1 1\n", -1, u""},
      {"text around, any case",
       "intro\n#FEATDEF 1 1\n1 FPLFEATNAME  Name \n1 fplfeatkind FKINTEGER\n1 fplSorted tRuE\n"
       "1 fplGUIElem 5\n\n1 fplFeatNum -4\n1 unknown x\nmiddle\n#FeatVals 1 2\n1 2  4 2 \n",
       0, u"-4  Name 1 1 =,4 2,;"},
      {"entries by index; the file ends inside", "#featdef 2 1\n2 fplFeatName b\n", 0,
       u"0  0 0 =;0 b 0 0 =;"},
      {"sorted only for true", "#featdef 1 1\n1 fplSorted yes\n", 0, u"0  0 0 =;"},
      {"texts are cut",
       "#featdef 1 1\n1 fplFeatName 123456789012345678901234\n1 fplComment "
       "1234567890123456789012345678901234567890123456789012345678901234567\n",
       0,
       u"0 12345678901234567890 0 0 "
       u"123456789012345678901234567890123456789012345678901234567890=;"},
      {"unknown kind word", "#featdef 1 1\n1 fplFeatKind fkComplex\n", 0, u"0  0 0 =;"},
      {"other version: definitions passed over, values read",
       "#featdef 1 2\n1 fplFeatName a\n#featvals 1 1\n1 1 v\n", 0, u"0  0 0 =v,;"},
      {"empty line ends the values", "#featvals 2 1\n2 1 a b\n\n1 1 x\n", 0,
       u"0  0 0 =,;0  0 0 =a b,;"},
      {"indices outside are passed over",
       "#featdef 1 1\n7 fplFeatName x\n0 fplFeatNum 9\n-1 fplFeatNum 9\n1 fplFeatName\n"
       "1 fplFeatName \n2 fplSorted TRUE\n#featvals 1 1\n0 1 a\n1 2 b\n-1 1 c\n1 1 d\n",
       0, u"0  0 0 =d,;"},
      {"the values count wins", "#featdef 3 2\n#featvals 1 1\n", 0, u"0  0 0 =,;"},
      {"definition line without a number", "#featdef 1 1\nfplFeatNum 3\n", -2, u"0  0 0 =;"},
      {"bad feature number", "#featdef 1 1\n1 fplFeatNum 3x\n", -2, u"0  0 0 =;"},
      {"bad values header", "#featdef 1 1\n1 fplFeatName a\n#featvals 1 x\n", -2, u"0 a 0 0 =;"},
      {"negative count", "#featdef -1 1\n", -2, u""},
      {"absurd counts", "#featvals 2000000000 2000000000\n1 1 x\n", -2, u""},
      {"absurd product", "#featvals 4096 4096\n", -2, u""},
      {"too many features", "#featvals 65537 0\n", -2, u""}};
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    zyn::testing::WriteFileBytes(dir / "f.txt", c.text);
    TFeatureMatrix m;
    m.Resize(1, 1);  // a load starts from an empty matrix
    EXPECT_EQ(m.Load(Path(dir, "f.txt")), c.result < 0 ? c.result - 1 : 0);
    EXPECT_EQ(Dump(m), c.dump);
  }
  EXPECT_EQ(TFeatureMatrix().Load(Path(dir, "missing.txt")), -1);
  TFeatureMatrix m;
  auto load = [&](std::string_view text) {
    zyn::testing::WriteFileBytes(dir / "f.txt", text);
    return m.Load(Path(dir, "f.txt"));
  };
  EXPECT_EQ(load("#featvals 65536 0\n"), 0);
  EXPECT_EQ(m.NFeatures(), 65536);
  m.SetMaxLoadedValues(100);
  EXPECT_EQ(load("#featvals 10 11\n"), -3);
  EXPECT_EQ(load("#featvals 10 10\n"), 0);
}

TEST(FeatureMatrixFileTest, TwoBlocksFromOneOpenFile) {
  TempDir dir;
  Fixture a;
  a.m.SetFeatValStr(4, 2, u"first");
  Textfile f;
  f.Assign(Path(dir, "two.txt"), zyn::platform::kCpWindows1252);
  f.Rewrite();
  a.m.SaveToOpenFile(f);
  f.WriteLn(u"between");
  TFeatureMatrix().SaveToOpenFile(f);
  f.Reset();
  TFeatureMatrix x, y, z;
  EXPECT_EQ(x.LoadFromOpenFile(f) + y.LoadFromOpenFile(f) + z.LoadFromOpenFile(f), -1);
  EXPECT_EQ(Dump(x), Dump(a.m));
  EXPECT_EQ(y.NFeatures() + z.NFeatures(), 0);
}

// Random matrices of every kind, with blanks inside values, empty values,
// texts beyond their limits and every byte the 8-bit file can carry, come
// back equal, apart from blanks at the ends of texts and the GUI handle.
TEST(FeatureMatrixFileTest, RandomMatricesRoundTrip) {
  std::mt19937 rng(2024);
  auto text = [&](std::size_t max_len) {
    std::u16string s(rng() % (max_len + 1), u' ');
    for (auto& c : s) c = zyn::platform::CharFromAnsi(static_cast<unsigned char>(rng() % 256));
    std::erase_if(s, [](char16_t c) { return c == u'\r' || c == u'\n'; });
    return s;
  };
  TempDir dir;
  for (int round = 0; round < 30; ++round) {
    TFeatureMatrix m, want;
    m.Resize(static_cast<int>(rng() % 6), static_cast<int>(rng() % 6));
    want.Assign(m);
    for (int fix = 1; fix <= m.NFeatures(); ++fix) {
      TFeatProps p;
      p.FeatNum = static_cast<std::int32_t>(rng());
      p.FeatKind = static_cast<TFeatKind>(rng() % 5);
      p.PresetValues = u"p" + text(300);
      p.Sorted = rng() % 2 == 0;
      p.GUIElem = &m;
      p.FeatName = zyn::platform::BasicShortString<20>(u"n" + text(25));
      p.Comment = zyn::platform::BasicShortString<60>(u"c" + text(70));
      m.SetFeatProps(fix, p);
      // What the file keeps: trailing blanks go with the line, the handle stays behind.
      const auto strip = [](auto s) {
        return decltype(s)(Zyn_stringl::StripTrailingBlanks(s.str()));
      };
      p.FeatName = strip(p.FeatName);
      p.Comment = strip(p.Comment);
      p.PresetValues = Zyn_stringl::StripTrailingBlanks(p.PresetValues);
      p.GUIElem = nullptr;
      want.SetFeatProps(fix, p);
      for (int obj = 1; obj <= m.NObjects() && p.FeatKind != fkUndefined; ++obj) {
        if (p.FeatKind == fkInteger) m.SetFeatValint(fix, obj, static_cast<std::int32_t>(rng()));
        if (p.FeatKind == fkDouble) m.SetFeatValDouble(fix, obj, std::ldexp(rng(), -20));
        if (p.FeatKind == fkTriState) m.SetFeatValTriState(fix, obj, tsFalse);
        if (p.FeatKind == fkString)
          m.SetFeatValStr(fix, obj, rng() % 2 ? text(40) : u"a  " + text(9));
        want.SetFeatValStr(fix, obj, Zyn_stringl::StripLTBlanks(m.FeatVal(fix, obj)));
      }
    }
    m.Save(Path(dir, "r.txt"));
    TFeatureMatrix back;
    ASSERT_EQ(back.Load(Path(dir, "r.txt")), 0);
    EXPECT_EQ(Dump(back), Dump(want));
    for (int fix = 1; fix <= m.NFeatures(); ++fix)
      EXPECT_EQ(back.FeatProps(fix), want.FeatProps(fix));
  }
}

}  // namespace
}  // namespace Zyn_dstruct
