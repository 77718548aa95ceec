#pragma once

#include <memory>
#include <utility>

#include "QXFingrix/QXSimScore.h"

namespace QXFingrix {

/// Compares one query with the entries of a database, block by block. It may learn while it works: one thread
/// uses it, for one search.
class EntryScorer {
 public:
  static constexpr unsigned blockSize = 256;  // so that a block's counts and scores stay in the first cache

  virtual ~EntryScorer() = default;

  /// Writes the scores of the entries from begin to end - 1 in their order.
  /// Shape    out: end - begin scores; end - begin at most blockSize.
  virtual void Score(unsigned begin, unsigned end, QXSimScore* out) = 0;

  /// The same, but entries that cannot reach the bar may be left out. Returns the number of scores written.
  /// Shape    bar: never looser than in an earlier call.
  virtual unsigned ScoreReaching(double /*bar*/, unsigned begin, unsigned end, QXSimScore* out) {
    Score(begin, end, out);
    return end - begin;
  }
};

/// A scorer that takes one entry after the other: scoreOf(index) is a float.
template <class ScoreOf>
std::unique_ptr<EntryScorer> MakeEntryScorer(ScoreOf scoreOf) {
  class OneByOne final : public EntryScorer {
   public:
    explicit OneByOne(ScoreOf scoreOf) : scoreOf_(std::move(scoreOf)) {}
    void Score(unsigned begin, unsigned end, QXSimScore* out) override {
      for (unsigned i = begin; i < end; ++i) *out++ = QXSimScore(i, double{scoreOf_(i)});
    }

   private:
    ScoreOf scoreOf_;
  };
  return std::make_unique<OneByOne>(std::move(scoreOf));
}

}  // namespace QXFingrix
