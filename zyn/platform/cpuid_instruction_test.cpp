#include "zyn/platform/cpuid_instruction.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace zyn::platform {
namespace {

TEST(ProcessorCountTest, AgreesWithNproc) {
  // nproc counts the processors this process may run on, as we do.
  FILE* p = ::popen("nproc 2>/dev/null", "r");
  ASSERT_NE(p, nullptr);
  char line[32] = {};
  const bool got = std::fgets(line, sizeof line, p) != nullptr;
  ::pclose(p);
  if (!got) GTEST_SKIP() << "nproc not available";
  EXPECT_EQ(ProcessorCount(), std::stoi(line));
}

TEST(CpuIdInstructionTest, PresentExactlyOnX86Builds) {
#if (defined(__x86_64__) || defined(__i386__)) && !defined(ZYN_NO_X86_CPUID)
  EXPECT_TRUE(CpuIdInstructionPresent());
  EXPECT_GE(RunCpuId(0)[0], 1u);  // every processor with CPUID has level 1
#else
  EXPECT_FALSE(CpuIdInstructionPresent());
  EXPECT_EQ(RunCpuId(0), (CpuIdWords{0, 0, 0, 0}));
#endif
}

}  // namespace
}  // namespace zyn::platform
