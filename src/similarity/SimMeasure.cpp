#include "QXFingrix/QXSimMeasure.h"

namespace QXFingrix {

const QXSystem::QXNamespaceInterface& QXGetSimMeasureNamespaceInterface() {
  static const QXSystem::QXNamespaceInterface itf(
      "QXSimMeasure", QXSystem::QXNamespaceKind::Enumeration,
      {{"Tanimoto", QXSimMeasure::Tanimoto, "shared bits over all bits set in either"},
       {"Cosine", QXSimMeasure::Cosine, "shared bits over the geometric mean of the bit counts"},
       {"Dice", QXSimMeasure::Dice, "shared bits over the arithmetic mean of the bit counts"},
       {"Euclid", QXSimMeasure::Euclid, "root of the fraction of bits that agree, set or clear"},
       {"Tversky", QXSimMeasure::Tversky, "shared bits, unshared ones weighted by the side they are on"},
       {"Manhattan", QXSimMeasure::Manhattan, "fraction of bits that differ, a distance"}});
  return itf;
}

std::string QXGetSimilarityMeasureName(unsigned measure) {
  return QXGetSimMeasureNamespaceInterface().GetName(measure, "unknown");
}

}  // namespace QXFingrix
