#pragma once

#include <memory>

#include "fastfp/FastFPScanImpl.h"

namespace QXFingrix {

/// Searches a copy of the records in the heap. The file is read at once and not kept open: what becomes of it
/// later does not matter.
class QXFastFPInMemoryDatabaseImpl final : public FastFPScanImpl {
 public:
  /// indexUse: a QXFastFPDatabaseIndex value.
  explicit QXFastFPInMemoryDatabaseImpl(const std::string& fpbinFile,
                                        unsigned indexUse = QXFastFPDatabaseIndex::FromFile);

  unsigned GetMemoryType() const override { return QXFastFPDatabaseMemoryType::InMemory; }
  std::string GetMemoryTypeString() const override { return "in-memory"; }

 protected:
  bool GetRecords(RecordTable& records, const char* caller) const override;

 private:
  std::unique_ptr<std::uint64_t[]> records_;  // indices, bit counts and words as in the file: one scan
                                              // serves both back ends
};

}  // namespace QXFingrix
