#include <span>

#include "QXFingrix/QXPrimes.h"
#include "QXFingrix/QXTreeFP.h"
#include "generators/HashedGraphFP.h"
#include "generators/HashedGraphWorkspace.h"
#include "generators/WorkspaceLease.h"
#include "generators/tree/HashedTreeWalk.h"
#include "generators/tree/TreeKind.h"

namespace QXFingrix {
namespace {

constexpr const char* function = "QXMakeTreeFP";

bool SetTreeBits(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params) {
  WorkspaceLease<HashedGraphWorkspace<HashedTreeWalk>> lease;
  auto& workspace = lease.Get();
  auto& [copy, atomLabels, bondLabels, walk] = workspace;
  workspace.Prepare(mol, QXFPType::Tree);
  workspace.Label(params);
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
