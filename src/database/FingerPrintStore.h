#pragma once

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
/// those of one size that are added to a lane in a row lie side by side, as the kernels want them.
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
  /// The entries from begin to end - 1 that are in a lane, ascending.
  std::span<const unsigned> GetLane(unsigned lane, unsigned begin, unsigned end) const;
  /// Of entries of a lane in a row, at least one, how many from the first on have one size and lie side by
  /// side.
  std::size_t RunLength(std::span<const unsigned> entries) const;

  /// Makes fp an entry again; an fp that has held one of the same size reuses its memory.
  void Load(unsigned i, QXFingerPrint& fp) const;
  QXSystem::QXIter<QXFingerPrint> GetIter() const;

  /// Errors   std::bad_alloc, nothing stored.
  void Append(const QXFingerPrint& fp, unsigned lane);

 private:
  struct Entry {
    const std::uint64_t* words;
    unsigned numBits;
    unsigned run;  // ascending in a lane; the same for entries side by side
  };

  struct Lane {
    WordArena words;
    std::vector<unsigned> entries;
    unsigned numBits = 0;  // of the first entry
    bool hasOneSize = true;
  };

  const QXFPTypeBase* type_;
  std::vector<Entry> entries_;
  std::vector<Lane> lanes_;
};

}  // namespace QXFingrix
