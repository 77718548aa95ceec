#include "fastfp/AllPairs.h"

#include <algorithm>
#include <array>
#include <new>

#include "fastfp/PairTiles.h"

namespace QXFingrix {

namespace {

// A square matrix of scores, filled band by band from the top. Its memory is touched when a band's turn
// comes, so that it is cleared and filled while the caches hold it.
class ScoreMatrix {
 public:
  explicit ScoreMatrix(std::uint64_t size) : size_(size) {
    if (size != 0 && size > scores_.max_size() / size) throw std::bad_alloc();
    scores_.reserve(size * size);
  }

  void AddRows(std::uint64_t end) { scores_.resize(end * size_); }
  void SetRow(std::uint64_t i, std::uint64_t j, std::span<const double> scores) {
    std::ranges::transform(scores, Row(i) + j, [](double score) { return static_cast<float>(score); });
  }
  std::vector<float> Take() { return std::move(scores_); }

  /// Fills the part of rows begin to end - 1 that lies below the diagonal from the part above it.
  void Mirror(std::uint64_t begin, std::uint64_t end) {
    for (std::uint64_t j = 0; j < begin; j += block) {
      const std::uint64_t width = std::min(block, begin - j);
      for (std::uint64_t i = begin; i < end; i += block) {
        Transpose(Row(j) + i, Row(i) + j, width, std::min(block, end - i));
      }
    }
    for (std::uint64_t i = begin; i < end; ++i) {
      for (std::uint64_t j = begin; j < i; ++j) Row(i)[j] = Row(j)[i];
    }
  }

 private:
  static constexpr std::uint64_t block = 16;  // floats of a cache line

  float* Row(std::uint64_t i) { return scores_.data() + i * size_; }

  void Transpose(const float* from, float* to, std::uint64_t numRows, std::uint64_t numColumns) const {
    for (std::uint64_t column = 0; column < numColumns; ++column) {
      for (std::uint64_t row = 0; row < numRows; ++row) to[column * size_ + row] = from[row * size_ + column];
    }
  }

  const std::uint64_t size_;
  std::vector<float> scores_;
};

}  // namespace

std::vector<float> ScoreAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options) {
  ScoreMatrix matrix(records.numRecords);
  PairTiles tiles(records, options);
  for (std::uint64_t band = 0; band < records.numRecords; band += tiles.BandSize()) {
    matrix.AddRows(tiles.BandEnd(band));
    tiles.TakeBand(band, [&](std::uint64_t i, std::uint64_t j, std::span<const double> scores) {
      matrix.SetRow(i, j, scores);
    });
    if (tiles.IsSymmetric()) matrix.Mirror(band, tiles.BandEnd(band));
  }
  return matrix.Take();
}

void CountAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options, QXFPHistogram& histogram) {
  PairTiles tiles(records, options);
  tiles.TakeAll([&](std::uint64_t i, std::uint64_t j, std::span<const double> scores) {
    if (tiles.IsSymmetric() && i == j) scores = scores.subspan(1);
    for (const double score : scores) histogram.AddSample(score);
  });
}

// Bands are stored before they are counted: tiles come in another order.
void CountAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options,
                   std::span<const float> values, QXFPVariogram& variogram) {
  const std::uint64_t num = records.numRecords;
  PairTiles tiles(records, options);
  std::vector<float> rows(tiles.BandSize() * num);
  for (std::uint64_t band = 0; band < num; band += tiles.BandSize()) {
    tiles.TakeBand(band, [&](std::uint64_t i, std::uint64_t j, std::span<const double> scores) {
      std::ranges::transform(scores, &rows[(i - band) * num + j],
                             [](double score) { return static_cast<float>(score); });
    });
    for (std::uint64_t i = band; i < tiles.BandEnd(band); ++i) {
      const float* const row = &rows[(i - band) * num];
      for (std::uint64_t j = i + 1; j < num; ++j) variogram.AddSample(row[j], values[i] - values[j]);
    }
  }
}

}  // namespace QXFingrix
