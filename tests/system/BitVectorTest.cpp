#include "QXSystem/QXBitVector.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

#include "Reports.h"

namespace QXSystem {
namespace {

using namespace QXTest;

const std::vector<unsigned> sizes = {0, 1, 7, 8, 9, 63, 64, 65, 127, 128, 129, 166, 1000, 4096};

QXBitVector RandomBits(unsigned size, std::mt19937& random) {
  QXBitVector bits(size);
  for (unsigned i = 0; i < size; ++i) {
    if (random() % 3 == 0) bits.SetBitOn(i);
  }
  return bits;
}

std::vector<bool> ToBools(const QXBitVector& bits) {
  std::vector<bool> result(bits.GetSize());
  for (unsigned i = 0; i < bits.GetSize(); ++i) result[i] = bits.IsBitOn(i);
  return result;
}

unsigned CountOn(const std::vector<bool>& bools) {
  return static_cast<unsigned>(std::accumulate(bools.begin(), bools.end(), 0));
}

// What the word-wise engines rely on.
void ExpectTailIsZero(const QXBitVector& bits) {
  unsigned numInWords = 0;
  for (const std::uint64_t word : bits.GetWords()) numInWords += static_cast<unsigned>(std::popcount(word));
  EXPECT_EQ(numInWords, CountOn(ToBools(bits))) << "at size " << bits.GetSize();
}

TEST(BitVectorTest, RandomEditsMatchAVectorOfBools) {
  std::mt19937 random(1);
  for (const unsigned size : sizes) {
    QXBitVector bits(size);
    std::vector<bool> model(size);
    for (int step = 0; step < 300 && size > 0; ++step) {
      const unsigned bit = static_cast<unsigned>(random() % size);
      switch (random() % 8) {
        case 0:
          bits.NegateBits(), model.flip();
          break;
        case 1:
          bits.SetBitOff(bit), model[bit] = false;
          break;
        case 2:
          bits.ToggleBit(bit), model[bit] = !model[bit];
          break;
        default:
          bits.SetBitOn(bit), model[bit] = true;
      }
    }
    EXPECT_EQ(ToBools(bits), model);
    EXPECT_EQ(bits.CountBits(), CountOn(model));
    ExpectTailIsZero(bits);
    std::vector<bool> visited(size);
    for (int bit = bits.FirstBit(); bit >= 0; bit = bits.NextBit(static_cast<unsigned>(bit))) {
      visited.at(static_cast<std::size_t>(bit)) = true;
    }
    EXPECT_EQ(visited, model);
    bits.ClearBits();
    EXPECT_EQ(bits.CountBits(), 0u);
  }
}

TEST(BitVectorTest, IndicesOutsideAreOffAndIgnored) {
  for (const unsigned size : sizes) {
    QXBitVector bits(size);
    for (const unsigned bit : {size, size + 1, size + 64, UINT_MAX}) {
      bits.SetBitOn(bit);
      bits.ToggleBit(bit);
      bits.SetBitOff(bit);
      bits.SetBitOn(bit);
      EXPECT_FALSE(bits.IsBitOn(bit));
      EXPECT_EQ(bits.NextBit(bit), -1);
    }
    EXPECT_EQ(bits.CountBits(), 0u);
    EXPECT_EQ(bits.FirstBit(), -1);
  }
}

TEST(BitVectorTest, ResizingKeepsCommonBitsAndClearsNewOnes) {
  std::mt19937 random(3);
  for (const unsigned from : sizes) {
    for (const unsigned to : sizes) {
      QXBitVector bits = RandomBits(from, random);
      bits.NegateBits();
      std::vector<bool> model = ToBools(bits);
      ASSERT_TRUE(bits.SetSize(to));
      model.resize(to);
      EXPECT_EQ(ToBools(bits), model) << from << " to " << to;
      ExpectTailIsZero(bits);
      ASSERT_TRUE(bits.SetSize(from));  // bits that were cut off do not come back
      model.resize(from);
      EXPECT_EQ(ToBools(bits), model) << from << " to " << to << " and back";
    }
  }
}

TEST(BitVectorTest, ReusedVectorKeepsItsMemory) {
  QXBitVector bits(4096);
  const auto* memory = bits.GetData();
  bits.SetSize(40);
  bits.ClearBits();
  bits.SetSize(4096);
  EXPECT_EQ(bits.GetData(), memory);
  bits = QXBitVector(static_cast<const QXBitVector&>(QXBitVector(2048)));
  const auto* moved = bits.GetData();
  const QXBitVector other(1024);
  bits = other;
  EXPECT_EQ(bits.GetData(), moved);
}

TEST(BitVectorTest, SizeAboveIntMaxIsReportedAndRefused) {
  QXBitVector bits(100);
  bits.SetBitOn(99);
  const Reports report = {"Error: Max size for an QXBitVector is INT_MAX"};
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(bits.SetSize(static_cast<unsigned>(INT_MAX) + 1)); }), report);
  EXPECT_EQ(bits.GetSize(), 100u);
  EXPECT_TRUE(bits.IsBitOn(99));
  EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXBitVector(UINT_MAX).GetSize(), 64u); }), report);
}

TEST(BitVectorTest, CopiesAreIndependentAndMovedFromVectorsAreAsNew) {
  std::mt19937 random(4);
  for (const unsigned from : sizes) {
    for (const unsigned to : sizes) {
      const QXBitVector source = RandomBits(from, random);
      QXBitVector copy(source);
      QXBitVector assigned = RandomBits(to, random);
      assigned = source;
      const QXBitVector& self = assigned;
      assigned = self;
      EXPECT_TRUE(copy == source && assigned == source);
      copy.NegateBits();
      EXPECT_TRUE(assigned == source);
      EXPECT_EQ(copy == source, from == 0);

      QXBitVector moved(std::move(assigned));
      EXPECT_TRUE(moved == source);
      EXPECT_TRUE(assigned == QXBitVector());  // NOLINT(bugprone-use-after-move): its state is promised
      QXBitVector target = RandomBits(to, random);
      target = std::move(moved);
      EXPECT_TRUE(target == source);
      EXPECT_TRUE(moved == QXBitVector());  // NOLINT(bugprone-use-after-move)
    }
  }
}

TEST(BitVectorTest, CombiningAndCountingMatchBitByBit) {
  std::mt19937 random(5);
  for (const unsigned size : sizes) {
    const QXBitVector a = RandomBits(size, random);
    const QXBitVector b = RandomBits(size, random);
    QXBitVector conjunction = a;
    QXBitVector disjunction = a;
    QXBitVector difference = a;
    conjunction &= b;
    disjunction |= b;
    difference ^= b;
    std::vector<unsigned> expected(4);
    for (unsigned i = 0; i < size; ++i) {
      EXPECT_EQ(conjunction.IsBitOn(i), a.IsBitOn(i) && b.IsBitOn(i));
      EXPECT_EQ(disjunction.IsBitOn(i), a.IsBitOn(i) || b.IsBitOn(i));
      EXPECT_EQ(difference.IsBitOn(i), a.IsBitOn(i) != b.IsBitOn(i));
      ++expected[(a.IsBitOn(i) ? 0 : 2) + (b.IsBitOn(i) ? 0 : 1)];
    }
    unsigned onlyA = 0, onlyB = 0, both = 0, neither = 0;
    ASSERT_TRUE(QXGetBitCounts(a, b, &onlyA, &onlyB, &both, &neither));
    EXPECT_EQ(std::vector({both, onlyA, onlyB, neither}), expected);
    onlyA = onlyB = both = 0;
    ASSERT_TRUE(QXGetBitCounts(a, b, &onlyA, &onlyB, &both));
    EXPECT_EQ(std::vector({both, onlyA, onlyB, neither}), expected);
  }
}

TEST(BitVectorTest, DifferentSizesAreUnequalAndDoNotCombineOrCompare) {
  QXBitVector bits(10);
  bits.SetBitOn(3);
  unsigned onlyA = 5, onlyB = 6, both = 7, neither = 8;
  const Reports reports = ReportsOf([&] {
    bits &= QXBitVector(11);
    bits |= QXBitVector(9);
    bits ^= QXBitVector(100);
    EXPECT_FALSE(QXGetBitCounts(bits, QXBitVector(11), &onlyA, &onlyB, &both, &neither));
    EXPECT_FALSE(QXBitVector(63) == QXBitVector(64));
  });
  EXPECT_EQ(bits.CountBits(), 1u);
  EXPECT_EQ(std::vector({onlyA, onlyB, both, neither}), (std::vector{5u, 6u, 7u, 8u}));
  ASSERT_EQ(reports.size(), 4u);
  for (const std::string& report : reports) EXPECT_TRUE(report.starts_with("Error: ")) << report;
  EXPECT_EQ(reports[3], "Error: QXGetBitCounts() bit vectors of 10 and 11 bits do not compare");
}

TEST(BitVectorTest, BytesWordsAndHexTextHaveTheLowestBitFirst) {
  QXBitVector bits(70);
  for (const unsigned bit : {0, 11, 69}) bits.SetBitOn(bit);
  EXPECT_EQ(bits.ToHexString(), "010800000000000020");
  EXPECT_EQ(std::vector(bits.GetWords().begin(), bits.GetWords().end()),
            (std::vector<std::uint64_t>{0x801, 0x20}));
  std::mt19937 random(7);
  for (const unsigned size : sizes) {
    const QXBitVector source = RandomBits(size, random);
    QXBitVector target = RandomBits(size, random);
    EXPECT_TRUE(target.FromHexString(source.ToHexString()));
    EXPECT_TRUE(target == source);
  }
}

TEST(BitVectorTest, BadHexTextIsRefusedUnchanged) {
  QXBitVector bits(20);
  ASSERT_TRUE(bits.FromHexString("AbCd0f"));
  for (const char* text :
       {"", "abcd0", "abcd0f0", "abcd0f00", "abcd10", "abcdff", "abcg0f", "0xcd0f", " bcd0f"}) {
    EXPECT_FALSE(bits.FromHexString(text)) << text;
  }
  EXPECT_EQ(bits.ToHexString(), "abcd0f");
}

}  // namespace
}  // namespace QXSystem
