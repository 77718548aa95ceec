// A chunk is as large as all before it, so that there are few, but bounded, so that little of the last one is
// wasted. What would fill a good part of a chunk gets one of its own and leaves the current one as it is.

#include "database/WordArena.h"

#include <algorithm>

namespace QXFingrix {

namespace {

constexpr std::size_t minChunkWords = 64;
constexpr std::size_t maxChunkWords = std::size_t{1} << 20;
constexpr std::size_t lineBytes = 64;  // chunks start at cache lines

}  // namespace

std::uint64_t* WordArena::Take(std::size_t numWords) {
  if (numWords > numLeft_) {
    const std::size_t chunkWords = std::clamp(numReserved_, minChunkWords, maxChunkWords);
    if (numWords > chunkWords / 8) return AddChunk(numWords);
    next_ = AddChunk(chunkWords);
    numLeft_ = chunkWords;
  }
  std::uint64_t* const taken = next_;
  next_ += numWords;
  numLeft_ -= numWords;
  return taken;
}

std::uint64_t* WordArena::AddChunk(std::size_t numWords) {
  std::size_t bytes = (numWords + lineBytes / 8) * 8;
  chunks_.emplace_back();
  try {
    chunks_.back() = std::make_unique_for_overwrite<std::uint64_t[]>(bytes / 8);
  } catch (...) {
    chunks_.pop_back();
    throw;
  }
  numReserved_ += numWords;
  void* start = chunks_.back().get();
  return static_cast<std::uint64_t*>(std::align(lineBytes, numWords * 8, start, bytes));
}

}  // namespace QXFingrix
