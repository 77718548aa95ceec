#include "QXSystem/QXHitList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace QXSystem {
namespace {

struct Hit {
  unsigned index;
  double score;
  bool operator==(const Hit&) const = default;
};

using HitList = QXHitList<Hit>;

constexpr auto IsBigger = [](const Hit& a, const Hit& b) { return a.score > b.score; };
constexpr auto IsSmaller = [](const Hit& a, const Hit& b) { return a.score < b.score; };
constexpr auto IsEarlier = [](const Hit& a, const Hit& b) { return a.index < b.index; };

// All hits that beat the sentinel, fully sorted, cut to the limit.
std::vector<Hit> Reference(std::vector<Hit> hits, unsigned limit, HitList::Comparator better,
                           const Hit& sentinel) {
  std::erase_if(hits, [&](const Hit& hit) { return !better(hit, sentinel); });
  std::ranges::sort(hits, [better](const Hit& a, const Hit& b) {
    return better(a, b) || (!better(b, a) && a.index < b.index);
  });
  if (hits.size() > limit) hits.resize(limit);
  return hits;
}

// Few distinct scores, so that ties are everywhere, the limit's edge included.
std::vector<Hit> RandomHits(unsigned numHits, unsigned numScores, std::mt19937& random) {
  std::vector<Hit> hits(numHits);
  for (unsigned i = 0; i < numHits; ++i) hits[i] = {i, static_cast<double>(random() % numScores) / numScores};
  return hits;
}

TEST(HitListTest, ResultIsTheSortedBestWhateverTheOrderOfOffers) {
  std::mt19937 random(1);
  for (int round = 0; round < 400; ++round) {
    const unsigned numHits = static_cast<unsigned>(random() % 300);
    const unsigned limit = static_cast<unsigned>(random() % 40);  // 0 keeps nothing
    const bool isDescending = random() % 2 == 0;
    const HitList::Comparator better = isDescending ? +IsBigger : +IsSmaller;
    const Hit sentinel{4294967295u, isDescending ? 0.25 : 0.75};
    std::vector<Hit> hits = RandomHits(numHits, 1 + static_cast<unsigned>(random() % 12), random);
    const std::vector<Hit> expected = Reference(hits, limit, better, sentinel);
    for (const bool isShuffled : {false, true}) {
      if (isShuffled) std::ranges::shuffle(hits, random);
      HitList list(limit, better, IsEarlier, sentinel);
      for (const Hit& hit : hits) {
        list.AddHit(hit);
        ASSERT_LE(list.NumHits(), 2 * limit);
      }
      list.Sort();
      EXPECT_EQ(list.GetHits(), expected);
    }
  }
}

TEST(HitListTest, BarIsTheSentinelUntilACutThenTheWorstKept) {
  const Hit sentinel{4294967295u, 0.5};
  HitList list(2, IsBigger, IsEarlier, sentinel);
  EXPECT_FALSE(list.AddHit({0, 0.5}));
  for (unsigned i = 0; i < 4; ++i) EXPECT_TRUE(list.AddHit({i, 0.6 + 0.1 * i}));
  EXPECT_EQ(list.GetBar(), sentinel);
  EXPECT_TRUE(list.AddHit({4, 0.55}));  // the fifth: more than twice the limit
  EXPECT_EQ(list.NumHits(), 2u);
  EXPECT_EQ(list.GetBar(), (Hit{2, 0.6 + 0.1 * 2}));
  EXPECT_FALSE(list.AddHit({9, 0.6 + 0.1 * 2}));  // as good but later
  EXPECT_TRUE(list.AddHit({1, 0.6 + 0.1 * 2}));   // as good and earlier
}

TEST(HitListTest, SortThatDropsHitsRaisesTheBar) {
  HitList list(2, IsBigger, IsEarlier, {4294967295u, 0.0});
  for (unsigned i = 0; i < 3; ++i) list.AddHit({i, 0.1 * (i + 1)});
  list.Sort();
  EXPECT_EQ(list.GetHits(), (std::vector<Hit>{{2, 0.1 * 3}, {1, 0.1 * 2}}));
  EXPECT_EQ(list.GetBar().index, 1u);
  EXPECT_FALSE(list.AddHit({3, 0.15}));
}

TEST(HitListTest, LargestLimitReservesLittleAndKeepsAll) {
  HitList list(4294967295u, IsBigger, IsEarlier, {4294967295u, 0.0});
  EXPECT_LE(list.GetHits().capacity(), 10000u);
  std::mt19937 random(2);
  const std::vector<Hit> hits = RandomHits(20000, 50, random);
  for (const Hit& hit : hits) list.AddHit(hit);
  list.Sort();
  EXPECT_EQ(list.GetHits(), Reference(hits, 4294967295u, IsBigger, {0, 0.0}));
}

TEST(HitListTest, ScoresThatCompareWithNothingAreNeverKept) {
  HitList list(1, IsBigger, IsEarlier, {4294967295u, 0.0});
  for (unsigned i = 5; i < 10; ++i) list.AddHit({i, 0.5});
  EXPECT_FALSE(list.AddHit({0, NAN}));
  list.Sort();
  EXPECT_EQ(list.GetHits(), (std::vector<Hit>{{5, 0.5}}));
}

TEST(HitListTest, HitsAreReadThroughAnIteratorOrTakenOut) {
  HitList list(3, IsBigger, IsEarlier, {4294967295u, 0.0});
  for (unsigned i = 0; i < 3; ++i) list.AddHit({i, 0.5});
  list.Sort();
  QXIter<Hit> iter = list.GetIter();
  EXPECT_EQ(list.TakeHits().size(), 3u);
  EXPECT_EQ(list.NumHits(), 0u);
  unsigned expected = 0;
  for (const Hit& hit : iter) EXPECT_EQ(hit.index, expected++);
  EXPECT_EQ(expected, 3u);
}

}  // namespace
}  // namespace QXSystem
