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

}  // namespace

QXFPDatabaseImplBase::~QXFPDatabaseImplBase() = default;

unsigned QXFPDatabaseImplBase::AddFP(const QXFingerPrint& fp) {
  const unsigned index = store_.Size();
  if (!IsSameFPType(fp) || index == QXSimScore::NoIndex) return QXSimScore::NoIndex;
  Append(fp);
  return index;
}

void QXFPDatabaseImplBase::WarnUnknownMeasure() {
  QXThrow.Warning("QXFPDatabase::SetSimFunc() unknown similarity measure");
}

MeasureFormula QXFPDatabaseImplBase::ChooseMeasure(unsigned measure) {
  if (QXIsSimilarityMeasure(measure)) return MeasureFormula(measure, tverskyAlpha, tverskyBeta);
  WarnUnknownMeasure();
  return MeasureFormula(QXSimMeasure::Tanimoto);
}

MeasureFormula QXFPDatabaseImplBase::Query::GetMeasure(const MeasureFormula& installed) const {
  if (!hasOptions) return installed;
  return MeasureFormula(settings.GetSimFunc(), settings.GetTverskyAlpha(), settings.GetTverskyBeta());
}

ScoreIter QXFPDatabaseImplBase::GetScores(const QXFingerPrint& fp, unsigned begin, unsigned end) const {
  return FindScores({QueryName::getScores, fp, OwnSettings(0), false, begin, end});
}

ScoreIter QXFPDatabaseImplBase::GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const {
  return FindScores({QueryName::getScores, fp, options, true});
}

ScoreIter QXFPDatabaseImplBase::GetSortedScores(const QXFingerPrint& fp, unsigned limit, unsigned begin,
                                                unsigned end) const {
  return FindSortedScores({QueryName::getSortedScores, fp, OwnSettings(limit), false, begin, end});
}

ScoreIter QXFPDatabaseImplBase::GetSortedScores(const QXFingerPrint& fp,
                                                const QXFPDatabaseOptions& options) const {
  return FindSortedScores({QueryName::getSortedScores, fp, options, true});
}

QXFPDatabaseOptions QXFPDatabaseImplBase::OwnSettings(unsigned limit) const {
  QXFPDatabaseOptions settings;
  settings.SetLimit(limit);
  settings.SetDescendingOrder(descending_);
  if (hasCutoff_) settings.SetCutoff(cutoff_);
  return settings;
}

ScoreIter QXFPDatabaseImplBase::FindScores(const Query& query) const {
  return Search(query, [&](EntryScorer& scorer, unsigned begin, unsigned end) {
    if (!query.settings.HasCutoff()) {
      std::vector<QXSimScore> scores(end - begin);
      scorer.Score(begin, end, scores.data());
      return scores;
    }
    CutoffHits hits(double{query.settings.GetCutoff()}, query.settings.GetDescendingOrder());
    scorer.Offer(begin, end, hits);
    hits.Sort();
    return hits.TakeHits();
  });
}

ScoreIter QXFPDatabaseImplBase::FindSortedScores(const Query& query) const {
  return Search(query, [&](EntryScorer& scorer, unsigned begin, unsigned end) {
    const auto hits = QXInitFPDatabaseHitList(store_.Size(), query.settings);
    scorer.Offer(begin, end, *hits);
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
  const unsigned size = store_.Size();
  const unsigned end = query.end == 0 ? size : std::min(query.end, size);
  const unsigned begin = std::min(query.begin, end);
  ScoreIter scores;
  WithinMemory(query.caller, [&] {
    const auto scorer = MakeScorer(query);
    if (scorer) scores = QXSystem::QXMakeVectorIter(find(*scorer, begin, end));
  });
  return scores;
}

}  // namespace QXFingrix
