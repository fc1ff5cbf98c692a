// zyn/base/textlabel.h
//
// TCustomTextLabel: the settings of a text label that a chart control places
// on its surface, and the label's XML-like block in a text file, written by
// WriteToOpenXMLFile and found again by its identifier with
// ReadFromOpenXMLFile. The block format is in docs/textlabel_xml.md.

#ifndef ZYN_BASE_TEXTLABEL_H_
#define ZYN_BASE_TEXTLABEL_H_

#include <string>
#include <string_view>

#include "zyn/base/zynbase.h"
#include "zyn/platform/font.h"
#include "zyn/platform/object.h"
#include "zyn/platform/textfile.h"

namespace Zyn_zynbase {

using zyn::platform::TAlignment;
using zyn::platform::Textfile;
using zyn::platform::TFont;
using zyn::platform::TNotifyEvent;
using zyn::platform::TPersistent;

class TCustomTextLabel : public TPersistent {
 public:
  TCustomTextLabel() = default;

  double PosX() const noexcept { return FPosX; }
  double PosY() const noexcept { return FPosY; }
  int Layer() const noexcept { return FLayer; }
  int ShadowDx() const noexcept { return FXShadow; }
  int ShadowDy() const noexcept { return FYShadow; }
  TColor ColorShadow() const noexcept { return FColorShadow; }
  TAlignment Alignment() const noexcept { return FAlignment; }
  TVerticalAlignment VertAlignment() const noexcept { return FVertAlign; }
  TTxtLblAttachMode ScreenPos() const noexcept { return FAttachDat; }
  TColor ColorBkg() const noexcept { return FColorBkg; }
  TColor ColorBrd() const noexcept { return FColorBrd; }
  bool Transpar() const noexcept { return FTransPar; }
  // The label's own font; change it through SetTxtLblFont to fire OnChange.
  const TFont& Font() const noexcept { return FFont; }
  const std::u16string& Caption() const noexcept { return FCaption; }
  TTxtLblMode Mode() const noexcept { return FMode; }
  bool Visible() const noexcept { return FVisible; }
  const TNotifyEvent& OnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent Value) { FOnChange = std::move(Value); }

  // Every setter stores the value and fires OnChange, even when it is unchanged.
  void SetTxtLblPosX(double Value);
  void SetTxtLblPosY(double Value);
  // Takes 1 to 16 only; any other value is ignored without OnChange.
  void SetTxtLblLayer(int Value);
  void SetTxtLblShadowDx(int Value);
  void SetTxtLblShadowDy(int Value);
  void SetTxtLblColorShadow(TColor Value);
  void SetTxtLblAlignment(TAlignment Value);
  void SetTxtLblVertAlignment(TVerticalAlignment Value);
  void SetTxtLblScreenPos(TTxtLblAttachMode Value);
  void SetTxtLblColorBkg(TColor Value);
  void SetTxtLblColorBrd(TColor Value);
  void SetTxtLblTranspar(bool Value);
  // Copies `Value` into the label's own font by Assign.
  void SetTxtLblFont(const TFont& Value);
  // Characters below 32 but the line feed become blanks.
  void SetTxtLblCaption(std::u16string_view Value);
  void SetTxtLblMode(TTxtLblMode Value);
  void SetTxtLblVisible(bool Value);

  void Changed();
  // From a label: every field, the font by Assign and the OnChange handler
  // included, without the setters' rules; fires nothing.
  void Assign(const TPersistent& Source) override;

  // Writes the block to `tf` (open for writing) and leaves it open: the XML
  // header line first if `header`, every line but the empty second one
  // indented by `indent` blanks clamped to 1..255. Input/output failures of
  // the file pass to the caller.
  void WriteToOpenXMLFile(Textfile& tf, bool header, std::u16string_view id, int indent);

  // Reads on from the file's position to the first block whose identifier
  // equals `id` (case-insensitive; "" takes the first block) and loads it,
  // leaving the file behind the block. True if the block was read to its end
  // tag; false if none was found (label unchanged, no OnChange) or the file
  // ended inside it (what was read stays, OnChange fires once).
  bool ReadFromOpenXMLFile(Textfile& tf, std::u16string_view id);

 protected:
  void AssignTo(TPersistent& Dest) const override;

 private:
  // Stores the value and fires, as every setter but the layer's does.
  template <typename T>
  void Store(T& field, T value);

  double FPosX = 100.0;
  double FPosY = 10.0;
  int FLayer = 1;
  int FXShadow = 0;
  int FYShadow = 0;
  TColor FColorShadow = 0x808080;
  TAlignment FAlignment = zyn::platform::taCenter;
  TVerticalAlignment FVertAlign = vaBottom;
  TTxtLblAttachMode FAttachDat = tlamNone;
  TColor FColorBkg = 0xC0C0C0;
  TColor FColorBrd = 0;
  bool FTransPar = false;
  TFont FFont;
  std::u16string FCaption;
  TTxtLblMode FMode = tlsimple;
  TNotifyEvent FOnChange;
  bool FVisible = true;
};

}  // namespace Zyn_zynbase

#endif  // ZYN_BASE_TEXTLABEL_H_
