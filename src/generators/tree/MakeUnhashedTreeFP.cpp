#include "QXFingrix/QXUnhashedFP.h"
#include "generators/UnhashedGraphFP.h"
#include "generators/tree/TreeKind.h"
#include "generators/tree/TreeTokenWalk.h"

namespace QXFingrix {
namespace {

constexpr UnhashedGraphFP<QXFPUnhashedTreeType, TreeTokenWalk> treeFP = {"QXMakeUnhashedTreeFP", treeKind};

}  // namespace

bool QXMakeUnhashedTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minbonds,
                          unsigned maxbonds, unsigned atype, unsigned btype) {
  return treeFP.Make(fp, mol, {0, minbonds, maxbonds, atype, btype});
}

bool QXMakeUnhashedTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  return treeFP.MakeByType(fp, mol, type);
}

}  // namespace QXFingrix
