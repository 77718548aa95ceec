#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "QXFingrix/QXFingerPrint.h"
#include "QXSystem/QXIter.h"
#include "database/WordArena.h"

namespace QXFingrix {

/// The bits of many fingerprints of one type, each of its own size; those of one size that are added in a row
/// lie side by side, as the kernels want them.
class FingerPrintStore {
 public:
  explicit FingerPrintStore(const QXFPTypeBase* type) : type_(type) {}

  unsigned Size() const { return static_cast<unsigned>(entries_.size()); }
  const std::uint64_t* GetWords(unsigned i) const { return entries_[i].words; }
  unsigned GetNumBits(unsigned i) const { return entries_[i].numBits; }
  /// As QXGetFPText.
  std::string_view GetText(unsigned i) const;

  /// Of the entries from begin to end - 1, how many from the first on have one size and lie side by side.
  unsigned RunLength(unsigned begin, unsigned end) const;

  /// Makes fp an entry again; an fp that has held one of the same size reuses its memory.
  void Load(unsigned i, QXFingerPrint& fp) const;
  QXSystem::QXIter<QXFingerPrint> GetIter() const;

  /// Errors   std::bad_alloc, nothing stored.
  void Append(const QXFingerPrint& fp);
  /// Room for words of the caller's own that live as long as the store.
  std::uint64_t* TakeWords(std::size_t numWords) { return arena_.Take(numWords); }

 private:
  struct Entry {
    const std::uint64_t* words;
    unsigned numBits;
    unsigned run;  // ascending; the same for entries side by side
  };

  const QXFPTypeBase* type_;
  std::vector<Entry> entries_;
  WordArena arena_;
};

}  // namespace QXFingrix
