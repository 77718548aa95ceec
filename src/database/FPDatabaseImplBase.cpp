#include "database/FPDatabaseImplBase.h"

#include <algorithm>
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

}  // namespace

QXFPDatabaseImplBase::~QXFPDatabaseImplBase() = default;

unsigned QXFPDatabaseImplBase::AddFP(const QXFingerPrint& fp) {
  const unsigned index = store_.Size();
  if (!IsSameFPType(fp) || index == QXSimScore::NoIndex) return QXSimScore::NoIndex;
  const Place place = PrepareEntry(fp);
  store_.Append(fp, place.lane, place.bitCount);
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
    std::vector<QXSimScore> scores(range.end - range.begin);
    scorer.Score(range.begin, range.end, scores.data());
    if (settings.HasCutoff()) {
      const double cutoff = settings.GetCutoff();
      std::erase_if(scores, [&](const QXSimScore& hit) {
        return !(settings.GetDescendingOrder() ? hit.GetScore() >= cutoff : hit.GetScore() <= cutoff);
      });
    }
    return scores;
  });
}

ScoreIter QXFPDatabaseImplBase::FindSortedScores(const QXFingerPrint& fp, const QXFPDatabaseOptions* options,
                                                 const QXFPDatabaseOptions& settings, unsigned begin,
                                                 unsigned end) const {
  const Query query{fp, options, settings.GetDescendingOrder(), "QXFPDatabase::GetSortedScores()"};
  return Search(query, [&](EntryScorer& scorer) {
    const auto hits = QXInitFPDatabaseHitList(store_.Size(), settings);
    const Range range = MakeRange(begin, end, store_.Size());
    scorer.Offer(range.begin, range.end, *hits);
    hits->Sort();
    return hits->TakeHits();
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
