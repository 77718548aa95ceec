#include "QXPlatform/QXProcessor.h"

#include <sched.h>

#include <algorithm>
#include <thread>

namespace QXPlatform {

unsigned QXGetNumProcessors() {
  cpu_set_t allowed;
  // Fails on machines of more than 1,024 processors, where the set would have to be larger.
  if (sched_getaffinity(0, sizeof allowed, &allowed) == 0) {
    return static_cast<unsigned>(std::max(CPU_COUNT(&allowed), 1));
  }
  return std::max(std::thread::hardware_concurrency(), 1u);
}

unsigned QXGetNumWorkers(unsigned requested) {
  const unsigned available = QXGetNumProcessors();
  return requested == 0 ? available : std::min(requested, 2 * available);
}

}  // namespace QXPlatform
