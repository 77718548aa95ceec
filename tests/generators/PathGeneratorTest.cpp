#include "generators/PathGenerator.h"

#include <gtest/gtest.h>

#include <climits>
#include <numeric>
#include <stdexcept>

#include "QXFingrix/QXPathFP.h"
#include "Reports.h"
#include "generators/Graphs.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using test::GraphBond;
using test::MakeGraph;

struct GraphCase {
  const char* name;
  std::vector<unsigned> elements;
  std::vector<GraphBond> bonds;
};

const GraphCase graphCases[] = {
    {"no atom", {}, {}},
    {"one atom", {6}, {}},
    {"chain", {6, 7, 8, 9}, {{0, 1}, {1, 2}, {2, 3}}},
    {"ring with a tail", {6, 6, 6, 7}, {{0, 1}, {1, 2}, {2, 0}, {2, 3}}},
    {"branches", {6, 6, 7, 8, 9, 17}, {{0, 1}, {1, 2}, {1, 3}, {3, 4}, {3, 5}}},
    {"two parts", {6, 6, 8, 8}, {{3, 2}, {1, 0}}},
    {"hydrogen bridge", {5, 1, 1, 5, 1}, {{0, 1}, {1, 3}, {3, 2}, {2, 0}, {3, 4}}},
    {"wildcard inside", {6, 0, 7}, {{0, 1}, {1, 2}}},
    {"two rings and a bridge",
     {6, 6, 6, 6, 6, 6, 7},
     {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 0}, {0, 6}, {6, 3}}},
};

// Paths in the order of a depth-first walk, in the most direct way: whole lists of atoms are copied and
// extended.
void GrowPaths(const QXChem::QXMolBase& mol, std::vector<unsigned> path, unsigned maxbonds,
               std::vector<std::vector<unsigned>>& out) {
  out.push_back(path);
  if (path.size() > maxbonds) return;
  for (const QXChem::QXNeighbor& step : mol.Neighbors(path.back())) {
    if (std::find(path.begin(), path.end(), step.atom) != path.end()) continue;
    std::vector<unsigned> longer = path;
    longer.push_back(step.atom);
    GrowPaths(mol, longer, maxbonds, out);
  }
}

std::vector<std::vector<unsigned>> AllPaths(const QXChem::QXMolBase& mol, unsigned minbonds,
                                            unsigned maxbonds) {
  std::vector<std::vector<unsigned>> paths;
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    if (atom.GetAtomicNum() > 1) GrowPaths(mol, {atom.GetIdx()}, maxbonds, paths);
  }
  std::erase_if(paths, [&](const auto& path) { return path.size() <= minbonds; });
  return paths;
}

// The identifier of a path: a weighted sum of its labels, or their texts in a row.
template <class Id>
Id IdOf(const QXChem::QXMolBase& mol, const std::vector<unsigned>& path, const std::vector<Id>& atomLabels,
        const std::vector<Id>& bondLabels) {
  Id id{};
  for (std::size_t i = 0; i < path.size(); ++i) {
    const Id bond = i > 0 ? bondLabels[mol.GetBond(path[i - 1], path[i])->GetIdx()] : Id{};
    if constexpr (std::is_same_v<Id, std::string>) {
      id += bond + atomLabels[path[i]];
    } else {
      id += bond * PATH_PRIMES[2 * i] + atomLabels[path[i]] * PATH_PRIMES[2 * i + 1];
    }
  }
  return id;
}

// Labels that no two atoms or bonds share and whose products wrap.
template <class Id>
std::vector<Id> MakeLabels(unsigned count, unsigned seed) {
  std::vector<Id> labels;
  for (unsigned i = 0; i < count; ++i) {
    const unsigned number = (i + seed) * 2654435761u;
    if constexpr (std::is_same_v<Id, std::string>) {
      labels.push_back("<" + std::to_string(number) + ">");
    } else {
      labels.push_back(number);
    }
  }
  return labels;
}

template <class Id>
void ExpectEveryPath(const GraphCase& graph, unsigned minbonds, unsigned maxbonds) {
  SCOPED_TRACE(std::string(graph.name) + " " + std::to_string(minbonds) + "-" + std::to_string(maxbonds));
  const QXChem::QXGraphMol mol = MakeGraph(graph.elements, graph.bonds);
  std::vector<Id> atomLabels = MakeLabels<Id>(mol.NumAtoms(), 1);
  std::vector<Id> bondLabels = MakeLabels<Id>(mol.NumBonds(), 1000);
  const auto atomLabelsBefore = atomLabels;
  const auto bondLabelsBefore = bondLabels;
  std::vector<Id> expected{Id{}};  // what was there before
  for (const auto& path : AllPaths(mol, minbonds, maxbonds)) {
    expected.push_back(IdOf(mol, path, atomLabels, bondLabels));
  }
  std::vector<Id> inOrder{Id{}};
  EXPECT_EQ(QXPathIdGeneratorStack(inOrder, mol, atomLabels, bondLabels, minbonds, maxbonds),
            expected.size());
  EXPECT_EQ(inOrder, expected);
  std::set<Id> distinct{Id{}};
  const std::set<Id> expectedSet(expected.begin(), expected.end());
  EXPECT_EQ(QXPathIdGenerator(distinct, mol, atomLabels, bondLabels, minbonds, maxbonds), expectedSet.size());
  EXPECT_EQ(distinct, expectedSet);
  EXPECT_EQ(atomLabels, atomLabelsBefore);
  EXPECT_EQ(bondLabels, bondLabelsBefore);
}

TEST(PathGenerator, FindsEveryPathInWalkOrder) {
  const unsigned ranges[][2] = {{0, 0}, {0, 1},  {0, 5}, {1, 3},
                                {2, 2}, {3, 20}, {4, 2}, {UINT_MAX, UINT_MAX}};
  for (const GraphCase& graph : graphCases) {
    for (const auto& [minbonds, maxbonds] : ranges) {
      ExpectEveryPath<unsigned>(graph, minbonds, maxbonds);
      ExpectEveryPath<std::string>(graph, minbonds, maxbonds);
    }
  }
}

TEST(PathGenerator, OnlyTheFirstStartOfASymmetryClassIsWalked) {
  QXChem::QXGraphMol mol = MakeGraph({6, 6, 6, 6, 6}, {{0, 1}, {1, 2}, {2, 3}, {3, 4}});
  const unsigned classes[] = {7, 0, UINT_MAX, UINT_MAX, 7};
  for (unsigned i = 0; i < 5; ++i) mol.GetAtom(i)->SetSymmetryClass(classes[i]);
  std::vector<std::string> atomLabels{"a", "b", "c", "d", "e"};
  std::vector<std::string> bondLabels(4);
  std::vector<std::string> ids;
  QXPathIdGeneratorStack(ids, mol, atomLabels, bondLabels, 1, 1);
  const std::vector<std::string> expected{"ab", "ba", "bc", "cb", "cd"};
  EXPECT_EQ(ids, expected);
}

TEST(PathGenerator, PatternsHoldAtomsInWalkOrderBondsAndIdentifier) {
  for (const GraphCase& graph : graphCases) {
    SCOPED_TRACE(graph.name);
    const QXChem::QXGraphMol mol = MakeGraph(graph.elements, graph.bonds);
    auto atomLabels = MakeLabels<unsigned>(mol.NumAtoms(), 1);
    auto bondLabels = MakeLabels<unsigned>(mol.NumBonds(), 1000);
    std::vector<QXFPAtomBondSet<unsigned>> stackPatterns;
    std::vector<QXFPAtomBondSet<unsigned>> recursivePatterns;
    std::vector<unsigned> ids;
    std::set<unsigned> idSet;
    PathGenerator<unsigned>(mol, atomLabels, bondLabels, 1, 4, 0, &stackPatterns).GeneratePathIdsStack(ids);
    PathGenerator<unsigned>(mol, atomLabels, bondLabels, 1, 4, 0, &recursivePatterns).GeneratePathIds(idSet);
    const auto paths = AllPaths(mol, 1, 4);
    ASSERT_EQ(stackPatterns.size(), paths.size());
    ASSERT_EQ(recursivePatterns.size(), paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
      for (const auto& pattern : {stackPatterns[i], recursivePatterns[i]}) {
        EXPECT_EQ(std::vector(pattern.Atoms().begin(), pattern.Atoms().end()), paths[i]);
        ASSERT_EQ(pattern.NumBonds() + 1, paths[i].size());
        for (unsigned b = 0; b < pattern.NumBonds(); ++b) {
          EXPECT_EQ(pattern.Bonds()[b], mol.GetBond(paths[i][b], paths[i][b + 1])->GetIdx());
        }
        EXPECT_EQ(pattern.GetId(), ids[i]);
      }
    }
  }
}

// An identifier whose copies run out.
struct FragileId {
  FragileId() = default;
  FragileId(const FragileId&) {
    if (copiesLeft == 0) throw std::runtime_error("no more copies");
    --copiesLeft;
  }
  FragileId(FragileId&&) = default;
  FragileId& operator=(FragileId&&) = default;
  bool operator<(const FragileId&) const { return false; }

  static inline int copiesLeft = 0;
};

void LengthenPathId(FragileId& id, const FragileId& bondLabel, const FragileId&, unsigned) {
  id = FragileId(bondLabel);
}
void ShortenPathId(FragileId&, const FragileId&, const FragileId&, unsigned) {}

TEST(PathGenerator, LabelArraysHaveTheirOldLengthAfterAnExceptionAnywhere) {
  const QXChem::QXGraphMol mol = MakeGraph({6, 6, 6}, {{0, 1}, {1, 2}});
  for (const bool recursive : {false, true}) {
    bool threw = true;
    unsigned numThrown = 0;
    for (int copies = 0; threw; ++copies) {
      std::vector<FragileId> atomLabels(3);
      std::vector<FragileId> bondLabels(2);
      FragileId::copiesLeft = copies;
      threw = false;
      try {
        const PathGenerator<FragileId> generator(mol, atomLabels, bondLabels, 0, 2, FragileId{});
        EXPECT_EQ(atomLabels.size(), 4u);
        EXPECT_EQ(bondLabels.size(), 3u);
        std::set<FragileId> idSet;
        std::vector<FragileId> ids;
        recursive ? generator.GeneratePathIds(idSet) : generator.GeneratePathIdsStack(ids);
      } catch (const std::runtime_error&) {
        threw = true;
        ++numThrown;
      }
      EXPECT_EQ(atomLabels.size(), 3u) << copies;
      EXPECT_EQ(bondLabels.size(), 2u) << copies;
    }
    EXPECT_GT(numThrown, 10u);
  }
}

TEST(PathGenerator, PathLongerThanAnyCallStackIsWalked) {
  constexpr unsigned numAtoms = 200'000;
  QXChem::QXGraphMol mol;
  mol.NewAtom(6);  // no walk starts at the wildcards that follow
  for (unsigned i = 1; i < numAtoms; ++i) {
    mol.NewAtom(0);
    mol.NewBond(i - 1, i, 1);
  }
  std::vector<std::string> atomLabels(numAtoms, "*");
  std::vector<std::string> bondLabels(numAtoms - 1, "-");
  std::string path = "*";
  for (unsigned i = 1; i < numAtoms; ++i) path += "-*";
  const std::set<std::string> expected{path, path.substr(2)};
  std::set<std::string> distinct;
  EXPECT_EQ(QXPathIdGenerator(distinct, mol, atomLabels, bondLabels, numAtoms - 2, numAtoms - 1), 2u);
  EXPECT_TRUE(distinct == expected);
  std::vector<std::string> inOrder;
  EXPECT_EQ(QXPathIdGeneratorStack(inOrder, mol, atomLabels, bondLabels, numAtoms - 2, numAtoms - 1), 2u);
  EXPECT_TRUE(std::set(inOrder.begin(), inOrder.end()) == expected);
}

TEST(PathGenerator, MissingLabelsAreReportedAndNothingIsWalked) {
  const QXChem::QXGraphMol mol = MakeGraph({6, 6}, {{0, 1}});
  std::vector<unsigned> atomLabels{1};
  std::vector<unsigned> bondLabels{1};
  std::vector<unsigned> ids{5};
  EXPECT_EQ(
      ReportsOf([&] { EXPECT_EQ(QXPathIdGeneratorStack(ids, mol, atomLabels, bondLabels, 0, 5), 0u); }),
      Reports{"Warning: QXPathIdGeneratorStack() : 1 atom and 1 bond labels for a molecule of 2 atoms and "
              "1 bonds!"});
  EXPECT_EQ(ids, std::vector<unsigned>{5});
}

TEST(PathGenerator, HashedPathsEndWhereTheWeightsEnd) {
  std::vector<GraphBond> bonds;
  for (unsigned i = 0; i < 29; ++i) bonds.push_back({i, i + 1});
  const QXChem::QXGraphMol mol = MakeGraph(std::vector<unsigned>(30, 6), bonds);
  auto atomLabels = MakeLabels<unsigned>(30, 1);
  auto bondLabels = MakeLabels<unsigned>(29, 1);
  std::vector<unsigned> atTheLimit;
  std::vector<unsigned> beyond;
  QXPathIdGeneratorStack(atTheLimit, mol, atomLabels, bondLabels, 0, 24);
  const auto walk = [&] { QXPathIdGeneratorStack(beyond, mol, atomLabels, bondLabels, 0, 25); };
  EXPECT_EQ(ReportsOf(walk).size(), 1u);
  EXPECT_EQ(beyond, atTheLimit);
  auto atomTexts = MakeLabels<std::string>(30, 1);
  auto bondTexts = MakeLabels<std::string>(29, 1);
  std::vector<std::string> texts;
  EXPECT_EQ(QXPathIdGeneratorStack(texts, mol, atomTexts, bondTexts, 0, UINT_MAX), 30u * 30u);
}

}  // namespace
}  // namespace QXFingrix
