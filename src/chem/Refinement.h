#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// Everything of an atom that a label or a perceived property may depend on, packed without loss.
std::uint64_t AtomKey(const QXAtomBase& atom, bool withChirality);

/// Everything of a bond, as seen from one of its ends; the Kekulé order of an aromatic bond is left out.
std::uint32_t BondKey(const QXBondBase& bond, unsigned fromAtom, bool withChirality);

/// The coarsest stable partition of the atoms that tells apart atoms with different keys: atoms of one class
/// have neighbours of the same classes over the same bonds.
class Refinement {
 public:
  /// Computes the partition. Rings must have been perceived.
  /// Cost     O((atoms + bonds) x rounds), seldom more than ten rounds; no allocation once the buffers have
  ///          grown.
  void Run(const QXMolBase& mol, bool withChirality);

  unsigned NumClasses() const { return numClasses_; }
  /// Classes 0 to NumClasses() - 1, numbered as they first appear among the atoms.
  std::span<const unsigned> ClassOfAtom() const { return classOfAtom_; }

 private:
  void Start(const QXMolBase& mol, bool withChirality);
  void Mix(const QXMolBase& mol);
  unsigned Classify();

  unsigned numClasses_ = 0;
  std::vector<unsigned> classOfAtom_;
  std::vector<std::uint64_t> colors_;
  std::vector<std::uint64_t> nextColors_;
  std::vector<std::uint64_t> bondColors_;  // one for each entry of the neighbour lists
  struct Slot {
    std::uint64_t color;
    unsigned round;  // 0 in a slot that was never used
    unsigned index;
  };
  std::vector<Slot> table_;
  unsigned round_ = 0;
};

}  // namespace QXChem
