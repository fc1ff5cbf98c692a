// zyn/dstruct/featurematrix.h
//
// TFeatureMatrix: objects described by typed features. Each feature has a
// definition (number, name, kind, comment, ...) and one value per object; all
// values are held as text, and the kind decides which texts a feature takes.
// The matrix is stored in a line-oriented text block of its own.

#ifndef ZYN_DSTRUCT_FEATUREMATRIX_H_
#define ZYN_DSTRUCT_FEATUREMATRIX_H_

#include <array>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/base/zynbase.h"
#include "zyn/dstruct/unit.h"
#include "zyn/platform/object.h"
#include "zyn/platform/text.h"
#include "zyn/platform/textfile.h"

namespace Zyn_dstruct {

enum TFeatKind : std::uint8_t { fkUndefined, fkInteger, fkDouble, fkString, fkTriState };

// The display word of each kind; the file uses words of its own.
inline constexpr std::array<std::u16string_view, 5> FEATKINDIDS = {
    u"undefined", u"integer", u"double", u"string", u"tristate"};

// The definition of one feature. A default-made record is the zero state
// that features gained by growing a matrix start in (empty name).
struct TFeatProps {
  std::int32_t FeatNum = 0;                      // the host's number; not unique
  zyn::platform::BasicShortString<20> FeatName;  // cut to 20 characters
  TFeatKind FeatKind = fkUndefined;
  zyn::platform::BasicShortString<60> Comment;  // cut to 60 characters
  std::u16string PresetValues;                  // stored and saved; no meaning here
  bool Sorted = false;                          // stored and saved; no meaning here
  void* GUIElem = nullptr;                      // the host's handle; not saved

  friend bool operator==(const TFeatProps&, const TFeatProps&) = default;
};

// Number 0, name "undefined", fkUndefined, everything else empty.
void ClearFeatProps(TFeatProps& props);

// The most features a file may claim: a "#featdef" or "#featvals" header
// beyond it ends the load as a failed read (-2) instead of allocating what
// the file merely claims. Objects and values have a limit per matrix
// (SetMaxLoadedValues).
inline constexpr int kMaxLoadedFeatures = 1 << 16;

// Features (fix) and objects (obj) count from 1. Reads out of range give a
// neutral value and writes out of range do nothing, without an error or an
// event. A value that doesn't suit its feature's kind raises EZYNDStructError
// "Component "<Name>": <text>" and leaves the matrix unchanged.
class TFeatureMatrix : public zyn::platform::TComponent {
 public:
  // 0 features, 0 objects, no OnChange handler.
  explicit TFeatureMatrix(TComponent* AOwner = nullptr);

  // --- Shape -----------------------------------------------------------------

  int GetNFeats() const noexcept { return FNFeats; }
  int NFeatures() const noexcept { return FNFeats; }
  // Keeps what still fits; new features are in the zero state with empty
  // values. A negative count is ignored. Fires OnChange; memory exhaustion
  // passes through with the matrix unchanged.
  void SetNFeats(int n);
  int GetNObjs() const noexcept { return FNObjs; }
  int NObjects() const noexcept { return FNObjs; }
  // As SetNFeats, for objects.
  void SetNObjs(int n);
  // Both counts in one step; True and OnChange on success. False, with the
  // old shape and values kept and nothing fired, for a negative count or
  // when the memory can't be had.
  bool Resize(int NFeats, int NObjs);
  // 0 features and 0 objects; fires OnChange.
  void Clear();

  // --- Definitions -----------------------------------------------------------

  // A copy of the definition; out of range what ClearFeatProps makes.
  TFeatProps GetFeatProps(int fix) const;
  TFeatProps FeatProps(int fix) const { return GetFeatProps(fix); }
  // Replaces the definition and fires OnChange; the values stay as they are,
  // even when the kind changes.
  void SetFeatProps(int fix, const TFeatProps& FeatProps);

  // --- Values ----------------------------------------------------------------

  // The stored text; "" out of range. Raises "feature <fix> is undefined" for
  // a feature of kind fkUndefined.
  std::u16string GetFeatValStr(int fix, int obj) const;
  std::u16string FeatVal(int fix, int obj) const { return GetFeatValStr(fix, obj); }
  // Stores the text as given after a check by kind: fkUndefined "feature
  // <fix> is undefined"; fkInteger and fkDouble an empty text or a number,
  // else "feature value "<v>" is not a valid integer number" / "... floating
  // point number"; fkTriState "true", "false" or "" in any case, else
  // "... is not a valid tri-state value"; fkString and other kinds anything.
  // Fires OnChange.
  void SetFeatValStr(int fix, int obj, std::u16string_view value);

  // The stored text read as an integer, whatever the kind; 0 out of range.
  // Raises "feature is not an integer" for a text that isn't one, and the
  // platform's EConvertError for one beyond 32 bits.
  std::int64_t GetFeatValInt(int fix, int obj) const;
  std::int64_t FeatValAsInt(int fix, int obj) const { return GetFeatValInt(fix, obj); }
  // Stores the decimal text on an integer, double or string feature, else
  // raises "feature is not of numeric or string type". Fires OnChange.
  void SetFeatValint(int fix, int obj, std::int64_t value);

  // The stored text read as a double; 0.0 out of range. Raises "feature is
  // not a floating point number" for a text that doesn't begin with a number,
  // and the platform's EConvertError for one that begins with a number and
  // still isn't one ("12abc", "1E999").
  double GetFeatValDouble(int fix, int obj) const;
  double FeatValAsDouble(int fix, int obj) const { return GetFeatValDouble(fix, obj); }
  // Stores FloatToStr of the value on a double or string feature, else
  // raises "feature is not a floating point or string type". Fires OnChange.
  void SetFeatValDouble(int fix, int obj, double value);

  // "true" and "false" in any case, and "", give tsTrue, tsFalse and
  // tsUndefined; tsUndefined out of range. Other texts raise "feature is not
  // a tri-state value".
  Zyn_zynbase::TTriState GetFeatValTriState(int fix, int obj) const;
  Zyn_zynbase::TTriState FeatValAsTriState(int fix, int obj) const {
    return GetFeatValTriState(fix, obj);
  }
  // Stores "false", "true" or "" on a tri-state or string feature, else
  // raises "feature is not a tri-state or string type". Fires OnChange.
  void SetFeatValTriState(int fix, int obj, Zyn_zynbase::TTriState value);

  // Writes one value into every object of feature fix and fires OnChange
  // once: True. False, with nothing fired, for fix out of range. The typed
  // forms take only their own kind ("feature <fix> is not an integer
  // number", "... is not floating point number", "... is not a tri-state
  // value"); the text form checks as SetFeatValStr but refuses the empty text
  // for integer and double features.
  bool Fill(int fix, std::u16string_view FeatVal);
  bool Fill(int fix, std::int64_t FeatVal);
  bool Fill(int fix, double FeatVal);
  bool Fill(int fix, Zyn_zynbase::TTriState FeatVal);
  // Any other integer type goes to the int64 form (Fill(1, 5) would
  // otherwise be ambiguous).
  template <std::integral T>
  requires(!std::same_as<T, bool> && !std::same_as<T, std::int64_t>) bool Fill(int fix, T FeatVal) {
    return Fill(fix, static_cast<std::int64_t>(FeatVal));
  }

  // --- Resetting and searching -----------------------------------------------

  // Each value of object obj to its feature's default ("0" for integer and
  // double features, "" for the others); fires OnChange. Nothing out of range.
  void ClearObject(int obj);
  // Each value of feature feat to its default; fires OnChange.
  void ClearFeature(int feat);
  // Every value to its default; OnChange fires once per object.
  void ResetToDefault();

  // The first feature whose name equals Name, ignoring ASCII case; -1 if none.
  int FindFeatName(std::u16string_view Name) const;
  // The first feature whose number is Num; -1 if none.
  int FindFeatNum(int Num) const;

  // --- Objects and features ---------------------------------------------------

  // For obj in 1 to NObjects: a new object in front of obj, holding the
  // defaults. Fires OnChange twice: once from ClearObject, once at the end.
  void InsertObject(int obj);
  // For obj in 1 to NObjects: removes it; fires OnChange.
  void RemoveObject(int obj);
  // For both in 1 to NObjects: Target gets the values of Source; fires
  // OnChange.
  void CopyObject(int Source, int Target);
  // For feat in 1 to NFeatures + 1: a new feature in front of feat (behind the
  // last for NFeatures + 1) with empty values and the definition of
  // ClearFeatProps; fires OnChange.
  void InsertFeature(int feat);

  // --- The file ----------------------------------------------------------------

  // Writes the block ("#featdef", definitions, "#featvals", values, "#featend")
  // to a text file open for writing, which stays open. Fires nothing. Failures
  // of the file raise its EInOutError.
  void SaveToOpenFile(zyn::platform::Textfile& f) const;
  // Creates (or empties) the file FName as 8-bit text and writes the block.
  void Save(std::u16string_view FName) const;
  // Clears the matrix, passes over everything up to a block and reads it, up
  // to and including the line that ends its values. 0 if a section was read,
  // -1 if none was found, -2 if reading failed (what was read stays). Fires
  // OnChange from the Clear at the start and once at the end.
  int LoadFromOpenFile(zyn::platform::Textfile& f);
  // Reads the first block of the 8-bit text file FName: 0 on success, -1 if
  // the file doesn't exist (the matrix is then unchanged), -2 if it holds no
  // block, -3 if reading failed. Other failures to open raise EInOutError.
  int Load(std::u16string_view FName);
  // The most objects, and the most values (features times objects), that a
  // "#featvals" header may claim; beyond it the load fails (-2). 4194304 by
  // default; a host that reads larger files raises it. Not copied by Assign.
  std::int64_t MaxLoadedValues() const noexcept { return max_loaded_values_; }
  void SetMaxLoadedValues(std::int64_t Value) noexcept { max_loaded_values_ = Value; }

  // --- Object model --------------------------------------------------------------

  // From a TFeatureMatrix: counts, definitions, values and the OnChange
  // handler; fires nothing. Otherwise the inherited rule.
  void Assign(const zyn::platform::TPersistent& Source) override;
  // Calls OnChange, if set, with this matrix as Sender.
  void Changed();

  const zyn::platform::TNotifyEvent& OnChange() const { return FOnChange; }
  void SetOnChange(zyn::platform::TNotifyEvent Value) { FOnChange = std::move(Value); }

 protected:
  void AssignTo(zyn::platform::TPersistent& Dest) const override;

 private:
  bool FeatInRange(int fix) const noexcept { return fix >= 1 && fix <= FNFeats; }
  bool InRange(int fix, int obj) const noexcept {
    return FeatInRange(fix) && obj >= 1 && obj <= FNObjs;
  }
  const std::u16string& Value(int fix, int obj) const;
  std::u16string& Value(int fix, int obj);
  [[noreturn]] void Fail(std::u16string_view text) const;
  // Raises the message of SetFeatValStr if `value` doesn't suit feature fix;
  // `allow_empty_number` is false for Fill.
  void CheckText(int fix, std::u16string_view value, bool allow_empty_number) const;
  void FillWith(int fix, const std::u16string& value);
  // Sets both counts and both arrays, keeping what fits. All or nothing:
  // memory exhaustion leaves the matrix as it was and passes through.
  void Reshape(int nfeats, int nobjs);
  // One block of LoadFromOpenFile, without the Clear and the final event.
  int ReadBlock(zyn::platform::Textfile& f);
  void ReadDefinitions(zyn::platform::Textfile& f, std::u16string_view rest);
  void ReadValues(zyn::platform::Textfile& f, std::u16string_view rest);

  int FNFeats = 0;
  int FNObjs = 0;
  std::vector<TFeatProps> FFeatProps;                  // [fix - 1]
  std::vector<std::vector<std::u16string>> FFeatVals;  // [fix - 1][obj - 1]
  zyn::platform::TNotifyEvent FOnChange;
  std::int64_t max_loaded_values_ = std::int64_t{1} << 22;
};

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_FEATUREMATRIX_H_
