#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "QXSystem/QXExport.h"

namespace QXChem {

class QXMolBase;

// Lingos are the substrings of four characters of a molecule's Lingo text. How alike two molecules are can be
// told from how many Lingos their texts share.
// Source   Vidal, Thormann, Pons, J. Chem. Inf. Model. 2005, 45, 386.

/// Writes Lingo texts.
/// Threads  one object may be used by several threads at once.
class QX_API QXLingoMap {
 public:
  /// Hydrogens that can be implicit not counted.
  static constexpr unsigned maxAtoms = 5000;

  /// Writes the Lingo text of a molecule: its canonical SMILES without stereo, isotopes and atom maps, every
  /// ring closure written as 0, Cl as L and Br as R, in brackets too ([L-]). Charges and hydrogen counts
  /// stay. Neither the order of the atoms nor the drawing matters, nor whether hydrogens stand in the graph,
  /// except those on a wildcard or on another hydrogen: these stay atoms.
  /// Shape    text: replaced; empty for an empty molecule.
  /// Errors   false and an empty text for an invalid molecule, above maxAtoms, and for a structure that
  ///          RDKit, which writes the SMILES, refuses: impossible valences above all. Nothing is reported.
  /// Cost     that of a canonical SMILES, about 0.1 milliseconds for a drug-like molecule; as much of the
  ///          calling thread's stack as QXCreateSmiles().
  bool CreateString(std::string& text, const QXMolBase& mol) const;
};

/// The Lingos of one text, to count those of other texts against: the profile of a query.
///
/// A text shorter than four characters counts as one Lingo, the whole text; an empty text has none. Lingos
/// count as often as they occur.
/// Threads  immutable: several threads may count against one profile at once.
class QX_API QXLingoSim {
 public:
  /// A profile that is not valid.
  QXLingoSim();
  /// Shape    flag: 1, Lingos count as often as they occur; there is no other way of counting.
  /// Errors   the profile is not valid for another flag and for a text that holds anything but printable
  ///          ASCII characters. Nothing is reported.
  /// Cost     O(length log length), a few allocations, some microseconds for a drug-like molecule.
  QXLingoSim(std::string_view text, unsigned flag);
  ~QXLingoSim();
  QXLingoSim(const QXLingoSim&) = delete;
  QXLingoSim& operator=(const QXLingoSim&) = delete;
  QXLingoSim(QXLingoSim&&) noexcept;
  QXLingoSim& operator=(QXLingoSim&&) noexcept;

  bool IsValid() const { return impl_ != nullptr; }

  /// Counts the Lingos of a second text against those of the profile: `both` is the size of the multiset
  /// intersection, the other two what is left on either side.
  /// Errors   false, counts untouched, for a profile that is not valid. Any bytes may stand in the text.
  /// Cost     O(both lengths), no allocation. A profile of more than 256 distinct Lingos: each Lingo of the
  ///          text costs a binary search and each call a copy of the profile's counts, in memory that a thread
  ///          keeps and enlarges for the largest profile so far.
  bool CountTerms(std::string_view text, unsigned* onlyProfile, unsigned* onlyText, unsigned* both) const;

 private:
  class Impl;
  std::unique_ptr<const Impl> impl_;
};

}  // namespace QXChem
