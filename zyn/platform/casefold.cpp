#include "zyn/platform/casefold.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace zyn::platform {
namespace {

struct CaseMapping {
  char16_t from;
  char16_t to;
};

#include "zyn/platform/casemap_table.inc"

template <std::size_t N>
constexpr std::array<char16_t, 256> Latin1Table(const CaseMapping (&mappings)[N]) {
  std::array<char16_t, 256> table{};
  for (std::size_t c = 0; c < 256; ++c) table[c] = static_cast<char16_t>(c);
  for (const CaseMapping& m : mappings) {
    if (m.from < 256) table[m.from] = m.to;
  }
  return table;
}

// Most text is Latin-1; those units skip the binary search.
constexpr auto kUpperLatin1 = Latin1Table(kUpperMappings);
constexpr auto kLowerLatin1 = Latin1Table(kLowerMappings);

template <std::size_t N>
char16_t Lookup(const CaseMapping (&mappings)[N], const std::array<char16_t, 256>& latin1,
                char16_t c) {
  if (c < 256) return latin1[c];
  const auto* end = std::end(mappings);
  const auto* it = std::lower_bound(std::begin(mappings), end, c,
                                    [](const CaseMapping& m, char16_t v) { return m.from < v; });
  return (it != end && it->from == c) ? it->to : c;
}

template <typename Fold>
std::u16string Transform(std::u16string_view s, Fold fold) {
  std::u16string out(s);
  for (char16_t& c : out) c = fold(c);
  return out;
}

int CompareFolded(std::u16string_view a, std::u16string_view b) {
  const std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    const char16_t ca = AnsiUpCaseChar(a[i]);
    const char16_t cb = AnsiUpCaseChar(b[i]);
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

}  // namespace

std::u16string UpperCase(std::u16string_view s) { return Transform(s, UpCase); }
std::u16string LowerCase(std::u16string_view s) { return Transform(s, LowCase); }

char16_t AnsiUpCaseChar(char16_t c) { return Lookup(kUpperMappings, kUpperLatin1, c); }
char16_t AnsiLowCaseChar(char16_t c) { return Lookup(kLowerMappings, kLowerLatin1, c); }

std::u16string AnsiUpperCase(std::u16string_view s) { return Transform(s, AnsiUpCaseChar); }
std::u16string AnsiLowerCase(std::u16string_view s) { return Transform(s, AnsiLowCaseChar); }

int AnsiStrIComp(std::u16string_view a, std::u16string_view b) { return CompareFolded(a, b); }

int AnsiStrLIComp(std::u16string_view a, std::u16string_view b, std::size_t max_len) {
  return CompareFolded(a.substr(0, std::min(a.size(), max_len)),
                       b.substr(0, std::min(b.size(), max_len)));
}

}  // namespace zyn::platform
