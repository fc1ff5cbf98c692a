#include "zyn/dstruct/featurematrix.h"

#include <algorithm>
#include <utility>

#include "zyn/platform/casefold.h"
#include "zyn/platform/numconv.h"
#include "zyn/stringl/formatting.h"

namespace Zyn_dstruct {

using Zyn_zynbase::tsUndefined;
using Zyn_zynbase::TTriState;

namespace {

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// A digit alone, or a digit, "+" or "-" followed by digits only.
bool IsIntegerText(std::u16string_view s) {
  if (s.empty()) return false;
  if (s.size() == 1) return IsDigit(s[0]);
  if (!IsDigit(s[0]) && s[0] != u'+' && s[0] != u'-') return false;
  return std::all_of(s.begin() + 1, s.end(), IsDigit);
}

// True if the text begins with a number ("12abc" does). A state machine over
// blank, "+", "-", digit, ".", "E" (either case) and other; behind the text it
// sees one more "other". Exponents of 4201 and above fail.
bool IsFloatText(std::u16string_view s) {
  if (s.empty()) return false;
  enum Input { kBlank, kPlus, kMinus, kDigit, kDot, kExp, kOther };
  constexpr std::int8_t F = 0;  // fail
  constexpr std::int8_t A = 9;  // accept
  constexpr std::int8_t kNext[9][7] = {
      {F, F, F, F, F, F, F},  // unused
      {1, 2, 2, 3, 4, F, F},  // 1 start
      {F, F, F, 3, 4, F, F},  // 2 after the sign
      {A, A, A, 3, 4, 6, A},  // 3 integer digits
      {A, A, A, 5, F, 6, A},  // 4 behind "."
      {A, A, A, 5, F, 6, A},  // 5 fraction digits
      {F, 7, 7, 8, F, F, A},  // 6 behind "E"
      {F, F, F, 8, F, F, A},  // 7 behind the exponent's sign
      {A, A, A, 8, A, A, A},  // 8 exponent digits
  };
  int state = 1;
  int exponent = 0;
  for (std::size_t i = 0; i <= s.size(); ++i) {
    Input input = kOther;
    if (i < s.size()) {
      const char16_t c = s[i];
      if (c == u' ')
        input = kBlank;
      else if (c == u'+')
        input = kPlus;
      else if (c == u'-')
        input = kMinus;
      else if (IsDigit(c))
        input = kDigit;
      else if (c == u'.')
        input = kDot;
      else if (c == u'E' || c == u'e')
        input = kExp;
    }
    const int next = kNext[state][input];
    if (next == F) return false;
    if (next == A) return true;
    if (next == 8 && input == kDigit) {
      exponent = exponent * 10 + (s[i] - u'0');
      if (exponent >= 4201) return false;
    }
    state = next;
  }
  return false;  // not reached: the final "other" accepts or fails in every state
}

// "true", "false" or the empty text, in any ASCII case.
bool IsTriStateText(std::u16string_view folded) {
  return folded.empty() || folded == u"true" || folded == u"false";
}

std::u16string DefaultValue(TFeatKind kind) {
  return kind == fkInteger || kind == fkDouble ? u"0" : u"";
}

std::u16string Decimal(std::int64_t v) {
  const std::string s = std::to_string(v);
  return {s.begin(), s.end()};
}

std::u16string Numbered(std::u16string_view before, int fix, std::u16string_view after) {
  return std::u16string(before) + Decimal(fix) + std::u16string(after);
}

}  // namespace

void ClearFeatProps(TFeatProps& props) {
  props = TFeatProps{};
  props.FeatName = zyn::platform::BasicShortString<20>(u"undefined");
}

TFeatureMatrix::TFeatureMatrix(TComponent* AOwner) : TComponent(AOwner) { Clear(); }

void TFeatureMatrix::Changed() {
  if (FOnChange) FOnChange(this);
}

void TFeatureMatrix::Fail(std::u16string_view text) const {
  throw EZYNDStructError(Zyn_zynbase::ComponentMessage(*this, text));
}

const std::u16string& TFeatureMatrix::Value(int fix, int obj) const {
  return FFeatVals[static_cast<std::size_t>(fix - 1)][static_cast<std::size_t>(obj - 1)];
}

std::u16string& TFeatureMatrix::Value(int fix, int obj) {
  return FFeatVals[static_cast<std::size_t>(fix - 1)][static_cast<std::size_t>(obj - 1)];
}

// ---------------------------------------------------------------------------
// Shape

void TFeatureMatrix::Reshape(int nfeats, int nobjs) {
  const auto nf = static_cast<std::size_t>(nfeats);
  const auto no = static_cast<std::size_t>(nobjs);
  const std::size_t kept = std::min(nf, FFeatVals.size());
  // Every allocation comes first; what follows them can't fail, so an
  // exhausted memory leaves the matrix as it was (grown capacity aside).
  std::vector<std::vector<std::u16string>> new_rows(nf - kept);
  for (auto& row : new_rows) row.resize(no);
  FFeatProps.reserve(nf);
  FFeatVals.reserve(nf);
  for (std::size_t i = 0; i < kept; ++i) FFeatVals[i].reserve(no);

  FFeatProps.resize(nf);
  FFeatVals.resize(kept);
  for (auto& row : FFeatVals) row.resize(no);
  for (auto& row : new_rows) FFeatVals.push_back(std::move(row));
  FNFeats = nfeats;
  FNObjs = nobjs;
}

void TFeatureMatrix::SetNFeats(int n) {
  if (n < 0) return;
  Reshape(n, FNObjs);
  Changed();
}

void TFeatureMatrix::SetNObjs(int n) {
  if (n < 0) return;
  Reshape(FNFeats, n);
  Changed();
}

bool TFeatureMatrix::Resize(int NFeats, int NObjs) {
  if (NFeats < 0 || NObjs < 0) return false;
  try {
    Reshape(NFeats, NObjs);
  } catch (...) {
    return false;
  }
  Changed();
  return true;
}

void TFeatureMatrix::Clear() {
  FNFeats = 0;
  FNObjs = 0;
  FFeatProps.clear();
  FFeatVals.clear();
  Changed();
}

// ---------------------------------------------------------------------------
// Definitions

TFeatProps TFeatureMatrix::GetFeatProps(int fix) const {
  if (FeatInRange(fix)) return FFeatProps[static_cast<std::size_t>(fix - 1)];
  TFeatProps props;
  ClearFeatProps(props);
  return props;
}

void TFeatureMatrix::SetFeatProps(int fix, const TFeatProps& FeatProps) {
  if (!FeatInRange(fix)) return;
  FFeatProps[static_cast<std::size_t>(fix - 1)] = FeatProps;
  Changed();
}

// ---------------------------------------------------------------------------
// Values

std::u16string TFeatureMatrix::GetFeatValStr(int fix, int obj) const {
  if (!InRange(fix, obj)) return {};
  if (FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind == fkUndefined) {
    Fail(Numbered(u"feature ", fix, u" is undefined"));
  }
  return Value(fix, obj);
}

void TFeatureMatrix::CheckText(int fix, std::u16string_view value, bool allow_empty_number) const {
  std::u16string_view refusal;
  switch (FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind) {
    case fkUndefined:
      Fail(Numbered(u"feature ", fix, u" is undefined"));
    case fkInteger:
      if ((value.empty() && allow_empty_number) || IsIntegerText(value)) return;
      refusal = u"is not a valid integer number";
      break;
    case fkDouble:
      if ((value.empty() && allow_empty_number) || IsFloatText(value)) return;
      refusal = u"is not a valid floating point number";
      break;
    case fkTriState:
      if (IsTriStateText(zyn::platform::LowerCase(value))) return;
      refusal = u"is not a valid tri-state value";
      break;
    case fkString:
    default:  // a kind outside the enumeration has no check
      return;
  }
  Fail(u"feature value \"" + std::u16string(value) + u"\" " + std::u16string(refusal));
}

void TFeatureMatrix::SetFeatValStr(int fix, int obj, std::u16string_view value) {
  if (!InRange(fix, obj)) return;
  CheckText(fix, value, true);
  Value(fix, obj) = value;
  Changed();
}

std::int64_t TFeatureMatrix::GetFeatValInt(int fix, int obj) const {
  if (!InRange(fix, obj)) return 0;
  const std::u16string& text = Value(fix, obj);
  if (!IsIntegerText(text)) Fail(u"feature is not an integer");
  return zyn::platform::StrToInt(text);
}

void TFeatureMatrix::SetFeatValint(int fix, int obj, std::int64_t value) {
  if (!InRange(fix, obj)) return;
  const TFeatKind kind = FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind;
  if (kind != fkInteger && kind != fkDouble && kind != fkString) {
    Fail(u"feature is not of numeric or string type");
  }
  Value(fix, obj) = Decimal(value);
  Changed();
}

double TFeatureMatrix::GetFeatValDouble(int fix, int obj) const {
  if (!InRange(fix, obj)) return 0.0;
  const std::u16string& text = Value(fix, obj);
  if (!IsFloatText(text)) Fail(u"feature is not a floating point number");
  return zyn::platform::StrToFloat(text);
}

void TFeatureMatrix::SetFeatValDouble(int fix, int obj, double value) {
  if (!InRange(fix, obj)) return;
  const TFeatKind kind = FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind;
  if (kind != fkDouble && kind != fkString) Fail(u"feature is not a floating point or string type");
  Value(fix, obj) = zyn::platform::FloatToStr(value);
  Changed();
}

TTriState TFeatureMatrix::GetFeatValTriState(int fix, int obj) const {
  if (!InRange(fix, obj)) return tsUndefined;
  const std::u16string folded = zyn::platform::LowerCase(Value(fix, obj));
  if (!IsTriStateText(folded)) Fail(u"feature is not a tri-state value");
  return Zyn_stringl::StrToTriState(folded);
}

void TFeatureMatrix::SetFeatValTriState(int fix, int obj, TTriState value) {
  if (!InRange(fix, obj)) return;
  const TFeatKind kind = FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind;
  if (kind != fkTriState && kind != fkString) Fail(u"feature is not a tri-state or string type");
  Value(fix, obj) = Zyn_stringl::TriStateToStr(value, 0);
  Changed();
}

void TFeatureMatrix::FillWith(int fix, const std::u16string& value) {
  for (std::u16string& v : FFeatVals[static_cast<std::size_t>(fix - 1)]) v = value;
  Changed();
}

bool TFeatureMatrix::Fill(int fix, std::u16string_view FeatVal) {
  if (!FeatInRange(fix)) return false;
  CheckText(fix, FeatVal, false);
  FillWith(fix, std::u16string(FeatVal));
  return true;
}

bool TFeatureMatrix::Fill(int fix, std::int64_t FeatVal) {
  if (!FeatInRange(fix)) return false;
  if (FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind != fkInteger) {
    Fail(Numbered(u"feature ", fix, u" is not an integer number"));
  }
  FillWith(fix, Decimal(FeatVal));
  return true;
}

bool TFeatureMatrix::Fill(int fix, double FeatVal) {
  if (!FeatInRange(fix)) return false;
  if (FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind != fkDouble) {
    Fail(Numbered(u"feature ", fix, u" is not floating point number"));
  }
  FillWith(fix, zyn::platform::FloatToStr(FeatVal));
  return true;
}

bool TFeatureMatrix::Fill(int fix, TTriState FeatVal) {
  if (!FeatInRange(fix)) return false;
  if (FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind != fkTriState) {
    Fail(Numbered(u"feature ", fix, u" is not a tri-state value"));
  }
  FillWith(fix, Zyn_stringl::TriStateToStr(FeatVal, 0));
  return true;
}

// ---------------------------------------------------------------------------
// Resetting and searching

void TFeatureMatrix::ClearObject(int obj) {
  if (obj < 1 || obj > FNObjs) return;
  for (int fix = 1; fix <= FNFeats; ++fix) {
    Value(fix, obj) = DefaultValue(FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind);
  }
  Changed();
}

void TFeatureMatrix::ClearFeature(int feat) {
  if (!FeatInRange(feat)) return;
  const std::u16string value =
      DefaultValue(FFeatProps[static_cast<std::size_t>(feat - 1)].FeatKind);
  for (std::u16string& v : FFeatVals[static_cast<std::size_t>(feat - 1)]) v = value;
  Changed();
}

void TFeatureMatrix::ResetToDefault() {
  for (int obj = 1; obj <= FNObjs; ++obj) {
    for (int fix = 1; fix <= FNFeats; ++fix) {
      Value(fix, obj) = DefaultValue(FFeatProps[static_cast<std::size_t>(fix - 1)].FeatKind);
    }
    Changed();
  }
}

int TFeatureMatrix::FindFeatName(std::u16string_view Name) const {
  const std::u16string folded = zyn::platform::LowerCase(Name);
  for (int fix = 1; fix <= FNFeats; ++fix) {
    const std::u16string name = FFeatProps[static_cast<std::size_t>(fix - 1)].FeatName.str();
    if (zyn::platform::LowerCase(name) == folded) return fix;
  }
  return -1;
}

int TFeatureMatrix::FindFeatNum(int Num) const {
  for (int fix = 1; fix <= FNFeats; ++fix) {
    if (FFeatProps[static_cast<std::size_t>(fix - 1)].FeatNum == Num) return fix;
  }
  return -1;
}

// ---------------------------------------------------------------------------
// Objects and features

void TFeatureMatrix::InsertObject(int obj) {
  if (obj < 1 || obj > FNObjs) return;
  Reshape(FNFeats, FNObjs + 1);
  for (auto& row : FFeatVals) {
    std::move_backward(row.begin() + (obj - 1), row.end() - 1, row.end());
  }
  ClearObject(obj);
  Changed();
}

void TFeatureMatrix::RemoveObject(int obj) {
  if (obj < 1 || obj > FNObjs) return;
  for (auto& row : FFeatVals) row.erase(row.begin() + (obj - 1));
  --FNObjs;
  Changed();
}

void TFeatureMatrix::CopyObject(int Source, int Target) {
  if (Source < 1 || Source > FNObjs || Target < 1 || Target > FNObjs) return;
  for (int fix = 1; fix <= FNFeats; ++fix) Value(fix, Target) = Value(fix, Source);
  Changed();
}

void TFeatureMatrix::InsertFeature(int feat) {
  if (feat < 1 || feat > FNFeats + 1) return;
  Reshape(FNFeats + 1, FNObjs);
  const auto at = static_cast<std::ptrdiff_t>(feat - 1);
  std::rotate(FFeatProps.begin() + at, FFeatProps.end() - 1, FFeatProps.end());
  std::rotate(FFeatVals.begin() + at, FFeatVals.end() - 1, FFeatVals.end());
  // The rotation brought the new, empty row to `feat`.
  ClearFeatProps(FFeatProps[static_cast<std::size_t>(at)]);
  Changed();
}

// ---------------------------------------------------------------------------
// Object model

void TFeatureMatrix::Assign(const zyn::platform::TPersistent& Source) {
  const auto* source = dynamic_cast<const TFeatureMatrix*>(&Source);
  if (source == nullptr) {
    TPersistent::Assign(Source);
    return;
  }
  if (source == this) return;
  std::vector<TFeatProps> props = source->FFeatProps;
  std::vector<std::vector<std::u16string>> vals = source->FFeatVals;
  zyn::platform::TNotifyEvent on_change = source->FOnChange;
  FFeatProps.swap(props);
  FFeatVals.swap(vals);
  FOnChange.swap(on_change);
  FNFeats = source->FNFeats;
  FNObjs = source->FNObjs;
}

void TFeatureMatrix::AssignTo(zyn::platform::TPersistent& Dest) const {
  if (dynamic_cast<TFeatureMatrix*>(&Dest) != nullptr) {
    Dest.Assign(*this);
    return;
  }
  TPersistent::AssignTo(Dest);
}

}  // namespace Zyn_dstruct
