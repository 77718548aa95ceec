#pragma once

#include <span>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPHistogram.h"
#include "QXFingrix/QXSimScore.h"
#include "QXSystem/QXDots.h"
#include "fastfp/scan/RecordScan.h"

// Records against each other, on the calling thread. Symmetric measures are scored in the upper triangle
// only. A copy of the tracer, if any, counts them. All functions throw std::bad_alloc.

namespace QXFingrix {

/// N x N scores.
std::vector<float> ScoreAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options,
                                 const QXSystem::QXDots* tracer);

/// Counts the scores of the pairs i < j; by Tversky, of all ordered pairs.
void CountAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options, QXFPHistogram& histogram,
                   const QXSystem::QXDots* tracer);

/// Counts the scores of the pairs i < j with the differences of their values, i ascending, then j: sums are
/// those of the plain double loop to the last bit.
/// Shape    values: one for each record; a symmetric measure.
void CountAllPairs(const RecordTable& records, const QXFPDatabaseOptions& options,
                   std::span<const float> values, QXFPVariogram& variogram, const QXSystem::QXDots* tracer);

/// The best `limit` pairs (i, j) of each record i that pass the cutoff, i itself among them, best first, equal
/// scores by lower j. A score that is not a number makes no pair.
std::vector<QXSimScorePair> FindNearestPairs(const RecordTable& records, const QXFPDatabaseOptions& options,
                                             std::uint64_t limit, const QXSystem::QXDots* tracer);

}  // namespace QXFingrix
