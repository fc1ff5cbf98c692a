// Feeds arbitrary text and character sets to the set-reading and surgery
// functions of Zyn_stringl. The set expansion is checked against the plain
// form of its rule: replacement passes over a copy of the set, repeated until
// a pass replaces nothing.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "zyn/stringl/stringl.h"

namespace {

std::u16string ExpandByPasses(std::u16string set) {
  std::u16string digits = u"0123456789", lower, upper, low_codes, high_codes;
  for (char16_t c = u'a'; c <= u'z'; ++c) lower.push_back(c);
  for (char16_t c = u'A'; c <= u'Z'; ++c) upper.push_back(c);
  for (char16_t c = 0; c < 32; ++c) low_codes.push_back(c);
  for (char16_t c = 128; c < 256; ++c) high_codes.push_back(c);
  const std::pair<std::u16string_view, std::u16string*> tokens[] = {{u"//dig", &digits},
                                                                    {u"//lc", &lower},
                                                                    {u"//uc", &upper},
                                                                    {u"//31dwn", &low_codes},
                                                                    {u"//128up", &high_codes}};
  for (bool replaced = true; replaced;) {
    replaced = false;
    for (const auto& [name, expansion] : tokens) {
      const std::size_t at = set.find(name);
      if (at == std::u16string::npos) continue;
      set.replace(at, name.size(), *expansion);
      replaced = true;
    }
  }
  return set;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Bytes become code units; 0xFF marks a wide character, the byte 0xFE
  // splits the text from the set.
  std::u16string s, set;
  std::u16string* into = &s;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0xFE && into == &s) {
      into = &set;
    } else if (data[i] == 0xFF) {
      into->push_back(0x100);
    } else {
      into->push_back(data[i]);
    }
  }
  const std::u16string expanded = ExpandByPasses(set);
  bool contains = false, other = false;
  for (char16_t c : s) {
    const bool member = expanded.find(c) != std::u16string::npos;
    contains |= member;
    other |= !member;
  }
  if (Zyn_stringl::StringContains(s, set) != contains) std::abort();
  if (Zyn_stringl::StringContainsOtherThan(s, set) != other) std::abort();

  const std::u16string_view sub = std::u16string_view(set).substr(0, 3);
  const std::u16string replaced = Zyn_stringl::ReplaceStringInString(s, sub, set, true);
  const int count = Zyn_stringl::CountStringInString(sub, s, false);
  if (!sub.empty() && replaced.size() != s.size() + count * (set.size() - sub.size())) std::abort();
  const int last = Zyn_stringl::PosLast(sub, s);
  if (last < 0 || static_cast<std::size_t>(last) > s.size()) std::abort();
  (void)Zyn_stringl::ExpandDiphthongs(s);
  (void)Zyn_stringl::CapitalizeString(s);
  (void)Zyn_stringl::ChangeCase(s);
  (void)Zyn_stringl::RemoveMultiChars(s, sub.empty() ? u' ' : sub[0]);
  (void)Zyn_stringl::StripTrailingChars(sub.empty() ? u' ' : sub[0], s);
  (void)Zyn_stringl::EqualAnsiStrings(s, set);
  return 0;
}
