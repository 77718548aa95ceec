#include "generators/maccs/KeyFinder.h"

#include <array>
#include <bit>

#include "generators/maccs/ChainKeys.h"
#include "generators/maccs/DistinctSets.h"
#include "generators/maccs/KeyRules.h"
#include "generators/maccs/RingKeys.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBase;
using QXChem::QXBondBase;
using QXChem::QXMolBase;
using QXChem::QXNeighbor;

AtomClass::Word ElementWord(const QXAtomBase& atom) {
  using namespace AtomClass;
  switch (atom.GetAtomicNum()) {
    case 1:
      return notC;
    case 6:
      return C;
    case 7:
      return N | Q | notC | clBrIN | ringHetero;
    case 8:
      return O | Q | notC | ringHetero;
    case 9:
      return Q | notC | halogen;
    case 14:
      return Q | notC | ringHetero;
    case 16:
      return S | Q | notC | ringHetero | (atom.IsAromatic() ? 0 : aliphaticS);
    case 17:
    case 35:
    case 53:
      return Q | notC | halogen | clBrIN;
    default:
      return Q | notC;
  }
}

// Everything but what depends on bonds and neighbours.
AtomClass::Word OwnWord(const QXAtomBase& atom) {
  using namespace AtomClass;
  Word word = any | ElementWord(atom);
  switch (atom.GetTotalHCount()) {
    case 1:
      word |= H1 | (word & Q ? QH : 0);
      break;
    case 2:
      word |= H2;
      if (word & C) word |= CH2 | (atom.IsAromatic() ? 0 : aliphaticCH2);
      break;
    case 3:
      word |= word & C ? CH3 : 0;
      break;
    default:
      break;
  }
  const unsigned connections = atom.GetDegree() + atom.GetImplicitHCount();
  if (connections == 3) word |= X3;
  if (connections == 4) word |= X4;
  if (atom.GetFormalCharge() != 0) word |= charged;
  if (atom.GetIsotope() != 0) word |= isotope;
  if (atom.IsInRing()) word |= inRing;
  return word;
}

NeighborCounts::Word AsNeighbor(AtomClass::Word word) {
  NeighborCounts::Word counts = 0;
  for (unsigned bits = word & ((1U << AtomClass::numCountedBits) - 1); bits != 0; bits &= bits - 1) {
    counts |= NeighborCounts::Of(static_cast<unsigned>(std::countr_zero(bits)));
  }
  return counts;
}

unsigned KindOf(const QXBondBase& bond) {
  using namespace BondKind;
  static constexpr Bit byOrder[] = {other, single, twofold, threefold};
  unsigned kind = other;
  if (bond.IsAromatic()) {
    kind = aromatic;
  } else if (!bond.IsDative() && bond.GetOrder() < std::size(byOrder)) {
    kind = byOrder[bond.GetOrder()];
  }
  return bond.IsInRing() ? kind + ringShift : kind;
}

bool IsRingKind(unsigned kind) {
  return kind >= BondKind::ringShift;
}

bool IsAromaticKind(unsigned kind) {
  return kind == BondKind::aromatic || kind == BondKind::aromatic + BondKind::ringShift;
}

}  // namespace

void KeyFinder::FindPatternKeys(KeySet& keys, const QXMolBase& mol) {
  GatherAtoms(mol);
  GatherBonds(mol);
  CompleteWords(mol);
  ApplyAtomRules(keys);
  ApplyBondRules(keys, mol);
  ApplyCountRules(keys);
  CountBonds(keys, mol);
  FindSubstitutedAromaticBond(keys, mol);
  FindTwoHeteroMethylenes(keys, mol);
  FindChainKeys(keys, mol, atoms_, bondKinds_);
  FindRingKeys(keys, mol, atoms_, bondKinds_);
}

void KeyFinder::GatherAtoms(const QXMolBase& mol) {
  atoms_.clear();
  for (const QXAtomBase& atom : mol.Atoms()) {
    const AtomClass::Word word = OwnWord(atom);
    atoms_.push_back({word, AsNeighbor(word), 0});
  }
}

void KeyFinder::GatherBonds(const QXMolBase& mol) {
  bondKinds_.clear();
  for (const QXBondBase& bond : mol.Bonds()) {
    bondKinds_.push_back(static_cast<std::uint8_t>(KindOf(bond)));
    AtomFacts& bgn = atoms_[bond.GetBgnIdx()];
    AtomFacts& end = atoms_[bond.GetEndIdx()];
    bgn.neighbors = NeighborCounts::Add(bgn.neighbors, end.asNeighbor);
    end.neighbors = NeighborCounts::Add(end.neighbors, bgn.asNeighbor);
  }
}

void KeyFinder::CompleteWords(const QXMolBase& mol) {
  using namespace AtomClass;
  using namespace NeighborCounts;
  for (unsigned i = 0; i < atoms_.size(); ++i) {
    unsigned numRing = 0;
    unsigned numChain = 0;
    bool hasAromatic = false;
    for (const QXNeighbor& neighbor : mol.Neighbors(i)) {
      const unsigned kind = bondKinds_[neighbor.bond];
      ++(IsRingKind(kind) ? numRing : numChain);
      hasAromatic |= IsAromaticKind(kind);
    }
    auto& [word, asNeighbor, neighbors] = atoms_[i];
    if (numRing >= 1) word |= ring1 | (numChain >= 1 ? branch : 0);
    if (numRing >= 2) word |= ring2;
    if (numRing >= 3) word |= ring3 | (word & C ? cRing3 : 0);
    if (numChain >= 2) word |= chain2;
    if (hasAromatic) word |= aromaticBond;
    if (word & C) {
      if (Suffice(neighbors, Of(heteroBit, 2))) word |= cQ2;
      if (Suffice(neighbors, Of(carbonBit, 3))) word |= cC3;
      if (Suffice(neighbors, Of(anyBit, 3))) word |= cDegree3;
      if (Suffice(neighbors, Of(nitrogenBit))) word |= cN;
    }
  }
}

void KeyFinder::ApplyAtomRules(KeySet& keys) const {
  for (const AtomFacts& atom : atoms_) {
    for (const AtomRule& rule : GetAtomRules()) {
      if ((atom.word & rule.atom) == rule.atom && NeighborCounts::Suffice(atom.neighbors, rule.neighbors)) {
        keys.Set(rule.key);
      }
    }
  }
}

// Bonds are gathered by kind and by the classes of one end first; there are fewer of these than bonds.
void KeyFinder::ApplyBondRules(KeySet& keys, const QXMolBase& mol) const {
  using AtomClass::Word;
  static const Word firstEnds = [] {
    Word word = 0;
    for (const BondRule& rule : GetBondRules()) word |= rule.first;
    return word;
  }();
  std::array<std::array<Word, AtomClass::numClassBits>, BondKind::numKinds> otherEnds{};
  unsigned present = 0;
  const auto gather = [&](unsigned kind, Word first, Word second) {
    for (Word bits = first & firstEnds; bits != 0; bits &= bits - 1) {
      otherEnds[kind][static_cast<unsigned>(std::countr_zero(bits))] |= second;
    }
  };
  for (const QXBondBase& bond : mol.Bonds()) {
    const unsigned kind = bondKinds_[bond.GetIdx()];
    const Word bgn = atoms_[bond.GetBgnIdx()].word;
    const Word end = atoms_[bond.GetEndIdx()].word;
    present |= 1U << kind;
    gather(kind, bgn, end);
    gather(kind, end, bgn);
  }
  for (const BondRule& rule : GetBondRules()) {
    const auto first = static_cast<unsigned>(std::countr_zero(rule.first));
    Word ends = 0;
    for (unsigned kinds = rule.bonds & present; kinds != 0; kinds &= kinds - 1) {
      ends |= otherEnds[static_cast<unsigned>(std::countr_zero(kinds))][first];
    }
    if (ends & rule.second) keys.Set(rule.key);
  }
}

void KeyFinder::ApplyCountRules(KeySet& keys) const {
  for (const CountRule& rule : GetCountRules()) {
    unsigned count = 0;
    for (const AtomFacts& atom : atoms_) count += (atom.word & rule.atom) != 0;
    if (count >= rule.count) keys.Set(rule.key);
  }
}

// [!#6;!#1]~[!#6;!#1] and [#7,#8,#14,#16]@*, each twice.
void KeyFinder::CountBonds(KeySet& keys, const QXMolBase& mol) const {
  unsigned numHetero = 0;
  unsigned numRing = 0;
  for (const QXBondBase& bond : mol.Bonds()) {
    const AtomClass::Word bgn = atoms_[bond.GetBgnIdx()].word;
    const AtomClass::Word end = atoms_[bond.GetEndIdx()].word;
    numHetero += (bgn & end & AtomClass::Q) != 0;
    numRing += IsRingKind(bondKinds_[bond.GetIdx()]) && ((bgn | end) & AtomClass::ringHetero) != 0;
  }
  if (numHetero >= 2) keys.Set(twoHeteroBondsKey);
  if (numRing >= 2) keys.Set(twoRingHeteroBondsKey);
}

// *!:*:*!:*; the two substituents must not be the same atom.
void KeyFinder::FindSubstitutedAromaticBond(KeySet& keys, const QXMolBase& mol) const {
  const auto isSubstituent = [&](const QXNeighbor& neighbor) {
    return !IsAromaticKind(bondKinds_[neighbor.bond]);
  };
  for (const QXBondBase& bond : mol.Bonds()) {
    if (!IsAromaticKind(bondKinds_[bond.GetIdx()])) continue;
    for (const QXNeighbor& first : mol.Neighbors(bond.GetBgnIdx())) {
      if (!isSubstituent(first)) continue;
      for (const QXNeighbor& second : mol.Neighbors(bond.GetEndIdx())) {
        if (isSubstituent(second) && first.atom != second.atom) return keys.Set(substitutedAromaticBondKey);
      }
    }
  }
}

// [#6H2](~[!#6;!#1])~*, twice.
void KeyFinder::FindTwoHeteroMethylenes(KeySet& keys, const QXMolBase& mol) const {
  DistinctSets<3> matches;
  for (unsigned i = 0; i < atoms_.size(); ++i) {
    if (!(atoms_[i].word & AtomClass::CH2)) continue;
    for (const QXNeighbor& hetero : mol.Neighbors(i)) {
      if (!(atoms_[hetero.atom].word & AtomClass::Q)) continue;
      for (const QXNeighbor& other : mol.Neighbors(i)) {
        if (other.atom != hetero.atom) matches.Add({i, hetero.atom, other.atom});
      }
    }
    if (matches.AreTwo()) return keys.Set(twoHeteroMethylenesKey);
  }
}

}  // namespace QXFingrix
