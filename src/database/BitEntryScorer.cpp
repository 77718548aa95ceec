#include "database/BitEntryScorer.h"

#include <algorithm>

#include "QXFingrix/QXSimilarity.h"
#include "database/BitCountLane.h"

namespace QXFingrix {

namespace {

// The filter keeps 8 bytes for each bit of a fingerprint; beyond this it would cost more than it saves.
constexpr unsigned maxFilteredBits = 65536;

constexpr std::size_t blockSize = 256;  // so that a block's counts are read while it is in the first cache

}  // namespace

BitEntryScorer::BitEntryScorer(const FingerPrintStore& store, const QXFingerPrint& query,
                               const Measure& measure, bool descending)
    : store_(store),
      query_(query),
      formula_(measure.Formula()),
      descending_(descending),
      scorer_(measure, query.GetSize(), query.CountBits()) {
  if (measure.IsMonotone() && query.GetSize() <= maxFilteredBits) {
    filter_.emplace(scorer_, descending, query.GetSize(), query.CountBits());
  }
}

template <class Visit, class VisitOther>
void BitEntryScorer::ForBlocks(unsigned lane, unsigned begin, unsigned end, Visit visit,
                               VisitOther visitOther) {
  const auto countAnd = QXSystem::QXGetBitCountKernel().countAnd;
  const std::span<const std::uint64_t> query = query_.GetWords();
  std::array<std::uint32_t, blockSize> shared;
  store_.ForRuns(lane, begin, end, blockSize, [&](const Block& block) {
    if (block.numBits == query_.GetSize()) {
      countAnd(query.data(), query.size(), block.words, query.size(), block.entries.size(), shared.data());
      visit(block, shared.data());
    } else {
      for (const unsigned i : block.entries) visitOther(i);
    }
  });
}

void BitEntryScorer::Score(unsigned begin, unsigned end, QXSimScore* out) {
  for (unsigned lane = 0; lane < store_.NumLanes(); ++lane) {
    ForBlocks(
        lane, begin, end,
        [&](const Block& block, const std::uint32_t* shared) {
          for (std::size_t k = 0; k < block.entries.size(); ++k) {
            const unsigned i = block.entries[k];
            out[i - begin] = QXSimScore(i, double{scorer_(block.bitCounts[k], shared[k])});
          }
        },
        [&](unsigned i) { out[i - begin] = QXSimScore(i, double{ScoreOtherSize(i)}); });
  }
}

// The lanes nearest to the query's come first: they have the best similarities and raise the bar.
void BitEntryScorer::Offer(unsigned begin, unsigned end, QXFPDatabaseHitList& hits) {
  const unsigned numLanes = store_.NumLanes();
  const unsigned above = std::min(BitCountLane(query_.CountBits()), numLanes);
  unsigned numBelow = above;  // lanes still to come below and, from `next` on, above
  for (unsigned next = above; next < numLanes || numBelow > 0;) {
    if (next < numLanes) OfferLane(next++, begin, end, hits);
    if (numBelow > 0) OfferLane(--numBelow, begin, end, hits);
  }
}

bool BitEntryScorer::CanReach(unsigned lane, double bar) const {
  if (!filter_ || !store_.HasOneSize(lane, query_.GetSize())) return true;
  const unsigned last = std::min(FirstBitCount(lane + 1) - 1, query_.GetSize());
  for (unsigned bits = FirstBitCount(lane); bits <= last; ++bits) {
    if (filter_->CanReach(bits, bar)) return true;
  }
  return false;
}

void BitEntryScorer::OfferLane(unsigned lane, unsigned begin, unsigned end, QXFPDatabaseHitList& hits) {
  if (!CanReach(lane, hits.GetBar().GetScore())) return;
  ForBlocks(
      lane, begin, end,
      [&](const Block& block, const std::uint32_t* shared) { OfferBlock(block, shared, hits); },
      [&](unsigned i) { hits.AddHit(QXSimScore(i, double{ScoreOtherSize(i)})); });
}

void BitEntryScorer::OfferBlock(const Block& block, const std::uint32_t* shared, QXFPDatabaseHitList& hits) {
  const auto hitOf = [&](std::size_t k) {
    return QXSimScore(block.entries[k], double{scorer_(block.bitCounts[k], shared[k])});
  };
  const auto size = static_cast<std::uint32_t>(block.entries.size());
  if (!filter_) {
    for (std::uint32_t k = 0; k < size; ++k) hits.AddHit(hitOf(k));
    return;
  }
  const auto bitsOf = [&](std::uint32_t k) { return block.bitCounts[k]; };
  std::array<std::uint32_t, blockSize> candidates;
  const std::uint32_t numCandidates = filter_->ListPassing(size, bitsOf, shared, candidates.data());
  for (const std::uint32_t k : std::span(candidates.data(), numCandidates)) {
    if (!filter_->Passes(bitsOf(k), shared[k])) continue;  // narrowed since
    const QXSimScore hit = hitOf(k);
    if (hits.AddHit(hit)) continue;
    const double bar = hits.GetBar().GetScore();
    const bool isWorse = descending_ ? hit.GetScore() < bar : hit.GetScore() > bar;
    if (isWorse) filter_->Narrow(bitsOf(k), bar);
  }
}

float BitEntryScorer::ScoreOtherSize(unsigned i) {
  store_.Load(i, entry_);
  SimCounts counts;
  return QXGetBitCounts(query_, entry_, &counts.onlyA, &counts.onlyB, &counts.both, &counts.neither)
             ? formula_(counts)
             : 0.0F;
}

}  // namespace QXFingrix
