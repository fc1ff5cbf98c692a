#include "zyn/dstruct/rlencoder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace Zyn_dstruct {

using Zyn_zynbase::ComponentMessage;
using Zyn_zynbase::GuardAllocation;

namespace {

constexpr std::u16string_view kNoHeap = u"not enough memory on heap";
// The shortest block with which the Finish loop ends: each call adds three
// bytes and must take away more.
constexpr int kMinBufLeng = 4;

// The most coded bytes one call of Encode can add for n input bytes: two per
// byte on average (a lone 0xA5 costs three, but needs a neighbour of another
// value costing one) and three more for the run pending from the call before.
constexpr std::size_t EncodeBound(std::size_t n) { return 2 * n + 3; }

std::uint8_t* PutTriple(std::uint8_t* out, std::uint8_t lead_in, unsigned count,
                        std::uint8_t value) {
  out[0] = lead_in;
  out[1] = static_cast<std::uint8_t>(count);
  out[2] = value;
  return out + 3;
}

}  // namespace

TRLEncoder::TRLEncoder(zyn::platform::TComponent* AOwner) : TComponent(AOwner) {
  GuardAllocation<EZYNDStructError>(
      [&] { FBuffer.assign(4 * static_cast<std::size_t>(FBufLeng), 0); },
      ComponentMessage(*this, kNoHeap));
}

void TRLEncoder::SetBufLeng(int Value) {
  if (Value < kMinBufLeng || Value == FBufLeng) return;
  GuardAllocation<EZYNDStructError>(
      [&] {
        const std::uint64_t size = 4 * static_cast<std::uint64_t>(Value);
        if (size > std::numeric_limits<std::size_t>::max()) {
          throw std::length_error("coder buffer too large");
        }
        FBuffer.assign(std::max(static_cast<std::size_t>(size), static_cast<std::size_t>(FBufPoi)),
                       0);
      },
      ComponentMessage(*this, kNoHeap));
  FBufLeng = Value;
}

void TRLEncoder::Grow(std::size_t extra) {
  GuardAllocation<EZYNDStructError>(
      [&] {
        const std::size_t needed = static_cast<std::size_t>(FBufPoi) + extra;
        if (needed > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
          throw std::length_error("coder buffer too large");
        }
        FBuffer.resize(std::max(needed, 2 * FBuffer.size()), 0);
      },
      ComponentMessage(*this, kNoHeap));
}

bool TRLEncoder::Encode(std::span<const std::uint8_t> InBuf, int NumBytes) {
  const std::size_t n =
      NumBytes <= 0 ? 0 : std::min(static_cast<std::size_t>(NumBytes), InBuf.size());
  Reserve(EncodeBound(n));
  // The state lives in locals for the loop, so that the compiler can keep it
  // in registers.
  std::uint8_t* const begin = FBuffer.data();
  std::uint8_t* out = begin + FBufPoi;
  unsigned count = FCount;
  std::uint8_t last = FLastB;
  for (std::size_t i = 0; i < n; ++i) {
    const std::uint8_t b = InBuf[i];
    if (count == 0) {
      count = 1;
      last = b;
    } else if (b == last) {
      if (++count >= 255) {
        out = PutTriple(out, FLeadInByte, count, last);
        count = 0;
      }
    } else {
      if (count <= 2 && last != FLeadInByte) {
        *out++ = last;
        if (count == 2) *out++ = last;
      } else {
        out = PutTriple(out, FLeadInByte, count, last);
      }
      count = 1;
      last = b;
    }
  }
  FBufPoi = static_cast<int>(out - begin);
  FCount = static_cast<std::uint8_t>(count);
  FLastB = last;
  return FBufPoi >= FBufLeng;
}

bool TRLEncoder::Decode(std::uint8_t InByte) {
  switch (FDecodeSt) {
    case rlData:
      if (InByte == FLeadInByte) {
        FDecodeSt = rlLeadin;
      } else {
        Reserve(1);
        FBuffer[static_cast<std::size_t>(FBufPoi++)] = InByte;
      }
      break;
    case rlLeadin:
      FCount = InByte;
      FDecodeSt = rlCnt;
      break;
    case rlCnt:
      Reserve(FCount);
      std::memset(FBuffer.data() + FBufPoi, InByte, FCount);
      FBufPoi += FCount;
      FCount = 0;
      FDecodeSt = rlData;
      break;
  }
  return FBufPoi >= FBufLeng;
}

void TRLEncoder::DeliverBlock(std::span<std::uint8_t> OutBuf) noexcept {
  const auto block = static_cast<std::size_t>(FBufLeng);
  std::copy_n(FBuffer.data(), std::min(block, OutBuf.size()), OutBuf.data());
  std::memmove(FBuffer.data(), FBuffer.data() + block, static_cast<std::size_t>(FBufPoi) - block);
  FBufPoi -= FBufLeng;
}

void TRLEncoder::GetResult(std::span<std::uint8_t> OutBuf) {
  if (FBufPoi >= FBufLeng) DeliverBlock(OutBuf);
}

int TRLEncoder::Finish(std::span<std::uint8_t> OutBuf) {
  Reserve(3);
  PutTriple(FBuffer.data() + FBufPoi, FLeadInByte, FCount, FLastB);
  FBufPoi += 3;
  FCount = 0;
  if (FBufPoi < FBufLeng) {
    const int delivered = FBufPoi;
    std::copy_n(FBuffer.data(), std::min(static_cast<std::size_t>(delivered), OutBuf.size()),
                OutBuf.data());
    FBufPoi = 0;
    return delivered;
  }
  DeliverBlock(OutBuf);
  return FBufLeng;
}

void TRLEncoder::Reset() noexcept {
  FBufPoi = 0;
  FCount = 0;
  FLastB = 0;
  FDecodeSt = rlData;
}

}  // namespace Zyn_dstruct
