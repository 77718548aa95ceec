#include <span>

#include "QXChem/QXPerception.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXPrimes.h"
#include "generators/HashedGraphFP.h"
#include "generators/HashedGraphWorkspace.h"
#include "generators/HashedPathWalk.h"
#include "generators/WorkspaceLease.h"

namespace QXFingrix {
namespace {

// Symmetric start atoms are looked for where the walks are long and the molecule large enough to gain
// from it.
constexpr unsigned shortWalk = 3;
constexpr unsigned smallMolecule = 20;

bool SetPathBits(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params) {
  WorkspaceLease<HashedGraphWorkspace<HashedPathWalk>> lease;
  auto& workspace = lease.Get();
  auto& [copy, atomLabels, bondLabels, walk] = workspace;
  workspace.Prepare(mol, QXFPType::Path);
  if (copy.NumAtoms() > 0) {
    if (params.maxDistance > shortWalk && mol.NumAtoms() > smallMolecule) {
      QXChem::QXPerceiveSymmetry(copy, true, false);
    }
    workspace.Label(params);
    walk.SetBits(words, QXGetHashSize(params.numbits), copy, atomLabels, bondLabels, params.minDistance,
                 params.maxDistance);
  }
  if (!IsGiant(mol)) lease.GiveBack();
  return true;
}

constexpr HashedGraphFP pathFP = {"QXMakePathFP", pathKind, SetPathBits};

}  // namespace

bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned numbits, unsigned minbonds,
                  unsigned maxbonds, unsigned atype, unsigned btype) {
  return pathFP.Make(fp, mol, {numbits, minbonds, maxbonds, atype, btype});
}

bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol) {
  return pathFP.Make(fp, mol);
}

bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  return pathFP.MakeByType<QXFPPathType>(fp, mol, type);
}

}  // namespace QXFingrix
