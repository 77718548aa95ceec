#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace QXFingrix {

/// Memory for words that are never given back one by one and never move: it grows by chunks. What is taken
/// in a row lies side by side until a chunk is full.
class WordArena {
 public:
  /// Room for numWords words, not initialised.
  /// Errors   std::bad_alloc, nothing taken.
  std::uint64_t* Take(std::size_t numWords);

 private:
  std::uint64_t* AddChunk(std::size_t numWords);

  std::vector<std::unique_ptr<std::uint64_t[]>> chunks_;
  std::uint64_t* next_ = nullptr;  // in the chunk that is being filled
  std::size_t numLeft_ = 0;
  std::size_t numReserved_ = 0;  // words of all chunks
};

}  // namespace QXFingrix
