#include "QXSystem/QXBitLists.h"

#include <algorithm>
#include <bit>

namespace QXSystem {

QXBitLists::QXBitLists(const std::uint64_t* vectors, std::size_t stride, std::size_t num,
                       std::size_t numWords)
    : num_(num), numWords_(numWords), numSlices_((numWords + sliceWords - 1) / sliceWords) {
  ends_.reserve(num * numSlices_ + 1);
  ends_.push_back(0);
  for (std::size_t v = 0; v < num; ++v) {
    for (std::size_t begin = 0; begin < numWords; begin += sliceWords) {
      const std::size_t end = std::min(begin + sliceWords, numWords);
      for (std::size_t w = begin; w < end; ++w) {
        for (std::uint64_t word = vectors[v * stride + w]; word != 0; word &= word - 1) {
          bits_.push_back(static_cast<std::uint16_t>(64 * (w - begin) + std::countr_zero(word)));
        }
      }
      bits_.resize((bits_.size() + padding - 1) / padding * padding, sliceBits);
      ends_.push_back(bits_.size());
    }
  }
}

}  // namespace QXSystem
