#include <span>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXPrimes.h"
#include "generators/HashedGraphFP.h"
#include "generators/HashedPathWalk.h"
#include "generators/WorkspaceLease.h"

namespace QXFingrix {
namespace {

// Symmetric start atoms are looked for where the walks are long and the molecule large enough to gain
// from it.
constexpr unsigned shortWalk = 3;
constexpr unsigned smallMolecule = 20;

// What a thread keeps between calls: after the first few molecules a call allocates nothing.
struct Workspace {
  QXChem::QXGraphMol mol;
  std::vector<unsigned> atomLabels;
  std::vector<unsigned> bondLabels;
  HashedPathWalk walk;
};

bool SetPathBits(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params) {
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
