#include <span>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXPrimes.h"
#include "QXFingrix/QXTreeFP.h"
#include "generators/HashedGraphFP.h"
#include "generators/WorkspaceLease.h"
#include "generators/tree/HashedTreeWalk.h"
#include "generators/tree/TreeKind.h"

namespace QXFingrix {
namespace {

constexpr const char* function = "QXMakeTreeFP";

// What a thread keeps between calls: after the first few molecules a call allocates nothing.
struct Workspace {
  QXChem::QXGraphMol mol;
  std::vector<unsigned> atomLabels;
  std::vector<unsigned> bondLabels;
  HashedTreeWalk walk;
};

bool SetTreeBits(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params) {
  WorkspaceLease<Workspace> lease;
  auto& [copy, atomLabels, bondLabels, walk] = lease.Get();
  copy = mol;
  QXPrepareForFingerprinting(copy, QXFPType::Tree);
  // Chirality is perceived with the classes of the prepared molecule, not with some that came along.
  copy.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, params.atype, params.btype);
  const bool done = walk.SetBits(words, QXGetHashSize(params.numbits), copy, atomLabels, bondLabels,
                                 params.minDistance, params.maxDistance);
  if (!IsGiant(mol)) lease.GiveBack();
  if (!done) {
    QXSystem::QXThrow.Error("%s() : more than %u trees of at most %u bonds for tree fingerprint!", function,
                            static_cast<unsigned>(HashedTreeWalk::maxTrees), params.maxDistance);
  }
  return done;
}

constexpr HashedGraphFP treeFP = {function, treeKind, SetTreeBits};

}  // namespace

bool QXMakeTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned numbits, unsigned minbonds,
                  unsigned maxbonds, unsigned atype, unsigned btype) {
  return treeFP.Make(fp, mol, {numbits, minbonds, maxbonds, atype, btype});
}

bool QXMakeTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol) {
  return treeFP.Make(fp, mol);
}

bool QXMakeTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  return treeFP.MakeByType<QXFPTreeType>(fp, mol, type);
}

}  // namespace QXFingrix
