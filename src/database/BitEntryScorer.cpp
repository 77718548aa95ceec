#include "database/BitEntryScorer.h"

#include <algorithm>
#include <array>
#include <span>

#include "QXFingrix/QXSimilarity.h"
#include "QXSystem/QXBitCountKernel.h"

namespace QXFingrix {

namespace {

constexpr std::size_t blockSize = 256;  // so that a block's counts are read while it is in the first cache

}  // namespace

BitEntryScorer::BitEntryScorer(const FingerPrintStore& store, const BitCountBins& bins,
                               const QXFingerPrint& query, const MeasureFormula& measure, bool descending)
    : store_(store),
      bins_(bins),
      query_(query),
      queryBits_(query.CountBits()),
      measure_(measure),
      scorer_(measure, query.GetSize(), queryBits_),
      filter_({measure.GetMeasure(), measure.GetAlpha(), measure.GetBeta(), descending}, query.GetSize(),
              queryBits_) {}

template <class Visit, class VisitOther>
void BitEntryScorer::ForBlocks(unsigned bin, unsigned begin, unsigned end, Visit visit,
                               VisitOther visitOther) {
  const auto countAnd = QXSystem::QXGetBitCountKernel().countAnd;
  const std::span<const std::uint64_t> query = query_.GetWords();
  std::array<std::uint32_t, blockSize> shared;
  bins_.ForRuns(bin, begin, end, blockSize, [&](const Block& block) {
    if (block.numBits == query_.GetSize()) {
      countAnd(query.data(), query.size(), block.words, query.size(), block.entries.size(), shared.data());
      visit(block, shared.data());
    } else {
      for (const unsigned i : block.entries) visitOther(i);
    }
  });
}

void BitEntryScorer::Score(unsigned begin, unsigned end, QXSimScore* out) {
  for (unsigned bin = 0; bin < bins_.NumBins(); ++bin) {
    ForBlocks(
        bin, begin, end,
        [&](const Block& block, const std::uint32_t* shared) {
          for (std::size_t k = 0; k < block.entries.size(); ++k) {
            const unsigned i = block.entries[k];
            out[i - begin] = QXSimScore(i, double{scorer_(block.bitCounts[k], shared[k])});
          }
        },
        [&](unsigned i) { out[i - begin] = QXSimScore(i, double{ScoreOtherSize(i)}); });
  }
}

void BitEntryScorer::Offer(unsigned begin, unsigned end, QXFPDatabaseHitList& hits) {
  OfferBins(begin, end, hits);
}

void BitEntryScorer::Offer(unsigned begin, unsigned end, CutoffHits& hits) {
  OfferBins(begin, end, hits);
}

// The bins nearest to the query's come first: when similar entries are wanted, the best are there and raise
// the bar.
template <class Hits>
void BitEntryScorer::OfferBins(unsigned begin, unsigned end, Hits& hits) {
  const unsigned numBins = bins_.NumBins();
  const unsigned above = std::min(BitCountBins::BinOf(queryBits_), numBins);
  unsigned numBelow = above;  // bins still to come below and, from `next` on, above
  for (unsigned next = above; next < numBins || numBelow > 0;) {
    if (next < numBins) OfferBin(next++, begin, end, hits);
    if (numBelow > 0) OfferBin(--numBelow, begin, end, hits);
  }
}

bool BitEntryScorer::CanPass(unsigned bin) const {
  if (!bins_.HasOneSize(bin, query_.GetSize())) return true;
  const unsigned last = std::min(BitCountBins::FirstBitCount(bin + 1) - 1, query_.GetSize());
  for (unsigned bits = BitCountBins::FirstBitCount(bin); bits <= last; ++bits) {
    if (filter_.CanPass(bits)) return true;
  }
  return false;
}

template <class Hits>
void BitEntryScorer::OfferBin(unsigned bin, unsigned begin, unsigned end, Hits& hits) {
  filter_.SetBar(hits.GetBar().GetScore());
  if (!CanPass(bin)) return;
  ForBlocks(
      bin, begin, end,
      [&](const Block& block, const std::uint32_t* shared) { OfferBlock(block, shared, hits); },
      [&](unsigned i) { hits.AddHit(QXSimScore(i, double{ScoreOtherSize(i)})); });
}

template <class Hits>
void BitEntryScorer::OfferBlock(const Block& block, const std::uint32_t* shared, Hits& hits) {
  std::array<float, blockSize> bitCounts;
  std::ranges::transform(block.bitCounts, block.bitCounts + block.entries.size(), bitCounts.begin(),
                         [](unsigned bits) { return static_cast<float>(static_cast<int>(bits)); });
  filter_.OfferPassing(
      static_cast<std::uint32_t>(block.entries.size()), bitCounts.data(), shared,
      [&](std::uint32_t k) { return double{scorer_(block.bitCounts[k], shared[k])}; },
      [&](std::uint32_t k) { return block.entries[k]; }, hits);
}

float BitEntryScorer::ScoreOtherSize(unsigned i) {
  store_.Load(i, entry_);
  SimCounts counts;
  return QXGetBitCounts(query_, entry_, &counts.onlyA, &counts.onlyB, &counts.both, &counts.neither)
             ? measure_(counts)
             : 0.0F;
}

}  // namespace QXFingrix
