#pragma once

#include <memory>
#include <mutex>
#include <utility>

#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/SlicedIndex.h"
#include "fastfp/slices/file/SlicedIndexFile.h"

namespace QXFingrix {

/// The index of a database, ready when a search first wants it.
/// Threads  any number may ask for it at once.
class LazyIndex {
 public:
  /// Before the first search: takes the index from a file, which is read and checked when a search wants it.
  void Use(std::unique_ptr<SlicedIndexFile> file, SlicedIndexFile::Memory memory) {
    file_ = std::move(file);
    memory_ = memory;
  }
  /// Before the first search: takes one that is there already.
  void Use(std::unique_ptr<const SlicedIndex> index) { index_ = std::move(index); }

  /// Null when there is none, or none that is sound.
  /// Errors   the first call warns of what is wrong with the file.
  const SlicedIndex* Get(unsigned numThreads, const char* caller) const;

 private:
  mutable std::mutex mutex_;  // guards the loading
  mutable std::unique_ptr<SlicedIndexFile> file_;
  SlicedIndexFile::Memory memory_ = SlicedIndexFile::Memory::Mapped;
  mutable std::unique_ptr<const SlicedIndex> index_;
};

}  // namespace QXFingrix
