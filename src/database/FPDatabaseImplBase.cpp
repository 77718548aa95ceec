#include "database/FPDatabaseImplBase.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "QXSystem/QXErrorHandler.h"
#include "database/WithinMemory.h"

namespace QXFingrix {

using QXSystem::QXThrow;
using ScoreIter = QXSystem::QXIter<QXSimScore>;

namespace {

// Frozen: the coefficients of Tversky chosen by number. Beta is not the float nearest to 0.05.
constexpr auto tverskyAlpha = std::bit_cast<float>(std::uint32_t{0x3F733333});
constexpr auto tverskyBeta = std::bit_cast<float>(std::uint32_t{0x3D4CCCD0});

struct Range {
  unsigned begin;
  unsigned end;
};

Range MakeRange(unsigned begin, unsigned end, unsigned numEntries) {
  const unsigned last = end == 0 ? numEntries : std::min(end, numEntries);
  return {std::min(begin, last), last};
}

// Calls visit(begin, end) for the blocks of a range in order.
template <class Visit>
void ForBlocks(Range range, Visit visit) {
  for (unsigned begin = range.begin; begin < range.end;) {
    const unsigned end = begin + std::min(EntryScorer::blockSize, range.end - begin);
    visit(begin, end);
    begin = end;
  }
}

std::vector<QXSimScore> AllScores(EntryScorer& scorer, Range range) {
  std::vector<QXSimScore> scores(range.end - range.begin);
  ForBlocks(range, [&](unsigned begin, unsigned end) {
    scorer.Score(begin, end, scores.data() + (begin - range.begin));
  });
  return scores;
}

std::vector<QXSimScore> ScoresReaching(double cutoff, bool descending, EntryScorer& scorer, Range range) {
  std::vector<QXSimScore> scores;
  std::array<QXSimScore, EntryScorer::blockSize> block;
  ForBlocks(range, [&](unsigned begin, unsigned end) {
    const unsigned size = scorer.ScoreReaching(cutoff, begin, end, block.data());
    std::copy_if(block.begin(), block.begin() + size, std::back_inserter(scores), [&](const QXSimScore& hit) {
      return descending ? hit.GetScore() >= cutoff : hit.GetScore() <= cutoff;
    });
  });
  return scores;
}

std::vector<QXSimScore> BestScores(QXFPDatabaseHitList& hits, EntryScorer& scorer, Range range) {
  std::array<QXSimScore, EntryScorer::blockSize> block;
  ForBlocks(range, [&](unsigned begin, unsigned end) {
    const unsigned size = scorer.ScoreReaching(hits.GetBar().GetScore(), begin, end, block.data());
    for (unsigned i = 0; i < size; ++i) hits.AddHit(block[i]);
  });
  hits.Sort();
  return hits.TakeHits();
}

}  // namespace

QXFPDatabaseImplBase::~QXFPDatabaseImplBase() = default;

unsigned QXFPDatabaseImplBase::AddFP(const QXFingerPrint& fp) {
  const unsigned index = store_.Size();
  if (!IsSameFPType(fp) || index == QXSimScore::NoIndex) return QXSimScore::NoIndex;
  PrepareEntry(fp);
  store_.Append(fp);
  return index;
}

void QXFPDatabaseImplBase::WarnUnknownMeasure() {
  QXThrow.Warning("QXFPDatabase::SetSimFunc() unknown similarity measure");
}

Measure QXFPDatabaseImplBase::ChooseMeasure(unsigned measure) {
  if (QXIsSimilarityMeasure(measure)) return {measure, tverskyAlpha, tverskyBeta};
  WarnUnknownMeasure();
  return {QXSimMeasure::Tanimoto};
}

Measure QXFPDatabaseImplBase::ChooseMeasure(const QXFPDatabaseOptions& options) {
  return {options.GetSimFunc(), options.GetTverskyAlpha(), options.GetTverskyBeta()};
}

ScoreIter QXFPDatabaseImplBase::GetScores(const QXFingerPrint& fp, unsigned begin, unsigned end) const {
  return FindScores(fp, nullptr, OwnSettings(0), begin, end);
}

ScoreIter QXFPDatabaseImplBase::GetSortedScores(const QXFingerPrint& fp, unsigned limit, unsigned begin,
                                                unsigned end) const {
  return FindSortedScores(fp, nullptr, OwnSettings(limit), begin, end);
}

ScoreIter QXFPDatabaseImplBase::GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const {
  return FindScores(fp, &options, options, 0, 0);
}

ScoreIter QXFPDatabaseImplBase::GetSortedScores(const QXFingerPrint& fp,
                                                const QXFPDatabaseOptions& options) const {
  return FindSortedScores(fp, &options, options, 0, 0);
}

QXFPDatabaseOptions QXFPDatabaseImplBase::OwnSettings(unsigned limit) const {
  QXFPDatabaseOptions settings;
  settings.SetLimit(limit);
  settings.SetDescendingOrder(descending_);
  if (hasCutoff_) settings.SetCutoff(cutoff_);
  return settings;
}

ScoreIter QXFPDatabaseImplBase::FindScores(const QXFingerPrint& fp, const QXFPDatabaseOptions* options,
                                           const QXFPDatabaseOptions& settings, unsigned begin,
                                           unsigned end) const {
  const Query query{fp, options, settings.GetDescendingOrder(), "QXFPDatabase::GetScores()"};
  return Search(query, [&](EntryScorer& scorer) {
    const Range range = MakeRange(begin, end, store_.Size());
    if (!settings.HasCutoff()) return AllScores(scorer, range);
    return ScoresReaching(double{settings.GetCutoff()}, query.descending, scorer, range);
  });
}

ScoreIter QXFPDatabaseImplBase::FindSortedScores(const QXFingerPrint& fp, const QXFPDatabaseOptions* options,
                                                 const QXFPDatabaseOptions& settings, unsigned begin,
                                                 unsigned end) const {
  const Query query{fp, options, settings.GetDescendingOrder(), "QXFPDatabase::GetSortedScores()"};
  return Search(query, [&](EntryScorer& scorer) {
    const auto hits = QXInitFPDatabaseHitList(store_.Size(), settings);
    return BestScores(*hits, scorer, MakeRange(begin, end, store_.Size()));
  });
}

template <class Find>
ScoreIter QXFPDatabaseImplBase::Search(const Query& query, Find find) const {
  if (!IsSameFPType(query.fp)) {
    QXThrow.Warning("%s fingerprint type mismatch!", query.caller);
    return {};
  }
  ScoreIter scores;
  WithinMemory(query.caller, [&] {
    const auto scorer = MakeScorer(query);
    if (scorer) scores = QXSystem::QXMakeVectorIter(find(*scorer));
  });
  return scores;
}

}  // namespace QXFingrix
