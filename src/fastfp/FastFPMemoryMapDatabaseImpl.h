#pragma once

#include "QXFingrix/QXMMapFile.h"
#include "fastfp/FastFPScanImpl.h"

namespace QXFingrix {

/// Searches the records in the mapped file, where they lie.
class QXFastFPMemoryMapDatabaseImpl final : public FastFPScanImpl {
 public:
  /// indexUse: a QXFastFPDatabaseIndex value.
  explicit QXFastFPMemoryMapDatabaseImpl(const std::string& fpbinFile,
                                         unsigned indexUse = QXFastFPDatabaseIndex::FromFile);

  unsigned GetMemoryType() const override { return QXFastFPDatabaseMemoryType::MemoryMapped; }
  std::string GetMemoryTypeString() const override { return "memory-mapped"; }

 protected:
  bool GetRecords(RecordTable& records, const char* caller) const override;

 private:
  const char* GetFilePtr(const char* caller) const;

  MMapInputFile file_;
};

}  // namespace QXFingrix
