#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/slices/SlicedIndex.h"
#include "fastfp/slices/SlicedQuery.h"

namespace QXFingrix {

/// Counts, block by block, the bits that records share with a query. Several blocks are under way at once, so
/// that memory always has columns to fetch while others are added; each is given up as soon as none of its
/// records can share enough.
/// Shape    claim(): the next block, a std::optional<SlicedQuery::Block>. least(block): how many bits a record
///          of the block must share to matter; asked again and again. take(block, shared): the counts of a block
///          in which a record may share that many; those below may be 0. done(block): after each block.
/// Cost     O(bits) for each block, a block of 512 records at a time; no allocation.
template <class Claim, class Least, class Take, class Done>
void ScanSlices(const SlicedIndex& index, const SlicedQuery& query, Claim claim, Least least, Take take,
                Done done) {
  constexpr std::size_t step = QXSystem::QXColumnCounts::step;
  constexpr std::size_t maxUnderWay = 8;
  const auto& kernel = QXSystem::QXGetBitCountKernel();

  struct UnderWay {
    SlicedQuery::Block block;
    const std::uint64_t* columns;
    std::span<const std::uint16_t> bits;  // still to be added
    QXSystem::QXColumnCounts counts;
  };
  std::array<UnderWay, maxUnderWay> all;
  const auto start = [&](UnderWay& one) {
    const std::optional<SlicedQuery::Block> block = claim();
    if (!block) return false;
    one.block = *block;
    one.columns = index.Columns(block->number);
    one.bits = query.bits;
    kernel.startColumns(one.counts);
    for (const std::uint16_t bit : one.bits.first(std::min(step, one.bits.size()))) {
      __builtin_prefetch(one.columns + bit * SlicedIndex::columnWords);
    }
    return true;
  };
  // False once the block is done with, counted or given up.
  const auto advance = [&](UnderWay& one) {
    const auto now = one.bits.first(std::min(step, one.bits.size()));
    one.bits = one.bits.subspan(now.size());
    const auto next = one.bits.first(std::min(step, one.bits.size()));
    const std::uint32_t wanted = least(one.block);
    const auto left = static_cast<std::uint32_t>(one.bits.size());
    const bool isAlive = now.empty() ? wanted == 0
                                     : kernel.addColumns(one.counts, one.columns, now, next,
                                                         wanted > left ? wanted - left : 0);
    if (isAlive && !one.bits.empty()) return true;
    if (isAlive) {
      std::array<std::uint32_t, SlicedIndex::blockRecords> shared;
      const std::size_t size = index.Size(one.block.number);
      kernel.writeColumns(one.counts, size, shared.data());
      take(one.block, std::span<const std::uint32_t>(shared.data(), size));
    }
    return false;
  };

  std::size_t numUnderWay = 0;
  while (numUnderWay < maxUnderWay && start(all[numUnderWay])) ++numUnderWay;
  while (numUnderWay > 0) {
    for (std::size_t i = 0; i < numUnderWay;) {
      if (advance(all[i])) {
        ++i;
        continue;
      }
      done(all[i].block);
      if (start(all[i])) {
        ++i;
      } else if (--numUnderWay != i) {
        all[i] = all[numUnderWay];
      }
    }
  }
}

}  // namespace QXFingrix
