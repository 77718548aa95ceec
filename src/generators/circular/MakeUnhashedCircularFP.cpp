#include "QXFingrix/QXUnhashedFP.h"
#include "generators/UnhashedGraphFP.h"
#include "generators/circular/CircularKind.h"
#include "generators/circular/CircularTokenWalk.h"

namespace QXFingrix {
namespace {

constexpr UnhashedGraphFP<QXFPUnhashedCircularType, CircularTokenWalk> circularFP = {
    "QXMakeUnhashedCircularFP", circularKind};

}  // namespace

bool QXMakeUnhashedCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minradius,
                              unsigned maxradius, unsigned atype, unsigned btype) {
  return circularFP.Make(fp, mol, {0, minradius, maxradius, atype, btype});
}

bool QXMakeUnhashedCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) {
  return circularFP.MakeByType(fp, mol, type);
}

}  // namespace QXFingrix
