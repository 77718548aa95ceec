#include "fastfp/slices/file/NewFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace QXFingrix {

namespace {

constexpr const char* openFiles = "/proc/self/fd/";  // through which a file without a name gets one

int OpenUnnamed(const std::string& folder) {
#ifdef O_TMPFILE
  if (access(openFiles, F_OK) == 0) return open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
#endif
  return -1;
}

}  // namespace

NewFile::~NewFile() {
  const int reason = errno;
  if (!name_.empty()) unlink(name_.c_str());
  errno = reason;
}

bool NewFile::Create(const std::string& target, const std::string& permissionsLike) {
  target_ = target;
  const std::size_t slash = target.rfind('/');
  folder_ = slash == std::string::npos ? "." : target.substr(0, slash + 1);
  file_ = PlainFile(OpenUnnamed(folder_));
  if (!file_.IsOpen()) {
    std::string name = target + ".XXXXXX";
    file_ = PlainFile(mkostemp(name.data(), O_CLOEXEC));
    if (!file_.IsOpen()) return false;
    name_ = name;
  }
  struct stat status {};
  if (stat(permissionsLike.c_str(), &status) == 0) {
    // A wish: a file system without permissions refuses.
    [[maybe_unused]] const int result = fchmod(file_.Descriptor(), status.st_mode & 0666);
  }
  return true;
}

bool NewFile::GiveName() {
  static std::atomic<unsigned> number{0};
  const std::string name = target_ + "." + std::to_string(getpid()) + "-" + std::to_string(number++);
  const std::string openFile = openFiles + std::to_string(file_.Descriptor());
  unlink(name.c_str());  // left over by a killed process that had our number
  if (linkat(AT_FDCWD, openFile.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) return false;
  name_ = name;
  return true;
}

bool NewFile::Commit() {
  if (fsync(file_.Descriptor()) != 0) return false;
  if (name_.empty() && !GiveName()) return false;
  if (std::rename(name_.c_str(), target_.c_str()) != 0) return false;
  name_.clear();
  const PlainFile folder(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.IsOpen()) fsync(folder.Descriptor());  // some systems cannot; the file itself is safe
  return true;
}

}  // namespace QXFingrix
