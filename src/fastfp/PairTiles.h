#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/RecordScan.h"
#include "fastfp/Scorer.h"

namespace QXFingrix {

/// Scores records against each other. Bands of them are the queries; tiles of a band and some records, which
/// the second cache holds together with their counts, are counted, then scored row by row in the first.
class PairTiles {
 public:
  static constexpr std::uint64_t tileRecords = 128;

  /// What is passed is referred to and must outlive the tiles.
  PairTiles(const RecordTable& records, const QXFPDatabaseOptions& options)
      : records_(records),
        options_(options),
        isSymmetric_(options.GetSimFunc() != QXSimMeasure::Tversky),
        bandSize_(std::clamp<std::uint64_t>(queryBytes / (records.numWords * FileLayout::wordBytes) / 8 * 8,
                                            8, maxBand)),
        shared_(bandSize_ * tileRecords) {}

  /// Queries of a band; the last one may be shorter.
  std::uint64_t BandSize() const { return bandSize_; }
  std::uint64_t BandEnd(std::uint64_t begin) const {
    return begin + std::min(bandSize_, records_.numRecords - begin);
  }

  /// Whether (j, i) scores as (i, j) does; then only the upper triangle is scored, the diagonal included.
  bool IsSymmetric() const { return isSymmetric_; }

  /// Calls take(i, j, scores of query i against records j, j + 1 ...) for the rows of the band that begins at
  /// query `band`. Rows come tile by tile; those of one query by rising j, without gaps.
  template <class Take>
  void TakeBand(std::uint64_t band, Take take) {
    const std::uint64_t end = BandEnd(band);
    for (std::uint64_t j = isSymmetric_ ? band : 0; j < records_.numRecords; j += tileRecords) {
      const std::uint64_t size = std::min(tileRecords, records_.numRecords - j);
      Count(band, end, j, size);
      for (std::uint64_t i = band; i < end; ++i) {
        const std::uint64_t skipped = isSymmetric_ && i > j ? i - j : 0;
        if (skipped >= size) continue;
        ScoreRow(i, &shared_[(i - band) * tileRecords]);
        take(i, j + skipped, std::span<const double>(scores_).subspan(skipped, size - skipped));
      }
    }
  }

  /// The same for all bands, in order.
  template <class Take>
  void TakeAll(Take take) {
    for (std::uint64_t band = 0; band < records_.numRecords; band += bandSize_) TakeBand(band, take);
  }

 private:
  static constexpr std::uint64_t queryBytes = 32768;
  static constexpr std::uint64_t maxBand = 128;

  void Count(std::uint64_t begin, std::uint64_t end, std::uint64_t firstRecord, std::uint64_t size) {
    const std::size_t stride = FileLayout::RecordWords(records_.numWords);
    const std::uint64_t* const record = records_.Record(firstRecord);
    QXSystem::QXGetBitCountKernel().countAndTile(records_.Record(begin) + FileLayout::dataSlot, stride,
                                                 end - begin, record + FileLayout::dataSlot, stride, size,
                                                 records_.numWords, shared_.data(), tileRecords);
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
  const std::uint64_t bandSize_;
  std::vector<std::uint32_t> shared_;  // rows of tileRecords counts
  std::array<double, tileRecords> bits_{};
  std::array<double, tileRecords> scores_{};
};

}  // namespace QXFingrix
