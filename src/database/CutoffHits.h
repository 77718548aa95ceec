#pragma once

#include <utility>
#include <vector>

#include "QXFingrix/QXSimScore.h"

namespace QXFingrix {

/// The hits that reach a cutoff, equal ones included; offered like to a hit list.
class CutoffHits {
 public:
  CutoffHits(double cutoff, bool descending) : cutoff_(cutoff), descending_(descending) {}

  QXSimScore GetBar() const { return QXSimScore(QXSimScore::NoIndex, cutoff_); }
  /// Whether the hit is taken.
  bool AddHit(const QXSimScore& hit) {
    if (!(descending_ ? hit.GetScore() >= cutoff_ : hit.GetScore() <= cutoff_)) return false;
    hits_.push_back(hit);
    return true;
  }
  /// Sorts by index; no two hits have the same.
  /// Cost     O(hits + largest index / 64).
  void Sort();
  std::vector<QXSimScore> TakeHits() { return std::move(hits_); }

 private:
  double cutoff_;
  bool descending_;
  std::vector<QXSimScore> hits_;
};

}  // namespace QXFingrix
