#include "fastfp/slices/SlicedSearch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <random>
#include <vector>

#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/scan/RunThreads.h"
#include "fastfp/scan/SortedScan.h"
#include "fastfp/slices/MakeSlicedIndex.h"

namespace {

using namespace QXFingrix;

// Records as in a file: families of fingerprints, so that scores tie, with empty, full and equal ones.
class SlicedRecords {
 public:
  SlicedRecords(std::uint64_t numWords, std::uint64_t numRecords, double density, std::mt19937_64& random)
      : table_{nullptr, numWords, numRecords} {
    std::vector<std::uint64_t> parent(numWords);
    std::bernoulli_distribution isSet(density);
    for (std::uint64_t i = 0; i < numRecords; ++i) {
      if (i == 0 || random() % 40 == 0) {
        for (std::uint64_t bit = 0; bit < 64 * numWords; ++bit) {
          SetBit(parent, bit, isSet(random));
        }
      }
      std::vector<std::uint64_t> words = parent;
      for (std::uint64_t flips = random() % 6; flips > 0; --flips)
        words[random() % numWords] ^= 1ULL << random() % 64;
      if (random() % 100 == 0) std::ranges::fill(words, random() % 2 == 0 ? 0 : ~0ULL);
      words_.push_back(i);
      words_.push_back(QXSystem::QXGetBitCountKernel().count(words.data(), numWords));
      words_.insert(words_.end(), words.begin(), words.end());
    }
    table_.first = words_.data();
  }

  const RecordTable& Table() const { return table_; }
  QueryBits Query(std::uint64_t i) const {
    const std::uint64_t* const record = table_.Record(i);
    return {{record + FileLayout::dataSlot, table_.numWords}, record[FileLayout::bitCountSlot]};
  }
  std::uint64_t* BitCount(std::uint64_t i) { return &words_[i * (table_.numWords + 2) + 1]; }

 private:
  static void SetBit(std::vector<std::uint64_t>& words, std::uint64_t bit, bool value) {
    words[bit / 64] = (words[bit / 64] & ~(1ULL << bit % 64)) | (value ? 1ULL : 0ULL) << bit % 64;
  }

  RecordTable table_;
  std::vector<std::uint64_t> words_;
};

std::vector<std::pair<unsigned, double>> Sorted(QXFPDatabaseHitList& hits) {
  hits.Sort();
  std::vector<std::pair<unsigned, double>> result;
  for (const QXSimScore& hit : hits.GetHits()) result.emplace_back(hit.GetIdx(), hit.GetScore());
  return result;
}

// Every thread has a list of its own, as in a search by the engine.
std::vector<std::pair<unsigned, double>> Search(const SlicedIndex& index, const RecordTable& records,
                                                const QueryBits& query, const QXFPDatabaseOptions& options,
                                                unsigned numThreads) {
  SlicedSearch search(index, records, query, options, index.NumBlocks());
  const auto all = QXInitFPDatabaseHitList(records.numRecords, options);
  std::atomic<std::size_t> numSearched{0};
  std::mutex mutex;
  RunThreads(numThreads, [&] {
    const auto hits = QXInitFPDatabaseHitList(records.numRecords, options);
    search.Run(*hits, [&](std::size_t num) { numSearched += num; });
    const std::lock_guard lock(mutex);
    for (const QXSimScore& hit : hits->GetHits()) all->AddHit(hit);
  });
  EXPECT_EQ(numSearched, records.numRecords);
  return Sorted(*all);
}

TEST(SlicedSearch, FindsWhatTheLinearScanFinds) {
  std::mt19937_64 random(3);
  struct Shape {
    std::uint64_t numWords, numRecords;
    double density;
  };
  constexpr Shape shapes[] = {{1, 1, 0.5},     {4, 511, 0.1},    {16, 513, 0.03},  {32, 6000, 0.1},
                              {32, 9001, 0.4}, {33, 4700, 0.02}, {1020, 700, 0.01}};
  for (const Shape& shape : shapes) {
    const SlicedRecords records(shape.numWords, shape.numRecords, shape.density, random);
    const RecordTable& table = records.Table();
    const auto index = MakeSlicedIndex(table, 2);
    ASSERT_NE(index, nullptr);
    for (unsigned measure = QXSimMeasure::Tanimoto; measure <= QXSimMeasure::Manhattan; ++measure) {
      for (const unsigned limit : {1U, 10U, 300U, 0U}) {
        QXFPDatabaseOptions options(limit, measure);
        options.SetDescendingOrder(random() % 4 == 0 ? random() % 2 == 0
                                                     : measure != QXSimMeasure::Manhattan);
        if (random() % 2 == 0) options.SetCutoff(static_cast<float>(random() % 100) / 100.0F);
        const QueryBits query = records.Query(random() % shape.numRecords);
        const auto linear = QXInitFPDatabaseHitList(table.numRecords, options);
        SortedScan(table, query, options, *linear).Scan(0, table.numRecords);
        ASSERT_EQ(Search(*index, table, query, options, limit == 10 ? 3 : 1), Sorted(*linear))
            << shape.numWords << " words, measure " << measure << ", limit " << limit;
      }
    }
  }
}

TEST(MakeSlicedIndex, RecordsWithWrongBitCountsHaveNoIndex) {
  std::mt19937_64 random(4);
  SlicedRecords records(2, 100, 0.3, random);
  EXPECT_NE(MakeSlicedIndex(records.Table(), 1), nullptr);
  const std::uint64_t bitCount = *records.BitCount(70);
  for (const std::uint64_t wrong : {bitCount + 1, std::uint64_t{129}, ~std::uint64_t{0}}) {
    *records.BitCount(70) = wrong;
    EXPECT_EQ(MakeSlicedIndex(records.Table(), 1), nullptr) << wrong;
  }
}

}  // namespace
