#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXSimScore.h"

namespace QXFingrix {

/// The hits of several queries, a list for each. Threads fill lists of their own: each keeps the best of what its
/// thread has seen in one total order of hits, so the best of all lists are the best of all, whoever saw what.
class HitLists {
 public:
  /// Errors   std::bad_alloc.
  HitLists(std::size_t numQueries, std::uint64_t numRecords, const QXFPDatabaseOptions& options)
      : lists_(numQueries) {
    for (auto& list : lists_) list = QXInitFPDatabaseHitList(numRecords, options);
  }

  QXFPDatabaseHitList& operator[](std::size_t query) { return *lists_[query]; }

  /// Adds what a thread has found.
  /// Threads  any number may call it at once.
  /// Errors   std::bad_alloc.
  void Merge(const HitLists& found) {
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < lists_.size(); ++i) {
      for (const QXSimScore& hit : found.lists_[i]->GetHits()) lists_[i]->AddHit(hit);
    }
  }

  /// Moves the hits out, best first.
  void TakeSorted(std::vector<std::vector<QXSimScore>>& hits) {
    for (auto& list : lists_) {
      list->Sort();
      hits.push_back(list->TakeHits());
    }
  }

 private:
  std::vector<std::unique_ptr<QXFPDatabaseHitList>> lists_;
  std::mutex mutex_;
};

}  // namespace QXFingrix
