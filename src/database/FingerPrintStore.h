#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "QXFingrix/QXFingerPrint.h"
#include "QXSystem/QXIter.h"
#include "database/WordArena.h"

namespace QXFingrix {

/// The bits of many fingerprints of one type, each of its own size. Who adds one names a lane, a small number:
/// those of one size that are added to a lane in a row lie side by side, as the kernels want them, and so do
/// their bit counts.
class FingerPrintStore {
 public:
  explicit FingerPrintStore(const QXFPTypeBase* type) : type_(type) {}

  unsigned Size() const { return static_cast<unsigned>(entries_.size()); }
  const std::uint64_t* GetWords(unsigned i) const { return entries_[i].words; }
  unsigned GetNumBits(unsigned i) const { return entries_[i].numBits; }
  /// As QXGetFPText.
  std::string_view GetText(unsigned i) const;

  unsigned NumLanes() const { return static_cast<unsigned>(lanes_.size()); }
  /// Whether all entries of a lane have this size.
  bool HasOneSize(unsigned lane, unsigned numBits) const {
    return lanes_[lane].hasOneSize && lanes_[lane].numBits == numBits;
  }

  /// Entries of a lane that have one size and lie side by side, ascending.
  struct Run {
    std::span<const unsigned> entries;
    const unsigned* bitCounts;  // of each
    const std::uint64_t* words;
    unsigned numBits;
  };
  /// Calls visit(run) for runs of at most maxSize entries that together are the entries from begin to end - 1
  /// of a lane.
  template <class Visit>
  void ForRuns(unsigned lane, unsigned begin, unsigned end, std::size_t maxSize, Visit visit) const;

  /// Makes fp an entry again; an fp that has held one of the same size reuses its memory.
  void Load(unsigned i, QXFingerPrint& fp) const;
  QXSystem::QXIter<QXFingerPrint> GetIter() const;

  /// Errors   std::bad_alloc, nothing stored.
  void Append(const QXFingerPrint& fp, unsigned lane, unsigned bitCount);

 private:
  struct Entry {
    const std::uint64_t* words;
    unsigned numBits;
  };

  // Whether one has the size of the other and follows it in memory.
  static bool IsBeside(const Entry& entry, const Entry& next);

  struct Lane {
    WordArena words;
    std::vector<unsigned> entries;
    std::vector<unsigned> bitCounts;
    std::vector<std::size_t> runs;  // where each begins among the entries
    unsigned numBits = 0;           // of the first entry
    bool hasOneSize = true;
  };

  const QXFPTypeBase* type_;
  std::vector<Entry> entries_;
  std::vector<Lane> lanes_;
};

template <class Visit>
void FingerPrintStore::ForRuns(unsigned laneNumber, unsigned begin, unsigned end, std::size_t maxSize,
                               Visit visit) const {
  const Lane& lane = lanes_[laneNumber];
  const auto placeOf = [&lane](unsigned entry) {
    return static_cast<std::size_t>(std::ranges::lower_bound(lane.entries, entry) - lane.entries.begin());
  };
  const std::size_t last = placeOf(end);
  auto nextRun = lane.runs.begin();
  for (std::size_t first = placeOf(begin), size = 0; first < last; first += size) {
    while (nextRun != lane.runs.end() && *nextRun <= first) ++nextRun;
    const std::size_t runEnd = nextRun == lane.runs.end() ? last : std::min(last, *nextRun);
    size = std::min(maxSize, runEnd - first);
    const Entry& entry = entries_[lane.entries[first]];
    visit(
        Run{{lane.entries.data() + first, size}, lane.bitCounts.data() + first, entry.words, entry.numBits});
  }
}

}  // namespace QXFingrix
