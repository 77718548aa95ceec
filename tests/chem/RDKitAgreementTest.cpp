// The graph against RDKit's own default parse, which reads, removes hydrogens, sanitises and assigns stereo.

#include <RDGeneral/RDConfig.h>

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#include <GraphMol/SmilesParse/SmilesWrite.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "QXChem/QXPerception.h"
#include "chem/SharedMolecules.h"

namespace QXChem {
namespace {

class RDKitAgreement : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    lines_ = SharedLines(GetParam());
    if (lines_.empty()) GTEST_SKIP() << "no " << GetParam() << " in " QX_SHARED_DATA_DIR;
  }
  std::vector<std::string> lines_;
};

INSTANTIATE_TEST_SUITE_P(Files, RDKitAgreement,
                         testing::Values("drug_5k.smi", "odd.smi", "natural_products_4k.smi",
                                         "natural_cyclopeptides.smi"),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           return name.substr(0, name.find('.'));
                         });

using RDKitMol = std::unique_ptr<RDKit::RWMol>;

std::string FirstWord(const std::string& line) {
  return line.substr(0, line.find_first_of(" \t"));
}

int ToCode(RDKit::Atom::HybridizationType type) {
  switch (type) {
    case RDKit::Atom::SP:
      return 1;
    case RDKit::Atom::SP2:
      return 2;
    case RDKit::Atom::SP3:
      return 3;
    case RDKit::Atom::SP3D:
      return 4;
    case RDKit::Atom::SP3D2:
      return 5;
    default:
      return 0;
  }
}

// Lines whose default parse depends on more than the structure: bonds of any order, whose effect depends on
// the numbers of the atoms, and drawn stereo of another shape than a tetrahedron, which decides the
// hybridisation.
bool IsAmbiguous(const std::string& smiles) {
  for (const char* mark : {"~", "@SP", "@TB", "@OH", "@TH", "@AL"}) {
    if (smiles.find(mark) != std::string::npos) return true;
  }
  return false;
}

// What has to be equal for one atom.
std::vector<int> Describe(const RDKit::Atom& atom) {
  int hydrogens = 0;
  for (const RDKit::Atom* neighbor : atom.getOwningMol().atomNeighbors(&atom))
    hydrogens += neighbor->getAtomicNum() == 1;
  return {atom.getAtomicNum(),
          atom.getFormalCharge(),
          static_cast<int>(atom.getIsotope()),
          static_cast<int>(atom.getDegree()),
          static_cast<int>(atom.getTotalNumHs(true)),
          hydrogens,
          atom.getIsAromatic(),
          ToCode(atom.getHybridization())};
}

std::vector<int> Describe(const QXAtomBase& atom) {
  return {static_cast<int>(atom.GetAtomicNum()),
          atom.GetFormalCharge(),
          static_cast<int>(atom.GetIsotope()),
          static_cast<int>(atom.GetDegree()),
          static_cast<int>(atom.GetTotalHCount()),
          static_cast<int>(atom.GetExplicitHCount()),
          atom.IsAromatic(),
          static_cast<int>(atom.GetHyb())};
}

TEST_P(RDKitAgreement, AtomsAndBondsEqualThoseOfTheDefaultParse) {
  unsigned numCompared = 0;
  for (const std::string& line : lines_) {
    const std::string smiles = FirstWord(line);
    const RDKitMol expected(RDKit::SmilesToMol(smiles));
    ASSERT_TRUE(expected) << smiles;
    QXGraphMol mol = FromSmiles(smiles);
    QXSuppressHydrogens(mol);
    if (mol.NumAtoms() != expected->getNumAtoms()) continue;  // another choice of hydrogens to keep
    if (IsAmbiguous(smiles)) continue;
    ++numCompared;
    for (const RDKit::Atom* atom : expected->atoms()) {
      // So does a tetrahedron drawn at a metal.
      if (atom->getAtomicNum() > 20 && smiles.find('@') != std::string::npos) continue;
      EXPECT_EQ(Describe(*mol.GetAtom(atom->getIdx())), Describe(*atom))
          << smiles << " atom " << atom->getIdx();
    }
    ASSERT_EQ(mol.NumBonds(), expected->getNumBonds()) << smiles;
    for (const RDKit::Bond* bond : expected->bonds()) {
      const QXBondBase* found = mol.GetBond(bond->getBeginAtomIdx(), bond->getEndAtomIdx());
      ASSERT_TRUE(found) << smiles;
      EXPECT_EQ(found->IsAromatic(), bond->getIsAromatic()) << smiles;
      if (bond->getIsAromatic() || bond->getBondType() > RDKit::Bond::QUADRUPLE) continue;
      EXPECT_EQ(found->GetOrder(), static_cast<unsigned>(bond->getBondTypeAsDouble())) << smiles;
    }
  }
  EXPECT_GT(numCompared, lines_.size() * 95 / 100);
}

TEST_P(RDKitAgreement, CanonicalSmilesIsThatOfTheDefaultParseWithoutStereo) {
  unsigned numSame = 0;
  std::vector<std::string> differing;
  for (const std::string& line : lines_) {
    const std::string smiles = FirstWord(line);
    RDKitMol expected(RDKit::SmilesToMol(smiles));
    QXGraphMol mol = FromSmiles(smiles);
    QXSuppressHydrogens(mol);
    for (RDKit::Atom* atom : expected->atoms()) {
      atom->setIsotope(0);
      atom->clearProp(RDKit::common_properties::molAtomMapNumber);
    }
    for (unsigned i = 0; i < mol.NumAtoms(); ++i) {
      mol.GetAtom(i)->SetIsotope(0);
      mol.GetAtom(i)->SetMapIdx(0);
    }
    const std::string found = QXCreateSmiles(mol);
    const bool same = found == RDKit::MolToSmiles(*expected, false);
    numSame += same;
    if (!same && differing.size() < 10) differing.push_back(smiles + " " + found);
  }
  EXPECT_GT(numSame, lines_.size() * 97 / 100) << testing::PrintToString(differing);
}

TEST_P(RDKitAgreement, PerceivingTheGraphAgainChangesNothing) {
  for (const std::string& line : lines_) {
    if (IsAmbiguous(line)) continue;
    const QXGraphMol mol = FromSmiles(line);
    QXGraphMol again = mol;
    again.ForgetPerceived(QXPerceived::Aromaticity);
    again.ForgetPerceived(QXPerceived::Hybridization);
    QXAssignAromaticFlags(again);
    for (unsigned i = 0; i < mol.NumAtoms(); ++i) {
      EXPECT_EQ(Describe(*again.GetAtom(i)), Describe(*mol.GetAtom(i))) << line << " atom " << i;
    }
  }
}

struct Counts {
  unsigned atoms = 0;
  unsigned bonds = 0;
  std::vector<std::size_t> classSizes;
  bool operator==(const Counts&) const = default;
};

Counts Count(const std::string& smiles) {
  QXGraphMol mol = FromSmiles(smiles);
  QXSuppressHydrogens(mol);
  QXPerceiveChiral(mol);
  QXPerceiveSymmetry(mol, false, true);
  Counts counts;
  std::vector<std::size_t> sizes(mol.NumAtoms() + 1);
  for (const QXAtomBase& atom : mol.Atoms()) {
    counts.atoms += atom.IsChiral();
    ++sizes[atom.GetSymmetryClass()];
  }
  for (const QXBondBase& bond : mol.Bonds()) counts.bonds += bond.IsChiral();
  std::ranges::sort(sizes);
  std::ranges::copy_if(sizes, std::back_inserter(counts.classSizes),
                       [](std::size_t size) { return size > 0; });
  return counts;
}

TEST_P(RDKitAgreement, ChiralityAndClassSizesDoNotDependOnHowTheSmilesIsWritten) {
  for (std::size_t i = 0; i < lines_.size(); i += 5) {
    const std::string smiles = FirstWord(lines_[i]);
    const RDKitMol mol(RDKit::SmilesToMol(smiles));
    const std::string written = RDKit::MolToSmiles(*mol, true, false, -1, false, false, false, true);
    const Counts expected = Count(smiles);
    EXPECT_EQ(Count(written), expected) << smiles << " " << written;
    // Dropping the drawn stereo drops isotopes and map numbers too, which count.
    const bool labelled = std::ranges::any_of(FromSmiles(smiles).Atoms(), [](const QXAtomBase& atom) {
      return atom.GetIsotope() != 0 || atom.GetMapIdx() != 0;
    });
    if (labelled) continue;
    EXPECT_EQ(Count(RDKit::MolToSmiles(*mol, false)), expected) << smiles;
  }
}

}  // namespace
}  // namespace QXChem
