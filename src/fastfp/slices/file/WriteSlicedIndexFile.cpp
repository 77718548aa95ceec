// Writing the file of an index. A block's columns are made in a buffer that stays in the cache, where they
// are hashed and from where they are written: no second copy of the index is held, and a disk that is full is
// an error of that write. The header comes last.

#include "fastfp/slices/file/WriteSlicedIndexFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "QXFingrix/QXFastFPIndex.h"
#include "fastfp/scan/RunThreads.h"
#include "fastfp/slices/HugePages.h"
#include "fastfp/slices/SlicedIndexMaker.h"
#include "fastfp/slices/file/NewFile.h"

namespace QXFingrix {

namespace {

constexpr std::size_t writtenAtOnce = std::size_t{8} << 20;  // bytes; more than a block has

class Writer {
 public:
  Writer(const PlainFile& file, const RecordTable& records)
      : file_(file),
        layout_{{records.numRecords, records.NumBits()}},
        orders_(AllocateHugePages(layout_.body.OrderBytes())),
        table_((layout_.BodyAt() - SlicedIndexFileLayout::tableAt) / sizeof(std::uint64_t)),
        maker_(records, layout_.body.Orders(orders_.get())) {}

  bool SortRecords() { return maker_.SortRecords(); }
  std::optional<std::uint64_t> Unsound() const { return maker_.Unsound(); }

  // Errors   0, or the errno of what failed. Stops at an unsound record.
  int WriteBody(unsigned numThreads) {
    const std::size_t numBlocks = layout_.body.NumBlocks();
    numThreads = static_cast<unsigned>(std::clamp<std::size_t>(numBlocks, 1, numThreads));
    std::vector<std::shared_ptr<void>> buffers;
    while (buffers.size() < numThreads) buffers.push_back(AllocateHugePages(layout_.body.BlockBytes()));
    std::atomic<std::size_t> nextBuffer{0};
    std::atomic<std::size_t> nextBlock{0};
    std::atomic<int> reason{0};
    RunThreads(numThreads, [&] {
      void* const buffer = buffers[nextBuffer.fetch_add(1)].get();
      for (std::size_t i;
           reason.load() == 0 && !maker_.Unsound() && (i = nextBlock.fetch_add(1)) < numBlocks;) {
        if (!WriteBlock(i, static_cast<std::uint64_t*>(buffer))) reason.store(errno);
      }
    });
    if (reason.load() != 0) return reason.load();
    maker_.OrderBits();
    table_[numBlocks] = Checksum(orders_.get(), layout_.body.OrderBytes());
    return file_.Write(layout_.OrdersAt(), orders_.get(), layout_.body.OrderBytes()) ? 0 : errno;
  }

  bool WriteHeader(const FpbinStamp& stamp) {
    const std::size_t tableBytes = table_.size() * sizeof(std::uint64_t);
    SlicedIndexHeader header;
    header.fileSize = layout_.FileSize();
    header.fpbin = stamp;
    header.numRecords = layout_.body.numRecords;
    header.numBits = layout_.body.numBits;
    header.tableChecksum = Checksum(table_.data(), tableBytes);
    header.headerChecksum = ChecksumOf(header);
    return file_.Write(SlicedIndexFileLayout::tableAt, table_.data(), tableBytes) &&
           file_.Write(0, &header, sizeof header);
  }

 private:
  bool WriteBlock(std::size_t block, std::uint64_t* columns) {
    if (!maker_.MakeBlock(block, columns)) return true;  // told of by the maker
    table_[block] = Checksum(columns, layout_.body.BlockBytes());
    const std::size_t at = layout_.BlockAt(block);
    const std::size_t end = at + layout_.body.BlockBytes();
    if (!file_.Write(at, columns, end - at)) return false;
    // The disk is busy meanwhile, and not only in the end. Blocks of other threads may be late: they are
    // written then.
    const std::size_t range = at / writtenAtOnce;
    if (end / writtenAtOnce != range) file_.StartWriting(range * writtenAtOnce, writtenAtOnce);
    return true;
  }

  const PlainFile& file_;
  const SlicedIndexFileLayout layout_;
  const std::shared_ptr<void> orders_;
  std::vector<std::uint64_t> table_;  // and the zeros behind it
  SlicedIndexMaker maker_;
};

}  // namespace

bool WriteSlicedIndexFile(const std::string& fpbinFile, const FpbinStamp& stamp, const RecordTable& records,
                          unsigned numThreads, std::string& reason) {
  const auto fail = [&reason](int error) {
    reason = std::generic_category().message(error);
    return false;
  };
  NewFile file;
  if (!file.Create(QXGetFastFPIndexFileName(fpbinFile), fpbinFile)) return fail(errno);
  Writer writer(file.Get(), records);
  const int error = writer.SortRecords() ? writer.WriteBody(numThreads) : 0;
  if (error != 0) return fail(error);
  if (const auto unsound = writer.Unsound()) {
    const std::uint64_t* const record = records.Record(*unsound);
    reason = "fingerprint " + std::to_string(*unsound) + " is damaged: its index is " +
             std::to_string(record[FileLayout::indexSlot]) + ", its bit count " +
             std::to_string(record[FileLayout::bitCountSlot]) + " of " + std::to_string(records.NumBits());
    return false;
  }
  if (!writer.WriteHeader(stamp)) return fail(errno);
  if (FpbinStamp::Of(fpbinFile) != stamp) {
    reason = "the fingerprint file was changed meanwhile";
    return false;
  }
  return file.Commit() || fail(errno);
}

}  // namespace QXFingrix
