#include "QXSystem/QXBitCountKernel.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <string>
#include <vector>

#include "QXSystem/QXErrorHandler.h"
#include "system/bitcount/Kernels.h"

namespace QXSystem {
namespace {

constexpr std::size_t maxWords = 70;

std::vector<std::uint64_t> RandomWords(std::size_t numWords, std::mt19937_64& random) {
  std::vector<std::uint64_t> words(numWords);
  for (std::uint64_t& word : words) {
    const unsigned kind = static_cast<unsigned>(random() % 8);
    word = kind == 0 ? 0 : kind == 1 ? ~std::uint64_t{0} : random();
  }
  return words;
}

std::uint64_t NaiveCountAnd(const std::uint64_t* a, const std::uint64_t* b, std::size_t numWords) {
  std::uint64_t count = 0;
  for (std::size_t i = 0; i < numWords; ++i) count += static_cast<std::uint64_t>(std::popcount(a[i] & b[i]));
  return count;
}

class BitCountKernelTest : public testing::TestWithParam<QXBitCountKernel> {
 protected:
  void SetUp() override {
    if (!GetParam().isSupported()) GTEST_SKIP() << "this processor has no " << GetParam().name;
  }
};

TEST_P(BitCountKernelTest, CountMatchesANaiveCountAtEverySizeAndAlignment) {
  std::mt19937_64 random(1);
  const std::vector<std::uint64_t> words = RandomWords(2 * maxWords, random);
  for (std::size_t begin = 0; begin < 8; ++begin) {
    for (std::size_t numWords = 0; numWords <= maxWords; ++numWords) {
      const std::uint64_t* data = words.data() + begin;
      EXPECT_EQ(GetParam().count(data, numWords), NaiveCountAnd(data, data, numWords)) << numWords;
    }
  }
}

// Vectors of exact size: a read outside them is an address-sanitizer fault.
TEST_P(BitCountKernelTest, CountAndMatchesANaiveCountAtEverySizeAndStride) {
  std::mt19937_64 random(2);
  for (std::size_t numWords = 1; numWords <= maxWords; ++numWords) {
    const std::vector<std::uint64_t> query = RandomWords(numWords, random);
    for (const std::size_t gap : {0, 1, 2, 3, 7}) {
      const std::size_t stride = numWords + gap;
      for (const std::size_t numRecords : {1, 2, 3, 4, 5, 17}) {
        const std::vector<std::uint64_t> records = RandomWords((numRecords - 1) * stride + numWords, random);
        std::vector<std::uint32_t> both(numRecords + 1, 77);
        GetParam().countAnd(query.data(), numWords, records.data(), stride, numRecords, both.data());
        for (std::size_t i = 0; i < numRecords; ++i) {
          ASSERT_EQ(both[i], NaiveCountAnd(query.data(), records.data() + i * stride, numWords))
              << numWords << " words, stride " << stride << ", record " << i << " of " << numRecords;
        }
        ASSERT_EQ(both[numRecords], 77u);
      }
    }
  }
}

TEST_P(BitCountKernelTest, FullVectorsDoNotOverflowALane) {
  const std::vector<std::uint64_t> ones(100003, ~std::uint64_t{0});
  EXPECT_EQ(GetParam().count(ones.data(), ones.size()), 64 * ones.size());
  std::uint32_t both = 0;
  GetParam().countAnd(ones.data(), ones.size(), ones.data(), ones.size(), 1, &both);
  EXPECT_EQ(both, 64 * ones.size());
}

TEST_P(BitCountKernelTest, NoRecordsTouchNothing) {
  const std::uint64_t query = 1;
  std::uint32_t both = 77;
  GetParam().countAnd(&query, 1, nullptr, 1, 0, &both);
  EXPECT_EQ(both, 77u);
  EXPECT_EQ(GetParam().count(nullptr, 0), 0u);
}

INSTANTIATE_TEST_SUITE_P(Kernels, BitCountKernelTest, testing::ValuesIn(QXGetBitCountKernels()),
                         [](const auto& kernel) { return std::string(kernel.param.name); });

TEST(BitCountKernelChoiceTest, BestSupportedKernelComesFirst) {
  QXErrorCollector collector;
  for (const QXBitCountKernel& kernel : QXGetBitCountKernels()) {
    if (!kernel.isSupported()) continue;
    EXPECT_STREQ(BitCount::ChooseKernel(nullptr).name, kernel.name);
    EXPECT_STREQ(BitCount::ChooseKernel("").name, kernel.name);
    break;
  }
  EXPECT_STREQ(QXGetBitCountKernels().back().name, "portable");
  EXPECT_EQ(collector.Count(), 0u);
}

TEST(BitCountKernelChoiceTest, NamedKernelIsTakenOnlyWhereTheProcessorHasIt) {
  const std::string best = BitCount::ChooseKernel(nullptr).name;
  for (const QXBitCountKernel& kernel : QXGetBitCountKernels()) {
    QXErrorCollector collector;
    const QXBitCountKernel& chosen = BitCount::ChooseKernel(kernel.name);
    EXPECT_EQ(chosen.name, kernel.isSupported() ? std::string(kernel.name) : best);
    EXPECT_EQ(collector.Count(), kernel.isSupported() ? 0u : 1u);
  }
  QXErrorCollector collector;
  EXPECT_EQ(BitCount::ChooseKernel("mmx").name, best);
  ASSERT_EQ(collector.Count(), 1u);
  EXPECT_EQ(collector.Messages()[0].text,
            "QXGetBitCountKernel() unknown kernel 'mmx' in QX_BITCOUNT_KERNEL, using '" + best + "'");
}

}  // namespace
}  // namespace QXSystem
