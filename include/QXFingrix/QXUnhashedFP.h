#pragma once

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

class QXFingerPrint;
class QXFPTypeBase;

/// Makes the unhashed path fingerprint of a molecule: every path that QXMakePathFP would hash, as a readable
/// token (see QXPathIdGenerator), in both directions; but walks start at heavy atoms, so that a path that
/// ends at a wildcard or at a hydrogen that preparation keeps stands in one direction only. The tokens, as
/// many times as they occur, in ascending byte order and joined by one blank, and a zero byte are stored as
/// the bytes of the bit vector. Neither the order of the atoms nor their symmetry matters.
/// Shape    0 <= minbonds <= maxbonds <= 20; anything else draws one Warning each and is replaced by the
///          default (0, 5; minbonds = maxbonds). atype and btype are masks of QXFPAtomType and QXFPBondType:
///          bits that have no meaning there draw one Warning and are left out, masks that are then both 0
///          draw another and are replaced by 191 and 3. The type of fp carries what was used.
/// Errors   an invalid molecule: false, the type of fp cleared, its bits untouched, nothing reported. Paths
///          whose text would not fit: the same and the error "Max size for an QXBitVector is INT_MAX", as
///          soon as that is known. No memory: std::bad_alloc.
/// Threads  safe on different fingerprints; mol is only read.
/// Cost     one copy of mol, a step for every atom and bond of every path, and the text, whose length may
///          grow exponentially with maxbonds in cages. Memory is bounded by a multiple of the text, which
///          is at most 256 MB; time is not, where long paths are asked for that hardly exist.
QX_API bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minbonds,
                                 unsigned maxbonds, unsigned atype, unsigned btype);

/// The same with the parameters of an unhashed path type. Its masks are taken as they are, so that fp gets
/// the type that was asked for: bits without a meaning have no effect on the tokens.
/// Errors   a null type or one of another kind: the Warning "QXMakeUnhashedPathFP : invalid unhashed path
///          fingerprint type!", false, fp untouched.
QX_API bool QXMakeUnhashedPathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

/// Makes the unhashed tree fingerprint of a molecule: every tree that QXMakeTreeFP would hash, as a readable
/// token, kept as above. A token is written like a SMARTS: the text of an atom (see QXFPAtomLabels.h), then its
/// branches in ascending byte order, each a bond's text and what hangs there, all but the last in parentheses,
/// e.g. "[#6](-[#7])=[#8]". It starts at the tree's centre; of two centres, at the one whose token comes first.
/// Shape    0 <= minbonds <= maxbonds <= 10; else as above with the default (0, 4) and the masks 63 and 1.
/// Errors   as above.
/// Threads  safe on different fingerprints; mol is only read.
/// Cost     one copy of mol, some hundred steps for every tree, and the text. Memory is bounded as above.
/// Source   docs/TreeFingerprint.md
QX_API bool QXMakeUnhashedTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minbonds,
                                 unsigned maxbonds, unsigned atype, unsigned btype);

/// The same with the parameters of an unhashed tree type, whose masks are taken as they are.
/// Errors   a null type or one of another kind: the Warning "QXMakeUnhashedTreeFP : invalid unhashed tree
///          fingerprint type!", false, fp untouched.
QX_API bool QXMakeUnhashedTreeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

/// Makes the unhashed circular fingerprint of a molecule: every environment that QXMakeCircularFP would hash,
/// as a readable token. Of the texts that the centres of one set of bonds give, the first in byte order is
/// taken. A token lists the atoms outwards from the centre, those that look alike once, with their number.
/// The tokens are kept as above.
/// Shape    0 <= minradius <= maxradius <= 20, defaults 0, 5 and masks 4239 and 1; else as above.
/// Errors   as above.
/// Threads  safe on different fingerprints; mol is only read.
/// Cost     one copy of mol, and some sorting for every environment. Memory is bounded as above.
/// Source   docs/CircularFingerprint.md
QX_API bool QXMakeUnhashedCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned minradius,
                                     unsigned maxradius, unsigned atype, unsigned btype);

/// The same with the parameters of an unhashed circular type, whose masks are taken as they are.
/// Errors   a null type or one of another kind: the Warning "QXMakeUnhashedCircularFP : invalid unhashed
///          circular fingerprint type!", false, fp untouched.
QX_API bool QXMakeUnhashedCircularFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol,
                                     const QXFPTypeBase* type);

}  // namespace QXFingrix
