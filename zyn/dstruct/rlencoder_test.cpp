#include "zyn/dstruct/rlencoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace Zyn_dstruct {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Cat(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

std::string Hex(const Bytes& b) {
  std::string s;
  for (std::uint8_t x : b)
    s += (s.empty() ? "" : " ") +
         std::string{"0123456789ABCDEF"[x >> 4], "0123456789ABCDEF"[x & 15]};
  return s;
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

// The documented calling order, `chunk` input bytes per Encode.
Bytes EncodeAll(const Bytes& data, std::size_t chunk, int buf_leng = 256) {
  TRLEncoder coder;
  coder.SetBufLeng(buf_leng);
  Bytes coded, block(static_cast<std::size_t>(buf_leng));
  for (std::size_t at = 0; at < data.size(); at += chunk) {
    if (coder.Encode(std::span(data).subspan(at),
                     static_cast<int>(std::min(chunk, data.size() - at)))) {
      coder.GetResult(block);
      coded.insert(coded.end(), block.begin(), block.end());
    }
  }
  FinishInto(coder, coded);
  return coded;
}

// The documented calling order; drops the three bytes each Finish adds.
Bytes DecodeAll(const Bytes& coded, int buf_leng = 256) {
  TRLEncoder coder;
  coder.SetBufLeng(buf_leng);
  Bytes data, block(static_cast<std::size_t>(buf_leng));
  for (std::uint8_t b : coded) {
    if (coder.Decode(b)) {
      coder.GetResult(block);
      data.insert(data.end(), block.begin(), block.end());
    }
  }
  const auto finishes = static_cast<std::size_t>(FinishInto(coder, data));
  data.resize(data.size() - 3 * finishes);
  return data;
}

TEST(TRLEncoderTest, CodedFormByteForByte) {
  const Bytes r255(255, 0x07);
  struct Case {
    const char* name;
    Bytes data, coded;
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
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (std::size_t chunk : {1u, 3u, 256u})
      EXPECT_EQ(Hex(EncodeAll(c.data, chunk)), Hex(c.coded)) << chunk;
    EXPECT_EQ(Hex(DecodeAll(c.coded)), Hex(c.data));
  }
  // What the encoder never writes still decodes.
  const std::pair<Bytes, Bytes> decode_only[] = {{{0xA5, 0, 7, 8}, {8}},
                                                 {{0xA5, 2, 0x41}, {0x41, 0x41}},
                                                 {{1, 0xA5}, {1}},
                                                 {{1, 0xA5, 9}, {1}}};
  for (const auto& [coded, data] : decode_only)
    EXPECT_EQ(Hex(DecodeAll(coded)), Hex(data)) << Hex(coded);
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
    EXPECT_EQ(DecodeAll(EncodeAll(data, 50, buf_leng), buf_leng), data);
  }
}

TEST(TRLEncoderTest, BlocksComeOutWhenFull) {
  TRLEncoder coder;
  coder.SetBufLeng(4);
  const Bytes data{1, 2, 3};
  Bytes out(4, 0xEE);
  EXPECT_FALSE(coder.Encode(data, 3));  // 1 and 2 out, 3 pending
  coder.GetResult(out);
  EXPECT_EQ(Hex(out), "EE EE EE EE");
  EXPECT_TRUE(coder.Encode(data, 1000));  // only the three bytes there are
  coder.GetResult(out);
  EXPECT_EQ(Hex(out), "01 02 03 01");
  EXPECT_FALSE(coder.Encode(data, -4));
  EXPECT_EQ(coder.Finish(out), 4);  // a full block asks for another call
  EXPECT_EQ(Hex(out), "02 A5 01 03");
  EXPECT_EQ(coder.Finish(std::span(out).first(2)), 3);  // writes no further than told
  EXPECT_EQ(Hex(out), "A5 00 01 03");
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
  EXPECT_EQ(Hex(Bytes(out.begin(), out.begin() + 4)), "41 A5 00 00");
}

}  // namespace
}  // namespace Zyn_dstruct
