#pragma once

#include <string>

#include "QXSystem/QXExport.h"
#include "QXSystem/QXNamespace.h"

namespace QXFingrix {

/// The similarity measures by number. The values are stored in search options; frozen.
namespace QXSimMeasure {
inline constexpr unsigned Tanimoto = 1;
inline constexpr unsigned Cosine = 2;
inline constexpr unsigned Dice = 3;
inline constexpr unsigned Euclid = 4;
inline constexpr unsigned Tversky = 5;
inline constexpr unsigned Manhattan = 6;  ///< a distance: 0 means identical
}  // namespace QXSimMeasure

/// True for the six values above.
constexpr bool QXIsSimilarityMeasure(unsigned measure) {
  return measure >= QXSimMeasure::Tanimoto && measure <= QXSimMeasure::Manhattan;
}

/// The measure's name, e.g. "Tanimoto"; "unknown" for a value that is not a measure.
QX_API std::string QXGetSimilarityMeasureName(unsigned measure);

/// The namespace "QXSimMeasure": the six names and values above, in that order.
QX_API const QXSystem::QXNamespaceInterface& QXGetSimMeasureNamespaceInterface();

}  // namespace QXFingrix
