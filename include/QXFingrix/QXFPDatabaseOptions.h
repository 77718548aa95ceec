#pragma once

#include <cstdint>
#include <memory>

#include "QXFingrix/QXSimMeasure.h"
#include "QXFingrix/QXSimScore.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXHitList.h"
#include "QXSystem/QXInterface.h"

namespace QXFingrix {

/// What a similarity search is asked for: measure, cutoff, order, number of hits, threads.
class QX_API QXFPDatabaseOptions {
 public:
  /// Tanimoto, best is largest, at most 1000 hits, no cutoff, one thread.
  QXFPDatabaseOptions() = default;

  /// Errors   warns and takes Tanimoto when simfunc is not a measure.
  QXFPDatabaseOptions(unsigned limit, unsigned simfunc);

  /// Maximum number of hits of a sorted search; 0 means all.
  unsigned GetLimit() const { return limit_; }
  void SetLimit(unsigned limit) { limit_ = limit; }

  /// The score threshold, in effect once set.
  bool HasCutoff() const { return hasCutoff_; }
  float GetCutoff() const { return cutoff_; }
  void SetCutoff(float cutoff);
  void ClearCutoff();

  /// True: the best scores are the largest. Never inferred from the measure: Manhattan is a distance,
  /// whose nearest entries come first in ascending order.
  bool GetDescendingOrder() const { return descending_; }
  void SetDescendingOrder(bool descending) { descending_ = descending; }

  /// One of the QXSimMeasure values.
  /// Errors   warns and keeps the measure when the value is not one of them.
  unsigned GetSimFunc() const { return simFunc_; }
  void SetSimFunc(unsigned measure);

  /// Weights of the bits found only in the query (alpha) and only in the entry (beta), each in [0, 1].
  /// Errors   warns and keeps both when one of them lies outside.
  void SetTverskyCoeffs(float alpha, float beta);
  float GetTverskyAlpha() const { return tverskyAlpha_; }
  float GetTverskyBeta() const { return tverskyBeta_; }

  /// Threads of a threaded search: 0 asks for one per processor.
  void SetNumProcessors(unsigned numProcessors) { numProcessors_ = numProcessors; }
  /// The threads to use: one per processor when 0 was asked for, otherwise what was asked for, at most
  /// twice the number of processors.
  unsigned GetNumProcessors() const;

 private:
  float cutoff_ = 0.0F;
  bool hasCutoff_ = false;
  unsigned simFunc_ = QXSimMeasure::Tanimoto;
  float tverskyAlpha_ = 0.95F;
  float tverskyBeta_ = 0.05F;
  bool descending_ = true;
  unsigned limit_ = 1000;
  unsigned numProcessors_ = 1;
};

/// The best hits of a search; made by QXInitFPDatabaseHitList.
using QXFPDatabaseHitList = QXSystem::QXHitList<QXSimScore>;

/// Makes the bounded list that keeps the best hits of a search; equal scores are ordered by lower index.
/// A hit must be strictly better than the cutoff; without a cutoff, strictly better than the smallest
/// positive normal double (descending: scores of 0 are never kept) or the largest double (ascending).
/// Cost     memory grows with the hits kept, at most 2 limit of them.
QX_API std::unique_ptr<QXFPDatabaseHitList> QXInitFPDatabaseHitList(unsigned limit, bool descending,
                                                                    bool hasCutoff, float cutoff);
/// The same with order and cutoff of the options, and their limit or, when that is 0, numTargets.
QX_API std::unique_ptr<QXFPDatabaseHitList> QXInitFPDatabaseHitList(std::uint64_t numTargets,
                                                                    const QXFPDatabaseOptions& options);

/// Which parameters QXConfigureFPDatabaseOptions adds.
namespace QXFPDatabaseOptionsFlag {
inline constexpr unsigned Limit = 1;
inline constexpr unsigned SimFunc = 2;
inline constexpr unsigned Cutoff = 4;
}  // namespace QXFPDatabaseOptionsFlag

/// Adds the sub-interface "fingerprint database search options" with the parameters named by flags:
/// -limit (default 10), -simfunc (default Tanimoto), -cutoff (no default).
/// Errors   warns and returns false when the sub-interface cannot be added.
QX_API bool QXConfigureFPDatabaseOptions(QXSystem::QXInterface& itf, unsigned flags);

/// Adds the same sub-interface with -limit, -simfunc, -cutoff and -descending; defaults come from the
/// options.
QX_API bool QXConfigureFPDatabaseOptions(QXSystem::QXInterface& itf, const QXFPDatabaseOptions& defaults);

/// Takes over what the interface says of -limit, -simfunc, -cutoff and -descending; a parameter that does not
/// exist or has no value leaves its option alone.
/// Errors   returns false when a parameter has another type than expected; the interface warns of it.
QX_API bool QXSetupFPDatabaseOptions(QXFPDatabaseOptions& options, const QXSystem::QXInterface& itf);

}  // namespace QXFingrix
