#include "zyn/base/zynbase.h"

#include <gtest/gtest.h>

#include <new>
#include <set>

#include "testing/zyn_testing.h"

namespace Zyn_zynbase {
namespace {

TEST(ZynBaseTest, EveryXmlTableNamesEachValueOfItsEnumeration) {
  struct Case {
    const char* table;
    std::size_t rows;
    std::size_t values;  // ordinal of the last value + 1
    std::u16string_view last_row;
  };
  const Case cases[] = {
      {"xmlBkgFill", xmlBkgFill.size(), bfTile + 1u, u"bfTile"},
      {"xmlBoundingBox", xmlBoundingBox.size(), bbFaces + 1u, u"bbFaces"},
      {"xmlColorScheme", xmlColorScheme.size(), csSystem + 1u, u"csSystem"},
      {"xmlFigType", xmlFigType.size(), ftUserText + 1u, u"ftUserText"},
      {"xmlScaleType", xmlScaleType.size(), sctYR + 1u, u"sctYR"},
      {"xmlVerticalAlignment", xmlVerticalAlignment.size(), vaBottom + 1u, u"vaBottom"},
      {"xmlYearLength", xmlYearLength.size(), ylYYYY + 1u, u"ylYYYY"},
      {"xmlDateOrder", xmlDateOrder.size(), doYYMMDD + 1u, u"doYYMMDD"},
      {"xmlDateForTime", xmlDateForTime.size(), dtAllTicks + 1u, u"dtAllTicks"},
      {"xmlShadowStyle", xmlShadowStyle.size(), ssBox + 1u, u"ssBox"},
      {"xmlFrameStyle", xmlFrameStyle.size(), fsEngraved + 1u, u"fsEngraved"},
      {"xmlTimeFormat", xmlTimeFormat.size(), tfAMPM + 1u, u"tfAMPM"},
      {"xmlDirection", xmlDirection.size(), dirRightward + 1u, u"dirRightward"},
      {"xmlCrossHMode", xmlCrossHMode.size(), chBox + 1u, u"chBox"},
      {"xmlTxtLblAttachMode", xmlTxtLblAttachMode.size(), tlamBoth + 1u, u"tlamBoth"},
      {"xmlTxtLblMode", xmlTxtLblMode.size(), tlShadow + 1u, u"tlShadow"},
      {"xmlLanguage", xmlLanguage.size(), lgSpanish + 1u, u"lgSpanish"},
      {"xmlVarKind", xmlVarKind.size(), strg + 1u, u"strg"},
      {"xmlMouseBoxState", xmlMouseBoxState.size(), msFinished + 1u, u"msFinished"},
      {"xmlMouseActMode", xmlMouseActMode.size(), maZoomPanColors + 1u, u"maZoomPanColors"},
      {"xmlZoomState", xmlZoomState.size(), zsDrawWin + 1u, u"zsDrawWin"},
      {"xmlAlignment", xmlAlignment.size(), zyn::platform::taCenter + 1u, u"taCenter"},
      {"xmlFontStyle", xmlFontStyle.size(), zyn::platform::fsStrikeOut + 1u, u"fsStrikeOut"},
  };
  EXPECT_EQ(std::size(cases), 23u);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.table);
    EXPECT_EQ(c.rows, c.values);
    EXPECT_EQ(c.values > 0 ? c.last_row : u"", c.last_row);
  }
  EXPECT_EQ(xmlTxtLblMode[tlsimple], u"tlsimple");
  EXPECT_EQ(xmlVarKind[Bool], u"bool");
  EXPECT_EQ(xmlMouseActMode[maZoomPanColors], u"maZoomPanColors");
  EXPECT_EQ(xmlFontStyle[zyn::platform::fsBold], u"fsBold");
}

TEST(ZynBaseTest, ResolveCsvDelimiterKnowsExactlyFourCharacters) {
  for (int c = 0; c < 0x10000; ++c) {
    TCSVDelimiters expected = csvUnknown;
    if (c == ';') expected = csvSemicolon;
    if (c == ',') expected = csvComma;
    if (c == ':') expected = csvColon;
    if (c == '\t') expected = csvTab;
    ASSERT_EQ(ResolveCSVDelimiter(static_cast<char16_t>(c)), expected) << c;
  }
}

TEST(ZynBaseTest, LanguageTablesHoldTheirTexts) {
  EXPECT_EQ(MonthShort[lgGerman][0].str(), u"J\u00e4n");
  EXPECT_EQ(MonthShort[lgGerman][0].bytes(), "J\xe4n");
  EXPECT_EQ(MonthShort[lgFrench][5].str(), u"juin");
  EXPECT_EQ(MonthLong[lgFrench][1].str(), u"f\u00e9vrier ");  // with its trailing blank
  EXPECT_EQ(MonthLong[lgEnglish][11].str(), u"December");
  EXPECT_EQ(WeekDayShort[lgGerman][6].str(), u"So");
  EXPECT_EQ(WeekDayLong[lgSpanish][5].str(), u"s\u00e1bado");
  EXPECT_EQ(NumWords[lgGerman][12].str(), u"zw\u00f6lf");
  EXPECT_EQ(NumWords[lgUnknown][0].str(), u"N00");
  EXPECT_EQ(LanguageID[lgGerman][lgFrench].str(), u"franz\u00f6sisch");
  EXPECT_EQ(LanguageID[lgEnglish][lgUnknown].str(), u"???");
  EXPECT_EQ(ISO639_2Char[lgSpanish].str(), u"es");
  EXPECT_EQ(ISO639_3Char[lgGerman].str(), u"ger");
  // Nothing was cut to fit: the longest entries fill their capacity exactly.
  EXPECT_EQ(LanguageID[lgGerman][lgFrench].size(), 11u);
  EXPECT_EQ(WeekDayLong[lgGerman][3].size(), 10u);  // "Donnerstag"
}

TEST(ZynBaseTest, HtmlEntitiesFollowTheCodePoints) {
  EXPECT_EQ(HTMLLat1Entities.front().str(), u"&nbsp;");
  EXPECT_EQ(HTMLLat1Entities[0xE4 - 160].str(), u"&auml;");
  EXPECT_EQ(HTMLLat1Entities[0xD7 - 160].str(), u"&times;");
  EXPECT_EQ(HTMLLat1Entities.back().str(), u"&yuml;");
  std::set<std::string_view> distinct;
  for (const auto& e : HTMLLat1Entities) {
    EXPECT_EQ(e[0], '&');
    EXPECT_EQ(e[e.size() - 1], ';');
    distinct.insert(e.bytes());
  }
  EXPECT_EQ(distinct.size(), 96u);
}

TEST(ZynBaseTest, FailureMessagesQuoteTheName) {
  zyn::platform::TComponent nameless;
  EXPECT_EQ(ComponentMessage(nameless, u"not enough memory"), u"Component \"\": not enough memory");
  zyn::platform::TComponent named;
  named.SetName(u"Colors1");
  EXPECT_EQ(ComponentMessage(named, u"x"), u"Component \"Colors1\": x");
  EXPECT_EQ(ClassMessage(u"TStringArray", u"cell is not numeric"),
            u"Class TStringArray: cell is not numeric");
}

TEST(ZynBaseTest, AllocationGuardTurnsAnyFailureIntoTheUnitsException) {
  class EUnitError : public EZYNError {
   public:
    using EZYNError::EZYNError;
  };
  try {
    GuardAllocation<EUnitError>([] { throw std::bad_alloc(); }, u"Component \"\": no memory");
    FAIL() << "no exception";
  } catch (const EUnitError& e) {
    EXPECT_EQ(e.Message(), u"Component \"\": no memory");
  }
  EXPECT_THROW(GuardAllocation<EUnitError>([] { throw 42; }, u"m"), EZYNError);
  bool ran = false;
  EXPECT_NO_THROW(GuardAllocation<EUnitError>([&ran] { ran = true; }, u"m"));
  EXPECT_TRUE(ran);
}

TEST(ZynBaseTest, RectangleCornersShareTheEdges) {
  TRectDouble r{1, 2, 3, 4};
  EXPECT_EQ(r.TopLeft(), (TPointDouble{1, 2}));
  EXPECT_EQ(r.BottomRight(), (TPointDouble{3, 4}));
  r.SetTopLeft({-1, -2});
  EXPECT_EQ(r, (TRectDouble{-1, -2, 3, 4}));
}

}  // namespace
}  // namespace Zyn_zynbase
