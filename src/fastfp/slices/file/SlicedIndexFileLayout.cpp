#include "fastfp/slices/file/SlicedIndexFileLayout.h"

#include <xxhash.h>

#include <array>

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

}  // namespace QXFingrix
