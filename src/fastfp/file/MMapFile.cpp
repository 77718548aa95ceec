#include "QXFingrix/QXMMapFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <iterator>
#include <limits>

#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

bool IsFileOfAtLeast(int file, std::size_t length) {
  struct stat status;
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
         static_cast<std::uint64_t>(status.st_size) >= length;
}

char* Map(int file, std::size_t length, int protection) {
  void* const address = mmap(nullptr, length, protection, MAP_SHARED, file, 0);
  return address == MAP_FAILED ? nullptr : static_cast<char*>(address);
}

// Gives the file its size and its disk space; null, or the report that says what failed. Without the space a
// write into the mapping would end the process when the disk is full. A file system that cannot reserve space
// is taken as it is.
const char* Stretch(int file, std::size_t length) {
  constexpr const char* seekFailure = "Error calling lseek() to 'stretch' the file";
  constexpr const char* writeFailure = "Error writing last byte of the file";
  if (length == 0 || length - 1 > static_cast<std::size_t>(std::numeric_limits<off_t>::max()))
    return seekFailure;
  if (lseek(file, static_cast<off_t>(length - 1), SEEK_SET) == -1) return seekFailure;
  if (write(file, "", 1) != 1) return writeFailure;
  int status = EINTR;
  while (status == EINTR) status = posix_fallocate(file, 0, static_cast<off_t>(length));
  constexpr int goodEnough[] = {0, EOPNOTSUPP, EINVAL, ENODEV, ENOSYS};
  return std::ranges::find(goodEnough, status) == std::end(goodEnough) ? writeFailure : nullptr;
}

void CloseMapping(int& file, std::size_t& length, char*& data) {
  if (data == nullptr || length == 0) return;
  if (munmap(data, length) == -1) QXThrow.Error("Error un-mmapping the file");
  close(file);
  file = -1;
  length = 0;
  data = nullptr;
}

}  // namespace

bool MMapInputFile::Open(const std::string& path, std::size_t length) {
  Close();
  // Opening a pipe would wait for a writer.
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file == -1) {
    QXThrow.Error("Error opening file for reading: %s", path.c_str());
    return false;
  }
  // Beyond the end of the file the mapping could not be read.
  char* const data = IsFileOfAtLeast(file, length) ? Map(file, length, PROT_READ) : nullptr;
  if (data == nullptr) {
    close(file);
    QXThrow.Error("Error mmapping the file: %s", path.c_str());
    return false;
  }
  file_ = file;
  length_ = length;
  data_ = data;
  return true;
}

void MMapInputFile::Close() {
  CloseMapping(file_, length_, data_);
}

bool MMapOutputFile::Open(const std::string& path, std::size_t length) {
  Close();
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (file == -1) {
    QXThrow.Error("Error opening file for writing: %s", path.c_str());
    return false;
  }
  if (const char* const failure = Stretch(file, length)) {
    [[maybe_unused]] const int status = ftruncate(file, 0);  // gives back what could be reserved
    close(file);
    QXThrow.Error("%s", failure);
    return false;
  }
  char* const data = Map(file, length, PROT_READ | PROT_WRITE);
  if (data == nullptr) {
    close(file);
    QXThrow.Error("Error mmapping the file");
    return false;
  }
  file_ = file;
  length_ = length;
  data_ = data;
  return true;
}

void MMapOutputFile::Close() {
  CloseMapping(file_, length_, data_);
}

}  // namespace QXFingrix
