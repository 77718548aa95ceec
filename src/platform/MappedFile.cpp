#include "QXPlatform/QXMappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace QXPlatform {

namespace {

class FileDescriptor {
 public:
  explicit FileDescriptor(int number) : number_(number) {}
  ~FileDescriptor() {
    if (number_ >= 0) close(number_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int Get() const { return number_; }

 private:
  int number_;
};

std::string LastSystemError() {
  return std::generic_category().message(errno);
}

}  // namespace

QXMappedFile::QXMappedFile(QXMappedFile&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      isOpen_(std::exchange(other.isOpen_, false)) {}

QXMappedFile& QXMappedFile::operator=(QXMappedFile&& other) noexcept {
  if (this == &other) return *this;
  Close();
  data_ = std::exchange(other.data_, nullptr);
  size_ = std::exchange(other.size_, 0);
  isOpen_ = std::exchange(other.isOpen_, false);
  return *this;
}

bool QXMappedFile::Open(const std::string& path, std::string& reason) {
  Close();
  // Without O_NONBLOCK, opening a pipe that nobody writes to would wait for ever.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status;
  if (file.Get() < 0 || fstat(file.Get(), &status) != 0) {
    reason = LastSystemError();
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    reason = S_ISDIR(status.st_mode) ? "Is a directory" : "Not an ordinary file";
    return false;
  }
  if (status.st_size > 0) {
    const auto size = static_cast<std::size_t>(status.st_size);
    void* const address = mmap(nullptr, size, PROT_READ, MAP_SHARED, file.Get(), 0);
    if (address == MAP_FAILED) {
      reason = LastSystemError();
      return false;
    }
    data_ = static_cast<const char*>(address);
    size_ = size;
  }
  isOpen_ = true;
  return true;
}

void QXMappedFile::Close() {
  if (data_) munmap(const_cast<char*>(data_), size_);
  data_ = nullptr;
  size_ = 0;
  isOpen_ = false;
}

}  // namespace QXPlatform
