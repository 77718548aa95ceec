#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "chem/StablePartition.h"

namespace QXChem {

/// What tells atoms apart by themselves, packed without loss. Map numbers are names and no property, and the
/// hybridisation follows from the rest.
std::uint64_t AtomKey(const QXAtomBase& atom, bool withChirality);

/// Everything of a bond, as seen from one of its ends; the Kekulé order of an aromatic bond is left out.
std::uint32_t BondKey(const QXBondBase& bond, unsigned fromAtom, bool withChirality);

/// The coarsest stable partition of the atoms that tells apart atoms with different keys: atoms of one class
/// have neighbours of the same classes over the same bonds.
class Refinement {
 public:
  /// Computes the partition. Rings and aromaticity must have been perceived.
  /// Cost     O(bonds x log(atoms)), about ten passes over an ordinary molecule; no allocation once the
  ///          buffers have grown.
  void Run(const QXMolBase& mol, bool withChirality);

  unsigned NumClasses() const { return numClasses_; }
  /// Classes 0 to NumClasses() - 1, numbered as they first appear among the atoms.
  std::span<const unsigned> ClassOfAtom() const { return classOfAtom_; }

 private:
  void Start(const QXMolBase& mol, bool withChirality);
  void Mix(const QXMolBase& mol);
  unsigned Classify();
  void NumberByFirstAtom();

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
  StablePartition partition_;
  std::vector<unsigned> newNumber_;
};

}  // namespace QXChem
