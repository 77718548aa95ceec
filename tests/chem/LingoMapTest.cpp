#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <regex>

#include "QXChem/QXLingo.h"
#include "Reports.h"
#include "chem/SharedMolecules.h"
#include "chem/Shuffled.h"

namespace QXChem {
namespace {

std::string TextOf(const QXMolBase& mol) {
  std::string text = "old";
  EXPECT_TRUE(QXLingoMap().CreateString(text, mol));
  return text;
}

TEST(LingoMap, TextsOfSmallMolecules) {
  const struct {
    const char* smiles;
    const char* text;
  } cases[] = {
      {"OCC", "CCO"},
      // rings
      {"C1CC1", "C0CC0"},
      {"C1=CC=CC=C1", "c0ccccc0"},
      {"C%12CC%12", "C0CC0"},
      {"C1CC12CC2", "C0CC00CC0"},
      // halogens, and what only looks like them
      {"ClC", "CL"},
      {"ClC(Br)(F)I", "FC(L)(R)I"},
      {"[Cl-].[Br-]", "[R-].[L-]"},
      {"Cl(=O)(=O)(=O)[O-]", "[O-][L+3]([O-])([O-])[O-]"},
      {"[Cu+2]", "[Cu+2]"},
      {"B", "B"},
      {"C[Cr]", "C[Cr]"},
      // brackets
      {"[O-]C(=O)C", "CC(=O)[O-]"},
      {"[Ca+2]", "[Ca+2]"},
      {"[NH4+]", "[NH4+]"},
      {"c1cc[nH]c1", "c0cc[nH]c0"},
      {"C[NH2+]C1CC1", "C[NH2+]C0CC0"},
      {"*C", "*C"},
      // labels
      {"[13CH4]", "C"},
      {"[235U]", "[U]"},
      {"[CH3:1][OH:2]", "CO"},
      {"[2H]OC([2H])([2H])[2H]", "CO"},
      {"[H:7]O[H]", "O"},
      {"[2H][2H]", "[H][H]"},
      {"[2H+]", "[H+]"},
      // stereo
      {"C[C@H](F)O", "CC(O)F"},
      {"F/C=C/F", "FC=CF"},
  };
  for (const auto& c : cases) EXPECT_EQ(TextOf(FromSmiles(c.smiles)), c.text) << c.smiles;
  EXPECT_EQ(TextOf(QXGraphMol()), "");
}

// Every atom bonded to every other: more rings are open at once than two digits can tell apart.
QXGraphMol CompleteGraph(unsigned numAtoms) {
  QXGraphMol mol;
  for (unsigned i = 0; i < numAtoms; ++i) {
    mol.NewAtom(26);
    for (unsigned j = 0; j < i; ++j) mol.NewBond(j, i, 1);
  }
  return mol;
}

TEST(LingoMap, EveryRingClosureIsOneZero) {
  const QXGraphMol cluster = CompleteGraph(24);
  const std::string smiles = QXCreateSmiles(cluster);
  ASSERT_NE(smiles.find("%10"), std::string::npos);
  ASSERT_NE(smiles.find("%(100)"), std::string::npos);
  EXPECT_EQ(TextOf(cluster), std::regex_replace(smiles, std::regex("%[(][0-9]+[)]|%[0-9][0-9]|[0-9]"), "0"));
}

// Hydrogens as atoms and labels on some atoms.
void Decorate(QXGraphMol& mol, std::mt19937& random) {
  const unsigned numAtoms = mol.NumAtoms();
  for (unsigned i = 0; i < numAtoms; ++i) {
    const unsigned dice = random() % 4;
    if (dice == 0) mol.GetAtom(i)->SetIsotope(1 + random() % 200);
    if (dice == 1) mol.GetAtom(i)->SetMapIdx(1 + random() % 1000);
    const unsigned hydrogens = mol.GetAtom(i)->GetImplicitHCount();
    if (dice != 2 || hydrogens == 0) continue;
    mol.GetAtom(i)->SetImplicitHCount(hydrogens - 1);
    QXAtomBase* hydrogen = mol.NewAtom(1);
    if (random() % 2) hydrogen->SetIsotope(2);
    mol.NewBond(i, hydrogen->GetIdx(), 1);
  }
}

TEST(LingoMap, OrderLabelsAndExplicitHydrogensDoNotMatter) {
  std::mt19937 random(1);
  std::ifstream file(QX_SOURCE_DIR "/data/molecules.smi");
  std::vector<unsigned> order;
  unsigned numCompared = 0;
  for (std::string line; numCompared < 1000 && std::getline(file, line); ++numCompared) {
    const QXGraphMol mol = FromSmiles(line);
    QXGraphMol other = mol;
    Decorate(other, random);
    EXPECT_EQ(TextOf(Shuffled(other, random, order)), TextOf(mol)) << line;
    EXPECT_EQ(TextOf(other), TextOf(mol)) << line;
  }
  EXPECT_EQ(numCompared, 1000u);
}

TEST(LingoMap, WhatCannotBeWrittenHasNoTextAndNoReport) {
  QXGraphMol invalid;
  invalid.Invalidate();
  QXGraphMol carbon5;
  for (unsigned i = 0; i < 6; ++i) carbon5.NewAtom(6);
  for (unsigned i = 1; i < 6; ++i) carbon5.NewBond(0, i, 1);
  for (const QXGraphMol& mol : {invalid, carbon5, FromSmiles(std::string(QXLingoMap::maxAtoms + 1, 'C'))}) {
    std::string text = "old";
    EXPECT_EQ(QXTest::ReportsOf([&] { EXPECT_FALSE(QXLingoMap().CreateString(text, mol)); }),
              QXTest::silence);
    EXPECT_EQ(text, "");
  }
}

}  // namespace
}  // namespace QXChem
