#include "generators/maccs/RingKeys.h"

#include <array>

#include "generators/maccs/DistinctSets.h"
#include "generators/maccs/KeyRules.h"

namespace QXFingrix {
namespace {

using QXChem::QXMolBase;
using QXChem::QXNeighbor;

constexpr unsigned minSize = 3;
constexpr unsigned maxSize = 7;
constexpr unsigned countedSize = 6;
constexpr unsigned longChain = 8;

// By ring size: the key of any ring, and that of a ring with an atom other than carbon and hydrogen.
constexpr unsigned anyKeys[maxSize + 1] = {0, 0, 0, 22, 11, 96, 0, 19};
constexpr unsigned heteroKeys[maxSize + 1] = {0, 0, 0, 16, 8, 83, 98, 0};
constexpr unsigned twoSixRingsKey = 145;
constexpr unsigned longChainKey = 101;

class RingWalk {
 public:
  RingWalk(const QXMolBase& mol, std::span<const AtomFacts> atoms, std::span<const std::uint8_t> bondKinds)
      : mol_(mol), atoms_(atoms), bondKinds_(bondKinds) {}

  // Every ring is found from its lowest atom, once in each direction.
  void FindRings() {
    for (unsigned i = 0; i < atoms_.size(); ++i) {
      if (!IsRingAtom(i)) continue;
      chain_[0] = i;
      Lengthen(1, IsHetero(i));
    }
  }

  bool HasLongChain() {
    for (unsigned i = 0; i < atoms_.size(); ++i) {
      if (!IsRingAtom(i)) continue;
      chain_[0] = i;
      if (CanReachLongChain(1)) return true;
    }
    return false;
  }

  void SetKeys(KeySet& keys) const {
    for (unsigned size = minSize; size <= maxSize; ++size) {
      if (anyKeys[size] != 0 && found_[size]) keys.Set(anyKeys[size]);
      if (heteroKeys[size] != 0 && foundHetero_[size]) keys.Set(heteroKeys[size]);
    }
    if (sixRings_.AreTwo()) keys.Set(twoSixRingsKey);
  }

 private:
  bool IsRingAtom(unsigned atom) const { return (atoms_[atom].word & AtomClass::ring1) != 0; }
  bool IsHetero(unsigned atom) const { return (atoms_[atom].word & AtomClass::Q) != 0; }
  bool IsRingBond(unsigned bond) const { return bondKinds_[bond] >= BondKind::ringShift; }

  bool IsInChain(unsigned atom, unsigned numAtoms) const {
    for (unsigned i = 0; i < numAtoms; ++i) {
      if (chain_[i] == atom) return true;
    }
    return false;
  }

  void Lengthen(unsigned numAtoms, bool hasHetero) {
    for (const QXNeighbor& next : mol_.Neighbors(chain_[numAtoms - 1])) {
      if (next.atom <= chain_[0]) {
        if (next.atom == chain_[0] && numAtoms >= minSize) Close(numAtoms, hasHetero);
        continue;
      }
      if (numAtoms == maxSize || !IsRingBond(next.bond) || IsInChain(next.atom, numAtoms)) continue;
      chain_[numAtoms] = next.atom;
      Lengthen(numAtoms + 1, hasHetero || IsHetero(next.atom));
    }
  }

  void Close(unsigned size, bool hasHetero) {
    found_[size] = true;
    foundHetero_[size] |= hasHetero;
    if (size == countedSize) {
      sixRings_.Add({chain_[0], chain_[1], chain_[2], chain_[3], chain_[4], chain_[5]});
    }
  }

  bool CanReachLongChain(unsigned numAtoms) {
    if (numAtoms == longChain) return true;
    for (const QXNeighbor& next : mol_.Neighbors(chain_[numAtoms - 1])) {
      if (!IsRingBond(next.bond) || IsInChain(next.atom, numAtoms)) continue;
      chain_[numAtoms] = next.atom;
      if (CanReachLongChain(numAtoms + 1)) return true;
    }
    return false;
  }

  const QXMolBase& mol_;
  std::span<const AtomFacts> atoms_;
  std::span<const std::uint8_t> bondKinds_;
  std::array<unsigned, longChain> chain_{};
  std::array<bool, maxSize + 1> found_{};
  std::array<bool, maxSize + 1> foundHetero_{};
  DistinctSets<countedSize> sixRings_;
};

}  // namespace

void FindRingKeys(KeySet& keys, const QXMolBase& mol, std::span<const AtomFacts> atoms,
                  std::span<const std::uint8_t> bondKinds) {
  RingWalk walk(mol, atoms, bondKinds);
  walk.FindRings();
  walk.SetKeys(keys);
  if (walk.HasLongChain()) keys.Set(longChainKey);
}

}  // namespace QXFingrix
