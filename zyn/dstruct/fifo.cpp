#include "zyn/dstruct/fifo.h"

namespace Zyn_dstruct {

TFifo::TFifo(zyn::platform::TComponent* AOwner) : TComponent(AOwner) {
  Zyn_zynbase::GuardAllocation<EZYNDStructError>(
      [&] { FData.assign(static_cast<std::size_t>(FLength), 0); },
      Zyn_zynbase::ComponentMessage(*this, u"FIFO structure too large"));
}

void TFifo::SetSize(int Value) {
  if (Value < 1 || Value == FLength) return;
  FData.resize(static_cast<std::size_t>(Value), 0);
  FLength = Value;
  if (FInPoi >= FLength || FOutPoi >= FLength) Clear();
}

bool TFifo::Full() const noexcept {
  int gap = FOutPoi - FInPoi;
  if (gap < 1) gap += FLength;
  return gap == 1;
}

bool TFifo::PutByte(std::uint8_t InByte) noexcept {
  if (Full()) return false;
  FData[static_cast<std::size_t>(FInPoi)] = InByte;
  FInPoi = Next(FInPoi);
  return true;
}

bool TFifo::ForceByte(std::uint8_t InByte) noexcept {
  const bool dropped = Full();
  if (dropped) FOutPoi = Next(FOutPoi);
  FData[static_cast<std::size_t>(FInPoi)] = InByte;
  FInPoi = Next(FInPoi);
  return dropped;
}

bool TFifo::LoadBack(std::uint8_t InByte) noexcept {
  FOutPoi = FOutPoi == 0 ? FLength - 1 : FOutPoi - 1;
  FData[static_cast<std::size_t>(FOutPoi)] = InByte;
  return true;
}

bool TFifo::GetByte(std::uint8_t& OutByte) noexcept {
  if (FInPoi == FOutPoi) return false;
  OutByte = FData[static_cast<std::size_t>(FOutPoi)];
  FOutPoi = Next(FOutPoi);
  return true;
}

bool TFifo::SenseByte(int ix, std::uint8_t& OutByte) const noexcept {
  if (ix < 0 || ix >= CountBytes()) return false;
  // FOutPoi + ix, wrapped, without passing the range of int.
  const int to_end = FLength - FOutPoi;
  const int poi = ix < to_end ? FOutPoi + ix : ix - to_end;
  OutByte = FData[static_cast<std::size_t>(poi)];
  return true;
}

int TFifo::CountBytes() const noexcept {
  const int count = FInPoi - FOutPoi;
  return count < 0 ? count + FLength : count;
}

void TFifo::Clear() noexcept {
  FInPoi = 0;
  FOutPoi = 0;
}

}  // namespace Zyn_dstruct
