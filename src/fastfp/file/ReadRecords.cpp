#include "fastfp/file/ReadRecords.h"

#include <array>
#include <exception>
#include <fstream>
#include <new>

#include "QXSystem/QXErrorHandler.h"
#include "fastfp/file/FileLayout.h"
#include "fastfp/file/RecordSpace.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

using Words = std::unique_ptr<std::uint64_t[]>;

Words Allocate(std::uint64_t numWords, const char* caller) {
  Words words;
  try {
    words.reset(new (std::nothrow) std::uint64_t[numWords]);
    if (!words) QXThrow.Warning("%s : Cannot allocate enough memory!", caller);
  } catch (const std::exception& error) {  // more words than an array can have
    QXThrow.Warning("%s : %s!", caller, error.what());
  }
  return words;
}

// The file ends inside record i or, not cut, before it.
bool RefuseShort(std::uint64_t i, bool isCut, const char* caller) {
  if (isCut) {
    QXThrow.Warning("%s : cannot read %llu-th fingerprint", caller, static_cast<unsigned long long>(i));
  } else {
    QXThrow.Warning("%s : cannot read all fingerprints!", caller);
  }
  return false;
}

// Reads the records one after the other, so that the first that is not sound can be named.
bool ReadInto(std::uint64_t* record, std::istream& in, const QXFastFPDatabaseParams& params,
              const char* caller) {
  const std::uint64_t recordWords = FileLayout::RecordWords(params.GetNumWords());
  const auto recordBytes = static_cast<std::streamsize>(recordWords * FileLayout::wordBytes);
  for (std::uint64_t i = 0; i < params.NumFingerPrints(); ++i, record += recordWords) {
    if (!in.read(reinterpret_cast<char*>(record), recordBytes)) {
      return RefuseShort(i, in.gcount() != 0, caller);
    }
    if (record[FileLayout::bitCountSlot] > params.GetNumWords() * 64) {
      QXThrow.Warning("%s : invalid data in %llu-th fingerprint", caller, static_cast<unsigned long long>(i));
      return false;
    }
  }
  return true;
}

}  // namespace

Words ReadRecords(const std::string& fpbinFile, const QXFastFPDatabaseParams& params, const char* caller) {
  constexpr std::streamsize bufferBytes = 32768;
  std::array<char, bufferBytes> buffer;
  std::ifstream in;
  in.rdbuf()->pubsetbuf(buffer.data(), bufferBytes);
  in.open(fpbinFile, std::ios::binary);
  if (!in) {
    QXThrow.Warning("%s : cannot open fingerprint database file %s", caller, fpbinFile.c_str());
    return nullptr;
  }
  std::array<std::uint64_t, FileLayout::headerWords> header;
  if (!in.read(reinterpret_cast<char*>(header.data()), FileLayout::headerBytes)) {
    QXThrow.Warning("%s : cannot skip header in database file %s", caller, fpbinFile.c_str());
    return nullptr;
  }
  const RecordSpace space(params);
  if (space.isShort) {
    RefuseShort(space.numWhole, space.numLeft != 0, caller);
    return nullptr;
  }
  const char* const problem = IsHeaderOf(params, header.data()) ? space.problem : replacedFile;
  if (problem != nullptr) {
    QXThrow.Verbose("%s : %s: %s", caller, fpbinFile.c_str(), problem);
    return nullptr;
  }
  Words records = Allocate(params.NumFingerPrints() * FileLayout::RecordWords(params.GetNumWords()), caller);
  if (records != nullptr && !ReadInto(records.get(), in, params, caller)) records.reset();
  return records;
}

}  // namespace QXFingrix
