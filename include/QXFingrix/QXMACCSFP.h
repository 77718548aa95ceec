#pragma once

#include <iosfwd>

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

class QXFingerPrint;

/// Makes the MACCS fingerprint of a molecule: 166 structural keys, each a statement about the molecule that
/// is decided by a substructure pattern, by the elements present, or by its rings and components. Key k, from
/// 1 to 166, is bit k - 1. Its type is MACCS166 of the current version.
/// Keys 44, 124, 137, 143, 147, 153, 160 and 163 are never set; the patterns of the last seven are counted,
/// and two different matches set key 130, 120, 127, 118, 138, 149 and 145 instead.
/// Errors   an invalid molecule: false, the type of fp cleared, nothing reported. A molecule that is empty
///          once prepared has no key. No memory: std::bad_alloc.
/// Threads  safe on different fingerprints; mol is only read.
/// Cost     a few microseconds for a drug-like molecule, and a copy of a molecule that is not prepared.
///          No graph takes more steps than its atoms times its bonds, times a constant; a graph without
///          atoms of many bonds takes a number of steps proportional to its atoms.
/// Source   Durant, Leland, Henry, Nourse, J. Chem. Inf. Comput. Sci. 2002, 42, 1273.
QX_API bool QXMakeMACCS166FP(QXFingerPrint& fp, const QXChem::QXMolBase& mol);

/// The part of a stored MACCS fingerprint that tells its parameters: it has none, so nothing is read from the
/// stream. Attaches the MACCS166 type of a version and returns true.
QX_API bool QXReadMACCSFingerPrintType(std::istream& in, unsigned short version, QXFingerPrint& fp);

}  // namespace QXFingrix
