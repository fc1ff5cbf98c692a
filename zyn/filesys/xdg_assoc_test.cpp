#include "zyn/filesys/xdg_assoc.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "testing/zyn_testing.h"
#include "zyn/filesys/sysqueries.h"

namespace Zyn_filesys {
namespace {

namespace fs = std::filesystem;
using zyn::testing::Utf8;

TEST(GlobsTest, WeightCaseFlagsAndShapes) {
  const std::string globs =
      "# comment\n"
      "50:text/x-csrc:*.c\n"
      "50:text/x-c++src:*.C:cs\n"
      "50:text/plain:*.txt\n"
      "80:application/x-compressed-tar:*.tar.gz\n"
      "20:application/gzip:*.gz\n"
      "90:text/x-readme:README*\n"
      "95:image/x-weird:*.j?g\n"
      "60:image/jpeg:*.jpg:,cs\n"
      "70:image/x-jpeg:*.JPG\n"
      "bad:text/x:*.bad\n"
      "40::*.empty\n";
  // rank: twice the weight, plus one for a case-sensitive glob.
  struct Case {
    std::string_view ext;
    std::string_view type;
    int rank;
  };
  const Case cases[] = {{"c", "text/x-csrc", 100},
                        {"C", "text/x-c++src", 101},
                        {"TXT", "text/plain", 100},
                        {"gz", "application/gzip", 40},
                        {"jpg", "image/x-jpeg", 140},
                        {"Jpg", "image/x-jpeg", 140},
                        {"readme", "", -1},
                        {"bad", "", -1},
                        {"empty", "", -1},
                        {"", "", -1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.ext));
    std::string type;
    int rank = -1;
    EXPECT_EQ(xdg::BetterMimeTypeFromGlobs(globs, c.ext, type, rank), !c.type.empty());
    EXPECT_EQ(type, c.type);
    EXPECT_EQ(rank, c.rank);
  }
  // A later directory's match must rank higher to win.
  std::string type = "text/keep";
  int rank = 100;
  EXPECT_FALSE(xdg::BetterMimeTypeFromGlobs("50:text/other:*.x\n", "x", type, rank));
  EXPECT_EQ(type, "text/keep");
}

// Points the XDG variables at a fake tree for the time of a test.
class ProgAssocTest : public ::testing::Test {
 protected:
  static constexpr const char* kVars[] = {"HOME",
                                          "XDG_DATA_HOME",
                                          "XDG_DATA_DIRS",
                                          "XDG_CONFIG_HOME",
                                          "XDG_CONFIG_DIRS",
                                          "XDG_CURRENT_DESKTOP"};
  void SetUp() override {
    for (const char* v : kVars) {
      const char* old = ::getenv(v);
      saved_.emplace_back(old != nullptr, old ? old : "");
    }
    const std::string d = dir_.path().string();
    ::setenv("HOME", (d + "/home").c_str(), 1);
    ::unsetenv("XDG_DATA_HOME");  // so $HOME/.local/share is used
    ::setenv("XDG_DATA_DIRS", ("relative/dir:" + d + "/usr/share").c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (d + "/config").c_str(), 1);
    ::setenv("XDG_CONFIG_DIRS", (d + "/etc/xdg").c_str(), 1);
    ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
    Write("usr/share/mime/globs2",
          "50:text/plain:*.txt\n50:image/png:*.png\n50:text/csv:*.csv\n50:text/x-log:*.log\n"
          "50:application/x-zyn:*.zyn\n");
    Write("home/.local/share/mime/globs2", "60:text/x-mylog:*.log\n");
    Write("usr/share/applications/org.gnome.gedit.desktop", "[Desktop Entry]\nExec=gedit %U\n");
    Write(
        "usr/share/applications/kde/okular.desktop",
        "[Desktop Action print]\nExec=okular --print %f\n[Desktop Entry]\nExec = okular \"%f\"\n");
    Write("home/.local/share/applications/viewer.desktop",
          "[Desktop Entry]\nExec=\"/home/u/my viewer\" --open %f\n");
    Write("usr/share/applications/mimeapps.list",
          "[Default Applications]\ntext/plain=org.gnome.gedit.desktop\n"
          "image/png=kde-okular.desktop\ntext/csv=missing.desktop\n");
    Write("etc/xdg/gnome-mimeapps.list",
          "[Default Applications]\nimage/png=gone.desktop;viewer.desktop\n");
    Write("config/mimeapps.list",
          "[Added Associations]\ntext/csv=viewer.desktop\n"
          "[Default Applications]\ntext/x-mylog = kde-okular.desktop;\r\n");
  }
  void TearDown() override {
    for (std::size_t i = 0; i < std::size(kVars); ++i) {
      if (saved_[i].first)
        ::setenv(kVars[i], saved_[i].second.c_str(), 1);
      else
        ::unsetenv(kVars[i]);
    }
  }
  void Write(const std::string& rel, std::string_view text) {
    fs::create_directories((dir_ / rel).parent_path());
    zyn::testing::WriteFileBytes(dir_ / rel, text);
  }

  zyn::testing::TempDir dir_;
  std::vector<std::pair<bool, std::string>> saved_;
};

TEST_F(ProgAssocTest, FollowsTypeDefaultAndDesktopEntry) {
  struct Case {
    std::u16string_view ext, result;
  };
  const Case cases[] = {
      {u"txt", u"gedit %U"},                         // data dirs' list
      {u"TXT", u"gedit %U"},                         // globs ignore case
      {u"png", u"\"/home/u/my viewer\" --open %f"},  // desktop list first, first one installed
      {u"log", u"okular \"%f\""},                    // user globs and config home win; kde/ folder
      {u"csv", u"text/csv"},                         // default not installed: the type name
      {u"zyn", u"application/x-zyn"},                // no default at all
      {u"unknownext", u""},                          // no type
      {u"", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.ext));
    EXPECT_EQ(GetProgAssoc(c.ext), c.result);
  }
}

}  // namespace
}  // namespace Zyn_filesys
