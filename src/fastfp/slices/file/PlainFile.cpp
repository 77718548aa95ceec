#include "fastfp/slices/file/PlainFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace QXFingrix {

PlainFile& PlainFile::operator=(PlainFile&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  std::swap(size_, other.size_);
  std::swap(modified_, other.modified_);
  return *this;
}

bool PlainFile::Open(const std::string& path) {
  Close();
  struct stat status {};
  // Opening a pipe would wait for a writer.
  descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor_ < 0) return false;
  const bool isKnown = fstat(descriptor_, &status) == 0;
  if (!isKnown || !S_ISREG(status.st_mode)) {
    const int reason = !isKnown ? errno : S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    Close();
    errno = reason;
    return false;
  }
  constexpr std::uint64_t second = 1'000'000'000;
  size_ = static_cast<std::uint64_t>(status.st_size);
  modified_ = static_cast<std::uint64_t>(status.st_mtim.tv_sec) * second +
              static_cast<std::uint64_t>(status.st_mtim.tv_nsec);
  return true;
}

void PlainFile::Close() {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
}

bool PlainFile::Read(std::uint64_t from, void* bytes, std::size_t numBytes) const {
  auto* next = static_cast<char*>(bytes);
  while (numBytes > 0) {
    const ssize_t num = pread(descriptor_, next, numBytes, static_cast<off_t>(from));
    if (num < 0 && errno == EINTR) continue;
    if (num == 0) errno = 0;
    if (num <= 0) return false;
    next += num;
    from += static_cast<std::uint64_t>(num);
    numBytes -= static_cast<std::size_t>(num);
  }
  return true;
}

bool PlainFile::Write(std::uint64_t to, const void* bytes, std::size_t numBytes) const {
  const auto* next = static_cast<const char*>(bytes);
  while (numBytes > 0) {
    const ssize_t num = pwrite(descriptor_, next, numBytes, static_cast<off_t>(to));
    if (num < 0 && errno == EINTR) continue;
    if (num == 0) errno = ENOSPC;
    if (num <= 0) return false;
    next += num;
    to += static_cast<std::uint64_t>(num);
    numBytes -= static_cast<std::size_t>(num);
  }
  return true;
}

void PlainFile::StartWriting([[maybe_unused]] std::uint64_t from,
                             [[maybe_unused]] std::size_t numBytes) const {
#ifdef SYNC_FILE_RANGE_WRITE
  const auto first = static_cast<off_t>(from);
  sync_file_range(descriptor_, first, static_cast<off_t>(numBytes), SYNC_FILE_RANGE_WRITE);
#endif
}

std::shared_ptr<const void> PlainFile::Map() const {
  const std::size_t size = size_;
  void* const first = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor_, 0);
  if (first == MAP_FAILED) return nullptr;
  return {first, [size](const void* mapped) { munmap(const_cast<void*>(mapped), size); }};
}

}  // namespace QXFingrix
