// zyn/colors/colorarray.h
//
// TColorArray, a colour scale of 1 or more colours with indices from 1: built
// from a few support colours by interpolation, searched for the nearest
// colour, and stored as a colour block, a small text form ("1 2", then one
// line of eight hex digits per colour) that may stand alone in a file or
// among other lines of an open text file.

#ifndef ZYN_COLORS_COLORARRAY_H_
#define ZYN_COLORS_COLORARRAY_H_

#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "zyn/colors/colormodels.h"
#include "zyn/colors/unit.h"
#include "zyn/platform/object.h"
#include "zyn/platform/textfile.h"

namespace Zyn_zyncolors {

using zyn::platform::TComponent;
using zyn::platform::TNotifyEvent;
using zyn::platform::TPersistent;

class TColorArray : public TComponent {
 public:
  // 1000 colours of the rainbow scale (ColorArray_Rainbow). Throws
  // EZYNColArrayError "Component "<Name>": not enough memory on heap" if the
  // colours can't be had.
  explicit TColorArray(TComponent* AOwner = nullptr);

  // The number of colours, never below 1.
  int Size() const noexcept { return FNColors; }
  // Resize for a size of 1 or more that differs from the present one;
  // anything else is ignored.
  void SetSize(int Value);

  // True without OnChange for the present size; False, with nothing changed,
  // for 0 or less. Otherwise keeps the colours that remain, makes new ones 0,
  // fires OnChange and gives True. Throws EZYNColArrayError
  // "Component "<Name>": not enough memory" if the colours can't be had (or
  // exceed zyn::platform::AllocationAllowed); the array is then unchanged.
  bool Resize(int NewSize);

  // Sets every colour; fires OnChange.
  void Fill(TColor Color);

  // Spreads the support colours over the array: index i (1..N) gets the
  // colour at H * i / N along the list (H = Colors.size() - 1), so index N
  // is the last support colour. DiscreteLevels D > 0 gives D steps of equal
  // colour instead of a continuous scale. Lower support positions outside the list count as
  // its nearest end; one support colour fills the array with it, an empty
  // list changes nothing. Fires OnChange once (not for an empty list).
  void FillByInterpolation(int DiscreteLevels, std::span<const TColor> Colors);

  // The lowest index of the colour nearest to `cl` by RGBColorDistance, with
  // that distance. Only entries nearer than 1.0 count: none gives 1 and 1.0.
  int ColorToIndex(TColor cl, double& distance) const;

  // Copies the source's colours SourceElemLo..SourceElemHi (each clamped to
  // the source, exchanged if reversed) to DestElem on; places outside this
  // array are skipped. The source may be this array: the range is copied as
  // it was before the call. Fires OnChange once; a null source does nothing.
  void CopyFrom(const TColorArray* ColArraySource, int SourceElemLo, int SourceElemHi,
                int DestElem);

  // Same size and the same 32-bit values throughout. False for null.
  bool IsEqual(const TColorArray* OtherColorArray) const;

  // Reverse the order of the colours / InvertColor each; fire OnChange once.
  void MirrorColors();
  void InvertColors();

  // The colour at `ix`; below 1 the first, above Size the last.
  TColor GetColorElem(int ix) const noexcept;
  TColor ColorElem(int ix) const noexcept { return GetColorElem(ix); }
  // Stores the colour and fires OnChange; ignored, without OnChange, for an
  // index outside 1..Size.
  void SetColorElem(int ix, TColor Value);

  // Writes a colour block of FirstElem..LastElem (exchanged if reversed, then
  // limited to 1..Size; the head line names the limited indices). The file
  // stays open and is flushed. False if a write failed; nothing is thrown.
  bool WriteToOpenTextFile(zyn::platform::Textfile& TextFile, int FirstElem, int LastElem) const;

  // Reads a colour block at the file's position. With AdjustSize the size
  // becomes the block's last index first (Resize). A block that ends beyond
  // Size is refused: False, nothing read. Otherwise True: each colour line is
  // read with the number scanner's hex rules and stored by SetColorElem
  // (OnChange per colour; indices outside the array are dropped); lines
  // missing at the end of the file read as 0. OnChange fires at the end, also
  // for a refused block. A bad head line or a failing Resize gives False
  // without that OnChange. Nothing is thrown.
  bool ReadFromOpenTextFile(zyn::platform::Textfile& TextFile, bool AdjustSize);

  // The whole file as one block: ReadFromOpenTextFile of the named file, or
  // False if it can't be opened. Nothing is thrown.
  bool LoadFromFile(std::u16string_view FileName, bool AdjustSize);
  // Creates or replaces the file with one block: WriteToOpenTextFile's
  // result, or False if the file can't be created. Nothing is thrown.
  bool StoreOnFile(int FirstElem, int LastElem, std::u16string_view FileName) const;

  // Calls OnChange with this object, if it is assigned.
  void Changed();
  const TNotifyEvent& OnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent Value) { FOnChange = std::move(Value); }

  // From a TColorArray: takes the size and the colours, keeps this array's
  // OnChange and fires nothing. Other classes: TComponent's rules.
  void Assign(const TPersistent& Source) override;

 protected:
  void AssignTo(TPersistent& Dest) const override;

 private:
  int FNColors = 1000;
  std::vector<TColor> FColArray;  // index i is element i - 1
  TNotifyEvent FOnChange;
};

}  // namespace Zyn_zyncolors

#endif  // ZYN_COLORS_COLORARRAY_H_
