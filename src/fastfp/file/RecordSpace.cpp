#include "fastfp/file/RecordSpace.h"

#include "QXFingrix/QXFPTypeLookup.h"
#include "fastfp/file/FileLayout.h"

namespace QXFingrix {

RecordSpace::RecordSpace(const QXFastFPDatabaseParams& params) {
  const std::uint64_t numWords = params.GetNumWords();
  if (numWords != QXGetFingerPrintSize(params.GetFPTypeBase()) / 64) {
    problem = "the number of words does not fit the fingerprint type";
    return;
  }
  const std::uint64_t recordBytes = FileLayout::RecordWords(numWords) * FileLayout::wordBytes;
  const std::uint64_t bytes = params.GetFileSize() - FileLayout::headerBytes;
  numWhole = bytes / recordBytes;
  numLeft = bytes % recordBytes;
  isShort = numWhole < params.NumFingerPrints();
  if (numWhole != params.NumFingerPrints() || numLeft != 0) {
    problem = "the file size does not fit the number of fingerprints";
  }
}

bool IsHeaderOf(const QXFastFPDatabaseParams& params, const std::uint64_t* header) {
  return header[FileLayout::numWordsSlot] == params.GetNumWords() &&
         header[FileLayout::numFingerPrintsSlot] == params.NumFingerPrints();
}

}  // namespace QXFingrix
