#pragma once

#include <cstdint>
#include <span>

#include "QXChem/QXMolBase.h"
#include "QXFingrix/QXFPType.h"
#include "QXSystem/QXErrorHandler.h"
#include "generators/GraphParams.h"

namespace QXFingrix {

class QXFingerPrint;

/// What hashed graph fingerprints have in common: the checks of their parameters and the life of the
/// fingerprint. What a kind adds is the call that sets the bits, which are clear before it; false, once it
/// has reported why, when the molecule cannot be served.
struct HashedGraphFP {
  const char* function;  // that messages name
  GraphKind kind;
  bool (*setBits)(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params);

  /// Makes the fingerprint with parameters of which those out of range are replaced.
  bool Make(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const TypeParams& given) const;
  /// With the defaults of the kind.
  bool Make(QXFingerPrint& fp, const QXChem::QXMolBase& mol) const;
  /// With the parameters of a type of the kind.
  template <class FPType>
  bool MakeByType(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) const;
};

template <class FPType>
bool HashedGraphFP::MakeByType(QXFingerPrint& fp, const QXChem::QXMolBase& mol,
                               const QXFPTypeBase* type) const {
  const auto* ownType = dynamic_cast<const FPType*>(type);
  if (!ownType) {
    QXSystem::QXThrow.Warning("%s : invalid %s fingerprint type!", function, kind.word);
    return false;
  }
  TypeParams params;
  FPType::SetParamsFromID(ownType->GetID(), params.numbits, params.minDistance, params.maxDistance,
                          params.atype, params.btype);
  return Make(fp, mol, params);
}

}  // namespace QXFingrix
