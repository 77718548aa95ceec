#include "QXFingrix/QXFPPatterns.h"

#include <algorithm>
#include <iterator>

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeBase.h"
#include "QXSystem/QXErrorHandler.h"
#include "generators/GraphPatterns.h"
#include "generators/PathSubstructures.h"
#include "generators/circular/CircularSubstructures.h"
#include "generators/tree/TreeSubstructures.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBondSet;
using QXChem::QXMolBase;
using QXSystem::QXIter;
using QXSystem::QXThrow;

/// The pattern routines of a kind of fingerprint.
struct PatternRoutines {
  unsigned code;
  QXIter<QXFPPattern> (*patterns)(const QXMolBase& mol, const QXFPTypeBase* type);
  QXIter<QXAtomBondSet> (*coverage)(const QXMolBase& mol, const QXFPTypeBase* type, bool unique);
  QXIter<QXFPMatch> (*overlap)(const QXMolBase& molA, const QXMolBase& molB, const QXFPTypeBase* type);
};

template <class Found, class Type>
constexpr PatternRoutines RowOf() {
  using Routines = GraphPatterns<Found, Type>;
  return {Type::TypeCode, Routines::Patterns, Routines::Coverage, Routines::Overlap};
}

template <class Found>
constexpr PatternRoutines Hashed() {
  return RowOf<Found, typename Found::HashedType>();
}

template <class Found>
constexpr PatternRoutines Unhashed() {
  return RowOf<Found, typename Found::UnhashedType>();
}

constexpr PatternRoutines kinds[] = {
    Hashed<PathSubstructures>(),
    Hashed<CircularSubstructures>(),
    Hashed<TreeSubstructures>(),
    {QXFPType::MACCS166, QXGetMACCSFPPatterns, QXGetMACCSFPCoverage, QXGetMACCSFPOverlap},
    Unhashed<PathSubstructures>(),
    Unhashed<CircularSubstructures>(),
    Unhashed<TreeSubstructures>(),
};

const PatternRoutines* FindRoutines(const QXFPTypeBase& type) {
  const auto found = std::ranges::find(kinds, type.GetFPType(), &PatternRoutines::code);
  return found != std::end(kinds) ? found : nullptr;
}

// Null after a Warning that names the caller.
const PatternRoutines* FindRoutines(const char* caller, const QXFPTypeBase* type) {
  if (!type) {
    QXThrow.Warning("%s : no fingerprint type!", caller);
    return nullptr;
  }
  if (const PatternRoutines* found = FindRoutines(*type)) return found;
  if (type->GetFPType() == QXFPType::Lingo) {
    QXThrow.Warning("%s is not available for Lingo fingerprint!", caller);
  } else {
    QXThrow.Warning("%s is not available for fingerprint type '%s'!", caller,
                    type->GetFPTypeString().c_str());
  }
  return nullptr;
}

}  // namespace

bool QXHasFPPatterns(const QXFPTypeBase* type) {
  return type && FindRoutines(*type);
}

QXFPMatch QXCombineMatches(const QXAtomBondSet& a, const QXAtomBondSet& b) {
  if (a.NumAtoms() == b.NumAtoms() && a.NumBonds() == b.NumBonds()) return {a, b};
  QXThrow.Warning("QXCombineMatches : %u atoms and %u bonds cannot be combined with %u atoms and %u bonds!",
                  a.NumAtoms(), a.NumBonds(), b.NumAtoms(), b.NumBonds());
  return {};
}

QXIter<QXFPPattern> QXGetFPPatterns(const QXMolBase& mol, const QXFPTypeBase* type) {
  const PatternRoutines* routines = FindRoutines("QXGetFPPatterns", type);
  return routines ? routines->patterns(mol, type) : QXIter<QXFPPattern>();
}

QXIter<QXAtomBondSet> QXGetFPCoverage(const QXMolBase& mol, const QXFPTypeBase* type, bool unique) {
  const PatternRoutines* routines = FindRoutines("QXGetFPCoverage", type);
  return routines ? routines->coverage(mol, type, unique) : QXIter<QXAtomBondSet>();
}

QXIter<QXFPMatch> QXGetFPOverlap(const QXMolBase& molA, const QXMolBase& molB, const QXFPTypeBase* type) {
  const PatternRoutines* routines = FindRoutines("QXGetFPOverlap", type);
  return routines ? routines->overlap(molA, molB, type) : QXIter<QXFPMatch>();
}

}  // namespace QXFingrix
