#pragma once

#include <cstdint>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "fastfp/RecordScan.h"
#include "fastfp/Scorer.h"
#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// A query in the form in which an index is searched, made once for all threads.
struct SlicedQuery {
  SlicedQuery(const SlicedIndex& index, const QueryBits& query, const Scorer& scorer, bool descending);

  std::vector<std::uint16_t> bits;       // that are set, rarest first, then padding
  std::vector<std::uint32_t> bestFirst;  // blocks by the best score that their bit counts allow
};

}  // namespace QXFingrix
