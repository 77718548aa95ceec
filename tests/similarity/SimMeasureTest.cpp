#include "QXFingrix/QXSimMeasure.h"

#include <gtest/gtest.h>

#include <utility>

namespace QXFingrix {
namespace {

TEST(SimMeasure, ValuesAndNamesConvertBothWaysInOrder) {
  const std::pair<unsigned, const char*> measures[] = {{1, "Tanimoto"}, {2, "Cosine"},  {3, "Dice"},
                                                       {4, "Euclid"},   {5, "Tversky"}, {6, "Manhattan"}};
  const auto& itf = QXGetSimMeasureNamespaceInterface();
  EXPECT_EQ(itf.GetNamespaceName(), "QXSimMeasure");
  ASSERT_EQ(itf.GetEntries().size(), std::size(measures));
  std::size_t i = 0;
  for (const auto& [value, name] : measures) {
    EXPECT_EQ(QXGetSimilarityMeasureName(value), name);
    EXPECT_EQ(itf.GetValue(name, 0), value);
    EXPECT_EQ(itf.GetEntries()[i++].name, name);
    EXPECT_TRUE(QXIsSimilarityMeasure(value));
  }
}

TEST(SimMeasure, OtherValuesAreUnknown) {
  for (const unsigned value : {0U, 7U, 4294967295U}) {
    EXPECT_EQ(QXGetSimilarityMeasureName(value), "unknown");
    EXPECT_FALSE(QXIsSimilarityMeasure(value));
  }
}

}  // namespace
}  // namespace QXFingrix
