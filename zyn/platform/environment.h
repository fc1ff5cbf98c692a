// zyn/platform/environment.h
//
// The process environment and the well-known directories of the system, as
// the file-system queries need them. Names and values are UTF-16; bytes that
// aren't valid UTF-8 travel as U+DC80..U+DCFF (see FromUTF8).

#ifndef ZYN_PLATFORM_ENVIRONMENT_H_
#define ZYN_PLATFORM_ENVIRONMENT_H_

#include <string>
#include <string_view>
#include <vector>

namespace zyn::platform {

// The environment block of the process: every entry as "NAME=value", in the
// order the process holds them.
std::vector<std::u16string> EnvironmentStrings();

// The value of the variable named exactly `name` (case-sensitive, as the
// system compares), or "" if it isn't set.
std::u16string EnvironmentValue(std::u16string_view name);

// The directory for temporary files with a trailing '/': $TMPDIR if it names
// an existing directory, else "/tmp/".
std::u16string TemporaryDirectory();

// The directory of the system's shared libraries, "/usr/lib", with no
// trailing separator.
std::u16string SystemLibraryDirectory();

// The directory the operating system is installed in: the root, "/".
std::u16string SystemRootDirectory();

// The whole content of a file as bytes, at most `max_bytes` of it; false if
// it can't be opened or read.
bool ReadSmallFile(std::u16string_view path, std::string& content,
                   std::size_t max_bytes = std::size_t{1} << 20);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_ENVIRONMENT_H_
