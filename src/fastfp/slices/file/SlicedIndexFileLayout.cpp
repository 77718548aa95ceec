#include "fastfp/slices/file/SlicedIndexFileLayout.h"

#include <xxhash.h>

#include <array>
#include <chrono>
#include <thread>

#include "fastfp/file/FileLayout.h"
#include "fastfp/slices/file/PlainFile.h"

namespace QXFingrix {

std::uint64_t Checksum(const void* first, std::size_t numBytes) {
  return XXH3_64bits(first, numBytes);
}

std::uint64_t ChecksumOf(const SlicedIndexHeader& header) {
  return Checksum(&header, offsetof(SlicedIndexHeader, headerChecksum));
}

FpbinStamp FpbinStamp::Of(const std::string& fpbinFile) {
  PlainFile file;
  std::array<char, FileLayout::headerBytes> header;
  if (!file.Open(fpbinFile) || !file.Read(0, header.data(), header.size())) return {};
  return {file.Size(), file.Modified(), Checksum(header.data(), header.size())};
}

FpbinStamp FpbinStamp::OfSettled(const std::string& fpbinFile) {
  using namespace std::chrono;
  constexpr milliseconds tick{20};  // those of Linux take up to 10 ms
  constexpr int maxWaits = 50;
  FpbinStamp stamp = Of(fpbinFile);
  for (int i = 0; i < maxWaits; ++i) {
    const nanoseconds age = system_clock::now().time_since_epoch() - nanoseconds(stamp.modified);
    if (age < nanoseconds::zero() || age >= tick) break;
    std::this_thread::sleep_for(tick);
    stamp = Of(fpbinFile);
  }
  return stamp;
}

}  // namespace QXFingrix
