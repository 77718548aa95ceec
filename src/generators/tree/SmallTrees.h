#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/HashedBits.h"
#include "generators/tree/TreeIds.h"

namespace QXFingrix {

/// The trees of one to four bonds by their shapes, with the identifiers of TreeIds. See SmallTrees.cpp. An
/// object is working memory.
class SmallTrees {
 public:
  static constexpr unsigned maxBonds = 4;

  /// Sets the bits of all trees of minbonds to maxbonds bonds.
  /// Shape    one label per atom and bond; 1 <= minbonds <= maxbonds <= 4.
  /// Returns  false when there are more than maxTrees of them.
  /// Cost     a hash for every tree, and a few steps for every path and star of three bonds, rings included.
  bool SetBits(HashedBits& bits, const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
               std::span<const unsigned> bondLabels, unsigned minbonds, unsigned maxbonds,
               std::uint64_t maxTrees);

 private:
  // A bond as seen from one of its atoms.
  struct Arm {
    std::uint64_t leaf;  // the branch that the other atom alone would be
    unsigned atom;       // at the other end
    unsigned bondLabel;
    unsigned branchId;  // of this atom with the arm as its only branch
  };

  void LoadArms(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                std::span<const unsigned> bondLabels);
  std::span<const Arm> ArmsOf(unsigned atom) const {
    return {arms_.data() + firstArm_[atom], arms_.data() + firstArm_[atom + 1]};
  }
  template <class Record>
  bool AroundBond(const QXChem::QXBondBase& bond, unsigned bondLabel, unsigned maxbonds,
                  Record& record) const;
  template <class Record>
  bool AroundAtom(unsigned atom, unsigned atomLabel, unsigned maxbonds, Record& record) const;
  template <class Record>
  bool AddArms(std::span<const Arm> others, const TreeNodeHash& two, unsigned maxbonds, Record& record) const;
  template <class Record>
  bool AddSpurs(unsigned atom, std::span<const Arm> arms, std::size_t i, std::size_t j, unsigned twoId,
                Record& record) const;
  template <class Record>
  bool AddLongArms(unsigned atom, const TreeNodeHash& none, const Arm& armA, const Arm& armB,
                   Record& record) const;

  std::vector<unsigned> leafIds_;
  std::vector<std::size_t> firstArm_;  // arms of atom i: from firstArm_[i] up to firstArm_[i + 1]
  std::vector<Arm> arms_;              // of each atom in ascending order of their leaves
};

}  // namespace QXFingrix
