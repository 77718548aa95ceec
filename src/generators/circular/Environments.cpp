// The bonds of an environment of radius r are those at atoms up to r - 1 bonds from its centre: the union of
// the sets of radius r - 1 of the centre's neighbours, for r > 1. As masks of bits they are quickly united
// and compared. A mask for every atom would grow with the square of the molecule, so beyond some size the
// sets are looked for anew each time, and only a sum over them is kept. Sets with equal keys are compared in
// full unless the key is the set.
//
// A centre whose set has appeared at a smaller radius gives nothing new ever after. If its set of radius r is
// that of another centre with radius s < r, then both cover the same atoms, those up to r and up to s bonds
// away, and their sets of radius r + 1 and s + 1 are the bonds at these atoms: equal again. The set of an
// atom with only one bond is, from radius 2, that of its neighbour with a radius smaller by one.

#include "generators/circular/Environments.h"

#include <algorithm>
#include <bit>

namespace QXFingrix {
namespace {

constexpr std::size_t wordBits = 64;
constexpr std::size_t maxMaskWords = 16;  // 2 masks of 128 bytes for each atom
constexpr std::size_t slotsPerAtom = 8;   // a centre has rarely more than 4 environments

// Finalizer of Steele, Lea and Flood's SplitMix64: spreads consecutive numbers.
constexpr std::uint64_t Spread(std::uint64_t n) {
  n = (n ^ (n >> 30)) * 0xbf58476d1ce4e5b9;
  n = (n ^ (n >> 27)) * 0x94d049bb133111eb;
  return n ^ (n >> 31);
}

}  // namespace

void Environments::Load(const QXChem::QXMolBase& mol) {
  mol_ = &mol;
  radius_ = 0;
  sets_.clear();
  firstFound_ = 0;
  Rehash(std::bit_ceil(slotsPerAtom * (mol.NumAtoms() + std::size_t{1})));
  centres_.clear();
  for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
    if (!mol.Neighbors(atom).empty()) centres_.push_back({.atom = atom, .environment = 0});
  }
  maskWords_ = (mol.NumBonds() + wordBits - 1) / wordBits;
  if (maskWords_ > maxMaskWords) maskWords_ = 0;
  if (maskWords_ != 1) {
    ball_.Load(mol);
    other_.Load(mol);
  }
}

std::span<const Environments::Centre> Environments::Grow() {
  ++radius_;
  firstFound_ = sets_.size();
  if (radius_ == 2) {
    std::erase_if(centres_, [&](const Centre& centre) { return mol_->Neighbors(centre.atom).size() == 1; });
  }
  if (centres_.empty()) return {};
  if (maskWords_ > 0) GrowMasks();
  auto kept = centres_.begin();
  for (const Centre& centre : centres_) {
    const unsigned place = FindOrAdd({KeyOf(centre.atom), centre.atom, radius_});
    if (place < firstFound_) continue;
    *kept++ = {centre.atom, static_cast<unsigned>(place - firstFound_)};
  }
  centres_.erase(kept, centres_.end());
  return centres_;
}

void Environments::GrowMasks() {
  const unsigned numAtoms = mol_->NumAtoms();
  nextMasks_.assign(numAtoms * maskWords_, 0);
  for (unsigned atom = 0; atom < numAtoms; ++atom) {
    std::uint64_t* const mask = nextMasks_.data() + atom * maskWords_;
    for (const QXChem::QXNeighbor& step : mol_->Neighbors(atom)) {
      if (radius_ == 1) {
        mask[step.bond / wordBits] |= std::uint64_t{1} << (step.bond % wordBits);
      } else {
        const std::uint64_t* const other = masks_.data() + step.atom * maskWords_;
        for (std::size_t i = 0; i < maskWords_; ++i) mask[i] |= other[i];
      }
    }
  }
  masks_.swap(nextMasks_);
}

std::uint64_t Environments::KeyOf(unsigned atom) {
  if (maskWords_ == 1) return masks_[atom];
  std::uint64_t key = 0;
  if (maskWords_ > 0) {
    const std::uint64_t* const mask = masks_.data() + atom * maskWords_;
    for (std::size_t i = 0; i < maskWords_; ++i) key = Spread(key ^ mask[i]) + 1;
  } else {
    ball_.Find(atom, radius_);
    for (const unsigned bond : ball_.Bonds()) key += Spread(bond + std::uint64_t{1});
  }
  return key;
}

unsigned Environments::FindOrAdd(const BondSet& set) {
  std::size_t slot = FirstSlot(set.key);
  for (; slots_[slot] != 0; slot = (slot + 1) & (slots_.size() - 1)) {
    if (AreEqual(sets_[slots_[slot] - 1], set)) return slots_[slot] - 1;
  }
  sets_.push_back(set);
  slots_[slot] = static_cast<unsigned>(sets_.size());
  if (2 * sets_.size() > slots_.size()) Rehash(2 * slots_.size());
  return static_cast<unsigned>(sets_.size() - 1);
}

bool Environments::AreEqual(const BondSet& a, const BondSet& b) {
  if (a.key != b.key) return false;
  if (maskWords_ == 1) return true;
  ball_.Find(a.atom, a.radius);
  other_.Find(b.atom, b.radius);
  return ball_.Bonds().size() == other_.Bonds().size() &&
         std::ranges::all_of(other_.Bonds(), [&](unsigned bond) { return ball_.HasBond(bond); });
}

void Environments::Rehash(std::size_t numSlots) {
  slots_.assign(numSlots, 0);
  slotShift_ = wordBits - static_cast<unsigned>(std::countr_zero(numSlots));
  for (std::size_t i = 0; i < sets_.size(); ++i) {
    std::size_t slot = FirstSlot(sets_[i].key);
    while (slots_[slot] != 0) slot = (slot + 1) & (numSlots - 1);
    slots_[slot] = static_cast<unsigned>(i + 1);
  }
}

std::size_t Environments::FirstSlot(std::uint64_t key) const {
  return static_cast<std::size_t>((key * 0x9e3779b97f4a7c15) >> slotShift_);
}

}  // namespace QXFingrix
