#include <gtest/gtest.h>

#include <functional>

#include "QXChem/QXAtomBondSet.h"
#include "QXChem/QXPerception.h"
#include "QXSystem/QXErrorHandler.h"
#include "chem/SharedMolecules.h"

namespace QXChem {
namespace {

// Parents, indices, neighbour lists and neighbour counts all agree with the bonds.
void ExpectConsistent(const QXMolBase& mol) {
  std::size_t numNeighbors = 0;
  for (unsigned i = 0; i < mol.NumAtoms(); ++i) {
    const QXAtomBase& atom = *mol.GetAtom(i);
    EXPECT_EQ(&atom.GetParent(), &mol);
    EXPECT_EQ(atom.GetIdx(), i);
    unsigned heavy = 0;
    unsigned hydrogens = 0;
    unsigned previous = 0;
    for (const QXNeighbor& neighbor : atom.GetNeighbors()) {
      const QXBondBase& bond = *mol.GetBond(neighbor.bond);
      EXPECT_EQ(bond.GetNbrIdx(i), neighbor.atom);
      EXPECT_EQ(bond.GetNbr(&atom), mol.GetAtom(neighbor.atom));
      EXPECT_TRUE(numNeighbors == 0 || &neighbor == atom.GetNeighbors().data() || neighbor.bond > previous);
      previous = neighbor.bond;
      heavy += mol.GetAtom(neighbor.atom)->IsHeavy();
      hydrogens += mol.GetAtom(neighbor.atom)->IsHydrogen();
    }
    numNeighbors += atom.GetDegree();
    EXPECT_EQ(atom.GetHvyDegree(), heavy);
    EXPECT_EQ(atom.GetExplicitHCount(), hydrogens);
  }
  EXPECT_EQ(numNeighbors, 2 * mol.NumBonds());
  for (const QXBondBase& bond : mol.Bonds()) {
    EXPECT_EQ(&bond.GetParent(), &mol);
    EXPECT_EQ(mol.GetBond(bond.GetBgnIdx(), bond.GetEndIdx()), &bond);
  }
}

// Acetamide, heavy atoms only.
QXGraphMol MakeAcetamide() {
  QXGraphMol mol;
  for (const unsigned element : {6, 6, 8, 7}) mol.NewAtom(element);
  mol.NewBond(0, 1, 1);
  mol.NewBond(1, 2, 2);
  mol.NewBond(3, 1, 1);
  mol.GetAtom(0)->SetImplicitHCount(3);
  mol.GetAtom(3)->SetImplicitHCount(2);
  return mol;
}

TEST(GraphMol, IsValidAndEmptyAtFirstAndStillValidAfterClear) {
  QXGraphMol mol;
  EXPECT_TRUE(mol && mol.NumAtoms() == 0 && mol.NumBonds() == 0 && mol.GetAtom(0) == nullptr);
  mol.Invalidate();
  EXPECT_FALSE(mol);
  mol.Clear();
  EXPECT_TRUE(mol);
}

TEST(GraphMol, HandBuiltMoleculeIsPerceivedLikeAReadOne) {
  QXGraphMol built = MakeAcetamide();
  ExpectConsistent(built);
  QXAssignHybridization(built);
  QXAssignAromaticFlags(built);
  const QXGraphMol read = FromSmiles("CC(=O)N");
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(built.GetAtom(i)->GetHyb(), read.GetAtom(i)->GetHyb()) << i;
    EXPECT_EQ(built.GetAtom(i)->GetValence(), read.GetAtom(i)->GetValence()) << i;
  }
  EXPECT_EQ(QXCreateSmiles(built), QXCreateSmiles(read));
}

TEST(GraphMol, CopiesAndMovesAreIndependentAndConsistent) {
  QXGraphMol source = FromSmiles("[2H]c1cc[nH]c1CC(=O)[O-].[Na+]");
  source.SetTitle("salt");
  source.SetPreparedMark(102);
  QXGraphMol copy(source);
  QXGraphMol assigned = MakeAcetamide();
  assigned = static_cast<const QXMolBase&>(source);
  for (const QXGraphMol* mol : {&copy, &assigned}) {
    ExpectConsistent(*mol);
    EXPECT_EQ(QXCreateSmiles(*mol), QXCreateSmiles(source));
    EXPECT_EQ(mol->GetTitle(), "salt");
    EXPECT_EQ(mol->GetPreparedMark(), 102u);
  }
  copy.DeleteAtom(0);
  EXPECT_EQ(source.NumAtoms(), copy.NumAtoms() + 1);
  const QXGraphMol moved(std::move(assigned));
  ExpectConsistent(moved);
  EXPECT_EQ(moved.NumAtoms(), source.NumAtoms());
}

TEST(GraphMol, DeletedAtomTakesItsBondsAndLeavesTheRestInOrder) {
  QXGraphMol mol = MakeAcetamide();
  mol.GetAtom(3)->SetMapIdx(7);
  EXPECT_TRUE(mol.DeleteAtom(0));
  ExpectConsistent(mol);
  ASSERT_EQ(mol.NumAtoms(), 3u);
  ASSERT_EQ(mol.NumBonds(), 2u);
  EXPECT_EQ(mol.GetAtom(0)->GetAtomicNum(), 6u);
  EXPECT_EQ(mol.GetAtom(2)->GetAtomicNum(), 7u);
  EXPECT_EQ(mol.GetAtom(2)->GetMapIdx(), 7u);
  EXPECT_EQ(mol.GetBond(0, 1)->GetOrder(), 2u);
}

TEST(GraphMol, EveryEditClearsThePreparedMarkAndTheSymmetryClasses) {
  const std::vector<std::pair<const char*, std::function<void(QXGraphMol&)>>> edits = {
      {"NewAtom", [](QXGraphMol& mol) { mol.NewAtom(6); }},
      {"NewBond", [](QXGraphMol& mol) { mol.NewBond(0, 2, 1); }},
      {"DeleteAtom", [](QXGraphMol& mol) { mol.DeleteAtom(3); }},
      {"SetAtomicNum", [](QXGraphMol& mol) { mol.GetAtom(0)->SetAtomicNum(7); }},
      {"SetFormalCharge", [](QXGraphMol& mol) { mol.GetAtom(0)->SetFormalCharge(-1); }},
      {"SetIsotope", [](QXGraphMol& mol) { mol.GetAtom(0)->SetIsotope(13); }},
      {"SetImplicitHCount", [](QXGraphMol& mol) { mol.GetAtom(0)->SetImplicitHCount(2); }},
      {"SetHyb", [](QXGraphMol& mol) { mol.GetAtom(0)->SetHyb(3); }},
      {"SetMapIdx", [](QXGraphMol& mol) { mol.GetAtom(0)->SetMapIdx(1); }},
      {"SetAromatic", [](QXGraphMol& mol) { mol.GetAtom(0)->SetAromatic(true); }},
      {"SetInRing", [](QXGraphMol& mol) { mol.GetAtom(0)->SetInRing(true); }},
      {"SetChiral", [](QXGraphMol& mol) { mol.GetAtom(0)->SetChiral(true); }},
      {"SetOrder", [](QXGraphMol& mol) { mol.GetBond(0)->SetOrder(2); }},
      {"bond SetAromatic", [](QXGraphMol& mol) { mol.GetBond(0)->SetAromatic(true); }},
      {"bond SetInRing", [](QXGraphMol& mol) { mol.GetBond(0)->SetInRing(true); }},
      {"bond SetChiral", [](QXGraphMol& mol) { mol.GetBond(0)->SetChiral(true); }},
      {"SetDative", [](QXGraphMol& mol) { mol.GetBond(0)->SetDative(true); }}};
  for (const auto& [name, edit] : edits) {
    QXGraphMol mol = MakeAcetamide();
    QXPerceiveSymmetry(mol, true, false);
    ASSERT_NE(mol.GetAtom(1)->GetSymmetryClass(), 0u);
    mol.SetPreparedMark(102);
    edit(mol);
    EXPECT_EQ(mol.GetPreparedMark(), 0u) << name;
    EXPECT_EQ(mol.GetAtom(1)->GetSymmetryClass(), 0u) << name;
    ExpectConsistent(mol);
  }
}

TEST(GraphMol, PerceptionKeepsThePreparedMarkAndWhatTheCallerSet) {
  QXGraphMol mol = MakeAcetamide();
  mol.GetAtom(0)->SetHyb(5);
  mol.GetBond(0)->SetChiral(true);
  mol.SetPreparedMark(104);
  QXAssignHybridization(mol);
  QXAssignAromaticFlags(mol);
  QXFindRingAtomsAndBonds(mol);
  QXPerceiveChiral(mol);
  QXPerceiveSymmetry(mol, false, true);
  EXPECT_EQ(mol.GetPreparedMark(), 104u);
  EXPECT_EQ(mol.GetAtom(0)->GetHyb(), 5u);
  EXPECT_TRUE(mol.GetBond(0)->IsChiral());
}

TEST(GraphMol, WrongArgumentsAreReportedOnceAndChangeNothing) {
  const std::vector<std::pair<const char*, std::function<bool(QXGraphMol&)>>> calls = {
      {"element", [](QXGraphMol& mol) { return mol.NewAtom(133) != nullptr; }},
      {"self bond", [](QXGraphMol& mol) { return mol.NewBond(1, 1, 1) != nullptr; }},
      {"second bond", [](QXGraphMol& mol) { return mol.NewBond(1, 0, 1) != nullptr; }},
      {"bond index", [](QXGraphMol& mol) { return mol.NewBond(0, 4, 1) != nullptr; }},
      {"bond order", [](QXGraphMol& mol) { return mol.NewBond(0, 2, 10) != nullptr; }},
      {"delete", [](QXGraphMol& mol) { return mol.DeleteAtom(4); }},
      {"atomic number", [](QXGraphMol& mol) { return mol.GetAtom(0)->SetAtomicNum(133); }},
      {"charge", [](QXGraphMol& mol) { return mol.GetAtom(0)->SetFormalCharge(-100); }},
      {"isotope", [](QXGraphMol& mol) { return mol.GetAtom(0)->SetIsotope(65536); }},
      {"hydrogens", [](QXGraphMol& mol) { return mol.GetAtom(0)->SetImplicitHCount(100); }},
      {"hybridisation", [](QXGraphMol& mol) { return mol.GetAtom(0)->SetHyb(6); }},
      {"order", [](QXGraphMol& mol) { return mol.GetBond(0)->SetOrder(10); }}};
  const QXGraphMol untouched = MakeAcetamide();
  for (const auto& [name, call] : calls) {
    QXGraphMol mol = MakeAcetamide();
    mol.SetPreparedMark(1);
    const QXSystem::QXErrorCollector reports;
    EXPECT_FALSE(call(mol)) << name;
    EXPECT_EQ(reports.Count(), 1u) << name;
    EXPECT_EQ(mol.GetPreparedMark(), 1u) << name;
    EXPECT_EQ(QXCreateSmiles(mol), QXCreateSmiles(untouched)) << name;
  }
}

TEST(GraphMol, NeighbourCountsHoldBeyondWhatAByteCanCount) {
  QXGraphMol star;
  star.NewAtom(0);
  for (unsigned i = 0; i < 600; ++i) {
    star.NewAtom(i % 2 == 0 ? 1 : 9);
    star.NewBond(i + 1, 0, 1);
  }
  ExpectConsistent(star);
  EXPECT_EQ(star.GetAtom(0)->GetHvyDegree(), 300u);
  EXPECT_EQ(QXGraphMol(star).GetAtom(0)->GetExplicitHCount(), 300u);
}

TEST(AtomBondSet, ComparesAsSetsAndKeepsTheOrderOfInsertion) {
  QXAtomBondSet a;
  QXAtomBondSet b;
  for (const unsigned idx : {4, 1, 9}) a.AddAtom(idx);
  for (const unsigned idx : {9, 4, 4, 1}) b.AddAtom(idx);
  EXPECT_TRUE(a == b);
  EXPECT_EQ(a.Atoms()[0], 4u);
  EXPECT_EQ(b.NumAtoms(), 4u);
  b.AddBond(4);
  EXPECT_FALSE(a == b);
  EXPECT_TRUE(b.HasBond(4) && !b.HasAtom(3));
}

}  // namespace
}  // namespace QXChem
