#include "zyn/base/textlabel.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "zyn/base/scanners.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/numtext.h"

namespace Zyn_zynbase {

namespace {

using zyn::platform::AnsiLowerCase;

constexpr std::u16string_view kEndTag = u"/custtextlbl";

std::u16string Hex6(TColor c) {
  static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::u16string s(6, u'0');
  for (int i = 5; i >= 0; --i, c >>= 4) s[static_cast<std::size_t>(i)] = kDigits[c & 0xF];
  return s;
}

std::u16string Decimal(int v) {
  const std::string s = std::to_string(v);
  return std::u16string(s.begin(), s.end());
}

std::u16string_view StripBlankEnds(std::u16string_view s) {
  const std::size_t first = s.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(u' ') - first + 1);
}

// The index of `value` in `names`, compared exactly, if it is there.
template <std::size_t N>
std::optional<std::size_t> XmlIndex(const TXmlNames<N>& names, std::u16string_view value) {
  const auto it = std::find(names.begin(), names.end(), value);
  if (it == names.end()) return std::nullopt;
  return static_cast<std::size_t>(it - names.begin());
}

// One tag as the label reader sees it.
struct LabelTag {
  std::u16string name;  // lower-cased
  std::u16string attr;
  std::u16string content;
};

// The label's own tag reader: no comments, content ends at the first ">".
// Gives false at the end of the file when no "<" was left.
bool ReadLabelTag(Textfile& tf, LabelTag& tag) {
  tag = {};
  bool opened = false;
  while (!tf.Eof()) {
    if (tf.ReadChar() == u'<') {
      opened = true;
      break;
    }
  }
  if (!opened) return false;
  std::u16string text;
  while (!tf.Eof()) {
    const char16_t c = tf.ReadChar();
    text.push_back(c);
    if (c == u'>') break;
  }
  if (const std::size_t empty_end = text.find(u"/>"); empty_end != std::u16string::npos) {
    const std::u16string_view head = std::u16string_view(text).substr(0, empty_end);
    const std::size_t blank = head.find(u' ');
    if (blank == std::u16string_view::npos) {
      tag.name = head;
    } else {
      tag.name = head.substr(0, blank);
      tag.attr = StripBlankEnds(head.substr(blank + 1));
    }
  } else {
    // The ">" that closed the collected text is no part of the name.
    std::u16string_view head(text);
    if (!head.empty() && head.back() == u'>') head.remove_suffix(1);
    const std::size_t blank = head.find(u' ');
    if (blank == std::u16string_view::npos) {
      tag.name = head;
    } else {
      tag.name = head.substr(0, blank);
      tag.attr = StripBlankEnds(head.substr(blank + 1));
    }
    std::u16string rest;
    while (!tf.Eof()) {
      const char16_t c = tf.ReadChar();
      rest.push_back(c);
      if (c == u'>') break;
    }
    if (const std::size_t close = rest.find(u"</"); close != std::u16string::npos) {
      tag.content = rest.substr(0, close);
    } else if (!rest.empty()) {
      tag.content = rest.substr(0, rest.size() - 1);
    }
  }
  tag.name = AnsiLowerCase(tag.name);
  return true;
}

std::int32_t AttrDecimal(std::u16string_view attr, std::u16string_view name) {
  int pos = 1;
  return zyn::internal::ScanDecimal(zyn::internal::ScanForXMLAttrib(attr, name), pos);
}

TColor AttrColor(std::u16string_view attr, std::u16string_view name) {
  int pos = 1;
  return static_cast<TColor>(
      zyn::internal::ScanHex(zyn::internal::ScanForXMLAttrib(attr, name), pos));
}

double AttrFloat(std::u16string_view attr, std::u16string_view name) {
  int pos = 1;
  return zyn::internal::ScanFPNum(zyn::internal::ScanForXMLAttrib(attr, name), true, dsBoth, pos);
}

// Whether a lower-cased start line carries the identifier `id` (lower-cased):
// the text behind `id="` up to the next quote, blanks stripped.
bool CarriesId(std::u16string_view line, std::u16string_view id) {
  const std::size_t at = line.find(u"id=\"");
  std::u16string_view found;
  if (at != std::u16string_view::npos) {
    std::u16string_view rest = line.substr(at + 4);
    found = StripBlankEnds(rest.substr(0, rest.find(u'"')));
  }
  return found == id;
}

}  // namespace

void TCustomTextLabel::Changed() {
  if (FOnChange) FOnChange(this);
}

template <typename T>
void TCustomTextLabel::Store(T& field, T value) {
  field = value;
  Changed();
}

void TCustomTextLabel::SetTxtLblPosX(double Value) { Store(FPosX, Value); }
void TCustomTextLabel::SetTxtLblPosY(double Value) { Store(FPosY, Value); }
void TCustomTextLabel::SetTxtLblLayer(int Value) {
  if (Value < 1 || Value > 16) return;
  FLayer = Value;
  Changed();
}
void TCustomTextLabel::SetTxtLblShadowDx(int Value) { Store(FXShadow, Value); }
void TCustomTextLabel::SetTxtLblShadowDy(int Value) { Store(FYShadow, Value); }
void TCustomTextLabel::SetTxtLblColorShadow(TColor Value) { Store(FColorShadow, Value); }
void TCustomTextLabel::SetTxtLblAlignment(TAlignment Value) { Store(FAlignment, Value); }
void TCustomTextLabel::SetTxtLblVertAlignment(TVerticalAlignment Value) {
  Store(FVertAlign, Value);
}
void TCustomTextLabel::SetTxtLblScreenPos(TTxtLblAttachMode Value) { Store(FAttachDat, Value); }
void TCustomTextLabel::SetTxtLblColorBkg(TColor Value) { Store(FColorBkg, Value); }
void TCustomTextLabel::SetTxtLblColorBrd(TColor Value) { Store(FColorBrd, Value); }
void TCustomTextLabel::SetTxtLblTranspar(bool Value) { Store(FTransPar, Value); }
void TCustomTextLabel::SetTxtLblFont(const TFont& Value) {
  FFont.Assign(Value);
  Changed();
}
void TCustomTextLabel::SetTxtLblCaption(std::u16string_view Value) {
  FCaption = Value;
  for (char16_t& c : FCaption)
    if (c < 32 && c != 10) c = u' ';
  Changed();
}
void TCustomTextLabel::SetTxtLblMode(TTxtLblMode Value) { Store(FMode, Value); }
void TCustomTextLabel::SetTxtLblVisible(bool Value) { Store(FVisible, Value); }

void TCustomTextLabel::Assign(const TPersistent& Source) {
  const auto* s = dynamic_cast<const TCustomTextLabel*>(&Source);
  if (s == nullptr) {
    TPersistent::Assign(Source);
    return;
  }
  FPosX = s->FPosX;
  FPosY = s->FPosY;
  FLayer = s->FLayer;
  FXShadow = s->FXShadow;
  FYShadow = s->FYShadow;
  FColorShadow = s->FColorShadow;
  FAlignment = s->FAlignment;
  FVertAlign = s->FVertAlign;
  FAttachDat = s->FAttachDat;
  FColorBkg = s->FColorBkg;
  FColorBrd = s->FColorBrd;
  FTransPar = s->FTransPar;
  FFont.Assign(s->FFont);
  FCaption = s->FCaption;
  FMode = s->FMode;
  FOnChange = s->FOnChange;
  FVisible = s->FVisible;
}

void TCustomTextLabel::AssignTo(TPersistent& Dest) const {
  if (zyn::platform::InheritsFrom<TCustomTextLabel>(Dest)) {
    Dest.Assign(*this);
  } else {
    TPersistent::AssignTo(Dest);
  }
}

void TCustomTextLabel::WriteToOpenXMLFile(Textfile& tf, bool header, std::u16string_view id,
                                          int indent) {
  const std::u16string pad(static_cast<std::size_t>(std::clamp(indent, 1, 255)), u' ');
  auto line = [&](std::u16string_view text) {
    tf.WriteString(pad);
    tf.WriteLn(text);
  };
  using zyn::platform::Str;
  if (header) line(u"<?xml version=\"1.0\"?>");
  tf.WriteLn();
  line(u"<!-- TCustomTextLabel / Zynforge -->");
  line(u"<custtextlbl sig=\"Zynforge\" vers=\"1.0\" id=\"" + std::u16string(id) + u"\">");
  line(u"  <posxy x=" + Str(FPosX, 12, -2) + u" y=" + Str(FPosY, 12, -2) + u" />");
  line(u"  <caption>" + FCaption + u"</caption>");
  line(u"  <colors brd=$" + Hex6(FColorBrd) + u" bg=$" + Hex6(FColorBkg) + u" shdw=$" +
       Hex6(FColorShadow) + u" />");
  line(u"  <shadowofs dx=" + Decimal(FXShadow) + u" dy=" + Decimal(FYShadow) + u" />");
  line(u"  <layer val=" + Decimal(FLayer) + u" />");
  line(u"  <transparent val=" + std::u16string(FTransPar ? u"1" : u"0") + u" />");
  line(u"  <visible val=" + std::u16string(FVisible ? u"1" : u"0") + u" />");
  line(u"  <alignment horiz=" + std::u16string(xmlAlignment[FAlignment]) + u" vert=" +
       std::u16string(xmlVerticalAlignment[FVertAlign]) + u" />");
  line(u"  <attachmode val=" + std::u16string(xmlTxtLblAttachMode[FAttachDat]) + u" />");
  std::u16string styles;
  for (const auto s : {zyn::platform::fsBold, zyn::platform::fsItalic, zyn::platform::fsUnderline,
                       zyn::platform::fsStrikeOut}) {
    if (!FFont.Style().Contains(s)) continue;
    if (!styles.empty()) styles += u' ';
    styles += xmlFontStyle[s];
  }
  line(u"  <font name=\"" + FFont.Name() + u"\" size=" + Decimal(FFont.Size()) + u" color=$" +
       Hex6(FFont.Color()) + u" style=\"" + styles + u"\" />");
  line(u"  <style val=" + std::u16string(xmlTxtLblMode[FMode]) + u" />");
  line(u"</custtextlbl>");
}

bool TCustomTextLabel::ReadFromOpenXMLFile(Textfile& tf, std::u16string_view id) {
  const std::u16string wanted = AnsiLowerCase(id);
  bool started = false;
  while (!tf.Eof()) {
    const std::u16string line = AnsiLowerCase(tf.ReadLn());
    if (line.find(u"<custtextlbl") == std::u16string::npos ||
        line.find(u"zynforge") == std::u16string::npos)
      continue;
    if (wanted.empty() || CarriesId(line, wanted)) {
      started = true;
      break;
    }
  }
  if (!started) return false;

  bool complete = false;
  LabelTag tag;
  while (!complete && ReadLabelTag(tf, tag)) {
    const std::u16string& a = tag.attr;
    if (tag.name == u"posxy") {
      FPosX = AttrFloat(a, u"x");
      FPosY = AttrFloat(a, u"y");
    } else if (tag.name == u"colors") {
      FColorBrd = AttrColor(a, u"brd");
      FColorBkg = AttrColor(a, u"bg");
      FColorShadow = AttrColor(a, u"shdw");
    } else if (tag.name == u"shadowofs") {
      FXShadow = AttrDecimal(a, u"dx");
      FYShadow = AttrDecimal(a, u"dy");
    } else if (tag.name == u"layer") {
      FLayer = AttrDecimal(a, u"val");
    } else if (tag.name == u"transparent") {
      FTransPar = AttrDecimal(a, u"val") == 1;
    } else if (tag.name == u"visible") {
      FVisible = AttrDecimal(a, u"val") == 1;
    } else if (tag.name == u"alignment") {
      const std::u16string horiz = zyn::internal::ScanForXMLAttrib(a, u"horiz");
      const std::u16string vert = zyn::internal::ScanForXMLAttrib(a, u"vert");
      if (auto i = XmlIndex(xmlAlignment, horiz)) FAlignment = static_cast<TAlignment>(*i);
      if (auto i = XmlIndex(xmlVerticalAlignment, vert))
        FVertAlign = static_cast<TVerticalAlignment>(*i);
    } else if (tag.name == u"attachmode") {
      const std::u16string val = zyn::internal::ScanForXMLAttrib(a, u"val");
      if (auto i = XmlIndex(xmlTxtLblAttachMode, val))
        FAttachDat = static_cast<TTxtLblAttachMode>(*i);
    } else if (tag.name == u"font") {
      FFont.SetName(zyn::internal::ScanForXMLAttrib(a, u"name"));
      FFont.SetSize(AttrDecimal(a, u"size"));
      FFont.SetColor(AttrColor(a, u"color"));
      zyn::platform::TFontStyles styles;
      const std::u16string list = zyn::internal::ScanForXMLAttrib(a, u"style");
      std::u16string_view rest(list);
      while (!rest.empty()) {
        const std::size_t blank = rest.find(u' ');
        if (auto i = XmlIndex(xmlFontStyle, rest.substr(0, blank)))
          styles.Include(static_cast<zyn::platform::TFontStyle>(*i));
        rest = blank == std::u16string_view::npos ? std::u16string_view{} : rest.substr(blank + 1);
      }
      FFont.SetStyle(styles);
    } else if (tag.name == u"style") {
      const std::u16string val = zyn::internal::ScanForXMLAttrib(a, u"val");
      if (auto i = XmlIndex(xmlTxtLblMode, val)) FMode = static_cast<TTxtLblMode>(*i);
    } else if (tag.name == u"caption") {
      FCaption = tag.content;
    } else if (tag.name == kEndTag) {
      complete = true;
    }
  }
  Changed();
  return complete;
}

}  // namespace Zyn_zynbase
