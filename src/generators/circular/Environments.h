#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/circular/Ball.h"

namespace QXFingrix {

/// Finds the environments of a molecule, radius by radius: every set of bonds once, at the smallest radius at
/// which it appears. See Environments.cpp. An object is working memory.
class Environments {
 public:
  struct Centre {
    unsigned atom;
    unsigned environment;  // atoms with the same number are centres of the same set of bonds
  };

  /// Begins with a molecule, which must not change until the last call of Grow().
  void Load(const QXChem::QXMolBase& mol);

  /// Goes on to the next radius, which is 1 first.
  /// Returns  the centres of new environments, ascending by atom. Once it is empty it stays so.
  /// Cost     small molecules: an operation for every bond; else the sets themselves.
  std::span<const Centre> Grow();

  /// How many new environments the last call of Grow() has found, numbered from 0.
  unsigned NumFound() const { return static_cast<unsigned>(sets_.size() - firstFound_); }

 private:
  // A set of bonds by the centre and the radius at which it appeared.
  struct BondSet {
    std::uint64_t key;  // equal for equal sets
    unsigned atom;
    unsigned radius;
  };

  void GrowMasks();
  std::uint64_t KeyOf(unsigned atom);
  unsigned FindOrAdd(const BondSet& set);
  bool AreEqual(const BondSet& a, const BondSet& b);
  void Rehash(std::size_t numSlots);
  std::size_t FirstSlot(std::uint64_t key) const;

  const QXChem::QXMolBase* mol_ = nullptr;
  unsigned radius_ = 0;
  std::vector<Centre> centres_;
  std::vector<BondSet> sets_;
  std::size_t firstFound_ = 0;
  std::vector<unsigned> slots_;  // 1 + place in sets_, 0: free; a power of two of them
  unsigned slotShift_ = 0;

  std::size_t maskWords_ = 0;  // for each atom; 0: no masks
  std::vector<std::uint64_t> masks_;
  std::vector<std::uint64_t> nextMasks_;
  Ball ball_;
  Ball other_;
};

}  // namespace QXFingrix
