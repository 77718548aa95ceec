#pragma once

#include <string>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXChem {
class QXAtomBase;
class QXMolBase;
}  // namespace QXChem

namespace QXFingrix {

/// Computes the integer that stands for each atom and each bond under the masks of QXFPAtomTypes.h.
///
/// A label is a product of primes, one power of a prime for each property that the mask selects, in unsigned
/// 32-bit arithmetic that wraps. Frozen: fingerprint bits follow from the labels.
/// Shape    atomLabels, bondLabels: replaced; indexed by atom and by bond index. mol: valid, its rings and
///          aromaticity perceived (QXPrepareForFingerprinting); hybridisation and chirality are perceived
///          here when a mask selects them, the only change made to it.
/// Threads  safe on distinct molecules.
/// Cost     O(atoms + bonds) beside the perception.
QX_API void QXGetFingerprintAtomTypes(std::vector<unsigned>& atomLabels, std::vector<unsigned>& bondLabels,
                                      QXChem::QXMolBase& mol, unsigned atype, unsigned btype);

/// Computes a readable text for each atom and each bond under the masks, free of white space.
///
/// An atom's text is that of AddSmilesAtomSymbol. Chirality is not part of it, so atoms that differ in
/// nothing else share a text; numbers beyond the largest that has a factor and the classes of the Eq flags
/// are written out, so some atoms that share an integer differ in their text.
///
/// A bond's text is its SMARTS symbol ("-", "=", "#", "$", ":"; "~" where the order is not selected), or the
/// order in braces ("{0}") where it has none, then ";@" for a ring bond and ";!@" for another, then "/" for a
/// chiral one: two bonds have the same text exactly when they have the same integer label. SMARTS reads
/// neither braces nor "=/" in this sense.
/// Shape    as above.
/// Threads  safe on distinct molecules.
QX_API void QXGetFingerprintAtomTypes(std::vector<std::string>& atomLabels,
                                      std::vector<std::string>& bondLabels, QXChem::QXMolBase& mol,
                                      unsigned atype, unsigned btype);

/// Whether an atom donates hydrogen bonds: N, O or S with a hydrogen, implicit or explicit. False for null.
QX_API bool IsHydrogenBondDonor(const QXChem::QXAtomBase* atom);

/// Whether an atom accepts hydrogen bonds: N, O or S that is not aromatic O or S, not N with three
/// connections (hydrogens included), not pentavalent N, not tetravalent S and not positively charged. A
/// negatively charged O is one. False for null.
QX_API bool IsHydrogenBondAcceptor(const QXChem::QXAtomBase* atom);

/// Appends the SMARTS expression of an atom under an atom type mask, e.g. "[C;+0;D2;^3]".
///
/// Elements are written by symbol, lower case when aromatic, if the mask selects Arom, else as "#6"; "*"
/// stands for any element ("a" and "A" with Arom) if it does not select AtmNum. Elements from 113 on are
/// always written by number. Chiral has no part in the expression.
///
/// An acceptor is written by what it is not: "!$([o,s,nX3,#7v5,#16v4,*+1])". Of the nitrogens with three
/// connections this names the aromatic ones only, so the expression also matches amines and amides, which
/// IsHydrogenBondAcceptor does not count. An atom that is donor and acceptor is written by both conditions
/// joined with ",", so its expression matches every atom that meets either.
/// Shape    atom: of a molecule with the selected properties perceived; null adds nothing.
QX_API void AddSmilesAtomSymbol(std::string& out, const QXChem::QXAtomBase* atom, unsigned atype);

}  // namespace QXFingrix
