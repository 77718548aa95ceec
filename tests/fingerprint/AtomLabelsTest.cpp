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

using Labels = std::vector<unsigned>;

/// The labels of the atoms and of the bonds.
std::pair<Labels, Labels> LabelsOf(QXGraphMol mol, unsigned atype, unsigned btype) {
  std::pair<Labels, Labels> labels;
  QXGetFingerprintAtomTypes(labels.first, labels.second, mol, atype, btype);
  return labels;
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
  const auto setAll = [&mol](auto set) {
    for (unsigned i = 0; i < mol.NumAtoms(); ++i) set(*mol.GetAtom(i));
    for (unsigned i = 0; i < mol.NumBonds(); ++i) set(*mol.GetBond(i));
  };
  setAll([&](auto& part) { part.SetInRing(random() % 2); });
  setAll([&](auto& part) { part.SetAromatic(random() % 4 == 0); });
  for (unsigned i = 0; i < numAtoms; ++i) mol.GetAtom(i)->SetHyb(random() % 6);
  setAll([&](auto& part) { part.SetChiral(random() % 2); });
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

// What depends on perception, and anchors for the rules above.
TEST(AtomLabels, KnownValuesOfRealMolecules) {
  const unsigned hydrogenBonds = AtmNum | EqHBAcc | EqHBDon;
  const struct {
    const char* smiles;
    unsigned atype;
    Labels labels;
  } atomCases[] = {
      {"CCC", AtmNum | HvyDeg | Hyb, {179 * 3 * 125, 201375, 179 * 3 * 125}},
      {"ClBr", AtmNum | EqHalo | EqArom | EqHBAcc, {419, 419}},
      {"ClBr", AtmNum, {661, 397}},
      {"CO", hydrogenBonds, {179, 19}},                           // a hydroxyl is both
      {"CC=O", hydrogenBonds, {179, 179, 361}},                   // acceptor only
      {"c1cc[nH]c1", hydrogenBonds, {179, 179, 179, 6859, 179}},  // donor only
      {"C[N+](C)(C)C", FCharge, {1, 4, 1, 1, 1}},
      {"C[O-]", FCharge | HCount, {4913, 2}},
      {"N[C@H](C)O", QXFPAtomType::Chiral, {1, 13, 1, 1}},
  };
  for (const auto& c : atomCases) EXPECT_EQ(LabelsOf(ReadSmiles(c.smiles), c.atype, 0).first, c.labels);
  using namespace QXFPBondType;
  const struct {
    const char* smiles;
    unsigned btype;
    Labels labels;
  } bondCases[] = {
      {"c1ccccc1", Order, Labels(6, 151)},
      {"C1=CC1", Order | QXFPBondType::InRing, {10001, 131 * 73, 131 * 73}},
      {"CC=CC", Order | QXFPBondType::Chiral, {131, 137 * 79, 131}},
      {"CC#N", 0, {1, 1}},
  };
  for (const auto& c : bondCases) EXPECT_EQ(LabelsOf(ReadSmiles(c.smiles), 0, c.btype).second, c.labels);
  QXGraphMol forgotten = ReadSmiles("CC=O");
  forgotten.GetAtom(0)->SetHyb(1);
  forgotten.ForgetPerceived(QXChem::QXPerceived::Hybridization);
  EXPECT_EQ(LabelsOf(forgotten, Hyb, 0).first, (Labels{125, 25, 25}));
}

// Labels as text: what the text tells apart, the integer tells apart, and the other way round where the
// expression covers the whole mask.
TEST(AtomLabels, TextsTellTheSameApartAsIntegers) {
  std::mt19937 random(11);
  const auto expectSamePartition = [](const Labels& numbers, const std::vector<std::string>& texts) {
    ASSERT_EQ(texts.size(), numbers.size());
    for (unsigned i = 0; i < texts.size(); ++i) {
      EXPECT_FALSE(texts[i].empty());
      EXPECT_EQ(texts[i].find_first_of(" \t\n"), std::string::npos);
      for (unsigned j = 0; j < i; ++j) {
        EXPECT_EQ(numbers[i] == numbers[j], texts[i] == texts[j]) << texts[i] << ' ' << texts[j];
      }
    }
  };
  std::vector<std::string> atomTexts, bondTexts;
  for (unsigned btype = 0; btype < 8; ++btype) {
    QXGraphMol mol = RandomMolecule(random);
    const unsigned atype = random() % 2 ? AtmNum | Arom | InRing : 0;
    QXGetFingerprintAtomTypes(atomTexts, bondTexts, mol, atype, btype);
    const auto [atoms, bonds] = LabelsOf(mol, atype, btype);
    expectSamePartition(atoms, atomTexts);
    expectSamePartition(bonds, bondTexts);
  }
}

}  // namespace
}  // namespace QXFingrix
