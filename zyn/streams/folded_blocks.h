// zyn/streams/folded_blocks.h
//
// Reading a stream in blocks for a case-insensitive search, shared by
// ReadStreamUntil and ReadStreamUntilTagList. Internal to the streams unit.

#ifndef ZYN_STREAMS_FOLDED_BLOCKS_H_
#define ZYN_STREAMS_FOLDED_BLOCKS_H_

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "zyn/platform/stream.h"

namespace Zyn_streams::streams_detail {

inline constexpr int kReadBlock = 256;

inline char16_t FoldAscii(char16_t c) { return (c >= u'A' && c <= u'Z') ? c + 32 : c; }

// Reads the next block of at most kReadBlock bytes, appends them widened to
// `text` and ASCII-folded to `folded`, and gives the number read.
inline int ReadFoldedBlock(zyn::platform::TStream& stream, std::u16string& text,
                           std::u16string& folded) {
  std::array<std::uint8_t, kReadBlock> block;
  const int n = std::max(stream.Read(block.data(), kReadBlock), 0);
  text.append(block.begin(), block.begin() + n);
  for (int i = 0; i < n; ++i) folded.push_back(FoldAscii(block[static_cast<std::size_t>(i)]));
  return n;
}

// Where a search for a text of `length` has to start in `folded` after a
// block was added behind `searched` characters: only a hit that reaches into
// the new block can be new.
inline std::size_t NewHitsFrom(std::size_t searched, std::size_t length) {
  return searched >= length ? searched - length + 1 : 0;
}

}  // namespace Zyn_streams::streams_detail

#endif  // ZYN_STREAMS_FOLDED_BLOCKS_H_
