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

TEST(DotsTest, LargeUpdatePrintsOneDotAndCountsAll) {
  std::ostringstream out;
  QXDots dots(100, 10, "items", &out);
  dots.Update(95);
  dots.Update(1000000);
  EXPECT_EQ(out.str(), ".. 1000095 items\n");
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

TEST(DotsTest, StepOfZeroPrintsNothingOfItsKind) {
  std::ostringstream out;
  QXDots dots(0, 0, "items", &out);
  dots.Update(1000);
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace QXSystem
