#include "fastfp/FastFPMemoryMapDatabaseImpl.h"

#include "QXFingrix/QXFPTypeLookup.h"
#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

// Why the records of a file cannot be used in place, or null. The words come from the file: the test divides
// where a product could overflow.
const char* FindLayoutProblem(const QXFastFPDatabaseParams& params) {
  const std::uint64_t numWords = params.GetNumWords();
  if (numWords != QXGetFingerPrintSize(params.GetFPTypeBase()) / 64) {
    return "the number of words does not fit the fingerprint type";
  }
  const std::uint64_t recordBytes = FileLayout::RecordWords(numWords) * FileLayout::wordBytes;
  const std::uint64_t bytes = params.GetFileSize() - FileLayout::headerBytes;
  if (bytes % recordBytes != 0 || bytes / recordBytes != params.NumFingerPrints()) {
    return "the file size does not fit the number of fingerprints";
  }
  return nullptr;
}

// Header and records are read through different openings of the file.
bool IsFileOf(const QXFastFPDatabaseParams& params, const MMapInputFile& file) {
  const auto* const words = reinterpret_cast<const std::uint64_t*>(file.GetData());
  return words[FileLayout::numWordsSlot] == params.GetNumWords() &&
         words[FileLayout::numFingerPrintsSlot] == params.NumFingerPrints();
}

}  // namespace

QXFastFPMemoryMapDatabaseImpl::QXFastFPMemoryMapDatabaseImpl(const std::string& fpbinFile)
    : FastFPScanImpl(fpbinFile) {
  if (!IsValid()) return;
  const char* problem = FindLayoutProblem(Params());
  if (problem == nullptr && file_.Open(FileName(), Params().GetFileSize())) {
    if (IsFileOf(Params(), file_)) return;
    problem = "the file was replaced while it was opened";
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
