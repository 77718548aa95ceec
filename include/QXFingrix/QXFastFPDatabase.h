#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPHistogram.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXSimScore.h"
#include "QXFingrix/QXSimSearchResult.h"
#include "QXSystem/QXDots.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXIter.h"

namespace QXFingrix {

/// Where a fast database keeps its records.
namespace QXFastFPDatabaseMemoryType {
inline constexpr unsigned MemoryMapped = 1;  ///< in the mapped file
inline constexpr unsigned InMemory = 2;      ///< in the heap: the file is read at once
inline constexpr unsigned CUDA = 3;          ///< on a GPU; falls back to memory-mapped where there is none
}  // namespace QXFastFPDatabaseMemoryType

/// Whether searches use an index, in which the records are stored by bit: docs/Index.md. Hits and scores are the
/// same; each search takes the way that is expected to be faster.
namespace QXFastFPDatabaseIndex {
inline constexpr unsigned None = 0;      ///< scan the records
inline constexpr unsigned FromFile = 1;  ///< that of the file beside the .fpbin file, when there is one
inline constexpr unsigned Build = 2;     ///< the same or, when there is none, one that is made in the heap
}  // namespace QXFastFPDatabaseIndex

/// Whether a GPU can be used for searching.
QX_API bool QXFingrixIsGPUReady();

class QXFastFPDatabaseImplBase;

/// Similarity search over a .fpbin file.
///
/// A query is a fingerprint made with the very type that GetFPTypeBase() returns, a molecule, or the index of
/// a stored fingerprint. The score of a query with b bits set against a record with a bits set, c of them in
/// both, and n bits in all, in double precision:
///   Tanimoto   c / (a + b - c)                            0 when c = 0
///   Cosine     c / sqrt(a b)                              0 when a, b or c is 0
///   Dice       2 c / (a + b)                              0 when a + b = 0
///   Euclid     sqrt((n - a - b + 2 c) / n)
///   Tversky    c / (alpha (b - c) + beta (a - c) + c)     0 when the denominator is 0
///   Manhattan  (a + b - 2 c) / n                          a distance
///
/// Errors   every operation on an invalid database, with an unsuitable query or with an unknown measure warns
///          once and returns an empty result; so does one that runs out of memory. A stored index whose record
///          holds another molecule is warned of in the name of GetFingerPrint(), then in that of the query.
/// Threads  a database does not change; any number of threads may search it at once.
class QX_API QXFastFPDatabase {
 public:
  /// Opens a file; memoryType is a QXFastFPDatabaseMemoryType value, indexUse a QXFastFPDatabaseIndex value.
  /// Errors   warns and is not valid when the header is not sound, the size of the file does not fit what the
  ///          header says, or the file was written in the other byte order; in memory also when the records do
  ///          not fit into it, or one of them counts more bits than it can have. An index that is stale or damaged
  ///          draws a warning and is not used; the latter may be seen only by the first search that wants it,
  ///          which reads all of it once.
  explicit QXFastFPDatabase(const std::string& fpbinFile,
                            unsigned memoryType = QXFastFPDatabaseMemoryType::MemoryMapped,
                            unsigned indexUse = QXFastFPDatabaseIndex::FromFile);
  ~QXFastFPDatabase();
  QXFastFPDatabase(QXFastFPDatabase&&) noexcept;
  QXFastFPDatabase& operator=(QXFastFPDatabase&&) noexcept;

  bool IsValid() const;
  const QXFPTypeBase* GetFPTypeBase() const;
  std::uint64_t NumFingerPrints() const;
  unsigned GetMemoryType() const;           ///< of the back end in use; 0 when invalid
  std::string GetMemoryTypeString() const;  ///< "memory-mapped" or "in-memory"; empty when invalid

  /// The stored fingerprint.
  /// Errors   warns and returns false, fp unchanged.
  bool GetFingerPrint(QXFingerPrint& fp, std::uint64_t index) const;
  /// The molecule index stored with a fingerprint; all bits set on failure.
  std::uint64_t GetMoleculeIndex(std::uint64_t index) const;

  /// The score of every record that passes the cutoff (a score equal to it passes), in record order.
  QXSystem::QXIter<QXSimScore> GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const;
  QXSystem::QXIter<QXSimScore> GetScores(const QXChem::QXMolBase& mol,
                                         const QXFPDatabaseOptions& options) const;
  QXSystem::QXIter<QXSimScore> GetScores(std::uint64_t index, const QXFPDatabaseOptions& options) const;

  /// The best scores, best first, equal scores by lower index; on the calling thread. A hit must be strictly
  /// better than the cutoff, and a descending search without a cutoff never returns scores of 0.
  QXSystem::QXIter<QXSimScore> GetSortedScores(const QXFingerPrint& fp,
                                               const QXFPDatabaseOptions& options) const;
  QXSystem::QXIter<QXSimScore> GetSortedScores(const QXChem::QXMolBase& mol,
                                               const QXFPDatabaseOptions& options) const;
  QXSystem::QXIter<QXSimScore> GetSortedScores(std::uint64_t index, const QXFPDatabaseOptions& options) const;

  /// The score of every record, in record order.
  std::vector<double> GetRawScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const;
  std::vector<double> GetRawScores(const QXChem::QXMolBase& mol, const QXFPDatabaseOptions& options) const;
  std::vector<double> GetRawScores(std::uint64_t index, const QXFPDatabaseOptions& options) const;

  /// The hits of several queries at once: hits[q] is what GetSortedScores(fps[q], options) gives, in the same
  /// order, found on the threads that the options ask for. Each record is loaded once for a group of queries,
  /// which makes this several times as fast as one search after the other.
  /// Errors   a query that is not suitable is warned of, and its hits are empty.
  std::vector<QXSystem::QXIter<QXSimScore>> GetSortedScores(std::span<const QXFingerPrint> fps,
                                                            const QXFPDatabaseOptions& options) const;

  // All against all: the scores of records i and j, in tiles, on the calling thread. The options' cutoff and
  // limit play a part in GetSparseMatrix only. A copy of the tracer, where there is one, is advanced by one for
  // each comparison: N^2 of them by Tversky, otherwise N (N + 1) / 2, a pair being compared once and a record
  // with itself too. It must not throw.

  /// N x N scores: element i N + j is the score of query i against record j, in single precision.
  /// Errors   an empty vector and "%s: not enough system memory to store results!" when they find no room.
  std::vector<float> GetAllScores(const QXFPDatabaseOptions& options,
                                  const QXSystem::QXDots* tracer = nullptr) const;

  /// The scores of all pairs i < j, N (N - 1) / 2 of them, counted in numBins bins over [0, 1]; by Tversky,
  /// which is not symmetric, all N^2 of them.
  QXFPHistogram GetHistogram(const QXFPDatabaseOptions& options, unsigned numBins,
                             const QXSystem::QXDots* tracer = nullptr) const;

  /// The scores of all pairs i < j with the squared differences of their values, in numBins bins over [0, 1].
  /// Shape    values: one for each record.
  /// Errors   an empty variogram and a Warning for Tversky, and when there are not as many values as records.
  QXFPVariogram GetVariogram(const std::vector<float>& values, const QXFPDatabaseOptions& options,
                             unsigned numBins, const QXSystem::QXDots* tracer = nullptr) const;

  /// The nearest neighbours of every record: for each record i in order, the best `limit` pairs (i, j) that
  /// pass the cutoff (a score equal to it passes), best first, equal scores by lower j; i itself is one of
  /// them. Limit 0 means all.
  /// Errors   nothing and a Warning for a limit above N, or when there is no memory. A limit of 0 is warned
  ///          of, and again when there is no cutoff.
  /// Cost     O(N^2) comparisons; memory grows with the pairs that are returned, never with N^2 beyond them.
  QXSystem::QXIter<QXSimScorePair> GetSparseMatrix(const QXFPDatabaseOptions& options,
                                                   const QXSystem::QXDots* tracer = nullptr) const;

  /// The same hits as GetSortedScores, on the threads that the options ask for, with progress and a
  /// histogram. Returns the status of the search, QXSimSearchStatus::Finished when it was done.
  unsigned SortedSearch(QXSimSearchResult& result, const QXChem::QXMolBase& mol,
                        const QXFPDatabaseOptions& options) const;

 private:
  friend QX_API bool QXAreCompatibleDatabases(const QXChem::QXMolDatabase& moldb,
                                              const QXFastFPDatabase& fastdb);

  std::unique_ptr<QXFastFPDatabaseImplBase> impl_;
};

/// Whether a fast database was made from a molecule database: the same number of entries, and the first
/// molecule has the first stored fingerprint (or cannot be read and has no bits there).
/// Errors   warns why not.
QX_API bool QXAreCompatibleDatabases(const QXChem::QXMolDatabase& moldb, const QXFastFPDatabase& fastdb);

}  // namespace QXFingrix
