#include "QXFingrix/QXFPTypeLookup.h"

#include <algorithm>
#include <iterator>

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPTypeParams.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeStringParser.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {
namespace {

using QXSystem::QXThrow;

/// The parameters of a kind's VS variants.
struct VSRow {
  unsigned code;
  TypeParams params[latestVSVersion];  // of versions 1 and 2
};

// The defaults without formal charge and hybridisation.
constexpr unsigned WithoutState(unsigned atype) {
  return atype & ~(QXFPAtomType::FCharge | QXFPAtomType::Hyb);
}

constexpr TypeParams pathVS = {4096, 0, 5, WithoutState(QXFPAtomType::DefaultPathAtom),
                               QXFPBondType::DefaultPathBond};
constexpr TypeParams circularVS1 = {4096, 0, 5, WithoutState(QXFPAtomType::DefaultCircularAtom),
                                    QXFPBondType::DefaultCircularBond};
constexpr TypeParams circularVS2 = {4096, 0, 5, circularVS1.atype & ~QXFPAtomType::HCount,
                                    QXFPBondType::DefaultCircularBond};
constexpr TypeParams treeVS = {4096, 0, 4, WithoutState(QXFPAtomType::DefaultTreeAtom),
                               QXFPBondType::DefaultTreeBond};

constexpr VSRow vsTable[] = {
    {QXFPType::Path, {pathVS, pathVS}},
    {QXFPType::Circular, {circularVS1, circularVS2}},
    {QXFPType::Tree, {treeVS, treeVS}},
};

const VSRow* FindVSRow(unsigned code) {
  const auto row = std::ranges::find(vsTable, code, &VSRow::code);
  return row == std::end(vsTable) ? nullptr : row;
}

// The version that a caller's number asks for, 0 if it asks for none that there is.
unsigned ResolveVSVersion(unsigned vsVersion) {
  if (vsVersion == 0) return latestVSVersion;
  return vsVersion <= latestVSVersion ? vsVersion : 0;
}

const QXFPTypeBase* CachedVSType(const VSRow& row, unsigned vsVersion) {
  const TypeRow& base = *FindTypeRow(row.code);
  return base.cached(base.version, row.params[vsVersion - 1]);
}

}  // namespace

const QXFPTypeBase* QXGetFPType(const std::string& typeString) {
  const TypeRow* row = FindTypeRowByPrefix(typeString);
  if (!row) return nullptr;
  const bool plain = row->shape == TypeShape::Plain;
  ParsedType parsed;
  if (!ParseTypeString(*row, typeString, parsed)) {
    if (!plain) QXThrow.Warning("QXGetFPType() invalid fingerprint type string");
    return nullptr;
  }
  if (parsed.version != row->version) {
    QXThrow.Report(plain ? QXSystem::QXErrorLevel::Error : QXSystem::QXErrorLevel::Warning,
                   "QXGetFPType() fingerprint type with old version number");
    return nullptr;
  }
  return row->cached(row->version, parsed.params);
}

const QXFPTypeBase* QXGetFPType(unsigned type, bool vs, unsigned version) {
  if (vs) {
    const unsigned vsVersion = ResolveVSVersion(version);
    if (vsVersion == 0) {
      QXThrow.Warning("QXGetFPType() unknown VS fingerprint version");
      return nullptr;
    }
    if (const VSRow* row = FindVSRow(type)) return CachedVSType(*row, vsVersion);
  }
  const TypeRow* row = FindTypeRow(type);
  if (!row) {
    QXThrow.Warning("QXGetFPType() unknown fingerprint type");
    return nullptr;
  }
  return row->cached(row->version, row->defaults);
}

const QXFPTypeBase* QXGetVSFPType(unsigned type, unsigned vsVersion) {
  const unsigned resolved = ResolveVSVersion(vsVersion);
  if (resolved == 0) {
    QXThrow.Warning("QXGetVSFPType() unknown VS fingerprint version");
    return nullptr;
  }
  const VSRow* row = FindVSRow(type);
  if (!row) {
    QXThrow.Warning("QXGetVSFPType: no VS fingerprint type defined for requested fingerprint type: %d", type);
    return nullptr;
  }
  return CachedVSType(*row, resolved);
}

std::string QXGetFingerPrintName(const QXFPTypeBase* type) {
  const QXFPTypeParams params(type);
  return params.IsValid() ? FindTypeRow(params.GetFPType())->word : "UNKNOWN";
}

unsigned QXGetFingerPrintSize(const QXFPTypeBase* type) {
  return QXFPTypeParams(type).GetNumBits();
}

}  // namespace QXFingrix
