#include "QXSystem/QXIter.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace QXSystem {
namespace {

static_assert(std::input_iterator<QXIter<int>>);

TEST(IterTest, EmptyIteratorIsFalseAndSafe) {
  for (QXIter<int> iter : {QXIter<int>(), QXMakeVectorIter(std::vector<int>())}) {
    EXPECT_FALSE(iter);
    ++iter;
    iter.ToFirst();
    EXPECT_FALSE(iter);
    for (const int value : iter) ADD_FAILURE() << value;
    EXPECT_FALSE(QXIter<int>(iter));
  }
}

TEST(IterTest, WalksItsElementsAndGoesBack) {
  auto iter = QXMakeVectorIter(std::vector<std::string>{"a", "bb"});
  ASSERT_TRUE(iter);
  EXPECT_EQ(*iter, "a");
  EXPECT_EQ((++iter)->size(), 2u);
  ++iter;
  EXPECT_FALSE(iter);
  ++iter;
  EXPECT_FALSE(iter);
  iter.ToFirst();
  EXPECT_EQ(*iter, "a");
}

TEST(IterTest, CopiesKeepTheirPositionOutliveTheOriginalAndStartARangeFor) {
  QXIter<int> copy;
  {
    auto iter = QXMakeVectorIter(std::vector<int>{1, 2, 3});
    ++iter;
    copy = iter;
    ++iter;
    EXPECT_EQ(*iter, 3);
  }
  for (int round = 0; round < 2; ++round) {
    std::vector<int> seen;
    for (const int value : copy) seen.push_back(value);
    EXPECT_EQ(seen, (std::vector<int>{2, 3}));
  }
}

}  // namespace
}  // namespace QXSystem
