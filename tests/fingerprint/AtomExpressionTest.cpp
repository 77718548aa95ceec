#include <gtest/gtest.h>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXPerception.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"

namespace QXFingrix {
namespace {

using namespace QXFPAtomType;

TEST(AtomExpression, WritesTheElementAndThePrimitivesOfTheMask) {
  const unsigned hydrogenBonds = AtmNum | EqHBAcc | EqHBDon;
  const struct {
    const char* smiles;
    unsigned atom;
    unsigned atype;
    const char* expression;
  } cases[] = {
      {"CC", 0, None, "*"},
      {"CC", 0, Chiral, "*"},
      {"c1ccccc1", 0, Arom, "a"},
      {"CC", 0, Arom, "A"},
      {"C[Si](C)(C)C", 1, AtmNum | Arom, "[Si]"},
      {"[H][H]", 0, AtmNum | Arom, "[#1]"},
      {"*C", 0, AtmNum | Arom, "[#0]"},
      {"c1cc[se]c1", 3, AtmNum | Arom, "[se]"},
      {"CCl", 1, AtmNum | Arom, "Cl"},
      {"CCl", 1, AtmNum | EqHalo, "[F,Cl,Br,I]"},
      {"CF", 1, EqHalo, "*"},
      {"c1ccncc1", 3, AtmNum | EqArom, "[c,n,s]"},
      {"C1CCNCC1", 3, AtmNum | EqArom, "[#7]"},
      {"CO", 1, hydrogenBonds, "[#7,#8,#16;!h0,!$([o,s,nX3,#7v5,#16v4,*+1])]"},
      {"CC=O", 2, hydrogenBonds, "[#7,#8,#16;!$([o,s,nX3,#7v5,#16v4,*+1])]"},
      {"CO", 1, AtmNum | EqHBAcc, "[#7,#8,#16;!$([o,s,nX3,#7v5,#16v4,*+1])]"},
      {"CO", 1, AtmNum | EqHBDon, "[#7,#8,#16;!h0]"},
      {"CO", 1, AtmNum | EqHBDon | HCount, "[#7,#8,#16;!h0;h1]"},
      {"c1ccncc1", 3, hydrogenBonds, "[#7]"},  // the classes are for atoms that are not aromatic
      {"c1ccncc1", 3, hydrogenBonds | EqArom, "[c,n,s]"},
      {"CC", 0, FCharge, "[*;+0]"},
      {"C[N+](C)(C)C", 1, AtmNum | FCharge, "[#7;+1]"},
      {"C[O-]", 1, AtmNum | Arom | FCharge, "[O;-1]"},
      {"[Fe+2]", 0, AtmNum | FCharge, "[#26;+2]"},
      {"C1CC1C", 0, InRing, "[*;R]"},
      {"C1CC1C", 3, InRing, "[*;R0]"},
      {"CC(C)C", 1, HvyDeg, "[*;D3]"},
      {"CC#N", 2, Hyb, "[*;^1]"},
      {"[Na+]", 0, AtmNum | Arom | Hyb, "[Na]"},  // code 0 has no primitive
      {"C", 0, HCount, "[*;h4]"},
      {"C1CC1(C)[NH3+]", 2, DefaultPathAtom | InRing | HCount, "[C;+0;R;D4;^3;h0]"},
  };
  for (const auto& c : cases) {
    QXChem::QXGraphMol mol;
    ASSERT_TRUE(QXChem::QXParseSmiles(mol, c.smiles)) << c.smiles;
    QXChem::QXFindRingAtomsAndBonds(mol);
    QXChem::QXAssignHybridization(mol);
    std::string text = "> ";
    AddSmilesAtomSymbol(text, mol.GetAtom(c.atom), c.atype);
    EXPECT_EQ(text, std::string("> ") + c.expression) << c.smiles << ' ' << c.atype;
  }
}

TEST(AtomExpression, NumbersWithoutAPrimitiveAreLeftOut) {
  QXChem::QXGraphMol mol;
  mol.NewAtom(14);
  mol.GetAtom(0)->SetImplicitHCount(5);
  std::string text;
  AddSmilesAtomSymbol(text, mol.GetAtom(0), AtmNum | Hyb | HCount);
  EXPECT_EQ(text, "[#14]");
  AddSmilesAtomSymbol(text, nullptr, AtmNum);
  EXPECT_EQ(text, "[#14]");
}

}  // namespace
}  // namespace QXFingrix
