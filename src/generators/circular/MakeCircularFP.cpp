#include <span>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXCircularFP.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXPrimes.h"
#include "generators/HashedGraphFP.h"
#include "generators/WorkspaceLease.h"
#include "generators/circular/CircularKind.h"
#include "generators/circular/HashedCircularWalk.h"

namespace QXFingrix {
namespace {

// What a thread keeps between calls: after the first few molecules a call allocates nothing.
struct Workspace {
  QXChem::QXGraphMol mol;
  std::vector<unsigned> atomLabels;
  std::vector<unsigned> bondLabels;
  HashedCircularWalk walk;
};

bool SetCircularBits(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params) {
  WorkspaceLease<Workspace> lease;
  auto& [copy, atomLabels, bondLabels, walk] = lease.Get();
  copy = mol;
  QXPrepareForFingerprinting(copy, QXFPType::Circular);
  // Chirality is perceived with the classes of the prepared molecule, not with some that came along.
  copy.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, params.atype, params.btype);
  walk.SetBits(words, QXGetHashSize(params.numbits), copy, atomLabels, bondLabels, params.minDistance,
               params.maxDistance);
  if (!IsGiant(mol)) lease.GiveBack();
  return true;
}

constexpr HashedGraphFP circularFP = {"QXMakeCircularFP", circularKind, SetCircularBits};

}  // namespace

bool QXMakeCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned numbits, unsigned minradius,
                      unsigned maxradius, unsigned atype, unsigned btype) {
  return circularFP.Make(fp, mol, {numbits, minradius, maxradius, atype, btype});
}

bool QXMakeCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol) {
  return circularFP.Make(fp, mol);
}

bool QXMakeCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  return circularFP.MakeByType<QXFPCircularType>(fp, mol, type);
}

}  // namespace QXFingrix
