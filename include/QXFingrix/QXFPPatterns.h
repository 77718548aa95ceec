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

/// @file
/// Why a fingerprint has the bits that it has, and what two molecules share. Atoms and bonds are those of the
/// caller's molecule, as it is before it is prepared. The iterators make their elements one by one while they
/// advance, and own all they need: the molecules may go before them. Where a pattern matches in many ways
/// there may be very many elements; the number of pairs is their product.
///
/// Errors   no type, or a kind that has no patterns: the empty iterator and a Warning, "%s is not available for
///          Lingo fingerprint!" for Lingo. Parameters of a type that its generator would replace: replaced in
///          the same way, with the same Warnings under the name of the function here. More than 2,000,000
///          subgraphs of a graph fingerprint, paths and trees of fewer bonds than its smallest included, or
///          tokens that are too long for an unhashed one even once each: the empty iterator and an Error. An
///          invalid molecule: the empty iterator, silently.
/// Memory   the subgraphs of graph fingerprints are kept, each in up to some 100 bytes, and each token of an
///          unhashed one once, while an iterator lives.
/// Cost     graph fingerprints: the call finds all subgraphs. MACCS keys: a pattern is searched for as long as
///          its matches are asked for; overlap searches molB again for every match in molA. Coverage remembers
///          the sets that it gave, to give each once: 8 bytes for every atom and bond of a set, and 40 more;
///          sets of three or four atoms without bonds, by far the most, are not remembered.
/// Threads  safe; a single iterator is for one thread at a time.

/// What sets a bit, or is a token of an unhashed fingerprint.
struct QXFPPattern {
  unsigned bit = 0;  ///< 0 for unhashed fingerprints
  std::string text;  ///< what it stands for: a SMARTS, or words for a key that has none
  QXSystem::QXIter<QXChem::QXAtomBondSet> matches;
  unsigned id = 0;         ///< what is hashed into the bit; 0 for keys, of which each has its own
  std::string token = {};  ///< of unhashed fingerprints, in place of the identifier; else empty
};

/// What corresponds to each other in two molecules: the n-th atom (bond) of one to the n-th atom (bond) of the
/// other.
struct QXFPMatch {
  QXChem::QXAtomBondSet a;
  QXChem::QXAtomBondSet b;
};

/// Whether there are patterns, coverage and overlap for this kind of fingerprint: for all but Lingo; false for
/// null. No report.
QX_API bool QXHasFPPatterns(const QXFPTypeBase* type);

/// Joins the matches of one pattern in two molecules.
/// Errors   an empty match and one Warning when they have not as many atoms and bonds.
QX_API QXFPMatch QXCombineMatches(const QXChem::QXAtomBondSet& a, const QXChem::QXAtomBondSet& b);

/// The patterns of a molecule's fingerprint by ascending bit or token, each with where it is found.
///
/// A MACCS key has one pattern; the matches of one of several equal parts, such as [#8].[#8], are those of one
/// part. A pattern of a path, circular or tree fingerprint is what the subgraphs with one identifier have in
/// common, its bit is id mod QXGetHashSize(numbits); of an unhashed one, what those with one token have. The
/// patterns that collide in a bit follow each other, by ascending identifier. A path is found from both its
/// ends, mostly with two identifiers.
///
/// The text of these is a SMARTS for the first match: RDKit and QXSubSearch find it there once drawn hydrogens
/// have become counts (QXSuppressHydrogens). It says what labels see as far as SMARTS can, chirality left out,
/// so it may match elsewhere too.
QX_API QXSystem::QXIter<QXFPPattern> QXGetFPPatterns(const QXChem::QXMolBase& mol, const QXFPTypeBase* type);

/// The sets of atoms and bonds that patterns match. For MACCS keys each set once, and with `unique` what an
/// atom's element alone decides at the first atom of every element only. For graph fingerprints one set for
/// each match, and with `unique` each set once.
QX_API QXSystem::QXIter<QXChem::QXAtomBondSet> QXGetFPCoverage(const QXChem::QXMolBase& mol,
                                                               const QXFPTypeBase* type, bool unique);

/// Every match of a pattern in molA beside every match of the same pattern in molB. Graph fingerprints know a
/// pattern by its identifier or token. The atoms and bonds of circular patterns correspond as a whole only, the
/// first atoms, their centres, to each other: they may differ in number where a ring closes in one molecule
/// only.
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
