#pragma once

#include <memory>

#include "QXFingrix/QXFPPatterns.h"
#include "QXSystem/QXErrorHandler.h"
#include "generators/GraphParams.h"
#include "generators/Substructures.h"

namespace QXFingrix {

/// @name What the substructures of molecules explain
/// The iterators share them.
/// @{
QXSystem::QXIter<QXFPPattern> PatternsOf(const SubstructuresPtr& found);
QXSystem::QXIter<QXChem::QXAtomBondSet> CoverageOf(const SubstructuresPtr& found, bool unique);
QXSystem::QXIter<QXFPMatch> OverlapOf(const SubstructuresPtr& a, const SubstructuresPtr& b);
/// @}

/// The pattern routines of a kind of graph fingerprint; Found is its class of substructures, with the class
/// Type of its descriptors and its GraphKind.
template <class Found>
struct GraphPatterns {
  static QXSystem::QXIter<QXFPPattern> Patterns(const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
    const auto found = Find("QXGetFPPatterns", mol, type);
    return found ? PatternsOf(found) : QXSystem::QXIter<QXFPPattern>();
  }

  static QXSystem::QXIter<QXChem::QXAtomBondSet> Coverage(const QXChem::QXMolBase& mol,
                                                          const QXFPTypeBase* type, bool unique) {
    const auto found = Find("QXGetFPCoverage", mol, type);
    return found ? CoverageOf(found, unique) : QXSystem::QXIter<QXChem::QXAtomBondSet>();
  }

  static QXSystem::QXIter<QXFPMatch> Overlap(const QXChem::QXMolBase& molA, const QXChem::QXMolBase& molB,
                                             const QXFPTypeBase* type) {
    if (!molA.IsValid() || !molB.IsValid()) return {};
    const auto a = Find("QXGetFPOverlap", molA, type);
    const auto b = a ? Find("QXGetFPOverlap", molB, type) : nullptr;
    return b ? OverlapOf(a, b) : QXSystem::QXIter<QXFPMatch>();
  }

 private:
  // Null when the molecule is invalid or, after a report, when it has too many or the type is none of the
  // library's.
  static SubstructuresPtr Find(const char* function, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
    if (!mol.IsValid()) return nullptr;
    const auto* ownType = dynamic_cast<const typename Found::Type*>(type);
    if (!ownType) {
      QXSystem::QXThrow.Warning("%s : invalid %s fingerprint type!", function, Found::kind.word);
      return nullptr;
    }
    const TypeParams given = CorrectNumBits(function, Found::kind, UnpackTypeId(ownType->GetID()));
    const TypeParams params = CorrectGraphParams(function, Found::kind, given);
    auto found = std::make_shared<Found>(mol, params);
    if (found->FindAll()) return found;
    QXSystem::QXThrow.Error("%s() : more than %u patterns of at most %u %s for %s fingerprint!", function,
                            Substructures::maxFound, params.maxDistance, Found::kind.distance,
                            Found::kind.word);
    return nullptr;
  }
};

}  // namespace QXFingrix
