#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "QXSystem/QXIter.h"

namespace QXSystem {

/// Keeps the best `limit` of many hits in amortised constant time per offer.
///
/// A hit is accepted when it is strictly better than the sentinel and, once anything has been cut away, when
/// it comes before the worst hit kept. Accepted hits are appended; above 2 * limit of them the best `limit`
/// are selected and the rest cut away. So the result is the best `limit` of all hits offered, in the order
/// "better first, equals by the tie rule", whatever order they were offered in.
/// Threads  one thread at a time.
template <class T>
class QXHitList {
 public:
  using Comparator = bool (*)(const T&, const T&);

  /// `better`: the first hit's score is strictly better. `tie`: the first of two hits of equal score comes
  /// first; a total order on them. Limit 0 accepts nothing; a large limit reserves nothing beyond a few
  /// thousand hits.
  QXHitList(unsigned limit, Comparator better, Comparator tie, T sentinel)
      : limit_(limit), better_(better), tie_(tie), sentinel_(sentinel), bar_(std::move(sentinel)) {
    hits_.reserve(std::min(Capacity(), maxReserve));
  }

  /// Offers a hit; true when it was accepted (a later one may still displace it).
  bool AddHit(const T& hit) {
    if (!Accepts(hit)) return false;
    hits_.push_back(hit);
    if (hits_.size() > Capacity()) Cut();
    return true;
  }

  /// What an offer must beat: the sentinel or, once hits have been cut away, the worst hit kept then.
  const T& GetBar() const { return bar_; }

  std::size_t NumHits() const { return hits_.size(); }
  unsigned GetLimit() const { return limit_; }

  /// Orders the best min(limit, NumHits()) hits, best first, and cuts the others away.
  void Sort() {
    const std::size_t numKept = std::min<std::size_t>(limit_, hits_.size());
    const auto keptEnd = hits_.begin() + static_cast<std::ptrdiff_t>(numKept);
    const bool isCut = keptEnd != hits_.end();
    // Several times as fast as partial_sort once there are thousands of hits.
    if (isCut) std::nth_element(hits_.begin(), keptEnd, hits_.end(), Order());
    std::sort(hits_.begin(), keptEnd, Order());
    if (!isCut) return;
    hits_.erase(keptEnd, hits_.end());
    SetBar(hits_.back());
  }

  /// In order after Sort(); before it, possibly more than `limit` hits in no order.
  const std::vector<T>& GetHits() const { return hits_; }
  QXIter<T> GetIter() const { return QXMakeVectorIter(hits_); }
  /// Moves the hits out; the list keeps its bar.
  std::vector<T> TakeHits() { return std::exchange(hits_, {}); }

 private:
  static constexpr std::size_t maxReserve = 4096;

  std::size_t Capacity() const { return 2 * std::size_t{limit_}; }

  bool Precedes(const T& a, const T& b) const { return better_(a, b) || (!better_(b, a) && tie_(a, b)); }
  auto Order() const {
    return [this](const T& a, const T& b) { return Precedes(a, b); };
  }

  // The sentinel is asked again in a tie because a score that compares with nothing (NaN) ties with
  // everything.
  bool Accepts(const T& hit) const {
    if (limit_ == 0) return false;
    if (better_(hit, bar_)) return true;
    return isCut_ && better_(hit, sentinel_) && Precedes(hit, bar_);
  }

  void Cut() {
    const auto worstKept = hits_.begin() + static_cast<std::ptrdiff_t>(limit_ - 1);
    std::nth_element(hits_.begin(), worstKept, hits_.end(), Order());
    hits_.erase(worstKept + 1, hits_.end());
    SetBar(hits_.back());
  }

  void SetBar(const T& worstKept) {
    bar_ = worstKept;
    isCut_ = true;
  }

  unsigned limit_;
  Comparator better_;
  Comparator tie_;
  T sentinel_;
  T bar_;
  bool isCut_ = false;
  std::vector<T> hits_;
};

}  // namespace QXSystem
