#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <sys/types.h>

namespace QXFingrix {

/// An open file, closed with the object.
/// Errors   functions return false or null and leave the reason in errno.
/// Threads  Read and Write may run at once.
class PlainFile {
 public:
  PlainFile() = default;
  explicit PlainFile(int descriptor) : descriptor_(descriptor) {}
  ~PlainFile() { Close(); }
  PlainFile(PlainFile&& other) noexcept { *this = std::move(other); }
  PlainFile& operator=(PlainFile&& other) noexcept;

  /// Opens an ordinary file for reading.
  bool Open(const std::string& path);
  void Close();
  bool IsOpen() const { return descriptor_ >= 0; }
  int Descriptor() const { return descriptor_; }

  std::uint64_t Size() const { return size_; }          ///< when it was opened
  std::uint64_t Modified() const { return modified_; }  ///< nanoseconds since 1970, when it was opened

  /// All of the bytes, or false; errno is 0 when the file ends before.
  bool Read(std::uint64_t from, void* bytes, std::size_t numBytes) const;
  bool Write(std::uint64_t to, const void* bytes, std::size_t numBytes) const;

  /// Lets the system begin to bring to the disk what was written there. A wish.
  void StartWriting(std::uint64_t from, std::size_t numBytes) const;

  /// The first Size() bytes, for reading. They stay mapped when the file is closed.
  std::shared_ptr<const void> Map() const;

 private:
  int descriptor_ = -1;
  std::uint64_t size_ = 0;
  std::uint64_t modified_ = 0;
};

}  // namespace QXFingrix
