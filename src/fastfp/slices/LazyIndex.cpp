#include "fastfp/slices/LazyIndex.h"

namespace QXFingrix {

const SlicedIndex* LazyIndex::Get(unsigned numThreads, const char* caller) const {
  const std::lock_guard lock(mutex_);
  if (file_ != nullptr) {
    index_ = file_->Load(memory_, numThreads, caller);
    file_.reset();
  }
  return index_.get();
}

}  // namespace QXFingrix
