#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPHistogram.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXFastFPDatabaseParams.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPopCount.h"
#include "QXSystem/QXDots.h"
#include "QXSystem/QXIter.h"
#include "fastfp/SimSearchResultImpl.h"

namespace QXFingrix {

using SimScoreIter = QXSystem::QXIter<QXSimScore>;

/// A back end of QXFastFPDatabase. The front has checked what it passes on: the object is valid, the query is
/// of the file's type and size, the measure is known, an index is in range.
class QXFastFPDatabaseImplBase {
 public:
  /// Reads the header; reports and leaves the object invalid when it is not sound.
  explicit QXFastFPDatabaseImplBase(const std::string& fpbinFile);
  virtual ~QXFastFPDatabaseImplBase() = default;
  QXFastFPDatabaseImplBase(const QXFastFPDatabaseImplBase&) = delete;
  QXFastFPDatabaseImplBase& operator=(const QXFastFPDatabaseImplBase&) = delete;

  virtual bool IsValid() const { return isValid_; }
  virtual unsigned GetMemoryType() const = 0;
  virtual std::string GetMemoryTypeString() const = 0;
  virtual SimScoreIter GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const = 0;
  virtual SimScoreIter GetSortedScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const = 0;
  virtual std::vector<double> GetRawScores(const QXFingerPrint& fp,
                                           const QXFPDatabaseOptions& options) const = 0;
  /// All against all; a copy of the tracer, if any, counts the comparisons.
  virtual std::vector<float> GetAllScores(const QXFPDatabaseOptions& options,
                                          const QXSystem::QXDots* tracer = nullptr) const = 0;
  virtual QXFPHistogram GetHistogram(const QXFPDatabaseOptions& options, unsigned numBins,
                                     const QXSystem::QXDots* tracer = nullptr) const = 0;
  virtual QXFPVariogram GetVariogram(const std::vector<float>& values, const QXFPDatabaseOptions& options,
                                     unsigned numBins, const QXSystem::QXDots* tracer = nullptr) const = 0;
  virtual QXSystem::QXIter<QXSimScorePair> GetSparseMatrix(
      const QXFPDatabaseOptions& options, const QXSystem::QXDots* tracer = nullptr) const = 0;
  virtual unsigned SortedSearch(QXSimSearchResultImpl& result, const QXFingerPrint& fp,
                                const QXFPDatabaseOptions& options) const = 0;
  /// A stored record. Errors: false, without a report of what the record holds.
  virtual bool GetFingerPrint(std::vector<unsigned long>& words, std::uint64_t& molIndex,
                              std::uint64_t& bitCount, std::uint64_t index) const = 0;

  /// The hits of each query, as GetSortedScores gives them.
  virtual std::vector<SimScoreIter> GetSortedScores(std::span<const QXFingerPrint* const> fps,
                                                    const QXFPDatabaseOptions& options) const = 0;

  const QXFPTypeBase* GetFPTypeBase() const { return params_.GetFPTypeBase(); }
  std::uint64_t NumFingerPrints() const { return params_.NumFingerPrints(); }
  std::uint64_t NumWords() const { return params_.GetNumWords(); }

  enum class Fetch { Done, NoRecord, WrongIndex };
  /// The stored fingerprint, whose record must hold its own index. Silent; fp unchanged on failure.
  Fetch GetFingerPrint(QXFingerPrint& fp, std::uint64_t index) const;

  /// The query that a molecule stands for; false when there is none. Silent.
  bool MakeQuery(QXFingerPrint& fp, const QXChem::QXMolBase& mol) const;

 protected:
  void Invalidate() { isValid_ = false; }
  std::uint64_t CountBits(const QXFingerPrint& fp) const;
  const QXFastFPDatabaseParams& Params() const { return params_; }
  const std::string& FileName() const { return fileName_; }

 private:
  bool isValid_ = false;
  unsigned popCountMethod_ = 0;
  std::string fileName_;
  QXFastFPDatabaseParams params_;
};

/// The name in which the constructors of a fast database report.
inline constexpr const char* fastFPDatabaseConstructor = "QXFastFPDatabase::QXFastFPDatabase()";

}  // namespace QXFingrix
