// zyn/dstruct/assocarray.h
//
// TAssocArray: a table of string keys to Variant values that answers like a
// search from the first entry to the last (the first matching key wins), with
// conversions of the value as it is resolved, access by position from 1, and
// a stored XML-like form on streams (docs/assocarray_xml.md).

#ifndef ZYN_DSTRUCT_ASSOCARRAY_H_
#define ZYN_DSTRUCT_ASSOCARRAY_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/base/zynbase.h"
#include "zyn/dstruct/unit.h"
#include "zyn/platform/object.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/variant.h"

namespace Zyn_dstruct {

using zyn::platform::Variant;

class TAssocArray : public zyn::platform::TComponent {
 public:
  // An empty table with room for 1024 entries, IgnoreCase true, an empty
  // DataID. Throws EZYNDStructError "Component "<Name>": not enough memory on
  // heap" if that room can't be had.
  explicit TAssocArray(zyn::platform::TComponent* AOwner = nullptr);

  // Replaces the value of the first entry whose key matches Key, or appends
  // a new entry, its key lower-cased (A to Z) while IgnoreCase is true.
  void Add(std::u16string_view Key, const Variant& Value);
  // Removes the first entry that matches Key; the last entry moves into its
  // place. False if no entry matches.
  bool Remove(std::u16string_view Key);
  // No entries; both arrays back to Granularity elements.
  void Clear();

  // A copy of the value of the first entry that matches Key; Null if none.
  Variant Resolve(std::u16string_view Key) const;
  // The value as text (Variant::AsString); "" for no entry and for Null. A
  // value without a text form raises the Variant's EConvertError.
  std::u16string ResolveAsString(std::u16string_view Key) const;
  // Numbers and currency as double, 8-bit text read by ScanFPNum from its
  // first character ("." or ","); 0.0 for no entry and every other kind.
  double ResolveAsNumber(std::u16string_view Key) const;
  // Integer kinds as int (wrapping to 32 bits), 8-bit text read by
  // ScanDecimal; 0 for no entry and every other kind, floats included.
  int ResolveAsInt(std::u16string_view Key) const;

  int NumEntries() const noexcept { return FNEntries; }
  // Key and value of entry ix, from 1. Out of range: the empty text, and a
  // Variant holding the empty UTF-16 string (not Null).
  std::u16string GetKeys(int ix) const;
  std::u16string Keys(int ix) const { return GetKeys(ix); }
  Variant GetValues(int ix) const;
  Variant Values(int ix) const { return GetValues(ix); }
  // In range, store v as given (no folding, no check for duplicates);
  // otherwise nothing happens.
  void SetKeys(int ix, std::u16string_view v);
  void SetValues(int ix, const Variant& v);

  // Room added at each growth and kept by Clear; takes effect then. Below 1
  // it counts as 1.
  int Granularity() const noexcept { return FGranularity; }
  void SetGranularity(int Value) noexcept { FGranularity = Value; }
  // Whether keys compare with A to Z and a to z as equal; applies to every
  // later operation, also to keys stored before the change.
  bool IgnoreCase() const noexcept { return FIgnoreCase; }
  void SetIgnoreCase(bool Value) noexcept;
  // A label of the table; ReadFromXMLStream sets it to the label it loaded.
  const std::u16string& DataID() const noexcept { return FDataID; }
  void SetDataID(std::u16string_view Value) { FDataID = Value; }

  // The number of elements of both arrays, FNEntries or more; for tests and
  // diagnostics.
  int Capacity() const noexcept { return static_cast<int>(FKeyArray.size()); }

  // --- The stored form (docs/assocarray_xml.md) -----------------------------
  // Writes the table as a block labelled DataID at the stream's position,
  // with an XML declaration first if CreateHeader is true. The stream's
  // write errors pass through.
  void WriteToXMLStream(zyn::platform::TStream& OutStream, bool CreateHeader,
                        std::u16string_view DataID) const;
  // Reads from the stream's position to the block labelled DataID (ASCII
  // case ignored; an empty DataID takes the next block) and replaces the
  // table with it, DataID() included. False, with the table unchanged, if no
  // whole block is found; the stream then stands behind what was read.
  bool ReadFromXMLStream(zyn::platform::TStream& InStream, std::u16string_view DataID);
  // Adds every name=value pair of a tag's attribute text through Add, the
  // value as 8-bit text if the code page holds it, else as UTF-16 text.
  // Values may be quoted; the scan stops at the first syntax error. Gives the
  // number of pairs taken.
  int AddXMLAttributes(std::u16string_view Attributes);

 private:
  // The index: an open-addressing hash set of entry positions, hashed by
  // key (folded while IgnoreCase is true). It holds every position, so the
  // smallest match is the linear search's answer also for duplicate keys.
  struct Slot {
    std::uint32_t hash;
    std::int32_t pos;  // -1: empty
  };

  // The first position (from 0) whose key matches; -1 if none.
  int Find(std::u16string_view key) const;
  std::uint32_t HashKey(std::u16string_view key) const noexcept;
  bool KeysMatch(std::u16string_view stored, std::u16string_view key) const noexcept;
  // Makes room in the index for `entries` positions; may throw bad_alloc.
  void ReserveIndex(int entries) const;
  // Adds or drops position `pos`, hashed by its current key.
  void IndexInsert(int pos) const;
  void IndexErase(int pos) const noexcept;
  std::size_t IndexSlotOf(int pos) const noexcept;
  void RebuildIndex() const;
  // Sets both arrays to `length` elements, memory growing geometrically.
  void SetLength(std::size_t length);
  bool ValidIndex(int ix) const noexcept { return ix >= 1 && ix <= FNEntries; }

  int FNEntries = 0;
  std::vector<Variant> FDataArray;
  std::vector<std::u16string> FKeyArray;
  int FGranularity = 1024;
  bool FIgnoreCase = true;
  std::u16string FDataID;

  // Rebuilt on demand after IgnoreCase changes.
  mutable std::vector<Slot> slots_;
  mutable int slots_used_ = 0;
  mutable bool index_valid_ = true;
  // False while no two entries can have matching keys, so that a search may
  // stop at its first match: only SetKeys, a change of IgnoreCase and a load
  // can bring duplicates in, and only Clear rules them out again.
  mutable bool may_hold_duplicates_ = false;
};

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_ASSOCARRAY_H_
