#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>

#include "QXChem/QXPerception.h"
#include "chem/Refinement.h"
#include "chem/SharedMolecules.h"
#include "chem/Shuffled.h"

namespace QXChem {
namespace {

// Molecules whose atoms a refinement cannot tell apart although not all of them are equivalent, and regular
// ones.
const std::vector<std::string> regular = {
    "C1CC1.C1CCCCC1",                              // all CH2 look alike
    "C1CCC1.C1CCCCCCC1",                           //
    "C1CCCCC1.C1CCCCC1.C1CC1.C1CC1",               //
    "C1CCC2CCCCC2C1.C1CCC(CC1)C1CCCCC1",           // decalin, bicyclohexyl
    "C12C3C4C1C5C2C3C45",                          // cubane
    "C1C2CC3CC1CC(C2)C3",                          // adamantane
    "C12C3C1C1C2C31",                              // prismane
    "C12C3C4C5C1C6C7C2C8C3C9C4C1C5C6C2C7C8C9C12",  // dodecahedrane
    "C1CC2CCC1CC2",                                // barrelane skeleton
    "c1ccc2c(c1)ccc1ccccc12",                      // phenanthrene
    "c1cc2ccc3cccc4ccc(c1)c2c34",                  // pyrene
    "c12c3c4c5c1c1c6c7c2c2c8c3c3c9c4c4c%10c5c5c1c1c6c6c%11c7c2c2c7c8c3c3c8c9c4c4c9c%10c5c5c1c1c6c6c%"
    "11c2c2c7c3c3c8c4c4c9c5c1c1c6c2c3c41",
    "CC(C)(C)C(C(C)(C)C)C(C)(C)C",           //
    "FC(F)(F)c1cc(C(F)(F)F)cc(C(F)(F)F)c1",  //
    "O=C([O-])CCC(=O)[O-].[Na+].[Na+]",      //
    "C1CN2CCN1CC2",                          // DABCO
    "O1CCOCCOCCOCCOCCOCC1",                  // crown ether
    "[Fe].c1ccc(cc1)P(c1ccccc1)c1ccccc1",    //
    "C[Si]1(C)O[Si](C)(C)O[Si](C)(C)O1",     //
    "[2H]C([2H])([2H])C([2H])([2H])[2H]"};

std::vector<unsigned> Classes(QXGraphMol mol, bool proven, bool withChirality = false) {
  QXPerceiveSymmetry(mol, proven, withChirality);
  std::vector<unsigned> classes;
  for (const QXAtomBase& atom : mol.Atoms()) classes.push_back(atom.GetSymmetryClass());
  return classes;
}

unsigned NumClasses(const std::vector<unsigned>& classes) {
  return classes.empty() ? 0 : *std::ranges::max_element(classes);
}

// Every walk of up to maxBonds bonds from an atom, as a hash of its atoms' and bonds' properties, sorted.
class Walks {
 public:
  Walks(const QXMolBase& mol, unsigned maxBonds, bool withChirality)
      : mol_(mol), maxBonds_(maxBonds), withChirality_(withChirality), visited_(mol.NumAtoms()) {}

  std::vector<std::uint64_t> From(unsigned atom) {
    found_.clear();
    Extend(atom, 0, 0);
    std::ranges::sort(found_);
    return found_;
  }

 private:
  void Extend(unsigned atom, std::uint64_t id, unsigned numBonds) {
    const QXAtomBase& a = mol_.Atoms()[atom];
    id = (id ^ AtomKey(a, withChirality_) ^ (std::uint64_t{a.GetDegree() * 8 + a.GetHyb()} << 57)) *
         0x9E3779B97F4A7C15ULL;
    id ^= id >> 31;
    found_.push_back(id);
    if (numBonds == maxBonds_) return;
    visited_[atom] = 1;
    for (const QXNeighbor& next : mol_.Neighbors(atom)) {
      if (visited_[next.atom]) continue;
      Extend(next.atom, (id + BondKey(mol_.Bonds()[next.bond], atom, withChirality_)) * 0xD6E8FEB86659FD93ULL,
             numBonds + 1);
    }
    visited_[atom] = 0;
  }

  const QXMolBase& mol_;
  unsigned maxBonds_;
  bool withChirality_;
  std::vector<char> visited_;
  std::vector<std::uint64_t> found_;
};

// Returns whether the molecule has atoms that share a class.
bool ExpectSameWalksWithinClasses(const std::string& smiles, bool withChirality) {
  QXGraphMol mol = FromSmiles(smiles);
  const std::vector<unsigned> classes = Classes(mol, true, withChirality);
  if (NumClasses(classes) == mol.NumAtoms()) return false;
  QXPerceiveChiral(mol);
  Walks walks(mol, 5, true);
  std::map<unsigned, std::vector<std::uint64_t>> ofClass;
  for (unsigned i = 0; i < mol.NumAtoms(); ++i) {
    auto found = walks.From(i);
    const auto [known, isNew] = ofClass.try_emplace(classes[i], found);
    EXPECT_TRUE(isNew || known->second == found) << smiles << " atom " << i;
  }
  return true;
}

TEST(Symmetry, AtomsOfOneProvenClassStartTheSameWalks) {
  unsigned numSymmetric = 0;
  for (const std::string& smiles : regular) {
    numSymmetric += ExpectSameWalksWithinClasses(smiles, false);
    ExpectSameWalksWithinClasses(smiles, true);
  }
  // All but the cage of 60 atoms, whose automorphisms the bounded search does not find.
  EXPECT_EQ(numSymmetric, regular.size() - 1);

  for (const char* file : {"drug_5k.smi", "odd.smi", "natural_macrocycles.smi"}) {
    for (const std::string& smiles : SharedLines(file)) {
      if (smiles.size() >= 300) continue;
      ExpectSameWalksWithinClasses(smiles, false);
      ExpectSameWalksWithinClasses(smiles, true);
    }
  }
}

// The orbits by trying every renumbering that keeps bonds: only for small molecules.
class Orbits {
 public:
  explicit Orbits(const QXMolBase& mol) : mol_(mol), image_(mol.NumAtoms(), unset_), used_(mol.NumAtoms()) {}
  bool AreEquivalent(unsigned a, unsigned b) {
    std::ranges::fill(image_, unset_);
    std::ranges::fill(used_, 0);
    return Assign(a, b) && Extend(0);
  }

 private:
  bool Assign(unsigned a, unsigned b) {
    if (AtomKey(mol_.Atoms()[a], false) != AtomKey(mol_.Atoms()[b], false)) return false;
    if (mol_.Neighbors(a).size() != mol_.Neighbors(b).size()) return false;
    for (const QXNeighbor& next : mol_.Neighbors(a)) {
      if (image_[next.atom] == unset_) continue;
      const QXBondBase* bond = mol_.GetBond(b, image_[next.atom]);
      if (!bond || BondKey(*bond, b, false) != BondKey(mol_.Bonds()[next.bond], a, false)) return false;
    }
    image_[a] = b;
    used_[b] = 1;
    return true;
  }
  bool Extend(unsigned from) {
    unsigned atom = mol_.NumAtoms();  // one beside those assigned, if there is one
    for (unsigned i = 0; i < mol_.NumAtoms(); ++i) {
      if (image_[i] != unset_) continue;
      if (atom == mol_.NumAtoms()) atom = i;
      if (std::ranges::any_of(mol_.Neighbors(i), [&](const auto& n) { return image_[n.atom] != unset_; })) {
        atom = i;
        break;
      }
    }
    if (atom == mol_.NumAtoms()) return true;
    for (unsigned b = 0; b < mol_.NumAtoms(); ++b) {
      if (used_[b] || !Assign(atom, b)) continue;
      if (Extend(from + 1)) return true;
      image_[atom] = unset_;
      used_[b] = 0;
    }
    return false;
  }

  static constexpr unsigned unset_ = ~0U;
  const QXMolBase& mol_;
  std::vector<unsigned> image_;
  std::vector<char> used_;
};

// Soundness against all automorphisms, and how much of the symmetry is found.
TEST(Symmetry, ProvenClassesAreOrbitsOfRegularMolecules) {
  for (const std::string& smiles : regular) {
    const QXGraphMol mol = FromSmiles(smiles);
    if (mol.NumAtoms() > 24) continue;
    const auto proven = Classes(mol, true);
    Orbits orbits(mol);
    for (unsigned a = 0; a < mol.NumAtoms(); ++a) {
      for (unsigned b = 0; b < a; ++b) {
        EXPECT_EQ(proven[a] == proven[b], orbits.AreEquivalent(a, b)) << smiles << " " << a << " " << b;
      }
    }
  }
}

TEST(Symmetry, LookingAlikeIsNotEnoughForAProvenClass) {
  const QXGraphMol mol = FromSmiles("C1CC1.C1CCCCC1");
  EXPECT_EQ(NumClasses(Classes(mol, false)), 1u);
  EXPECT_EQ(Classes(mol, true), (std::vector<unsigned>{1, 1, 1, 2, 2, 2, 2, 2, 2}));
}

TEST(Symmetry, TableOfClasses) {
  const std::vector<std::pair<const char*, std::vector<unsigned>>> cases = {
      {"CC", {1, 1}},
      {"CCO", {1, 2, 3}},
      {"Cc1ccccc1", {1, 2, 3, 4, 5, 4, 3}},
      {"CC(C)(C)C", {1, 2, 1, 1, 1}},
      {"FC(F)(F)Cl", {1, 2, 1, 1, 3}},
      {"[13CH3]C", {1, 2}},
      {"[CH3:1]C", {1, 1}},
      {"O=C([O-])C", {1, 2, 3, 4}},
      {"CCN.CCN", {1, 2, 3, 1, 2, 3}},
      {"C1=CC=CC=CC=C1", {1, 1, 1, 1, 1, 1, 1, 1}}};
  for (const auto& [smiles, classes] : cases) {
    EXPECT_EQ(Classes(FromSmiles(smiles), true), classes) << smiles;
    EXPECT_EQ(Classes(FromSmiles(smiles), false), classes) << smiles;
  }
}

// Splits classes by the sorted classes of the neighbours until nothing changes.
std::vector<unsigned> RefineStepByStep(const QXMolBase& mol) {
  std::vector<unsigned> classes(mol.NumAtoms());
  for (std::size_t known = 0;;) {
    std::map<std::vector<std::uint64_t>, unsigned> numbers;
    std::vector<unsigned> finer;
    for (const QXAtomBase& atom : mol.Atoms()) {
      std::vector<std::uint64_t> key;
      for (const QXNeighbor& next : atom.GetNeighbors()) {
        const std::uint64_t bond = BondKey(mol.Bonds()[next.bond], atom.GetIdx(), false);
        key.push_back(bond << 32 | classes[next.atom]);
      }
      std::ranges::sort(key);
      key.insert(key.end(), {AtomKey(atom, false), classes[atom.GetIdx()]});
      finer.push_back(numbers.try_emplace(key, static_cast<unsigned>(numbers.size()) + 1).first->second);
    }
    classes = finer;
    if (numbers.size() == known) return classes;
    known = numbers.size();
  }
}

// Differences that must travel far, beyond the rounds after which the refinement changes its method.
TEST(Symmetry, LongStructuresAreRefinedToTheEnd) {
  const std::string chain(150, 'C');
  const std::vector<std::string> structures = {chain,
                                               "O" + chain,
                                               "C1" + chain + "1",
                                               "F" + chain + "=" + chain + "F." + chain + "N",
                                               chain + "(" + chain + ")(" + chain + ")" + chain,
                                               "C1" + chain + "C1C(C)" + chain + "C(C)" + chain,
                                               chain + "->[Fe]<-" + chain,
                                               chain + "[Fe]->" + chain};
  for (const std::string& smiles : structures) {
    const QXGraphMol mol = FromSmiles(smiles);
    EXPECT_EQ(Classes(mol, false), RefineStepByStep(mol)) << smiles;
  }
}

TEST(Symmetry, HalvesOfAGiantChainAreJoined) {
  constexpr unsigned size = 100000;
  QXGraphMol mol = FromSmiles(std::string(size, 'C'));
  QXPerceiveSymmetry(mol, true, true);
  unsigned numWrong = 0;
  for (unsigned i = 0; i < size; ++i)
    numWrong += mol.GetAtom(i)->GetSymmetryClass() != std::min(i, size - 1 - i) + 1;
  EXPECT_EQ(numWrong, 0u);
}

// Flags set by hand can hide bond orders from which labels are computed.
TEST(Symmetry, AtomsOfDifferentValenceAreNotJoined) {
  QXGraphMol mol;
  for (unsigned i = 0; i < 24; ++i) mol.NewAtom(6);
  for (unsigned i = 0; i < 23; ++i) mol.NewBond(i, i + 1, i == 0 ? 2 : 1);
  mol.GetBond(0u)->SetAromatic(true);
  mol.GetBond(22u)->SetAromatic(true);
  EXPECT_EQ(NumClasses(Classes(mol, true)), 24u);
  for (unsigned i = 0; i < 24; ++i) mol.GetAtom(i)->SetHyb(3);
  EXPECT_EQ(NumClasses(Classes(mol, true)), 24u);
  mol.GetBond(0u)->SetOrder(1);
  EXPECT_EQ(NumClasses(Classes(mol, true)), 12u);
}

TEST(Symmetry, ChiralityFlagsTellAtomsApartWhenAsked) {
  QXGraphMol mol = FromSmiles("CCCCC");
  mol.GetAtom(0)->SetChiral(true);
  EXPECT_EQ(NumClasses(Classes(mol, false, false)), 3u);
  EXPECT_EQ(NumClasses(Classes(mol, false, true)), 5u);
  // A proof never joins atoms with different labels.
  EXPECT_EQ(NumClasses(Classes(mol, true, false)), 5u);
}

TEST(Symmetry, ClassSizesDoNotDependOnTheOrderOfTheAtoms) {
  std::vector<std::string> smiles = regular;
  const auto lines = SharedLines("drug_5k.smi");
  smiles.insert(smiles.end(), lines.begin(), lines.begin() + std::min<std::size_t>(lines.size(), 500));
  std::mt19937 random(1);
  for (const std::string& text : smiles) {
    const QXGraphMol mol = FromSmiles(text);
    std::vector<unsigned> order;
    QXGraphMol shuffled = Shuffled(mol, random, order);
    QXAssignAromaticFlags(shuffled);
    const auto a = Classes(mol, false);
    const auto b = Classes(shuffled, false);
    std::map<unsigned, unsigned> partner;
    for (unsigned i = 0; i < order.size(); ++i) {
      const auto [known, isNew] = partner.try_emplace(a[i], b[order[i]]);
      EXPECT_EQ(known->second, b[order[i]]) << text;
    }
    EXPECT_EQ(NumClasses(a), NumClasses(b)) << text;
  }
}

}  // namespace
}  // namespace QXChem
