#include "zyn/stringl/stringl.h"

#include <algorithm>
#include <cstddef>

#include "zyn/platform/casefold.h"

namespace Zyn_stringl {

constinit CharSet WordSeps = kDefaultWordSeps;

namespace {

using zyn::platform::UpCase;

constexpr char16_t kBlank = u' ';

int ToPos(std::size_t index) { return static_cast<int>(index) + 1; }

// Index of the first occurrence of `sub` in `s` at or behind `from`, with or
// without ASCII case folding; npos if none. `sub` must not be empty.
std::size_t Find(std::u16string_view s, std::u16string_view sub, std::size_t from, bool fold_case) {
  if (!fold_case) return s.find(sub, from);
  if (sub.size() > s.size()) return std::u16string_view::npos;
  const char16_t first = UpCase(sub[0]);
  for (std::size_t i = from; i + sub.size() <= s.size(); ++i) {
    if (UpCase(s[i]) != first) continue;
    std::size_t k = 1;
    while (k < sub.size() && UpCase(s[i + k]) == UpCase(sub[k])) ++k;
    if (k == sub.size()) return i;
  }
  return std::u16string_view::npos;
}

// One range token of a character set and the codes it stands for.
struct SetToken {
  std::u16string_view name;
  char16_t first;
  char16_t last;
};
constexpr SetToken kSetTokens[] = {
    {u"//dig", u'0', u'9'}, {u"//lc", u'a', u'z'},  {u"//uc", u'A', u'Z'},
    {u"//31dwn", 0, 31},    {u"//128up", 128, 255},
};

// The members of `set` below 256, with the tokens expanded. No expansion
// contains "/" and the tokens differ right behind their "//", so occurrences
// can neither overlap nor be made by an expansion: expanding every occurrence
// in one scan gives what repeated replacement passes give.
CharSet ExpandSet(std::u16string_view set) {
  CharSet members;
  std::size_t i = 0;
  while (i < set.size()) {
    const SetToken* token = nullptr;
    if (set[i] == u'/') {
      for (const SetToken& t : kSetTokens) {
        if (set.substr(i).starts_with(t.name)) token = &t;
      }
    }
    if (token != nullptr) {
      for (unsigned c = token->first; c <= token->last; ++c)
        members.Include(static_cast<char16_t>(c));
      i += token->name.size();
    } else {
      members.Include(set[i]);
      ++i;
    }
  }
  return members;
}

// The walk of StringContains (`wanted` true) and StringContainsOtherThan
// (`wanted` false): true at the first character whose membership is `wanted`.
// A character above 255 is a member if it stands in `set` literally, as no
// token stands for one; `set` is searched only if it holds such a character.
bool ContainsMembership(std::u16string_view s, std::u16string_view set, bool wanted) {
  const CharSet members = ExpandSet(set);
  const bool set_has_wide = std::any_of(set.begin(), set.end(), [](char16_t c) { return c > 255; });
  for (char16_t c : s) {
    bool member;
    if (c < 256) {
      member = members.Contains(c);
    } else {
      member = set_has_wide && set.find(c) != std::u16string_view::npos;
    }
    if (member == wanted) return true;
  }
  return false;
}

std::u16string_view UpToNul(std::u16string_view s) { return s.substr(0, s.find(char16_t{0})); }

std::size_t CountLeading(std::u16string_view s, char16_t c) {
  std::size_t n = 0;
  while (n < s.size() && s[n] == c) ++n;
  return n;
}

std::size_t CountTrailing(std::u16string_view s, char16_t c) {
  std::size_t n = 0;
  while (n < s.size() && s[s.size() - 1 - n] == c) ++n;
  return n;
}

// Copies of `s` with each character mapped by `f`.
template <typename F>
std::u16string MapChars(std::u16string_view s, F f) {
  std::u16string r(s);
  for (char16_t& c : r) c = f(c);
  return r;
}

// Copies of `s` without the characters for which `drop` holds.
template <typename F>
std::u16string DropChars(std::u16string_view s, F drop) {
  std::u16string r;
  r.reserve(s.size() - static_cast<std::size_t>(std::count_if(s.begin(), s.end(), drop)));
  for (char16_t c : s) {
    if (!drop(c)) r.push_back(c);
  }
  return r;
}

constexpr bool IsLowerAZ(char16_t c) { return c >= u'a' && c <= u'z'; }

// The 17 punctuation characters allowed in an 8.3 file name besides A-Z, a-z, 0-9.
constexpr CharSet kFN83Chars = [] {
  CharSet set = {u'!', u'#', u'$', u'%', u'&', u'\'', u'(', u')', u'-',
                 u'.', u'@', u'^', u'_', u'`', u'{',  u'}', u'~'};
  for (char16_t c = u'0'; c <= u'9'; ++c) set.Include(c);
  for (char16_t c = u'A'; c <= u'Z'; ++c) set.Include(c);
  for (char16_t c = u'a'; c <= u'z'; ++c) set.Include(c);
  return set;
}();

}  // namespace

// --- Searching and counting -----------------------------------------------

int PosLast(std::u16string_view sub, std::u16string_view s) {
  if (sub.empty()) return 0;
  int last = 0;
  for (std::size_t i = s.find(sub); i != std::u16string_view::npos;
       i = s.find(sub, i + sub.size())) {
    last = ToPos(i);
  }
  return last;
}

int CountStringInString(std::u16string_view sub, std::u16string_view s, bool caseSensitive) {
  if (sub.empty()) return 0;
  int count = 0;
  for (std::size_t i = Find(s, sub, 0, !caseSensitive); i != std::u16string_view::npos;
       i = Find(s, sub, i + sub.size(), !caseSensitive)) {
    ++count;
  }
  return count;
}

int CountCharInString(char16_t c, std::u16string_view s, bool caseSensitive) {
  if (caseSensitive) return static_cast<int>(std::count(s.begin(), s.end(), c));
  const char16_t folded = UpCase(c);
  return static_cast<int>(
      std::count_if(s.begin(), s.end(), [folded](char16_t x) { return UpCase(x) == folded; }));
}

int FindFirstNonBlank(std::u16string_view s) {
  const std::size_t i = s.find_first_not_of(kBlank);
  return i == std::u16string_view::npos ? 0 : ToPos(i);
}

int FindFirstDigit(std::u16string_view s) {
  const auto it = std::find_if(s.begin(), s.end(), IsDigit);
  return it == s.end() ? 0 : ToPos(static_cast<std::size_t>(it - s.begin()));
}

bool TestAllChar(std::u16string_view s, char16_t c) {
  return !s.empty() && CountLeading(s, c) == s.size();
}

bool StringContains(std::u16string_view s, std::u16string_view set) {
  return ContainsMembership(s, set, true);
}

bool StringContainsOtherThan(std::u16string_view s, std::u16string_view set) {
  return ContainsMembership(s, set, false);
}

bool EqualAnsiStrings(std::u16string_view a, std::u16string_view b) {
  return zyn::platform::AnsiStrIComp(UpToNul(a), UpToNul(b)) == 0;
}

// --- Stripping --------------------------------------------------------------

std::u16string StripLTBlanks(std::u16string_view s) {
  const std::size_t lead = CountLeading(s, kBlank);
  if (lead == s.size()) return {};
  return std::u16string(s.substr(lead, s.size() - lead - CountTrailing(s, kBlank)));
}

std::u16string StripLeadingBlanks(std::u16string_view s) {
  const std::size_t lead = CountLeading(s, kBlank);
  if (lead == s.size() && !s.empty()) return u" ";
  return std::u16string(s.substr(lead));
}

std::u16string StripTrailingBlanks(std::u16string_view s) {
  const std::size_t trail = CountTrailing(s, kBlank);
  if (trail == s.size() && !s.empty()) return u" ";
  return std::u16string(s.substr(0, s.size() - trail));
}

std::u16string StripLeadingChars(char16_t c, std::u16string_view s) {
  return std::u16string(s.substr(CountLeading(s, c)));
}

std::u16string StripTrailingChars(char16_t c, std::u16string_view s) {
  const std::size_t trail = CountTrailing(s, c);
  const std::size_t keep = s.size() - trail;
  return std::u16string(s.substr(0, (keep == 0 && !s.empty()) ? 1 : keep));
}

// --- Ensuring ----------------------------------------------------------------

std::u16string EnsureTrailingBkSlash(std::u16string_view s) { return EnsureTrailingChar(u'\\', s); }

std::u16string EnsureTrailingChar(char16_t c, std::u16string_view s) {
  if (s.empty() || s.back() == c) return std::u16string(s);
  std::u16string r;
  r.reserve(s.size() + 1);
  r.append(s);
  r.push_back(c);
  return r;
}

std::u16string EnsureLeadingChar(char16_t c, std::u16string_view s) {
  if (s.empty() || s.front() == c) return std::u16string(s);
  std::u16string r;
  r.reserve(s.size() + 1);
  r.push_back(c);
  r.append(s);
  return r;
}

// --- Replacing and removing ------------------------------------------------

std::u16string ReplaceCharInString(std::u16string_view s, char16_t oldChar, char16_t newChar) {
  return MapChars(s, [=](char16_t c) { return c == oldChar ? newChar : c; });
}

std::u16string ReplaceStringInString(std::u16string_view s, std::u16string_view oldStr,
                                     std::u16string_view newStr, bool ignoreCase) {
  if (oldStr.empty()) return std::u16string(s);
  const auto hits = static_cast<std::size_t>(CountStringInString(oldStr, s, !ignoreCase));
  if (hits == 0) return std::u16string(s);
  std::u16string r;
  r.reserve(s.size() - hits * oldStr.size() + hits * newStr.size());
  std::size_t done = 0;
  for (std::size_t hit = Find(s, oldStr, 0, ignoreCase); hit != std::u16string_view::npos;
       hit = Find(s, oldStr, done, ignoreCase)) {
    r.append(s.substr(done, hit - done));
    r.append(newStr);
    done = hit + oldStr.size();
  }
  r.append(s.substr(done));
  return r;
}

std::u16string RemoveCharInString(std::u16string_view s, char16_t c) {
  return DropChars(s, [c](char16_t x) { return x == c; });
}

std::u16string RemoveMultiChars(std::u16string_view s, char16_t c) {
  auto repeated = [&](std::size_t i) { return i > 0 && s[i] == c && s[i - 1] == c; };
  std::size_t drop = 0;
  for (std::size_t i = 0; i < s.size(); ++i) drop += repeated(i) ? 1 : 0;
  std::u16string r;
  r.reserve(s.size() - drop);
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (repeated(i)) continue;
    r.push_back(s[i]);
  }
  return r;
}

std::u16string RemoveControlChars(std::u16string_view s) {
  return DropChars(s, [](char16_t c) { return c < 32; });
}

// --- Padding and building ----------------------------------------------------

std::u16string LeftString(std::u16string_view s, std::uint8_t width) {
  if (s.size() >= width) return std::u16string(s.substr(0, width));
  std::u16string r;
  r.reserve(width);
  r.append(s);
  r.resize(width, kBlank);
  return r;
}

std::u16string RightString(std::u16string_view s, std::uint8_t width) {
  if (s.size() >= width) return std::u16string(s.substr(0, width));
  std::u16string r;
  r.reserve(width);
  r.assign(width - s.size(), kBlank);
  r.append(s);
  return r;
}

std::u16string CenterString(std::u16string_view s, std::uint8_t width) {
  if (s.size() >= width) return std::u16string(s.substr(0, width));
  std::u16string r;
  r.reserve(width);
  r.assign((width - s.size()) / 2, kBlank);
  r.append(s);
  r.resize(width, kBlank);
  return r;
}

std::u16string AbbrevString(std::u16string_view s, int maxLen) {
  if (maxLen >= 0 && s.size() <= static_cast<std::size_t>(maxLen)) return std::u16string(s);
  const std::size_t keep = maxLen >= 3 ? static_cast<std::size_t>(maxLen) - 2 : 0;
  std::u16string r;
  r.reserve(keep + 2);
  r.append(s.substr(0, keep));
  r.append(u"..");
  return r;
}

std::u16string MultiChar(char16_t c, int count) {
  return std::u16string(static_cast<std::size_t>(std::clamp(count, 1, 255)), c);
}

// --- Case and transliteration ---------------------------------------------

std::u16string ChangeCase(std::u16string_view s) {
  return MapChars(s, [](char16_t c) {
    const char16_t upper = zyn::platform::AnsiUpCaseChar(c);
    return upper == c ? zyn::platform::AnsiLowCaseChar(c) : upper;
  });
}

std::u16string CapitalizeString(std::u16string_view s) {
  bool word_start = true;
  return MapChars(s, [&word_start](char16_t c) {
    if (IsLetter(c) || c >= 128) {
      if (word_start) c = UpCase(c);
      word_start = false;
    } else {
      word_start = !IsDigit(c);
    }
    return c;
  });
}

std::u16string ReverseString(std::u16string_view s) { return std::u16string(s.rbegin(), s.rend()); }

std::u16string ExpandDiphthongs(std::u16string_view s) {
  std::u16string r;
  r.reserve(s.size() + static_cast<std::size_t>(std::count_if(
                           s.begin(), s.end(), [](char16_t c) { return IsUmlaut(c); })));
  for (std::size_t i = 0; i < s.size(); ++i) {
    const char16_t c = s[i];
    const bool lower_follows = i + 1 < s.size() && IsLowerAZ(s[i + 1]);
    switch (c) {
      case 0xE4:
        r.append(u"ae");
        break;
      case 0xF6:
        r.append(u"oe");
        break;
      case 0xFC:
        r.append(u"ue");
        break;
      case 0xDF:
        r.append(u"ss");
        break;
      case 0xB5:
        r.push_back(u'u');
        break;
      case 0xC4:
        r.append(lower_follows ? u"Ae" : u"AE");
        break;
      case 0xD6:
        r.append(lower_follows ? u"Oe" : u"OE");
        break;
      case 0xDC:
        r.append(lower_follows ? u"Ue" : u"UE");
        break;
      default:
        r.push_back(c);
    }
  }
  return r;
}

std::u16string ReduceStringToAZ09(std::u16string_view s) {
  return MapChars(s, [](char16_t c) { return IsDigitLetter(c) ? c : u'_'; });
}

std::u16string ReduceStringToFN83CompliantChars(std::u16string_view s) {
  return MapChars(s, [](char16_t c) { return kFN83Chars.Contains(c) ? c : u'_'; });
}

}  // namespace Zyn_stringl
