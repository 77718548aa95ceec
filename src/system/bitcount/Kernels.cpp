#include "system/bitcount/Kernels.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "QXSystem/QXErrorHandler.h"

namespace QXSystem {

std::span<const QXBitCountKernel> QXGetBitCountKernels() {
  using namespace BitCount;
  static const std::array kernels = {GetAvx512Kernel(), GetAvx2Kernel(), GetPopcntKernel(),
                                     GetPortableKernel()};
  return kernels;
}

const QXBitCountKernel& BitCount::ChooseKernel(const char* name) {
  __builtin_cpu_init();  // we may be called from a static initialiser, before the compiler's own call
  const auto kernels = QXGetBitCountKernels();
  // Never past the end: the portable kernel is always supported.
  const auto best = std::ranges::find_if(kernels, [](const auto& kernel) { return kernel.isSupported(); });
  if (!name || !*name) return *best;
  const auto wanted = std::ranges::find(kernels, std::string_view(name), &QXBitCountKernel::name);
  if (wanted != kernels.end() && wanted->isSupported()) return *wanted;
  QXThrow.Warning("QXGetBitCountKernel() %s kernel '%s' in QX_BITCOUNT_KERNEL, using '%s'",
                  wanted == kernels.end() ? "unknown" : "this processor does not support", name, best->name);
  return *best;
}

const QXBitCountKernel& QXGetBitCountKernel() {
  static const QXBitCountKernel& chosen = BitCount::ChooseKernel(std::getenv("QX_BITCOUNT_KERNEL"));
  return chosen;
}

}  // namespace QXSystem
