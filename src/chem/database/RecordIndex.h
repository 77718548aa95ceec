#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "chem/database/RecordFormat.h"

namespace QXChem {

// Where the records of a text start. Keeps the start of every indexStride-th record only and walks to the
// others. Immutable, so concurrent use needs no lock. The text must outlive it.
class RecordIndex {
 public:
  RecordIndex(std::string_view text, const RecordFormat& format);

  std::uint64_t NumRecords() const { return numRecords_; }
  // The record's text, and thereby its offset. `idx` must be below NumRecords().
  std::string_view GetRecord(std::uint64_t idx) const;

 private:
  std::string_view text_;
  const RecordFormat* format_;
  std::vector<std::uint64_t> starts_;
  std::uint64_t numRecords_ = 0;
};

}  // namespace QXChem
