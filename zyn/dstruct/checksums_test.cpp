#include "zyn/dstruct/checksums.h"

#include <gtest/gtest.h>
#include <openssl/sha.h>
#include <zlib.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/cpu_features.h"
#include "zyn/platform/stream.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::TMemoryStream;

constexpr const char* kEmptySha1 = "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709";

std::span<const std::uint8_t> Bytes(std::string_view s) {
  return {reinterpret_cast<const std::uint8_t*>(s.data()), s.size()};
}

std::vector<std::uint8_t> RandomBytes(std::size_t n, unsigned seed) {
  std::mt19937 generator(seed);
  std::vector<std::uint8_t> bytes(n);
  for (auto& b : bytes) b = static_cast<std::uint8_t>(generator());
  return bytes;
}

std::uint32_t ZlibCrc32(std::span<const std::uint8_t> bytes) {
  return static_cast<std::uint32_t>(crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

TSHACode OpenSslSha1(std::span<const std::uint8_t> bytes) {
  TSHACode digest;
  SHA1(bytes.data(), bytes.size(), digest.data());
  return digest;
}

std::string Hex(const TSHACode& digest) { return zyn::testing::Utf8(SHA1DigestToHex(digest)); }

// A memory stream holding `bytes`, at position 0.
void Fill(TMemoryStream& stream, std::string_view bytes) {
  stream.Write(bytes.data(), static_cast<int>(bytes.size()));
  stream.SetPosition(0);
}

std::string Content(const TMemoryStream& stream) {
  return {stream.Memory().begin(), stream.Memory().end()};
}

// Hands out at most `step` bytes a call and records the largest request, to
// see how a reader cuts its input.
struct TrickleStream : TMemoryStream {
  int step = 1, largest_request = 0;
  int Read(void* buffer, int count) override {
    largest_request = std::max(largest_request, count);
    return TMemoryStream::Read(buffer, std::min(count, step));
  }
};

// Runs `check` once with the processor's extensions and once on the portable
// code, naming the path in the trace.
template <typename Check>
void OnBothPaths(Check check) {
  for (bool allow : {true, false}) {
    SCOPED_TRACE(allow ? "fast path" : "portable path");
    zyn::platform::AllowCpuExtensions(allow);
    check();
  }
  zyn::platform::AllowCpuExtensions(true);
}

TEST(ChecksumsTest, CrcCheckValuesAndCounts) {
  const auto check = Bytes("123456789");
  // count, CRC-16 ZModem and CCITT, CRC-32: only the first `count` bytes
  // count, and never more than there are.
  const std::tuple<int, std::uint16_t, std::uint16_t, std::uint32_t> cases[] = {
      {9, 0x31C3, 0x29B1, 0xCBF43926u},
      {1 << 30, 0x31C3, 0x29B1, 0xCBF43926u},
      {4, 0xD789, 0x5349, 0x9BE3E0A3u},
      {0, 0, 0xFFFF, 0},
      {-1, 0, 0xFFFF, 0}};
  for (auto [count, zmodem, ccitt, crc_32] : cases) {
    SCOPED_TRACE(count);
    EXPECT_EQ(CRC16ofBuffer(check, count, crcZModem), zmodem);
    EXPECT_EQ(CRC16ofBuffer(check, count, crcCCITT), ccitt);
    EXPECT_EQ(CRC32ofBuffer(check, count), crc_32);
  }
  // The single steps, as a caller chains them.
  std::uint16_t crc16 = 0;
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::uint8_t b : check) crc16 = CalcNextCRC16(b, crc16), crc = CalcNextCRC32(b, crc);
  EXPECT_EQ(crc16, 0x31C3);
  EXPECT_EQ(~crc, 0xCBF43926u);
}

// CRC-16/XMODEM bit by bit, straight from the polynomial: no table.
std::uint16_t BitwiseCrc16(std::span<const std::uint8_t> bytes, std::uint16_t crc) {
  for (const std::uint8_t b : bytes) {
    crc = static_cast<std::uint16_t>(crc ^ b << 8);
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<std::uint16_t>(crc & 0x8000 ? crc << 1 ^ 0x1021 : crc << 1);
    }
  }
  return crc;
}

// The CRC-16 takes sixteen bytes a step: every length and offset around that
// step, in both modes, against the bit-by-bit form.
TEST(ChecksumsTest, Crc16MatchesTheBitwiseFormAtEveryLengthAndOffset) {
  const std::vector<std::uint8_t> bytes = RandomBytes(300, 16);
  for (std::size_t offset = 0; offset < 17; ++offset) {
    for (std::size_t length = 0; offset + length <= bytes.size(); ++length) {
      SCOPED_TRACE(::testing::Message() << offset << " + " << length);
      const auto part = std::span(bytes).subspan(offset, length);
      const int count = static_cast<int>(length);
      ASSERT_EQ(CRC16ofBuffer(part, count, crcZModem), BitwiseCrc16(part, 0));
      ASSERT_EQ(CRC16ofBuffer(part, count, crcCCITT), BitwiseCrc16(part, 0xFFFF));
    }
  }
}

TEST(ChecksumsTest, Crc32AndSha1MatchZlibAndOpenSslAtEveryLengthAndOffset) {
  const auto bytes = RandomBytes(3 << 20, 11);
  OnBothPaths([&] {
    // Every length up to 300 at every alignment that matters to 16-byte loads.
    for (std::size_t offset = 0; offset < 16; ++offset) {
      for (std::size_t n = 0; n <= 300; ++n) {
        const auto part = std::span(bytes).subspan(offset, n);
        ASSERT_EQ(CRC32ofBuffer(part, static_cast<int>(n)), ZlibCrc32(part))
            << "offset " << offset << " length " << n;
        ASSERT_EQ(SHA1FromBytes(part), OpenSslSha1(part)) << "offset " << offset << " length " << n;
      }
    }
    for (std::size_t n : {1000u, 1023u, 4096u, 65536u, 65537u, 1u << 20, (3u << 20) - 1}) {
      const auto part = std::span(bytes).first(n);
      EXPECT_EQ(CRC32ofBuffer(part, static_cast<int>(n)), ZlibCrc32(part)) << "length " << n;
      EXPECT_EQ(SHA1FromBytes(part), OpenSslSha1(part)) << "length " << n;
    }
  });
}

TEST(ChecksumsTest, Sha1PublishedVectors) {
  const std::pair<std::string, const char*> published[] = {
      {"", kEmptySha1},
      {"abc", "A9993E364706816ABA3E25717850C26C9CD0D89D"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "84983E441C3BD26EBAAE4AA1F95129E5E54670F1"},
      {"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqr"
       "lmnopqrsmnopqrstnopqrstu",
       "A49B2446A02C645BF419F995B67091253A04A259"},
      {std::string(1000000, 'a'), "34AA973CD4C4DAA4F61EEB2BDBAD27316534016F"},
  };
  OnBothPaths([&] {
    for (const auto& [message, digest] : published) {
      SCOPED_TRACE(message.substr(0, 20));
      EXPECT_EQ(Hex(SHA1FromBytes(Bytes(message))), digest);
    }
  });
}

TEST(ChecksumsTest, Sha1OfStringHashesTheCodeUnitsLowByteFirst) {
  const std::pair<std::u16string, const char*> cases[] = {
      {u"", kEmptySha1},
      {u"abc", "9F04F41A848514162050E3D68C1A7ABB441DC2B5"},
      {u"\u20AC\U0001F600", "80C13F19C079BE7C80DEA443FFFBCC47EA4E2D35"},  // AC 20 3D D8 00 DE
  };
  for (const auto& [text, digest] : cases) EXPECT_EQ(Hex(SHA1FromString(text)), digest);
  // Long enough to need several internal chunks.
  std::u16string text(5000, u'\0');
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char16_t>(i * 40503u);
    bytes += {static_cast<char>(text[i] & 0xFF), static_cast<char>(text[i] >> 8)};
  }
  EXPECT_EQ(SHA1FromString(text), OpenSslSha1(Bytes(bytes)));
}

TEST(ChecksumsTest, Sha1FromStreamHashesFromThePositionToTheEnd) {
  const auto bytes = RandomBytes(5000, 17);
  // Pieces of odd sizes hash like the whole; no request exceeds 1024 bytes.
  for (int step : {1, 7, 64, 1000, 1 << 20}) {
    SCOPED_TRACE(step);
    TrickleStream stream;
    stream.step = step;
    Fill(stream, std::string(bytes.begin(), bytes.end()));
    stream.SetPosition(1234);
    EXPECT_EQ(SHA1FromStream(stream), OpenSslSha1(std::span(bytes).subspan(1234)));
    EXPECT_EQ(stream.Position(), 5000);
    EXPECT_LE(stream.largest_request, 1024);
    EXPECT_EQ(Hex(SHA1FromStream(stream)), kEmptySha1);  // already at the end
  }
}

TEST(ChecksumsTest, FileForms) {
  zyn::testing::TempDir dir;
  const auto bytes = RandomBytes(300000, 19);
  const auto name = [&dir](const char* file) {
    return zyn::platform::FromUTF8((dir / file).string());
  };
  zyn::testing::WriteFileBytes(dir / "data.bin", std::string(bytes.begin(), bytes.end()));
  zyn::testing::WriteFileBytes(dir / "empty.bin", "");
  EXPECT_EQ(CalcCRC32ofFile(name("data.bin")), ZlibCrc32(bytes));
  EXPECT_EQ(SHA1FromFile(name("data.bin")), OpenSslSha1(bytes));
  EXPECT_EQ(CalcCRC32ofFile(name("empty.bin")), 0u);
  EXPECT_EQ(Hex(SHA1FromFile(name("empty.bin"))), kEmptySha1);
  // Failures: 0 from the CRC, the stream's exception from SHA-1.
  for (const char* bad : {"missing.bin", "", "."}) EXPECT_EQ(CalcCRC32ofFile(name(bad)), 0u) << bad;
  EXPECT_THROW(SHA1FromFile(name("missing.bin")), zyn::platform::EFOpenError);
}

// Rows marked `encoded` are what the encoder writes for `out`; every row is
// what the decoder makes of `in`.
TEST(Ascii85Test, EncodeAndDecode) {
  struct Case {
    std::string in, out;
    int status;
    std::int64_t consumed;  // the source position at the end
    bool encoded;
  };
  const std::string zeros(4, '\0');
  const Case cases[] = {
      {"", "", 0, 0, false},
      {"~>", "", 0, 2, true},
      {"!b~>", "A", 0, 4, true},
      {"+B>H~>", "abc", 0, 5, true},  // the ">" stays unread
      {"z~>", zeros, 0, 3, true},
      {"!!!~>", zeros.substr(2), 0, 5, true},  // a short group of zeros is no "z"
      {"s8W-!~>", "\xFF\xFF\xFF\xFF", 0, 7, true},
      {"z9jqo^z$G:~>", zeros + "Man " + zeros + "ab", 0, 12, true},
      {"9jqo^~>", "Man ", 0, 7, true},
      {"9jqo^", "Man ", 0, 5, false},  // no terminator
      {"9jqo^\"-", "Man a", 0, 7, false},
      {"9jqo^!", "Man ", 0, 6, false},  // one digit makes no byte
      {"\r\n9j\r\nqo^\n+B>H\r~>", "Man abc", 0, 16, false},
      {"~>xyz", "", 0, 5, false},     // up to three characters behind the terminator are read
      {"<~+B>H~>", "", 0, 5, false},  // "<" is a digit, and the "~" ends the code
      {"uuuuu~>", "\x08\x78\x0E\xC4", 0, 7, false},  // wraps without a report
      // Bad characters still count as digits; the last one sets the status.
      {"9j o^9jzo^~>", "\x4D\x58\x80\x17\x4D\x62\x6C\x21", -2, 12, false},
      {"9jzo^9j o^~>", "\x4D\x62\x6C\x21\x4D\x58\x80\x17", -1, 12, false},
      {"ab~c~>", "\x5F\x04\xDC", -1, 5, false},  // digits run to the group's last "~"
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    TMemoryStream source, dest;
    Fill(source, c.in);
    EXPECT_EQ(DecodeASCII85(source, dest), c.status);
    EXPECT_EQ(Content(dest), c.out);
    EXPECT_EQ(source.Position(), c.consumed);
    if (!c.encoded) continue;
    TMemoryStream data, text;
    Fill(data, c.out);
    EncodeASCII85(data, text);
    EXPECT_EQ(Content(text), c.in);
  }
}

// Plain memory streams are read and written in blocks; a class derived from
// them goes through Read and Write a group at a time. Both must give the same
// bytes, status and positions, from any starting position, also into a
// destination that already holds bytes.
TEST(Ascii85Test, BlockPathsMatchTheStreamPaths) {
  struct PlainStream : TMemoryStream {};  // not a plain TMemoryStream: the group path
  std::mt19937 generator(85);
  const std::string_view alphabet = "!9jqo^u!9jqo^uABCDEz~>\r\n z~\x7F";
  for (int round = 0; round < 400; ++round) {
    SCOPED_TRACE(round);
    std::string bytes(generator() % 40, '\0');
    const bool text = round % 2 == 1;
    for (char& b : bytes) {
      const unsigned r = generator();
      b = text ? alphabet[r % alphabet.size()] : (r % 3 == 0 ? '\0' : static_cast<char>(r));
    }
    const std::int64_t start = generator() % (bytes.size() + 3);
    TMemoryStream block_source, block_dest;
    PlainStream group_source, group_dest;
    for (TMemoryStream* s : {&block_source, static_cast<TMemoryStream*>(&group_source)}) {
      Fill(*s, bytes);
      s->SetPosition(start);
    }
    for (TMemoryStream* d : {&block_dest, static_cast<TMemoryStream*>(&group_dest)}) {
      Fill(*d, "old content");
      d->SetPosition(4);
    }
    if (text) {
      EXPECT_EQ(DecodeASCII85(block_source, block_dest), DecodeASCII85(group_source, group_dest));
    } else {
      EncodeASCII85(block_source, block_dest);
      EncodeASCII85(group_source, group_dest);
    }
    EXPECT_EQ(Content(block_dest), Content(group_dest));
    EXPECT_EQ(block_dest.Position(), group_dest.Position());
    EXPECT_EQ(block_source.Position(), group_source.Position());
  }
  // One stream as source and destination keeps the group path.
  TMemoryStream both;
  Fill(both, "abc");
  EncodeASCII85(both, both);
  EXPECT_EQ(Content(both), "abc+B>H~>");
}

}  // namespace
}  // namespace Zyn_dstruct
