// Counts what the global allocator is asked for, and makes it fail.

#include <gtest/gtest.h>

#include <new>
#include <thread>

#include "Allocations.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXTreeFP.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "generators/Graphs.h"
#include "generators/Molecules.h"

namespace QXFingrix {
namespace {

using QXTest::failAt;
using QXTest::numAllocations;
using QXTest::numBytes;

using Maker = bool (*)(QXFingerPrint& fp, const QXChem::QXMolBase& mol);

TEST(PathAllocation, NothingIsAllocatedAfterTheFirstPass) {
  std::vector<QXChem::QXGraphMol> mols;
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 200)) {
    mols.push_back(test::ReadSmiles(line.smiles));
  }
  ASSERT_EQ(mols.size(), 200u);
  const Maker makers[] = {QXMakePathFP, QXMakeTreeFP, [](QXFingerPrint& fp, const QXChem::QXMolBase& mol) {
                            return QXMakeTreeFP(fp, mol, 4096, 3, 5, 63, 1);
                          }};
  for (const Maker make : makers) {
    std::size_t inPass[2];
    std::thread([&] {  // a new one, which has no memory from other tests
      QXFingerPrint fp;
      for (std::size_t& count : inPass) {
        const std::size_t before = numAllocations;
        for (const QXChem::QXGraphMol& mol : mols) make(fp, mol);
        count = numAllocations - before;
      }
    })
        .join();
    EXPECT_GT(inPass[0], 0u);
    EXPECT_EQ(inPass[1], 0u);
  }
}

void ExpectRightAfterEveryFailure(Maker make, const QXChem::QXMolBase& mol) {
  QXFingerPrint expected;
  ASSERT_TRUE(make(expected, mol));
  const QXSystem::QXErrorCollector collector;
  std::size_t numFailed = 0;
  for (bool failed = true; failed; numFailed += failed) {
    std::thread([&] {  // a new one, which has no memory from other calls
      QXFingerPrint fp;
      failed = false;
      failAt = numAllocations + numFailed + 1;
      try {
        make(fp, mol);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      failAt = 0;
      EXPECT_TRUE(make(fp, mol));
      EXPECT_TRUE(fp == expected) << numFailed;
    })
        .join();
  }
  EXPECT_GT(numFailed, 10u);
}

TEST(PathAllocation, AFailurePassesThroughAndTheNextCallIsRight) {
  const QXChem::QXGraphMol mol = test::ReadSmiles("CC(C)Cc1ccc(cc1)C(C)C(=O)OCCN1CCOCC1");
  ExpectRightAfterEveryFailure(QXMakePathFP, mol);
  ExpectRightAfterEveryFailure(
      [](QXFingerPrint& fp, const QXChem::QXMolBase& other) {
        return QXMakeUnhashedPathFP(fp, other, 0, 5, 191, 3);
      },
      mol);
  ExpectRightAfterEveryFailure(QXMakeTreeFP, mol);
  ExpectRightAfterEveryFailure(
      [](QXFingerPrint& fp, const QXChem::QXMolBase& other) {
        return QXMakeUnhashedTreeFP(fp, other, 0, 4, 63, 1);
      },
      mol);
}

std::size_t CountPaths(const QXChem::QXMolBase& mol, unsigned atom, unsigned maxbonds,
                       std::vector<bool>& visited) {
  std::size_t count = 1;
  if (maxbonds == 0) return count;
  visited[atom] = true;
  for (const QXChem::QXNeighbor& step : mol.Neighbors(atom)) {
    if (!visited[step.atom]) count += CountPaths(mol, step.atom, maxbonds - 1, visited);
  }
  visited[atom] = false;
  return count;
}

TEST(PathAllocation, MillionsOfPathsNeedNoMoreMemoryThanOneBlockForEachLength) {
  const QXChem::QXGraphMol cage = test::MakeCirculant(40, 5, {6});
  constexpr unsigned maxbonds = 13;
  std::vector<bool> visited(cage.NumAtoms());
  // from one atom; a fingerprint may walk from all of them
  ASSERT_GT(CountPaths(cage, 0, maxbonds, visited), 250'000u);
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakePathFP(fp, cage, 1024, 0, 4, 1, 1));  // what perception needs is not counted
  const std::size_t before = numBytes;
  ASSERT_TRUE(QXMakePathFP(fp, cage, 1024, 0, maxbonds, 1, 1));
  EXPECT_LT(numBytes - before, 500'000u);
  // All atoms and all bonds are alike: no more than one bit for each length.
  EXPECT_GT(fp.CountBits(), 10u);
  EXPECT_LE(fp.CountBits(), maxbonds + 1);
}

// Every atom bonded to every other, each its own element.
QXChem::QXGraphMol MakeCluster(unsigned numAtoms) {
  std::vector<unsigned> elements;
  std::vector<test::GraphBond> bonds;
  for (unsigned i = 0; i < numAtoms; ++i) {
    elements.push_back(21 + i);
    for (unsigned j = 0; j < i; ++j) bonds.push_back({j, i});
  }
  return test::MakeGraph(elements, bonds);
}

TEST(PathAllocation, UnhashedPathsThatAreTooShortNeedNeitherMemoryNorTime) {
  QXChem::QXGraphMol withTails = MakeCluster(8);  // the longest path goes from a tail through the cluster
  for (unsigned tail = 8; tail < 11; ++tail) {
    withTails.NewAtom(60 + tail);
    withTails.NewBond(0, tail, 1);
  }
  QXChem::QXGraphMol large = MakeCluster(20);  // has more paths of 19 bonds than could ever be walked
  large.NewAtom(60);
  const struct {
    const QXChem::QXGraphMol& mol;
    unsigned minbonds;
  } cases[] = {{withTails, 9}, {large, 20}};
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeUnhashedPathFP(fp, withTails, 0, 1, 1, 1));  // makes what is made once
  for (const auto& [mol, minbonds] : cases) {
    const std::size_t before = numBytes;
    ASSERT_TRUE(QXMakeUnhashedPathFP(fp, mol, minbonds, 20, 1, 1));
    EXPECT_LT(numBytes - before, 200'000u);
    EXPECT_EQ(QXGetFPText(fp), "");
  }
}

}  // namespace
}  // namespace QXFingrix
