#include "QXFingrix/QXFPDatabase.h"

#include "QXFingrix/QXMakeFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "database/FPDatabaseImplLingo.h"
#include "database/FPDatabaseImplStd.h"
#include "database/FPDatabaseImplUnhashed.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {

using QXSystem::QXThrow;
using ScoreIter = QXSystem::QXIter<QXSimScore>;

namespace {

std::unique_ptr<QXFPDatabaseImplBase> MakeImpl(const TypeRow& row, const QXFPTypeBase* type) {
  if (row.code == QXFPType::Lingo) return std::make_unique<QXFPDatabaseImplLingo>(type);
  if (row.shape == TypeShape::Unhashed) return std::make_unique<QXFPDatabaseImplUnhashed>(type);
  return std::make_unique<QXFPDatabaseImplStd>(type);
}

// The row of a code or, after the report, null.
const TypeRow* FindKnownRow(unsigned code) {
  const TypeRow* const row = FindTypeRow(code);
  if (!row) QXThrow.Error("QXFPDatabase::QXFPDatabase() unknown fingerprint type");
  return row;
}

// Runs find(fingerprint of the molecule); reports in the caller's name when it cannot be made.
template <class Find>
ScoreIter FindOfMolecule(const char* caller, const QXFPDatabaseImplBase* impl, const QXChem::QXMolBase& mol,
                         Find find) {
  if (!impl) return {};
  QXFingerPrint fp;
  if (QXMakeFP(fp, mol, impl->GetFPTypeBase())) return find(fp);
  QXThrow.Warning("%s the fingerprint of the molecule cannot be made!", caller);
  return {};
}

}  // namespace

QXFPDatabase::QXFPDatabase(unsigned fptype) {
  if (const TypeRow* row = FindKnownRow(fptype)) {
    impl_ = MakeImpl(*row, row->cached(row->version, row->defaults));
  }
}

QXFPDatabase::QXFPDatabase(const QXFPTypeBase* type) {
  if (const TypeRow* row = FindKnownRow(type ? type->GetFPType() : QXFPType::None)) {
    impl_ = MakeImpl(*row, type);
  }
}

QXFPDatabase::~QXFPDatabase() = default;
QXFPDatabase::QXFPDatabase(QXFPDatabase&& other) noexcept = default;
QXFPDatabase& QXFPDatabase::operator=(QXFPDatabase&& other) noexcept = default;

const QXFPTypeBase* QXFPDatabase::GetFPTypeBase() const {
  return impl_ ? impl_->GetFPTypeBase() : nullptr;
}

unsigned QXFPDatabase::NumFingerPrints() const {
  return impl_ ? impl_->NumFingerPrints() : 0;
}

QXSystem::QXIter<QXFingerPrint> QXFPDatabase::GetFingerPrints() const {
  return impl_ ? impl_->GetFingerPrints() : QXSystem::QXIter<QXFingerPrint>();
}

unsigned QXFPDatabase::AddFP(const QXFingerPrint& fp) {
  return impl_ ? impl_->AddFP(fp) : QXSimScore::NoIndex;
}

unsigned QXFPDatabase::AddFP(const QXChem::QXMolBase& mol) {
  QXFingerPrint fp;
  return impl_ && QXMakeFP(fp, mol, impl_->GetFPTypeBase()) ? impl_->AddFP(fp) : QXSimScore::NoIndex;
}

void QXFPDatabase::SetSimFunc(unsigned measure, bool descending) {
  if (impl_) impl_->SetSimFunc(measure, descending);
}

void QXFPDatabase::SetSimFunc(const QXSimFuncBase& func, bool descending) {
  if (impl_) impl_->SetSimFunc(func, descending);
}

void QXFPDatabase::SetCutoff(float cutoff) {
  if (impl_) impl_->SetCutoff(cutoff);
}

float QXFPDatabase::GetCutoff() const {
  return impl_ ? impl_->GetCutoff() : 0.0F;
}

bool QXFPDatabase::HasCutoff() const {
  return impl_ && impl_->HasCutoff();
}

void QXFPDatabase::ClearCutoff() {
  if (impl_) impl_->ClearCutoff();
}

void QXFPDatabase::SetDescendingOrder(bool descending) {
  if (impl_) impl_->SetDescendingOrder(descending);
}

bool QXFPDatabase::GetDescendingOrder() const {
  return !impl_ || impl_->GetDescendingOrder();
}

ScoreIter QXFPDatabase::GetScores(const QXFingerPrint& query, unsigned begin, unsigned end) const {
  return impl_ ? impl_->GetScores(query, begin, end) : ScoreIter();
}

ScoreIter QXFPDatabase::GetScores(const QXFingerPrint& query, const QXFPDatabaseOptions& options) const {
  return impl_ ? impl_->GetScores(query, options) : ScoreIter();
}

ScoreIter QXFPDatabase::GetSortedScores(const QXFingerPrint& query, unsigned limit, unsigned begin,
                                        unsigned end) const {
  return impl_ ? impl_->GetSortedScores(query, limit, begin, end) : ScoreIter();
}

ScoreIter QXFPDatabase::GetSortedScores(const QXFingerPrint& query,
                                        const QXFPDatabaseOptions& options) const {
  return impl_ ? impl_->GetSortedScores(query, options) : ScoreIter();
}

ScoreIter QXFPDatabase::GetScores(const QXChem::QXMolBase& query, unsigned begin, unsigned end) const {
  return FindOfMolecule(QueryName::getScores, impl_.get(), query,
                        [&](const QXFingerPrint& fp) { return impl_->GetScores(fp, begin, end); });
}

ScoreIter QXFPDatabase::GetScores(const QXChem::QXMolBase& query, const QXFPDatabaseOptions& options) const {
  return FindOfMolecule(QueryName::getScores, impl_.get(), query,
                        [&](const QXFingerPrint& fp) { return impl_->GetScores(fp, options); });
}

ScoreIter QXFPDatabase::GetSortedScores(const QXChem::QXMolBase& query, unsigned limit, unsigned begin,
                                        unsigned end) const {
  return FindOfMolecule(QueryName::getSortedScores, impl_.get(), query, [&](const QXFingerPrint& fp) {
    return impl_->GetSortedScores(fp, limit, begin, end);
  });
}

ScoreIter QXFPDatabase::GetSortedScores(const QXChem::QXMolBase& query,
                                        const QXFPDatabaseOptions& options) const {
  return FindOfMolecule(QueryName::getSortedScores, impl_.get(), query,
                        [&](const QXFingerPrint& fp) { return impl_->GetSortedScores(fp, options); });
}

}  // namespace QXFingrix
