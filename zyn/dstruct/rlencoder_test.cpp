#include "zyn/dstruct/rlencoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace Zyn_dstruct {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Repeat(std::size_t n, std::uint8_t value) { return Bytes(n, value); }

Bytes Cat(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}

std::string Hex(const Bytes& b) {
  std::string s;
  static const char kDigits[] = "0123456789ABCDEF";
  for (std::uint8_t x : b) {
    if (!s.empty()) s += ' ';
    s += kDigits[x >> 4];
    s += kDigits[x & 15];
  }
  return s;
}

// Fetches the last blocks by Finish until it delivers less than a block.
// Returns the number of Finish calls.
int FinishInto(TRLEncoder& coder, Bytes& out) {
  Bytes block(static_cast<std::size_t>(coder.BufLeng()));
  int calls = 0;
  int n = 0;
  do {
    n = coder.Finish(block);
    ++calls;
    out.insert(out.end(), block.begin(), block.begin() + n);
  } while (n == coder.BufLeng());
  return calls;
}

// Encodes in the documented calling order, `chunk` input bytes per Encode.
Bytes EncodeAll(const Bytes& data, int buf_leng = 256, std::size_t chunk = 100) {
  TRLEncoder coder;
  coder.SetBufLeng(buf_leng);
  coder.Reset();
  Bytes coded;
  Bytes block(static_cast<std::size_t>(buf_leng));
  for (std::size_t at = 0; at < data.size(); at += chunk) {
    const std::size_t n = std::min(chunk, data.size() - at);
    bool ready = coder.Encode(std::span(data).subspan(at), static_cast<int>(n));
    while (ready) {
      coder.GetResult(block);
      coded.insert(coded.end(), block.begin(), block.end());
      ready = coder.Encode({}, 0);
    }
  }
  FinishInto(coder, coded);
  return coded;
}

// Decodes in the documented calling order and drops the three bytes that
// each Finish adds behind the data.
Bytes DecodeAll(const Bytes& coded, int buf_leng = 256) {
  TRLEncoder coder;
  coder.SetBufLeng(buf_leng);
  coder.Reset();
  Bytes data;
  Bytes block(static_cast<std::size_t>(buf_leng));
  for (std::uint8_t b : coded) {
    if (coder.Decode(b)) {
      coder.GetResult(block);
      data.insert(data.end(), block.begin(), block.end());
    }
  }
  const int calls = FinishInto(coder, data);
  EXPECT_GE(data.size(), 3u * static_cast<unsigned>(calls));
  data.resize(data.size() - 3 * static_cast<std::size_t>(calls));
  return data;
}

TEST(TRLEncoderTest, CodedFormByteForByte) {
  struct Case {
    const char* name;
    Bytes data;
    Bytes coded;
  };
  const Case cases[] = {
      {"example",
       {0x01, 0x01, 0x02, 0x02, 0x02, 0xA5, 0x03},
       {0x01, 0x01, 0xA5, 0x03, 0x02, 0xA5, 0x01, 0xA5, 0xA5, 0x01, 0x03}},
      {"nothing", {}, {0xA5, 0x00, 0x00}},
      {"one byte", {0x07}, {0xA5, 0x01, 0x07}},
      {"run of 2", {0x07, 0x07, 0x08}, {0x07, 0x07, 0xA5, 0x01, 0x08}},
      {"run of 3", {0x07, 0x07, 0x07, 0x08}, {0xA5, 0x03, 0x07, 0xA5, 0x01, 0x08}},
      {"lone A5", {0x01, 0xA5, 0x02}, {0x01, 0xA5, 0x01, 0xA5, 0xA5, 0x01, 0x02}},
      {"A5 A5", {0xA5, 0xA5, 0x00}, {0xA5, 0x02, 0xA5, 0xA5, 0x01, 0x00}},
      {"run of 254", Repeat(254, 0x07), {0xA5, 0xFE, 0x07}},
      {"run of 255", Repeat(255, 0x07), {0xA5, 0xFF, 0x07, 0xA5, 0x00, 0x07}},
      {"run of 256", Repeat(256, 0x07), {0xA5, 0xFF, 0x07, 0xA5, 0x01, 0x07}},
      {"run of 255 then other",
       Cat({Repeat(255, 0x07), {0x08}}),
       {0xA5, 0xFF, 0x07, 0xA5, 0x01, 0x08}},
      {"run of 257 then other",
       Cat({Repeat(257, 0x07), {0x08}}),
       {0xA5, 0xFF, 0x07, 0x07, 0x07, 0xA5, 0x01, 0x08}},
      {"run of 510 A5", Repeat(510, 0xA5), {0xA5, 0xFF, 0xA5, 0xA5, 0xFF, 0xA5, 0xA5, 0x00, 0xA5}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (std::size_t chunk : {1u, 3u, 256u}) {
      SCOPED_TRACE("chunk " + std::to_string(chunk));
      EXPECT_EQ(Hex(EncodeAll(c.data, 256, chunk)), Hex(c.coded));
    }
    EXPECT_EQ(Hex(DecodeAll(c.coded)), Hex(c.data));
  }
}

TEST(TRLEncoderTest, DecoderReadsAnyTriple) {
  struct Case {
    const char* name;
    Bytes coded;
    Bytes data;
  };
  const Case cases[] = {
      {"count 0", {0xA5, 0x00, 0x07, 0x08}, {0x08}},
      {"count 0 of A5", {0x01, 0xA5, 0x00, 0xA5, 0x02}, {0x01, 0x02}},
      {"short run as triple", {0xA5, 0x02, 0x41}, {0x41, 0x41}},
      {"cut after lead-in", {0x01, 0xA5}, {0x01}},
      {"cut after count", {0x01, 0xA5, 0x09}, {0x01}},
      {"full run", {0xA5, 0xFF, 0x00}, Repeat(255, 0x00)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Hex(DecodeAll(c.coded)), Hex(c.data));
  }
}

TEST(TRLEncoderTest, RoundTripsThroughBlocks) {
  std::vector<Bytes> inputs;
  unsigned seed = 7;
  for (unsigned kind = 0; kind < 4; ++kind) {
    Bytes data;
    while (data.size() < 5000) {
      seed = seed * 1103515245u + 12345u;
      const std::uint8_t value = kind == 3 ? 0xA5 : static_cast<std::uint8_t>(seed >> 24);
      std::size_t len = 1;
      if (kind == 1) len = 1 + (seed >> 8) % 4;
      if (kind >= 2) len = 1 + (seed >> 8) % 600;
      data.insert(data.end(), len, (seed >> 4) % 3 == 0 ? std::uint8_t{0xA5} : value);
    }
    inputs.push_back(data);
  }
  for (std::size_t k = 0; k < inputs.size(); ++k) {
    for (int buf_leng : {85, 256, 1000}) {
      SCOPED_TRACE("kind " + std::to_string(k) + " BufLeng " + std::to_string(buf_leng));
      const Bytes coded = EncodeAll(inputs[k], buf_leng, static_cast<std::size_t>(buf_leng));
      EXPECT_EQ(DecodeAll(coded, buf_leng), inputs[k]);
    }
  }
}

TEST(TRLEncoderTest, BlocksComeOutOnlyWhenFull) {
  TRLEncoder coder;
  coder.SetBufLeng(4);
  const Bytes data{1, 2, 3};
  Bytes out(4, 0xEE);
  EXPECT_FALSE(coder.Encode(data, 3));  // 1 and 2 out, 3 pending
  coder.GetResult(out);
  EXPECT_EQ(Hex(out), "EE EE EE EE");
  EXPECT_TRUE(coder.Encode(data, 3));  // 3 1 2 out, 3 pending
  coder.GetResult(out);
  EXPECT_EQ(Hex(out), "01 02 03 01");
  // A Finish of exactly one block asks for another call.
  EXPECT_EQ(coder.Finish(out), 4);
  EXPECT_EQ(Hex(out), "02 A5 01 03");
  EXPECT_EQ(coder.Finish(out), 3);
  EXPECT_EQ(Hex(out), "A5 00 03 03");
}

TEST(TRLEncoderTest, ArgumentsOutsideTheBuffersAreCut) {
  TRLEncoder coder;
  const Bytes data{9, 9};
  EXPECT_FALSE(coder.Encode(data, -4));
  EXPECT_FALSE(coder.Encode(data, 1000));  // only the two bytes there are
  Bytes out(8, 0xEE);
  EXPECT_EQ(coder.Finish(std::span(out).first(2)), 3);
  EXPECT_EQ(Hex(out), "A5 02 EE EE EE EE EE EE");
}

TEST(TRLEncoderTest, OverfilledBufferKeepsEverything) {
  // Ten runs of 255 without a GetResult go far past four blocks of 85.
  TRLEncoder coder;
  coder.SetBufLeng(85);
  for (int i = 0; i < 10; ++i) {
    coder.Decode(0xA5);
    coder.Decode(0xFF);
    EXPECT_TRUE(coder.Decode(static_cast<std::uint8_t>(i)));
  }
  Bytes all;
  Bytes block(85);
  while (coder.Encode({}, 0)) {
    coder.GetResult(block);
    all.insert(all.end(), block.begin(), block.end());
  }
  FinishInto(coder, all);
  ASSERT_EQ(all.size(), 2550u + 3u);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(all[static_cast<std::size_t>(i) * 255 + 254], i);
  }
}

TEST(TRLEncoderTest, ResetAndBufLeng) {
  TRLEncoder coder;
  EXPECT_EQ(coder.BufLeng(), 256);
  for (int ignored : {3, 1, 0, -1}) {
    coder.SetBufLeng(ignored);
    EXPECT_EQ(coder.BufLeng(), 256);
  }
  coder.SetBufLeng(4);
  EXPECT_EQ(coder.BufLeng(), 4);
  coder.SetBufLeng(100);
  EXPECT_EQ(coder.BufLeng(), 100);
  const Bytes data{5, 5, 5, 5};
  coder.Encode(data, 4);
  coder.Decode(0xA5);
  coder.Reset();
  Bytes out(100);
  EXPECT_EQ(coder.Finish(out), 3);
  EXPECT_EQ(Hex(Bytes(out.begin(), out.begin() + 3)), "A5 00 00");
  // After Reset the decoder stands between items again.
  coder.Decode(0x41);
  EXPECT_EQ(coder.Finish(out), 4);
  EXPECT_EQ(out[0], 0x41);
}

}  // namespace
}  // namespace Zyn_dstruct
