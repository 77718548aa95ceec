#include "QXFingrix/QXMakeFP.h"

#include <algorithm>
#include <iterator>

#include "QXFingrix/QXCircularFP.h"
#include "QXFingrix/QXLingoFP.h"
#include "QXFingrix/QXMACCSFP.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXTreeFP.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {
namespace {

using QXSystem::QXThrow;

// What the entry point by code makes of its `vs` flag.
constexpr unsigned deprecatedVSVersion = 1;

/// The generator of a kind of fingerprint.
struct GeneratorRow {
  unsigned code;
  bool (*make)(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type);
};

constexpr GeneratorRow generators[] = {
    {QXFPType::MACCS166, [](QXFingerPrint& fp, const QXChem::QXMolBase& mol,
                            const QXFPTypeBase*) { return QXMakeMACCS166FP(fp, mol); }},
    {QXFPType::Path, QXMakePathFP},
    {QXFPType::Lingo, [](QXFingerPrint& fp, const QXChem::QXMolBase& mol,
                         const QXFPTypeBase*) { return QXMakeLingoFP(fp, mol); }},
    {QXFPType::Tree, QXMakeTreeFP},
    {QXFPType::Circular, QXMakeCircularFP},
    {QXFPType::UHPath, QXMakeUnhashedPathFP},
    {QXFPType::UHCircular, QXMakeUnhashedCircularFP},
    {QXFPType::UHTree, QXMakeUnhashedTreeFP},
};

void ReportDeprecatedVS(unsigned type) {
  if (type == QXFPType::Circular) {
    QXThrow.Warning(
        "QXMakeFP: (%d) use QXMakeVSFP() for generating VS fingerprints - deprecated CircularVS fingerprints "
        "are being generated",
        type);
  } else if (type == QXFPType::Path || type == QXFPType::Tree) {
    QXThrow.Info("QXMakeFP: (%d) (deprecated) use QXMakeVSFP() for generating VS fingerprints", type);
  }
}

}  // namespace

bool QXMakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  if (!type) return false;
  const auto row = std::ranges::find(generators, type->GetFPType(), &GeneratorRow::code);
  return row != std::end(generators) && row->make(fp, mol, type);
}

bool QXMakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned type, bool vs) {
  const QXFPTypeBase* descriptor = QXGetFPType(type, vs, deprecatedVSVersion);
  if (!descriptor) {
    QXThrow.Warning("QXMakeFP() unknown fingerprint type");
    return false;
  }
  if (vs) ReportDeprecatedVS(type);
  return QXMakeFP(fp, mol, descriptor);
}

bool QXMakeVSFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned type, unsigned vsVersion) {
  if (vsVersion > latestVSVersion) {
    QXThrow.Warning("QXMakeVSFP: unknown vsVersion specified: %d", vsVersion);
    return false;
  }
  const QXFPTypeBase* descriptor = QXGetVSFPType(type, vsVersion);
  if (!descriptor) {
    QXThrow.Warning("QXMakeVSFP() unknown fingerprint type");
    return false;
  }
  return QXMakeFP(fp, mol, descriptor);
}

}  // namespace QXFingrix
