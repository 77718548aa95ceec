#pragma once

#include <memory>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPTypeBase.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXSimFunc.h"
#include "QXFingrix/QXSimScore.h"
#include "QXSystem/QXIter.h"
#include "database/EntryScorer.h"
#include "database/FingerPrintStore.h"
#include "similarity/MeasureFormula.h"

namespace QXFingrix {

/// What reports call the queries.
namespace QueryName {
inline constexpr const char* getScores = "QXFPDatabase::GetScores()";
inline constexpr const char* getSortedScores = "QXFPDatabase::GetSortedScores()";
}  // namespace QueryName

/// The fingerprints of an in-memory database, its settings and its searches. A kind of fingerprint adds what
/// it keeps for each entry and how it scores one; see QXFPDatabase for what the functions promise.
class QXFPDatabaseImplBase {
 public:
  explicit QXFPDatabaseImplBase(const QXFPTypeBase* type) : type_(type), store_(type) {}
  virtual ~QXFPDatabaseImplBase();
  QXFPDatabaseImplBase(const QXFPDatabaseImplBase&) = delete;
  QXFPDatabaseImplBase& operator=(const QXFPDatabaseImplBase&) = delete;

  virtual void SetSimFunc(unsigned measure, bool descending) = 0;
  virtual void SetSimFunc(const QXSimFuncBase& func, bool descending) = 0;
  virtual unsigned AddFP(const QXFingerPrint& fp);
  virtual unsigned NumFingerPrints() const { return store_.Size(); }
  virtual QXSystem::QXIter<QXFingerPrint> GetFingerPrints() const { return store_.GetIter(); }
  virtual QXSystem::QXIter<QXSimScore> GetScores(const QXFingerPrint& fp, unsigned begin, unsigned end) const;
  virtual QXSystem::QXIter<QXSimScore> GetSortedScores(const QXFingerPrint& fp, unsigned limit,
                                                       unsigned begin, unsigned end) const;
  virtual QXSystem::QXIter<QXSimScore> GetScores(const QXFingerPrint& fp,
                                                 const QXFPDatabaseOptions& options) const;
  virtual QXSystem::QXIter<QXSimScore> GetSortedScores(const QXFingerPrint& fp,
                                                       const QXFPDatabaseOptions& options) const;

  const QXFPTypeBase* GetFPTypeBase() const { return type_; }
  bool HasCutoff() const { return hasCutoff_; }
  float GetCutoff() const { return cutoff_; }
  void SetCutoff(float cutoff) {
    cutoff_ = cutoff;
    hasCutoff_ = true;
  }
  void ClearCutoff() {
    cutoff_ = 0.0F;
    hasCutoff_ = false;
  }
  void SetDescendingOrder(bool descending) { descending_ = descending; }
  bool GetDescendingOrder() const { return descending_; }
  /// Silent, also for a fingerprint without a type.
  bool IsSameFPType(const QXFingerPrint& fp) const { return fp.GetFPTypeBase() == type_; }

 protected:
  const FingerPrintStore& Store() const { return store_; }
  FingerPrintStore& Store() { return store_; }

  /// Appends an entry to the store and keeps what else the kind needs of it.
  /// Errors   std::bad_alloc, nothing stored.
  virtual void Append(const QXFingerPrint& fp) = 0;

  /// Tells that SetSimFunc, or the options of a query, ask for a measure that the kind does not know.
  static void WarnUnknownMeasure();
  /// The measure chosen by number; Tanimoto and the warning for one that is unknown.
  static MeasureFormula ChooseMeasure(unsigned measure);

  struct Query {
    const char* caller;
    const QXFingerPrint& fp;
    QXFPDatabaseOptions settings;
    bool hasOptions;  // then the measure of the settings counts, otherwise the one that is installed
    unsigned begin = 0;
    unsigned end = 0;

    MeasureFormula GetMeasure(const MeasureFormula& installed) const;
  };

  /// What compares a query of the database's type with the entries; the query outlives it.
  /// Errors   null after a Warning in the caller's name when the query cannot be compared.
  virtual std::unique_ptr<EntryScorer> MakeScorer(const Query& query) const = 0;

 private:
  QXFPDatabaseOptions OwnSettings(unsigned limit) const;
  QXSystem::QXIter<QXSimScore> FindScores(const Query& query) const;
  QXSystem::QXIter<QXSimScore> FindSortedScores(const Query& query) const;
  // Makes an iterator of find(scorer, first entry, end of entries).
  template <class Find>
  QXSystem::QXIter<QXSimScore> Search(const Query& query, Find find) const;

  const QXFPTypeBase* type_;
  float cutoff_ = 0.0F;
  bool hasCutoff_ = false;
  bool descending_ = true;
  FingerPrintStore store_;
};

}  // namespace QXFingrix
