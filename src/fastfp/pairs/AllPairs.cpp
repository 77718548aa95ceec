#include "fastfp/pairs/AllPairs.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "fastfp/pairs/PairTiles.h"

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
  /// Shape    begin: a multiple of 8.
  void Mirror(std::uint64_t begin, std::uint64_t end) {
    const std::uint64_t last = begin + (end - begin) / 4 * 4;
    for (std::uint64_t j = 0; j < begin; j += lineFloats) {
      const std::uint64_t next = std::min(j + lineFloats, begin);
      for (std::uint64_t row = next; row < std::min(next + lineFloats, begin); ++row) {
        for (std::uint64_t i = begin; i < end; i += lineFloats) __builtin_prefetch(Row(row) + i);
      }
      for (std::uint64_t i = begin; i < last; i += 4) {
        for (std::uint64_t row = j; row < next; row += 4) Transpose4(Row(row) + i, Row(i) + row);
      }
      MirrorSingly(last, end, j, next);
    }
    for (std::uint64_t i = begin; i < end; ++i) MirrorSingly(i, i + 1, begin, i);
  }

 private:
  using Four [[gnu::vector_size(16)]] = float;

  static constexpr std::uint64_t lineFloats = 16;  // of a cache line

  float* Row(std::uint64_t i) { return scores_.data() + i * size_; }

  void MirrorSingly(std::uint64_t begin, std::uint64_t end, std::uint64_t firstColumn,
                    std::uint64_t lastColumn) {
    for (std::uint64_t i = begin; i < end; ++i) {
      for (std::uint64_t j = firstColumn; j < lastColumn; ++j) Row(i)[j] = Row(j)[i];
    }
  }

  // 4 x 4 scores.
  void Transpose4(const float* from, float* to) const {
    const Four a = Load(from);
    const Four b = Load(from + size_);
    const Four c = Load(from + 2 * size_);
    const Four d = Load(from + 3 * size_);
    const Four ab01 = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Four ab23 = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Four cd01 = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Four cd23 = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    Store(to, __builtin_shufflevector(ab01, cd01, 0, 1, 4, 5));
    Store(to + size_, __builtin_shufflevector(ab01, cd01, 2, 3, 6, 7));
    Store(to + 2 * size_, __builtin_shufflevector(ab23, cd23, 0, 1, 4, 5));
    Store(to + 3 * size_, __builtin_shufflevector(ab23, cd23, 2, 3, 6, 7));
  }
  static Four Load(const float* from) {
    Four four;
    std::memcpy(&four, from, sizeof four);
    return four;
  }
  static void Store(float* to, const Four& four) { std::memcpy(to, &four, sizeof four); }

  const std::uint64_t size_;
  std::vector<float> scores_;
};

}  // namespace

std::vector<float> ScoreAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options,
                                 const QXSystem::QXDots* tracer) {
  ScoreMatrix matrix(records.numRecords);
  PairTiles tiles(records, options, tracer);
  for (std::uint64_t band = 0; band < records.numRecords; band += PairTiles::bandSize) {
    matrix.AddRows(tiles.BandEnd(band));
    tiles.TakeBand(band, [&](std::uint64_t i, std::uint64_t j, std::span<const double> scores) {
      matrix.SetRow(i, j, scores);
    });
    if (tiles.IsSymmetric()) matrix.Mirror(band, tiles.BandEnd(band));
  }
  return matrix.Take();
}

void CountAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options, QXFPHistogram& histogram,
                   const QXSystem::QXDots* tracer) {
  PairTiles tiles(records, options, tracer);
  tiles.TakeAll([&](std::uint64_t i, std::uint64_t j, std::span<const double> scores) {
    if (tiles.IsSymmetric() && i == j) scores = scores.subspan(1);
    for (const double score : scores) histogram.AddSample(score);
  });
}

// Bands are stored before they are counted: tiles come in another order.
void CountAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options,
                   std::span<const float> values, QXFPVariogram& variogram, const QXSystem::QXDots* tracer) {
  const std::uint64_t num = records.numRecords;
  PairTiles tiles(records, options, tracer);
  std::vector<float> rows(PairTiles::bandSize * num);
  for (std::uint64_t band = 0; band < num; band += PairTiles::bandSize) {
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
