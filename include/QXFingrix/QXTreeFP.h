#pragma once

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

class QXFingerPrint;
class QXFPTypeBase;

/// Makes the tree fingerprint of a molecule: one bit for every tree of minbonds to maxbonds bonds, which is a
/// connected set of bonds that closes no ring, branched or not; without bonds, an atom. At least one of its
/// atoms is heavy. Neither the order of the atoms nor the place where a tree is entered matters.
/// Shape    numbits 16 to 65535; 0 <= minbonds <= maxbonds <= 10; atype and btype are masks of QXFPAtomType
///          and QXFPBondType, not both 0. Anything else draws one Warning each and is replaced by the default
///          (4096, 0, 4; minbonds = maxbonds; masks 63 and 1); the type of fp carries what was used. Mask
///          bits without a meaning are not looked for: fp has the bits that it has without them, but its type
///          may name other masks or "invalid".
/// Errors   an invalid molecule: false, the type of fp cleared, its bits untouched, nothing reported. More
///          than 100,000,000 trees of one to maxbonds bonds: the Error "QXMakeTreeFP() : more than 100000000
///          trees of at most %u bonds for tree fingerprint!", false, no type, no bit set. No memory:
///          std::bad_alloc, and what fp then holds is not to be relied on.
/// Threads  safe on different fingerprints; mol is only read.
/// Cost     one copy of mol and a hash for every tree of up to four bonds; larger trees cost ten times as
///          much each. Each further bond multiplies their number by less than 2, in cages by 2 to 3. Memory
///          does not grow with it.
/// Source   docs/TreeFingerprint.md
QX_API bool QXMakeTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned numbits, unsigned minbonds,
                         unsigned maxbonds, unsigned atype, unsigned btype);

/// The same with the default tree type: 4096 bits, trees of 0 to 4 bonds, masks 63 and 1.
QX_API bool QXMakeTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol);

/// The same with the parameters of a tree type.
/// Errors   a null type or one of another kind: Warning, false, fp untouched.
QX_API bool QXMakeTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

}  // namespace QXFingrix
