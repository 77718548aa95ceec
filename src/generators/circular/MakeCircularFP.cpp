#include <span>

#include "QXFingrix/QXCircularFP.h"
#include "QXFingrix/QXPrimes.h"
#include "generators/HashedGraphFP.h"
#include "generators/HashedGraphWorkspace.h"
#include "generators/WorkspaceLease.h"
#include "generators/circular/CircularKind.h"
#include "generators/circular/HashedCircularWalk.h"

namespace QXFingrix {
namespace {

bool SetCircularBits(std::span<std::uint64_t> words, const QXChem::QXMolBase& mol, const TypeParams& params) {
  WorkspaceLease<HashedGraphWorkspace<HashedCircularWalk>> lease;
  auto& workspace = lease.Get();
  auto& [copy, atomLabels, bondLabels, walk] = workspace;
  workspace.Prepare(mol, QXFPType::Circular);
  workspace.Label(params);
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
