#pragma once

#include <memory>

#include "database/BitCountBins.h"
#include "database/FPDatabaseImplBase.h"

namespace QXFingrix {

/// The database of the hashed kinds, whose fingerprints are compared bit by bit.
class QXFPDatabaseImplStd final : public QXFPDatabaseImplBase {
 public:
  using QXFPDatabaseImplBase::QXFPDatabaseImplBase;

  void SetSimFunc(unsigned measure, bool descending) override;
  void SetSimFunc(const QXSimFuncBase& func, bool descending) override;

 private:
  void Append(const QXFingerPrint& fp) override { bins_.Append(fp, Store()); }
  std::unique_ptr<EntryScorer> MakeScorer(const Query& query) const override;

  BitCountBins bins_;
  MeasureFormula measure_{QXSimMeasure::Tanimoto};
  std::unique_ptr<const QXSimFuncBase> userFunc_;  // counts instead of the measure when there is one
};

}  // namespace QXFingrix
