#include <gtest/gtest.h>

#include <map>
#include <random>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBase;
using QXChem::QXBondBase;
using QXChem::QXGraphMol;
using namespace QXFPAtomType;

QXGraphMol ReadSmiles(const std::string& smiles) {
  QXGraphMol mol;
  EXPECT_TRUE(QXChem::QXParseSmiles(mol, smiles)) << smiles;
  EXPECT_TRUE(QXPrepareForFingerprinting(mol, 102)) << smiles;
  return mol;
}

std::vector<unsigned> AtomLabels(QXGraphMol mol, unsigned atype) {
  std::vector<unsigned> atomLabels, bondLabels;
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, atype, 0);
  return atomLabels;
}

std::vector<unsigned> BondLabels(QXGraphMol mol, unsigned btype) {
  std::vector<unsigned> atomLabels, bondLabels;
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, 0, btype);
  return bondLabels;
}

// The label, rule by rule.
unsigned NaiveElementPrime(unsigned z) {
  static const std::vector<unsigned> primes = [] {
    const std::map<unsigned, unsigned> common = {{6, 179},  {7, 283},  {8, 947}, {9, 419},
                                                 {15, 547}, {16, 811}, {17, 661}};
    std::vector<unsigned> all;
    for (unsigned prime = 181; all.size() <= 132; ++prime) {
      bool left = true;
      for (unsigned d = 2; d < prime; ++d) left &= prime % d != 0;
      for (const auto& [number, taken] : common) left &= prime != taken;
      if (left) all.push_back(prime);
    }
    for (const auto& [number, prime] : common) all[number] = prime;
    return all;
  }();
  return primes[z];
}

unsigned NaiveBase(const QXAtomBase& atom, unsigned atype) {
  unsigned z = atom.GetAtomicNum();
  if ((atype & EqHalo) && (z == 17 || z == 35 || z == 53)) {
    z = 9;
    if (!(atype & (EqArom | EqHBAcc | EqHBDon))) return 419;
  }
  if ((atype & EqArom) && atom.IsAromatic()) return 179;
  if (atype & (EqHBAcc | EqHBDon)) {
    if (z == 6) return 179;
    const bool acceptor = (atype & EqHBAcc) && IsHydrogenBondAcceptor(&atom);
    if ((atype & EqHBDon) && IsHydrogenBondDonor(&atom)) return acceptor ? 19 : 6859;
    if (acceptor) return 361;
  }
  return NaiveElementPrime(z);
}

unsigned NaivePower(unsigned base, unsigned exponent) {
  unsigned result = 1;
  while (exponent-- > 0) result *= base;
  return result;
}

unsigned NaiveAtomLabel(const QXAtomBase& atom, unsigned atype) {
  unsigned label = atype & AtmNum ? NaiveBase(atom, atype) : 1;
  if (atype & FCharge) {
    const int q = atom.GetFormalCharge();
    label *= q < -4 || q > 4 ? 512 : q >= 0 ? NaivePower(4, q) : NaivePower(2, -2 * q - 1);
  }
  if (atype & HvyDeg) label *= atom.GetHvyDegree() <= 5 ? NaivePower(3, atom.GetHvyDegree()) : 729;
  if (atype & Hyb) label *= atom.GetHyb() <= 5 ? NaivePower(5, atom.GetHyb()) : 15625;
  if ((atype & InRing) && atom.IsInRing()) label *= 7;
  if ((atype & Arom) && atom.IsAromatic()) label *= 11;
  if ((atype & Chiral) && atom.IsChiral()) label *= 13;
  if (atype & HCount) label *= atom.GetTotalHCount() <= 3 ? NaivePower(17, atom.GetTotalHCount()) : 83521;
  return label;
}

unsigned NaiveBondLabel(const QXBondBase& bond, unsigned btype) {
  constexpr unsigned orders[] = {127, 131, 137, 139, 149, 151, 157, 163, 167, 173};
  unsigned label = 1;
  if (btype & QXFPBondType::Order) label = bond.IsAromatic() ? 151 : orders[bond.GetOrder()];
  if ((btype & QXFPBondType::InRing) && bond.IsInRing()) label *= 73;
  if ((btype & QXFPBondType::Chiral) && bond.IsChiral()) label *= 79;
  return label;
}

// A molecule that is chemical nonsense and has every value of every property.
QXGraphMol RandomMolecule(std::mt19937& random) {
  QXGraphMol mol;
  const unsigned numAtoms = 40;
  for (unsigned i = 0; i < numAtoms; ++i) mol.NewAtom(random() % 3 ? 5 + random() % 13 : random() % 133);
  for (unsigned i = 0; i < 60; ++i) {
    const unsigned a = random() % 8 ? random() % numAtoms : 0, b = random() % numAtoms;
    if (a != b && !mol.GetBond(a, b)) mol.NewBond(a, b, random() % 10);
  }
  for (unsigned i = 0; i < numAtoms; ++i) {
    mol.GetAtom(i)->SetFormalCharge(static_cast<int>(random() % 13) - 6);
    mol.GetAtom(i)->SetImplicitHCount(random() % 6);
  }
  for (unsigned i = 0; i < numAtoms; ++i) mol.GetAtom(i)->SetInRing(random() % 2);
  for (unsigned i = 0; i < mol.NumBonds(); ++i) mol.GetBond(i)->SetInRing(random() % 2);
  for (unsigned i = 0; i < numAtoms; ++i) mol.GetAtom(i)->SetAromatic(random() % 4 == 0);
  for (unsigned i = 0; i < mol.NumBonds(); ++i) mol.GetBond(i)->SetAromatic(random() % 4 == 0);
  for (unsigned i = 0; i < numAtoms; ++i) mol.GetAtom(i)->SetHyb(random() % 6);
  for (unsigned i = 0; i < numAtoms; ++i) mol.GetAtom(i)->SetChiral(random() % 2);
  for (unsigned i = 0; i < mol.NumBonds(); ++i) mol.GetBond(i)->SetChiral(random() % 2);
  return mol;
}

TEST(AtomLabels, AgreeWithTheRulesForEveryMask) {
  std::mt19937 random(7);
  std::vector<unsigned> atomLabels, bondLabels;
  for (unsigned mask = 0; mask < 4096; ++mask) {
    const unsigned atype = (mask & 2047) | (mask & 2048 ? HCount : 0);
    const unsigned btype = mask % 8;
    QXGraphMol mol = RandomMolecule(random);
    QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, atype, btype);
    ASSERT_EQ(atomLabels.size(), mol.NumAtoms());
    ASSERT_EQ(bondLabels.size(), mol.NumBonds());
    for (const QXAtomBase& atom : mol.Atoms()) {
      ASSERT_EQ(atomLabels[atom.GetIdx()], NaiveAtomLabel(atom, atype))
          << atype << ' ' << atom.GetAtomicNum();
    }
    for (const QXBondBase& bond : mol.Bonds())
      ASSERT_EQ(bondLabels[bond.GetIdx()], NaiveBondLabel(bond, btype));
  }
}

TEST(AtomLabels, EveryElementHasItsPrime) {
  QXGraphMol mol;
  for (unsigned z = 0; z <= 132; ++z) mol.NewAtom(z);
  const std::vector<unsigned> labels = AtomLabels(mol, AtmNum);
  for (unsigned z = 0; z <= 132; ++z) EXPECT_EQ(labels[z], NaiveElementPrime(z)) << z;
  EXPECT_EQ(labels[0], 181u);
  EXPECT_EQ(labels[1], 191u);
  EXPECT_EQ(labels[132], 1069u);
}

TEST(AtomLabels, KnownValuesOfRealMolecules) {
  const unsigned hydrogenBonds = AtmNum | EqHBAcc | EqHBDon;
  const struct {
    const char* smiles;
    unsigned atype;
    std::vector<unsigned> labels;
  } cases[] = {
      {"CCC", AtmNum | HvyDeg | Hyb, {179 * 3 * 125, 201375, 179 * 3 * 125}},
      {"FCl", AtmNum | EqHalo, {419, 419}},
      {"BrI", AtmNum | EqHalo, {419, 419}},
      {"ClBr", AtmNum | EqHalo | EqArom | EqHBAcc, {419, 419}},
      {"ClBr", AtmNum, {661, 397}},
      {"CO", hydrogenBonds, {179, 19}},                           // a hydroxyl is both
      {"CC=O", hydrogenBonds, {179, 179, 361}},                   // acceptor only
      {"c1cc[nH]c1", hydrogenBonds, {179, 179, 179, 6859, 179}},  // donor only
      {"CO", AtmNum | EqHBAcc, {179, 361}},
      {"CO", AtmNum | EqHBDon, {179, 6859}},
      {"c1ccncc1", AtmNum | EqArom | EqHBAcc, std::vector<unsigned>(6, 179)},
      {"C[N+](C)(C)C", FCharge, {1, 4, 1, 1, 1}},
      {"C[O-]", FCharge | HCount, {4913, 2}},
      {"C", HCount, {83521}},
      {"N[C@H](C)O", QXFPAtomType::Chiral, {1, 13, 1, 1}},
      {"C", 0, {1}},
  };
  for (const auto& c : cases) EXPECT_EQ(AtomLabels(ReadSmiles(c.smiles), c.atype), c.labels) << c.smiles;
}

TEST(AtomLabels, KnownValuesOfBonds) {
  using namespace QXFPBondType;
  EXPECT_EQ(BondLabels(ReadSmiles("c1ccccc1"), Order), std::vector<unsigned>(6, 151));
  EXPECT_EQ(BondLabels(ReadSmiles("C1=CC1"), Order | QXFPBondType::InRing),
            (std::vector<unsigned>{10001, 131 * 73, 131 * 73}));
  EXPECT_EQ(BondLabels(ReadSmiles("CC=CC"), Order | QXFPBondType::Chiral),
            (std::vector<unsigned>{131, 137 * 79, 131}));
  EXPECT_EQ(BondLabels(ReadSmiles("CC#N"), 0), (std::vector<unsigned>{1, 1}));
}

TEST(AtomLabels, PerceiveWhatWasForgotten) {
  QXGraphMol mol = ReadSmiles("CC=O");
  mol.GetAtom(0)->SetHyb(1);
  mol.ForgetPerceived(QXChem::QXPerceived::Hybridization);
  EXPECT_EQ(AtomLabels(mol, Hyb), (std::vector<unsigned>{125, 25, 25}));
}

TEST(AtomLabels, ProductsWrapAt32Bits) {
  QXGraphMol mol;
  mol.NewAtom(8);
  mol.GetAtom(0)->SetFormalCharge(9);
  mol.GetAtom(0)->SetImplicitHCount(9);
  constexpr std::uint64_t exact = 947ull * 512 * 83521;
  static_assert(exact > 0xFFFFFFFF);
  EXPECT_EQ(AtomLabels(mol, AtmNum | FCharge | HCount).at(0), static_cast<unsigned>(exact));
}

// Labels as text: what the text tells apart, the integer tells apart, and the other way round where the
// expression covers the whole mask.
TEST(AtomLabels, TextsTellTheSameApartAsIntegers) {
  std::mt19937 random(11);
  std::vector<unsigned> atoms, bonds;
  std::vector<std::string> atomTexts, bondTexts;
  for (unsigned btype = 0; btype < 8; ++btype) {
    QXGraphMol mol = RandomMolecule(random);
    const unsigned atype = random() % 2 ? AtmNum | Arom | InRing : 0;
    QXGetFingerprintAtomTypes(atoms, bonds, mol, atype, btype);
    QXGetFingerprintAtomTypes(atomTexts, bondTexts, mol, atype, btype);
    ASSERT_EQ(atomTexts.size(), mol.NumAtoms());
    ASSERT_EQ(bondTexts.size(), mol.NumBonds());
    for (unsigned i = 0; i < atoms.size(); ++i) {
      for (unsigned j = 0; j < i; ++j) {
        EXPECT_EQ(atoms[i] == atoms[j], atomTexts[i] == atomTexts[j]) << atomTexts[i] << ' ' << atomTexts[j];
      }
    }
    for (unsigned i = 0; i < bonds.size(); ++i) {
      EXPECT_FALSE(bondTexts[i].empty());
      EXPECT_EQ(bondTexts[i].find_first_of(" \t\n"), std::string::npos);
      for (unsigned j = 0; j < i; ++j) {
        EXPECT_EQ(bonds[i] == bonds[j], bondTexts[i] == bondTexts[j]) << bondTexts[i] << ' ' << bondTexts[j];
      }
    }
  }
}

}  // namespace
}  // namespace QXFingrix
