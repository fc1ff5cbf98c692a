// testing/zyn_testing.h
//
// Small helpers shared by the library's tests: readable traces of UTF-16
// text, scratch directories that clean up after themselves, and reading a
// file back as bytes.

#ifndef ZYN_TESTING_ZYN_TESTING_H_
#define ZYN_TESTING_ZYN_TESTING_H_

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "zyn/platform/text.h"

namespace zyn::testing {

// UTF-8 form of a UTF-16 text, for SCOPED_TRACE and failure messages.
inline std::string Utf8(std::u16string_view s) { return zyn::platform::ToUTF8(s); }

// A fresh directory below the system's temporary directory, removed with
// everything in it when the object goes.
class TempDir {
 public:
  TempDir() {
    std::random_device rd;
    path_ = std::filesystem::temp_directory_path() /
            ("zyn_test_" + std::to_string(rd()) + std::to_string(rd()));
    std::filesystem::create_directories(path_);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

// The whole content of a file as bytes; empty if it can't be read.
inline std::string ReadFileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Writes `bytes` to a file, replacing it.
inline void WriteFileBytes(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace zyn::testing

#endif  // ZYN_TESTING_ZYN_TESTING_H_
