#pragma once

#include <iosfwd>

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXLingoSim;
class QXMolBase;
}  // namespace QXChem

namespace QXFingrix {

class QXFingerPrint;

/// Makes the Lingo fingerprint of a molecule: its Lingo text (see QXChem::QXLingoMap) and a zero byte, stored
/// as the bytes of the bit vector. Its type is Lingo of the current version.
/// Shape    8 (length + 1) bits; 1 clear bit for a molecule that is empty once prepared.
/// Errors   an invalid molecule: false, the type of fp cleared, nothing reported. A molecule without a Lingo
///          text (see QXLingoMap::CreateString): the same and one Warning. A text too long for a bit vector:
///          error "Max size for an QXBitVector is INT_MAX", bits untouched, type set, true.
/// Threads  safe on different fingerprints.
/// Cost     that of QXLingoMap::CreateString, about 0.1 milliseconds, and a copy of a molecule that is not
///          prepared.
QX_API bool QXMakeLingoFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol);

/// The part of a stored Lingo fingerprint that tells its parameters: it has none, so nothing is read from and
/// written to the stream. Reading attaches the Lingo type of a version. Both return true.
QX_API bool QXReadLingoFingerPrintType(std::istream& in, unsigned short version, QXFingerPrint& fp);
QX_API bool QXWriteLingoFingerPrintType(std::ostream& out, const QXFingerPrint& fp);

/// Counts the Lingos that stand only in one of two Lingo fingerprints and in both. Texts of which one is
/// shorter than four characters have none: equal ones count their length as shared.
/// Errors   false when such texts differ, the counts set to the two lengths and 0; false and the Warning
///          "Cannot initialize lingo similarity" when a holds no Lingo text, counts untouched.
/// Cost     O(both lengths); builds a profile of a. To compare one with many, build the profile once.
QX_API bool QXGetLingoSimTerms(const QXFingerPrint& a, const QXFingerPrint& b, unsigned* onlyA,
                               unsigned* onlyB, unsigned* both);

/// Counts the Lingos of b against a profile. A text shorter than four characters is one Lingo here (see
/// QXLingoSim), so that counts of such texts, and scores that depend on their size such as Manhattan, differ
/// from those of the two fingerprints.
/// Errors   false and the Warning "lingo is not initialized" for a profile that is not valid, counts
///          untouched.
/// Cost     that of QXLingoSim::CountTerms, about a tenth of a microsecond for drug-like molecules.
QX_API bool QXGetLingoSimTerms(const QXChem::QXLingoSim& profile, const QXFingerPrint& b, unsigned* onlyA,
                               unsigned* onlyB, unsigned* both);

}  // namespace QXFingrix
