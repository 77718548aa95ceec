#pragma once

#include "fastfp/FastFPDatabaseImplBase.h"
#include "fastfp/RecordScan.h"

namespace QXFingrix {

/// What the back ends share whose records lie in memory as they do in the file: every query is a scan over
/// them.
class FastFPScanImpl : public QXFastFPDatabaseImplBase {
 public:
  using QXFastFPDatabaseImplBase::GetFingerPrint;
  using QXFastFPDatabaseImplBase::QXFastFPDatabaseImplBase;

  SimScoreIter GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const override;
  SimScoreIter GetSortedScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const override;
  std::vector<double> GetRawScores(const QXFingerPrint& fp,
                                   const QXFPDatabaseOptions& options) const override;
  std::vector<float> GetAllScores(const QXFPDatabaseOptions& options,
                                  const QXSystem::QXDots* tracer) const override;
  QXFPHistogram GetHistogram(const QXFPDatabaseOptions& options, unsigned numBins,
                             const QXSystem::QXDots* tracer) const override;
  QXFPVariogram GetVariogram(const std::vector<float>& values, const QXFPDatabaseOptions& options,
                             unsigned numBins, const QXSystem::QXDots* tracer) const override;
  QXSystem::QXIter<QXSimScorePair> GetSparseMatrix(const QXFPDatabaseOptions& options,
                                                   const QXSystem::QXDots* tracer) const override;
  unsigned SortedSearch(QXSimSearchResultImpl& result, const QXFingerPrint& fp,
                        const QXFPDatabaseOptions& options) const override;
  bool GetFingerPrint(std::vector<unsigned long>& words, std::uint64_t& molIndex, std::uint64_t& bitCount,
                      std::uint64_t index) const override;
  std::vector<SimScoreIter> GetSortedScores(std::span<const QXFingerPrint* const> fps,
                                            const QXFPDatabaseOptions& options) const override;

 protected:
  /// The records. Errors: reports in the caller's name and returns false when there are none to read.
  virtual bool GetRecords(RecordTable& records, const char* caller) const = 0;
};

}  // namespace QXFingrix
