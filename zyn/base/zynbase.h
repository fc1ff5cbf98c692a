// zyn/base/zynbase.h
//
// The vocabulary shared by the library and the packages built on it:
// enumerations with their XML name tables, geometry records, array and event
// types, language tables, the hook variables, the root of the exception tree
// and the two forms of failure message. All tables are constant data.

#ifndef ZYN_BASE_ZYNBASE_H_
#define ZYN_BASE_ZYNBASE_H_

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/object.h"
#include "zyn/platform/text.h"
#include "zyn/platform/types.h"

namespace Zyn_zynbase {

using zyn::platform::BasicShortString;
using zyn::platform::TColor;
using zyn::platform::TObject;
using zyn::platform::TPoint;

// ---------------------------------------------------------------------------
// Enumerations. Ordinals are part of the interface: tables are indexed by them.

enum TBkgFill : std::uint8_t { bfSimple, bfStretch, bfTile };
enum TBoundingBox : std::uint8_t { bbNone, bbFrame, bbFaces };
enum TColorScheme : std::uint8_t { csBWG, csSystem };
enum TDecPSep : std::uint8_t { dsSystem, dsDot, dsComma, dsBoth };
enum TFigType : std::uint8_t { ftNoFigs, ftNum, ftTime, ftDateTime, ftUserText };
enum TScaleType : std::uint8_t { sctXB, sctXT, sctYL, sctYR };
enum TVerticalAlignment : std::uint8_t { vaTop, vaCenter, vaBottom };
enum TYearLength : std::uint8_t { ylNone, ylYY, ylYYYY };
enum TDateOrder : std::uint8_t { doMMDDYY, doDDMMYY, doYYMMDD };
enum TDateForTime : std::uint8_t { dtNone, dtOnePerChart, dtOnePerDay, dtAllTicks };
enum TShadowStyle : std::uint8_t { ssFlying, ssBox };
enum TFrameStyle : std::uint8_t { fsNone, fsSimple, fsLowered, fsRaised, fsEmbossed, fsEngraved };
enum TTimeFormat : std::uint8_t { tfHHMMSS, tfHHhMM, tfAMPM };
enum TDirection : std::uint8_t { dirUpward, dirDownward, dirLeftward, dirRightward };
enum TOrientation : std::uint8_t { orVert, orHoriz };
enum TAxis : std::uint8_t { atXAxis, atYAxis, atZAxis };
enum TDims : std::uint8_t { dimX, dimY, dimL, dimT };
enum TTriState : std::uint8_t { tsFalse, tsTrue, tsUndefined };
enum TCrossHMode : std::uint8_t { chOff, chHoriz, chVert, chBoth, chCrossBox, chBox };
enum TTxtLblAttachMode : std::uint8_t { tlamNone, tlamXOnly, tlamYOnly, tlamBoth };
enum TTxtLblMode : std::uint8_t { tlOff, tlsimple, tlBox, tlUnderline, tlShadow };
enum TDegreeFormat : std::uint8_t { dfDeg, dfDegMin, dfDegMinSec, dfNumeric };
enum TCSVDelimiters : std::uint8_t { csvUnknown, csvSemicolon, csvComma, csvColon, csvTab };
enum TZoomPanMode : std::uint8_t { zpmPan, zpmColZoomLeft, zpmColZoomRight };
enum TLanguage : std::uint8_t { lgUnknown, lgEnglish, lgGerman, lgFrench, lgSpanish };
enum TVarKind : std::uint8_t { rnum, dnum, snum, inum, lnum, Bool, strg };
enum TMouseBoxState : std::uint8_t { msNormal, msFirstCorner, msRectDraw, msFinished };
enum TMouseActMode : std::uint8_t {
  maNone,
  maPan,
  maPanHoriz,
  maPanVert,
  maPanGrid,
  maRubberBand,
  maZoom,
  maZoomWind,
  maZoomWindPos,
  maZoomDrag,
  maDragCrossH,
  maDragLabel,
  maRotate,
  maRotAndZoom,
  maRotXOnly,
  maRotZOnly,
  maSelectRect,
  maDrawMTrace,
  maZoomPanColors
};
enum TZoomState : std::uint8_t { zsNormal, zsDrawWin };

// ---------------------------------------------------------------------------
// XML name tables: row n is the text XML forms use for the value of ordinal n.

template <std::size_t N>
using TXmlNames = std::array<std::u16string_view, N>;

inline constexpr TXmlNames<3> xmlBkgFill = {u"bfSimple", u"bfStretch", u"bfTile"};
inline constexpr TXmlNames<3> xmlBoundingBox = {u"bbNone", u"bbFrame", u"bbFaces"};
inline constexpr TXmlNames<2> xmlColorScheme = {u"csBWG", u"csSystem"};
inline constexpr TXmlNames<5> xmlFigType = {u"ftNoFigs", u"ftNum", u"ftTime", u"ftDateTime",
                                            u"ftUserText"};
inline constexpr TXmlNames<4> xmlScaleType = {u"sctXB", u"sctXT", u"sctYL", u"sctYR"};
inline constexpr TXmlNames<3> xmlVerticalAlignment = {u"vaTop", u"vaCenter", u"vaBottom"};
inline constexpr TXmlNames<3> xmlYearLength = {u"ylNone", u"ylYY", u"ylYYYY"};
inline constexpr TXmlNames<3> xmlDateOrder = {u"doMMDDYY", u"doDDMMYY", u"doYYMMDD"};
inline constexpr TXmlNames<4> xmlDateForTime = {u"dtNone", u"dtOnePerChart", u"dtOnePerDay",
                                                u"dtAllTicks"};
inline constexpr TXmlNames<2> xmlShadowStyle = {u"ssFlying", u"ssBox"};
inline constexpr TXmlNames<6> xmlFrameStyle = {u"fsNone",   u"fsSimple",   u"fsLowered",
                                               u"fsRaised", u"fsEmbossed", u"fsEngraved"};
inline constexpr TXmlNames<3> xmlTimeFormat = {u"tfHHMMSS", u"tfHHhMM", u"tfAMPM"};
inline constexpr TXmlNames<4> xmlDirection = {u"dirUpward", u"dirDownward", u"dirLeftward",
                                              u"dirRightward"};
inline constexpr TXmlNames<6> xmlCrossHMode = {u"chOff",  u"chHoriz",    u"chVert",
                                               u"chBoth", u"chCrossBox", u"chBox"};
inline constexpr TXmlNames<4> xmlTxtLblAttachMode = {u"tlamNone", u"tlamXOnly", u"tlamYOnly",
                                                     u"tlamBoth"};
inline constexpr TXmlNames<5> xmlTxtLblMode = {u"tlOff", u"tlsimple", u"tlBox", u"tlUnderline",
                                               u"tlShadow"};
inline constexpr TXmlNames<5> xmlLanguage = {u"lgUnknown", u"lgEnglish", u"lgGerman", u"lgFrench",
                                             u"lgSpanish"};
// "bool", in lower case, for the value Bool.
inline constexpr TXmlNames<7> xmlVarKind = {u"rnum", u"dnum", u"snum", u"inum",
                                            u"lnum", u"bool", u"strg"};
inline constexpr TXmlNames<4> xmlMouseBoxState = {u"msNormal", u"msFirstCorner", u"msRectDraw",
                                                  u"msFinished"};
inline constexpr TXmlNames<19> xmlMouseActMode = {
    u"maNone",       u"maPan",        u"maPanHoriz",   u"maPanVert",      u"maPanGrid",
    u"maRubberBand", u"maZoom",       u"maZoomWind",   u"maZoomWindPos",  u"maZoomDrag",
    u"maDragCrossH", u"maDragLabel",  u"maRotate",     u"maRotAndZoom",   u"maRotXOnly",
    u"maRotZOnly",   u"maSelectRect", u"maDrawMTrace", u"maZoomPanColors"};
inline constexpr TXmlNames<2> xmlZoomState = {u"zsNormal", u"zsDrawWin"};
// Indexed by the platform's TAlignment and TFontStyle.
inline constexpr TXmlNames<3> xmlAlignment = {u"taLeftJustify", u"taRightJustify", u"taCenter"};
inline constexpr TXmlNames<4> xmlFontStyle = {u"fsBold", u"fsItalic", u"fsUnderline",
                                              u"fsStrikeOut"};

// ---------------------------------------------------------------------------
// Records.

struct TPointDouble {
  double X = 0;
  double Y = 0;
  friend constexpr bool operator==(const TPointDouble&, const TPointDouble&) = default;
};

struct TColoredPoint {
  double X = 0;
  double Y = 0;
  std::uint16_t Flag = 0;
  TColor Color = 0;
};

struct TCellPosition4D {
  std::int32_t X = 0;
  std::int32_t Y = 0;
  std::int32_t L = 0;
  std::int32_t T = 0;
};

// Four edges; TopLeft is the point (Left, Top) and BottomRight the point
// (Right, Bottom). The layout is that of two TPointDouble in a row.
struct TRectDouble {
  double Left = 0;
  double Top = 0;
  double Right = 0;
  double Bottom = 0;

  constexpr TPointDouble TopLeft() const { return {Left, Top}; }
  constexpr TPointDouble BottomRight() const { return {Right, Bottom}; }
  constexpr void SetTopLeft(TPointDouble p) { Left = p.X, Top = p.Y; }
  constexpr void SetBottomRight(TPointDouble p) { Right = p.X, Bottom = p.Y; }
  friend constexpr bool operator==(const TRectDouble&, const TRectDouble&) = default;
};
static_assert(sizeof(TRectDouble) == 2 * sizeof(TPointDouble));

using TQuad = std::array<TPoint, 4>;

// ---------------------------------------------------------------------------
// Dynamic arrays (first index 0) and fixed buffers.

using TPDblArray = std::vector<TPointDouble>;
using TSingleArray = std::vector<float>;
using TDoubleArray = std::vector<double>;
using TDouble2DArray = std::vector<TDoubleArray>;
using TDouble3DArray = std::vector<TDouble2DArray>;
using TDouble4DArray = std::vector<TDouble3DArray>;
using TIntArray = std::vector<std::int32_t>;
using TInt2DArray = std::vector<TIntArray>;
using TInt3DArray = std::vector<TInt2DArray>;
using TInt4DArray = std::vector<TInt3DArray>;
using TBoolArray = std::vector<bool>;
using TBool2DArray = std::vector<TBoolArray>;
using TStrArray = std::vector<std::u16string>;
using TVariantArray = std::vector<zyn::platform::Variant>;
using TBytes = std::vector<std::uint8_t>;

using TBuf4096 = std::array<std::uint8_t, 4096>;
using TBuf16K = std::array<std::uint8_t, 16384>;
// A byte buffer of any length, seen through a pointer with byte indexing.
using TDataBuffer = std::span<std::uint8_t>;

// ---------------------------------------------------------------------------
// Events. Method pointers are std::function (empty: not assigned); the two
// feedback types are plain function pointers.

using zyn::platform::TNotifyEvent;
using TSortExchgEvent =
    std::function<void(TObject* Sender, std::uint8_t ExchgWhat, std::int32_t index1,
                       std::int32_t index2, std::int32_t first, std::int32_t last)>;
using TZoomPanEvent = std::function<void(TObject* Sender)>;
using TSelectRectEvent = std::function<void(TObject* Sender, std::int32_t Layer, double LoX,
                                            double LoY, double HiX, double HiY)>;
using TOnPercentDoneEvent = std::function<void(TObject* Sender, std::int32_t PercentDone)>;
using TOnCheckAbortEvent = std::function<void(TObject* Sender, bool& Abort)>;
using TOnRubberBandActionEvent = std::function<void(TObject* Sender, TPoint APoint)>;
using FeedBackProcType = void (*)(double StateCnt);
using TFeedbackProc = void (*)(TObject* Sender, double StateCnt, double PercentDone);

// ---------------------------------------------------------------------------
// Language tables, indexed [TLanguage][column], both from 0: MonthShort[lgEnglish][0]
// is "Jan", WeekDayShort[lgGerman][0] "Mo" (Monday), NumWords[lg][n] the word
// for n. Entries are Windows-1252 short strings of the stated capacity.

inline constexpr std::size_t kLanguageCount = 5;

template <std::size_t Capacity, std::size_t Columns>
using TLanguageTable = std::array<std::array<BasicShortString<Capacity>, Columns>, kLanguageCount>;

inline constexpr TLanguageTable<4, 12> MonthShort = {{
    {u"M01", u"M02", u"M03", u"M04", u"M05", u"M06", u"M07", u"M08", u"M09", u"M10", u"M11",
     u"M12"},
    {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep", u"Oct", u"Nov",
     u"Dec"},
    {u"Jän", u"Feb", u"Mär", u"Apr", u"Mai", u"Jun", u"Jul", u"Aug", u"Sep", u"Okt", u"Nov",
     u"Dez"},
    {u"jan", u"fév", u"mar", u"avr", u"mai", u"juin", u"jul", u"aoû", u"sep", u"oct", u"nov",
     u"déc"},
    {u"Ene", u"Feb", u"Mar", u"Abr", u"May", u"Jun", u"Jul", u"Ago", u"Sep", u"Oct", u"Nov",
     u"Dic"},
}};

inline constexpr TLanguageTable<10, 12> MonthLong = {{
    {u"M01", u"M02", u"M03", u"M04", u"M05", u"M06", u"M07", u"M08", u"M09", u"M10", u"M11",
     u"M12"},
    {u"January", u"February", u"March", u"April", u"May", u"June", u"July", u"August", u"September",
     u"October", u"November", u"December"},
    {u"Jänner", u"Februar", u"März", u"April", u"Mai", u"Juni", u"Juli", u"August", u"September",
     u"Oktober", u"November", u"Dezember"},
    {u"janvier", u"février ", u"mars", u"avril", u"mai", u"juin", u"juillet", u"août", u"septembre",
     u"octobre", u"novembre", u"décembre"},
    {u"enero", u"febrero", u"marzo", u"abril", u"mai", u"junio", u"julio", u"agosto", u"septiembre",
     u"octubre", u"noviembre", u"diciembre"},
}};

inline constexpr TLanguageTable<3, 7> WeekDayShort = {{
    {u"D01", u"D02", u"D03", u"D04", u"D05", u"D06", u"D07"},
    {u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat", u"Sun"},
    {u"Mo", u"Di", u"Mi", u"Do", u"Fr", u"Sa", u"So"},
    {u"lun", u"mar", u"mer", u"jeu", u"ven", u"sam", u"dim"},
    {u"lun", u"mar", u"mie", u"jue", u"vie", u"sab", u"dom"},
}};

inline constexpr TLanguageTable<10, 7> WeekDayLong = {{
    {u"D01", u"D02", u"D03", u"D04", u"D05", u"D06", u"D07"},
    {u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday", u"Sunday"},
    {u"Montag", u"Dienstag", u"Mittwoch", u"Donnerstag", u"Freitag", u"Samstag", u"Sonntag"},
    {u"lundi", u"mardi", u"mercredi", u"jeudi", u"vendredi", u"samedi", u"dimanche"},
    {u"lunes", u"martes", u"miércoles", u"jueves", u"viernes", u"sábado", u"domingo"},
}};

inline constexpr TLanguageTable<6, 13> NumWords = {{
    {u"N00", u"N01", u"N02", u"N03", u"N04", u"N05", u"N06", u"N07", u"N08", u"N09", u"N10", u"N11",
     u"N12"},
    {u"zero", u"one", u"two", u"three", u"four", u"five", u"six", u"seven", u"eight", u"nine",
     u"ten", u"eleven", u"twelve"},
    {u"null", u"eins", u"zwei", u"drei", u"vier", u"fünf", u"sechs", u"sieben", u"acht", u"neun",
     u"zehn", u"elf", u"zwölf"},
    {u"zéro", u"celui", u"deux", u"trois", u"quatre", u"cinq", u"six", u"sept", u"huit", u"neuf",
     u"dix", u"onze", u"douze"},
    {u"cero", u"uno", u"dos", u"tres", u"cuatro", u"cinco", u"seis", u"siete", u"ocho", u"nueve",
     u"diez", u"once", u"doce"},
}};

// LanguageID[in][named]: the name of language `named` written in language `in`.
inline constexpr TLanguageTable<15, kLanguageCount> LanguageID = {{
    {u"???", u"???", u"???", u"???", u"???"},
    {u"???", u"English", u"German", u"French", u"Spanish"},
    {u"???", u"englisch", u"deutsch", u"französisch", u"spanisch"},
    {u"???", u"anglais", u"allemand", u"français", u"espagnol"},
    {u"???", u"inglés", u"alemán", u"francés", u"español"},
}};

inline constexpr std::array<BasicShortString<2>, kLanguageCount> ISO639_2Char = {
    u"??", u"en", u"de", u"fr", u"es"};
inline constexpr std::array<BasicShortString<3>, kLanguageCount> ISO639_3Char = {
    u"???", u"eng", u"ger", u"fre", u"spa"};

// The delimiter character of each TCSVDelimiters value; code 0 for csvUnknown.
inline constexpr std::array<char16_t, 5> CSVDelimiters = {u'\0', u';', u',', u':', u'\t'};

// The HTML 4 entity references of U+00A0 to U+00FF: index = code point - 160.
inline constexpr std::array<BasicShortString<8>, 96> HTMLLat1Entities = {
    u"&nbsp;",   u"&iexcl;",  u"&cent;",   u"&pound;",  u"&curren;", u"&yen;",    u"&brvbar;",
    u"&sect;",   u"&uml;",    u"&copy;",   u"&ordf;",   u"&laquo;",  u"&not;",    u"&shy;",
    u"&reg;",    u"&macr;",   u"&deg;",    u"&plusmn;", u"&sup2;",   u"&sup3;",   u"&acute;",
    u"&micro;",  u"&para;",   u"&middot;", u"&cedil;",  u"&sup1;",   u"&ordm;",   u"&raquo;",
    u"&frac14;", u"&frac12;", u"&frac34;", u"&iquest;", u"&Agrave;", u"&Aacute;", u"&Acirc;",
    u"&Atilde;", u"&Auml;",   u"&Aring;",  u"&AElig;",  u"&Ccedil;", u"&Egrave;", u"&Eacute;",
    u"&Ecirc;",  u"&Euml;",   u"&Igrave;", u"&Iacute;", u"&Icirc;",  u"&Iuml;",   u"&ETH;",
    u"&Ntilde;", u"&Ograve;", u"&Oacute;", u"&Ocirc;",  u"&Otilde;", u"&Ouml;",   u"&times;",
    u"&Oslash;", u"&Ugrave;", u"&Uacute;", u"&Ucirc;",  u"&Uuml;",   u"&Yacute;", u"&THORN;",
    u"&szlig;",  u"&agrave;", u"&aacute;", u"&acirc;",  u"&atilde;", u"&auml;",   u"&aring;",
    u"&aelig;",  u"&ccedil;", u"&egrave;", u"&eacute;", u"&ecirc;",  u"&euml;",   u"&igrave;",
    u"&iacute;", u"&icirc;",  u"&iuml;",   u"&eth;",    u"&ntilde;", u"&ograve;", u"&oacute;",
    u"&ocirc;",  u"&otilde;", u"&ouml;",   u"&divide;", u"&oslash;", u"&ugrave;", u"&uacute;",
    u"&ucirc;",  u"&uuml;",   u"&yacute;", u"&thorn;",  u"&yuml;",
};

// The TCSVDelimiters value whose character is `c`; csvUnknown for any other
// character, code 0 included.
TCSVDelimiters ResolveCSVDelimiter(char16_t c);

// ---------------------------------------------------------------------------
// Hook variables: a rendezvous for code on top of the library, which assigns
// and reads them. The library itself only sets ProcStat to null at start-up.

extern void* ProcStat;
extern void* LastProcStat;
extern void* AbortMathProc;
extern void* MathFeedBackProc;

// ---------------------------------------------------------------------------
// Failures.

// The root of the library's exceptions; each unit raises a child of its own.
class EZYNError : public zyn::platform::Exception {
 public:
  using Exception::Exception;
};

// "Component "<Name>": <text>", the message form of components and dialogs.
std::u16string ComponentMessage(const zyn::platform::TComponent& Component,
                                std::u16string_view Text);

// "Class <ClassName>: <text>", the message form of TStringArray.
std::u16string ClassMessage(std::u16string_view ClassName, std::u16string_view Text);

// Runs `allocate`. Whatever it throws, memory exhaustion included, is replaced
// by an exception of class E carrying `message`.
template <typename E, typename Allocate>
void GuardAllocation(Allocate&& allocate, std::u16string_view message) {
  try {
    allocate();
  } catch (...) {
    throw E(std::u16string(message));
  }
}

// Unit start and stop, run by the package frame.
void initialization();
void Finalization();

}  // namespace Zyn_zynbase

#endif  // ZYN_BASE_ZYNBASE_H_
