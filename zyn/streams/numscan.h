// zyn/streams/numscan.h
//
// Numbers in text form read from a TStream at its position, byte by byte.
// The byte that ends a number is consumed: there is no push-back. Bytes are
// folded to upper case (ASCII) first, so "e" counts as "E". Nothing raises.

#ifndef ZYN_STREAMS_NUMSCAN_H_
#define ZYN_STREAMS_NUMSCAN_H_

#include "zyn/platform/stream.h"

namespace Zyn_streams {

using zyn::platform::TStream;

// Skips bytes 32, 10 and 13 (not tabs), takes an optional sign and then
// decimal digits, in 32 bits with wrap-around on overflow. No digit gives 0.
int ScanStreamDecimal(TStream& stream);

// Reads a floating-point number: white space (9, 10, 13, 32) in front, an
// optional sign, digits with a decimal separator by `decMode` (1 ".", 2 ",",
// 3 either, any other none) and, if `allowExp`, an exponent. A byte that
// can't continue the number ends it; a form that can't be a number (a sign or
// "E" with nothing behind it, a second separator) gives 0.0. The result is
// limited to plus or minus uc_MaxDouble, and exponent digits beyond a size of
// 4200 are read but no longer make the number larger.
double ScanStreamFPNum(TStream& stream, bool allowExp, int decMode);

}  // namespace Zyn_streams

#endif  // ZYN_STREAMS_NUMSCAN_H_
