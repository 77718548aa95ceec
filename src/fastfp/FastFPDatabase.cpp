// The front of the fast search: checks what a caller passes, turns a molecule or a stored index into a query
// fingerprint, and hands the query to the back end.

#include "QXFingrix/QXFastFPDatabase.h"

#include "QXSystem/QXErrorHandler.h"
#include "database/WithinMemory.h"
#include "fastfp/FastFPDatabaseImplBase.h"
#include "fastfp/FastFPInMemoryDatabaseImpl.h"
#include "fastfp/FastFPMemoryMapDatabaseImpl.h"

namespace QXFingrix {

using QXSystem::QXThrow;
using Impl = QXFastFPDatabaseImplBase;

namespace {

bool Refuse(const char* caller, const char* why) {
  QXThrow.Warning("%s : %s", caller, why);
  return false;
}

bool CheckDatabase(const Impl* impl, const char* caller) {
  return (impl != nullptr && impl->IsValid()) || Refuse(caller, "invalid QXFastFPDatabase object!");
}

bool CheckQuery(const Impl& impl, const QXFingerPrint& fp, const char* caller) {
  if (!fp) return Refuse(caller, "invalid fingerprint type!");
  // A fingerprint that somebody has resized is not what its type says.
  const bool isSameType =
      fp.GetFPTypeBase() == impl.GetFPTypeBase() && fp.GetWords().size() == impl.NumWords();
  return isSameType || Refuse(caller, "fingerprint type mismatch!");
}

bool CheckQuery(const Impl&, const QXChem::QXMolBase& mol, const char* caller) {
  return mol.NumAtoms() != 0 || Refuse(caller, "empty molecule!");
}

bool CheckQuery(const Impl& impl, std::uint64_t index, const char* caller) {
  return index < impl.NumFingerPrints() || Refuse(caller, "fingerprint index out of range!");
}

bool CheckMeasure(const QXFPDatabaseOptions& options, const char* caller) {
  if (QXIsSimilarityMeasure(options.GetSimFunc())) return true;
  QXThrow.Warning("%s : unknown similarity measure type '%d'!", caller,
                  static_cast<int>(options.GetSimFunc()));
  return false;
}

bool CheckVariogram(const Impl& impl, const std::vector<float>& values, const QXFPDatabaseOptions& options,
                    const char* caller) {
  if (options.GetSimFunc() == QXSimMeasure::Tversky) {
    return Refuse(caller, "Tversky similarity is not supported!");
  }
  if (values.size() == impl.NumFingerPrints()) return true;
  QXThrow.Warning("%s : %llu values for %llu fingerprints!", caller,
                  static_cast<unsigned long long>(values.size()),
                  static_cast<unsigned long long>(impl.NumFingerPrints()));
  return false;
}

// Reports in one name, whichever query fetches.
bool FetchFingerPrint(const Impl& impl, QXFingerPrint& fp, std::uint64_t index) {
  constexpr const char* caller = "QXFastFPDatabase::GetFingerPrint()";
  auto fetched = Impl::Fetch::NoRecord;
  if (!WithinMemory(caller, [&] { fetched = impl.GetFingerPrint(fp, index); })) return false;
  switch (fetched) {
    case Impl::Fetch::Done:
      return true;
    case Impl::Fetch::WrongIndex:
      return Refuse(caller, "fingerprint and molecule index inconsistency!");
    default:
      return Refuse(caller, "cannot access fingerprint!");
  }
}

// A histogram or variogram over [0, 1] that counts nothing; without bins when there is no memory for them.
template <class Histogram>
Histogram MakeEmpty(unsigned numBins, const char* caller) {
  Histogram histogram(0, 0.0, 1.0);
  WithinMemory(caller, [&] { histogram = Histogram(numBins, 0.0, 1.0); });
  return histogram;
}

const QXFingerPrint* MakeQuery(const Impl&, const QXFingerPrint& fp, QXFingerPrint&, const char*) {
  return &fp;
}

const QXFingerPrint* MakeQuery(const Impl& impl, const QXChem::QXMolBase& mol, QXFingerPrint& storage,
                               const char* caller) {
  if (impl.MakeQuery(storage, mol)) return &storage;
  Refuse(caller, "cannot generate fingerprint!");
  return nullptr;
}

const QXFingerPrint* MakeQuery(const Impl& impl, std::uint64_t index, QXFingerPrint& storage,
                               const char* caller) {
  if (FetchFingerPrint(impl, storage, index)) return &storage;
  Refuse(caller, "cannot access fingerprint!");
  return nullptr;
}

template <class Scores>
using ScoreOperation = Scores (Impl::*)(const QXFingerPrint&, const QXFPDatabaseOptions&) const;

template <class Scores, class Query>
Scores RunQuery(const Impl* impl, ScoreOperation<Scores> operation, const Query& query,
                const QXFPDatabaseOptions& options, const char* caller) {
  if (!CheckDatabase(impl, caller) || !CheckQuery(*impl, query, caller) || !CheckMeasure(options, caller)) {
    return {};
  }
  QXFingerPrint storage;
  const QXFingerPrint* const fp = MakeQuery(*impl, query, storage, caller);
  return fp == nullptr ? Scores() : (impl->*operation)(*fp, options);
}

// An unknown memory type is tried on a GPU first, like CUDA.
std::unique_ptr<Impl> OpenDatabase(const std::string& fpbinFile, unsigned memoryType, unsigned indexUse) {
  constexpr const char* caller = fastFPDatabaseConstructor;
  if (indexUse > QXFastFPDatabaseIndex::Build) {
    QXThrow.Warning("%s : unknown use of an index '%u', at most %u; that of the file is used", caller,
                    indexUse, QXFastFPDatabaseIndex::Build);
    indexUse = QXFastFPDatabaseIndex::FromFile;
  }
  if (memoryType == QXFastFPDatabaseMemoryType::InMemory) {
    return std::make_unique<QXFastFPInMemoryDatabaseImpl>(fpbinFile, indexUse);
  }
  if (memoryType != QXFastFPDatabaseMemoryType::MemoryMapped) {
    if (memoryType != QXFastFPDatabaseMemoryType::CUDA) {
      Refuse(caller, "invalid memory type parameter initialized for memory-mapped!");
    }
    if (!QXFingrixIsGPUReady()) {
      Refuse(caller, "no CUDA-enabled device available falling back to memory-mapped type!");
    }
  }
  return std::make_unique<QXFastFPMemoryMapDatabaseImpl>(fpbinFile, indexUse);
}

}  // namespace

bool QXFingrixIsGPUReady() {
  return false;  // there is no GPU back end yet
}

QXFastFPDatabase::QXFastFPDatabase(const std::string& fpbinFile, unsigned memoryType, unsigned indexUse)
    : impl_(OpenDatabase(fpbinFile, memoryType, indexUse)) {}
QXFastFPDatabase::~QXFastFPDatabase() = default;
QXFastFPDatabase::QXFastFPDatabase(QXFastFPDatabase&&) noexcept = default;
QXFastFPDatabase& QXFastFPDatabase::operator=(QXFastFPDatabase&&) noexcept = default;

bool QXFastFPDatabase::IsValid() const {
  return impl_ != nullptr && impl_->IsValid();
}

const QXFPTypeBase* QXFastFPDatabase::GetFPTypeBase() const {
  return CheckDatabase(impl_.get(), "QXFastFPDatabase::GetFPTypeBase()") ? impl_->GetFPTypeBase() : nullptr;
}

std::uint64_t QXFastFPDatabase::NumFingerPrints() const {
  return CheckDatabase(impl_.get(), "QXFastFPDatabase::NumFingerPrints()") ? impl_->NumFingerPrints() : 0;
}

unsigned QXFastFPDatabase::GetMemoryType() const {
  return CheckDatabase(impl_.get(), "QXFastFPDatabase::GetMemoryType()") ? impl_->GetMemoryType() : 0;
}

std::string QXFastFPDatabase::GetMemoryTypeString() const {
  return CheckDatabase(impl_.get(), "QXFastFPDatabase::GetMemoryTypeString()") ? impl_->GetMemoryTypeString()
                                                                               : "";
}

bool QXFastFPDatabase::GetFingerPrint(QXFingerPrint& fp, std::uint64_t index) const {
  constexpr const char* caller = "QXFastFPDatabase::GetFingerPrint()";
  if (!CheckDatabase(impl_.get(), caller) || !CheckQuery(*impl_, index, caller)) return false;
  return FetchFingerPrint(*impl_, fp, index);
}

std::uint64_t QXFastFPDatabase::GetMoleculeIndex(std::uint64_t index) const {
  constexpr const char* caller = "QXFastFPDatabase::GetMolculeIndex()";
  constexpr std::uint64_t failure = ~std::uint64_t{0};
  if (!CheckDatabase(impl_.get(), caller) || !CheckQuery(*impl_, index, caller)) return failure;
  std::vector<unsigned long> words;
  std::uint64_t molIndex = failure;
  std::uint64_t bitCount = 0;
  bool isFetched = false;
  const auto fetch = [&] { isFetched = impl_->GetFingerPrint(words, molIndex, bitCount, index); };
  if (!WithinMemory(caller, fetch)) return failure;
  return isFetched || Refuse(caller, "cannot access fingerprint!") ? molIndex : failure;
}

SimScoreIter QXFastFPDatabase::GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetScores, fp, options, "QXFastFPDatabase::GetScores()");
}

SimScoreIter QXFastFPDatabase::GetScores(const QXChem::QXMolBase& mol,
                                         const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetScores, mol, options, "QXFastFPDatabase::GetScores()");
}

SimScoreIter QXFastFPDatabase::GetScores(std::uint64_t index, const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetScores, index, options, "QXFastFPDatabase::GetScores()");
}

SimScoreIter QXFastFPDatabase::GetSortedScores(const QXFingerPrint& fp,
                                               const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetSortedScores, fp, options, "QXFastFPDatabase::GetSortedScores()");
}

SimScoreIter QXFastFPDatabase::GetSortedScores(const QXChem::QXMolBase& mol,
                                               const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetSortedScores, mol, options, "QXFastFPDatabase::GetSortedScores()");
}

SimScoreIter QXFastFPDatabase::GetSortedScores(std::uint64_t index,
                                               const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetSortedScores, index, options, "QXFastFPDatabase::GetSortedScores()");
}

std::vector<SimScoreIter> QXFastFPDatabase::GetSortedScores(std::span<const QXFingerPrint> fps,
                                                            const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::GetSortedScores()";
  std::vector<SimScoreIter> hits;
  WithinMemory(caller, [&] {
    hits.resize(fps.size());
    if (!CheckDatabase(impl_.get(), caller) || !CheckMeasure(options, caller)) return;
    std::vector<const QXFingerPrint*> suitable;
    std::vector<SimScoreIter*> hitsOf;
    for (std::size_t i = 0; i < fps.size(); ++i) {
      if (!CheckQuery(*impl_, fps[i], caller)) continue;
      suitable.push_back(&fps[i]);
      hitsOf.push_back(&hits[i]);
    }
    std::vector<SimScoreIter> found = impl_->GetSortedScores(suitable, options);
    for (std::size_t i = 0; i < found.size(); ++i) *hitsOf[i] = std::move(found[i]);
  });
  return hits;
}

std::vector<double> QXFastFPDatabase::GetRawScores(const QXFingerPrint& fp,
                                                   const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetRawScores, fp, options, "QXFastFPDatabase::GetRawScores()");
}

std::vector<double> QXFastFPDatabase::GetRawScores(const QXChem::QXMolBase& mol,
                                                   const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetRawScores, mol, options, "QXFastFPDatabase::GetRawScores()");
}

std::vector<double> QXFastFPDatabase::GetRawScores(std::uint64_t index,
                                                   const QXFPDatabaseOptions& options) const {
  return RunQuery(impl_.get(), &Impl::GetRawScores, index, options, "QXFastFPDatabase::GetRawScores()");
}

std::vector<float> QXFastFPDatabase::GetAllScores(const QXFPDatabaseOptions& options,
                                                  const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetAllScores()";
  if (!CheckDatabase(impl_.get(), caller) || !CheckMeasure(options, caller)) return {};
  return impl_->GetAllScores(options, tracer);
}

QXFPHistogram QXFastFPDatabase::GetHistogram(const QXFPDatabaseOptions& options, unsigned numBins,
                                             const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetHistogram()";
  if (!CheckDatabase(impl_.get(), caller) || !CheckMeasure(options, caller)) {
    return MakeEmpty<QXFPHistogram>(numBins, caller);
  }
  return impl_->GetHistogram(options, numBins, tracer);
}

QXFPVariogram QXFastFPDatabase::GetVariogram(const std::vector<float>& values,
                                             const QXFPDatabaseOptions& options, unsigned numBins,
                                             const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetVariogram()";
  if (!CheckDatabase(impl_.get(), caller) || !CheckMeasure(options, caller) ||
      !CheckVariogram(*impl_, values, options, caller)) {
    return MakeEmpty<QXFPVariogram>(numBins, caller);
  }
  return impl_->GetVariogram(values, options, numBins, tracer);
}

QXSystem::QXIter<QXSimScorePair> QXFastFPDatabase::GetSparseMatrix(const QXFPDatabaseOptions& options,
                                                                   const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetSparseMatrix()";
  if (!CheckDatabase(impl_.get(), caller) || !CheckMeasure(options, caller)) return {};
  return impl_->GetSparseMatrix(options, tracer);
}

unsigned QXFastFPDatabase::SortedSearch(QXSimSearchResult& result, const QXChem::QXMolBase& mol,
                                        const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::SortedSearch()";
  if (!CheckDatabase(impl_.get(), "QXFastFPDatabase::Search()") || !CheckQuery(*impl_, mol, caller) ||
      !CheckMeasure(options, caller)) {
    return QXSimSearchStatus::Uninitialized;
  }
  QXFingerPrint fp;
  if (!impl_->MakeQuery(fp, mol)) {
    QXThrow.Warning("%s cannot generate fingerprint!", caller);
    return QXSimSearchStatus::Uninitialized;
  }
  if (!result.IsValid()) {
    Refuse(caller, "invalid search result!");
    return QXSimSearchStatus::Uninitialized;
  }
  return impl_->SortedSearch(*result.impl_, fp, options);
}

}  // namespace QXFingrix
