#pragma once

#include <memory>

#include "database/FPDatabaseImplBase.h"

namespace QXFingrix {

/// The database of Lingo fingerprints, whose texts are compared with a profile of the query.
class QXFPDatabaseImplLingo final : public QXFPDatabaseImplBase {
 public:
  using QXFPDatabaseImplBase::QXFPDatabaseImplBase;

  void SetSimFunc(unsigned measure, bool descending) override;
  void SetSimFunc(const QXSimFuncBase& func, bool descending) override;

 private:
  Place PrepareEntry(const QXFingerPrint&) override { return {}; }
  std::unique_ptr<EntryScorer> MakeScorer(const Query& query) const override;

  Measure measure_;
};

}  // namespace QXFingrix
