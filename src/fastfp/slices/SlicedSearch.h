#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXSimMeasure.h"
#include "fastfp/RecordScan.h"
#include "fastfp/slices/ScanSlices.h"
#include "fastfp/slices/SlicedQuery.h"

namespace QXFingrix {

/// Whether a score is the better the more bits are shared. Searches for the least similar records gain nothing
/// from an index: every block has to be counted.
inline bool WantsMostSimilar(const QXFPDatabaseOptions& options) {
  return options.GetDescendingOrder() == (options.GetSimFunc() != QXSimMeasure::Manhattan);
}

/// A search of an index for the hits of one query, which several threads may run at once, each into a hit list
/// of its own. Blocks that can hold the best scores come first, and a bar that one thread has reached counts for
/// all of them.
class SlicedSearch {
 public:
  /// The index is that of the records; both and the query's words are referred to.
  SlicedSearch(const SlicedIndex& index, const RecordTable& records, const QueryBits& query,
               const QXFPDatabaseOptions& options)
      : index_(index),
        scorer_(options, records.NumBits(), query.numSet),
        filter_(MakeFilter(options, records, query)),
        query_(index, query, scorer_, options.GetDescendingOrder()),
        options_(options),
        bar_(Worst()) {}

  /// One thread's part. onSearched(number of records): called as blocks are done with.
  /// Shape    Hits: a hit list; indexOf(place): what a hit says of the record at a place of the table.
  /// Errors   what the list and the functions throw.
  template <class Hits, class IndexOf, class OnSearched>
  void Run(Hits& hits, IndexOf indexOf, OnSearched onSearched);

  /// Ends the parts of other threads soon.
  void Stop() { next_ = index_.NumBlocks(); }

 private:
  double Worst() const {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return options_.GetDescendingOrder() ? -infinity : infinity;
  }
  double Better(double a, double b) const {
    return options_.GetDescendingOrder() ? std::max(a, b) : std::min(a, b);
  }

  void ShareBar(double bar) {
    double shared = bar_;
    while (Better(shared, bar) != shared && !bar_.compare_exchange_weak(shared, bar)) {
    }
  }

  // Only where the most similar records are wanted: there the bit count nearest to the query's is the best.
  bool CanHoldHit(const SlicedQuery::Block& block, const CandidateFilter& filter) const {
    return !WantsMostSimilar(options_) || filter.CanPass(block.nearestBits);
  }

  const SlicedIndex& index_;
  const Scorer scorer_;
  const CandidateFilter filter_;
  const SlicedQuery query_;
  const QXFPDatabaseOptions options_;
  std::atomic<double> bar_;           // the best that any thread has
  std::atomic<std::size_t> next_{0};  // of the blocks in the query's order
};

template <class Hits, class IndexOf, class OnSearched>
void SlicedSearch::Run(Hits& hits, IndexOf indexOf, OnSearched onSearched) {
  CandidateFilter filter = filter_;
  const auto raiseBar = [&] { filter.SetBar(Better(hits.GetBar().GetScore(), bar_)); };

  const auto claim = [&]() -> std::optional<SlicedQuery::Block> {
    raiseBar();
    for (std::size_t i; (i = next_.fetch_add(1)) < index_.NumBlocks();) {
      const SlicedQuery::Block& block = query_.bestFirst[i];
      onSearched(index_.Size(block.number));
      if (CanHoldHit(block, filter)) return block;
    }
    return std::nullopt;
  };
  const auto least = [&](const SlicedQuery::Block& block) {
    raiseBar();
    return filter.LeastShared(block.fewestBits);
  };
  const auto take = [&](const SlicedQuery::Block& block, std::span<const std::uint32_t> shared) {
    // Few records pass where any does: those of a group are looked at one by one only then.
    constexpr std::size_t groupRecords = 32;
    std::array<float, groupRecords> bitCounts;
    for (std::size_t i = 0; i < shared.size(); i += groupRecords) {
      const auto group = shared.subspan(i, std::min(groupRecords, shared.size() - i));
      const std::size_t first = index_.First(block.number) + i;
      std::ranges::copy(index_.bitCounts.subspan(first, group.size()), bitCounts.begin());
      filter.OfferPassing(
          static_cast<std::uint32_t>(group.size()), bitCounts.data(), group.data(),
          [&](std::uint32_t k) { return scorer_(index_.bitCounts[first + k], group[k]); },
          [&](std::uint32_t k) { return indexOf(index_.places[first + k]); }, hits);
    }
    ShareBar(hits.GetBar().GetScore());
  };
  ScanSlices(index_, query_, claim, least, take);
}

}  // namespace QXFingrix
