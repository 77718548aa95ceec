// Colour refinement with 64-bit hashes. In every round an atom's colour becomes a hash of its own colour and
// of the multiset of its neighbours' colours and bonds, for which a sum stands: colours and bond colours are
// hashes, so the sums of different multisets differ as random numbers do. A round can only split classes, so
// the partition is stable as soon as their number stops growing. In a long chain that takes half as many
// rounds as there are atoms, so after some rounds the rest is left to StablePartition, which is slower than a
// few rounds but needs no more than O(bonds x log(atoms)). Colours do not depend on the order of the
// atoms. A collision has a probability of about 2^-64 and only merges classes; whoever needs certainty checks
// the keys (see Symmetry.cpp).

#include "chem/Refinement.h"

#include <bit>

namespace QXChem {
namespace {

constexpr unsigned maxRounds = 32;

constexpr std::uint64_t MixBits(std::uint64_t value) {
  value *= 0x9E3779B97F4A7C15ULL;
  value ^= value >> 32;
  value *= 0xD6E8FEB86659FD93ULL;
  return value ^ (value >> 29);
}

}  // namespace

std::uint64_t AtomKey(const QXAtomBase& atom, bool withChirality) {
  std::uint64_t key = atom.GetAtomicNum();
  key = key << 8 | static_cast<std::uint8_t>(atom.GetFormalCharge());
  key = key << 8 | atom.GetImplicitHCount();
  key = key << 1 | static_cast<unsigned>(atom.IsAromatic());
  key = key << 1 | static_cast<unsigned>(atom.IsInRing());
  key = key << 1 | static_cast<unsigned>(withChirality && atom.IsChiral());
  return key << 16 | atom.GetIsotope();
}

std::uint32_t BondKey(const QXBondBase& bond, unsigned fromAtom, bool withChirality) {
  std::uint32_t key = bond.IsAromatic() ? 15 : bond.GetOrder();
  key = key << 1 | static_cast<unsigned>(bond.IsInRing());
  key = key << 1 | static_cast<unsigned>(withChirality && bond.IsChiral());
  return key << 2 | (bond.IsDative() ? 1U + (bond.GetBgnIdx() == fromAtom) : 0U);
}

void Refinement::Run(const QXMolBase& mol, bool withChirality) {
  Start(mol, withChirality);
  // The first rounds nearly always split, so there is nothing to count between them.
  Mix(mol);
  Mix(mol);
  numClasses_ = Classify();
  for (unsigned round = 2; numClasses_ < mol.NumAtoms(); ++round) {
    if (round == maxRounds) {
      numClasses_ = partition_.Run(mol, bondColors_, classOfAtom_, numClasses_);
      NumberByFirstAtom();
      return;
    }
    Mix(mol);
    const unsigned finer = Classify();
    if (finer == numClasses_) return;
    numClasses_ = finer;
  }
}

void Refinement::NumberByFirstAtom() {
  constexpr unsigned unset = ~0U;
  newNumber_.assign(numClasses_, unset);
  unsigned count = 0;
  for (unsigned& value : classOfAtom_) {
    unsigned& number = newNumber_[value];
    if (number == unset) number = count++;
    value = number;
  }
}

void Refinement::Start(const QXMolBase& mol, bool withChirality) {
  const unsigned numAtoms = mol.NumAtoms();
  colors_.resize(numAtoms);
  nextColors_.resize(numAtoms);
  classOfAtom_.resize(numAtoms);
  bondColors_.resize(std::size_t{2} * mol.NumBonds());
  std::uint64_t* bondColor = bondColors_.data();
  for (const QXAtomBase& atom : mol.Atoms()) {
    std::uint64_t shape = 0;  // degree and number of ring bonds
    for (const QXNeighbor& neighbor : atom.GetNeighbors()) {
      const QXBondBase& bond = mol.Bonds()[neighbor.bond];
      *bondColor++ = MixBits(BondKey(bond, atom.GetIdx(), withChirality) + 1);
      shape += 1 + (static_cast<std::uint64_t>(bond.IsInRing()) << 32);
    }
    colors_[atom.GetIdx()] = MixBits(AtomKey(atom, withChirality) ^ MixBits(shape));
  }
  const std::size_t slots = std::bit_ceil(std::size_t{2} * numAtoms + 1);
  if (table_.size() < slots) {
    table_.assign(slots, Slot{0, 0, 0});
    round_ = 0;
  }
}

void Refinement::Mix(const QXMolBase& mol) {
  const std::uint64_t* bondColor = bondColors_.data();
  const std::uint64_t* colors = colors_.data();
  std::uint64_t* nextColor = nextColors_.data();
  for (const QXAtomBase& atom : mol.Atoms()) {
    std::uint64_t sum = 0;
    for (const QXNeighbor& neighbor : atom.GetNeighbors()) sum += colors[neighbor.atom] ^ *bondColor++;
    *nextColor++ = MixBits(MixBits(sum) + colors[atom.GetIdx()]);
  }
  colors_.swap(nextColors_);
}

// Numbers the colours and returns how many there are. A slot counts as empty unless it was filled in this
// round.
unsigned Refinement::Classify() {
  if (++round_ == 0) {  // after 2^32 rounds old slots would look new
    table_.assign(table_.size(), Slot{0, 0, 0});
    round_ = 1;
  }
  const std::size_t mask = table_.size() - 1;
  unsigned count = 0;
  for (std::size_t i = 0; i < colors_.size(); ++i) {
    const std::uint64_t color = colors_[i];
    std::size_t slot = color & mask;
    while (table_[slot].round == round_ && table_[slot].color != color) slot = (slot + 1) & mask;
    if (table_[slot].round != round_) table_[slot] = {color, round_, count++};
    classOfAtom_[i] = table_[slot].index;
  }
  return count;
}

}  // namespace QXChem
