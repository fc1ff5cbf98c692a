#include "zyn/dstruct/checksums.h"

#include <gtest/gtest.h>
#include <openssl/sha.h>
#include <zlib.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/cpu_features.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::AllowCpuExtensions;

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

// Runs `check` once with the processor's extensions and once on the portable
// code, naming the path in the trace.
template <typename Check>
void OnBothPaths(Check check) {
  for (bool allow : {true, false}) {
    SCOPED_TRACE(allow ? "fast path" : "portable path");
    AllowCpuExtensions(allow);
    check();
  }
  AllowCpuExtensions(true);
}

TEST(ChecksumsTest, CatalogueCheckValues) {
  const auto check = Bytes("123456789");
  EXPECT_EQ(CRC16ofBuffer(check, 9, crcZModem), 0x31C3);
  EXPECT_EQ(CRC16ofBuffer(check, 9, crcCCITT), 0x29B1);
  EXPECT_EQ(CRC32ofBuffer(check, 9), 0xCBF43926u);
  // The tables behind the single steps.
  EXPECT_EQ(CalcNextCRC16(1, 0), 0x1021);
  EXPECT_EQ(CalcNextCRC16(2, 0), 0x2042);
  EXPECT_EQ(CalcNextCRC32(1, 0), 0x77073096u);
}

TEST(ChecksumsTest, CountsOutsideTheBuffer) {
  const auto check = Bytes("123456789");
  for (int count : {0, -1, -1000}) {
    SCOPED_TRACE(count);
    EXPECT_EQ(CRC16ofBuffer(check, count, crcZModem), 0);
    EXPECT_EQ(CRC16ofBuffer(check, count, crcCCITT), 0xFFFF);
    EXPECT_EQ(CRC32ofBuffer(check, count), 0u);
  }
  // Only the first `count` bytes count, and never more than there are.
  EXPECT_EQ(CRC32ofBuffer(check, 4), ZlibCrc32(check.first(4)));
  EXPECT_EQ(CRC32ofBuffer(check, 1 << 30), 0xCBF43926u);
  EXPECT_EQ(CRC16ofBuffer(check, 100, crcCCITT), 0x29B1);
}

TEST(ChecksumsTest, StepsByHandAgreeWithTheBufferForms) {
  const auto bytes = RandomBytes(100, 7);
  std::uint32_t crc32_value = 0xFFFFFFFF;
  std::uint16_t crc16_value = 0xFFFF;
  for (std::uint8_t b : bytes) {
    crc32_value = CalcNextCRC32(b, crc32_value);
    crc16_value = CalcNextCRC16(b, crc16_value);
  }
  EXPECT_EQ(~crc32_value, CRC32ofBuffer(bytes, 100));
  EXPECT_EQ(crc16_value, CRC16ofBuffer(bytes, 100, crcCCITT));
}

TEST(ChecksumsTest, Crc32MatchesZlibAtEveryLengthAndOffset) {
  const auto bytes = RandomBytes(1 << 20, 11);
  OnBothPaths([&] {
    // Every length up to 300 at every alignment that matters to 16-byte loads.
    for (std::size_t offset = 0; offset < 16; ++offset) {
      for (std::size_t n = 0; n <= 300; ++n) {
        const auto part = std::span(bytes).subspan(offset, n);
        ASSERT_EQ(CRC32ofBuffer(part, static_cast<int>(n)), ZlibCrc32(part))
            << "offset " << offset << " length " << n;
      }
    }
    for (std::size_t n : {1023u, 4096u, 65537u, 1u << 20}) {
      const auto part = std::span(bytes).first(n);
      EXPECT_EQ(CRC32ofBuffer(part, static_cast<int>(n)), ZlibCrc32(part)) << "length " << n;
    }
  });
}

TEST(ChecksumsTest, Sha1PublishedVectors) {
  struct Case {
    std::string message;
    const char* digest;
  };
  const Case cases[] = {
      {"", "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709"},
      {"abc", "A9993E364706816ABA3E25717850C26C9CD0D89D"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "84983E441C3BD26EBAAE4AA1F95129E5E54670F1"},
      {"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqr"
       "lmnopqrsmnopqrstnopqrstu",
       "A49B2446A02C645BF419F995B67091253A04A259"},
      {std::string(1000000, 'a'), "34AA973CD4C4DAA4F61EEB2BDBAD27316534016F"},
  };
  OnBothPaths([&] {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.message.substr(0, 20));
      EXPECT_EQ(Hex(SHA1FromBytes(Bytes(c.message))), c.digest);
    }
  });
}

TEST(ChecksumsTest, Sha1MatchesOpenSslAtEveryLength) {
  const auto bytes = RandomBytes(3 << 20, 13);
  OnBothPaths([&] {
    for (std::size_t n = 0; n <= 300; ++n) {
      const auto part = std::span(bytes).first(n);
      ASSERT_EQ(SHA1FromBytes(part), OpenSslSha1(part)) << "length " << n;
    }
    for (std::size_t n : {1000u, 65536u, 1u << 20, (3u << 20) - 1}) {
      const auto part = std::span(bytes).first(n);
      EXPECT_EQ(SHA1FromBytes(part), OpenSslSha1(part)) << "length " << n;
    }
  });
}

TEST(ChecksumsTest, Sha1OfStringHashesTheCodeUnitsLowByteFirst) {
  struct Case {
    std::u16string_view text;
    std::string bytes;
  };
  const char16_t euro_and_lone_surrogates[] = {0x20AC, 0xD83D, 0xDE00};
  const Case cases[] = {
      {u"", ""},
      {u"abc", std::string("a\0b\0c\0", 6)},
      {{euro_and_lone_surrogates, 3}, std::string("\xAC\x20\x3D\xD8\x00\xDE", 6)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(zyn::testing::Utf8(c.text));
    EXPECT_EQ(SHA1FromString(c.text), OpenSslSha1(Bytes(c.bytes)));
  }
  // Long enough to need several internal chunks.
  std::u16string long_text(5000, u'\0');
  std::string long_bytes;
  for (std::size_t i = 0; i < long_text.size(); ++i) {
    long_text[i] = static_cast<char16_t>(i * 40503u);
    long_bytes += static_cast<char>(long_text[i] & 0xFF);
    long_bytes += static_cast<char>(long_text[i] >> 8);
  }
  EXPECT_EQ(SHA1FromString(long_text), OpenSslSha1(Bytes(long_bytes)));
}

TEST(ChecksumsTest, DigestToHexIsUpperCaseWithoutSeparators) {
  TSHACode digest{};
  for (std::size_t i = 0; i < digest.size(); ++i)
    digest[i] = static_cast<std::uint8_t>(i * 13 + 10);
  EXPECT_EQ(SHA1DigestToHex(digest), u"0A1724313E4B5865727F8C99A6B3C0CDDAE7F401");
}

}  // namespace
}  // namespace Zyn_dstruct
