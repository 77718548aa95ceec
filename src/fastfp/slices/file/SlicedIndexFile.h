#pragma once

#include <memory>
#include <string>

#include "QXFingrix/QXFastFPDatabaseParams.h"
#include "QXFingrix/QXFastFPIndex.h"
#include "fastfp/slices/SlicedIndex.h"
#include "fastfp/slices/file/PlainFile.h"
#include "fastfp/slices/file/SlicedIndexFileLayout.h"

namespace QXFingrix {

/// The file beside a .fpbin file in which its index is kept; docs/IndexFile.md. Its contents are not trusted.
/// It is read from one opening: what takes its name later does not matter.
class SlicedIndexFile {
 public:
  /// Looks for the index of a .fpbin file and reads its header.
  /// Shape    stamp: of the .fpbin file, taken before its records were opened, so that a file that was
  ///          replaced meanwhile is noticed.
  /// Errors   no file is no fault; warns once of one that is stale or damaged.
  SlicedIndexFile(const std::string& fpbinFile, const FpbinStamp& stamp, const QXFastFPDatabaseParams& params,
                  const char* caller);

  /// A QXFastFPIndexState value, as far as the header or, after loading, all of it tells.
  unsigned State() const { return state_; }

  enum class Memory { Mapped, Copied };
  /// The index, once; null when it is not usable, and from then on.
  /// Errors   warns and returns null when a checksum is wrong, when what a search relies on does not hold, or
  ///          when there is no memory for it.
  /// Cost     reads all of it once.
  std::unique_ptr<const SlicedIndex> Load(Memory memory, unsigned numThreads, const char* caller);

 private:
  void Open(const std::string& fpbinFile, const FpbinStamp& stamp, const QXFastFPDatabaseParams& params,
            const char* caller);
  void Refuse(const char* why, const char* caller);

  std::string name_;
  unsigned state_ = QXFastFPIndexState::None;
  PlainFile file_;
  SlicedIndexHeader header_;
  SlicedIndexFileLayout layout_;
};

}  // namespace QXFingrix
