// zyn/dstruct/stringaccu.h
//
// TStringAccu, a tally of distinct strings: each Add either counts a string
// already seen, compared exactly and case-sensitively, or appends it with a
// tally of 1. Entries keep the order of their first Add; lookups are linear.

#ifndef ZYN_DSTRUCT_STRINGACCU_H_
#define ZYN_DSTRUCT_STRINGACCU_H_

#include <string>
#include <string_view>

#include "zyn/base/zynbase.h"
#include "zyn/dstruct/unit.h"
#include "zyn/platform/object.h"

namespace Zyn_dstruct {

class TStringAccu : public zyn::platform::TComponent {
 public:
  // An empty tally. Throws EZYNDStructError "Component "<Name>": not enough
  // memory on heap" if its first storage can't be had.
  explicit TStringAccu(zyn::platform::TComponent* AOwner = nullptr);

  // Counts AString once more, appending it if it is new.
  void Add(std::u16string_view AString);
  // Forgets every entry.
  void Clear() noexcept;

  // The number of distinct strings.
  int Size() const noexcept { return FSize; }
  // The entry ix, 1-based; the empty string for ix outside 1 to Size.
  std::u16string GetString(int ix) const;
  std::u16string Elem(int ix) const { return GetString(ix); }
  // How often entry ix was added, 1-based; 0 for ix outside 1 to Size.
  int GetCount(int ix) const noexcept;
  int Count(int ix) const noexcept { return GetCount(ix); }

 private:
  bool ValidIndex(int ix) const noexcept { return ix >= 1 && ix <= FSize; }

  int FSize = 0;
  Zyn_zynbase::TStrArray FStrArray;  // distinct strings, in order of first Add
  Zyn_zynbase::TIntArray FCntArray;  // the tally of the string at the same index
};

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_STRINGACCU_H_
