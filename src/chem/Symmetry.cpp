// Symmetry classes. A refinement finds atoms that look alike from everywhere, but looking alike is not being
// equivalent: in cyclopropane beside cyclohexane, and in some cages, refinement cannot tell apart atoms that
// no automorphism exchanges. A class is therefore only called proven when automorphisms that join its atoms
// have been written down and checked.
//
// The automorphisms searched are local exchanges. To exchange atoms a and b, each neighbour of a is exchanged
// with a neighbour of b over the same kind of bond, a neighbour common to both stays, and so on outward until
// nothing else has to move; then every bond of every moved atom is checked. Two ends of a molecule, the
// halves of a ring, methyl groups and equal components all exchange in this way. The choice among several
// partners is greedy: a wrong guess loses a merge and with it some speed later, never correctness. Atoms
// joined by a chain of automorphisms are equivalent, so all exchanges go into one union-find.

#include <algorithm>
#include <numeric>

#include "QXChem/QXPerception.h"
#include "chem/Chirality.h"
#include "chem/MolAccess.h"
#include "chem/Refinement.h"
#include "chem/ThreadScratch.h"

namespace QXChem {
namespace {

class SymmetryProver {
 public:
  // Leaves the representative of each atom's proven class in Root().
  void Run(const QXMolBase& mol, std::span<const unsigned> classOfAtom, unsigned numClasses) {
    mol_ = &mol;
    classOfAtom_ = classOfAtom;
    budget_ = 1000 + 200 * (static_cast<std::size_t>(mol.NumAtoms()) + mol.NumBonds());
    root_.resize(mol.NumAtoms());
    std::iota(root_.begin(), root_.end(), 0U);
    image_.assign(mol.NumAtoms(), unset_);
    lastProven_.assign(numClasses, unset_);
    nextProven_.assign(mol.NumAtoms(), unset_);
    for (unsigned atom = 0; atom < mol.NumAtoms() && budget_ > 0; ++atom) Place(atom);
  }

  unsigned Root(unsigned atom) {
    while (root_[atom] != atom) atom = root_[atom] = root_[root_[atom]];
    return atom;
  }

 private:
  // Joins the atom to one of the proven classes within its refinement class, or makes it the first of a new
  // one.
  void Place(unsigned atom) {
    unsigned& head = lastProven_[classOfAtom_[atom]];
    for (unsigned other = head; other != unset_ && budget_ > 0; other = nextProven_[other]) {
      if (Root(other) == Root(atom)) return;
      if (Exchange(other, atom, true) || Exchange(other, atom, false)) return;
    }
    nextProven_[atom] = head;
    head = atom;
  }

  // keepCommon: whether a neighbour of both stays where it is, which is right nearly always but not in
  // prismane.
  bool Exchange(unsigned a, unsigned b, bool keepCommon) {
    moved_.clear();
    fixed_.clear();
    SetPair(a, b);
    const bool proven = Spread(keepCommon) && IsAutomorphism();
    if (proven) {
      for (const unsigned atom : moved_) root_[Root(atom)] = Root(image_[atom]);
    }
    for (const unsigned atom : moved_) image_[atom] = unset_;
    for (const unsigned atom : fixed_) image_[atom] = unset_;
    return proven;
  }

  void SetPair(unsigned a, unsigned b) {
    image_[a] = b;
    image_[b] = a;
    moved_.push_back(a);
    moved_.push_back(b);
  }

  // Pairs lie side by side in moved_; each is looked at once, while further ones are appended.
  bool Spread(bool keepCommon) {
    for (std::size_t next = 0; next < moved_.size(); next += 2) {
      const unsigned a = moved_[next];
      const unsigned b = moved_[next + 1];
      if (keepCommon) FixCommonNeighbors(a, b);
      for (const QXNeighbor& neighbor : mol_->Neighbors(a)) {
        if (!Spend()) return false;
        if (image_[neighbor.atom] != unset_) continue;
        const unsigned partner = FindPartner(neighbor, a, b);
        if (partner == unset_) return false;
        SetPair(neighbor.atom, partner);
      }
    }
    return true;
  }

  void FixCommonNeighbors(unsigned a, unsigned b) {
    for (const QXNeighbor& neighbor : mol_->Neighbors(a)) {
      if (image_[neighbor.atom] != unset_ || !HasBond(b, neighbor.atom, Key(neighbor, a))) continue;
      image_[neighbor.atom] = neighbor.atom;
      fixed_.push_back(neighbor.atom);
    }
  }

  // A free neighbour of b that looks from there as the neighbour looks from a; common neighbours go with each
  // other.
  unsigned FindPartner(const QXNeighbor& neighbor, unsigned a, unsigned b) {
    const std::uint32_t key = Key(neighbor, a);
    for (const QXNeighbor& other : mol_->Neighbors(b)) {
      if (!Spend()) return unset_;
      if (other.atom != neighbor.atom && image_[other.atom] == unset_ &&
          classOfAtom_[other.atom] == classOfAtom_[neighbor.atom] && Key(other, b) == key &&
          AreBonded(other.atom, a) == AreBonded(neighbor.atom, b)) {
        return other.atom;
      }
    }
    return unset_;
  }

  // Whether exchanging the moved pairs preserves every atom and bond. Bonds between atoms that stay are
  // untouched, so the moved atoms' bonds are all there is to check.
  bool IsAutomorphism() {
    return std::ranges::all_of(moved_, [&](unsigned atom) {
      const unsigned image = image_[atom];
      const auto neighbors = mol_->Neighbors(atom);
      if (!Spend() || neighbors.size() != mol_->Neighbors(image).size()) return false;
      if (!LookAlike(mol_->Atoms()[atom], mol_->Atoms()[image])) return false;
      return std::ranges::all_of(neighbors, [&](const QXNeighbor& neighbor) {
        const unsigned target = image_[neighbor.atom] == unset_ ? neighbor.atom : image_[neighbor.atom];
        return HasBond(image, target, Key(neighbor, atom));
      });
    });
  }

  // Whether no label tells the two apart, chirality included. The valence stands for the orders of aromatic
  // bonds, which the keys leave out.
  static bool LookAlike(const QXAtomBase& a, const QXAtomBase& b) {
    return AtomKey(a, true) == AtomKey(b, true) && a.GetHyb() == b.GetHyb() &&
           a.GetValence() == b.GetValence();
  }

  bool HasBond(unsigned from, unsigned to, std::uint32_t key) {
    for (const QXNeighbor& neighbor : mol_->Neighbors(from)) {
      if (!Spend()) return false;
      if (neighbor.atom == to) return Key(neighbor, from) == key;
    }
    return false;
  }

  bool AreBonded(unsigned a, unsigned b) {
    return std::ranges::any_of(mol_->Neighbors(a),
                               [&](const QXNeighbor& next) { return Spend() && next.atom == b; });
  }

  std::uint32_t Key(const QXNeighbor& neighbor, unsigned from) const {
    return BondKey(mol_->Bonds()[neighbor.bond], from, true);
  }

  bool Spend() { return budget_ > 0 && --budget_ > 0; }

  static constexpr unsigned unset_ = ~0U;

  const QXMolBase* mol_ = nullptr;
  std::span<const unsigned> classOfAtom_;
  std::size_t budget_ = 0;
  std::vector<unsigned> root_;
  std::vector<unsigned> image_;
  std::vector<unsigned> moved_;
  std::vector<unsigned> fixed_;
  // The first atoms of the proven classes of each refinement class, as linked lists.
  std::vector<unsigned> lastProven_;
  std::vector<unsigned> nextProven_;
};

struct Scratch {
  Refinement refinement;
  SymmetryProver prover;
  std::vector<unsigned> number;
};

}  // namespace

void QXPerceiveSymmetry(QXMolBase& mol, bool proven, bool withChirality) {
  QXFindRingAtomsAndBonds(mol);
  QXAssignAromaticFlags(mol);
  QXAssignHybridization(mol);
  if (withChirality) QXPerceiveChiral(mol);
  ThreadScratch<Scratch> scratch(mol);
  scratch->refinement.Run(mol, withChirality);
  const auto classes = scratch->refinement.ClassOfAtom();
  // These classes are what chirality would compute once more.
  if (!mol.IsPerceived(QXPerceived::Chirality)) PerceiveChiralFrom(mol, classes);
  const auto atoms = MolAccess::Atoms(mol);
  if (!proven || scratch->refinement.NumClasses() == mol.NumAtoms()) {
    for (QXAtomBase& atom : atoms) MolAccess::SetSymmetryClass(atom, classes[atom.GetIdx()] + 1);
    MolAccess::MarkPerceived(mol, QXPerceived::Symmetry);
    return;
  }
  scratch->prover.Run(mol, classes, scratch->refinement.NumClasses());
  scratch->number.assign(mol.NumAtoms(), 0);
  unsigned numClasses = 0;
  for (QXAtomBase& atom : atoms) {
    unsigned& number = scratch->number[scratch->prover.Root(atom.GetIdx())];
    if (number == 0) number = ++numClasses;
    MolAccess::SetSymmetryClass(atom, number);
  }
  MolAccess::MarkPerceived(mol, QXPerceived::Symmetry);
}

}  // namespace QXChem
