#include "generators/GraphParams.h"

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {

using QXSystem::QXThrow;

TypeParams CorrectGraphParams(const char* function, const GraphKind& kind, TypeParams params) {
  const TypeParams& defaults = FindTypeRow(kind.code)->defaults;
  if (params.minDistance > kind.limit) {
    QXThrow.Warning("%s() : invalid min %s %d for %s fingerprint (default %d is used)!", function,
                    kind.distance, params.minDistance, kind.word, defaults.minDistance);
    params.minDistance = defaults.minDistance;
  }
  if (params.maxDistance > kind.limit) {
    QXThrow.Warning("%s() : invalid max %s %d for %s fingerprint (default %d is used)!", function,
                    kind.distance, params.maxDistance, kind.word, defaults.maxDistance);
    params.maxDistance = defaults.maxDistance;
  }
  if (params.maxDistance < params.minDistance) {
    QXThrow.Warning("%s() : invalid min %s %d > max %s %d for %s fingerprint (min%s = max%s is used)!",
                    function, kind.distance, params.minDistance, kind.distance, params.maxDistance, kind.word,
                    kind.distance, kind.distance);
    params.minDistance = params.maxDistance;
  }
  if (params.atype == 0 && params.btype == 0) {
    QXThrow.Warning(
        "%s() : invalid to have both atom and bond types set to be None (default types are used)!", function);
    params.atype = defaults.atype;
    params.btype = defaults.btype;
  }
  return params;
}

TypeParams CorrectNumBits(const char* function, const GraphKind& kind, TypeParams params) {
  constexpr unsigned minNumBits = 16;
  constexpr unsigned maxNumBits = 65535;
  if (params.numbits < minNumBits || params.numbits > maxNumBits) {
    const unsigned defaultSize = FindTypeRow(kind.code)->defaults.numbits;
    QXThrow.Warning("%s() : invalid bit vector size %d for %s fingerprint (default %d is used)!", function,
                    params.numbits, kind.word, defaultSize);
    params.numbits = defaultSize;
  }
  return params;
}

TypeParams RemoveUnknownMaskBits(const char* function, const GraphKind& kind, TypeParams params) {
  using namespace QXFPAtomType;
  constexpr unsigned allAtomTypes = DefaultAtom | InRing | EqArom | EqHBAcc | EqHBDon | HCount;
  constexpr unsigned allBondTypes = QXFPBondType::DefaultBond | QXFPBondType::InRing;
  const unsigned atype = params.atype & allAtomTypes;
  const unsigned btype = params.btype & allBondTypes;
  if (atype == params.atype && btype == params.btype) return params;
  QXThrow.Warning(
      "%s() : invalid atom type mask %u or bond type mask %u for %s fingerprint (%u and %u are used)!",
      function, params.atype, params.btype, kind.word, atype, btype);
  params.atype = atype;
  params.btype = btype;
  return params;
}

}  // namespace QXFingrix
