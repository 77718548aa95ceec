#include "QXFingrix/QXFastFPIndex.h"

#include <new>

#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXMMapFile.h"
#include "QXPlatform/QXProcessor.h"
#include "QXSystem/QXErrorHandler.h"
#include "fastfp/file/CheckFingerPrintType.h"
#include "fastfp/file/RecordSpace.h"
#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/SlicedIndexLayout.h"
#include "fastfp/slices/file/SlicedIndexFile.h"
#include "fastfp/slices/file/WriteSlicedIndexFile.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

constexpr const char* caller = "QXMakeFastFPIndexFile()";

bool Refuse(const std::string& fpbinFile, const char* why) {
  QXThrow.Warning("%s : cannot make an index of %s: %s", caller, fpbinFile.c_str(), why);
  return false;
}

bool CheckLimits(const QXFastFPDatabaseParams& params, const std::string& fpbinFile) {
  constexpr unsigned long long maxRecords = 4294967295;
  if (params.NumFingerPrints() > maxRecords) {
    QXThrow.Warning("%s : %s has %llu fingerprints, an index at most %llu", caller, fpbinFile.c_str(),
                    static_cast<unsigned long long>(params.NumFingerPrints()), maxRecords);
    return false;
  }
  const unsigned numBits = QXGetFingerPrintSize(params.GetFPTypeBase());
  if (!SlicedIndexLayout::IsPossible(params.NumFingerPrints(), numBits)) {
    QXThrow.Warning("%s : %s has fingerprints of %u bits, an index of at most %llu", caller,
                    fpbinFile.c_str(), numBits, static_cast<unsigned long long>(SlicedIndex::maxBits));
    return false;
  }
  return true;
}

// The records of a file, mapped.
bool OpenRecords(MMapInputFile& file, RecordTable& records, const std::string& fpbinFile) {
  const QXFastFPDatabaseParams params(fpbinFile);
  if (!params.IsValid()) return Refuse(fpbinFile, "its header cannot be read");
  if (!params.IsLittleEndian()) return Refuse(fpbinFile, "it was written in big-endian byte order");
  if (!CheckFingerPrintType(params.GetFPTypeBase(), caller)) return false;
  if (!CheckLimits(params, fpbinFile)) return false;
  if (const char* const problem = RecordSpace(params).problem) return Refuse(fpbinFile, problem);
  if (!file.Open(fpbinFile, params.GetFileSize())) return Refuse(fpbinFile, "it cannot be mapped");
  const auto* const words = reinterpret_cast<const std::uint64_t*>(file.GetData());
  if (!IsHeaderOf(params, words)) return Refuse(fpbinFile, replacedFile);
  records = {words + FileLayout::headerWords, params.GetNumWords(), params.NumFingerPrints()};
  return true;
}

}  // namespace

std::string QXGetFastFPIndexFileName(const std::string& fpbinFile) {
  return fpbinFile + ".slices";
}

bool QXMakeFastFPIndexFile(const std::string& fpbinFile, unsigned numThreads) {
  const FpbinStamp stamp = FpbinStamp::OfSettled(fpbinFile);
  MMapInputFile file;
  RecordTable records;
  if (!OpenRecords(file, records, fpbinFile)) return false;
  std::string reason;
  try {
    const unsigned numWorkers = QXPlatform::QXGetNumWorkers(numThreads);
    if (WriteSlicedIndexFile(fpbinFile, stamp, records, numWorkers, reason)) return true;
  } catch (const std::bad_alloc&) {
    reason = "not enough memory";
  }
  QXThrow.Warning("%s : cannot make %s: %s", caller, QXGetFastFPIndexFileName(fpbinFile).c_str(),
                  reason.c_str());
  return false;
}

unsigned QXGetFastFPIndexState(const std::string& fpbinFile, bool isChecked) {
  constexpr const char* name = "QXGetFastFPIndexState()";
  const FpbinStamp stamp = FpbinStamp::Of(fpbinFile);
  const QXFastFPDatabaseParams params(fpbinFile);
  if (!params.IsValid()) return QXFastFPIndexState::None;
  SlicedIndexFile index(fpbinFile, stamp, params, name);
  if (isChecked) index.Load(SlicedIndexFile::Memory::Mapped, QXPlatform::QXGetNumWorkers(0), name);
  return index.State();
}

}  // namespace QXFingrix
