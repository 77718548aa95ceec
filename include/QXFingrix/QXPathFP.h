#pragma once

#include <set>
#include <string>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

class QXFingerPrint;
class QXFPTypeBase;

/// Makes the path fingerprint of a molecule: one bit for every linear walk of minbonds to maxbonds bonds.
/// A walk starts at a heavy atom and visits no atom twice; both directions of a path set their bit.
/// Shape    numbits 16 to 65535; 0 <= minbonds <= maxbonds <= 20; atype and btype are masks of QXFPAtomType
///          and QXFPBondType, not both 0. Anything else draws one Warning each and is replaced by the default
///          (4096, 0, 5; minbonds = maxbonds; masks 191 and 3); the type of fp carries what was used. Mask
///          bits without a meaning are not looked for: fp has the bits that it has without them, but its type
///          may name other masks or "invalid".
/// Errors   an invalid molecule: false, the type of fp cleared, its bits untouched, nothing reported.
///          No memory: std::bad_alloc, and what fp then holds is not to be relied on.
/// Threads  safe on different fingerprints; mol is only read.
/// Cost     one copy of mol and one multiply-add per atom and bond of every walk; memory does not grow with
///          the number of walks. The number of walks may grow exponentially with maxbonds in cages.
QX_API bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned numbits, unsigned minbonds,
                         unsigned maxbonds, unsigned atype, unsigned btype);

/// The same with the default path type: 4096 bits, walks of 0 to 5 bonds, masks 191 and 3.
QX_API bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol);

/// The same with the parameters of a path type.
/// Errors   a null type or one of another kind: Warning, false, fp untouched.
QX_API bool QXMakePathFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

/// Collects the distinct identifiers of the walks of minbonds to maxbonds bonds: from every heavy atom, but
/// where the molecule carries symmetry classes only from the first heavy atom of each class.
/// Shape    mol prepared for fingerprinting; one label per atom and per bond, as QXGetFingerprintAtomTypes
///          gives them. The arrays grow by one element during the call and have their old length afterwards.
/// Units    the wrapping 32-bit sum of label times position weight; or, for string labels, the labels joined
///          in walk order.
/// Returns  the size of ids, which keeps what it held before.
/// Errors   0 and a Warning when a label array is shorter than the molecule, ids untouched; a Warning when
///          paths of more than 24 bonds are asked for by 32-bit identifiers, which have no weights for them:
///          they are left out. The label arrays have their old length after an exception (memory) too.
/// Cost     the whole identifier anew for every walk; the stack form updates it.
QX_API unsigned QXPathIdGenerator(std::set<unsigned>& ids, const QXChem::QXMolBase& mol,
                                  std::vector<unsigned>& atomLabels, std::vector<unsigned>& bondLabels,
                                  unsigned minbonds, unsigned maxbonds);
QX_API unsigned QXPathIdGenerator(std::set<std::string>& ids, const QXChem::QXMolBase& mol,
                                  std::vector<std::string>& atomLabels, std::vector<std::string>& bondLabels,
                                  unsigned minbonds, unsigned maxbonds);

/// The same walks in walk order, duplicates kept, appended to ids.
/// Returns  the size of ids.
QX_API unsigned QXPathIdGeneratorStack(std::vector<unsigned>& ids, const QXChem::QXMolBase& mol,
                                       std::vector<unsigned>& atomLabels, std::vector<unsigned>& bondLabels,
                                       unsigned minbonds, unsigned maxbonds);
QX_API unsigned QXPathIdGeneratorStack(std::vector<std::string>& ids, const QXChem::QXMolBase& mol,
                                       std::vector<std::string>& atomLabels,
                                       std::vector<std::string>& bondLabels, unsigned minbonds,
                                       unsigned maxbonds);

}  // namespace QXFingrix
