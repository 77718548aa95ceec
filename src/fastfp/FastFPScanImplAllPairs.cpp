#include "QXSystem/QXErrorHandler.h"
#include "database/WithinMemory.h"
#include "fastfp/FastFPScanImpl.h"
#include "fastfp/pairs/AllPairs.h"

namespace QXFingrix {

using QXSystem::QXThrow;

std::vector<float> FastFPScanImpl::GetAllScores(const QXFPDatabaseOptions& options,
                                                const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetAllScores()";
  RecordTable records;
  std::vector<float> scores;
  if (GetRecords(records, caller))
    WithinMemory(caller, [&] { scores = ScoreAllPairs(records, options, tracer); });
  return scores;
}

QXFPHistogram FastFPScanImpl::GetHistogram(const QXFPDatabaseOptions& options, unsigned numBins,
                                           const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetHistogram()";
  RecordTable records;
  QXFPHistogram histogram(0, 0.0, 1.0);
  WithinMemory(caller, [&] {
    histogram = QXFPHistogram(numBins, 0.0, 1.0);
    if (GetRecords(records, caller)) CountAllPairs(records, options, histogram, tracer);
  });
  return histogram;
}

QXFPVariogram FastFPScanImpl::GetVariogram(const std::vector<float>& values,
                                           const QXFPDatabaseOptions& options, unsigned numBins,
                                           const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetVariogram()";
  RecordTable records;
  QXFPVariogram variogram(0, 0.0, 1.0);
  WithinMemory(caller, [&] {
    variogram = QXFPVariogram(numBins, 0.0, 1.0);
    if (GetRecords(records, caller)) CountAllPairs(records, options, values, variogram, tracer);
  });
  return variogram;
}

QXSystem::QXIter<QXSimScorePair> FastFPScanImpl::GetSparseMatrix(const QXFPDatabaseOptions& options,
                                                                 const QXSystem::QXDots* tracer) const {
  constexpr const char* caller = "QXFastFPDatabase::GetSparseMatrix()";
  RecordTable records;
  if (!GetRecords(records, caller)) return {};
  std::uint64_t limit = options.GetLimit();
  if (limit > records.numRecords) {
    QXThrow.Warning("%s set to retrieve more nearest neighbors (%llu) than there are fingerprints (%llu)!",
                    caller, static_cast<unsigned long long>(limit),
                    static_cast<unsigned long long>(records.numRecords));
    return {};
  }
  if (limit == 0) {
    QXThrow.Warning("%s : set to retrieve all nxn scores!", caller);
    if (!options.HasCutoff()) {
      QXThrow.Warning("%s : no cutoff specified, all results will be returned!", caller);
    }
    limit = records.numRecords;
  }
  QXSystem::QXIter<QXSimScorePair> pairs;
  WithinMemory(
      caller, [&] { pairs = QXSystem::QXMakeVectorIter(FindNearestPairs(records, options, limit, tracer)); });
  return pairs;
}

}  // namespace QXFingrix
