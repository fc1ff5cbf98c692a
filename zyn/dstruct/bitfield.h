// zyn/dstruct/bitfield.h
//
// TBitFld, a field of bits with indices 0 to Size inclusive, and TByteMatrix,
// a grid of bytes addressed by 1-based column and row whose single bits can be
// read and written too. Both combine with a partner of the same shape by the
// logic operations of TLogicOp. Bad indices never raise: reads give false or
// 0 and writes are ignored.

#ifndef ZYN_DSTRUCT_BITFIELD_H_
#define ZYN_DSTRUCT_BITFIELD_H_

#include <cstdint>

#include "zyn/base/zynbase.h"
#include "zyn/dstruct/unit.h"
#include "zyn/platform/object.h"

namespace Zyn_dstruct {

using zyn::platform::TComponent;
using zyn::platform::TNotifyEvent;
using zyn::platform::TPersistent;

// How CombineWith merges a byte a of the object with the partner's byte b.
// The complement of the Not forms falls on the partner: loANDNot is a AND NOT b.
enum TLogicOp : std::uint8_t { loAND, loOR, loXOR, loANDNot, loORNot, loXORNot };

// A field of Size + 1 bits, indices 0 to Size. Bit ix lies in byte ix / 8 under
// the mask 1 << (ix % 8). Whole-field operations work a machine word at a time.
class TBitFld : public TComponent {
 public:
  // A field of 1001 bits (Size 1000), all false. Throws EZYNDStructError
  // "Component "<Name>": not enough memory on heap" if the storage can't be had.
  explicit TBitFld(TComponent* AOwner = nullptr);

  // The highest valid bit index, 1 or more.
  int Size() const noexcept { return FSize; }
  // Values below 1 and the present size are ignored. Bytes that remain keep
  // their bits, new ones are false. Memory exhaustion passes through.
  void SetSize(int Value);

  // False for an index outside 0 to Size.
  bool GetBit(int ix) const noexcept;
  // Ignored for an index outside 0 to Size.
  void SetBit(int ix, bool value) noexcept;
  bool Bit(int ix) const noexcept { return GetBit(ix); }
  // Flips one bit; ignored for an index outside 0 to Size.
  void ToggleBit(int ix) noexcept;

  // Sets every bit to false.
  void Clear() noexcept;
  // Flips every bit.
  void Invert() noexcept;
  // The number of true bits among 0 to Size.
  int CountTrueBits() const noexcept;
  // The lowest index of a true bit, or -1 if there is none.
  int FirstTrueBit() const noexcept;
  // Replaces BitList by the ascending indices whose bit equals State.
  void MakeListOfBits(Zyn_zynbase::TIntArray& BitList, bool State) const;

  // Leaves exactly round(Percent / 100 * Size) true bits at random places,
  // Percent limited to 0 to 100 (NaN counts as 0). Uses zyn::platform::Random.
  void RandomFill(double Percent);
  // Leaves exactly NBits true bits at random places, NBits limited to 0 to Size.
  void RandomFill(int NBits);

  // Merges the partner into this field byte by byte. Does nothing for a null
  // partner, a partner of another Size or an operation outside TLogicOp.
  void CombineWith(const TBitFld* SecondBArray, TLogicOp Operation) noexcept;
  // Takes the size and bits of Source; nothing for a null Source.
  void Clone(const TBitFld* Source);

  // From a TBitFld: copies size and bits. Otherwise the inherited rule.
  void Assign(const TPersistent& Source) override;

 protected:
  void AssignTo(TPersistent& Dest) const override;

 private:
  // The bytes 0 to FSize / 8, those that hold the valid bits.
  std::size_t UsedBytes() const noexcept { return static_cast<std::size_t>(FSize / 8) + 1; }
  bool ValidIndex(int ix) const noexcept { return ix >= 0 && ix <= FSize; }
  void SetRandBitsIntern(int n);

  int FSize = 1000;
  Zyn_zynbase::TBytes FBitArray;  // FSize / 8 + 2 bytes
};

// A grid of NrOfColumns x NrOfRows bytes, indices from 1, bits 0 (lowest) to 7.
// Every change but CombineWith and Assign fires OnChange.
class TByteMatrix : public TComponent {
 public:
  // One column and one row holding 0. Throws EZYNDStructError
  // "Component "<Name>": not enough memory on heap" if the storage can't be had.
  explicit TByteMatrix(TComponent* AOwner = nullptr);

  // Gives the matrix a new shape; cells that remain keep their values, new
  // ones are 0. False, and nothing happens, for the present shape or a
  // dimension below 1. Throws EZYNDStructError "Component "<Name>": not enough
  // memory on heap" if the storage can't be had; the matrix is then unchanged.
  bool Resize(int NrColumns, int NrRows);

  int NrOfColumns() const noexcept { return FNrCols; }
  int NrOfRows() const noexcept { return FNrRows; }
  // Resize with the other count unchanged; a value below 1 counts as 1.
  void SetNrOfColumns(int Value);
  void SetNrOfRows(int Value);

  // 0 for a cell outside the matrix.
  std::uint8_t GetByte(int ix, int iy) const noexcept;
  // Ignored, without OnChange, for a cell outside the matrix.
  void SetByte(int ix, int iy, std::uint8_t value);
  std::uint8_t Byte(int ix, int iy) const noexcept { return GetByte(ix, iy); }

  // False for a cell outside the matrix or a bit number outside 0 to 7.
  bool GetBit(int ix, int iy, int ixBit) const noexcept;
  // Ignored, without OnChange, for a bad cell or bit number.
  void SetBit(int ix, int iy, int ixBit, bool value);
  bool Bit(int ix, int iy, int ixBit) const noexcept { return GetBit(ix, iy, ixBit); }
  void ToggleBit(int col, int row, int ixBit);

  // Sets every cell to value.
  void Fill(std::uint8_t value);
  // Exchanges column c with column NrOfColumns + 1 - c.
  void MirrorColumns();
  // Exchanges row r with row NrOfRows + 1 - r.
  void MirrorRows();

  // Merges the partner into this matrix cell by cell, without OnChange. Does
  // nothing for a null partner, another shape or an operation outside TLogicOp.
  void CombineWith(const TByteMatrix* SecondByteMatrix, TLogicOp Operation) noexcept;

  // Calls OnChange with this object, if it is assigned.
  void Changed();
  const TNotifyEvent& OnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent Value) { FOnChange = std::move(Value); }

  // From a TByteMatrix: copies the shape, the cells and the OnChange handler,
  // without firing it. Otherwise the inherited rule.
  void Assign(const TPersistent& Source) override;

 protected:
  void AssignTo(TPersistent& Dest) const override;

 private:
  bool ValidCell(int ix, int iy) const noexcept {
    return ix >= 1 && ix <= FNrCols && iy >= 1 && iy <= FNrRows;
  }
  // Position of cell (ix, iy) in FByteMat, which holds the columns one after
  // the other.
  std::size_t CellIndex(int ix, int iy) const noexcept {
    return static_cast<std::size_t>(ix - 1) * static_cast<std::size_t>(FNrRows) +
           static_cast<std::size_t>(iy - 1);
  }

  int FNrCols = 1;
  int FNrRows = 1;
  Zyn_zynbase::TBytes FByteMat;  // column-major, FNrCols * FNrRows cells
  TNotifyEvent FOnChange;
};

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_BITFIELD_H_
