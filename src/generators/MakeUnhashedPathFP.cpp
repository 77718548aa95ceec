#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPAtomLabels.h"
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

}  // namespace

bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minbonds,
                          unsigned maxbonds, unsigned atype, unsigned btype) {
  const TypeParams given{0, minbonds, maxbonds, atype, btype};
  if (mol.IsValid()) {
    const TypeParams params = CorrectPathParams("QXMakeUnhashedPathFP()", given);
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

bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  const auto* pathType = dynamic_cast<const QXFPUnhashedPathType*>(type);
  if (!pathType) {
    QXThrow.Warning("%s : invalid unhashed path fingerprint type!", "QXMakeUnhashedPathFP");
    return false;
  }
  if (pathType->GetID() & reservedUnhashedBits) QXThrow.Warning("Unrecognised data!");
  const TypeParams params = UnpackTypeId(pathType->GetID());
  return QXMakeUnhashedPathFP(fp, mol, params.minDistance, params.maxDistance, params.atype, params.btype);
}

}  // namespace QXFingrix
