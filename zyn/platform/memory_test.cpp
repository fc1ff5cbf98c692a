#include "zyn/platform/memory.h"

#include <gtest/gtest.h>

#include <limits>

namespace zyn::platform {
namespace {

TEST(MemoryTest, CeilingAndAvailableMemoryLimitAllocations) {
  // Linux always reports MemAvailable.
  const auto available = AvailableMemory();
  ASSERT_TRUE(available.has_value());
  EXPECT_GT(*available, 0u);
  EXPECT_TRUE(AllocationAllowed(1000));
  EXPECT_FALSE(AllocationAllowed(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_FALSE(AllocationAllowed(*available + 1));

  EXPECT_EQ(AllocationCeiling(), 0u);
  SetAllocationCeiling(4096);
  EXPECT_TRUE(AllocationAllowed(4096));
  EXPECT_FALSE(AllocationAllowed(4097));
  SetAllocationCeiling(0);
  EXPECT_TRUE(AllocationAllowed(4097));
}

}  // namespace
}  // namespace zyn::platform
