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
#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/ScanSlices.h"
#include "fastfp/slices/SlicedQuery.h"

namespace QXFingrix {

/// Whether a score is the better the more bits are shared. Searches for the least similar records gain nothing
/// from an index: every block has to be counted.
inline bool WantsMostSimilar(const QXFPDatabaseOptions& options) {
  return options.GetDescendingOrder() == (options.GetSimFunc() != QXSimMeasure::Manhattan);
}

/// A search of an index for the hits of one query, for several threads at once. A bar that one of them has
/// reached counts for all.
class SlicedSearch {
 public:
  /// The index is that of the records; it and the query's words are referred to. Of the blocks, in the order of
  /// the best scores that they can hold, Run() searches the first numBlocks.
  SlicedSearch(const SlicedIndex& index, const RecordTable& records, const QueryBits& query,
               const QXFPDatabaseOptions& options, std::size_t numBlocks)
      : index_(index),
        scorer_(options, records.NumBits(), query.numSet),
        filter_(MakeFilter(options, records, query)),
        query_(index, query, scorer_, options.GetDescendingOrder(), numBlocks),
        isDescending_(options.GetDescendingOrder()),
        wantsMostSimilar_(WantsMostSimilar(options)),
        bar_(Worst()) {}

  const SlicedQuery& Query() const { return query_; }

  /// One thread's search of whole blocks, into a hit list of its own.
  template <class Hits>
  class Part;

  /// Searches the blocks together with the other threads that call it.
  /// onSearched(number of records): called as blocks are done with.
  /// Errors   what the list and the function throw.
  template <class Hits, class OnSearched>
  void Run(Hits& hits, OnSearched onSearched);

  /// Ends the threads' Run() soon.
  void Stop() { next_ = query_.bestFirst.size(); }

 private:
  double Worst() const {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return isDescending_ ? -infinity : infinity;
  }
  double Better(double a, double b) const { return isDescending_ ? std::max(a, b) : std::min(a, b); }

  void ShareBar(double bar) {
    double shared = bar_;
    while (Better(shared, bar) != shared && !bar_.compare_exchange_weak(shared, bar)) {
    }
  }

  const SlicedIndex& index_;
  const Scorer scorer_;
  const CandidateFilter filter_;
  const SlicedQuery query_;
  const bool isDescending_;
  const bool wantsMostSimilar_;
  std::atomic<double> bar_;           // the best that any thread has
  std::atomic<std::size_t> next_{0};  // of the blocks in the query's order
};

template <class Hits>
class SlicedSearch::Part {
 public:
  Part(SlicedSearch& search, Hits& hits) : search_(search), hits_(hits), filter_(search.filter_) {}

  /// Only where the most similar records are wanted: there the bit count nearest to the query's is the best.
  bool CanHoldHit(const SlicedQuery::Block& block) {
    RaiseBar();
    return !search_.wantsMostSimilar_ || filter_.CanPass(block.nearestBits);
  }

  /// How many bits a record of the block must share to become a hit.
  std::uint32_t Least(const SlicedQuery::Block& block) {
    RaiseBar();
    return filter_.LeastShared(block.fewestBits);
  }

  /// Takes the hits of a block, from counts that may be 0 where they are below the least. The list's own bar may be
  /// below the shared one: then hits with such counts enter that are no hits, and fall out when lists are merged,
  /// since the thread whose bar it is has enough better ones.
  void Take(const SlicedQuery::Block& block, std::span<const std::uint32_t> shared) {
    // Few records pass where any does: those of a group are looked at one by one only then.
    constexpr std::size_t groupRecords = 32;
    const SlicedIndex& index = search_.index_;
    std::array<float, groupRecords> bitCounts;
    for (std::size_t i = 0; i < shared.size(); i += groupRecords) {
      const auto group = shared.subspan(i, std::min(groupRecords, shared.size() - i));
      const std::size_t first = index.First(block.number) + i;
      std::ranges::copy(index.bitCounts.subspan(first, group.size()), bitCounts.begin());
      filter_.OfferPassing(
          static_cast<std::uint32_t>(group.size()), bitCounts.data(), group.data(),
          [&](std::uint32_t k) { return search_.scorer_(index.bitCounts[first + k], group[k]); },
          [&](std::uint32_t k) { return index.places[first + k]; }, hits_);
    }
    search_.ShareBar(hits_.GetBar().GetScore());
  }

 private:
  void RaiseBar() { filter_.SetBar(search_.Better(hits_.GetBar().GetScore(), search_.bar_)); }

  SlicedSearch& search_;
  Hits& hits_;
  CandidateFilter filter_;
};

template <class Hits, class OnSearched>
void SlicedSearch::Run(Hits& hits, OnSearched onSearched) {
  Part<Hits> part(*this, hits);
  const auto claim = [&]() -> std::optional<SlicedQuery::Block> {
    for (std::size_t i; (i = next_.fetch_add(1)) < query_.bestFirst.size();) {
      const SlicedQuery::Block& block = query_.bestFirst[i];
      if (part.CanHoldHit(block)) return block;
      onSearched(index_.Size(block.number));
    }
    return std::nullopt;
  };
  ScanSlices(
      index_, query_, claim, [&](const SlicedQuery::Block& block) { return part.Least(block); },
      [&](const SlicedQuery::Block& block, std::span<const std::uint32_t> shared) {
        part.Take(block, shared);
      },
      [&](const SlicedQuery::Block& block) { onSearched(index_.Size(block.number)); });
}

}  // namespace QXFingrix
