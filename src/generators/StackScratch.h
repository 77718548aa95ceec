#pragma once

#include <cstddef>
#include <memory>

#include "QXPlatform/QXAlloca.h"

namespace QXFingrix {

/// Calls body(std::byte*) with uninitialised memory of `size` bytes, aligned for any scalar: from the stack
/// when the platform's threshold allows, else from the heap. The memory is gone when the call returns or
/// throws.
template <class Body>
void WithScratch(std::size_t size, Body&& body) {
  if (size < QXPlatform::QXGetAllocaThreshold()) {
    body(static_cast<std::byte*>(__builtin_alloca(size)));
  } else {
    const auto memory = std::make_unique_for_overwrite<std::byte[]>(size);
    body(memory.get());
  }
}

}  // namespace QXFingrix
