// Leaving out symmetric start atoms must not change a bit: walks from every atom and walks from one atom of
// each class are compared as sets of identifiers, and with the bits of the fingerprint, which has a walk of its
// own.

#include <gtest/gtest.h>

#include <algorithm>

#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXPrimes.h"
#include "generators/Graphs.h"
#include "generators/Molecules.h"

namespace QXFingrix {
namespace {

constexpr unsigned everyAtomProperty = 127 | 4096;
constexpr unsigned everyBondProperty = 7;

struct Range {
  unsigned minbonds, maxbonds;
};

std::vector<unsigned> DistinctIds(QXChem::QXGraphMol mol, bool leaveOutSymmetricStarts, Range range) {
  QXPrepareForFingerprinting(mol, QXFPType::Path);
  if (leaveOutSymmetricStarts) QXChem::QXPerceiveSymmetry(mol, true, false);
  std::vector<unsigned> atomLabels;
  std::vector<unsigned> bondLabels;
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, everyAtomProperty, everyBondProperty);
  // Chirality may have looked for classes on its way.
  if (!leaveOutSymmetricStarts) mol.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  std::vector<unsigned> ids;
  QXPathIdGeneratorStack(ids, mol, atomLabels, bondLabels, range.minbonds, range.maxbonds);
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

void ExpectSameIds(const QXChem::QXGraphMol& mol, Range range) {
  const std::vector<unsigned> ids = DistinctIds(mol, false, range);
  EXPECT_EQ(DistinctIds(mol, true, range), ids);
  QXFingerPrint fp;
  constexpr unsigned numbits = 65535;
  ASSERT_TRUE(
      QXMakePathFP(fp, mol, numbits, range.minbonds, range.maxbonds, everyAtomProperty, everyBondProperty));
  QXSystem::QXBitVector expected(numbits);
  for (const unsigned id : ids) expected.SetBitOn(id % QXGetHashSize(numbits));
  EXPECT_TRUE(static_cast<const QXSystem::QXBitVector&>(fp) == expected);
}

// Takes the ranges in turn.
void ExpectSameIdsForFile(const std::string& path, std::size_t limit, const std::vector<Range>& ranges) {
  const auto lines = test::ReadSmilesFile(path, limit);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    SCOPED_TRACE(lines[i].name);
    const QXChem::QXGraphMol mol = test::ReadSmiles(lines[i].smiles);
    if (mol.IsValid()) ExpectSameIds(mol, ranges[i % ranges.size()]);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(SymmetricStart, LeavingItOutChangesNothingInRegularStructures) {
  const char* const structures[] = {
      "C1CC1.C1CCCCC1.C1CC1.C1CCCCC1.C1CCCCC1",
      "C1CCC1.C1CCC1.C1CCCCCCC1.C1CCCCCCC1",
      "[Na+].[Na+].[Na+].[O-]C(=O)CC(O)(C([O-])=O)CC([O-])=O.O.O.O.O.O.O.O.O",
      "CC.CC.CC.CC.CCC.CCC.CCC.CCC.CC.CC.CC",
      // cubane, adamantane, dodecahedrane, twice the same cage
      "C12C3C4C1C5C2C3C45",
      "C1C2CC3CC1CC(C2)C3",
      "C12C3C4C5C1C6C7C2C8C3C9C4C1C5C6C2C7C8C9C12",
      "C1CC2CC3CCC2CC13.C1CC2CC3CCC2CC13",
      // two joined rings, a fused belt, a chain of spiro rings, hexaphenylbenzene, a crown ether
      "C1CCCCCCCCC1C1CCCCCCCCC1",
      "C1CC2CCC3CCC4CCC5CCC6CCC1C1C2C3C4C5C61",
      "C1CC12CC23CC34CC45CC56CC6",
      "c1ccccc1-c1c(-c2ccccc2)c(-c2ccccc2)c(-c2ccccc2)c(-c2ccccc2)c1-c1ccccc1",
      "C1COCCOCCOCCOCCOCCOCCOCCO1",
      // quinoid rings and a porphyrin: classes must respect the bonds that are drawn double
      "O=C1C=CC(=O)C=C1.O=C1C=CC(=O)C=C1.O=C1C=CC(=O)C=C1",
      "C1=CC2=CC3=CC=C(N3)C=C4C=CC(=N4)C=C5C=CC(=CC1=N2)N5",
      "FS(F)(F)(F)(F)F.F[P-](F)(F)(F)(F)F.F[P-](F)(F)(F)(F)F",
      // the carbon skeletons of the dodecahedron and of buckminsterfullerene
      "C12C3C4C5C1C1C6C2C2C3C3C4C4C5C1C1C6C2C3C41",
      "c12c3c4c5c1c1c6c7c2c2c8c3c3c9c4c4c%10c5c5c1c1c6c6c%11c7c2c2c7c8c3c3c8c9c4c4c9c%10c5c5c1c1c6c6c%"
      "11c2c2c7c"
      "3c3c8c4c4c9c5c1c1c6c2c3c41",
  };
  for (const char* const smiles : structures) {
    SCOPED_TRACE(smiles);
    const QXChem::QXGraphMol mol = test::ReadSmiles(smiles);
    ASSERT_TRUE(mol.IsValid());
    ExpectSameIds(mol, {0, 7});
  }
  struct Circulant {
    unsigned numAtoms, chord;
    std::vector<unsigned> pattern;  // elements with four bonds
  };
  const Circulant circulants[] = {
      {24, 12, {6, 6, 14}}, {30, 15, {6, 14, 6, 32, 50}},        {25, 5, {6, 14, 14, 6, 32}},
      {40, 3, {6, 14}},     {100, 7, {6, 14, 6, 6, 32, 50, 14}},  // more atoms than bits in a set of atoms
  };
  for (const auto& [numAtoms, chord, pattern] : circulants) {
    SCOPED_TRACE(numAtoms);
    ExpectSameIds(test::MakeCirculant(numAtoms, chord, pattern), {0, 7});
  }
}

TEST(SymmetricStart, LeavingItOutChangesNothingInRealMolecules) {
  const std::string bundled = QX_SOURCE_DIR "/data/molecules.smi";
  ASSERT_FALSE(test::ReadSmilesFile(bundled, 1).empty());
  ExpectSameIdsForFile(bundled, SIZE_MAX, {{0, 5}, {0, 7}, {2, 6}, {4, 4}, {6, 9}, {1, 1}, {0, 0}});
}

TEST(SymmetricStart, LeavingItOutChangesNothingInDifficultMolecules) {
  const std::string folder = QX_SHARED_DATA_DIR "/";
  if (test::ReadSmilesFile(folder + "odd.smi", 1).empty()) GTEST_SKIP() << "no molecules in " << folder;
  ExpectSameIdsForFile(folder + "odd.smi", SIZE_MAX, {{0, 6}});
  ExpectSameIdsForFile(folder + "drug_5k.smi", SIZE_MAX, {{0, 5}});
  ExpectSameIdsForFile(folder + "natural_products_4k.smi", 1000, {{0, 6}});
  ExpectSameIdsForFile(folder + "natural_cyclopeptides.smi", 300, {{0, 5}});
}

}  // namespace
}  // namespace QXFingrix
