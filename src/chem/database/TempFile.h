#pragma once

#include <cstddef>
#include <string>

#include "QXPlatform/QXMappedFile.h"

namespace QXChem {

// A nameless file to write to and then map: in TMPDIR, or in /tmp. It has lost its name before the first byte
// is written, so nothing is left behind however the process ends.
class TempFile {
 public:
  TempFile() = default;
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  bool Create(std::string& reason);
  bool Write(const char* data, std::size_t size, std::string& reason);
  // Maps all that has been written; the mapping outlives this object.
  bool Map(QXPlatform::QXMappedFile& mapped, std::string& reason) const;

 private:
  int descriptor_ = -1;
  std::string folder_;
};

}  // namespace QXChem
