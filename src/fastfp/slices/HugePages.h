#pragma once

#include <cstddef>
#include <memory>

namespace QXFingrix {

/// Memory for what is read here and there: on the largest pages that the system gives, so that fewer addresses
/// have to be translated. Aligned to 64 bytes at least, not initialised.
/// Errors   std::bad_alloc.
std::shared_ptr<void> AllocateHugePages(std::size_t numBytes);

}  // namespace QXFingrix
