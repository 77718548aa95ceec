#pragma once

#include <memory>
#include <utility>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXSimScore.h"
#include "database/CutoffHits.h"

namespace QXFingrix {

/// Compares one query with the entries of a database. It may learn while it works: one thread uses it, for
/// one search.
class EntryScorer {
 public:
  virtual ~EntryScorer() = default;

  /// Writes the scores of the entries from begin to end - 1 in their order.
  /// Shape    out: end - begin scores.
  virtual void Score(unsigned begin, unsigned end, QXSimScore* out) = 0;

  /// Offers the scores of those entries, in any order. Scores that would not be taken may be left out.
  virtual void Offer(unsigned begin, unsigned end, QXFPDatabaseHitList& hits) = 0;
  virtual void Offer(unsigned begin, unsigned end, CutoffHits& hits) = 0;
};

/// A scorer that takes one entry after the other: scoreOf(index) is a float.
template <class ScoreOf>
std::unique_ptr<EntryScorer> MakeEntryScorer(ScoreOf scoreOf) {
  class OneByOne final : public EntryScorer {
   public:
    explicit OneByOne(ScoreOf scoreOf) : scoreOf_(std::move(scoreOf)) {}
    void Score(unsigned begin, unsigned end, QXSimScore* out) override {
      for (unsigned i = begin; i < end; ++i) *out++ = HitOf(i);
    }
    void Offer(unsigned begin, unsigned end, QXFPDatabaseHitList& hits) override {
      for (unsigned i = begin; i < end; ++i) hits.AddHit(HitOf(i));
    }
    void Offer(unsigned begin, unsigned end, CutoffHits& hits) override {
      for (unsigned i = begin; i < end; ++i) hits.AddHit(HitOf(i));
    }

   private:
    QXSimScore HitOf(unsigned i) { return QXSimScore(i, double{scoreOf_(i)}); }

    ScoreOf scoreOf_;
  };
  return std::make_unique<OneByOne>(std::move(scoreOf));
}

}  // namespace QXFingrix
