#include "chem/database/TempFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace QXChem {

TempFile::~TempFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool TempFile::Create(std::string& reason) {
  const char* folder = std::getenv("TMPDIR");
  folder_ = folder && *folder ? folder : "/tmp";
  std::string name = folder_ + "/qxmol-XXXXXX";
  descriptor_ = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor_ < 0) {
    reason = "cannot make a temporary file in " + folder_ + ": " + std::generic_category().message(errno);
    return false;
  }
  unlink(name.c_str());
  return true;
}

bool TempFile::Write(const char* data, std::size_t size, std::string& reason) {
  while (size > 0) {
    const ssize_t written = write(descriptor_, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      reason =
          "cannot write to a temporary file in " + folder_ + ": " + std::generic_category().message(errno);
      return false;
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

bool TempFile::Map(QXPlatform::QXMappedFile& mapped, std::string& reason) const {
  // The file has no name any more, but its descriptor has one.
  return mapped.Open("/proc/self/fd/" + std::to_string(descriptor_), reason);
}

}  // namespace QXChem
