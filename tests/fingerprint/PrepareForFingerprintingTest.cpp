#include "QXFingrix/QXPrepareForFingerprinting.h"

#include <gtest/gtest.h>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;

// Benzene with all its hydrogens as atoms.
QXChem::QXGraphMol MakeBenzene() {
  QXChem::QXGraphMol mol;
  for (unsigned i = 0; i < 12; ++i) mol.NewAtom(i < 6 ? 6 : 1);
  for (unsigned i = 0; i < 6; ++i) {
    mol.NewBond(i, (i + 1) % 6, 1 + i % 2);
    mol.NewBond(i, i + 6, 1);
  }
  return mol;
}

TEST(PrepareForFingerprinting, SuppressesHydrogensAndPerceivesRingsAndAromaticity) {
  QXChem::QXGraphMol mol = MakeBenzene();
  EXPECT_FALSE(QXIsPreparedForFingerprinting(mol, 102));
  EXPECT_TRUE(QXPrepareForFingerprinting(mol, 102));
  ASSERT_EQ(mol.NumAtoms(), 6u);
  ASSERT_EQ(mol.NumBonds(), 6u);
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    EXPECT_TRUE(atom.IsAromatic() && atom.IsInRing());
    EXPECT_EQ(atom.GetImplicitHCount(), 1u);
  }
  for (const QXChem::QXBondBase& bond : mol.Bonds()) EXPECT_TRUE(bond.IsAromatic() && bond.IsInRing());
}

TEST(PrepareForFingerprinting, OnePreparationCountsForEveryKindUntilAnEdit) {
  const unsigned kinds[] = {101, 102, 103, 104, 105, 9000, 9001, 9002};
  QXChem::QXGraphMol mol = MakeBenzene();
  ASSERT_TRUE(QXPrepareForFingerprinting(mol, 101));
  const QXChem::QXGraphMol copy(mol);
  for (const unsigned code : kinds) {
    EXPECT_TRUE(QXIsPreparedForFingerprinting(mol, code)) << code;
    EXPECT_TRUE(QXIsPreparedForFingerprinting(copy, code)) << code;
  }
  EXPECT_FALSE(QXIsPreparedForFingerprinting(mol, 0));
  EXPECT_FALSE(QXIsPreparedForFingerprinting(mol, 106));
  mol.GetAtom(0)->SetFormalCharge(1);
  for (const unsigned code : kinds) EXPECT_FALSE(QXIsPreparedForFingerprinting(mol, code)) << code;
  EXPECT_TRUE(QXPrepareForFingerprinting(mol, 105));
  EXPECT_TRUE(QXIsPreparedForFingerprinting(mol, 102));
}

TEST(PrepareForFingerprinting, RefusesInvalidMoleculesSilentlyAndUnknownCodesWithAReport) {
  QXChem::QXGraphMol mol = MakeBenzene();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXPrepareForFingerprinting(mol, 1)); }),
            Reports{"Warning: QXPrepareForFingerprinting : unknown fingerprint type!"});
  EXPECT_EQ(mol.NumAtoms(), 12u) << "unchanged";
  mol.Invalidate();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXPrepareForFingerprinting(mol, 102)); }), silence);
  EXPECT_FALSE(QXIsPreparedForFingerprinting(mol, 102));
  QXChem::QXGraphMol empty;
  EXPECT_TRUE(QXPrepareForFingerprinting(empty, 102));
  EXPECT_TRUE(QXIsPreparedForFingerprinting(empty, 102));
}

}  // namespace
}  // namespace QXFingrix
