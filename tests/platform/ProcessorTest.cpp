#include "QXPlatform/QXProcessor.h"

#include <gtest/gtest.h>
#include <sched.h>

#include <thread>

namespace QXPlatform {
namespace {

TEST(ProcessorTest, CountFollowsTheAffinityOfTheProcess) {
  const unsigned numProcessors = QXGetNumProcessors();
  EXPECT_GE(numProcessors, 1u);
  unsigned numAllowed = 0;
  // In a thread of its own, so that the other tests keep all their processors.
  std::jthread([&numAllowed] {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<unsigned>(sched_getcpu()), &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    numAllowed = QXGetNumProcessors();
  }).join();
  EXPECT_EQ(numAllowed, 1u);
  EXPECT_EQ(QXGetNumProcessors(), numProcessors);
}

}  // namespace
}  // namespace QXPlatform
