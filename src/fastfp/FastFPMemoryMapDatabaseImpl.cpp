#include "fastfp/FastFPMemoryMapDatabaseImpl.h"

#include "QXSystem/QXErrorHandler.h"
#include "fastfp/file/RecordSpace.h"

namespace QXFingrix {

using QXSystem::QXThrow;

QXFastFPMemoryMapDatabaseImpl::QXFastFPMemoryMapDatabaseImpl(const std::string& fpbinFile, unsigned indexUse)
    : FastFPScanImpl(fpbinFile, indexUse) {
  if (!IsValid()) return;
  const char* problem = RecordSpace(Params()).problem;
  if (problem == nullptr && file_.Open(FileName(), Params().GetFileSize())) {
    if (IsHeaderOf(Params(), reinterpret_cast<const std::uint64_t*>(file_.GetData()))) {
      OpenIndex(SlicedIndexFile::Memory::Mapped);
      return;
    }
    problem = replacedFile;
    file_.Close();
  }
  Invalidate();
  QXThrow.Warning("%s : cannot initialize object for memory mapping!", fastFPDatabaseConstructor);
  if (problem != nullptr)
    QXThrow.Verbose("%s : %s: %s", fastFPDatabaseConstructor, fpbinFile.c_str(), problem);
}

bool QXFastFPMemoryMapDatabaseImpl::GetRecords(RecordTable& records, const char* caller) const {
  const char* const data = GetFilePtr(caller);
  if (data == nullptr) return false;
  records.first = reinterpret_cast<const std::uint64_t*>(data) + FileLayout::headerWords;
  records.numWords = NumWords();
  records.numRecords = NumFingerPrints();
  return true;
}

const char* QXFastFPMemoryMapDatabaseImpl::GetFilePtr(const char* caller) const {
  if (file_.GetData() == nullptr) QXThrow.Warning("%s : invalid fingerprint database file pointer!", caller);
  return file_.GetData();
}

}  // namespace QXFingrix
