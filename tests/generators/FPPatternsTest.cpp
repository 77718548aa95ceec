// Patterns, coverage and overlap: what explains a fingerprint.

#include "QXFingrix/QXFPPatterns.h"

#include <gtest/gtest.h>

#include <map>

#include "Molecules.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMACCSFP.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using QXChem::QXAtomBondSet;
using QXChem::QXGraphMol;
using Indices = std::vector<unsigned>;

const QXFPTypeBase* const maccsType = QXGetMACCS166FPType(8224);

Indices AtomsOf(const QXAtomBondSet& set) {
  return {set.Atoms().begin(), set.Atoms().end()};
}

std::map<unsigned, std::vector<Indices>> PatternAtoms(const QXGraphMol& mol) {
  std::map<unsigned, std::vector<Indices>> atoms;
  for (const QXFPPattern& pattern : QXGetFPPatterns(mol, maccsType)) {
    for (const QXAtomBondSet& match : pattern.matches) atoms[pattern.bit + 1].push_back(AtomsOf(match));
  }
  return atoms;
}

TEST(FPPatterns, NameTheAtomsOfTheMoleculeAsDrawn) {
  // hydrogens before, between and after the atoms that stay
  const QXGraphMol mol = test::ReadSmiles("[H]OC([H])([H])C([H])([2H])c1ccccc1.[Na+]");
  auto atoms = PatternAtoms(mol);
  const auto methanol = std::vector<Indices>{{1}};
  EXPECT_EQ(atoms[164], methanol) << "oxygen";
  EXPECT_EQ(atoms[139], methanol) << "hydroxyl";
  EXPECT_EQ(atoms[1], (std::vector<Indices>{{7}}));
  EXPECT_EQ(atoms[35], (std::vector<Indices>{{7}, {14}})) << "kept hydrogen, sodium";
  EXPECT_EQ(atoms[162], (std::vector<Indices>{{8, 9, 10, 11, 12, 13}}));
  EXPECT_EQ(atoms[166].size(), 2u);
  EXPECT_FALSE(atoms.contains(146)) << "one oxygen only";
  for (const QXFPPattern& pattern : QXGetFPPatterns(mol, maccsType)) {
    for (const QXAtomBondSet& match : pattern.matches) {
      for (const unsigned bond : match.Bonds()) {
        ASSERT_LT(bond, mol.NumBonds());
        EXPECT_TRUE(match.HasAtom(mol.GetBond(bond)->GetBgnIdx())) << pattern.text;
        EXPECT_TRUE(match.HasAtom(mol.GetBond(bond)->GetEndIdx())) << pattern.text;
      }
    }
  }
}

TEST(FPPatterns, AreThoseOfTheBitsThatAreSet) {
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 200)) {
    const QXGraphMol mol = test::ReadSmiles(line.smiles);
    QXFingerPrint fp;
    ASSERT_TRUE(QXMakeMACCS166FP(fp, mol));
    int bit = fp.FirstBit();
    for (const QXFPPattern& pattern : QXGetFPPatterns(mol, maccsType)) {
      EXPECT_EQ(static_cast<int>(pattern.bit), bit) << line.smiles;
      EXPECT_TRUE(pattern.matches) << pattern.text;
      bit = fp.NextBit(bit);
    }
    EXPECT_EQ(bit, -1) << line.smiles;
  }
}

TEST(FPPatterns, PartsOfAPatternAreShownOneByOne) {
  auto atoms = PatternAtoms(test::ReadSmiles("OCCOCCO"));
  EXPECT_EQ(atoms[146], (std::vector<Indices>{{0}, {3}, {6}}));
  EXPECT_EQ(atoms[131], (std::vector<Indices>{{0}, {6}}));
}

TEST(FPCoverage, HoldsEverySetOnce) {
  const QXGraphMol mol = test::ReadSmiles("OCCOCO");
  for (const bool unique : {false, true}) {
    std::vector<QXAtomBondSet> sets;
    for (const QXAtomBondSet& set : QXGetFPCoverage(mol, maccsType, unique)) {
      for (const QXAtomBondSet& other : sets) EXPECT_FALSE(set == other);
      sets.push_back(set);
    }
    // Of the oxygens as an element; the first and last are found by [#8H] too.
    ASSERT_GT(sets.size(), 10u);
    EXPECT_EQ(AtomsOf(sets[0]), Indices{0});
    EXPECT_EQ(AtomsOf(sets[1]) == Indices{3}, !unique);
    std::map<Indices, unsigned> count;
    for (const QXAtomBondSet& set : sets) ++count[AtomsOf(set)];
    EXPECT_EQ(count[Indices{5}], 1u);
    EXPECT_EQ(count[Indices{3}], unique ? 0u : 1u);
  }
}

TEST(FPCoverage, AnIteratorOutlivesTheMoleculeAndGoesBack) {
  QXSystem::QXIter<QXAtomBondSet> sets;
  {
    const QXGraphMol mol = test::ReadSmiles("CC(=O)Oc1ccccc1C(=O)O");
    sets = QXGetFPCoverage(mol, maccsType, false);
  }
  std::vector<Indices> first, second;
  const auto copy = sets;
  for (; sets; ++sets) first.push_back(AtomsOf(*sets));
  sets.ToFirst();
  for (; sets; ++sets) second.push_back(AtomsOf(*sets));
  EXPECT_EQ(first, second);
  second.clear();
  for (const QXAtomBondSet& set : copy) second.push_back(AtomsOf(set));
  EXPECT_EQ(first, second);
}

TEST(FPOverlap, PairsTheMatchesOfEveryPattern) {
  const QXGraphMol ethanol = test::ReadSmiles("CCO");
  const QXGraphMol propanediol = test::ReadSmiles("OCC([H])O");
  std::map<std::pair<Indices, Indices>, unsigned> pairs;
  for (const QXFPMatch& match : QXGetFPOverlap(ethanol, propanediol, maccsType)) {
    EXPECT_EQ(match.a.NumAtoms(), match.b.NumAtoms());
    EXPECT_EQ(match.a.NumBonds(), match.b.NumBonds());
    ++pairs[{AtomsOf(match.a), AtomsOf(match.b)}];
  }
  // [#8] as an element and [#8H]
  EXPECT_EQ((pairs[{{2}, {0}}]), 2u);
  EXPECT_EQ((pairs[{{2}, {4}}]), 2u);
  // [#8]-[#6], in the order of the pattern
  EXPECT_GE((pairs[{{2, 1}, {4, 2}}]), 1u);
  EXPECT_FALSE(QXGetFPOverlap(test::ReadSmiles("[He]"), test::ReadSmiles("[Na+]"), maccsType));
  EXPECT_TRUE(QXGetFPOverlap(test::ReadSmiles("[Li+]"), test::ReadSmiles("[Na+]"), maccsType)) << "one key";
}

// 60 oxygens: half a million ways to choose four, and the square of that in pairs.
TEST(FPOverlap, IsFoundOneByOne) {
  std::string smiles = "O";
  for (int i = 0; i < 60; ++i) smiles += "CCO";
  const QXGraphMol mol = test::ReadSmiles(smiles);
  auto matches = QXGetFPOverlap(mol, mol, maccsType);
  for (int i = 0; i < 20000; ++i) ASSERT_TRUE(++matches);
}

TEST(FPPatternRoutines, WhatTheyRefuse) {
  const QXGraphMol mol = test::ReadSmiles("CCO");
  QXGraphMol invalid;
  invalid.Invalidate();
  const struct {
    const QXGraphMol& mol;
    const QXFPTypeBase* type;
    std::string end;
  } cases[] = {
      {mol, nullptr, " : no fingerprint type!"},
      {mol, QXGetLingoFPType(8192), " is not available for Lingo fingerprint!"},
      {invalid, maccsType, ""},
  };
  for (const auto& c : cases) {
    const Reports reports = ReportsOf([&] {
      EXPECT_FALSE(QXGetFPPatterns(c.mol, c.type));
      EXPECT_FALSE(QXGetFPCoverage(c.mol, c.type, true));
      EXPECT_FALSE(QXGetFPOverlap(c.mol, mol, c.type));
    });
    Reports expected;
    for (const char* name : {"QXGetFPPatterns", "QXGetFPCoverage", "QXGetFPOverlap"}) {
      if (!c.end.empty()) expected.push_back("Warning: " + (name + c.end));
    }
    EXPECT_EQ(reports, expected);
  }
  QXAtomBondSet atom;
  atom.AddAtom(0);
  EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXCombineMatches(atom, {}).a.NumAtoms(), 0u); }),
            Reports{"Warning: QXCombineMatches : 1 atoms and 0 bonds cannot be combined with 0 atoms and 0 "
                    "bonds!"});
}

}  // namespace
}  // namespace QXFingrix
