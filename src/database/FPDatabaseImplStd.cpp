#include "database/FPDatabaseImplStd.h"

#include <optional>
#include <utility>

#include "QXSystem/QXErrorHandler.h"
#include "database/BitEntryScorer.h"

namespace QXFingrix {

namespace {

template <unsigned Measure>
bool Is(const QXSimFuncBase& func) {
  return dynamic_cast<const QXMeasureSim<Measure>*>(&func) != nullptr;
}

struct MeasureRow {
  unsigned measure;
  bool (*is)(const QXSimFuncBase& func);
};

constexpr MeasureRow plainMeasures[] = {
    {QXSimMeasure::Tanimoto, Is<QXSimMeasure::Tanimoto>},   {QXSimMeasure::Cosine, Is<QXSimMeasure::Cosine>},
    {QXSimMeasure::Dice, Is<QXSimMeasure::Dice>},           {QXSimMeasure::Euclid, Is<QXSimMeasure::Euclid>},
    {QXSimMeasure::Manhattan, Is<QXSimMeasure::Manhattan>},
};

// One of the library's own measures by number; nothing for another one.
std::optional<MeasureFormula> FindMeasure(const QXSimFuncBase& func) {
  for (const MeasureRow& row : plainMeasures) {
    if (row.is(func)) return MeasureFormula(row.measure);
  }
  if (const auto* tversky = dynamic_cast<const QXTverskySim*>(&func)) {
    return MeasureFormula(QXSimMeasure::Tversky, tversky->GetAlpha(), tversky->GetBeta());
  }
  return std::nullopt;
}

}  // namespace

void QXFPDatabaseImplStd::SetSimFunc(unsigned measure, bool descending) {
  SetDescendingOrder(descending);
  measure_ = ChooseMeasure(measure);
  userFunc_.reset();
}

void QXFPDatabaseImplStd::SetSimFunc(const QXSimFuncBase& func, bool descending) {
  if (const std::optional<MeasureFormula> measure = FindMeasure(func)) {
    measure_ = *measure;
    userFunc_.reset();
  } else {
    std::unique_ptr<const QXSimFuncBase> copy(func.CreateCopy());
    if (!copy) {
      QXSystem::QXThrow.Warning("QXFPDatabase::SetSimFunc() the similarity measure gives no copy of itself");
      return;
    }
    userFunc_ = std::move(copy);
  }
  SetDescendingOrder(descending);
}

std::unique_ptr<EntryScorer> QXFPDatabaseImplStd::MakeScorer(const Query& query) const {
  if (!query.hasOptions && userFunc_) {
    return MakeEntryScorer([this, &query = query.fp, entry = QXFingerPrint()](unsigned i) mutable {
      Store().Load(i, entry);
      return (*userFunc_)(query, entry);
    });
  }
  return std::make_unique<BitEntryScorer>(Store(), bins_, query.fp, query.GetMeasure(measure_),
                                          query.settings.GetDescendingOrder());
}

}  // namespace QXFingrix
