#pragma once

#include <string>
#include <string_view>

#include "QXPlatform/QXMappedFile.h"

namespace QXChem {

// The text of a file, inflated when it is gzipped, in mapped memory; without a byte-order mark.
class FileText {
 public:
  bool Open(const std::string& path, std::string& reason);
  std::string_view GetText() const;

 private:
  QXPlatform::QXMappedFile mapped_;
};

}  // namespace QXChem
