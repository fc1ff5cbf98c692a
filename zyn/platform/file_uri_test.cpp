#include "zyn/platform/file_uri.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace zyn::platform {
namespace {

TEST(FileUriTest, LocalPathsAndWhatIsRefused) {
  struct Case {
    std::string_view uri;
    std::optional<std::string> path;
  };
  const Case cases[] = {
      {"file:///tmp/a%20b.txt", "/tmp/a b.txt"},
      {"FILE://localhost/x/%c3%A4", "/x/\xC3\xA4"},
      {"file:///", "/"},
      {"file:///a%2Fb%25", "/a/b%"},
      {"file:///bytes%FF%80", "/bytes\xFF\x80"},  // not UTF-8: kept as bytes
      {"file:///a?b#c", "/a?b#c"},
      {"file://otherhost/x", std::nullopt},
      {"file://localhostx/x", std::nullopt},
      {"file:/x", std::nullopt},
      {"file://", std::nullopt},
      {"https:///x", std::nullopt},
      {"file:///x%2", std::nullopt},
      {"file:///x%g0", std::nullopt},
      {"file:///x%00y", std::nullopt},
      {std::string_view("file:///x\0y", 11), std::nullopt},
      {"", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.uri));
    EXPECT_EQ(FilePathFromURI(c.uri), c.path);
  }
}

}  // namespace
}  // namespace zyn::platform
