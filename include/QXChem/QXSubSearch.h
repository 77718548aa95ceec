#pragma once

#include <memory>
#include <string>

#include "QXChem/QXAtomBondSet.h"
#include "QXChem/QXMolBase.h"
#include "QXChem/QXSubSearchTarget.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXIter.h"

namespace QXChem {

struct Pattern;

/// A SMARTS pattern, compiled for matching.
///
/// RDKit reads the pattern, and what matches is what matches there, with chirality left out (@, / and \ are
/// read and have no effect): X counts hydrogens that are no atoms of the graph, H all hydrogens, h those that
/// are no atoms, D the neighbours in the graph; v adds up Kekulé orders; R<n> counts the rings of RDKit's
/// symmetrised smallest set of smallest rings, r<n> asks for the size of the smallest. Recursive patterns and
/// ranges (D{2-3}) are taken, parts joined by a dot match anywhere, and parentheses that group parts are
/// refused, as by RDKit. A dative bond (->) goes from donor to acceptor. White space ends a pattern.
///
/// Matching looks at the graph as it is: a pattern sees the hydrogens that are atoms (see
/// QXSuppressHydrogens).
/// Errors   the constructor reports one Warning when it cannot take the pattern; so it does above 10,000 bytes,
///          100 recursive patterns, or 1,000 bytes of conditions on one bond or in one bracket, those around
///          it included (499 alternatives such as [C,N,...,O] are taken). The object is then invalid and never
///          matches. Matching an invalid molecule finds nothing. R<n> reports one Warning for a molecule whose
///          rings are too many to be counted (see QXReadMolecule.h), and finds nothing.
/// Threads  all methods are safe on one object from several threads. Copies are cheap and share the pattern.
/// Cost     construction: some tens of microseconds for a typical pattern, a tenth of a second at the limits.
///          A match: some hundreds of nanoseconds for a typical pattern and a drug-like molecule, less when an
///          element or bond is missing. The worst case is exponential in the size of the pattern: a path of
///          n wildcards that is not there may be sought along all paths of a cage or a clique. SingleMatch
///          tries only one of several atoms that are alike and bound to the same hub; Match tries all, and
///          there can be as many matches as ways to choose atoms. Recursive patterns are asked once about an
///          atom, however deep they stand in each other; each takes two bytes for every atom of the molecule.
///          SingleMatch allocates nothing after the first few calls, but for R<n> with n above 0 and for a
///          molecule of more than 10,000 atoms.
class QX_API QXSubSearch {
 public:
  /// flags are reserved: 0.
  explicit QXSubSearch(const std::string& smarts, unsigned flags = 0);
  QXSubSearch(const QXSubSearch& other);
  QXSubSearch(QXSubSearch&& other) noexcept;
  QXSubSearch& operator=(const QXSubSearch& other);
  QXSubSearch& operator=(QXSubSearch&& other) noexcept;
  ~QXSubSearch();

  bool IsValid() const { return pattern_ != nullptr; }
  explicit operator bool() const { return IsValid(); }
  const std::string& GetSmarts() const { return smarts_; }
  /// Atoms and bonds of the pattern, those in recursive patterns not counted; 0 when it is invalid.
  unsigned NumAtoms() const;
  unsigned NumBonds() const;

  /// Whether there is a match. Stops at the first.
  bool SingleMatch(const QXMolBase& mol) const;
  bool SingleMatch(const QXSubSearchTarget& target) const;

  /// All matches, found one by one as the iterator advances; atoms and bonds of each are in the order of the
  /// pattern's atoms and bonds. With `unique` matches of the same set of atoms count once: the first is kept,
  /// and the iterator remembers the sets it has passed. Molecule or target must outlive the iterator and its
  /// copies and stay as they are.
  QXSystem::QXIter<QXAtomBondSet> Match(const QXMolBase& mol, bool unique = false) const;
  QXSystem::QXIter<QXAtomBondSet> Match(const QXSubSearchTarget& target, bool unique = false) const;

 private:
  std::string smarts_;
  std::shared_ptr<const Pattern> pattern_;  // null when invalid
};

}  // namespace QXChem
