#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "database/FPDatabaseImplBase.h"
#include "database/TokenIndex.h"
#include "database/WordArena.h"

namespace QXFingrix {

/// The database of unhashed fingerprints, which are compared by their tokens. Each entry keeps the numbers of
/// its tokens.
class QXFPDatabaseImplUnhashed final : public QXFPDatabaseImplBase {
 public:
  using QXFPDatabaseImplBase::QXFPDatabaseImplBase;

  void SetSimFunc(unsigned measure, bool descending) override;
  void SetSimFunc(const QXSimFuncBase& func, bool descending) override;

 private:
  using TokenNumbers = std::span<const std::uint32_t>;

  void Append(const QXFingerPrint& fp) override;
  std::unique_ptr<EntryScorer> MakeScorer(const Query& query) const override;

  TokenIndex tokens_;
  WordArena words_;                         // of fingerprints and token numbers
  std::vector<TokenNumbers> tokenNumbers_;  // of each entry
};

}  // namespace QXFingrix
