// The global allocator fails when told to; what a failed call leaves behind must still be a molecule.

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <thread>

#include "Allocations.h"
#include "QXChem/QXLingo.h"
#include "QXChem/QXPerception.h"
#include "QXChem/QXSubSearch.h"
#include "chem/SharedMolecules.h"

namespace QXChem {
namespace {

// Calls once for every allocation the work does, each time failing at another one, until all succeed; returns
// how often it failed.
template <class Work, class Check>
unsigned FailAtEveryAllocation(Work work, Check check) {
  for (unsigned n = 0;; ++n) {
    bool failed = false;
    QXTest::failAt = QXTest::numAllocations + n + 1;
    try {
      work();
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    QXTest::failAt = 0;
    check();
    if (!failed) return n;
  }
}

void ExpectConsistent(const QXMolBase& mol) {
  std::size_t numNeighbors = 0;
  for (const QXAtomBase& atom : mol.Atoms()) {
    ASSERT_EQ(&atom.GetParent(), &mol);
    numNeighbors += atom.GetNeighbors().size();
  }
  for (const QXBondBase& bond : mol.Bonds()) ASSERT_EQ(&bond.GetParent(), &mol);
  EXPECT_EQ(numNeighbors, 2u * mol.NumBonds());
}

TEST(OutOfMemory, FailedCopyOrEditLeavesAMoleculeOfItsOwn) {
  const QXGraphMol source = FromSmiles("[CH3:1]C(=O)Oc1ccccc1C(=O)O");
  QXGraphMol copy;
  EXPECT_GT(FailAtEveryAllocation(
                [&] {
                  copy = QXGraphMol();
                  copy.NewAtom(6);
                  copy = source;
                },
                [&] { ExpectConsistent(copy); }),
            0u);
  EXPECT_EQ(copy.NumAtoms(), source.NumAtoms());

  QXGraphMol grown;
  EXPECT_GT(FailAtEveryAllocation(
                [&] {
                  for (unsigned i = 0; i < 9; ++i) {
                    grown.NewAtom(6)->SetMapIdx(i);
                    if (grown.NumAtoms() > 1) grown.NewBond(grown.NumAtoms() - 2, grown.NumAtoms() - 1, 1);
                  }
                },
                [&] { ExpectConsistent(grown); }),
            0u);
}

// The buffers that a thread keeps must not remember a call that failed.
TEST(OutOfMemory, PerceptionAfterAFailureGivesWhatItGivesWithoutOne) {
  QXGraphMol ring = FromSmiles("C1" + std::string(300, 'C') + "C1C(C)N");
  const auto perceive = [](QXGraphMol& mol) {
    mol.ForgetPerceived(QXPerceived::Rings);
    mol.ForgetPerceived(QXPerceived::Chirality);
    QXPerceiveSymmetry(mol, true, true);
  };
  QXGraphMol expected = ring;
  perceive(expected);
  QXGraphMol small = FromSmiles("C1CC1CN");
  unsigned numFailed = 0;
  std::thread([&] {  // a new one has no buffers yet
    numFailed = FailAtEveryAllocation([&] { perceive(ring); },
                                      [&] {
                                        perceive(small);
                                        EXPECT_FALSE(small.GetAtom(3)->IsInRing());
                                        EXPECT_EQ(small.GetAtom(1)->GetSymmetryClass(),
                                                  small.GetAtom(0)->GetSymmetryClass());
                                      });
  })
      .join();
  EXPECT_GT(numFailed, 5u);
  for (unsigned i = 0; i < ring.NumAtoms(); ++i) {
    EXPECT_EQ(ring.GetAtom(i)->GetSymmetryClass(), expected.GetAtom(i)->GetSymmetryClass()) << i;
    EXPECT_EQ(ring.GetAtom(i)->IsInRing(), expected.GetAtom(i)->IsInRing()) << i;
  }
}

TEST(OutOfMemory, LingosAreCountedWithoutMemory) {
  const std::string small = "CCN(CC)C(=O)c0ccccc0";
  std::string large;  // more different Lingos than are counted on the stack
  for (unsigned i = 0; i < 2000; ++i) large += static_cast<char>('!' + i * i / 7 % 90);
  std::unique_ptr<QXLingoSim> profile;
  for (const std::string& text : {small, large}) {
    EXPECT_GT(FailAtEveryAllocation([&] { profile = std::make_unique<QXLingoSim>(text, 1); }, [] {}), 2u);
    unsigned onlyProfile, onlyText, both;
    ASSERT_TRUE(profile->CountTerms(text, &onlyProfile, &onlyText, &both));
    const std::size_t before = QXTest::numAllocations;
    ASSERT_TRUE(profile->CountTerms(text, &onlyProfile, &onlyText, &both));
    EXPECT_EQ(QXTest::numAllocations, before);
    EXPECT_EQ(both, text.size() - 3);
  }
}

// Searches that stop at the first match keep their buffers.
TEST(OutOfMemory, SingleMatchAllocatesOnlyAtFirst) {
  const QXSubSearch patterns[] = {QXSubSearch("c1ccccc1-[$(C(=O)[$([O-]),$([OH])])]"), QXSubSearch("[r6]~O"),
                                  QXSubSearch("C.C.O"), QXSubSearch("N")};
  const QXGraphMol mol = FromSmiles("CC(=O)Oc1ccccc1C(=O)O");
  const QXSubSearchTarget target(mol);
  const auto match = [&] {
    unsigned numFound = 0;
    for (const QXSubSearch& pattern : patterns) numFound += pattern.SingleMatch(target);
    return numFound;
  };
  match();
  const std::size_t before = QXTest::numAllocations;
  EXPECT_EQ(match(), 3u);
  EXPECT_EQ(QXTest::numAllocations, before);
}

}  // namespace
}  // namespace QXChem
