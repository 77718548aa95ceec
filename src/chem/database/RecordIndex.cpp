#include "chem/database/RecordIndex.h"

namespace QXChem {

RecordIndex::RecordIndex(std::string_view text, const RecordFormat& format) : text_(text), format_(&format) {
  for (std::size_t start = format.findFirst(text); start < text.size();
       start = format.findNext(text, start)) {
    if (numRecords_ % format.indexStride == 0) starts_.push_back(start);
    ++numRecords_;
  }
  starts_.shrink_to_fit();
}

std::string_view RecordIndex::GetRecord(std::uint64_t idx) const {
  const unsigned stride = format_->indexStride;
  std::size_t start = starts_[idx / stride];
  for (std::uint64_t i = idx % stride; i > 0; --i) start = format_->findNext(text_, start);
  const std::uint64_t next = (idx + 1) / stride;
  const bool nextIsKept = (idx + 1) % stride == 0 && next < starts_.size();
  const std::size_t end = nextIsKept ? starts_[next] : format_->findNext(text_, start);
  return text_.substr(start, end - start);
}

}  // namespace QXChem
