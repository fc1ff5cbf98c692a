#include "zyn/base/chartsettings.h"

#include <algorithm>

namespace Zyn_zynbase {

namespace {

// Stores `value` and fires, or with `only_on_change` fires only if it differs.
template <typename Owner, typename T>
void Store(Owner& owner, T& field, T value, bool only_on_change) {
  if (only_on_change && field == value) return;
  field = value;
  owner.Changed();
}

}  // namespace

void TCrossHair::Changed() {
  if (FOnChange) FOnChange(this);
}

void TCrossHair::SetCrossHPosX(double Value) { Store(*this, FPosX, Value, false); }
void TCrossHair::SetCrossHPosY(double Value) { Store(*this, FPosY, Value, false); }
void TCrossHair::SetCrossHColor(TColor Value) { Store(*this, FColor, Value, false); }
void TCrossHair::SetCrossHMode(TCrossHMode Value) { Store(*this, FMode, Value, false); }
void TCrossHair::SetCrossHLineType(TPenStyle Value) { Store(*this, FLineType, Value, false); }
void TCrossHair::SetCrossHLineWid(int Value) { Store(*this, FLineWid, Value, false); }
void TCrossHair::SetCrossHLayer(int Value) { Store(*this, FLayer, std::clamp(Value, 1, 2), false); }

void TCrossHair::SetPos(double xpos, double ypos) {
  if (xpos == FPosX && ypos == FPosY) return;
  FPosX = xpos;
  FPosY = ypos;
  Changed();
}

void TCrossHair::Assign(const TPersistent& Source) {
  if (const auto* s = dynamic_cast<const TCrossHair*>(&Source)) {
    FPosX = s->FPosX;
    FPosY = s->FPosY;
    FColor = s->FColor;
    FMode = s->FMode;
    FLineType = s->FLineType;
    FLineWid = s->FLineWid;
    FLayer = s->FLayer;
    FOnChange = s->FOnChange;
  } else {
    TPersistent::Assign(Source);
  }
}

void TCrossHair::AssignTo(TPersistent& Dest) const {
  if (zyn::platform::InheritsFrom<TCrossHair>(Dest)) {
    Dest.Assign(*this);
  } else {
    TPersistent::AssignTo(Dest);
  }
}

void TDTLabel::Changed() {
  if (FOnChange) FOnChange(this);
}

void TDTLabel::SetTimeFormat(TTimeFormat Value) { Store(*this, FTimeFormat, Value, false); }
void TDTLabel::SetDAteOrder(TDateOrder Value) { Store(*this, FDateOrder, Value, false); }
void TDTLabel::SetDateSeparator(char16_t Value) { Store(*this, FDateSeparator, Value, true); }
void TDTLabel::SetTimeSeparator(char16_t Value) { Store(*this, FTimeSeparator, Value, true); }
void TDTLabel::SetYearLength(TYearLength Value) { Store(*this, FYearLength, Value, true); }
void TDTLabel::SetMonthName(bool Value) { Store(*this, FMonthName, Value, true); }
void TDTLabel::SetDateForTime(TDateForTime Value) { Store(*this, FDateForTime, Value, true); }

void TDTLabel::Assign(const TPersistent& Source) {
  if (const auto* s = dynamic_cast<const TDTLabel*>(&Source)) {
    FTimeFormat = s->FTimeFormat;
    FDateSeparator = s->FDateSeparator;
    FTimeSeparator = s->FTimeSeparator;
    FYearLength = s->FYearLength;
    FMonthName = s->FMonthName;
    FDateOrder = s->FDateOrder;
    FDateForTime = s->FDateForTime;
    FOnChange = s->FOnChange;
  } else {
    TPersistent::Assign(Source);
  }
}

void TDTLabel::AssignTo(TPersistent& Dest) const {
  if (zyn::platform::InheritsFrom<TDTLabel>(Dest)) {
    Dest.Assign(*this);
  } else {
    TPersistent::AssignTo(Dest);
  }
}

}  // namespace Zyn_zynbase
