#include <gtest/gtest.h>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPAtomLabels.h"

namespace QXFingrix {
namespace {

TEST(HydrogenBonds, DonorsAndAcceptorsOfKnownGroups) {
  const struct {
    const char* group;
    const char* smiles;
    unsigned atom;
    bool donor;
    bool acceptor;
  } cases[] = {
      {"hydroxyl", "CO", 1, true, true},
      {"carbonyl", "CC(C)=O", 3, false, true},
      {"oxonium", "C[OH2+]", 1, true, false},
      {"furan O", "c1ccoc1", 3, false, false},
      {"pyridine N", "c1ccncc1", 3, false, true},
      {"pyrrole N", "c1cc[nH]c1", 3, true, false},
      {"amine N, three connections", "CN", 1, true, false},
      {"tertiary amine N", "CN(C)C", 1, false, false},
      {"amide anion", "C[NH-]", 1, true, true},
      {"nitro N", "C[N+](=O)[O-]", 1, false, false},
      {"thiol", "CS", 1, true, true},
      {"thiophene S", "c1ccsc1", 3, false, false},
      {"sulfoxide S, tetravalent", "CS(C)=O", 1, false, false},
      {"sulfone S, hexavalent", "CS(C)(=O)=O", 1, false, true},
      {"fluorine", "CF", 1, false, false},
      {"phosphine", "P", 0, false, false},
      {"deuterated hydroxyl", "CO[2H]", 1, true, true},
  };
  for (const auto& c : cases) {
    QXChem::QXGraphMol mol;
    ASSERT_TRUE(QXChem::QXParseSmiles(mol, c.smiles)) << c.smiles;
    EXPECT_EQ(IsHydrogenBondDonor(mol.GetAtom(c.atom)), c.donor) << c.group;
    EXPECT_EQ(IsHydrogenBondAcceptor(mol.GetAtom(c.atom)), c.acceptor) << c.group;
  }
  EXPECT_FALSE(IsHydrogenBondDonor(nullptr));
  EXPECT_FALSE(IsHydrogenBondAcceptor(nullptr));
}

TEST(HydrogenBonds, ValenceAndChargeDecideInHandBuiltGroups) {
  QXChem::QXGraphMol mol;  // C#N=O: two connections, so only the valence tells
  for (const unsigned z : {6, 7, 8}) mol.NewAtom(z);
  mol.NewBond(0, 1, 3);
  mol.NewBond(1, 2, 2);
  EXPECT_FALSE(IsHydrogenBondAcceptor(mol.GetAtom(1)));
  QXChem::QXAtomBase* oxygen = mol.GetAtom(2);
  oxygen->SetAromatic(true);
  EXPECT_FALSE(IsHydrogenBondAcceptor(oxygen));
  oxygen->SetFormalCharge(-1);
  oxygen->SetAromatic(true);
  EXPECT_TRUE(IsHydrogenBondAcceptor(oxygen));
}

}  // namespace
}  // namespace QXFingrix
