// What the comparison of scores over real fingerprints does not reach: reports, allocations, counts that a
// float cannot hold, and fingerprints of a few bits.

#include "QXFingrix/QXSimilarity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "Allocations.h"
#include "QXFingrix/QXFPType.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using QXTest::Reports;
using QXTest::ReportsOf;

using Scores = std::array<float, 6>;  // in the order of QXSimMeasure

Scores AllScores(const QXFingerPrint& a, const QXFingerPrint& b, float alpha = 1.0F, float beta = 0.0F) {
  return {QXTanimoto(a, b), QXCosine(a, b), QXDice(a, b), QXEuclid(a, b), QXTversky(a, b, alpha, beta),
          QXManhattan(a, b)};
}

QXFingerPrint MakeFP(unsigned numBits, const std::string& firstBits = "") {
  QXFingerPrint fp;
  fp.SetFPTypeBase(QXGetPathFPType(64, 0, 5, 0, 0));
  fp.SetSize(numBits);
  for (unsigned bit = 0; bit < firstBits.size(); ++bit) {
    if (firstBits[bit] == '1') fp.SetBitOn(bit);
  }
  return fp;
}

TEST(Similarity, FewBits) {
  const struct {
    unsigned numBits;
    const char* a;
    const char* b;
    Scores expected;  // Tversky counts how much of a is in b
  } cases[] = {
      {0, "", "", {1, 1, 1, 1, 1, 0}},
      {4, "", "", {1, 1, 1, 1, 1, 0}},
      {4, "1100", "0011", {0, 0, 0, 0, 0, 1}},
      {4, "1100", "", {0, 0, 0, std::sqrt(0.5F), 0, 0.5F}},
      {4, "1000", "1100", {0.5F, 1 / std::sqrt(2.0F), 2 / 3.0F, std::sqrt(0.75F), 1, 0.25F}},
      {4, "1100", "1000", {0.5F, 1 / std::sqrt(2.0F), 2 / 3.0F, std::sqrt(0.75F), 0.5F, 0.25F}},
      {1024, "1000", "0100", {0, 0, 0, std::sqrt(1022 / 1024.0F), 0, 2 / 1024.0F}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(AllScores(MakeFP(c.numBits, c.a), MakeFP(c.numBits, c.b)), c.expected) << c.a << " " << c.b;
  }
}

// 2^24 + 1 bits in a alone, one in b alone, one in both, one in neither. In single precision a is 2^24, and
// adding ones to it one by one leaves it there; only Dice adds in double precision. Another order of the sums
// gives other scores.
TEST(Similarity, SumsAreRoundedTermByTerm) {
  constexpr unsigned many = 1U << 24;
  QXFingerPrint a = MakeFP(many + 4);
  QXFingerPrint b = a;
  std::ranges::fill(a.GetWords().first(many / 64), ~std::uint64_t{0});
  a.SetBitOn(many);
  a.SetBitOn(many + 1);
  b.SetBitOn(many + 1);
  b.SetBitOn(many + 2);
  const Scores expected = {1 / 16777216.0F, 1 / std::sqrt(33554432.0F),
                           2 / 16777220.0F, std::sqrt(2 / 16777216.0F),
                           1 / 8388609.0F,  1.0F};
  EXPECT_EQ(AllScores(a, b, 0.5F, 0.5F), expected);
}

TEST(Similarity, CountsAreWrittenWithOrWithoutTheFourth) {
  const QXFingerPrint a = MakeFP(70, "1110");
  const QXFingerPrint b = MakeFP(70, "0111110");
  unsigned onlyA = 0, onlyB = 0, both = 0, neither = 0;
  EXPECT_TRUE(QXGetBitCounts(a, b, &onlyA, &onlyB, &both, nullptr));
  EXPECT_EQ((std::array{onlyA, onlyB, both}), (std::array{1U, 3U, 2U}));
  EXPECT_TRUE(QXGetBitCounts(a, b, &onlyA, &onlyB, &both, &neither));
  EXPECT_EQ(neither, 64U);
}

TEST(Similarity, RefusedFingerprintsScoreZeroWithOneReport) {
  const QXFingerPrint path = MakeFP(64, "1");
  const QXFingerPrint longer = MakeFP(128, "1");
  QXFingerPrint tree = path;
  tree.SetFPTypeBase(QXGetTreeFPType(64, 0, 4, 0, 0));
  QXFingerPrint typeless = path;
  typeless.SetFPTypeBase(nullptr);

  const std::string ofTanimoto = "Error: QXTanimoto() fingerprint type mismatch!";
  const std::string ofOthers = "Error: fingerprint type mismatch!";
  const std::string ofSizes = "Error: QXGetBitCounts() bit vectors of 64 and 128 bits do not compare";
  const std::string uninitialized = "Warning: QXIsSameFPType() : uninitialized fingerprint type!";
  const struct {
    const QXFingerPrint& other;
    Reports tanimoto;
    Reports others;
  } cases[] = {
      {tree, {ofTanimoto}, {ofOthers}},
      {typeless, {uninitialized, ofTanimoto}, {uninitialized, ofOthers}},
      {longer, {ofSizes}, {ofSizes}},
  };
  for (const auto& c : cases) {
    Scores scores;
    Reports expected = c.tanimoto;
    for (int i = 0; i < 5; ++i) expected.insert(expected.end(), c.others.begin(), c.others.end());
    EXPECT_EQ(ReportsOf([&] { scores = AllScores(path, c.other); }), expected);
    EXPECT_EQ(scores, Scores{});

    unsigned counts[4] = {7, 7, 7, 7};
    EXPECT_EQ(ReportsOf([&] {
                EXPECT_FALSE(QXGetBitCounts(path, c.other, counts, counts + 1, counts + 2, counts + 3));
              }),
              c.others);
    EXPECT_TRUE(std::ranges::all_of(counts, [](unsigned count) { return count == 7; }));
  }
}

TEST(Similarity, BitsAreScoredWithoutAllocation) {
  const QXFingerPrint a = MakeFP(2048, "1101");
  const QXFingerPrint b = MakeFP(2048, "0111");
  AllScores(a, b);  // chooses the kernel
  const std::size_t before = QXTest::numAllocations;
  AllScores(a, b);
  EXPECT_EQ(QXTest::numAllocations, before);
}

}  // namespace
}  // namespace QXFingrix
