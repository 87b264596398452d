#include <gtest/gtest.h>

#include <new>

#include "tests/debug/LogDirectory.h"
#include "tests/debug/TestPlatform.h"
#include "tests/support/AllocationFailure.h"

using trelvo::test::AllocationsSucceed;
using trelvo::test::everyAllocationFails;
using trelvo::test::LogDirectory;
using trelvo::test::openDescriptors;
using trelvo::test::TestPlatform;

TEST(LoggingMemory, ReadingAConfigurationLeavesNoStreamBehindWhereverMemoryRunsOut) {
  const LogDirectory directory;
  const std::string config = directory.put("config",
                                           "no_platform_logging\n"
                                           "component_with_a_long_name 1 long_file_name_a.log\n"
                                           "component_with_a_long_name 1 long_file_name_b.log\n"
                                           "default 1 long_file_name_a.log\n");
  const std::ptrdiff_t before = openDescriptors();
  const unsigned long long steps = everyAllocationFails([&] {
    {
      TestPlatform platform;
      try {
        EXPECT_TRUE(platform.readConfig(config.c_str(), directory.path().c_str(), nullptr));
      } catch (const std::bad_alloc&) {
      }
    }
    const AllocationsSucceed succeed;
    EXPECT_EQ(openDescriptors(), before);
  });
  EXPECT_GT(steps, 5U);
}
