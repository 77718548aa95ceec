#include <new>
#include <span>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPVersion.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXPrimes.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeTable.h"
#include "generators/HashedPathWalk.h"
#include "generators/PathParams.h"
#include "generators/WorkspaceLease.h"

namespace QXFingrix {
namespace {

using QXSystem::QXThrow;

constexpr unsigned minNumBits = 16;
constexpr unsigned maxNumBits = 65535;

const TypeParams& Defaults() {
  return FindTypeRow(QXFPType::Path)->defaults;
}

// Symmetric start atoms are looked for where the walks are long and the molecule large enough to gain
// from it.
constexpr unsigned shortWalk = 3;
constexpr unsigned smallMolecule = 20;

// Replaces what is out of range by the defaults, with a Warning each.
TypeParams CorrectParams(TypeParams params) {
  const char* const caller = "QXMakePathFP()";
  if (params.numbits < minNumBits || params.numbits > maxNumBits) {
    const unsigned defaultSize = Defaults().numbits;
    QXThrow.Warning("%s : invalid bit vector size %d for path fingerprint (default %d is used)!", caller,
                    params.numbits, defaultSize);
    params.numbits = defaultSize;
  }
  return CorrectPathParams(caller, params);
}

// What a thread keeps between calls: after the first few molecules a call allocates nothing.
struct Workspace {
  QXChem::QXGraphMol mol;
  std::vector<unsigned> atomLabels;
  std::vector<unsigned> bondLabels;
  HashedPathWalk walk;
};

// Sets the bits of `words`; they are clear.
void SetPathBits(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params) {
  WorkspaceLease<Workspace> lease;
  auto& [copy, atomLabels, bondLabels, walk] = lease.Get();
  copy = mol;
  QXPrepareForFingerprinting(copy, QXFPType::Path);
  if (copy.NumAtoms() > 0) {
    if (params.maxDistance > shortWalk && mol.NumAtoms() > smallMolecule) {
      QXChem::QXPerceiveSymmetry(copy, true, false);
    } else {
      // Classes that came along with the caller's molecule may rest on less than a proof.
      copy.ForgetPerceived(QXChem::QXPerceived::Symmetry);
    }
    QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, params.atype, params.btype);
    walk.SetBits(words, QXGetHashSize(params.numbits), copy, atomLabels, bondLabels, params.minDistance,
                 params.maxDistance);
  }
  if (!IsGiant(mol)) lease.GiveBack();
}

}  // namespace

bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned numbits, unsigned minbonds,
                  unsigned maxbonds, unsigned atype, unsigned btype) {
  if (!mol.IsValid()) {
    fp.SetFPTypeBase(nullptr);
    return false;
  }
  const TypeParams params = CorrectParams({numbits, minbonds, maxbonds, atype, btype});
  if (!fp.SetSize(params.numbits)) throw std::bad_alloc();
  fp.ClearBits();
  // The modulus never exceeds the size, so every bit fits.
  SetPathBits(fp.GetWords(), mol, params);
  const auto version = static_cast<unsigned short>(QXGetFingerPrintVersion(QXFPType::Path));
  fp.SetFPTypeBase(QXGetPathFPType(version, params.numbits, params.minDistance, params.maxDistance,
                                   params.atype, params.btype));
  return true;
}

bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol) {
  const TypeParams& defaults = Defaults();
  return QXMakePathFP(fp, mol, defaults.numbits, defaults.minDistance, defaults.maxDistance, defaults.atype,
                      defaults.btype);
}

bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  const auto* pathType = dynamic_cast<const QXFPPathType*>(type);
  if (!pathType) {
    QXThrow.Warning("%s : invalid path fingerprint type!", "QXMakePathFP");
    return false;
  }
  TypeParams params;
  QXFPPathType::SetParamsFromID(pathType->GetID(), params.numbits, params.minDistance, params.maxDistance,
                                params.atype, params.btype);
  return QXMakePathFP(fp, mol, params.numbits, params.minDistance, params.maxDistance, params.atype,
                      params.btype);
}

}  // namespace QXFingrix
