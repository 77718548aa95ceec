#pragma once

#include <memory>
#include <optional>

#include "QXFingrix/QXFPPatterns.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/FingerPrintText.h"
#include "generators/GraphParams.h"
#include "generators/Substructures.h"

namespace QXFingrix {

/// Has the substructures of a molecule found. Null after a report when they are too many, or their tokens too
/// long.
SubstructuresPtr FindSubstructures(const char* function, const GraphKind& kind, unsigned maxDistance,
                                   std::shared_ptr<Substructures> found);

/// @name What the substructures of molecules explain
/// The iterators share them.
/// @{
QXSystem::QXIter<QXFPPattern> PatternsOf(const SubstructuresPtr& found);
QXSystem::QXIter<QXChem::QXAtomBondSet> CoverageOf(const SubstructuresPtr& found, bool unique);
QXSystem::QXIter<QXFPMatch> OverlapOf(const SubstructuresPtr& a, const SubstructuresPtr& b);
/// @}

/// The pattern routines of a kind of graph fingerprint, Type being the class of its descriptors; Found is its
/// class of substructures, with its GraphKind.
template <class Found, class Type>
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
    constexpr const char* function = "QXGetFPOverlap";
    const auto params = ReadParams(function, type);
    const auto a = params ? Find(function, molA, *params) : nullptr;
    const auto b = a ? Find(function, molB, *params) : nullptr;
    return b ? OverlapOf(a, b) : QXSystem::QXIter<QXFPMatch>();
  }

 private:
  static constexpr bool isUnhashed = IsUnhashedType(Type::TypeCode);

  // Nothing after a report when the type is none of the library's.
  static std::optional<TypeParams> ReadParams(const char* function, const QXFPTypeBase* type) {
    const auto* ownType = dynamic_cast<const Type*>(type);
    if (!ownType) {
      QXSystem::QXThrow.Warning("%s : invalid %s%s fingerprint type!", function,
                                isUnhashed ? "unhashed " : "", Found::kind.word);
      return std::nullopt;
    }
    TypeParams params = UnpackTypeId(ownType->GetID());
    if (!isUnhashed) params = CorrectNumBits(function, Found::kind, params);
    return CorrectGraphParams(function, Found::kind, params);
  }

  static SubstructuresPtr Find(const char* function, const QXChem::QXMolBase& mol, const TypeParams& params) {
    return FindSubstructures(function, Found::kind, params.maxDistance,
                             std::make_shared<Found>(mol, Type::TypeCode, params));
  }

  static SubstructuresPtr Find(const char* function, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
    if (!mol.IsValid()) return nullptr;
    const auto params = ReadParams(function, type);
    return params ? Find(function, mol, *params) : nullptr;
  }
};

}  // namespace QXFingrix
