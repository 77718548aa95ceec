#pragma once

#include <cstddef>
#include <string>

#include "QXSystem/QXExport.h"

namespace QXPlatform {

/// A whole file mapped into memory for reading. Its contents must not be cut short by others while it is
/// open.
/// Threads  const methods may run at once on one object.
class QX_API QXMappedFile {
 public:
  QXMappedFile() = default;
  ~QXMappedFile() { Close(); }
  QXMappedFile(QXMappedFile&& other) noexcept;
  QXMappedFile& operator=(QXMappedFile&& other) noexcept;

  /// Maps a file, closing the one that was open. An empty file opens with size 0.
  /// Errors   false with the reason in words, and nothing open, when it cannot be read or is no ordinary
  ///          file; no report.
  bool Open(const std::string& path, std::string& reason);
  void Close();

  bool IsOpen() const { return isOpen_; }
  /// GetSize() bytes; null when the size is 0.
  const char* GetData() const { return data_; }
  std::size_t GetSize() const { return size_; }

 private:
  const char* data_ = nullptr;
  std::size_t size_ = 0;
  bool isOpen_ = false;
};

}  // namespace QXPlatform
