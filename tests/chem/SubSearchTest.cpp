// Reports, iterators, sharing and hand-made cases; what matches is compared with RDKit in
// SubSearchAgreementTest.cpp.

#include "QXChem/QXSubSearch.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <functional>
#include <random>
#include <thread>

#include "QXChem/QXPerception.h"
#include "Reports.h"
#include "chem/SharedMolecules.h"

namespace QXChem {
namespace {

std::vector<std::vector<unsigned>> AllMatches(const std::string& smarts, const QXMolBase& mol, bool unique) {
  std::vector<std::vector<unsigned>> matches;
  for (const QXAtomBondSet& match : QXSubSearch(smarts).Match(mol, unique)) {
    matches.emplace_back(match.Atoms().begin(), match.Atoms().end());
  }
  return matches;
}

std::string Repeated(const std::string& text, unsigned count) {
  std::string result;
  for (unsigned i = 0; i < count; ++i) result += text;
  return result;
}

TEST(SubSearch, APatternThatCannotBeTakenIsReportedOnceAndNeverMatches) {
  const struct {
    std::string smarts;
    std::string shown;
    std::string reason;
  } cases[] = {
      {"", "", "no SMARTS"},
      {" C", " C", "no SMARTS"},
      {std::string("C\0C", 3), "C", "byte 0 is not a SMARTS character at byte 2"},
      {"C\x80", "C\x80", "byte 128 is not a SMARTS character at byte 2"},
      {"C(C", "C(C", "unclosed parenthesis at byte 2"},
      {"CC)", "CC)", "unopened parenthesis at byte 3"},
      {"[$(C]", "[$(C]", "unclosed parenthesis at byte 3"},
      {"[C", "[C", "unclosed bracket at byte 1"},
      {"C1CC", "C1CC", "not a SMARTS"},
      {"(C).(C)", "(C).(C)", "not a SMARTS"},
      {"[C-200]", "[C-200]", "charge above 99"},
  };
  const QXGraphMol mol = FromSmiles("CCO");
  for (const auto& [smarts, shown, reason] : cases) {
    const auto use = [&] {
      const QXSubSearch pattern(smarts);
      EXPECT_FALSE(pattern.IsValid());
      EXPECT_EQ(pattern.NumAtoms() + pattern.NumBonds(), 0u);
      EXPECT_FALSE(pattern.SingleMatch(mol));
      EXPECT_FALSE(pattern.Match(mol));
    };
    const QXTest::Reports expected = {"Warning: QXSubSearch::QXSubSearch() : cannot take pattern '" + shown +
                                      "' (" + reason + ")!"};
    EXPECT_EQ(QXTest::ReportsOf(use), expected);
  }
  EXPECT_EQ(QXTest::ReportsOf([] { QXSubSearch("C", 1); }),
            QXTest::Reports{"Warning: QXSubSearch::QXSubSearch() : cannot take pattern 'C' (flags 1 are not "
                            "supported)!"});
}

// Runs work on a thread with as little stack as threads have anywhere by default on desktop systems.
void RunOnSmallStack(std::function<void()> work) {
  constexpr std::size_t numBytes = 512 * 1024;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, numBytes), 0);
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST(SubSearch, LongPatternsAreTakenUpToTheLimitsAndThenRefusedOnASmallStackToo) {
  const auto nested = [](unsigned depth, const std::string& before) {
    std::string smarts = "C";
    for (unsigned i = 0; i < depth; ++i) smarts = "[" + before + "$(" + smarts + ")]";
    return smarts;
  };
  const std::string onAtom = "more than 1000 bytes of conditions on an atom at byte ";
  const struct {
    std::string taken;
    bool matches;
    std::string refused;
    std::string reason;
  } cases[] = {
      {Repeated("*", 10000), false, Repeated("*", 10001), "longer than 10000 bytes"},
      {nested(100, ""), true, nested(101, ""), "more than 100 recursive patterns at byte 303"},
      {"[" + Repeated("$(N),", 99) + "$(C)]", true, "[" + Repeated("$(N),", 100) + "$(C)]",
       "more than 100 recursive patterns at byte 503"},
      {"[" + Repeated("*", 1000) + "]", true, "[" + Repeated("*", 1001) + "]", onAtom + "1002"},
      {"[" + Repeated("N,", 499) + "C]", true, "[" + Repeated("N,", 499) + "Cl,C]", onAtom + "1002"},
      {"[" + Repeated("!N", 500) + "]", true, "[" + Repeated("!N", 501) + "]", onAtom + "1002"},
      {nested(90, "N,O,S,F,P,"), true, nested(91, "N,O,S,F,P,"), onAtom + "1182"},
      {"C" + Repeated("=,", 499) + "-C", true, "C" + Repeated("=,", 500) + "-C",
       "more than 1000 bytes of conditions on a bond at byte 1002"},
  };
  const QXGraphMol mol = FromSmiles("CCO");
  for (const auto& [taken, matches, refused, reason] : cases) {
    RunOnSmallStack([&] { EXPECT_EQ(QXSubSearch(taken).SingleMatch(mol), matches) << taken; });
    const QXTest::Reports expected = {"Warning: QXSubSearch::QXSubSearch() : cannot take pattern '" +
                                      refused + "' (" + reason + ")!"};
    EXPECT_EQ(QXTest::ReportsOf([&] { QXSubSearch pattern(refused); }), expected);
  }
}

// What once took longer than anyone waits: the promise is that these end.
TEST(SubSearch, PatternsThatAreNearlySymmetricAreCompiled) {
  const struct {
    std::string smarts;
    std::string found;
    std::string notFound;
  } cases[] = {
      {Repeated("*.", 11) + "*~*", Repeated("C.", 11) + "CC", Repeated("C.", 10) + "CC"},
      {Repeated("*.", 14) + "*~*", Repeated("C.", 14) + "CC", Repeated("C.", 16) + "C"},
      {Repeated("[#6].", 10) + "[#6]~[#6]", std::string(12, 'C'), std::string(11, 'C') + "OO"},
      {Repeated("[#8].", 11) + "[#8]~*", Repeated("O.", 11) + "CO", Repeated("O.", 10) + "CO"},
      {"*" + Repeated("(~*)", 12) + "~*~*", "[U]" + Repeated("(C)", 12) + "CC", "[U]" + Repeated("(C)", 14)},
      {Repeated("*.", 15) + "*", std::string(16, 'C'), std::string(15, 'C')},
  };
  for (const auto& [smarts, found, notFound] : cases) {
    const QXSubSearch pattern(smarts);
    EXPECT_TRUE(pattern.SingleMatch(FromSmiles(found))) << smarts;
    EXPECT_FALSE(pattern.SingleMatch(FromSmiles(notFound))) << smarts;
  }
}

TEST(SubSearch, RecursivePatternsInEachOtherCostNoMoreThanBesideEachOther) {
  const QXGraphMol fullerene = FromSmiles(
      "c12c3c4c5c1c1c6c7c2c2c8c3c3c9c4c4c%10c5c5c1c1c6c6c%11c7c2c2c7c8c3c3c8c9c4c4c9c%10c5c5c1c1c6c6c%"
      "11c2c2c7c3"
      "c3c8c4c4c9c5c1c1c6c2c3c41");
  ASSERT_EQ(fullerene.NumAtoms(), 60u);
  for (const bool hasEnd : {false, true}) {
    std::string smarts = hasEnd ? "[C,c]" : "[*+7]";
    for (unsigned depth = 0; depth < 30; ++depth) smarts = "[$(*~[!$(*~[+6])]~" + smarts + ")]";
    EXPECT_EQ(AllMatches(smarts, fullerene, true).size(), hasEnd ? 60u : 0u);
  }
}

TEST(SubSearch, AtomsThatAreAlikeAroundHubsAreNotTriedInAllOrders) {
  QXGraphMol hubs;  // five atoms, each bound to the sixty others
  for (unsigned i = 0; i < 65; ++i) hubs.NewAtom(6);
  for (unsigned hub = 0; hub < 5; ++hub) {
    for (unsigned i = 5; i < 65; ++i) hubs.NewBond(hub, i, 1);
  }
  const QXSubSearchTarget target(hubs);
  EXPECT_TRUE(QXSubSearch("*" + Repeated("@*", 10)).SingleMatch(target));
  EXPECT_FALSE(QXSubSearch("*" + Repeated("@*", 11)).SingleMatch(target));
  EXPECT_FALSE(
      QXSubSearch(Repeated("*(@*)(@*)", 7) + "[$(*" + Repeated("@*", 11) + ")]").SingleMatch(target));
}

// SingleMatch leaves out atoms that are like others, Match does not.
TEST(SubSearch, LeavingOutAtomsThatAreAlikeLosesNoMatch) {
  std::mt19937 random(1);
  const auto below = [&](unsigned end) { return static_cast<unsigned>(random() % end); };
  std::vector<QXSubSearch> patterns;
  for (const char* smarts :
       {"C~*~C~*~C", "*1~*~*~*~1", "[U]~*~[Fe]", "*(~[C])(~[C])~*(~C)~[U,Fe]", "C.C~[Fe].C", "[C+]~*~[C+]~*",
        "C1~[Fe]~C~[U]~1", "[$(*(~C)~[Fe])]~[!$(*~[U])]", "[Fe]~*(~[Fe])~[Fe]", "*~*~*~*~*~*~*",
        "[CD2]~*~[UD3]", "[v2]~*~[v3]", "C1~*~C~*~1.[Fe]~*~[U]", "[C+].[C+].[U]~*~[U]", "*1~*2~*~*~1~*~*~2",
        "[r4]~[r4]~*~[!r4]"}) {
    patterns.emplace_back(smarts);
  }
  unsigned numFound = 0;
  unsigned numTried = 0;
  for (unsigned i = 0; i < 150; ++i) {
    QXGraphMol mol;
    constexpr unsigned numHubs = 3;
    constexpr unsigned numLeaves = 17;
    for (unsigned atom = 0; atom < numHubs + numLeaves; ++atom) {
      mol.NewAtom(std::array{6U, 6U, 6U, 26U, 92U}[below(5)])->SetFormalCharge(below(8) == 0);
    }
    for (unsigned leaf = numHubs; leaf < numHubs + numLeaves; ++leaf) {
      mol.NewBond(0, leaf, 1 + (below(9) == 0));
      for (unsigned hub = 1; hub < numHubs; ++hub) {
        if (below(3 + i % 3) == 0) mol.NewBond(hub, leaf, 1);
      }
    }
    const QXSubSearchTarget target(mol);
    for (const QXSubSearch& pattern : patterns) {
      const bool expected = static_cast<bool>(pattern.Match(target));
      EXPECT_EQ(pattern.SingleMatch(target), expected) << pattern.GetSmarts() << " " << i;
      numFound += expected;
      ++numTried;
    }
  }
  EXPECT_GT(numFound, numTried / 5);
  EXPECT_LT(numFound, 4 * numTried / 5);
}

TEST(SubSearch, MatchesListAtomsAndBondsInTheOrderOfThePattern) {
  const QXGraphMol mol = FromSmiles("OCCN");
  const QXSubSearch pattern("N-C-C-O some name");
  EXPECT_EQ(pattern.NumAtoms(), 4u);
  EXPECT_EQ(pattern.NumBonds(), 3u);
  const auto matches = pattern.Match(mol);
  ASSERT_TRUE(matches);
  EXPECT_TRUE(std::ranges::equal(matches->Atoms(), std::vector<unsigned>{3, 2, 1, 0}));
  EXPECT_TRUE(std::ranges::equal(matches->Bonds(), std::vector<unsigned>{2, 1, 0}));
}

TEST(SubSearch, UniqueMatchesAreSetsOfAtoms) {
  const QXGraphMol ethane = FromSmiles("CC");
  EXPECT_EQ(AllMatches("CC", ethane, false), (std::vector<std::vector<unsigned>>{{0, 1}, {1, 0}}));
  EXPECT_EQ(AllMatches("CC", ethane, true), (std::vector<std::vector<unsigned>>{{0, 1}}));
  const QXGraphMol benzene = FromSmiles("c1ccccc1");
  EXPECT_EQ(AllMatches("c1ccccc1", benzene, false).size(), 12u);
  EXPECT_EQ(AllMatches("c1ccccc1", benzene, true).size(), 1u);
}

TEST(SubSearch, TheSearchGoesNoFurtherThanAsked) {
  QXGraphMol chain;
  for (unsigned i = 0; i < 200; ++i) chain.NewAtom(6);
  for (unsigned i = 1; i < 200; ++i) chain.NewBond(i - 1, i, 1);
  const QXSubSearchTarget target(chain);
  // Its sets of atoms could never be listed.
  auto matches = QXSubSearch("C.C.C.C.C.C.C.C").Match(target, true);
  for (unsigned i = 0; i < 1000; ++i, ++matches) ASSERT_TRUE(matches);
}

TEST(SubSearch, CopiesOfAnIteratorGoOnIndependently) {
  const QXGraphMol mol = FromSmiles("CCCCCC");
  const QXSubSearch pattern("C[$(CC)]");
  for (const bool unique : {false, true}) {
    auto matches = pattern.Match(mol, unique);
    ++matches;
    auto copy = matches;
    std::size_t numLeft = 0;
    for (; copy; ++copy) ++numLeft;
    std::size_t numAgain = 0;
    for (; matches; ++matches) ++numAgain;
    EXPECT_EQ(numLeft, numAgain);
    matches.ToFirst();
    std::size_t numAll = 0;
    for (; matches; ++matches) ++numAll;
    EXPECT_EQ(numAll, numAgain + 1);
  }
}

TEST(SubSearch, WhatRDKitLeavesOutIsFound) {
  // It looks at no more than 1,000 matches of a recursive pattern: [$(C.N)] would miss carbons here.
  const QXGraphMol many = FromSmiles(std::string(60, 'C') + std::string(40, 'N'));
  EXPECT_EQ(AllMatches("[$(C.N)]", many, true).size(), 60u);
  // An arrow has a direction, whatever the elements at its ends.
  const QXGraphMol dative = FromSmiles("[NH3]->[Fe]");
  EXPECT_EQ(AllMatches("*->*", dative, false), (std::vector<std::vector<unsigned>>{{0, 1}}));
  EXPECT_EQ(AllMatches("*<-*", dative, false), (std::vector<std::vector<unsigned>>{{1, 0}}));
}

TEST(SubSearch, AGraphMadeByHandIsPerceivedOnACopy) {
  QXGraphMol benzene;
  for (unsigned i = 0; i < 6; ++i) benzene.NewAtom(6)->SetImplicitHCount(1);
  for (unsigned i = 0; i < 6; ++i) benzene.NewBond(i, (i + 1) % 6, 1 + i % 2);
  EXPECT_TRUE(QXSubSearch("c1ccccc1").SingleMatch(benzene));
  EXPECT_FALSE(benzene.IsPerceived(QXPerceived::Rings));
  EXPECT_EQ(AllMatches("[c;r6;R1;^2]", benzene, true).size(), 6u);
}

TEST(SubSearch, MoleculesWithoutAtomsMatchNothing) {
  QXGraphMol mol;
  QXSubSearchTarget target;
  const QXSubSearch pattern("*");
  EXPECT_FALSE(pattern.SingleMatch(mol));
  EXPECT_FALSE(pattern.SingleMatch(target));
  mol.Invalidate();
  EXPECT_FALSE(pattern.SingleMatch(mol));
  EXPECT_FALSE(pattern.Match(mol));
}

TEST(SubSearch, RingsThatCannotBeCountedAreReportedAndNotMatched) {
  QXGraphMol ring;
  constexpr unsigned size = 20001;
  for (unsigned i = 0; i < size; ++i) ring.NewAtom(6)->SetImplicitHCount(2);
  for (unsigned i = 0; i < size; ++i) ring.NewBond(i, (i + 1) % size, 1);
  for (unsigned i = 0; i < size; ++i) ring.GetAtom(i)->SetAromatic(false);
  for (unsigned i = 0; i < size; ++i) ring.GetAtom(i)->SetHyb(3);
  EXPECT_TRUE(QXSubSearch("[r20001]").SingleMatch(ring));
  const QXTest::Reports expected = {
      "Warning: QXSubSearch::SingleMatch() : cannot match '[R2]' (too large for ring perception: 1 rings "
      "among 20001 connected atoms)!"};
  EXPECT_EQ(QXTest::ReportsOf([&] { EXPECT_FALSE(QXSubSearch("[R2]").SingleMatch(ring)); }), expected);
}

TEST(SubSearch, OneObjectAndOneTargetServeSeveralThreads) {
  const QXSubSearch pattern("[$([#6;R1;r6]~[$([#7]~*)])]~*");
  std::vector<QXGraphMol> mols;
  std::vector<QXSubSearchTarget> targets;
  std::vector<std::size_t> expected;
  std::ifstream stream(QX_SOURCE_DIR "/data/molecules.smi");
  for (std::string line; mols.size() < 300 && std::getline(stream, line);) mols.push_back(FromSmiles(line));
  for (const QXGraphMol& mol : mols) {
    targets.emplace_back(mol);
    expected.push_back(AllMatches(pattern.GetSmarts(), mol, true).size());
  }
  std::atomic<unsigned> numWrong = 0;
  const auto work = [&] {
    for (std::size_t i = 0; i < mols.size(); ++i) {
      std::size_t count = 0;
      for (auto match = pattern.Match(targets[i], true); match; ++match) ++count;
      numWrong += count != expected[i];
      numWrong += pattern.SingleMatch(targets[i]) != (count > 0);
      numWrong += pattern.SingleMatch(mols[i]) != (count > 0);
    }
  };
  std::vector<std::jthread> threads;
  for (unsigned i = 0; i < 4; ++i) threads.emplace_back(work);
  threads.clear();
  EXPECT_EQ(numWrong, 0u);
}

}  // namespace
}  // namespace QXChem
