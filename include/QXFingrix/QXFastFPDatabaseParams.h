#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMMapFile.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// What the header of a .fpbin file says; docs/FileFormat.md.
class QX_API QXFastFPDatabaseParams {
 public:
  /// Not valid and empty, to be filled by a writer.
  QXFastFPDatabaseParams() = default;

  /// Reads and checks the header of a file. Only the header: a cut record area is not noticed here.
  /// Errors   warns and is not valid.
  explicit QXFastFPDatabaseParams(const std::string& fpbinFile);

  bool IsValid() const { return isValid_; }                ///< every check of the header passed
  bool IsLittleEndian() const { return isLittleEndian_; }  ///< the byte-order mark was "LE"
  const std::string& GetMolFileName() const { return molFileName_; }
  const QXFPTypeBase* GetFPTypeBase() const { return fptype_; }  ///< null when not known
  std::uint64_t NumFingerPrints() const { return numFingerPrints_; }
  std::uint64_t GetFileSize() const { return fileSize_; }  ///< bytes
  std::uint64_t GetNumWords() const { return numWords_; }  ///< 64-bit words of one fingerprint

  void SetMolFileName(const std::string& name) { molFileName_ = name; }
  void SetNumFingerPrints(std::uint64_t num) { numFingerPrints_ = num; }
  /// Sets the words per fingerprint too.
  void SetFPTypeBase(const QXFPTypeBase* fptype);

 private:
  void Read(const std::string& fpbinFile);
  const char* ReadLines(std::istream& in);
  void ReadWords(const std::string& fpbinFile);

  bool isValid_ = false;
  bool isLittleEndian_ = false;
  std::string molFileName_;
  const QXFPTypeBase* fptype_ = nullptr;
  std::uint64_t numFingerPrints_ = 0;
  std::uint64_t fileSize_ = 0;
  std::uint64_t numWords_ = 0;
};

/// Bytes of the header.
inline constexpr std::size_t QXFPDatabaseHeaderSize = 800;

/// The 800 bytes of the header; empty when the params hold no fingerprint type.
/// The text has room for 784 bytes: a molecule file name that does not fit is cut by the words behind it, and
/// the file cannot be read back.
QX_API std::string QXWriteFastFPDatabaseHeaderBlob(const QXFastFPDatabaseParams& params);

/// How many bytes the lines of the header are too long for it; 0 when they fit.
QX_API std::size_t QXGetFPDatabaseHeaderExcess(const QXFastFPDatabaseParams& params);

/// Copies the header to the start of the mapping.
/// Errors   returns false when the params hold no fingerprint type, or the file is not mapped or too short.
QX_API bool QXWriteFastFPDatabaseParams(MMapOutputFile& file, const QXFastFPDatabaseParams& params);

/// One record: 8 bytes index, 8 bytes bit count, 8 bytes for every begun 64 bits of the fingerprint.
/// Errors   warns and returns an empty string for a fingerprint without a type or without data.
QX_API std::string QXWriteFastFingerPrintBlob(std::uint64_t molIndex, const QXFingerPrint& fp);

/// Bytes of a file of numMolecules records: ((bits / 64) + 2) * 8 each, and 800 of header.
QX_API std::uint64_t QXGetFPDatabaseFileSize(std::uint64_t numMolecules, const QXFPTypeBase* fptype);

}  // namespace QXFingrix
