#include "zyn/platform/cpu_features.h"

#include <gtest/gtest.h>

namespace zyn::platform {
namespace {

TEST(CpuFeaturesTest, SwitchingOffHidesEveryExtensionUntilSwitchedOn) {
  const CpuExtensions present = UsableCpuExtensions();
  AllowCpuExtensions(false);
  const CpuExtensions hidden = UsableCpuExtensions();
  AllowCpuExtensions(true);
  EXPECT_FALSE(hidden.carryless_multiply || hidden.sse41 || hidden.sha);
  const CpuExtensions again = UsableCpuExtensions();
  EXPECT_EQ(again.carryless_multiply, present.carryless_multiply);
  EXPECT_EQ(again.sse41, present.sse41);
  EXPECT_EQ(again.sha, present.sha);
}

}  // namespace
}  // namespace zyn::platform
