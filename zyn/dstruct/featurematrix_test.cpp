#include "zyn/dstruct/featurematrix.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <optional>
#include <random>

#include "testing/zyn_testing.h"
#include "zyn/dstruct/stringarray.h"
#include "zyn/platform/numconv.h"
#include "zyn/stringl/stringl.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::EConvertError;
using zyn::platform::Textfile;
using zyn::testing::TempDir;
using zyn::testing::Utf8;
using Zyn_zynbase::tsFalse;
using Zyn_zynbase::tsTrue;
using Zyn_zynbase::tsUndefined;

constexpr std::u16string_view kPrefix = u"Component \"fm\": ";

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
  struct Case {
    TFeatKind kind;
    std::u16string_view text, error;  // error "" means accepted
  };
  const Case cases[] = {
      {fkUndefined, u"x", u"feature 1 is undefined"},
      {fkInteger, u"", u""},
      {fkInteger, u"7", u""},
      {fkInteger, u"-12", u""},
      {fkInteger, u"+5", u""},
      {fkInteger, u"+", u"feature value \"+\" is not a valid integer number"},
      {fkInteger, u" 5", u"feature value \" 5\" is not a valid integer number"},
      {fkInteger, u"5-", u"feature value \"5-\" is not a valid integer number"},
      {fkDouble, u"", u""},
      {fkDouble, u"  -2.5e3", u""},
      {fkDouble, u"12abc", u""},
      {fkDouble, u".", u""},
      {fkDouble, u"1e", u""},
      {fkDouble, u"1E+", u""},
      {fkDouble, u"1e4200", u""},
      {fkDouble, u"1e-04200x", u""},
      {fkDouble, u"1e4201", u"feature value \"1e4201\" is not a valid floating point number"},
      {fkDouble, u"1e42010", u"feature value \"1e42010\" is not a valid floating point number"},
      {fkDouble, u"-", u"feature value \"-\" is not a valid floating point number"},
      {fkDouble, u"E5", u"feature value \"E5\" is not a valid floating point number"},
      {fkDouble, u"1..2", u"feature value \"1..2\" is not a valid floating point number"},
      {fkDouble, u"1,5", u""},
      {fkDouble, u"1e 5", u"feature value \"1e 5\" is not a valid floating point number"},
      {fkString, u" any thing ", u""},
      {fkTriState, u"TRUE", u""},
      {fkTriState, u"", u""},
      {fkTriState, u"yes", u"feature value \"yes\" is not a valid tri-state value"},
      {static_cast<TFeatKind>(9), u"whatever", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.text) + " kind " + std::to_string(c.kind));
    Fixture fx;
    TFeatProps p;
    p.FeatKind = c.kind;
    fx.m.SetFeatProps(1, p);
    fx.events = 0;
    const std::u16string error = Raised([&] { fx.m.SetFeatValStr(1, 2, c.text); });
    if (c.error.empty()) {
      EXPECT_EQ(error, u"");
      EXPECT_EQ(fx.events, 1);
      if (c.kind != fkUndefined) {
        EXPECT_EQ(fx.m.FeatVal(1, 2), c.text);
      }
    } else {
      EXPECT_EQ(error, std::u16string(kPrefix) + std::u16string(c.error));
      EXPECT_EQ(fx.events, 0);
    }
  }
}

TEST(FeatureMatrixTest, TypedReadsLookAtTheTextOnly) {
  struct Case {
    std::u16string_view text;
    std::optional<std::int64_t> as_int;  // nullopt: "feature is not an integer"
    std::optional<double> as_double;     // nullopt: refused or EConvertError
    std::optional<Zyn_zynbase::TTriState> as_tri;
  };
  const Case cases[] = {
      {u"", {}, {}, tsUndefined},  {u"5", 5, 5.0, {}},
      {u"+5", 5, 5.0, {}},         {u"-2147483648", INT32_MIN, -2147483648.0, {}},
      {u"3.5", {}, 3.5, {}},       {u"12abc", {}, {}, {}},
      {u"1e4200", {}, {}, {}},     {u"TRUE", {}, {}, tsTrue},
      {u"False", {}, {}, tsFalse},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.text));
    Fixture fx;
    fx.m.SetFeatValStr(4, 1, c.text);
    if (c.as_int) {
      EXPECT_EQ(fx.m.FeatValAsInt(4, 1), *c.as_int);
    } else {
      EXPECT_EQ(Raised([&] { fx.m.FeatValAsInt(4, 1); }),
                std::u16string(kPrefix) + u"feature is not an integer");
    }
    if (c.as_double) {
      EXPECT_EQ(fx.m.FeatValAsDouble(4, 1), *c.as_double);
    } else {
      EXPECT_NE(Raised([&] { fx.m.FeatValAsDouble(4, 1); }), u"");
    }
    if (c.as_tri) {
      EXPECT_EQ(fx.m.FeatValAsTriState(4, 1), *c.as_tri);
    } else {
      EXPECT_EQ(Raised([&] { fx.m.FeatValAsTriState(4, 1); }),
                std::u16string(kPrefix) + u"feature is not a tri-state value");
    }
  }
  Fixture fx;
  fx.m.SetFeatValStr(4, 1, u"2147483648");  // passes the test, not the 32-bit conversion
  EXPECT_THROW(fx.m.FeatValAsInt(4, 1), EConvertError);
  fx.m.SetFeatValStr(4, 1, u"12abc");  // begins with a number: the conversion refuses it
  EXPECT_THROW(fx.m.FeatValAsDouble(4, 1), EConvertError);
  fx.m.SetFeatValStr(4, 1, u"abc");
  EXPECT_EQ(Raised([&] { fx.m.FeatValAsDouble(4, 1); }),
            std::u16string(kPrefix) + u"feature is not a floating point number");
  fx.m.SetFeatValStr(4, 1, u"17");
  TFeatProps undefined;
  fx.m.SetFeatProps(4, undefined);  // the value stays, and the typed read sees it
  EXPECT_EQ(fx.m.FeatValAsInt(4, 1), 17);
  EXPECT_EQ(Raised([&] { fx.m.FeatVal(4, 1); }),
            std::u16string(kPrefix) + u"feature 4 is undefined");
}

TEST(FeatureMatrixTest, TypedWritesAndFillTakeTheirKinds) {
  // Per kind 0 to 4: what each typed write stores, or "" where it is refused.
  struct Case {
    std::u16string_view name;
    std::function<void(TFeatureMatrix&, int fix)> write;
    std::array<std::u16string_view, 5> stored;
    std::u16string_view error;  // <fix> stands for the index
  };
  const Case cases[] = {
      {u"SetFeatValint",
       [](TFeatureMatrix& m, int f) { m.SetFeatValint(f, 2, -5); },
       {u"", u"-5", u"-5", u"-5", u""},
       u"feature is not of numeric or string type"},
      {u"SetFeatValDouble",
       [](TFeatureMatrix& m, int f) { m.SetFeatValDouble(f, 2, 0.1); },
       {u"", u"", u"0.1", u"0.1", u""},
       u"feature is not a floating point or string type"},
      {u"SetFeatValTriState",
       [](TFeatureMatrix& m, int f) { m.SetFeatValTriState(f, 2, tsTrue); },
       {u"", u"", u"", u"true", u"true"},
       u"feature is not a tri-state or string type"},
      {u"Fill int",
       [](TFeatureMatrix& m, int f) { m.Fill(f, 7); },
       {u"", u"7", u"", u"", u""},
       u"feature <fix> is not an integer number"},
      {u"Fill double",
       [](TFeatureMatrix& m, int f) { m.Fill(f, 2.5); },
       {u"", u"", u"2.5", u"", u""},
       u"feature <fix> is not floating point number"},
      {u"Fill tri-state",
       [](TFeatureMatrix& m, int f) { m.Fill(f, tsFalse); },
       {u"", u"", u"", u"", u"false"},
       u"feature <fix> is not a tri-state value"},
  };
  for (const Case& c : cases) {
    for (int fix = 1; fix <= 5; ++fix) {
      SCOPED_TRACE(Utf8(c.name) + " on feature " + std::to_string(fix));
      Fixture fx;
      const std::u16string want = c.stored[static_cast<std::size_t>(fix - 1)].empty()
                                      ? std::u16string(c.error)
                                      : std::u16string();
      std::u16string error = Raised([&] { c.write(fx.m, fix); });
      if (const auto at = want.find(u"<fix>"); at != std::u16string::npos) {
        EXPECT_EQ(error, std::u16string(kPrefix) +
                             std::u16string(want).replace(
                                 at, 5, zyn::platform::FromUTF8(std::to_string(fix))));
      } else {
        EXPECT_EQ(error, want.empty() ? u"" : std::u16string(kPrefix) + want);
      }
      EXPECT_EQ(fx.events, want.empty() ? 1 : 0);
      if (want.empty()) {
        EXPECT_EQ(fx.m.FeatVal(fix, 2), c.stored[fix - 1]);
      }
    }
  }
  Fixture fx;
  fx.m.SetFeatValint(4, 1, 5);                 // a string feature keeps the text "5"...
  EXPECT_EQ(fx.m.FeatValAsDouble(4, 1), 5.0);  // ...which reads as a double too
  EXPECT_EQ(Raised([&] { fx.m.Fill(2, u""); }),
            std::u16string(kPrefix) + u"feature value \"\" is not a valid integer number");
  EXPECT_TRUE(fx.m.Fill(5, u"TRUE"));
  EXPECT_EQ(fx.m.FeatVal(5, 1) + fx.m.FeatVal(5, 2), u"TRUETRUE");
  EXPECT_FALSE(fx.m.Fill(6, u"x"));
  EXPECT_EQ(fx.events, 2);
}

TEST(FeatureMatrixTest, OutOfRangeIsNeutralAndSilent) {
  TFeatureMatrix m;
  int events = 0;
  m.SetOnChange([&](zyn::platform::TObject*) { ++events; });
  EXPECT_EQ(m.FeatVal(1, 1), u"");
  EXPECT_EQ(m.FeatValAsInt(0, 0), 0);
  EXPECT_EQ(m.FeatValAsDouble(1, 1), 0.0);
  EXPECT_EQ(m.FeatValAsTriState(1, 1), tsUndefined);
  EXPECT_EQ(m.FeatProps(1).FeatName.str(), u"undefined");
  EXPECT_FALSE(m.Fill(1, 1.0));
  m.SetFeatValStr(1, 1, u"x");
  m.SetFeatProps(1, TFeatProps{});
  m.ClearObject(1);
  m.InsertObject(1);
  m.RemoveObject(1);
  m.CopyObject(1, 1);
  m.InsertFeature(2);
  EXPECT_EQ(events, 0);
  EXPECT_FALSE(m.Resize(-1, 3));
  m.SetNObjs(-1);
  EXPECT_EQ(m.NFeatures() + m.NObjects() + events, 0);
}

TEST(FeatureMatrixTest, DefaultsAndTheirEvents) {
  Fixture fx(3);
  for (int fix = 2; fix <= 5; ++fix) fx.m.SetFeatValStr(fix, 2, fix == 5 ? u"true" : u"1");
  fx.events = 0;
  fx.m.ClearObject(2);
  EXPECT_EQ(fx.events, 1);
  const std::u16string_view defaults[] = {u"", u"0", u"0", u"", u""};
  for (int fix = 2; fix <= 5; ++fix) EXPECT_EQ(fx.m.FeatVal(fix, 2), defaults[fix - 1]);
  fx.m.ClearFeature(3);
  EXPECT_EQ(fx.m.FeatVal(3, 1) + fx.m.FeatVal(3, 3), u"00");
  EXPECT_EQ(fx.events, 2);
  fx.m.ResetToDefault();
  EXPECT_EQ(fx.events, 5);  // once per object
  EXPECT_EQ(fx.m.FeatVal(2, 3), u"0");
}

TEST(FeatureMatrixTest, ShapeOperationsMoveValues) {
  Fixture fx(3);
  for (int obj = 1; obj <= 3; ++obj) fx.m.SetFeatValint(2, obj, obj * 10);
  fx.events = 0;
  fx.m.InsertObject(2);
  EXPECT_EQ(fx.events, 2);  // ClearObject's and its own
  auto column = [&](int fix) {
    std::u16string s;
    for (int obj = 1; obj <= fx.m.NObjects(); ++obj) s += fx.m.FeatVal(fix, obj) + u",";
    return s;
  };
  EXPECT_EQ(column(2), u"10,0,20,30,");
  fx.m.CopyObject(4, 1);
  fx.m.RemoveObject(3);
  EXPECT_EQ(column(2), u"30,0,30,");
  fx.m.InsertFeature(2);
  EXPECT_EQ(fx.m.NFeatures(), 6);
  EXPECT_EQ(fx.m.FeatProps(2).FeatName.str(), u"undefined");
  EXPECT_EQ(fx.m.FeatProps(3).FeatKind, fkInteger);
  EXPECT_EQ(column(3), u"30,0,30,");
  for (int obj = 1; obj <= 3; ++obj) {
    EXPECT_EQ(fx.m.FeatValAsTriState(2, obj), tsUndefined);  // raises unless empty
  }
  fx.m.InsertFeature(8);  // behind the end + 1: nothing
  fx.m.InsertFeature(7);  // appends
  fx.m.SetNFeats(8);      // gained by growing: zero state, empty name
  EXPECT_EQ(fx.m.FeatProps(7).FeatName.str(), u"undefined");
  EXPECT_EQ(fx.m.FeatProps(8), TFeatProps{});
  fx.m.SetNObjs(1);
  EXPECT_EQ(column(3), u"30,");
  for (int i = 0; i < 1; ++i) fx.m.RemoveObject(1);
  EXPECT_EQ(fx.m.NObjects(), 0);
  EXPECT_EQ(fx.m.NFeatures(), 8);
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
  EXPECT_EQ(fx.m.NFeatures() * 10 + fx.m.NObjects(), 52);
  EXPECT_EQ(fx.m.FeatVal(4, 2), u"kept");
  EXPECT_EQ(fx.events, 0);
}

TEST(FeatureMatrixTest, SearchAndAssign) {
  Fixture fx;
  TFeatProps p = fx.m.FeatProps(3);
  p.FeatName = u"Speed";
  p.FeatNum = 11;
  fx.m.SetFeatProps(3, p);
  p.FeatName = u"speed";
  fx.m.SetFeatProps(4, p);
  EXPECT_EQ(fx.m.FindFeatName(u"SPEED"), 3);
  EXPECT_EQ(fx.m.FindFeatName(u"spee"), -1);
  EXPECT_EQ(fx.m.FindFeatNum(11), 3);
  EXPECT_EQ(fx.m.FindFeatNum(12), -1);

  fx.m.SetFeatValStr(3, 2, u"2.5");
  TFeatureMatrix copy;
  copy.Assign(fx.m);
  EXPECT_EQ(fx.events, 3);  // Assign fires nothing
  EXPECT_EQ(copy.NFeatures() * 10 + copy.NObjects(), 52);
  EXPECT_EQ(copy.FeatProps(4), p);
  copy.SetFeatValStr(3, 1, u"1");  // the handler came along
  EXPECT_EQ(fx.events, 4);
  EXPECT_EQ(fx.m.FeatVal(3, 1), u"");  // but the values are the copy's own
  TStringArray other;
  EXPECT_THROW(copy.Assign(other), EConvertError);
  EXPECT_EQ(copy.FeatVal(3, 2), u"2.5");
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
  return zyn::platform::FromUTF8((dir / name).string());
}

TEST(FeatureMatrixFileTest, ExampleBlockRoundTripsByteForByte) {
  TempDir dir;
  zyn::testing::WriteFileBytes(dir / "in.txt", kExampleBlock);
  TFeatureMatrix m;
  int events = 0;
  m.SetOnChange([&](zyn::platform::TObject*) { ++events; });
  ASSERT_EQ(m.Load(Path(dir, "in.txt")), 0);
  EXPECT_EQ(events, 2);  // the Clear at the start, and the end
  EXPECT_EQ(m.FeatProps(1).Comment.str(), u"top speed");
  EXPECT_EQ(m.FeatProps(2).PresetValues, u"red,green");
  EXPECT_TRUE(m.FeatProps(2).Sorted);
  EXPECT_EQ(m.FeatValAsDouble(1, 2), 4.25);
  EXPECT_EQ(m.FeatVal(2, 2), u"");
  m.Save(Path(dir, "out.txt"));
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "out.txt"), kExampleBlock);

  TFeatureMatrix empty;
  empty.Save(Path(dir, "empty.txt"));
  EXPECT_EQ(zyn::testing::ReadFileBytes(dir / "empty.txt"),
            "#featdef 0 1\r\n#featvals 0 0\r\n#featend\r\n");
  EXPECT_EQ(m.Load(Path(dir, "empty.txt")), 0);
  EXPECT_EQ(m.NFeatures() + m.NObjects(), 0);
}

TEST(FeatureMatrixFileTest, ReaderRules) {
  struct Case {
    std::string_view name, text;
    int result, nfeats, nobjs;
    std::u16string_view probe;  // "fix obj value" or "props fix name num kind sorted comment"
  };
  const Case cases[] = {
      {"nothing", "text only\r\n#other x\r\n", -1, 0, 0, u""},
      {"text around, any case",
       "intro\r\n# featdef 9 1\r\n#featvals\r\n#FEATDEF 1 1\r\n1 FPLFEATNAME  Name \r\n"
       "1 fplfeatkind FKINTEGER\r\n1 fplSorted tRuE\r\n1 fplGUIElem 5\r\n\r\n"
       "1 fplFeatNum -4\r\n1 unknown x\r\nmiddle\r\n#FeatVals 1 2\r\n1 2  4 2 \r\n#featend\r\n",
       0, 1, 2, u"props 1  Name -4 1 1 |1 2 4 2"},
      {"entries by index, file ends inside", "#featdef 2 1\r\n2 fplFeatName b\r\n", 0, 2, 0,
       u"props 2 b 0 0 0 "},
      {"sorted only for true", "#featdef 1 1\r\n1 fplSorted yes\r\n", 0, 1, 0, u"props 1  0 0 0 "},
      {"names and comments are cut",
       "#featdef 1 1\r\n1 fplFeatName 123456789012345678901234\r\n1 fplComment "
       "1234567890123456789012345678901234567890123456789012345678901234567\r\n",
       0, 1, 0,
       u"props 1 12345678901234567890 0 0 0 "
       u"123456789012345678901234567890123456789012345678901234567890"},
      {"unknown kind word", "#featdef 1 1\r\n1 fplFeatKind fkComplex\r\n", 0, 1, 0,
       u"props 1  0 0 0 "},
      {"other version: definitions passed over",
       "#featdef 1 2\r\n1 fplFeatName a\r\n#featvals 1 1\r\n1 1 v\r\n", 0, 1, 1,
       u"props 1  0 0 0 |1 1 v"},
      {"empty line ends the values", "#featvals 2 1\r\n2 1 a b\r\n\r\n1 1 x\r\n", 0, 2, 1,
       u"2 1 a b|1 1 "},
      {"indices outside are passed over",
       "#featdef 1 1\r\n7 fplFeatName x\r\n0 fplFeatNum 9\r\n-1 fplFeatNum 9\r\n\r\n"
       "1 fplFeatName\r\n1 fplFeatName \r\n2 fplSorted TRUE\r\n"
       "#featvals 1 1\r\n0 1 a\r\n1 2 b\r\n"
       "-1 1 c\r\n1 1 d\r\n#featend\r\n",
       0, 1, 1, u"props 1  0 0 0 |1 1 d"},
      {"values count wins", "#featdef 3 2\r\n#featvals 1 1\r\n", 0, 1, 1, u""},
      {"definition line without a number", "#featdef 1 1\r\nfplFeatNum 3\r\n", -2, 1, 0, u""},
      {"bad feature number", "#featdef 1 1\r\n1 fplFeatNum 3x\r\n", -2, 1, 0, u""},
      {"bad values header", "#featdef 1 1\r\n#featvals 1 x\r\n", -2, 1, 0, u""},
      {"values header with one count", "#featvals 1\r\n", -2, 0, 0, u""},
      {"negative count", "#featdef -1 1\r\n", -2, 0, 0, u""},
      {"absurd counts", "#featvals 2000000000 2000000000\r\n1 1 x\r\n", -2, 0, 0, u""},
      {"absurd product", "#featvals 4096 4096\r\n", -2, 0, 0, u""},
      {"too many features", "#featvals 65537 0\r\n", -2, 0, 0, u""},
      {"features at the limit", "#featvals 65536 0\r\n", 0, 65536, 0, u""},
      {"absurd definitions", "#featdef 1 1\r\n1 fplFeatName a\r\n#featdef 2000000000 1\r\n", -2, 1,
       0, u"props 1 a 0 0 0 "},
  };
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    zyn::testing::WriteFileBytes(dir / "f.txt", c.text);
    TFeatureMatrix m;
    m.Resize(1, 1);  // a load starts from an empty matrix
    EXPECT_EQ(m.Load(Path(dir, "f.txt")), c.result < 0 ? c.result - 1 : 0);
    EXPECT_EQ(m.NFeatures(), c.nfeats);
    EXPECT_EQ(m.NObjects(), c.nobjs);
    std::u16string_view probes = c.probe;
    while (!probes.empty()) {
      const std::size_t bar = probes.find(u'|');
      const std::u16string_view probe = probes.substr(0, bar);
      probes = bar == probes.npos ? u"" : probes.substr(bar + 1);
      SCOPED_TRACE(Utf8(probe));
      std::u16string seen;
      if (probe.starts_with(u"props ")) {
        const int fix = probe[6] - u'0';
        const TFeatProps p = m.FeatProps(fix);
        seen =
            u"props " + zyn::platform::FromUTF8(std::to_string(fix)) + u" " + p.FeatName.str() +
            u" " +
            zyn::platform::FromUTF8(std::to_string(p.FeatNum) + " " + std::to_string(p.FeatKind) +
                                    " " + std::to_string(p.Sorted) + " ") +
            p.Comment.str();
      } else {
        const int fix = probe[0] - u'0';
        const int obj = probe[2] - u'0';
        // Read through a string feature whatever the file declared.
        TFeatProps p = m.FeatProps(fix);
        p.FeatKind = fkString;
        m.SetFeatProps(fix, p);
        seen = std::u16string(probe.substr(0, 4)) + m.FeatVal(fix, obj);
      }
      EXPECT_EQ(seen, probe);
    }
  }
  EXPECT_EQ(TFeatureMatrix().Load(Path(dir, "missing.txt")), -1);
  TFeatureMatrix small;
  small.SetMaxLoadedValues(100);
  zyn::testing::WriteFileBytes(dir / "big.txt", "#featvals 10 11\r\n");
  EXPECT_EQ(small.Load(Path(dir, "big.txt")), -3);
  zyn::testing::WriteFileBytes(dir / "big.txt", "#featvals 0 101\r\n");
  EXPECT_EQ(small.Load(Path(dir, "big.txt")), -3);
  zyn::testing::WriteFileBytes(dir / "big.txt", "#featvals 10 10\r\n");
  EXPECT_EQ(small.Load(Path(dir, "big.txt")), 0);
}

TEST(FeatureMatrixFileTest, TwoBlocksFromOneOpenFile) {
  TempDir dir;
  Fixture a;
  a.m.SetFeatValStr(4, 2, u"first");
  TFeatureMatrix b;
  b.Resize(1, 1);
  TFeatProps p;
  p.FeatKind = fkInteger;
  b.SetFeatProps(1, p);
  b.SetFeatValint(1, 1, 42);
  {
    Textfile f;
    f.Assign(Path(dir, "two.txt"), zyn::platform::kCpWindows1252);
    f.Rewrite();
    f.WriteLn(u"between");
    a.m.SaveToOpenFile(f);
    f.WriteLn(u"between");
    b.SaveToOpenFile(f);
    f.Close();
  }
  Textfile f;
  f.Assign(Path(dir, "two.txt"), zyn::platform::kCpWindows1252);
  f.Reset();
  TFeatureMatrix x, y, z;
  EXPECT_EQ(x.LoadFromOpenFile(f), 0);
  EXPECT_EQ(y.LoadFromOpenFile(f), 0);
  EXPECT_EQ(z.LoadFromOpenFile(f), -1);
  EXPECT_EQ(x.FeatVal(4, 2), u"first");
  EXPECT_EQ(y.FeatValAsInt(1, 1), 42);
}

// Random matrices of every kind, with blanks inside values, empty values,
// texts at their limits and every byte the 8-bit file can carry, come back
// equal, apart from blanks at the ends of values and the GUI handle.
TEST(FeatureMatrixFileTest, RandomMatricesRoundTrip) {
  std::mt19937 rng(2024);
  auto text = [&](std::size_t max_len) {
    std::u16string s(rng() % (max_len + 1), u' ');
    for (auto& c : s) {
      do c = zyn::platform::CharFromAnsi(static_cast<unsigned char>(rng() % 256));
      while (c == u'\r' || c == u'\n');
    }
    return s;
  };
  TempDir dir;
  for (int round = 0; round < 30; ++round) {
    TFeatureMatrix m;
    m.Resize(static_cast<int>(rng() % 6), static_cast<int>(rng() % 6));
    for (int fix = 1; fix <= m.NFeatures(); ++fix) {
      TFeatProps p;
      p.FeatNum = static_cast<std::int32_t>(rng());
      p.FeatName = zyn::platform::BasicShortString<20>(u"n" + text(25));
      p.FeatKind = static_cast<TFeatKind>(rng() % 5);
      p.Comment = zyn::platform::BasicShortString<60>(u"c" + text(70));
      p.PresetValues = u"p" + text(300);
      p.Sorted = rng() % 2;
      p.GUIElem = &m;
      m.SetFeatProps(fix, p);
      for (int obj = 1; obj <= m.NObjects(); ++obj) {
        if (rng() % 4 == 0) continue;
        const std::u16string v = rng() % 2 ? text(40) : u"a " + text(10) + u" b";
        if (p.FeatKind == fkInteger)
          m.SetFeatValint(fix, obj, static_cast<std::int32_t>(rng()));
        else if (p.FeatKind == fkDouble)
          m.SetFeatValDouble(fix, obj, std::ldexp(rng(), -20));
        else if (p.FeatKind == fkTriState)
          m.SetFeatValTriState(fix, obj, tsFalse);
        else if (p.FeatKind == fkString)
          m.SetFeatValStr(fix, obj, v);
      }
    }
    m.Save(Path(dir, "r.txt"));
    TFeatureMatrix back;
    ASSERT_EQ(back.Load(Path(dir, "r.txt")), 0);
    ASSERT_EQ(back.NFeatures(), m.NFeatures());
    ASSERT_EQ(back.NObjects(), m.NObjects());
    for (int fix = 1; fix <= m.NFeatures(); ++fix) {
      TFeatProps want = m.FeatProps(fix);
      want.GUIElem = nullptr;
      // Trailing blanks of the definition texts are lost with the line.
      want.FeatName = zyn::platform::BasicShortString<20>(
          Zyn_stringl::StripTrailingBlanks(want.FeatName.str()));
      want.Comment =
          zyn::platform::BasicShortString<60>(Zyn_stringl::StripTrailingBlanks(want.Comment.str()));
      want.PresetValues = Zyn_stringl::StripTrailingBlanks(want.PresetValues);
      EXPECT_EQ(back.FeatProps(fix), want) << "feature " << fix;
      TFeatProps as_text = want;
      as_text.FeatKind = fkString;
      m.SetFeatProps(fix, as_text);
      back.SetFeatProps(fix, as_text);
      for (int obj = 1; obj <= m.NObjects(); ++obj) {
        EXPECT_EQ(back.FeatVal(fix, obj), Zyn_stringl::StripLTBlanks(m.FeatVal(fix, obj)));
      }
    }
  }
}

}  // namespace
}  // namespace Zyn_dstruct
