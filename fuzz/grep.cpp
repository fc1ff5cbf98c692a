// Compiles an arbitrary pattern and matches it against a short arbitrary
// text. Input: one byte of options (bit 0 ignores case, bits 1 to 7 the
// search start), then the pattern in UTF-8 up to the first line feed, then
// the text. The text is cut by the number of multipliers in the pattern, so
// that the lazy backtracking stays bounded.
//
// Two checks beyond the sanitizers: a search repeated on the same text gives
// the same result, and a pattern behind an empty group "()", which passes at
// every position, gives the same match as the pattern alone, a lone `*`
// token aside (this holds the skipping of hopeless attempts to its promise).

#include "zyn/stringl/grep.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "zyn/platform/text.h"

namespace {

using Zyn_stringl::TGrep;

// The multipliers taMult0, taMult1 and taOpti close the list of token kinds.
int Multipliers(const TGrep& grep) {
  int count = 0;
  for (int t = 1; t <= grep.NrOfRegExpTokens(); ++t)
    count += grep.GetRegExpToken(t).Action >= Zyn_stringl::taMult0;
  return count;
}

void Compile(TGrep& grep, std::u16string_view pattern, bool ignore_case, int search_start) {
  grep.SetStopOnError(false);
  grep.SetIgnoreCase(ignore_case);
  grep.SetRegExp(pattern);
  grep.SetSearchStartPos(search_start);
}

std::size_t TextLimit(int multipliers) {
  if (multipliers <= 2) return 64;
  if (multipliers <= 4) return 24;
  if (multipliers <= 8) return 12;
  return 3;
}

struct Outcome {
  bool found;
  int start, match_start, match_end;
  bool operator==(const Outcome&) const = default;
};

Outcome Search(TGrep& grep, std::u16string_view text) {
  int start = -1;
  const bool found = grep.MatchString(text, start);
  return {found, start, grep.MatchStartPos(), found ? grep.MatchEndPos() : 0};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const bool ignore_case = (data[0] & 1) != 0;
  // Starts from -2 to 123, and two far below the text.
  const int code = data[0] >> 1;
  const int search_start = code == 127 ? INT_MIN : code == 126 ? -100 : code - 2;
  const std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
  const std::size_t split = std::min(rest.find('\n'), rest.size());
  const std::u16string pattern = zyn::platform::FromUTF8(rest.substr(0, split));
  std::u16string text = zyn::platform::FromUTF8(rest.substr(std::min(split + 1, rest.size())));

  TGrep grep;
  Compile(grep, pattern, ignore_case, search_start);
  (void)grep.RegExpToken(search_start);
  text.resize(std::min(text.size(), TextLimit(Multipliers(grep))));

  const Outcome first = Search(grep, text);
  if (!(Search(grep, text) == first)) std::abort();

  const bool lone_star =
      grep.NrOfRegExpTokens() == 1 && grep.GetRegExpToken(1).Action == Zyn_stringl::taMult0;
  const bool comparable = !pattern.empty() && pattern[0] != u'(' && pattern[0] != u'^' &&
                          !lone_star && search_start <= static_cast<int>(text.size()) + 1;
  if (comparable) {
    TGrep shifted;
    Compile(shifted, u"()" + pattern, ignore_case, search_start);
    if (shifted.LastError() == grep.LastError() &&
        shifted.NrOfRegExpTokens() == grep.NrOfRegExpTokens() + 1) {
      const Outcome other = Search(shifted, text);
      if (other.found != first.found) std::abort();
      if (first.found && (other.match_end != first.match_end ||
                          shifted.GetRegExpToken(2).ValidFrom != first.start)) {
        std::abort();
      }
    }
  }
  return 0;
}
