#include "zyn/dstruct/rlencoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace Zyn_dstruct {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Cat(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// Finish until it delivers less than a block; returns the number of calls.
int FinishInto(TRLEncoder& coder, Bytes& out) {
  Bytes block(static_cast<std::size_t>(coder.BufLeng()));
  int calls = 0, n = 0;
  do {
    n = coder.Finish(block);
    ++calls;
    out.insert(out.end(), block.begin(), block.begin() + n);
  } while (n == coder.BufLeng());
  return calls;
}

constexpr bool kEncode = true, kDecode = false;

// The documented calling order: Encode `chunk` bytes at a time or Decode each
// byte, GetResult whenever a block is ready, then Finish. Decoding drops the
// three bytes each Finish adds.
Bytes Code(bool encode, const Bytes& in, std::size_t chunk = 1, int buf_leng = 256) {
  TRLEncoder coder;
  coder.SetBufLeng(buf_leng);
  Bytes out, block(static_cast<std::size_t>(buf_leng));
  for (std::size_t at = 0; at < in.size(); at += encode ? chunk : 1) {
    const int n = static_cast<int>(std::min(chunk, in.size() - at));
    if (encode ? coder.Encode(std::span(in).subspan(at), n) : coder.Decode(in[at])) {
      coder.GetResult(block);
      out.insert(out.end(), block.begin(), block.end());
    }
  }
  const auto finishes = static_cast<std::size_t>(FinishInto(coder, out));
  if (!encode) out.resize(out.size() - 3 * finishes);
  return out;
}

TEST(TRLEncoderTest, CodedFormByteForByte) {
  const Bytes r255(255, 0x07);
  struct Case {
    const char* name;
    Bytes data, coded;
    bool encoder_writes = true;  // else only the decoder takes it
  };
  const Case cases[] = {
      {"example", {1, 1, 2, 2, 2, 0xA5, 3}, {1, 1, 0xA5, 3, 2, 0xA5, 1, 0xA5, 0xA5, 1, 3}},
      {"nothing", {}, {0xA5, 0, 0}},
      {"run of 2, run of 3", {7, 7, 8, 8, 8, 9}, {7, 7, 0xA5, 3, 8, 0xA5, 1, 9}},
      {"lone A5", {1, 0xA5, 2}, {1, 0xA5, 1, 0xA5, 0xA5, 1, 2}},
      {"A5 A5", {0xA5, 0xA5, 0}, {0xA5, 2, 0xA5, 0xA5, 1, 0}},
      {"run of 254", Bytes(254, 7), {0xA5, 254, 7}},
      {"run of 255", r255, {0xA5, 255, 7, 0xA5, 0, 7}},
      {"run of 256", Cat(r255, {7}), {0xA5, 255, 7, 0xA5, 1, 7}},
      {"run of 257, other", Cat(r255, {7, 7, 8}), {0xA5, 255, 7, 7, 7, 0xA5, 1, 8}},
      {"run of 510 A5", Bytes(510, 0xA5), {0xA5, 255, 0xA5, 0xA5, 255, 0xA5, 0xA5, 0, 0xA5}},
      {"count 0 inside", {8}, {0xA5, 0, 7, 8}, false},
      {"short run as triple", {0x41, 0x41}, {0xA5, 2, 0x41}, false},
      {"cut after lead-in", {1}, {1, 0xA5}, false},
      {"cut after count", {1}, {1, 0xA5, 9}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Code(kDecode, c.coded), c.data);
    if (!c.encoder_writes) continue;
    for (std::size_t chunk : {1u, 3u, 256u})
      EXPECT_EQ(Code(kEncode, c.data, chunk), c.coded) << chunk;
  }
}

TEST(TRLEncoderTest, RoundTripsThroughBlocks) {
  Bytes data;
  for (unsigned seed = 7; data.size() < 20000;) {
    seed = seed * 1103515245u + 12345u;
    const std::size_t len =
        data.size() < 5000 ? 1 : 1 + (seed >> 8) % (data.size() < 10000 ? 4 : 600);
    data.insert(data.end(), len,
                (seed >> 4) % 3 == 0 ? 0xA5 : static_cast<std::uint8_t>(seed >> 24));
  }
  for (int buf_leng : {85, 256, 1000}) {
    SCOPED_TRACE(buf_leng);
    EXPECT_EQ(Code(kDecode, Code(kEncode, data, 50, buf_leng), 1, buf_leng), data);
  }
}

TEST(TRLEncoderTest, BlocksComeOutWhenFull) {
  TRLEncoder coder;
  coder.SetBufLeng(4);
  const Bytes data{1, 2, 3};
  Bytes out(4, 0xEE);
  EXPECT_FALSE(coder.Encode(data, 3));  // 1 and 2 out, 3 pending
  coder.GetResult(out);
  EXPECT_EQ(out, (Bytes{0xEE, 0xEE, 0xEE, 0xEE}));
  EXPECT_TRUE(coder.Encode(data, 1000));  // only the three bytes there are
  coder.GetResult(out);
  EXPECT_EQ(out, (Bytes{0x01, 0x02, 0x03, 0x01}));
  EXPECT_FALSE(coder.Encode(data, -4));
  EXPECT_EQ(coder.Finish(out), 4);  // a full block asks for another call
  EXPECT_EQ(out, (Bytes{0x02, 0xA5, 0x01, 0x03}));
  EXPECT_EQ(coder.Finish(std::span(out).first(2)), 3);  // writes no further than told
  EXPECT_EQ(out, (Bytes{0xA5, 0x00, 0x01, 0x03}));
}

TEST(TRLEncoderTest, OverfilledBufferKeepsEverything) {
  TRLEncoder coder;  // ten runs of 255 go far past four blocks of 85
  coder.SetBufLeng(85);
  for (int i = 0; i < 10; ++i) {
    for (std::uint8_t b : {0xA5, 0xFF, i}) coder.Decode(b);
  }
  Bytes all, block(85);
  while (coder.Encode({}, 0)) {
    coder.GetResult(block);
    all.insert(all.end(), block.begin(), block.end());
  }
  FinishInto(coder, all);
  ASSERT_EQ(all.size(), 2550u + 3u);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(all[static_cast<std::size_t>(i) * 255 + 254], i);
}

TEST(TRLEncoderTest, ResetAndBufLeng) {
  TRLEncoder coder;
  for (int ignored : {3, 0, -1}) coder.SetBufLeng(ignored);
  EXPECT_EQ(coder.BufLeng(), 256);
  coder.SetBufLeng(100);
  EXPECT_EQ(coder.BufLeng(), 100);
  coder.Encode(Bytes{5, 5, 5, 5}, 4);
  coder.Decode(0xA5);
  coder.Reset();
  coder.Decode(0x41);  // a literal again, not a count
  Bytes out(100);
  EXPECT_EQ(coder.Finish(out), 4);
  EXPECT_EQ(Bytes(out.begin(), out.begin() + 4), (Bytes{0x41, 0xA5, 0, 0}));
}

}  // namespace
}  // namespace Zyn_dstruct
