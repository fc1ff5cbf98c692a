// zyn/dstruct/checksums.h
//
// Integrity values and one text codec: CRC-16 in two modes, CRC-32 (IEEE
// 802.3), SHA-1 and the library's own ASCII85 variant. Plain functions with
// no state beyond their arguments; where the processor offers carry-less
// multiplication or the SHA extensions they are used, with the same results.

#ifndef ZYN_DSTRUCT_CHECKSUMS_H_
#define ZYN_DSTRUCT_CHECKSUMS_H_

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "zyn/base/zynbase.h"
#include "zyn/platform/stream.h"

namespace Zyn_dstruct {

// Selects only the initial value of the CRC-16.
enum TCRC16Mode : std::uint8_t { crcZModem = 0, crcCCITT = 1 };

// A SHA-1 digest, in the byte order of FIPS 180.
using TSHACode = std::array<std::uint8_t, 20>;

// One table step of the CRC-16 with generator 0x1021, most significant bit
// first: (crc << 8) ^ table[(crc >> 8) ^ b]. CalcNextCRC16(1, 0) == 0x1021.
std::uint16_t CalcNextCRC16(std::uint8_t b, std::uint16_t crc);

// CRC-16 over the first `count` bytes. Width 16, Poly 0x1021, RefIn/RefOut
// false, XorOut 0; Init 0x0000 (crcZModem, "XMODEM") or 0xFFFF (crcCCITT,
// "CCITT-FALSE"). Check ("123456789"): 0x31C3 / 0x29B1. A count of 0 or below
// gives the initial value; a count beyond the buffer is cut to its length.
std::uint16_t CRC16ofBuffer(std::span<const std::uint8_t> buffer, int count, TCRC16Mode mode);

// One table step of the reflected CRC-32 (polynomial 0xEDB88320):
// table[(crc ^ b) & 0xFF] ^ (crc >> 8). Applies neither the initial value nor
// the final inversion: start at 0xFFFFFFFF and invert at the end.
std::uint32_t CalcNextCRC32(std::uint8_t b, std::uint32_t crc);

// The CRC-32 of IEEE 802.3 (as zlib's crc32()) over the first `count` bytes.
// Check ("123456789"): 0xCBF43926. A count of 0 or below gives 0; a count
// beyond the buffer is cut to its length.
std::uint32_t CRC32ofBuffer(std::span<const std::uint8_t> buffer, int count);

// The CRC-32 of the whole file `FileName`, opened for reading only. Any
// failure (missing, unreadable) gives 0, as an empty file does; never throws.
std::uint32_t CalcCRC32ofFile(std::u16string_view FileName);

// SHA-1 of the UTF-16 code units of `s`, each as two bytes, low byte first,
// with no terminator.
TSHACode SHA1FromString(std::u16string_view s);

// SHA-1 of a byte sequence; the same digest the stream and file forms give.
TSHACode SHA1FromBytes(std::span<const std::uint8_t> bytes);

// SHA-1 of everything from the stream's position until Read delivers 0
// bytes, read in blocks of up to 1024 bytes. The position is not restored;
// the stream's exceptions pass through.
TSHACode SHA1FromStream(zyn::platform::TStream& Stream);

// SHA-1 of the whole file, read through a TFileStream in mode 0 (read only).
// A file that can't be opened raises the stream's EFOpenError.
TSHACode SHA1FromFile(std::u16string_view FileName);

// The 20 bytes from index 0 upward as 40 upper-case hexadecimal digits.
std::u16string SHA1DigestToHex(const TSHACode& digest);

// Writes `Source`, from its position to its end, to `Dest` in this library's
// ASCII85 variant: each group of 4 bytes as 5 digits "!".."u" (all zero: "z");
// a last group of n < 4 bytes as the n + 1 digits of its own value, not
// padded; then always "~>". No "<~", no line breaks. "abc" -> "+B>H~>",
// "A" -> "!b~>". The streams' exceptions pass through.
void EncodeASCII85(zyn::platform::TStream& Source, zyn::platform::TStream& Dest);

// Reads this library's ASCII85 from `Source` up to and including the group
// that holds a "~" (or to its end) and writes the bytes to `Dest`. CR and LF
// are skipped; any other character outside "!".."u" still counts as a digit.
// Returns 0 for clean input, else the code of the last bad character: -1
// outside the alphabet, -2 for a "z" inside a group. Never throws for bad
// input; the streams' exceptions pass through.
int DecodeASCII85(zyn::platform::TStream& Source, zyn::platform::TStream& Dest);

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_CHECKSUMS_H_
