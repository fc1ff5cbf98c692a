// zyn/dstruct/fifo.h
//
// TFifo, a bounded first-in first-out ring of bytes. One cell always stays
// free, so a ring of Size cells holds Size - 1 bytes. Every operation runs in
// constant time without allocating; a full or empty ring shows in the result.

#ifndef ZYN_DSTRUCT_FIFO_H_
#define ZYN_DSTRUCT_FIFO_H_

#include <cstdint>

#include "zyn/base/zynbase.h"
#include "zyn/dstruct/unit.h"
#include "zyn/platform/object.h"

namespace Zyn_dstruct {

class TFifo : public zyn::platform::TComponent {
 public:
  // An empty ring of 256 cells. Throws EZYNDStructError
  // "Component "<Name>": FIFO structure too large" if the cells can't be had.
  explicit TFifo(zyn::platform::TComponent* AOwner = nullptr);

  // The number of cells; the ring holds one byte less.
  int Size() const noexcept { return FLength; }
  // Values below 1 and the present size are ignored. Meant for an empty ring:
  // the bytes held are not rearranged, and if a pointer no longer lies inside
  // the new size the ring is emptied. Memory exhaustion passes through.
  void SetSize(int Value);

  // Appends a byte; false, and nothing changes, if the ring is full.
  bool PutByte(std::uint8_t InByte) noexcept;
  // Appends a byte, dropping the oldest one if the ring is full; true if a
  // byte was dropped.
  bool ForceByte(std::uint8_t InByte) noexcept;
  // Puts a byte back at the output end, so that the next GetByte delivers it.
  // Always true. For a byte just taken by GetByte: on a full ring it
  // overwrites the newest byte and the ring then reads as empty.
  bool LoadBack(std::uint8_t InByte) noexcept;
  // Takes the oldest byte; false, with OutByte unchanged, if the ring is empty.
  bool GetByte(std::uint8_t& OutByte) noexcept;
  // Reads the byte at position ix, 0 being the oldest, without taking it;
  // false, with OutByte unchanged, unless 0 <= ix < CountBytes().
  bool SenseByte(int ix, std::uint8_t& OutByte) const noexcept;
  // The number of bytes held.
  int CountBytes() const noexcept;
  // Empties the ring; the cells keep their contents.
  void Clear() noexcept;

 private:
  bool Full() const noexcept;
  int Next(int poi) const noexcept { return poi + 1 == FLength ? 0 : poi + 1; }

  int FInPoi = 0;   // the cell the next byte goes to
  int FOutPoi = 0;  // the oldest byte
  int FLength = 256;
  Zyn_zynbase::TBytes FData;
};

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_FIFO_H_
