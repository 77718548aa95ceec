#pragma once

// Replaces the global allocator of a test program by one that counts and fails when told to. It defines the
// allocator, so one source file of a program includes it.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace QXTest {

inline thread_local std::size_t numAllocations = 0;
inline thread_local std::size_t numBytes = 0;
inline thread_local std::size_t failAt = 0;  // this allocation of the thread fails, counted as numAllocations
inline std::atomic<unsigned> numThreads = 0;  // that have allocated

/// Runs a call with its first allocation failing, then its second, until it succeeds; after each failure,
/// check(how many there were).
template <class Call, class Check>
void FailEachAllocation(Call call, Check check) {
  for (std::size_t n = 1; n < 5000; ++n) {
    bool isDone = true;
    failAt = numAllocations + n;
    try {
      call();
      isDone = numAllocations < failAt;
    } catch (const std::bad_alloc&) {
      isDone = false;
    }
    failAt = 0;
    if (isDone) return;
    check(n);
  }
  FAIL() << "it never succeeds";
}

}  // namespace QXTest

// Not inlined, or the compiler takes malloc() and delete for a pair that does not match.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (QXTest::numAllocations++ == 0) ++QXTest::numThreads;
  QXTest::numBytes += size;
  if (QXTest::numAllocations == QXTest::failAt) throw std::bad_alloc();
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}
// The library's own would do, but not the address sanitizer's.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
