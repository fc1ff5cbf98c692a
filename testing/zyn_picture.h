// testing/zyn_picture.h
//
// Pixel pictures for drawing tests: an expected picture is written as rows
// of text, one character per pixel, and compared with a whole bitmap.

#ifndef ZYN_TESTING_ZYN_PICTURE_H_
#define ZYN_TESTING_ZYN_PICTURE_H_

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/platform/canvas.h"

namespace zyn::testing {

// An expected picture: `rows` placed with their first character on pixel
// x, y; every pixel outside them must be the colour of '.'. `colors` maps the
// characters to colours.
struct Picture {
  int x = 0;
  int y = 0;
  std::vector<std::string_view> rows;
};

// The bitmap as rows of text, the characters chosen by `colors`; a colour
// not among them shows as '?'.
inline std::string Render(const zyn::platform::TBitmap& bitmap,
                          const std::map<char, zyn::platform::TColor>& colors) {
  std::string out;
  for (int y = 0; y < bitmap.Height(); ++y) {
    for (zyn::platform::TColor c : bitmap.ScanLine(y)) {
      char ch = '?';
      for (const auto& [k, v] : colors) {
        if (v == c) ch = k;
      }
      out += ch;
    }
    out += '\n';
  }
  return out;
}

// Expects the bitmap to show exactly `picture` on a background of '.'.
inline ::testing::AssertionResult ShowsPicture(
    const zyn::platform::TBitmap& bitmap, const Picture& picture,
    const std::map<char, zyn::platform::TColor>& colors) {
  std::string want;
  for (int y = 0; y < bitmap.Height(); ++y) {
    for (int x = 0; x < bitmap.Width(); ++x) {
      char ch = '.';
      const int r = y - picture.y;
      const int c = x - picture.x;
      if (r >= 0 && r < static_cast<int>(picture.rows.size()) && c >= 0 &&
          c < static_cast<int>(picture.rows[r].size())) {
        ch = picture.rows[r][c];
      }
      want += ch;
    }
    want += '\n';
  }
  const std::string got = Render(bitmap, colors);
  if (got == want) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "expected:\n" << want << "drawn:\n" << got;
}

}  // namespace zyn::testing

#endif  // ZYN_TESTING_ZYN_PICTURE_H_
