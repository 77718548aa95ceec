#pragma once

#include <string>

#include "QXChem/QXAtomBondSet.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXIter.h"

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

class QXFPTypeBase;

// Why a fingerprint has the bits that it has, and what two molecules share. Atoms and bonds are those of the
// caller's molecule, as it is before it is prepared. The iterators find their elements one by one while they
// advance, and own all they need: the molecules may go before them. Where a pattern matches in many ways there
// may be very many elements; the number of pairs is their product.
//
// Errors   no type, or a kind that has no patterns: the empty iterator and a Warning, "%s is not available for
//          Lingo fingerprint!" for Lingo. An invalid molecule: the empty iterator, silently.
// Threads  safe; a single iterator is for one thread at a time.

/// A bit that is set, and why.
struct QXFPPattern {
  unsigned bit = 0;
  std::string text;  ///< what the bit stands for: a SMARTS pattern, or words where there is none
  QXSystem::QXIter<QXChem::QXAtomBondSet> matches;
};

/// What corresponds to each other in two molecules: the n-th atom (bond) of one to the n-th atom (bond) of the
/// other.
struct QXFPMatch {
  QXChem::QXAtomBondSet a;
  QXChem::QXAtomBondSet b;
};

/// Joins the matches of one pattern in two molecules.
/// Errors   an empty match and one Warning when they have not as many atoms and bonds.
QX_API QXFPMatch QXCombineMatches(const QXChem::QXAtomBondSet& a, const QXChem::QXAtomBondSet& b);

/// The bits of a molecule's fingerprint in ascending order, each with its pattern and where it is found. The
/// matches of a pattern of several equal parts, such as [#8].[#8], are those of one part.
QX_API QXSystem::QXIter<QXFPPattern> QXGetFPPatterns(const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

/// The sets of atoms and bonds that patterns match, each set once. With `unique` what an atom's element alone
/// decides is found at the first atom of every element only.
QX_API QXSystem::QXIter<QXChem::QXAtomBondSet> QXGetFPCoverage(const QXChem::QXMolBase& mol,
                                                               const QXFPTypeBase* type, bool unique);

/// Every match of a pattern in molA beside every match of the same pattern in molB.
QX_API QXSystem::QXIter<QXFPMatch> QXGetFPOverlap(const QXChem::QXMolBase& molA,
                                                  const QXChem::QXMolBase& molB, const QXFPTypeBase* type);

/// @name MACCS keys
/// What the functions above call for MACCS166; the type is not looked at. Patterns of counting rows match here
/// whether or not their key is set. Keys that are decided by elements pair atoms with the same key. Keys 125,
/// 162 and 166, which no pattern decides, are among the patterns, with ring systems and components for
/// matches, but not in coverage and overlap.
/// @{
QX_API QXSystem::QXIter<QXFPPattern> QXGetMACCSFPPatterns(const QXChem::QXMolBase& mol,
                                                          const QXFPTypeBase* type);
QX_API QXSystem::QXIter<QXChem::QXAtomBondSet> QXGetMACCSFPCoverage(const QXChem::QXMolBase& mol,
                                                                    const QXFPTypeBase* type, bool unique);
QX_API QXSystem::QXIter<QXFPMatch> QXGetMACCSFPOverlap(const QXChem::QXMolBase& molA,
                                                       const QXChem::QXMolBase& molB,
                                                       const QXFPTypeBase* type);
/// @}

}  // namespace QXFingrix
