// Atom expressions and the hydrogen-bond tests against an independent reading of SMARTS.

#include <RDGeneral/RDConfig.h>  // first: the others depend on its settings
// clang-format off
#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#include <GraphMol/Substruct/SubstructMatch.h>
#include <gtest/gtest.h>
// clang-format on

#include <fstream>
#include <map>
#include <memory>
#include <set>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"

namespace QXFingrix {
namespace {

using namespace QXFPAtomType;

/// One molecule read twice; the atoms have the same order.
struct Pair {
  std::string smiles;
  QXChem::QXGraphMol ours;
  std::unique_ptr<RDKit::ROMol> theirs;
};

std::vector<Pair> ReadPairs(std::size_t limit) {
  std::vector<Pair> pairs;
  std::ifstream in(QX_SOURCE_DIR "/data/molecules.smi");
  std::string smiles, name;
  while (pairs.size() < limit && in >> smiles >> name) {
    Pair pair;
    pair.smiles = smiles;
    pair.theirs.reset(RDKit::SmilesToMol(smiles));
    EXPECT_TRUE(QXChem::QXParseSmiles(pair.ours, smiles)) << smiles;
    EXPECT_TRUE(QXPrepareForFingerprinting(pair.ours, 102)) << smiles;
    if (pair.theirs && pair.theirs->getNumAtoms() == pair.ours.NumAtoms()) pairs.push_back(std::move(pair));
  }
  EXPECT_EQ(pairs.size(), limit);
  return pairs;
}

std::set<unsigned> Match(const RDKit::ROMol& mol, const std::string& smarts) {
  static std::map<std::string, std::unique_ptr<RDKit::ROMol>> queries;
  auto& query = queries[smarts];
  if (!query) query.reset(RDKit::SmartsToMol(smarts));
  EXPECT_TRUE(query) << smarts;
  std::set<unsigned> atoms;
  for (const auto& match : RDKit::SubstructMatch(mol, *query)) atoms.insert(match.front().second);
  return atoms;
}

TEST(AtomExpressionSmarts, MatchesExactlyTheAtomsThatAreWrittenSo) {
  const unsigned masks[] = {AtmNum,
                            AtmNum | Arom,
                            Arom | InRing,
                            AtmNum | FCharge | HvyDeg,
                            AtmNum | EqHalo | Hyb,
                            AtmNum | InRing | HCount,
                            DefaultPathAtom,
                            DefaultCircularAtom,
                            DefaultTreeAtom | InRing | HCount};
  for (Pair& pair : ReadPairs(300)) {
    for (const unsigned mask : masks) {
      std::vector<std::string> atomLabels, bondLabels;
      QXGetFingerprintAtomTypes(atomLabels, bondLabels, pair.ours, mask, 0);
      std::map<std::string, std::set<unsigned>> written;
      for (unsigned atom = 0; atom < atomLabels.size(); ++atom) written[atomLabels[atom]].insert(atom);
      for (const auto& [expression, atoms] : written) {
        ASSERT_EQ(Match(*pair.theirs, expression), atoms) << expression << ' ' << pair.smiles;
      }
    }
  }
}

// The expression of an atom of a molecule.
std::string ExpressionOf(const std::string& smiles, unsigned atom, unsigned atype) {
  QXChem::QXGraphMol mol;
  EXPECT_TRUE(QXChem::QXParseSmiles(mol, smiles)) << smiles;
  std::string text;
  AddSmilesAtomSymbol(text, mol.GetAtom(atom), atype);
  return text;
}

TEST(AtomExpressionSmarts, EveryElementIsReadAsItself) {
  RDKit::RWMol all;
  QXChem::QXGraphMol ours;
  for (unsigned z = 0; z <= 118; ++z) {
    all.addAtom(new RDKit::Atom(z), true, true);
    ours.NewAtom(z);
  }
  for (unsigned z = 0; z <= 118; ++z) {
    std::string text;
    AddSmilesAtomSymbol(text, ours.GetAtom(z), AtmNum | Arom);
    EXPECT_EQ(Match(all, text), std::set<unsigned>{z}) << text;
  }
}

TEST(AtomExpressionSmarts, HydrogenBondClassesMatchTheirAtoms) {
  const std::string donorText = ExpressionOf("CN", 1, AtmNum | EqHBDon);
  const std::string acceptorText = ExpressionOf("COC", 1, AtmNum | EqHBAcc);
  const std::string bothText = ExpressionOf("CO", 1, AtmNum | EqHBAcc | EqHBDon);
  std::size_t numExceptions = 0;
  for (Pair& pair : ReadPairs(300)) {
    const std::set<unsigned> donors = Match(*pair.theirs, donorText);
    const std::set<unsigned> acceptors = Match(*pair.theirs, acceptorText);
    const std::set<unsigned> both = Match(*pair.theirs, bothText);
    for (const QXChem::QXAtomBase& atom : pair.ours.Atoms()) {
      const unsigned idx = atom.GetIdx();
      EXPECT_EQ(IsHydrogenBondDonor(&atom), donors.contains(idx)) << pair.smiles << ' ' << idx;
      EXPECT_EQ(both.contains(idx), donors.contains(idx) || acceptors.contains(idx))  // the "," of the text
          << pair.smiles << ' ' << idx;
      // The one exception: the text names the aromatic nitrogens with three connections only.
      const bool threeConnected =
          atom.GetAtomicNum() == 7 && !atom.IsAromatic() && atom.GetDegree() + atom.GetImplicitHCount() == 3;
      numExceptions += threeConnected && acceptors.contains(idx);
      EXPECT_EQ(IsHydrogenBondAcceptor(&atom), acceptors.contains(idx) && !threeConnected)
          << pair.smiles << ' ' << idx;
    }
  }
  EXPECT_GT(numExceptions, 0u);
}

}  // namespace
}  // namespace QXFingrix
