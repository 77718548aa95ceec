#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// Counts, block by block, the bits that records share with a query. Several blocks are under way at once, so
/// that memory always has columns to fetch while others are added; each is given up as soon as none of its
/// records can share enough.
/// Shape    bits: the query's, as in SlicedQuery. claim(): the number of the next block, or nothing. least(block):
///          how many bits a record of the block must share to matter; asked again and again. take(block, shared):
///          the counts of a block in which a record may share that many; those below may be 0.
/// Cost     O(bits) for each block, a block of 512 records at a time; no allocation.
template <class Claim, class Least, class Take>
void ScanSlices(const SlicedIndex& index, std::span<const std::uint16_t> bits, Claim claim, Least least,
                Take take) {
  constexpr std::size_t step = QXSystem::QXColumnCounts::step;
  constexpr std::size_t maxUnderWay = 8;
  const auto& kernel = QXSystem::QXGetBitCountKernel();

  struct Block {
    std::size_t number;
    std::span<const std::uint16_t> bits;  // still to be added
    QXSystem::QXColumnCounts counts;
  };
  std::array<Block, maxUnderWay> blocks;
  const auto start = [&](Block& block) {
    const std::optional<std::size_t> number = claim();
    if (!number) return false;
    block.number = *number;
    block.bits = bits;
    kernel.startColumns(block.counts);
    const std::uint64_t* const columns = index.Columns(*number);
    for (const std::uint16_t bit : bits.first(std::min(step, bits.size()))) {
      __builtin_prefetch(columns + bit * SlicedIndex::columnWords);
    }
    return true;
  };
  // False once the block is done with, counted or given up.
  const auto advance = [&](Block& block) {
    const auto now = block.bits.first(std::min(step, block.bits.size()));
    block.bits = block.bits.subspan(now.size());
    const auto next = block.bits.first(std::min(step, block.bits.size()));
    const std::uint32_t wanted = least(block.number);
    const auto left = static_cast<std::uint32_t>(block.bits.size());
    const bool isAlive = now.empty() ? wanted == 0
                                     : kernel.addColumns(block.counts, index.Columns(block.number), now, next,
                                                         wanted > left ? wanted - left : 0);
    if (isAlive && !block.bits.empty()) return true;
    if (isAlive) {
      std::array<std::uint32_t, SlicedIndex::blockRecords> shared;
      const std::size_t size = index.Size(block.number);
      kernel.writeColumns(block.counts, size, shared.data());
      take(block.number, std::span<const std::uint32_t>(shared.data(), size));
    }
    return false;
  };

  std::size_t numUnderWay = 0;
  while (numUnderWay < maxUnderWay && start(blocks[numUnderWay])) ++numUnderWay;
  while (numUnderWay > 0) {
    for (std::size_t i = 0; i < numUnderWay;) {
      if (advance(blocks[i]) || start(blocks[i])) {
        ++i;
      } else if (--numUnderWay != i) {
        blocks[i] = blocks[numUnderWay];
      }
    }
  }
}

}  // namespace QXFingrix
