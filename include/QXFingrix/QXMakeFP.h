#pragma once

#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXSystem/QXExport.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

/// Makes the fingerprint of a molecule that a descriptor asks for; the molecule is not changed.
/// Errors   false, silently and with fp untouched, for a null descriptor and for one of an unknown kind; else
///          what the generator answers (false for an invalid molecule). Bad input throws nothing; where memory
///          runs out, std::bad_alloc may pass, and fp is then not to be relied on.
/// Threads  safe on distinct fingerprints.
QX_API bool QXMakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

/// Makes a fingerprint of a kind with its default parameters. With vs, Path, Circular and Tree are made as
/// their VS variants of version 1, which is deprecated in favour of QXMakeVSFP and said so: a Warning for
/// Circular, an Info for Path and Tree.
/// Errors   false, the Warning of QXGetFPType and "QXMakeFP() unknown fingerprint type" for an unknown code.
QX_API bool QXMakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned type, bool vs);

/// Makes the VS variant of a Path, Circular or Tree fingerprint, see QXGetVSFPType.
/// Shape    vsVersion: 1, 2, or 0 for the latest (2).
/// Errors   false and the Warning "QXMakeVSFP: unknown vsVersion specified: %d"; false, the Warning of
///          QXGetVSFPType and "QXMakeVSFP() unknown fingerprint type" for a kind without a VS variant.
QX_API bool QXMakeVSFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, unsigned type, unsigned vsVersion);

}  // namespace QXFingrix
