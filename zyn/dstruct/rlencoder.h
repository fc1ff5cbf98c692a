// zyn/dstruct/rlencoder.h
//
// TRLEncoder, a push-style run-length coder and decoder working through one
// internal buffer that it hands out in blocks of BufLeng bytes.
//
// The code: a literal byte (any value but 0xA5) stands for itself; the triple
// 0xA5, count, value stands for count copies of value (count 0 for nothing).
// Runs of 3 or more and every run of 0xA5 become triples, runs are cut at 255,
// and Finish always writes the pending run, or a count of 0, as a triple:
// 01 01 02 02 02 A5 03 gives 01 01 A5 03 02 A5 01 A5 A5 01 03.
//
// Encoding: Reset; Encode each block and GetResult whenever Encode returns
// true; then Finish until it returns less than BufLeng. Decoding: Reset;
// Decode each coded byte and GetResult whenever Decode returns true; a last
// short block comes out only through Finish, which appends its own three
// bytes A5 00 xx behind the data. One object works in one direction between
// two calls of Reset.

#ifndef ZYN_DSTRUCT_RLENCODER_H_
#define ZYN_DSTRUCT_RLENCODER_H_

#include <cstddef>
#include <cstdint>
#include <span>

#include "zyn/base/zynbase.h"
#include "zyn/dstruct/unit.h"
#include "zyn/platform/object.h"

namespace Zyn_dstruct {

// Where the decoder stands: between items, after a lead-in, after a count.
enum TDecodeSt : std::uint8_t { rlData, rlLeadin, rlCnt };

class TRLEncoder : public zyn::platform::TComponent {
 public:
  // Block length 256 with a zeroed buffer of 1024 bytes. Throws
  // EZYNDStructError "Component "<Name>": not enough memory on heap" if the
  // buffer can't be had.
  explicit TRLEncoder(zyn::platform::TComponent* AOwner = nullptr);

  // The block length that GetResult and Finish deliver.
  int BufLeng() const noexcept { return FBufLeng; }
  // A new block length with a zeroed buffer of four times its size. Values
  // below 4 are ignored: Finish adds three bytes a call, so with a shorter
  // block it would never deliver less than a block. Meant for an empty
  // buffer: the count of bytes held is kept. Throws EZYNDStructError "Component "<Name>":
  // not enough memory on heap" if the buffer can't be had.
  void SetBufLeng(int Value);

  // Codes the first NumBytes bytes of InBuf (no more than InBuf holds; none
  // for NumBytes <= 0) into the buffer. True if a block is ready for GetResult.
  bool Encode(std::span<const std::uint8_t> InBuf, int NumBytes);
  // Takes one coded byte; true if a block is ready for GetResult.
  bool Decode(std::uint8_t InByte);
  // Moves one block of BufLeng bytes to OutBuf, if that many are held;
  // otherwise does nothing. Writes no further than OutBuf reaches: bytes of
  // the block beyond a shorter OutBuf are lost.
  void GetResult(std::span<std::uint8_t> OutBuf);
  // Writes the pending run as a triple (count 0 if none), then moves up to
  // BufLeng bytes to OutBuf and returns their number. A result of BufLeng
  // asks for another call. Writes no further than OutBuf reaches.
  int Finish(std::span<std::uint8_t> OutBuf);
  // Empties the buffer and starts both directions afresh.
  void Reset() noexcept;

 private:
  static constexpr std::uint8_t FLeadInByte = 0xA5;

  // Makes room for `extra` more bytes. Within the limits of the calling order
  // the buffer always has it; a caller who lets more pile up gets a larger
  // buffer rather than a write out of bounds.
  void Reserve(std::size_t extra) {
    if (extra > FBuffer.size() - static_cast<std::size_t>(FBufPoi)) Grow(extra);
  }
  void Grow(std::size_t extra);
  // Copies the first BufLeng bytes to OutBuf and moves the rest to the front.
  void DeliverBlock(std::span<std::uint8_t> OutBuf) noexcept;

  int FBufLeng = 256;
  Zyn_zynbase::TBytes FBuffer;
  int FBufPoi = 0;  // bytes held in FBuffer
  TDecodeSt FDecodeSt = rlData;
  std::uint8_t FCount = 0;  // encoder: length of the pending run; decoder: count just read
  std::uint8_t FLastB = 0;  // encoder: value of the pending run
};

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_RLENCODER_H_
