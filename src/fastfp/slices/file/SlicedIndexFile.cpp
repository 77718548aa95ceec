// Reading the file of an index. Nothing in it is believed before it has been checked: opening reads the
// header alone, whose numbers have to fit the .fpbin file and the size of this one; loading compares every
// byte with a checksum. A checksum only shows that nobody has damaged the file by accident, so what keeps a
// search inside its memory is tested besides.

#include "fastfp/slices/file/SlicedIndexFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <system_error>
#include <vector>

#include "QXSystem/QXErrorHandler.h"
#include "fastfp/scan/RunThreads.h"
#include "fastfp/slices/HugePages.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

constexpr const char* wrongChecksum = "its contents are not those that were written";
constexpr const char* wrongOrders = "its order of records or bits is impossible";

// Why these are not the first bytes of an index file of a size; null when they are.
const char* CheckHeader(const SlicedIndexHeader& header, std::uint64_t fileSize) {
  if (header.magic != SlicedIndexHeader::magicValue) return "it is no index file";
  if (header.version != SlicedIndexHeader::versionValue) return "its version is not known";
  if (header.headerChecksum != ChecksumOf(header)) return "its header is not the one that was written";
  if (header.fileSize != fileSize) return "its size is not the one that its header says";
  return nullptr;
}

// Why this cannot be the index of a .fpbin file although it says so.
const char* CheckShape(const SlicedIndexHeader& header, const QXFastFPDatabaseParams& params) {
  const bool fits = SlicedIndexLayout::IsPossible(header.numRecords, header.numBits) &&
                    header.numRecords == params.NumFingerPrints() &&
                    header.numBits / 64 == params.GetNumWords();
  if (!fits) return "it is for another number of fingerprints or bits";
  const SlicedIndexFileLayout layout{{header.numRecords, header.numBits}};
  if (layout.FileSize() != header.fileSize) return "its size does not fit the number of fingerprints";
  return nullptr;
}

// Whether the values are those from 0 to their number, each once. isSeen has room for them.
template <class T>
bool IsPermutation(std::span<const T> values, std::vector<bool>& isSeen) {
  isSeen.assign(values.size(), false);
  for (const T value : values) {
    if (value >= values.size() || isSeen[value]) return false;
    isSeen[value] = true;
  }
  return true;
}

// Fetches, where it has to, and checks the parts of an index: the orders first, which take longest, then the
// blocks.
class PartChecker {
 public:
  // target: where the body is to be copied to; null where it is already at body.
  PartChecker(const PlainFile& file, const SlicedIndexFileLayout& layout, const SlicedIndex& index,
              const char* body, char* target, const std::vector<std::uint64_t>& table)
      : file_(file), layout_(layout), index_(index), body_(body), target_(target), table_(table) {
    isSeen_.reserve(std::max<std::size_t>(index.places.size(), index.rarestFirst.size()));
  }

  // To be run by several threads.
  void CheckParts() {
    const std::size_t numParts = layout_.TableSize();
    for (std::size_t part; (part = next_.fetch_add(1)) < numParts && problem_.load() == nullptr;) {
      const bool isOrders = part == 0;
      const std::size_t at = isOrders ? layout_.OrdersAt() : layout_.BlockAt(part - 1);
      const std::size_t numBytes = isOrders ? layout_.body.OrderBytes() : layout_.body.BlockBytes();
      const char* problem = CheckBytes(at, numBytes, table_[isOrders ? numParts - 1 : part - 1]);
      if (problem == nullptr && isOrders && !AreOrdersSound()) problem = wrongOrders;
      if (problem != nullptr) problem_.store(problem);
    }
  }

  const char* Problem() const { return problem_.load(); }

 private:
  const char* CheckBytes(std::size_t at, std::size_t numBytes, std::uint64_t checksum) {
    const std::size_t offset = at - layout_.BodyAt();
    if (target_ != nullptr && !file_.Read(at, target_ + offset, numBytes)) return "it cannot be read";
    return Checksum(body_ + offset, numBytes) == checksum ? nullptr : wrongChecksum;
  }

  bool AreOrdersSound() {
    const auto& counts = index_.bitCounts;
    return IsPermutation(index_.places, isSeen_) && IsPermutation(index_.rarestFirst, isSeen_) &&
           std::ranges::is_sorted(counts) && (counts.empty() || counts.back() <= index_.numBits);
  }

  const PlainFile& file_;
  const SlicedIndexFileLayout& layout_;
  const SlicedIndex& index_;
  const char* const body_;
  char* const target_;
  const std::vector<std::uint64_t>& table_;
  std::vector<bool> isSeen_;
  std::atomic<std::size_t> next_{0};
  std::atomic<const char*> problem_{nullptr};
};

}  // namespace

SlicedIndexFile::SlicedIndexFile(const std::string& fpbinFile, const FpbinStamp& stamp,
                                 const QXFastFPDatabaseParams& params, const char* caller)
    : name_(QXGetFastFPIndexFileName(fpbinFile)) {
  Open(fpbinFile, stamp, params, caller);
  if (state_ != QXFastFPIndexState::Usable) file_.Close();
}

void SlicedIndexFile::Open(const std::string& fpbinFile, const FpbinStamp& stamp,
                           const QXFastFPDatabaseParams& params, const char* caller) {
  if (!file_.Open(name_)) {
    if (errno != ENOENT && errno != ENOTDIR) Refuse(std::generic_category().message(errno).c_str(), caller);
    return;
  }
  if (!file_.Read(0, &header_, sizeof header_)) return Refuse("it is too short", caller);
  if (const char* const problem = CheckHeader(header_, file_.Size())) return Refuse(problem, caller);
  if (header_.fpbin != stamp || stamp != FpbinStamp::Of(fpbinFile)) {
    state_ = QXFastFPIndexState::Stale;
    QXThrow.Warning(
        "%s : index file %s is not used: it was made before %s was changed; 'qxfp index' renews it", caller,
        name_.c_str(), fpbinFile.c_str());
    return;
  }
  if (const char* const problem = CheckShape(header_, params)) return Refuse(problem, caller);
  layout_.body = {header_.numRecords, header_.numBits};
  state_ = QXFastFPIndexState::Usable;
}

void SlicedIndexFile::Refuse(const char* why, const char* caller) {
  state_ = QXFastFPIndexState::Damaged;
  QXThrow.Warning("%s : index file %s is refused: %s; 'qxfp index' makes a new one", caller, name_.c_str(),
                  why);
}

std::unique_ptr<const SlicedIndex> SlicedIndexFile::Load(Memory memory, unsigned numThreads,
                                                         const char* caller) {
  const PlainFile file = std::move(file_);
  if (!file.IsOpen()) return nullptr;
  try {
    std::vector<std::uint64_t> table((layout_.BodyAt() - SlicedIndexFileLayout::tableAt) /
                                     sizeof(std::uint64_t));
    const std::size_t tableBytes = table.size() * sizeof(std::uint64_t);
    if (!file.Read(SlicedIndexFileLayout::tableAt, table.data(), tableBytes) ||
        Checksum(table.data(), tableBytes) != header_.tableChecksum) {
      Refuse(wrongChecksum, caller);
      return nullptr;
    }
    char* target = nullptr;
    const char* body = nullptr;
    std::shared_ptr<const void> owner;
    if (memory == Memory::Copied) {
      const std::shared_ptr<void> copy = AllocateHugePages(layout_.body.NumBytes());
      body = target = static_cast<char*>(copy.get());
      owner = copy;
    } else {
      owner = file.Map();
      if (owner == nullptr) throw std::bad_alloc();
      body = static_cast<const char*>(owner.get()) + layout_.BodyAt();
    }
    auto index = std::make_unique<const SlicedIndex>(layout_.body.Index(body, std::move(owner)));
    PartChecker checker(file, layout_, *index, body, target, table);
    RunThreads(numThreads, [&checker] { checker.CheckParts(); });
    if (checker.Problem() == nullptr) return index;
    Refuse(checker.Problem(), caller);
  } catch (const std::bad_alloc&) {
    QXThrow.Warning("%s : index file %s is not used: there is not enough memory for it", caller,
                    name_.c_str());
  }
  return nullptr;
}

}  // namespace QXFingrix
