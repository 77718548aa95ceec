// Indices are distinct, so a hit's place in their order is the number of smaller ones: marks in a bit set, and
// the number of marks before each of its words.

#include "database/CutoffHits.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace QXFingrix {

void CutoffHits::Sort() {
  if (std::ranges::is_sorted(hits_, {}, &QXSimScore::GetIdx)) return;
  struct Marks {
    std::uint64_t bits = 0;
    unsigned numBefore = 0;
  };
  const unsigned last = std::ranges::max_element(hits_, {}, &QXSimScore::GetIdx)->GetIdx();
  std::vector<Marks> marks(last / 64 + 1);
  for (const QXSimScore& hit : hits_) marks[hit.GetIdx() / 64].bits |= std::uint64_t{1} << hit.GetIdx() % 64;
  unsigned numMarks = 0;
  for (Marks& word : marks) {
    word.numBefore = numMarks;
    numMarks += static_cast<unsigned>(std::popcount(word.bits));
  }
  std::vector<QXSimScore> sorted(hits_.size());
  for (const QXSimScore& hit : hits_) {
    const Marks& word = marks[hit.GetIdx() / 64];
    const std::uint64_t smaller = (std::uint64_t{1} << hit.GetIdx() % 64) - 1;
    sorted[word.numBefore + static_cast<unsigned>(std::popcount(word.bits & smaller))] = hit;
  }
  hits_ = std::move(sorted);
}

}  // namespace QXFingrix
