#pragma once

#include "fastfp/FastFPDatabaseImplBase.h"
#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/LazyIndex.h"

namespace QXFingrix {

/// What the back ends share whose records lie in memory as they do in the file: a query is a scan over them, or
/// a search of their index.
class FastFPScanImpl : public QXFastFPDatabaseImplBase {
 public:
  using QXFastFPDatabaseImplBase::GetFingerPrint;

  /// indexUse: a QXFastFPDatabaseIndex value.
  FastFPScanImpl(const std::string& fpbinFile, unsigned indexUse);

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

  /// Looks for the index file, or makes an index, as was asked for; when the records are there.
  void OpenIndex(SlicedIndexFile::Memory memory);

 private:
  /// The index, when searching for the queries is faster with it than without. Says at level Verbose which it is.
  const SlicedIndex* IndexFor(const RecordTable& records, std::span<const QueryBits> queries,
                              const QXFPDatabaseOptions& options, const char* caller) const;

  const unsigned indexUse_;
  const FpbinStamp stamp_;  // taken before the records were opened
  LazyIndex index_;
};

}  // namespace QXFingrix
