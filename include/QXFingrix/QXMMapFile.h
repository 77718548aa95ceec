#pragma once

#include <cstddef>
#include <string>

#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// A file mapped into memory for reading.
class QX_API MMapInputFile {
 public:
  MMapInputFile() = default;
  ~MMapInputFile() { Close(); }
  MMapInputFile(const MMapInputFile&) = delete;
  MMapInputFile& operator=(const MMapInputFile&) = delete;

  /// Maps the first length bytes, after closing what was open.
  /// Errors   reports an Error and returns false when the file cannot be opened, is shorter than length or
  ///          cannot be mapped; the object is closed then.
  bool Open(const std::string& path, std::size_t length);
  void Close();

  const char* GetData() const { return data_; }  ///< null when closed
  std::size_t GetLength() const { return length_; }

 private:
  int file_ = -1;
  std::size_t length_ = 0;
  char* data_ = nullptr;
};

/// A file of known size mapped into memory for writing. Closing it writes everything through.
class QX_API MMapOutputFile {
 public:
  MMapOutputFile() = default;
  ~MMapOutputFile() { Close(); }
  MMapOutputFile(const MMapOutputFile&) = delete;
  MMapOutputFile& operator=(const MMapOutputFile&) = delete;

  /// Creates the file (permissions 0600) or empties it, gives it length zero bytes and maps them, after
  /// closing what was open. The disk space is allocated, so that a full disk is reported here and not met by
  /// a write.
  /// Errors   reports an Error and returns false; the object is closed then.
  bool Open(const std::string& path, std::size_t length);
  void Close();

  char* GetData() const { return data_; }  ///< null when closed
  std::size_t GetLength() const { return length_; }

 private:
  int file_ = -1;
  std::size_t length_ = 0;
  char* data_ = nullptr;
};

}  // namespace QXFingrix
