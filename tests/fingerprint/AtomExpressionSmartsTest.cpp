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

TEST(AtomExpressionSmarts, HydrogenBondClassesMatchTheirAtoms) {
  const unsigned masks[] = {AtmNum | EqHBAcc, AtmNum | EqHBDon, AtmNum | EqHBAcc | EqHBDon};
  for (Pair& pair : ReadPairs(300)) {
    for (const unsigned mask : masks) {
      std::vector<std::string> atomLabels, bondLabels;
      QXGetFingerprintAtomTypes(atomLabels, bondLabels, pair.ours, mask, 0);
      for (unsigned atom = 0; atom < atomLabels.size(); ++atom) {
        ASSERT_TRUE(Match(*pair.theirs, atomLabels[atom]).contains(atom))
            << atomLabels[atom] << ' ' << pair.smiles;
      }
    }
    std::set<unsigned> donors, acceptors;
    for (const QXChem::QXAtomBase& atom : pair.ours.Atoms()) {
      if (IsHydrogenBondDonor(&atom)) donors.insert(atom.GetIdx());
      if (IsHydrogenBondAcceptor(&atom)) acceptors.insert(atom.GetIdx());
    }
    EXPECT_EQ(donors, Match(*pair.theirs, "[#7,#8,#16;!h0]")) << pair.smiles;
    EXPECT_EQ(acceptors, Match(*pair.theirs, "[#7,#8,#16;!$([o,s,#7X3,#7v5,#16v4]);!+1;!+2]")) << pair.smiles;
  }
}

}  // namespace
}  // namespace QXFingrix
