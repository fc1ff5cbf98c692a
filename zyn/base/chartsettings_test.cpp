#include "zyn/base/chartsettings.h"

#include <gtest/gtest.h>

#include <functional>

namespace Zyn_zynbase {
namespace {

// Each row calls one setter on an object whose field already holds the value
// a second call would store, and says whether that call still fires.
TEST(ChartSettingsTest, SettersFireAsTheirRuleSays) {
  struct Row {
    const char* name;
    std::function<void(TCrossHair&, TDTLabel&)> set;
    bool fires_on_same_value;
  };
  const Row rows[] = {
      {"PosX", [](TCrossHair& c, TDTLabel&) { c.SetCrossHPosX(0.0); }, true},
      {"PosY", [](TCrossHair& c, TDTLabel&) { c.SetCrossHPosY(0.0); }, true},
      {"Color", [](TCrossHair& c, TDTLabel&) { c.SetCrossHColor(0); }, true},
      {"Mode", [](TCrossHair& c, TDTLabel&) { c.SetCrossHMode(chOff); }, true},
      {"LineType", [](TCrossHair& c, TDTLabel&) { c.SetCrossHLineType(zyn::platform::psSolid); },
       true},
      {"LineWid", [](TCrossHair& c, TDTLabel&) { c.SetCrossHLineWid(0); }, true},
      {"SetPos", [](TCrossHair& c, TDTLabel&) { c.SetPos(0.0, 0.0); }, false},
      {"TimeFormat", [](TCrossHair&, TDTLabel& d) { d.SetTimeFormat(tfHHMMSS); }, true},
      {"DateOrder", [](TCrossHair&, TDTLabel& d) { d.SetDAteOrder(doMMDDYY); }, true},
      {"DateSep", [](TCrossHair&, TDTLabel& d) { d.SetDateSeparator(0); }, false},
      {"TimeSep", [](TCrossHair&, TDTLabel& d) { d.SetTimeSeparator(0); }, false},
      {"YearLength", [](TCrossHair&, TDTLabel& d) { d.SetYearLength(ylNone); }, false},
      {"MonthName", [](TCrossHair&, TDTLabel& d) { d.SetMonthName(false); }, false},
      {"DateForTime", [](TCrossHair&, TDTLabel& d) { d.SetDateForTime(dtNone); }, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    TCrossHair c;
    TDTLabel d;
    int fired = 0;
    c.SetOnChange([&](zyn::platform::TObject* s) { fired += s == &c; });
    d.SetOnChange([&](zyn::platform::TObject* s) { fired += s == &d; });
    row.set(c, d);
    EXPECT_EQ(fired, row.fires_on_same_value ? 1 : 0);
  }
}

TEST(ChartSettingsTest, CrossHairLayerClampsAndSetPosStoresBoth) {
  TCrossHair c;
  int fired = 0;
  c.SetOnChange([&](zyn::platform::TObject*) { ++fired; });
  EXPECT_EQ(c.Layer(), 0);
  for (auto [in, stored] : {std::pair{0, 1}, {7, 2}, {-5, 1}, {2, 2}}) {
    c.SetCrossHLayer(in);
    EXPECT_EQ(c.Layer(), stored) << in;
  }
  EXPECT_EQ(fired, 4);
  c.SetPos(0.0, 3.5);  // only y differs: both stored, one event
  EXPECT_EQ(fired, 5);
  EXPECT_EQ(c.PosY(), 3.5);
  c.SetPos(-0.0, 3.5);  // -0.0 == 0.0 exactly
  EXPECT_EQ(fired, 5);
}

TEST(ChartSettingsTest, AssignCopiesHandlerWithoutFiring) {
  TCrossHair a, b;
  int a_fired = 0, b_fired = 0;
  a.SetOnChange([&](zyn::platform::TObject*) { ++a_fired; });
  b.SetOnChange([&](zyn::platform::TObject*) { ++b_fired; });
  a.SetCrossHColor(0xFF);
  a.SetCrossHMode(chBox);
  a_fired = 0;
  b.Assign(a);
  EXPECT_EQ(a_fired + b_fired, 0);
  EXPECT_EQ(b.Color(), 0xFFu);
  EXPECT_EQ(b.Mode(), chBox);
  b.SetCrossHLineWid(3);
  EXPECT_EQ(a_fired, 1);
  EXPECT_EQ(b_fired, 0);

  TDTLabel d1, d2;
  d1.SetDateSeparator(u'.');
  d1.SetYearLength(ylYYYY);
  d2.Assign(d1);
  EXPECT_EQ(d2.DateSeparator(), u'.');
  EXPECT_EQ(d2.YearLength(), ylYYYY);
  EXPECT_THROW(d2.Assign(a), zyn::platform::EConvertError);
  EXPECT_THROW(a.Assign(d1), zyn::platform::EConvertError);
}

}  // namespace
}  // namespace Zyn_zynbase
