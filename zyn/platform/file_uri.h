// zyn/platform/file_uri.h
//
// Local file names out of the file:// URIs that desktop services hand back,
// such as the save dialog of xdg-desktop-portal.

#ifndef ZYN_PLATFORM_FILE_URI_H_
#define ZYN_PLATFORM_FILE_URI_H_

#include <optional>
#include <string>
#include <string_view>

namespace zyn::platform {

// The local path a "file:" URI names, percent-decoded byte for byte:
// "file:///tmp/a%20b" gives "/tmp/a b". The scheme is matched without regard
// to case; the host must be empty or "localhost". Any other URI, a path that
// is not absolute, a '%' without two hex digits, or an escaped NUL gives
// nothing, since none of them names a file here.
std::optional<std::string> FilePathFromURI(std::string_view uri);

}  // namespace zyn::platform

#endif  // ZYN_PLATFORM_FILE_URI_H_
