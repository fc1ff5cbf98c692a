// fuzz/fuzz_support.h
//
// What the fuzz targets share: a check that ends the run with a report, the
// input taken as text, and scratch files that go when the process ends.

#ifndef ZYN_FUZZ_FUZZ_SUPPORT_H_
#define ZYN_FUZZ_FUZZ_SUPPORT_H_

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "zyn/platform/text.h"

namespace zyn::fuzz {

// A failed expectation is a finding: the fuzzer reports the input.
inline void Check(bool condition) {
  if (!condition) __builtin_trap();
}

// The input as text: UTF-8 (any bytes, by the lossless rule) when the first
// byte is even, else the bytes behind it as UTF-16 code units, so that lone
// surrogates and every code unit are reached too.
inline std::u16string Text(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || (data[0] & 1) == 0)
    return zyn::platform::FromUTF8({reinterpret_cast<const char*>(data), size});
  std::u16string units((size - 1) / 2, u'\0');
  std::memcpy(units.data(), data + 1, units.size() * 2);
  return units;
}

// Two scratch files of this process, removed when it ends.
struct ScratchFiles {
  explicit ScratchFiles(const std::string& target)
      : in("/tmp/fuzz_" + target + "_" + std::to_string(getpid()) + ".in"),
        out("/tmp/fuzz_" + target + "_" + std::to_string(getpid()) + ".out") {}
  ~ScratchFiles() {
    std::remove(in.c_str());
    std::remove(out.c_str());
  }
  std::string in, out;
};

}  // namespace zyn::fuzz

#endif  // ZYN_FUZZ_FUZZ_SUPPORT_H_
