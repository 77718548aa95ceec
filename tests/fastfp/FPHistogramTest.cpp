#include "QXFingrix/QXFPHistogram.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

#include "fastfp/FpbinFile.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;

template <class T>
std::vector<T> Collect(const QXSystem::QXIter<T>& iter) {
  std::vector<T> values;
  for (const T& value : iter) values.push_back(value);
  return values;
}

TEST(FPHistogram, ValuesFallIntoHalfOpenBinsClampedAtTheEnds) {
  QXFPHistogram histogram(10, 0.0, 1.0);
  const std::pair<double, unsigned> cases[] = {
      {0.0, 0},  {-0.5, 0}, {1.0, 9}, {3.0, 9},       {0.35, 3},     {0.5, 5},
      {0.05, 0}, {0.95, 9}, {NAN, 0}, {-INFINITY, 0}, {INFINITY, 9}, {std::nextafter(1.0, 0.0), 9}};
  for (const auto& [x, bin] : cases) {
    EXPECT_EQ(histogram.GetBinIdx(x), bin) << x;
    EXPECT_EQ(histogram.GetBinIdx(static_cast<float>(x)), bin) << x;
    EXPECT_EQ(histogram.AddSample(x), bin) << x;
  }
  EXPECT_EQ(histogram.NumSamples(), std::size(cases));
  EXPECT_EQ(Collect(histogram.GetCounts()), (std::vector<unsigned>{5, 0, 0, 1, 0, 1, 0, 0, 0, 5}));
}

TEST(FPHistogram, FloatFormDividesInSinglePrecision) {
  const QXFPHistogram histogram(10, 0.0, 1.0);
  const float x = 0.3F;  // above 0.3, and 0.3F / 0.1F rounds to 3 where 0.3 / 0.1 stays below
  EXPECT_EQ(histogram.GetBinIdx(0.3), 2U);
  EXPECT_EQ(histogram.GetBinIdx(x), 3U);
  unsigned differences = 0;
  for (unsigned i = 0; i <= 1000; ++i) {
    const float value = static_cast<float>(i) / 1000.0F;
    differences += histogram.GetBinIdx(value) != histogram.GetBinIdx(static_cast<double>(value));
  }
  EXPECT_GT(differences, 0U);
  EXPECT_LT(differences, 20U);
}

TEST(FPHistogram, StatisticsComeFromTheBins) {
  QXFPHistogram histogram(4, -1.0, 3.0);
  for (const double x : {-0.5, 0.5, 0.9, 2.5}) histogram.AddSample(x);
  EXPECT_EQ(Collect(histogram.GetBinCenters()), (std::vector<double>{-0.5, 0.5, 1.5, 2.5}));
  EXPECT_EQ(Collect(histogram.GetBinBoundaries()), (std::vector<double>{-1, 0, 1, 2}));
  EXPECT_EQ(Collect(histogram.GetDensity()), (std::vector<double>{0.25, 0.5, 0, 0.25}));
  EXPECT_DOUBLE_EQ(histogram.Mean(), 0.75);
  EXPECT_DOUBLE_EQ(histogram.Std(), std::sqrt((1.25 * 1.25 + 2 * 0.25 * 0.25 + 1.75 * 1.75) / 4));
  EXPECT_TRUE(std::isnan(QXFPHistogram(4, 0, 1).Mean()));
}

TEST(FPHistogram, RemovingWhatWasNotAddedWrapsAround) {
  QXFPHistogram histogram(2, 0.0, 1.0);
  histogram.AddSample(0.7F);
  EXPECT_EQ(histogram.RemoveSample(0.7F), 1U);
  EXPECT_EQ(histogram.NumSamples(), 0U);
  EXPECT_EQ(histogram.RemoveSample(0.2F), 0U);
  EXPECT_EQ(histogram.NumSamples(), ~std::uint64_t{0});
  EXPECT_EQ(Collect(histogram.GetCounts()), (std::vector<unsigned>{4294967295U, 0}));
}

TEST(FPHistogram, NoBinsCountNothing) {
  QXFPHistogram histogram(0, 0.0, 1.0);
  EXPECT_EQ(histogram.AddSample(0.5), 0U);
  EXPECT_EQ(histogram.RemoveSample(0.5F), 0U);
  EXPECT_EQ(histogram.NumSamples(), 0U);
  EXPECT_FALSE(histogram.GetCounts());
}

TEST(FPHistogram, MergingNeedsTheSameRangeAndBins) {
  QXFPHistogram target(20, 0.0, 1.0);
  target.AddSample(0.5);
  const std::string text = "QXFPHistogram::operator+=() : cannot merge histogram due to different ";
  const std::pair<QXFPHistogram, const char*> cases[] = {
      {{10, 0.0, 1.0}, "bin size!"}, {{10, 0.1, 2.0}, "min limit!"}, {{10, 0.0, 2.0}, "max limit!"}};
  for (const auto& [other, difference] : cases) {
    QXFPHistogram filled = other;
    filled.AddSample(0.5);
    const QXErrorCollector reports;
    EXPECT_EQ(&(target += filled), &target);
    EXPECT_EQ(Texts(reports), Strings{text + difference});
    EXPECT_EQ(target.NumSamples(), 1U);
  }
  QXFPHistogram same(20, 0.0, 1.0);
  same.AddSample(0.5);
  same.AddSample(0.0);
  target += same;
  EXPECT_EQ(target.NumSamples(), 3U);
  EXPECT_EQ(Collect(target.GetCounts())[10], 2U);
}

TEST(FPVariogram, HalvesTheMeanSquaredDifferencePerBin) {
  QXFPVariogram variogram(4, 0.0, 1.0);
  EXPECT_EQ(variogram.AddSample(0.3F, 1.0F), 1U);
  EXPECT_EQ(variogram.AddSample(0.3F, -3.0F), 1U);
  EXPECT_EQ(variogram.AddSample(2.0F, 0.1F), 3U);
  EXPECT_EQ(variogram.GetVariogram(), (std::vector<double>{0, 2.5, 0, static_cast<double>(0.1F * 0.1F) / 2}));
  EXPECT_EQ(variogram.NumSamples(), 3U);
}

}  // namespace
}  // namespace QXFingrix
