#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPVersion.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/FingerPrintText.h"
#include "generators/PathParams.h"
#include "generators/PathTokenWalk.h"
#include "generators/WorkspaceLease.h"

namespace QXFingrix {
namespace {

using QXSystem::QXThrow;

constexpr const char* caller = "QXMakeUnhashedPathFP()";

// What a thread keeps between calls.
struct Workspace {
  QXChem::QXGraphMol mol;
  std::vector<std::string> atomLabels;
  std::vector<std::string> bondLabels;
  PathTokenWalk walk;
  std::string text;
};

bool IsLarge(Workspace& workspace) {
  constexpr std::size_t large = std::size_t{1} << 22;
  return workspace.walk.GetTokens().GetCapacity() > large || workspace.text.capacity() > large;
}

bool StoreTokens(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const TypeParams& params) {
  WorkspaceLease<Workspace> lease;
  auto& [copy, atomLabels, bondLabels, walk, text] = lease.Get();
  copy = mol;
  QXPrepareForFingerprinting(copy, QXFPType::UHPath);
  // Chirality is perceived with the classes of the prepared molecule, not with some that came along.
  copy.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, params.atype, params.btype);
  if (!walk.Collect(copy, atomLabels, bondLabels, params.minDistance, params.maxDistance, maxFPTextSize)) {
    ReportFPTextTooLong();
    return false;
  }
  walk.GetTokens().Write(text);
  const bool stored = SetFPText(fp, text);
  if (!IsGiant(mol) && !IsLarge(lease.Get())) lease.GiveBack();
  return stored;
}

// Bits without a meaning would lead to a type that names other parameters or none.
void RemoveUnknownMaskBits(TypeParams& params) {
  using namespace QXFPAtomType;
  constexpr unsigned allAtomTypes = DefaultAtom | InRing | EqArom | EqHBAcc | EqHBDon | HCount;
  constexpr unsigned allBondTypes = QXFPBondType::DefaultBond | QXFPBondType::InRing;
  const unsigned atype = params.atype & allAtomTypes;
  const unsigned btype = params.btype & allBondTypes;
  if (atype == params.atype && btype == params.btype) return;
  QXThrow.Warning(
      "%s : invalid atom type mask %u or bond type mask %u for path fingerprint (%u and %u are used)!",
      caller, params.atype, params.btype, atype, btype);
  params.atype = atype;
  params.btype = btype;
}

bool MakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const TypeParams& given) {
  if (mol.IsValid()) {
    const TypeParams params = CorrectPathParams(caller, given);
    if (StoreTokens(fp, mol, params)) {
      const auto version = static_cast<unsigned short>(QXGetFingerPrintVersion(QXFPType::UHPath));
      fp.SetFPTypeBase(QXGetUnhashedPathFPType(version, params.minDistance, params.maxDistance, params.atype,
                                               params.btype));
      return true;
    }
  }
  fp.SetFPTypeBase(nullptr);
  return false;
}

}  // namespace

bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minbonds,
                          unsigned maxbonds, unsigned atype, unsigned btype) {
  TypeParams params{0, minbonds, maxbonds, atype, btype};
  if (mol.IsValid()) RemoveUnknownMaskBits(params);
  return MakeFP(fp, mol, params);
}

bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  const auto* pathType = dynamic_cast<const QXFPUnhashedPathType*>(type);
  if (!pathType) {
    QXThrow.Warning("%s : invalid unhashed path fingerprint type!", "QXMakeUnhashedPathFP");
    return false;
  }
  if (pathType->GetID() & reservedUnhashedBits) QXThrow.Warning("Unrecognised data!");
  return MakeFP(fp, mol, UnpackTypeId(pathType->GetID()));
}

}  // namespace QXFingrix
