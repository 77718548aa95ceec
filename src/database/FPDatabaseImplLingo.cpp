#include "database/FPDatabaseImplLingo.h"

#include "QXChem/QXLingo.h"
#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

using QXSystem::QXThrow;

void QXFPDatabaseImplLingo::SetSimFunc(unsigned measure, bool descending) {
  SetDescendingOrder(descending);
  measure_ = ChooseMeasure(measure);
}

void QXFPDatabaseImplLingo::SetSimFunc(const QXSimFuncBase&, bool) {
  QXThrow.Warning(
      "QXFPDatabase::SetSimFunc() user defined similarity measure not allowed with Lingo database");
}

// Scores as the QXLingoSimFunc of the measure does, on the stored text instead of a fingerprint made of it.
std::unique_ptr<EntryScorer> QXFPDatabaseImplLingo::MakeScorer(const Query& query) const {
  QXChem::QXLingoSim profile(QXGetFPText(query.fp), 1);
  if (!profile.IsValid()) {
    QXThrow.Warning("%s cannot initialize lingo similarity!", query.caller);
    return nullptr;
  }
  return MakeEntryScorer(
      [this, measure = query.GetMeasure(measure_), profile = std::move(profile)](unsigned i) {
        SimCounts counts;
        profile.CountTerms(Store().GetText(i), &counts.onlyA, &counts.onlyB, &counts.both);
        return measure(counts);
      });
}

}  // namespace QXFingrix
