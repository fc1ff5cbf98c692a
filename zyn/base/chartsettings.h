// zyn/base/chartsettings.h
//
// Settings objects that chart controls share: the crosshair and the way an
// axis writes dates and times. They keep values and report changes through
// OnChange; drawing and text forming belong to the controls.

#ifndef ZYN_BASE_CHARTSETTINGS_H_
#define ZYN_BASE_CHARTSETTINGS_H_

#include "zyn/base/zynbase.h"
#include "zyn/platform/font.h"
#include "zyn/platform/object.h"

namespace Zyn_zynbase {

using zyn::platform::TNotifyEvent;
using zyn::platform::TPenStyle;
using zyn::platform::TPersistent;

// Position and look of a crosshair. A new object has every field at zero,
// Layer included, although SetCrossHLayer lets only 1 or 2 in.
class TCrossHair : public TPersistent {
 public:
  double PosX() const noexcept { return FPosX; }
  double PosY() const noexcept { return FPosY; }
  TColor Color() const noexcept { return FColor; }
  TCrossHMode Mode() const noexcept { return FMode; }
  TPenStyle LineType() const noexcept { return FLineType; }
  int LineWid() const noexcept { return FLineWid; }
  int Layer() const noexcept { return FLayer; }
  const TNotifyEvent& OnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent Value) { FOnChange = std::move(Value); }

  // These store the value and fire OnChange on every call.
  void SetCrossHPosX(double Value);
  void SetCrossHPosY(double Value);
  void SetCrossHColor(TColor Value);
  void SetCrossHMode(TCrossHMode Value);
  void SetCrossHLineType(TPenStyle Value);
  void SetCrossHLineWid(int Value);
  // Clamps to 1..2, then stores and fires.
  void SetCrossHLayer(int Value);
  // Stores both and fires once, only if either differs (exact comparison).
  void SetPos(double xpos, double ypos);

  // Calls OnChange with this object, if assigned.
  void Changed();
  // From a TCrossHair: every field, the OnChange handler included; fires nothing.
  void Assign(const TPersistent& Source) override;

 protected:
  void AssignTo(TPersistent& Dest) const override;

 private:
  double FPosX = 0.0;
  double FPosY = 0.0;
  TColor FColor = 0;
  TCrossHMode FMode = chOff;
  TPenStyle FLineType = zyn::platform::psSolid;
  int FLineWid = 0;
  int FLayer = 0;
  TNotifyEvent FOnChange;
};

// How an axis writes dates and times. Every field starts at zero.
class TDTLabel : public TPersistent {
 public:
  TTimeFormat TimeFormat() const noexcept { return FTimeFormat; }
  char16_t DateSeparator() const noexcept { return FDateSeparator; }
  char16_t TimeSeparator() const noexcept { return FTimeSeparator; }
  TYearLength YearLength() const noexcept { return FYearLength; }
  bool MonthName() const noexcept { return FMonthName; }
  TDateOrder DateOrder() const noexcept { return FDateOrder; }
  TDateForTime DateForTime() const noexcept { return FDateForTime; }
  const TNotifyEvent& OnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent Value) { FOnChange = std::move(Value); }

  // These two fire on every call.
  void SetTimeFormat(TTimeFormat Value);
  void SetDAteOrder(TDateOrder Value);
  // These fire only when the value changes.
  void SetDateSeparator(char16_t Value);
  void SetTimeSeparator(char16_t Value);
  void SetYearLength(TYearLength Value);
  void SetMonthName(bool Value);
  void SetDateForTime(TDateForTime Value);

  void Changed();
  // From a TDTLabel: every field, the OnChange handler included; fires nothing.
  void Assign(const TPersistent& Source) override;

 protected:
  void AssignTo(TPersistent& Dest) const override;

 private:
  TTimeFormat FTimeFormat = tfHHMMSS;
  char16_t FDateSeparator = 0;
  char16_t FTimeSeparator = 0;
  TYearLength FYearLength = ylNone;
  bool FMonthName = false;
  TDateOrder FDateOrder = doMMDDYY;
  TDateForTime FDateForTime = dtNone;
  TNotifyEvent FOnChange;
};

}  // namespace Zyn_zynbase

#endif  // ZYN_BASE_CHARTSETTINGS_H_
