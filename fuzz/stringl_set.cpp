// StringContains and StringContainsOtherThan on arbitrary text and sets,
// checked against the plain form of the set rule: replacement passes over a
// copy of the set until a pass replaces nothing.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "zyn/stringl/stringl.h"

namespace {

std::u16string Range(char16_t first, char16_t last) {
  std::u16string r;
  for (char16_t c = first; c <= last; ++c) r.push_back(c);
  return r;
}

std::u16string ExpandByPasses(std::u16string set) {
  const std::pair<std::u16string_view, std::u16string> tokens[] = {{u"//dig", Range(u'0', u'9')},
                                                                   {u"//lc", Range(u'a', u'z')},
                                                                   {u"//uc", Range(u'A', u'Z')},
                                                                   {u"//31dwn", Range(0, 31)},
                                                                   {u"//128up", Range(128, 255)}};
  for (bool replaced = true; replaced;) {
    replaced = false;
    for (const auto& [name, expansion] : tokens) {
      const std::size_t at = set.find(name);
      if (at == std::u16string::npos) continue;
      set.replace(at, name.size(), expansion);
      replaced = true;
    }
  }
  return set;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Bytes become code units, 0xFF a wide one; the first 0xFE splits text from set.
  std::u16string s, set;
  std::u16string* into = &s;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0xFE && into == &s) {
      into = &set;
    } else {
      into->push_back(data[i] == 0xFF ? char16_t{0x100} : char16_t{data[i]});
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
  return 0;
}
