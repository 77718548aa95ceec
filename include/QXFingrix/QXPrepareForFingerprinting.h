#pragma once

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

/// Brings a molecule into the state that the fingerprint generators expect: explicit hydrogens suppressed,
/// rings and aromaticity perceived, and marked as prepared. Any edit of the molecule clears the mark.
///
/// There is one common preparation: a molecule prepared for one kind of fingerprint is prepared for all of
/// them.
/// Shape    code: a kind of namespace QXFPType.
/// Errors   false for an invalid molecule, silently; false and the Warning "QXPrepareForFingerprinting :
///          unknown fingerprint type!" for an unknown code. The molecule is then unchanged.
/// Threads  safe on distinct molecules.
/// Cost     a test of the mark when the molecule is prepared.
QX_API bool QXPrepareForFingerprinting(QXChem::QXMolBase& mol, unsigned code);

/// Whether a molecule is prepared for a kind of fingerprint; false for an unknown code.
QX_API bool QXIsPreparedForFingerprinting(const QXChem::QXMolBase& mol, unsigned code);

}  // namespace QXFingrix
