#include "QXSystem/QXBitCountKernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Reports.h"
#include "system/bitcount/Kernels.h"

namespace QXSystem {
namespace {

using namespace QXTest;

constexpr std::size_t maxWords = 70;

struct alignas(64) Line {
  std::uint64_t words[8];
};

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
      for (const std::size_t numRecords : {0, 1, 2, 3, 4, 5, 17}) {
        const std::vector<std::uint64_t> records =
            RandomWords(numRecords == 0 ? 0 : numRecords * stride - gap, random);
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

// Counts may be missing where they are too small, and the flag tells whether one is large enough.
void ExpectSameWhereLeastIsReached(const QXBitCountKernel& kernel, const QXBitLists& lists,
                                   const std::vector<std::uint64_t>& records, std::size_t stride,
                                   std::size_t numRecords, const std::vector<std::uint32_t>& expected,
                                   std::size_t bothStride, std::mt19937_64& random) {
  std::vector<std::uint32_t> least(lists.NumVectors());
  for (auto& count : least) count = static_cast<std::uint32_t>(random() % (18 * lists.NumWords() + 2));
  std::vector<std::uint32_t> both(expected.size(), 77);
  const auto reaches = std::make_unique<bool[]>(lists.NumVectors());
  kernel.countLists(lists, records.data(), stride, numRecords, least.data(), both.data(), bothStride,
                    reaches.get());
  for (std::size_t q = 0; q < lists.NumVectors(); ++q) {
    bool isReached = false;
    for (std::size_t i = q * bothStride; i < q * bothStride + numRecords; ++i) {
      if (expected[i] < least[q]) {
        ASSERT_TRUE(both[i] == expected[i] || both[i] == 0) << both[i];
        continue;
      }
      isReached = true;
      ASSERT_EQ(both[i], expected[i]);
    }
    ASSERT_TRUE(reaches[q] || !isReached);
    if (lists.NumSlices() == 1) {
      ASSERT_EQ(reaches[q], isReached) << least[q];
    }
  }
}

// Gaps and the room after a row's counts keep their canaries.
void ExpectListsMatchANaiveCount(const QXBitCountKernel& kernel, std::size_t numQueries,
                                 std::size_t numRecords, std::size_t numWords, std::mt19937_64& random) {
  const std::size_t queryGap = random() % 3, gap = random() % 3, room = random() % 3;
  const std::size_t queryStride = numWords + queryGap, stride = numWords + gap,
                    bothStride = numRecords + room;
  const auto queries = RandomWords(numQueries == 0 ? 0 : numQueries * queryStride - queryGap, random);
  const auto records = RandomWords(numRecords == 0 ? 0 : numRecords * stride - gap, random);
  std::vector<std::uint32_t> expected(numQueries == 0 ? 0 : numQueries * bothStride - room, 77);
  std::vector<std::uint32_t> both = expected;
  for (std::size_t q = 0; q < numQueries; ++q) {
    for (std::size_t i = 0; i < numRecords; ++i) {
      expected[q * bothStride + i] = static_cast<std::uint32_t>(
          NaiveCountAnd(queries.data() + q * queryStride, records.data() + i * stride, numWords));
    }
  }
  const QXBitLists lists(queries.data(), queryStride, numQueries, numWords);
  kernel.countLists(lists, records.data(), stride, numRecords, nullptr, both.data(), bothStride, nullptr);
  ASSERT_EQ(both, expected) << numQueries << " queries, " << numRecords << " records, " << numWords
                            << " words";
  ExpectSameWhereLeastIsReached(kernel, lists, records, stride, numRecords, expected, bothStride, random);
}

TEST_P(BitCountKernelTest, CountListsMatchesANaiveCountInEveryShape) {
  std::mt19937_64 random(4);
  for (const std::size_t numWords : {0, 1, 2, 3, 16, 31, 32, 33, 64, 70}) {
    for (const std::size_t numQueries : {0, 1, 2, 5}) {
      for (const std::size_t numRecords : {0, 1, 17}) {
        ExpectListsMatchANaiveCount(GetParam(), numQueries, numRecords, numWords, random);
      }
      for (const std::size_t numRecords : {128, 129, 300, 512, 700}) {
        ExpectListsMatchANaiveCount(GetParam(), numQueries, numRecords, numWords, random);
      }
    }
  }
}

struct Block {
  static constexpr std::size_t numWords = 5, numColumns = 64 * numWords;
  std::vector<Line> columns{numColumns + 1};  // the last one is empty
  std::vector<std::uint16_t> bits;
  std::vector<std::uint32_t> expected;
};

Block MakeBlock(const QXBitCountKernel& kernel, std::size_t numRecords, std::mt19937_64& random) {
  const std::vector<std::uint64_t> words = RandomWords((numRecords + 1) * Block::numWords, random);
  const std::uint64_t* const query = &words[numRecords * Block::numWords];
  Block block;
  std::vector<const std::uint64_t*> records;
  for (std::size_t i = 0; i < numRecords; ++i) {
    records.push_back(&words[i * Block::numWords]);
    block.expected.push_back(static_cast<std::uint32_t>(NaiveCountAnd(query, records[i], Block::numWords)));
  }
  kernel.makeColumns(records.data(), numRecords, Block::numWords, block.columns[0].words);
  for (std::uint16_t bit = 0; bit < Block::numColumns; ++bit) {
    if ((query[bit / 64] >> bit % 64 & 1) != 0) block.bits.push_back(bit);
  }
  std::ranges::shuffle(block.bits, random);
  while (block.bits.size() % QXBitLists::padding != 0) block.bits.push_back(Block::numColumns);
  return block;
}

// False when the block was given up.
bool AddAll(const QXBitCountKernel& kernel, const Block& block, std::uint32_t least, QXColumnCounts& counts) {
  kernel.startColumns(counts);
  std::span<const std::uint16_t> left = block.bits;
  while (!left.empty()) {
    const auto bits = left.first(std::min(QXColumnCounts::step, left.size()));
    left = left.subspan(bits.size());
    const auto next = left.first(std::min(QXColumnCounts::step, left.size()));
    const auto numLeft = static_cast<std::uint32_t>(left.size());
    if (!kernel.addColumns(counts, block.columns[0].words, bits, next, least > numLeft ? least - numLeft : 0))
      return false;
  }
  return true;
}

// Columns made by any kernel are counted by any other: they may come from a file.
TEST_P(BitCountKernelTest, ColumnsOfAnotherKernelAreCountedLikeANaiveCount) {
  std::mt19937_64 random(5);
  for (const std::size_t numRecords : {1, 31, 300, 511, 512}) {
    const Block block = MakeBlock(QXGetBitCountKernels().back(), numRecords, random);
    const int most = static_cast<int>(*std::ranges::max_element(block.expected));
    for (const int aboveMost : {-1000, -20, -1, 0, 1, 1000}) {
      const auto least = static_cast<std::uint32_t>(std::max(0, most + aboveMost));
      QXColumnCounts counts;
      ASSERT_EQ(AddAll(GetParam(), block, least, counts), aboveMost <= 0) << numRecords << ' ' << aboveMost;
      if (aboveMost > 0) continue;
      std::vector<std::uint32_t> both(numRecords + 1, 77);
      GetParam().writeColumns(counts, numRecords, both.data());
      for (std::size_t i = 0; i < numRecords; ++i) {
        if (block.expected[i] >= least || both[i] != 0) {
          ASSERT_EQ(both[i], block.expected[i]) << i << " of " << numRecords << " records";
        }
      }
      ASSERT_EQ(both[numRecords], 77u);
    }
  }
}

TEST_P(BitCountKernelTest, CountPairMatchesANaiveCountAtEverySize) {
  std::mt19937_64 random(3);
  for (std::size_t numWords = 0; numWords <= maxWords; ++numWords) {
    const std::vector<std::uint64_t> a = RandomWords(numWords, random);
    const std::vector<std::uint64_t> b = RandomWords(numWords, random);
    std::uint64_t ofA = 77, ofB = 77, both = 77;
    GetParam().countPair(a.data(), b.data(), numWords, &ofA, &ofB, &both);
    EXPECT_EQ(ofA, NaiveCountAnd(a.data(), a.data(), numWords)) << numWords;
    EXPECT_EQ(ofB, NaiveCountAnd(b.data(), b.data(), numWords)) << numWords;
    EXPECT_EQ(both, NaiveCountAnd(a.data(), b.data(), numWords)) << numWords;
  }
}

TEST_P(BitCountKernelTest, FullVectorsDoNotOverflowALane) {
  const std::vector<std::uint64_t> ones(100003, ~std::uint64_t{0});
  EXPECT_EQ(GetParam().count(ones.data(), ones.size()), 64 * ones.size());
  std::uint32_t both = 0;
  GetParam().countAnd(ones.data(), ones.size(), ones.data(), ones.size(), 1, &both);
  EXPECT_EQ(both, 64 * ones.size());
  const std::vector<std::uint32_t> expected(2 * 100, 64 * 1000);
  std::vector<std::uint32_t> counted(expected.size());
  const QXBitLists lists(ones.data(), 0, 2, 1000);
  GetParam().countLists(lists, ones.data(), 1000, 100, nullptr, counted.data(), 100, nullptr);
  EXPECT_EQ(counted, expected);
}

INSTANTIATE_TEST_SUITE_P(Kernels, BitCountKernelTest, testing::ValuesIn(QXGetBitCountKernels()),
                         [](const auto& kernel) { return std::string(kernel.param.name); });

TEST(BitCountKernelChoiceTest, NamedKernelIsTakenWhereTheProcessorHasItElseTheFirstThatRuns) {
  const std::vector<QXBitCountKernel> kernels(QXGetBitCountKernels().begin(), QXGetBitCountKernels().end());
  EXPECT_STREQ(kernels.back().name, "portable");
  const std::string best =
      std::ranges::find_if(kernels, [](const auto& kernel) { return kernel.isSupported(); })->name;
  const auto choose = [&best](const char* name, const std::string& expected) {
    return ReportsOf([&] { EXPECT_EQ(BitCount::ChooseKernel(name).name, expected); }).size();
  };
  EXPECT_EQ(choose(nullptr, best), 0u);
  EXPECT_EQ(choose("", best), 0u);
  for (const QXBitCountKernel& kernel : kernels) {
    EXPECT_EQ(choose(kernel.name, kernel.isSupported() ? kernel.name : best), kernel.isSupported() ? 0u : 1u);
  }
  EXPECT_EQ(ReportsOf([] { BitCount::ChooseKernel("mmx"); }),
            Reports{"Warning: QXGetBitCountKernel() unknown kernel 'mmx' in QX_BITCOUNT_KERNEL, using '" +
                    best + "'"});
}

}  // namespace
}  // namespace QXSystem
