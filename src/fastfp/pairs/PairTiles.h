#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "QXSystem/QXBitCountKernel.h"
#include "QXSystem/QXDots.h"
#include "fastfp/scan/RecordScan.h"
#include "fastfp/scan/Scorer.h"

namespace QXFingrix {

/// Scores records against each other. Bands of them are the queries; tiles of a band and some records, which
/// the second cache holds together with their counts, are counted, then scored row by row in the first.
class PairTiles {
 public:
  static constexpr std::uint64_t tileRecords = 512;
  static constexpr std::uint64_t bandSize = 128;  // queries; the last band may be shorter

  /// What is passed is referred to and must outlive the tiles, but for the tracer, which may be null: a copy of
  /// it counts the scores.
  PairTiles(const RecordTable& records, const QXFPDatabaseOptions& options, const QXSystem::QXDots* tracer)
      : records_(records),
        options_(options),
        isSymmetric_(options.GetSimFunc() != QXSimMeasure::Tversky),
        tracer_(tracer ? tracer->CreateCopy() : nullptr),
        shared_(bandSize * tileRecords) {}
  ~PairTiles() {
    if (tracer_) tracer_->Total();
  }
  PairTiles(const PairTiles&) = delete;
  PairTiles& operator=(const PairTiles&) = delete;

  std::uint64_t BandEnd(std::uint64_t begin) const {
    return begin + std::min(bandSize, records_.numRecords - begin);
  }

  /// Whether (j, i) scores as (i, j) does; then only the upper triangle is scored, the diagonal included.
  bool IsSymmetric() const { return isSymmetric_; }

  /// Calls take(i, j, scores of query i against records j, j + 1 ...) for the rows of the band that begins at
  /// query `band`. Rows come tile by tile; those of one query by rising j, without gaps.
  template <class Take>
  void TakeBand(std::uint64_t band, Take take) {
    const std::uint64_t end = BandEnd(band);
    const std::size_t stride = FileLayout::RecordWords(records_.numWords);
    queries_ = QXSystem::QXBitLists(records_.Record(band) + FileLayout::dataSlot, stride, end - band,
                                    records_.numWords);
    for (std::uint64_t j = isSymmetric_ ? band : 0; j < records_.numRecords; j += tileRecords) {
      const std::uint64_t size = std::min(tileRecords, records_.numRecords - j);
      Count(j, size);
      unsigned numScored = 0;
      for (std::uint64_t i = band; i < end; ++i) {
        const std::uint64_t skipped = isSymmetric_ && i > j ? i - j : 0;
        ScoreRow(i, &shared_[(i - band) * tileRecords]);
        take(i, j + skipped, std::span<const double>(scores_).subspan(skipped, size - skipped));
        numScored += static_cast<unsigned>(size - skipped);
      }
      if (tracer_) tracer_->Update(numScored);
    }
  }

  /// The same for all bands, in order.
  template <class Take>
  void TakeAll(Take take) {
    for (std::uint64_t band = 0; band < records_.numRecords; band += bandSize) TakeBand(band, take);
  }

 private:
  void Count(std::uint64_t firstRecord, std::uint64_t size) {
    const std::size_t stride = FileLayout::RecordWords(records_.numWords);
    const std::uint64_t* const record = records_.Record(firstRecord);
    QXSystem::QXGetBitCountKernel().countLists(queries_, record + FileLayout::dataSlot, stride, size, nullptr,
                                               shared_.data(), tileRecords, nullptr);
    for (std::uint64_t i = 0; i < size; ++i) {
      bits_[i] = static_cast<double>(record[i * stride + FileLayout::bitCountSlot]);
    }
  }

  // Whole rows, whatever the size of the tile: loops of constant length are vectorised.
  void ScoreRow(std::uint64_t query, const std::uint32_t* shared) {
    const Scorer scorer(options_, records_.NumBits(), records_.Record(query)[FileLayout::bitCountSlot]);
    scorer.WithMeasure([&](auto measure) {
      for (std::size_t i = 0; i < tileRecords; ++i) {
        scores_[i] = scorer.Score<measure>(bits_[i], static_cast<std::int32_t>(shared[i]));
      }
    });
  }

  const RecordTable& records_;
  const QXFPDatabaseOptions& options_;
  const bool isSymmetric_;
  const std::unique_ptr<QXSystem::QXDots> tracer_;
  QXSystem::QXBitLists queries_;       // of the band
  std::vector<std::uint32_t> shared_;  // rows of tileRecords counts
  std::array<double, tileRecords> bits_{};
  std::array<double, tileRecords> scores_{};
};

}  // namespace QXFingrix
