#pragma once

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// Lends a function the buffers that its thread keeps for it, so that a call allocates nothing after the
/// first few; those that have grown for a giant molecule are freed afterwards. One at a time of each kind.
template <class Buffers>
class ThreadScratch {
 public:
  explicit ThreadScratch(const QXMolBase& mol)
      : isGiant_(mol.NumAtoms() > giant_ || mol.NumBonds() > giant_) {}
  ThreadScratch(const ThreadScratch&) = delete;
  ThreadScratch& operator=(const ThreadScratch&) = delete;
  ~ThreadScratch() {
    if (isGiant_) kept_ = Buffers();
  }

  Buffers& operator*() { return kept_; }
  Buffers* operator->() { return &kept_; }

 private:
  static constexpr unsigned giant_ = 10000;
  static inline thread_local Buffers kept_;
  const bool isGiant_;
};

}  // namespace QXChem
