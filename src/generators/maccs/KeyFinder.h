#pragma once

#include <cstdint>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/maccs/AtomFacts.h"
#include "generators/maccs/KeySet.h"

namespace QXFingrix {

/// Finds the keys of the patterns without matching them one by one: each rule (KeyRules.h) looks at what has
/// been gathered of all atoms, bonds, short chains and small rings.
/// Cost     a few microseconds for a drug-like molecule; buffers are kept. Never more than atoms times bonds
///          steps (PathSearch.h), and as many bytes as atoms take.
class KeyFinder {
 public:
  /// Sets the key of every pattern of the table that matches, and of every counting one that matches twice.
  /// Shape    mol prepared; ring flags as perceived.
  void FindPatternKeys(KeySet& keys, const QXChem::QXMolBase& mol);

 private:
  void GatherAtoms(const QXChem::QXMolBase& mol);
  void GatherBonds(const QXChem::QXMolBase& mol);
  void CompleteWords(const QXChem::QXMolBase& mol);
  void ApplyAtomRules(KeySet& keys) const;
  void ApplyBondRules(KeySet& keys, const QXChem::QXMolBase& mol) const;
  void ApplyCountRules(KeySet& keys) const;
  void CountBonds(KeySet& keys, const QXChem::QXMolBase& mol) const;
  void FindSubstitutedAromaticBond(KeySet& keys, const QXChem::QXMolBase& mol) const;
  void FindTwoHeteroMethylenes(KeySet& keys, const QXChem::QXMolBase& mol) const;

  std::vector<AtomFacts> atoms_;
  std::vector<std::uint8_t> bondKinds_;  // BondKind::Bit, and ringShift more in rings
};

}  // namespace QXFingrix
