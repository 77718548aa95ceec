#pragma once

namespace QXFingrix {

/// One hit of a similarity search: which entry of the searched collection, and its score.
class QXSimScore {
 public:
  /// The index of a score that belongs to no entry.
  static constexpr unsigned NoIndex = 4294967295U;

  constexpr QXSimScore() = default;
  constexpr QXSimScore(unsigned idx, double score) : score_(score), idx_(idx) {}

  constexpr unsigned GetIdx() const { return idx_; }
  constexpr double GetScore() const { return score_; }

  friend constexpr bool operator==(const QXSimScore&, const QXSimScore&) = default;

 private:
  double score_ = 0.0;
  unsigned idx_ = NoIndex;
};

/// One pair of a comparison all against all: two entries of one collection and their score.
class QXSimScorePair {
 public:
  constexpr QXSimScorePair() = default;
  constexpr QXSimScorePair(unsigned first, unsigned second, float score)
      : first_(first), second_(second), score_(score) {}

  constexpr unsigned GetFirstIdx() const { return first_; }
  constexpr unsigned GetSecondIdx() const { return second_; }
  constexpr float GetScore() const { return score_; }

  friend constexpr bool operator==(const QXSimScorePair&, const QXSimScorePair&) = default;

 private:
  unsigned first_ = QXSimScore::NoIndex;
  unsigned second_ = QXSimScore::NoIndex;
  float score_ = 0.0F;
};

}  // namespace QXFingrix
