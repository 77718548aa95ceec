#include "fastfp/slices/HugePages.h"

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace QXFingrix {

std::shared_ptr<void> AllocateHugePages(std::size_t numBytes) {
  constexpr std::size_t pageBytes = std::size_t{2} << 20;
  constexpr std::size_t lineBytes = 64;
  const std::size_t alignment = numBytes < pageBytes ? lineBytes : pageBytes;
  if (numBytes > SIZE_MAX - alignment) throw std::bad_alloc();
  const std::size_t rounded = (numBytes + alignment - 1) / alignment * alignment;
  void* const memory = std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
  if (memory == nullptr) throw std::bad_alloc();
#ifdef MADV_HUGEPAGE
  if (alignment == pageBytes) madvise(memory, rounded, MADV_HUGEPAGE);  // a wish: refused, all works the same
#endif
  return {memory, std::free};
}

}  // namespace QXFingrix
