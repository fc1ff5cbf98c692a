#include "zyn/platform/environment.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>

#include "testing/zyn_testing.h"
#include "zyn/platform/text.h"

namespace zyn::platform {
namespace {

// Sets a variable for the time of one test and restores it after.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = ::getenv(name)) old_ = old, had_ = true;
    if (value)
      ::setenv(name, value, 1);
    else
      ::unsetenv(name);
  }
  ~ScopedEnv() {
    if (had_)
      ::setenv(name_.c_str(), old_.c_str(), 1);
    else
      ::unsetenv(name_.c_str());
  }

 private:
  std::string name_, old_;
  bool had_ = false;
};

TEST(EnvironmentTest, BlockHoldsWhatTheCLibrarySet) {
  ScopedEnv v("ZYN_ENV_TEST", "a=b \xC3\xA4");
  const std::vector<std::u16string> block = EnvironmentStrings();
  EXPECT_NE(std::find(block.begin(), block.end(), u"ZYN_ENV_TEST=a=b \u00E4"), block.end());
  EXPECT_EQ(EnvironmentValue(u"ZYN_ENV_TEST"), u"a=b \u00E4");
  EXPECT_EQ(EnvironmentValue(u"zyn_env_test"), u"");
}

TEST(EnvironmentTest, TemporaryDirectoryFollowsTmpdirOnlyWhenItIsADirectory) {
  zyn::testing::TempDir dir;
  const std::string d = dir.path().string();
  zyn::testing::WriteFileBytes(dir / "file", "x");
  struct Case {
    bool set;
    std::string tmpdir, expected;
  };
  const Case cases[] = {
      {false, "", "/tmp/"},     {true, "", "/tmp/"},          {true, d, d + "/"},
      {true, d + "/", d + "/"}, {true, d + "/file", "/tmp/"}, {true, d + "/missing", "/tmp/"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.set ? c.tmpdir : "(unset)");
    ScopedEnv v("TMPDIR", c.set ? c.tmpdir.c_str() : nullptr);
    EXPECT_EQ(ToUTF8(TemporaryDirectory()), c.expected);
  }
}

TEST(EnvironmentTest, ReadSmallFileStopsAtItsLimit) {
  zyn::testing::TempDir dir;
  zyn::testing::WriteFileBytes(dir / "f", "0123456789");
  std::string content;
  EXPECT_TRUE(ReadSmallFile(FromUTF8((dir / "f").string()), content, 4));
  EXPECT_EQ(content, "0123");
  EXPECT_TRUE(ReadSmallFile(FromUTF8((dir / "f").string()), content));
  EXPECT_EQ(content, "0123456789");
  EXPECT_FALSE(ReadSmallFile(FromUTF8((dir / "missing").string()), content));
  EXPECT_FALSE(ReadSmallFile(FromUTF8(dir.path().string()), content));  // a directory
  EXPECT_TRUE(DirectoryExists(FromUTF8(dir.path().string())));
  EXPECT_FALSE(DirectoryExists(FromUTF8((dir / "f").string())));
}

}  // namespace
}  // namespace zyn::platform
