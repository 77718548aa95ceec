// Reading and writing the header of a .fpbin file; docs/FileFormat.md.

#include "QXFingrix/QXFastFPDatabaseParams.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "QXFingrix/QXConvert.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXPopCount.h"
#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"
#include "fastfp/file/FileLayout.h"

namespace QXFingrix {

using QXSystem::QXThrow;

static_assert(QXFPDatabaseHeaderSize == FileLayout::headerBytes);

namespace {

constexpr const char* readerName = "QXFastFPDatabaseParams()";
constexpr std::uint64_t minFileSize = 100;  // bytes; a file must be larger. Deliberately loose
constexpr std::streamsize maxLine = 800;

// The first token, and the rest of its line dropped.
std::string ReadMark(std::istream& in) {
  std::string token;
  in.width(maxLine);
  in >> token;
  in.ignore(maxLine, '\n');
  return token;
}

bool ReadLine(std::istream& in, std::string& line) {
  char buffer[maxLine + 1];
  if (!in.getline(buffer, sizeof(buffer))) return false;
  // By length: a line with a zero byte in it is not the text before that byte.
  line.assign(buffer, static_cast<std::size_t>(in.gcount()) - (in.eof() ? 0U : 1U));
  return true;
}

std::string WriteLines(const QXFastFPDatabaseParams& params) {
  return std::string(QXIsUInit64LittleEndian() ? "LE" : "BE") + '\n' + params.GetMolFileName() + '\n' +
         params.GetFPTypeBase()->GetFPTypeString() + '\n' + std::to_string(params.NumFingerPrints()) + '\n';
}

}  // namespace

QXFastFPDatabaseParams::QXFastFPDatabaseParams(const std::string& fpbinFile) {
  Read(fpbinFile);
}

void QXFastFPDatabaseParams::SetFPTypeBase(const QXFPTypeBase* fptype) {
  fptype_ = fptype;
  numWords_ = QXGetFingerPrintSize(fptype) / 64;
}

void QXFastFPDatabaseParams::Read(const std::string& fpbinFile) {
  const char* const path = fpbinFile.c_str();
  struct stat status {};
  const bool isFound = stat(path, &status) == 0;
  const bool isOrdinary = isFound && S_ISREG(status.st_mode);
  std::ifstream in;
  if (isOrdinary) in.open(fpbinFile);  // opening a pipe would wait for a writer
  if (!isFound || (isOrdinary && !in)) {
    QXThrow.Warning("%s cannot open fingerprint database file %s", readerName, path);
    return;
  }
  fileSize_ = isOrdinary ? static_cast<std::uint64_t>(status.st_size) : 0;
  if (fileSize_ <= minFileSize) {
    QXThrow.Warning("%s invalid fingerprint database file %s", readerName, path);
    return;
  }
  const std::string mark = ReadMark(in);
  isLittleEndian_ = mark.starts_with("LE");
  if (!isLittleEndian_ && !mark.starts_with("BE")) {
    QXThrow.Warning("%s invalid endianess '%2s' in %s header", readerName, mark.c_str(), path);
    return;
  }
  if (const char* const problem = ReadLines(in)) {
    QXThrow.Warning("%s %s %s header", readerName, problem, path);
    return;
  }
  ReadWords(fpbinFile);
}

// What is wrong with the lines after the mark; null when nothing is.
const char* QXFastFPDatabaseParams::ReadLines(std::istream& in) {
  std::string line;
  if (!ReadLine(in, molFileName_)) return "cannot read molecule filename from";
  if (!ReadLine(in, line)) return "cannot read fingerprint type from";
  fptype_ = QXGetFPType(line);
  if (fptype_ == nullptr) return "invalid fingerprint type in";
  if (!ReadLine(in, line)) return "cannot read number of fingerprints from";
  if (!QXSystem::QXStringToNumber(line, numFingerPrints_)) return "invalid number of fingerprints in";
  return nullptr;
}

void QXFastFPDatabaseParams::ReadWords(const std::string& fpbinFile) {
  // A file that ends inside the header has no words to agree with its text, and a mapping of it cannot be
  // read.
  const bool hasWords = fileSize_ >= FileLayout::headerBytes;
  MMapInputFile head;
  if (hasWords && !head.Open(fpbinFile, FileLayout::headerBytes)) return;  // reported there
  const auto word = [&](std::size_t slot) {
    return QXConvert(reinterpret_cast<const unsigned char*>(head.GetData()) + slot * FileLayout::wordBytes);
  };
  if (!hasWords || word(FileLayout::numFingerPrintsSlot) != numFingerPrints_) {
    QXThrow.Warning("%s inconsistent number of fingerprints in %s header", readerName, fpbinFile.c_str());
    return;
  }
  numWords_ = word(FileLayout::numWordsSlot);
  isValid_ = true;
}

std::string QXWriteFastFPDatabaseHeaderBlob(const QXFastFPDatabaseParams& params) {
  if (params.GetFPTypeBase() == nullptr) return {};
  std::string blob = WriteLines(params);
  blob.resize(FileLayout::headerBytes, '\0');
  blob.replace(FileLayout::numWordsSlot * FileLayout::wordBytes, FileLayout::wordBytes,
               QXConvert(static_cast<unsigned long>(params.GetNumWords())));
  blob.replace(FileLayout::numFingerPrintsSlot * FileLayout::wordBytes, FileLayout::wordBytes,
               QXConvert(static_cast<unsigned long>(params.NumFingerPrints())));
  return blob;
}

std::size_t QXGetFPDatabaseHeaderExcess(const QXFastFPDatabaseParams& params) {
  if (params.GetFPTypeBase() == nullptr) return 0;
  const std::size_t numBytes = WriteLines(params).size();
  return numBytes - std::min(numBytes, FileLayout::textBytes);
}

bool QXWriteFastFPDatabaseParams(MMapOutputFile& file, const QXFastFPDatabaseParams& params) {
  const std::string blob = QXWriteFastFPDatabaseHeaderBlob(params);
  if (blob.empty() || file.GetData() == nullptr || file.GetLength() < blob.size()) return false;
  std::memcpy(file.GetData(), blob.data(), blob.size());
  return true;
}

std::string QXWriteFastFingerPrintBlob(std::uint64_t molIndex, const QXFingerPrint& fp) {
  constexpr const char* caller = "QXWriteFastFingerPrintBlob()";
  if (!fp) {
    QXThrow.Warning("%s : uninitialized fingerprint!", caller);
    return {};
  }
  if (fp.GetData() == nullptr || fp.GetSize() == 0) {
    QXThrow.Warning("%s: cannot access fingerprint data!", caller);
    return {};
  }
  std::vector<unsigned long> words;
  const unsigned long numSet = QXConvertFP(words, fp, QXGetPopCountFunc(QXGetPopCountMethod()));
  std::string blob = QXConvert(static_cast<unsigned long>(molIndex)) + QXConvert(numSet);
  for (const unsigned long word : words) blob += QXConvert(word);
  return blob;
}

std::uint64_t QXGetFPDatabaseFileSize(std::uint64_t numMolecules, const QXFPTypeBase* fptype) {
  const std::uint64_t numWords = QXGetFingerPrintSize(fptype) / 64;
  return FileLayout::RecordWords(numWords) * numMolecules * FileLayout::wordBytes + FileLayout::headerBytes;
}

}  // namespace QXFingrix
