#include "QXPlatform/QXAlloca.h"

namespace QXPlatform {

// Small beside the 128 KiB or so that a host's worker thread may have been given.
std::size_t QXGetAllocaThreshold() {
  return 8192;
}

}  // namespace QXPlatform
