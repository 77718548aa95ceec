#pragma once

#include <cstddef>

#include "QXSystem/QXExport.h"

namespace QXPlatform {

/// Scratch arrays smaller than this many bytes may live on the stack, others belong on the heap.
QX_API std::size_t QXGetAllocaThreshold();

}  // namespace QXPlatform
