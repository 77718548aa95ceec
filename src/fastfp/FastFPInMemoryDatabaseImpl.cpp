#include "fastfp/FastFPInMemoryDatabaseImpl.h"

#include "QXSystem/QXErrorHandler.h"
#include "fastfp/file/ReadRecords.h"

namespace QXFingrix {

QXFastFPInMemoryDatabaseImpl::QXFastFPInMemoryDatabaseImpl(const std::string& fpbinFile, unsigned indexUse)
    : FastFPScanImpl(fpbinFile, indexUse) {
  if (!IsValid()) return;
  records_ = ReadRecords(FileName(), Params(), fastFPDatabaseConstructor);
  if (records_ != nullptr) {
    OpenIndex(SlicedIndexFile::Memory::Copied);
    return;
  }
  Invalidate();
  QXSystem::QXThrow.Warning("%s cannot initialize object for in memory search!", fastFPDatabaseConstructor);
}

bool QXFastFPInMemoryDatabaseImpl::GetRecords(RecordTable& records, const char*) const {
  records = {records_.get(), NumWords(), NumFingerPrints()};
  return true;
}

}  // namespace QXFingrix
