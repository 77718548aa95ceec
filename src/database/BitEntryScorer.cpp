#include "database/BitEntryScorer.h"

#include "QXFingrix/QXSimilarity.h"

namespace QXFingrix {

namespace {

// The filter keeps 8 bytes for each bit of a fingerprint; beyond this it would cost more than it saves.
constexpr unsigned maxFilteredBits = 65536;

}  // namespace

BitEntryScorer::BitEntryScorer(const FingerPrintStore& store, const std::vector<unsigned>& bitCounts,
                               const QXFingerPrint& query, const Measure& measure, bool descending)
    : store_(store),
      bitCounts_(bitCounts),
      query_(query),
      formula_(measure.Formula()),
      descending_(descending),
      scorer_(measure, query.GetSize(), query.CountBits()) {
  if (measure.IsMonotone() && query.GetSize() <= maxFilteredBits) {
    filter_.emplace(scorer_, descending, query.GetSize(), query.CountBits());
  }
}

template <class Visit>
QXSimScore* BitEntryScorer::ForRuns(unsigned begin, unsigned end, QXSimScore* out, Visit visit) {
  const auto countAnd = QXSystem::QXGetBitCountKernel().countAnd;
  const std::span<const std::uint64_t> query = static_cast<const QXFingerPrint&>(query_).GetWords();
  std::array<std::uint32_t, blockSize> shared;
  while (begin < end) {
    if (store_.GetNumBits(begin) != query_.GetSize()) {
      *out++ = QXSimScore(begin, double{ScoreOtherSize(begin)});
      ++begin;
      continue;
    }
    const unsigned size = store_.RunLength(begin, end);
    countAnd(query.data(), query.size(), store_.GetWords(begin), query.size(), size, shared.data());
    out = visit(begin, std::span<const std::uint32_t>(shared.data(), size), out);
    begin += size;
  }
  return out;
}

void BitEntryScorer::Score(unsigned begin, unsigned end, QXSimScore* out) {
  ForRuns(begin, end, out, [this](unsigned first, std::span<const std::uint32_t> shared, QXSimScore* to) {
    return ScoreRun(first, shared, to);
  });
}

unsigned BitEntryScorer::ScoreReaching(double bar, unsigned begin, unsigned end, QXSimScore* out) {
  const QXSimScore* const outEnd =
      ForRuns(begin, end, out, [&](unsigned first, std::span<const std::uint32_t> shared, QXSimScore* to) {
        return filter_ ? ScoreCandidates(bar, first, shared, to) : ScoreRun(first, shared, to);
      });
  return static_cast<unsigned>(outEnd - out);
}

QXSimScore* BitEntryScorer::ScoreRun(unsigned first, std::span<const std::uint32_t> shared,
                                     QXSimScore* out) const {
  for (unsigned i = 0; i < shared.size(); ++i) {
    *out++ = QXSimScore(first + i, double{scorer_(bitCounts_[first + i], shared[i])});
  }
  return out;
}

QXSimScore* BitEntryScorer::ScoreCandidates(double bar, unsigned first, std::span<const std::uint32_t> shared,
                                            QXSimScore* out) {
  const unsigned* const bitCounts = bitCounts_.data() + first;
  std::array<std::uint32_t, blockSize> candidates;
  const std::uint32_t numCandidates = filter_->ListPassing(
      static_cast<std::uint32_t>(shared.size()), [bitCounts](std::uint32_t i) { return bitCounts[i]; },
      shared.data(), candidates.data());
  for (const std::uint32_t i : std::span(candidates.data(), numCandidates)) {
    if (!filter_->Passes(bitCounts[i], shared[i])) continue;  // narrowed since
    const double score = scorer_(bitCounts[i], shared[i]);
    const bool isWorse = descending_ ? score < bar : score > bar;
    if (isWorse) {
      filter_->Narrow(bitCounts[i], bar);
    } else {
      *out++ = QXSimScore(first + i, score);
    }
  }
  return out;
}

float BitEntryScorer::ScoreOtherSize(unsigned i) {
  store_.Load(i, entry_);
  SimCounts counts;
  return QXGetBitCounts(query_, entry_, &counts.onlyA, &counts.onlyB, &counts.both, &counts.neither)
             ? formula_(counts)
             : 0.0F;
}

}  // namespace QXFingrix
