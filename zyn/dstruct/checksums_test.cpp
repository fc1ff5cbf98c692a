#include "zyn/dstruct/checksums.h"

#include <gtest/gtest.h>
#include <openssl/sha.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "testing/zyn_testing.h"
#include "zyn/platform/cpu_features.h"
#include "zyn/platform/stream.h"

namespace Zyn_dstruct {
namespace {

using zyn::platform::AllowCpuExtensions;
using zyn::platform::TMemoryStream;
using zyn::platform::TStream;

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

// A memory stream holding `bytes`, at position 0.
void Fill(TMemoryStream& stream, std::string_view bytes) {
  stream.Write(bytes.data(), static_cast<int>(bytes.size()));
  stream.SetPosition(0);
}

std::string Content(const TMemoryStream& stream) {
  const auto memory = stream.Memory();
  return {memory.begin(), memory.end()};
}

// A stream that hands out at most `step` bytes a call and records the largest
// request, to see how a reader cuts its input.
class TrickleStream : public TStream {
 public:
  TrickleStream(std::string bytes, int step) : bytes_(std::move(bytes)), step_(step) {}
  int Read(void* buffer, int count) override {
    largest_request_ = std::max(largest_request_, count);
    const int n = std::min({count, step_, static_cast<int>(bytes_.size() - position_)});
    std::memcpy(buffer, bytes_.data() + position_, static_cast<std::size_t>(n));
    position_ += static_cast<std::size_t>(n);
    return n;
  }
  int Write(const void*, int) override { return 0; }
  std::int64_t Seek(std::int64_t, zyn::platform::TSeekOrigin) override {
    return static_cast<std::int64_t>(position_);
  }
  int largest_request() const { return largest_request_; }

 private:
  std::string bytes_;
  std::size_t position_ = 0;
  int step_;
  int largest_request_ = 0;
};

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

TEST(ChecksumsTest, Sha1FromStreamHashesFromThePositionToTheEnd) {
  const auto bytes = RandomBytes(5000, 17);
  const std::string text(bytes.begin(), bytes.end());
  TMemoryStream stream;
  Fill(stream, text);
  stream.SetPosition(1234);
  EXPECT_EQ(SHA1FromStream(stream), OpenSslSha1(std::span(bytes).subspan(1234)));
  EXPECT_EQ(stream.Position(), 5000);
  // Already at the end: the digest of the empty message.
  EXPECT_EQ(Hex(SHA1FromStream(stream)), "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");

  // Pieces of odd sizes hash like the whole; no request exceeds 1024 bytes.
  for (int step : {1, 7, 64, 1000}) {
    SCOPED_TRACE(step);
    TrickleStream trickle(text, step);
    EXPECT_EQ(SHA1FromStream(trickle), OpenSslSha1(bytes));
    EXPECT_LE(trickle.largest_request(), 1024);
  }
}

TEST(ChecksumsTest, FileForms) {
  zyn::testing::TempDir dir;
  const auto bytes = RandomBytes(300000, 19);
  const std::string text(bytes.begin(), bytes.end());
  const auto name = [&dir](const char* file) {
    return zyn::platform::FromUTF8((dir / file).string());
  };
  zyn::testing::WriteFileBytes(dir / "data.bin", text);
  zyn::testing::WriteFileBytes(dir / "empty.bin", "");
  OnBothPaths([&] {
    EXPECT_EQ(CalcCRC32ofFile(name("data.bin")), ZlibCrc32(bytes));
    EXPECT_EQ(SHA1FromFile(name("data.bin")), OpenSslSha1(bytes));
  });
  EXPECT_EQ(CalcCRC32ofFile(name("empty.bin")), 0u);
  EXPECT_EQ(Hex(SHA1FromFile(name("empty.bin"))), "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");
  // Failures: 0 from the CRC, the stream's exception from SHA-1.
  EXPECT_EQ(CalcCRC32ofFile(name("missing.bin")), 0u);
  EXPECT_EQ(CalcCRC32ofFile(name("")), 0u);
  EXPECT_EQ(CalcCRC32ofFile(name(".")), 0u);
  EXPECT_THROW(SHA1FromFile(name("missing.bin")), zyn::platform::EFOpenError);
}

TEST(Ascii85Test, Encode) {
  struct Case {
    std::string in, out;
  };
  const Case cases[] = {
      {"", "~>"},
      {std::string(4, '\0'), "z~>"},
      {std::string(2, '\0'), "!!!~>"},  // a short group of zeros is no "z"
      {"A", "!b~>"},
      {"abc", "+B>H~>"},
      {"Man ", "9jqo^~>"},
      {"\xFF\xFF\xFF\xFF", "s8W-!~>"},
      {std::string(4, '\0') + "Man " + std::string(4, '\0') + "ab", "z9jqo^z$G:~>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    TMemoryStream source, dest;
    Fill(source, c.in);
    EncodeASCII85(source, dest);
    EXPECT_EQ(Content(dest), c.out);
  }
}

TEST(Ascii85Test, Decode) {
  struct Case {
    std::string in, out;
    int status;
    std::int64_t consumed;  // the source position at the end
  };
  const std::string zeros(4, '\0');
  const Case cases[] = {
      {"", "", 0, 0},
      {"~>", "", 0, 2},
      {"!b~>", "A", 0, 4},
      {"+B>H~>", "abc", 0, 5},  // the ">" stays unread
      {"z~>", zeros, 0, 3},
      {"9jqo^z~>", "Man " + zeros, 0, 8},
      {"9jqo^~>", "Man ", 0, 7},
      {"9jqo^", "Man ", 0, 5},  // no terminator
      {"9jqo^\"-", "Man a", 0, 7},
      {"9jqo^!", "Man ", 0, 6},  // one digit makes no byte
      {"\r\n9j\r\nqo^\n+B>H\r~>", "Man abc", 0, 16},
      {"~>xyz", "", 0, 5},     // up to three characters behind the terminator are read
      {"<~+B>H~>", "", 0, 5},  // "<" is a digit, and the "~" ends the code
      {"uuuuu~>", "\x08\x78\x0E\xC4", 0, 7},  // wraps without a report
      // Bad characters still count as digits; the last one sets the status.
      {"9jzo^~>", "\x4D\x62\x6C\x21", -2, 7},
      {"9j o^~>", "\x4D\x58\x80\x17", -1, 7},
      {"9j o^9jzo^~>", "\x4D\x58\x80\x17\x4D\x62\x6C\x21", -2, 12},
      {"9jzo^9j o^~>", "\x4D\x62\x6C\x21\x4D\x58\x80\x17", -1, 12},
      {"ab~c~>", "\x5F\x04\xDC", -1, 5},  // digits run to the group's last "~"
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    TMemoryStream source, dest;
    Fill(source, c.in);
    EXPECT_EQ(DecodeASCII85(source, dest), c.status);
    EXPECT_EQ(Content(dest), c.out);
    EXPECT_EQ(source.Position(), c.consumed);
  }
}

TEST(Ascii85Test, RoundTripsEveryLength) {
  const auto bytes = RandomBytes(200, 23);
  for (std::size_t n = 0; n <= bytes.size(); ++n) {
    SCOPED_TRACE(n);
    std::string original(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(n));
    if (n % 3 == 0 && n >= 8) original.replace(4, 4, std::string(4, '\0'));
    TMemoryStream source, encoded, decoded;
    Fill(source, original);
    EncodeASCII85(source, encoded);
    encoded.SetPosition(0);
    EXPECT_EQ(DecodeASCII85(encoded, decoded), 0);
    EXPECT_EQ(Content(decoded), original);
  }
}

}  // namespace
}  // namespace Zyn_dstruct
