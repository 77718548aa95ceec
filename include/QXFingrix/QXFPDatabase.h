#pragma once

#include <memory>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPTypeBase.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXSimFunc.h"
#include "QXFingrix/QXSimScore.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXIter.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

class QXFPDatabaseImplBase;

/// Fingerprints of one type in memory, in the order in which they were added, and queries over them: all
/// scores of a range, or the best ones. Any kind of fingerprint: bits, Lingo, unhashed.
///
/// The measure is Tanimoto, the order descending and no cutoff is set until told otherwise.
/// Threads  queries may run at once while nobody adds entries or changes settings.
/// Cost     memory from some 10,000 entries on is that of the fingerprints' words and about 24 bytes for
///          each, and up to 0.7 times as much reserved for more; small databases of bits take more, a few
///          hundred bytes for each group of similar bit counts. Unhashed fingerprints also keep 4 bytes for
///          each token, and every token once.
class QX_API QXFPDatabase {
 public:
  /// Of a kind's default type; see namespace QXFPType.
  /// Errors   error "QXFPDatabase::QXFPDatabase() unknown fingerprint type", and a database that is not
  ///          valid, like one that was moved from: it takes no entries and finds nothing.
  explicit QXFPDatabase(unsigned fptype);
  /// Of a type. Errors: as above, for null too.
  explicit QXFPDatabase(const QXFPTypeBase* type);
  ~QXFPDatabase();
  QXFPDatabase(QXFPDatabase&& other) noexcept;
  QXFPDatabase& operator=(QXFPDatabase&& other) noexcept;
  QXFPDatabase(const QXFPDatabase&) = delete;
  QXFPDatabase& operator=(const QXFPDatabase&) = delete;

  bool IsValid() const { return impl_ != nullptr; }

  /// The type of the entries; null for a database that is not valid.
  const QXFPTypeBase* GetFPTypeBase() const;
  unsigned NumFingerPrints() const;
  /// The entries in index order. The iterator looks at the database: use it while that lives and no entry is
  /// added.
  /// Errors   std::bad_alloc without memory, also from the iterator when it moves.
  QXSystem::QXIter<QXFingerPrint> GetFingerPrints() const;

  /// Appends a copy of a fingerprint and returns its index.
  /// Errors   QXSimScore::NoIndex, nothing stored and nothing reported, when the type is another one, when
  ///          4294967295 entries are there, and for a database that is not valid. std::bad_alloc without
  ///          memory, nothing stored.
  unsigned AddFP(const QXFingerPrint& fp);
  /// Appends the fingerprint of a molecule, made by QXMakeFP for the database's type.
  /// Errors   as above, also when the fingerprint cannot be made.
  unsigned AddFP(const QXChem::QXMolBase& mol);

  /// Installs a measure of QXSimMeasure and sets the order, which is never inferred from the measure:
  /// Manhattan, a distance, wants descending false. Tversky has the coefficients 0.95 and 0.050000012.
  /// Errors   another number, and for unhashed fingerprints any but Tanimoto, draws the Warning
  ///          "QXFPDatabase::SetSimFunc() unknown similarity measure" and installs Tanimoto.
  void SetSimFunc(unsigned measure, bool descending = true);
  /// Installs a copy of a measure and sets the order.
  /// Errors   refused with a Warning by a Lingo or unhashed database, and when the measure's CreateCopy()
  ///          gives none: the measure stays, and the order. So they do when CreateCopy() throws, such as
  ///          std::bad_alloc.
  /// Cost     measures of one's own are called once for each entry; the six of QXSimFunc.h run as fast as by
  ///          number.
  void SetSimFunc(const QXSimFuncBase& func, bool descending = true);

  /// The score threshold of queries without options.
  void SetCutoff(float cutoff);
  float GetCutoff() const;
  bool HasCutoff() const;
  void ClearCutoff();
  void SetDescendingOrder(bool descending);
  bool GetDescendingOrder() const;

  // Queries. Entries begin to end - 1 are looked at; an end of 0, or one that is too large, means all. With
  // options their cutoff, order, measure and coefficients count instead of the database's, and all entries
  // are looked at. A molecule stands for its fingerprint of the database's type.
  // Errors   an empty iterator and the Warning "QXFPDatabase::GetScores() fingerprint type mismatch!"
  //          (respectively GetSortedScores()) when the query's type is another one, or none; a Warning and
  //          an empty iterator when the fingerprint of a molecule cannot be made, when a Lingo query holds no
  //          Lingo text ("... cannot initialize lingo similarity!"), or when there is no memory for the
  //          scores. An entry of another size than the query is reported, in no particular order, and scored
  //          as the measure's function does it. What a measure of one's own throws gets through, but for
  //          std::bad_alloc, which counts as no memory for the scores. Nothing is reported for a database
  //          that is not valid.

  /// The scores of the entries in index order. With a cutoff, those that reach it: in descending order
  /// scores at or above it, in ascending order scores at or below it.
  /// Cost     one pass; memory is 16 bytes for each score kept, at most 32 with a cutoff.
  QXSystem::QXIter<QXSimScore> GetScores(const QXFingerPrint& query, unsigned begin = 0,
                                         unsigned end = 0) const;
  QXSystem::QXIter<QXSimScore> GetScores(const QXChem::QXMolBase& query, unsigned begin = 0,
                                         unsigned end = 0) const;
  QXSystem::QXIter<QXSimScore> GetScores(const QXFingerPrint& query,
                                         const QXFPDatabaseOptions& options) const;
  QXSystem::QXIter<QXSimScore> GetScores(const QXChem::QXMolBase& query,
                                         const QXFPDatabaseOptions& options) const;

  /// The best `limit` scores, best first, equal ones by index; limit 0 means all. A score equal to the cutoff
  /// is not among them, unlike in GetScores; in descending order without a cutoff, neither are scores of 0.
  /// Cost     one pass; memory grows with the hits kept, at most 2 limit.
  QXSystem::QXIter<QXSimScore> GetSortedScores(const QXFingerPrint& query, unsigned limit = 0,
                                               unsigned begin = 0, unsigned end = 0) const;
  QXSystem::QXIter<QXSimScore> GetSortedScores(const QXChem::QXMolBase& query, unsigned limit = 0,
                                               unsigned begin = 0, unsigned end = 0) const;
  QXSystem::QXIter<QXSimScore> GetSortedScores(const QXFingerPrint& query,
                                               const QXFPDatabaseOptions& options) const;
  QXSystem::QXIter<QXSimScore> GetSortedScores(const QXChem::QXMolBase& query,
                                               const QXFPDatabaseOptions& options) const;

 private:
  std::unique_ptr<QXFPDatabaseImplBase> impl_;
};

}  // namespace QXFingrix
