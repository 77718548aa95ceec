#pragma once

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

class QXFingerPrint;
class QXFPTypeBase;

/// Makes the circular fingerprint of a molecule: one bit for every environment of minradius to maxradius. The
/// environment of radius r around an atom consists of the bonds at atoms up to r - 1 bonds away, and of their
/// ends; that of radius 0 is the atom alone. Its identifier is mixed from the labels that are met on the way
/// outwards. A set of bonds that is the environment of several atoms or radii counts once, with the smallest
/// radius and there with the smallest identifier, whatever minradius is; environments of radius 0 all count.
/// The order of the atoms does not matter.
/// Shape    numbits 16 to 65535; 0 <= minradius <= maxradius <= 20; atype and btype are masks of QXFPAtomType
///          and QXFPBondType, not both 0. Anything else draws one Warning each and is replaced by the default
///          (4096, 0, 5; minradius = maxradius; masks 4239 and 1); the type of fp carries what was used. Mask
///          bits without a meaning are not looked for: fp has the bits that it has without them, but its type
///          may name other masks or "invalid".
/// Errors   an invalid molecule: false, the type of fp cleared, its bits untouched, nothing reported.
///          No memory: std::bad_alloc, and what fp then holds is not to be relied on.
/// Threads  safe on different fingerprints; mol is only read.
/// Cost     one copy of mol and a few operations for every bond and radius; beyond 1,024 bonds a visit of
///          every bond of every environment.
/// Source   docs/CircularFingerprint.md; Rogers, Hahn, J. Chem. Inf. Model. 2010, 50, 742,
///          doi:10.1021/ci100050t.
QX_API bool QXMakeCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned numbits,
                             unsigned minradius, unsigned maxradius, unsigned atype, unsigned btype);

/// The same with the default circular type: 4096 bits, radius 0 to 5, masks 4239 and 1.
QX_API bool QXMakeCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol);

/// The same with the parameters of a circular type.
/// Errors   a null type or one of another kind: Warning, false, fp untouched.
QX_API bool QXMakeCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

}  // namespace QXFingrix
