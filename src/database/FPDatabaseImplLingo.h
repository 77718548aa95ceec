#pragma once

#include <memory>

#include "database/FPDatabaseImplBase.h"
#include "database/WordArena.h"

namespace QXFingrix {

/// The database of Lingo fingerprints, whose texts are compared with a profile of the query.
class QXFPDatabaseImplLingo final : public QXFPDatabaseImplBase {
 public:
  using QXFPDatabaseImplBase::QXFPDatabaseImplBase;

  void SetSimFunc(unsigned measure, bool descending) override;
  void SetSimFunc(const QXSimFuncBase& func, bool descending) override;

 private:
  void Append(const QXFingerPrint& fp) override { Store().Append(fp, words_); }
  std::unique_ptr<EntryScorer> MakeScorer(const Query& query) const override;

  MeasureFormula measure_{QXSimMeasure::Tanimoto};
  WordArena words_;
};

}  // namespace QXFingrix
