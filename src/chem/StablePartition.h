#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// Splits the classes of a partition until all atoms of a class have as many neighbours in every class over
/// every kind of bond. The result is the coarsest such partition, whatever the order of the atoms.
/// Source   Cardon, Crochemore, "Partitioning a graph in O(|A| log2 |V|)", doi:10.1016/0304-3975(82)90016-0.
class StablePartition {
 public:
  /// Refines classOfAtom, whose classes run from 0 to numClasses - 1, and returns how many there are then;
  /// the new numbers come in no particular order.
  /// Shape    bondColors: a hash of the bond's kind for every entry of the neighbour lists, in their order.
  /// Cost     O(bonds x log(atoms)).
  unsigned Run(const QXMolBase& mol, std::span<const std::uint64_t> bondColors,
               std::vector<unsigned>& classOfAtom, unsigned numClasses);

 private:
  struct Class {
    unsigned start;  // in members_
    unsigned size;
    bool queued;
  };
  using Touched = std::span<const unsigned>;

  void Start(unsigned numAtoms, unsigned numClasses);
  void CountNeighborsIn(Class splitter);
  void SplitTouched();
  void Split(unsigned split, Touched touched);
  void Enqueue(unsigned index);

  const QXMolBase* mol_ = nullptr;
  std::span<const std::uint64_t> bondColors_;
  std::span<unsigned> classOfAtom_;
  std::vector<Class> classes_;
  std::vector<unsigned> queue_;     // classes still to be split by
  std::vector<unsigned> members_;   // the atoms, class after class
  std::vector<unsigned> place_;     // of each atom in members_
  std::vector<std::uint64_t> sum_;  // of the colours of each touched atom's bonds into the splitter
  std::vector<char> isTouched_;
  std::vector<unsigned> touched_;
};

}  // namespace QXChem
