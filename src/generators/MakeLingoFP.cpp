#include <string>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXLingo.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPVersion.h"
#include "QXFingrix/QXLingoFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/FingerPrintText.h"

namespace QXFingrix {
namespace {

using QXChem::QXLingoMap;

const QXFPTypeBase* CurrentLingoType() {
  return QXGetLingoFPType(static_cast<unsigned short>(QXGetFingerPrintVersion(QXFPType::Lingo)));
}

bool StoreLingoText(QXFingerPrint& fp, const QXLingoMap& generator, const QXChem::QXMolBase& mol) {
  std::string text;
  if (!generator.CreateString(text, mol)) {
    QXSystem::QXThrow.Warning(
        "QXMakeLingoFP() : no Lingo text for a molecule of %u atoms (more than %u, or a structure that "
        "cannot be written)!",
        mol.NumAtoms(), QXLingoMap::maxAtoms);
    fp.SetFPTypeBase(nullptr);
    return false;
  }
  SetFPText(fp, text);  // one that does not fit has been reported, and is no failure
  fp.SetFPTypeBase(CurrentLingoType());
  return true;
}

}  // namespace

bool QXMakeLingoFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol) {
  static const QXLingoMap generator;
  if (!mol.IsValid()) {
    fp.SetFPTypeBase(nullptr);
    return false;
  }
  if (QXIsPreparedForFingerprinting(mol, QXFPType::Lingo)) return StoreLingoText(fp, generator, mol);
  QXChem::QXGraphMol copy = mol;
  QXPrepareForFingerprinting(copy, QXFPType::Lingo);
  if (copy.NumAtoms() > 0) return StoreLingoText(fp, generator, copy);
  static_cast<QXSystem::QXBitVector&>(fp) = QXSystem::QXBitVector(1);
  fp.SetFPTypeBase(CurrentLingoType());
  return true;
}

bool QXReadLingoFingerPrintType(std::istream&, unsigned short version, QXFingerPrint& fp) {
  fp.SetFPTypeBase(QXGetLingoFPType(version));
  return true;
}

bool QXWriteLingoFingerPrintType(std::ostream&, const QXFingerPrint&) {
  return true;
}

}  // namespace QXFingrix
