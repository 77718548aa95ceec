// Trees of up to four bonds have few shapes, and each has one centre, so that loops around all atoms and all
// bonds find every tree once:
//   one bond     the bond
//   two bonds    two arms of an atom
//   three bonds  three arms of an atom; a bond with an arm at either end
//   four bonds   four arms of an atom; two arms of an atom, each with an arm of its own; a bond with two arms
//                at one end and one at the other
// where arms must not meet in an atom, or a ring would close. Identifiers are built on the way: an arm knows
// the identifier of what it would be as a branch, alone or with its atom, and arms lie in the order in which
// branches are hashed.

#include "generators/tree/SmallTrees.h"

#include <algorithm>

namespace QXFingrix {
namespace {

// Takes the identifiers.
class Record {
 public:
  Record(HashedBits& bits, unsigned minbonds, std::uint64_t maxTrees)
      : bits_(bits), minbonds_(minbonds), maxTrees_(maxTrees) {}

  void operator()(unsigned numBonds, unsigned id) {
    ++numTrees_;
    if (numBonds >= minbonds_) bits_.Set(id);
  }
  bool HasTooMany() const { return numTrees_ > maxTrees_; }

 private:
  HashedBits& bits_;
  unsigned minbonds_;
  std::uint64_t maxTrees_;
  std::uint64_t numTrees_ = 0;
};

}  // namespace

bool SmallTrees::SetBits(HashedBits& bits, const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                         std::span<const unsigned> bondLabels, unsigned minbonds, unsigned maxbonds,
                         std::uint64_t maxTrees) {
  LoadArms(mol, atomLabels, bondLabels);
  Record record(bits, minbonds, maxTrees);
  for (const QXChem::QXBondBase& bond : mol.Bonds()) {
    if (!AroundBond(bond, bondLabels[bond.GetIdx()], maxbonds, record)) return false;
  }
  if (maxbonds < 2) return true;
  for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
    if (!AroundAtom(atom, atomLabels[atom], maxbonds, record)) return false;
  }
  return true;
}

void SmallTrees::LoadArms(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                          std::span<const unsigned> bondLabels) {
  leafIds_.clear();
  for (const unsigned label : atomLabels) leafIds_.push_back(TreeNodeHash(label).Get());
  firstArm_.assign(1, 0);
  arms_.clear();
  for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
    const TreeNodeHash node(atomLabels[atom]);
    for (const QXChem::QXNeighbor& step : mol.Neighbors(atom)) {
      const unsigned bondLabel = bondLabels[step.bond];
      const std::uint64_t leaf = MakeBranch(bondLabel, leafIds_[step.atom]);
      arms_.push_back({leaf, step.atom, bondLabel, node.With(leaf).Get()});
    }
    std::sort(arms_.begin() + static_cast<std::ptrdiff_t>(firstArm_.back()), arms_.end(),
              [](const Arm& a, const Arm& b) { return a.leaf < b.leaf; });
    firstArm_.push_back(arms_.size());
  }
}

template <class Record>
bool SmallTrees::AroundBond(const QXChem::QXBondBase& bond, unsigned bondLabel, unsigned maxbonds,
                            Record& record) const {
  const unsigned a = bond.GetBgnIdx();
  const unsigned b = bond.GetEndIdx();
  record(1, TreeBondId(bondLabel, leafIds_[a], leafIds_[b]));
  if (maxbonds < 3) return !record.HasTooMany();
  for (const Arm& ofA : ArmsOf(a)) {
    if (record.HasTooMany()) return false;
    if (ofA.atom == b) continue;
    for (const Arm& ofB : ArmsOf(b)) {
      if (ofB.atom == a || ofB.atom == ofA.atom) continue;
      record(3, TreeBondId(bondLabel, ofA.branchId, ofB.branchId));
    }
  }
  return !record.HasTooMany();
}

template <class Record>
bool SmallTrees::AroundAtom(unsigned atom, unsigned atomLabel, unsigned maxbonds, Record& record) const {
  const std::span<const Arm> arms = ArmsOf(atom);
  const TreeNodeHash none(atomLabel);
  for (std::size_t i = 0; i < arms.size(); ++i) {
    const TreeNodeHash one = none.With(arms[i].leaf);
    for (std::size_t j = i + 1; j < arms.size(); ++j) {
      const TreeNodeHash two = one.With(arms[j].leaf);
      record(2, two.Get());
      if (maxbonds >= 3 && !AddArms(arms.subspan(j + 1), two, maxbonds, record)) return false;
      if (maxbonds < 4) continue;
      if (!AddSpurs(atom, arms, i, j, two.Get(), record)) return false;
      if (!AddLongArms(atom, none, arms[i], arms[j], record)) return false;
    }
  }
  return !record.HasTooMany();
}

// Two arms and one or two of `others`.
template <class Record>
bool SmallTrees::AddArms(std::span<const Arm> others, const TreeNodeHash& two, unsigned maxbonds,
                         Record& record) const {
  for (std::size_t k = 0; k < others.size(); ++k) {
    if (record.HasTooMany()) return false;
    const TreeNodeHash three = two.With(others[k].leaf);
    record(3, three.Get());
    if (maxbonds < 4) continue;
    for (const Arm& fourth : others.subspan(k + 1)) record(4, three.With(fourth.leaf).Get());
  }
  return true;
}

// Arms i and j and a third, which has an arm of its own and the centre as its bond.
template <class Record>
bool SmallTrees::AddSpurs(unsigned atom, std::span<const Arm> arms, std::size_t i, std::size_t j,
                          unsigned twoId, Record& record) const {
  for (std::size_t k = 0; k < arms.size(); ++k) {
    if (k == i || k == j) continue;
    if (record.HasTooMany()) return false;
    for (const Arm& spur : ArmsOf(arms[k].atom)) {
      if (spur.atom == atom || spur.atom == arms[i].atom || spur.atom == arms[j].atom) continue;
      record(4, TreeBondId(arms[k].bondLabel, twoId, spur.branchId));
    }
  }
  return true;
}

// Two arms that have an arm each.
template <class Record>
bool SmallTrees::AddLongArms(unsigned atom, const TreeNodeHash& none, const Arm& armA, const Arm& armB,
                             Record& record) const {
  for (const Arm& ofA : ArmsOf(armA.atom)) {
    if (ofA.atom == atom || ofA.atom == armB.atom) continue;
    if (record.HasTooMany()) return false;
    const std::uint64_t branchA = MakeBranch(armA.bondLabel, ofA.branchId);
    for (const Arm& ofB : ArmsOf(armB.atom)) {
      if (ofB.atom == atom || ofB.atom == armA.atom || ofB.atom == ofA.atom) continue;
      const std::uint64_t branchB = MakeBranch(armB.bondLabel, ofB.branchId);
      record(4, none.With(std::min(branchA, branchB)).With(std::max(branchA, branchB)).Get());
    }
  }
  return true;
}

}  // namespace QXFingrix
