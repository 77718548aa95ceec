#include "QXFingrix/QXPrepareForFingerprinting.h"

#include "QXChem/QXMolBase.h"
#include "QXChem/QXPerception.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {
namespace {

// The mark that a molecule carries after the one preparation that all kinds share.
constexpr unsigned preparedForAllKinds = 1;

}  // namespace

bool QXPrepareForFingerprinting(QXChem::QXMolBase& mol, unsigned code) {
  if (!FindTypeRow(code)) {
    QXSystem::QXThrow.Warning("%s : unknown fingerprint type!", "QXPrepareForFingerprinting");
    return false;
  }
  if (!mol.IsValid()) return false;
  if (mol.GetPreparedMark() == preparedForAllKinds) return true;
  QXChem::QXSuppressHydrogens(mol);
  QXChem::QXFindRingAtomsAndBonds(mol);
  QXChem::QXAssignAromaticFlags(mol);
  mol.SetPreparedMark(preparedForAllKinds);
  return true;
}

bool QXIsPreparedForFingerprinting(const QXChem::QXMolBase& mol, unsigned code) {
  return FindTypeRow(code) && mol.IsValid() && mol.GetPreparedMark() == preparedForAllKinds;
}

}  // namespace QXFingrix
