#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>

namespace QXFingrix {

/// The descriptors of one class, one for each version and parameters that were ever asked for. Entries are
/// never removed, so the pointers handed out stay valid, and identity stands for equality.
/// Threads  safe.
template <class FPType, class... Params>
class QXFPTypeCache {
 public:
  static QXFPTypeCache& Instance() {
    static QXFPTypeCache cache;
    return cache;
  }

  const FPType* GetFPType(unsigned short version, Params... params) {
    const std::lock_guard lock(mutex_);
    std::unique_ptr<const FPType>& entry = types_[{version, params...}];
    if (!entry) entry.reset(new FPType(version, params...));
    return entry.get();
  }

 private:
  QXFPTypeCache() = default;

  std::mutex mutex_;
  std::map<std::tuple<unsigned short, Params...>, std::unique_ptr<const FPType>> types_;
};

template <class FPType>
using QXFPTypeFactory = QXFPTypeCache<FPType, std::uint64_t>;
template <class FPType>
using QXFPTypeFactoryNoParams = QXFPTypeCache<FPType>;

}  // namespace QXFingrix
