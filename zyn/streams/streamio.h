// zyn/streams/streamio.h
//
// Typed values, text and lines on any TStream, at its current position.
// Text on a stream is one byte per character, the low 8 bits of the code,
// with no code page; numbers are their raw little-endian bytes. Writers let
// the stream's exceptions through; readers raise nothing of their own.

#ifndef ZYN_STREAMS_STREAMIO_H_
#define ZYN_STREAMS_STREAMIO_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "zyn/platform/stream.h"

namespace Zyn_streams {

using zyn::platform::TStream;

// Writes the low byte of each character, in blocks of at most 4096 bytes;
// the empty string writes nothing.
void WriteStringStream(TStream& stream, std::u16string_view s);
// WriteStringStream, then the bytes 13 and 10.
void WriteLnStream(TStream& stream, std::u16string_view s);
// 4 bytes, two's complement.
void WriteLongintToStream(TStream& stream, std::int32_t value);
// 4 bytes, IEEE 754 single.
void WriteSingleToStream(TStream& stream, float value);
// 8 bytes, IEEE 754 double.
void WriteDoubleToStream(TStream& stream, double value);
// The same 8 bytes as WriteDoubleToStream: Extended is a double here.
void WriteExtendedToStream(TStream& stream, double value);

// Each reads its bytes with one ReadBuffer. `eof` is false on success; if
// ReadBuffer raises, `eof` is true and the value is made of the bytes that
// were there, the missing ones 0.
std::int32_t ReadLongintFromStream(TStream& stream, bool& eof);
float ReadSingleFromStream(TStream& stream, bool& eof);
double ReadDoubleFromStream(TStream& stream, bool& eof);
double ReadExtendedFromStream(TStream& stream, bool& eof);

// One line, read byte by byte. `lineEnd` says what ends it: 0 byte 10, 1
// byte 13, 2 either, 3 a 13 right behind a 10, 4 a 10 right behind a 13, any
// other value nothing. When a line end was met, at most two trailing 10/13
// bytes go from the line. `eof` is true when the stream ended the line; a
// stream that ends right behind a line end gives that line with `eof` false
// and then "" with `eof` true.
std::u16string ReadLnStream(TStream& stream, bool& eof, int lineEnd);

// Everything from the position to the end, one character per byte.
std::u16string StreamAsString(TStream& stream);

// Reads up to and including the first byte `value`: true, the position
// behind it. False at the end of the stream.
bool FindInStream(TStream& stream, std::uint8_t value);

// Reads to the end and counts the bytes 10; a last line without a line feed
// doesn't count. The position stays at the end.
int CountLinesInStream(TStream& stream);

// Reads blocks of 256 bytes until `text` turns up, compared with ASCII case
// folding. On a hit: `status` 0, the result is everything up to and
// including the hit with its case as in the stream, and the position stands
// right behind the hit. Without one (also for an empty `text`): `status` -1,
// the result is everything read, and the position is the end of the stream.
std::u16string ReadStreamUntil(TStream& stream, std::u16string_view text, int& status);

}  // namespace Zyn_streams

#endif  // ZYN_STREAMS_STREAMIO_H_
