// Each record keeps a heap of its best pairs. A symmetric score is offered to both of its records, so that the
// upper triangle suffices.

#include <algorithm>
#include <limits>
#include <new>

#include "fastfp/pairs/AllPairs.h"
#include "fastfp/pairs/PairTiles.h"

namespace QXFingrix {

namespace {

// Larger keys are better: the score, or in ascending order its negative.
struct Neighbour {
  float key;
  unsigned idx;

  friend bool operator<(const Neighbour& x, const Neighbour& y) {  // x is better
    return x.key > y.key || (x.key == y.key && x.idx < y.idx);
  }
};

class NeighbourLists {
 public:
  NeighbourLists(std::uint64_t numRecords, const QXFPDatabaseOptions& options, std::uint64_t limit)
      : isDescending_(options.GetDescendingOrder()),
        limit_(limit),
        lists_(numRecords),
        bars_(numRecords, FirstBar(options)) {}

  float Key(double score) const {
    return isDescending_ ? static_cast<float>(score) : -static_cast<float>(score);
  }

  void Offer(std::uint64_t i, std::uint64_t j, float key) {
    if (key >= bars_[i]) Add(i, {key, static_cast<unsigned>(j)});
  }

  void AppendTo(std::vector<QXSimScorePair>& pairs) {
    std::uint64_t numPairs = 0;
    for (const auto& list : lists_) numPairs += list.size();
    pairs.reserve(numPairs);
    for (std::uint64_t i = 0; i < lists_.size(); ++i) {
      std::sort(lists_[i].begin(), lists_[i].end());
      for (const Neighbour& neighbour : lists_[i]) {
        pairs.emplace_back(static_cast<unsigned>(i), neighbour.idx,
                           isDescending_ ? neighbour.key : -neighbour.key);
      }
      std::vector<Neighbour>().swap(lists_[i]);
    }
  }

 private:
  static float FirstBar(const QXFPDatabaseOptions& options) {
    if (!options.HasCutoff()) return -std::numeric_limits<float>::infinity();
    return options.GetDescendingOrder() ? options.GetCutoff() : -options.GetCutoff();
  }

  void Add(std::uint64_t i, const Neighbour& neighbour) {
    std::vector<Neighbour>& list = lists_[i];
    if (list.size() == limit_) {
      if (!(neighbour < list.front())) return;
      std::pop_heap(list.begin(), list.end());
      list.back() = neighbour;
    } else {
      if (list.size() == list.capacity()) list.reserve(std::min(limit_, 2 * list.size() + 1));
      list.push_back(neighbour);
    }
    std::push_heap(list.begin(), list.end());
    if (list.size() == limit_) bars_[i] = list.front().key;
  }

  const bool isDescending_;
  const std::uint64_t limit_;
  std::vector<std::vector<Neighbour>> lists_;  // heaps, the worst on top
  std::vector<float> bars_;                    // keys to reach
};

}  // namespace

std::vector<QXSimScorePair> FindNearestPairs(const RecordTable& records, const QXFPDatabaseOptions& options,
                                             std::uint64_t limit, const QXSystem::QXDots* tracer) {
  std::vector<QXSimScorePair> pairs;
  if (!options.HasCutoff()) {  // then their number is known: too many are refused before any is looked for
    if (limit != 0 && records.numRecords > pairs.max_size() / limit) throw std::bad_alloc();
    pairs.reserve(records.numRecords * limit);
  }
  NeighbourLists lists(records.numRecords, options, limit);
  PairTiles tiles(records, options, tracer);
  tiles.TakeAll([&](std::uint64_t i, std::uint64_t j, std::span<const double> scores) {
    for (const double score : scores) {
      const float key = lists.Key(score);
      lists.Offer(i, j, key);
      if (tiles.IsSymmetric() && i != j) lists.Offer(j, i, key);
      ++j;
    }
  });
  lists.AppendTo(pairs);
  return pairs;
}

}  // namespace QXFingrix
