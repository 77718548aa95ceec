#include "QXSystem/QXDots.h"

#include <gtest/gtest.h>

#include <sstream>

namespace QXSystem {
namespace {

TEST(DotsTest, PrintsDotsCountsAndTotal) {
  std::ostringstream out;
  QXDots dots(4, 2, "molecules", &out);
  for (int i = 0; i < 7; ++i) dots.Update();
  dots.Total();
  EXPECT_EQ(out.str(), ".. 4 molecules\n.\nTotal 7 molecules\n");
  EXPECT_EQ(dots.GetCount(), 7u);
}

TEST(DotsTest, CopyCountsOnItsOwn) {
  QXDots dots(1, 1, "items", nullptr);
  dots.Update(3);
  const std::unique_ptr<QXDots> copy = dots.CreateCopy();
  copy->Update(2);
  copy->Total();
  EXPECT_EQ(copy->GetCount(), 5u);
  EXPECT_EQ(dots.GetCount(), 3u);
}

TEST(DotsTest, LargeUpdatePrintsOneDotAndAStepOfZeroNothing) {
  for (const auto& [step, expected] : {std::pair{10u, ".. 1000095 items\n"}, {0u, ""}}) {
    std::ostringstream out;
    QXDots dots(step * 10, step, "items", &out);
    dots.Update(95);
    dots.Update(1000000);
    EXPECT_EQ(out.str(), expected);
  }
}

}  // namespace
}  // namespace QXSystem
