#pragma once

#include <cstdint>

#include "QXFingrix/QXSimScore.h"

namespace QXFingrix {

/// Tells from two bit counts whether a record can reach a bar, without computing its score.
///
/// Solved for the number c of bits that record and query share, "the score reaches the bar" is a bound on c
/// that is linear in the number a of the record's bits: c >= offset + slope a for most measures, c^2 for
/// Cosine, and <= where fewer shared bits are better. So a block of records is tested without a division, a
/// table or a branch. The bound is wider than all roundings, those of the scores and its own, so that too many
/// pass and never too few: what passes is scored exactly by the caller. This holds for any a and c, also for
/// those that contradict each other in a damaged file.
class CandidateFilter {
 public:
  /// What is compared: the measure with the coefficients that matter to Tversky, and which order is wanted.
  struct Search {
    unsigned measure;
    double alpha;
    double beta;
    bool descending;
  };

  /// Fingerprints have numBits bits, queryBits of them set in the query. At first everything passes.
  CandidateFilter(const Search& search, std::uint64_t numBits, std::uint64_t queryBits);

  /// The score that a record must reach, or tie with, from now on.
  void SetBar(double bar) {
    if (bar != bar_) Solve(bar);
  }

  bool Passes(float recordBits, std::uint32_t shared) const {
    const auto c = static_cast<float>(static_cast<std::int32_t>(shared));
    return sign_ * (isSquared_ ? c * c : c) >= offset_ + slope_ * recordBits;
  }

  /// Whether a record of a block passes.
  bool AnyPasses(std::uint32_t size, const float* recordBits, const std::uint32_t* shared) const {
    unsigned any = 0;
    for (std::uint32_t i = 0; i < size; ++i) any |= Passes(recordBits[i], shared[i]) ? 1U : 0U;
    return any != 0;
  }

  /// No record with at least minRecordBits bits passes with fewer shared bits than this.
  std::uint32_t LeastShared(float minRecordBits) const;

  /// Whether a record with recordBits bits passes if it shares as many as it can, or as few.
  bool CanPass(std::uint32_t recordBits) const;

  /// Offers to a list those of a block's records that pass; the list's bar becomes the filter's.
  /// Shape    recordBits and shared: `size` counts; scoreOf(i), indexOf(i): of record i.
  template <class ScoreOf, class IndexOf, class Hits>
  void OfferPassing(std::uint32_t size, const float* recordBits, const std::uint32_t* shared, ScoreOf scoreOf,
                    IndexOf indexOf, Hits& hits) {
    SetBar(hits.GetBar().GetScore());
    if (!AnyPasses(size, recordBits, shared)) return;
    for (std::uint32_t i = 0; i < size; ++i) {
      if (!Passes(recordBits[i], shared[i])) continue;
      if (hits.AddHit(QXSimScore(indexOf(i), scoreOf(i)))) SetBar(hits.GetBar().GetScore());
    }
  }

 private:
  void Solve(double bar);
  void PassEverything();
  void SetBound(double offset, double slope, double condition = 1.0);
  bool WantsMany() const { return sign_ > 0.0F; }

  Search search_;
  double numBits_;
  double queryBits_;
  double bar_;
  // A record passes when sign c, or c^2, is at least offset + slope a.
  float sign_;
  bool isSquared_;
  float offset_;
  float slope_;
};

}  // namespace QXFingrix
