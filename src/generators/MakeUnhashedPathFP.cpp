#include "QXFingrix/QXUnhashedFP.h"
#include "generators/PathTokenWalk.h"
#include "generators/UnhashedGraphFP.h"

namespace QXFingrix {
namespace {

constexpr UnhashedGraphFP<QXFPUnhashedPathType, PathTokenWalk> pathFP = {"QXMakeUnhashedPathFP", pathKind};

}  // namespace

bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minbonds,
                          unsigned maxbonds, unsigned atype, unsigned btype) {
  return pathFP.Make(fp, mol, {0, minbonds, maxbonds, atype, btype});
}

bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  return pathFP.MakeByType(fp, mol, type);
}

}  // namespace QXFingrix
