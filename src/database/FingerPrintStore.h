#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "QXFingrix/QXFingerPrint.h"
#include "QXSystem/QXIter.h"
#include "database/WordArena.h"

namespace QXFingrix {

/// Words of a fingerprint of so many bits.
constexpr std::size_t NumWords(unsigned numBits) {
  return (std::size_t{numBits} + 63) / 64;
}

/// The bits of many fingerprints of one type, each of its own size.
class FingerPrintStore {
 public:
  explicit FingerPrintStore(const QXFPTypeBase* type) : type_(type) {}

  unsigned Size() const { return static_cast<unsigned>(entries_.size()); }
  /// As QXGetFPText.
  std::string_view GetText(unsigned i) const;
  /// Makes fp an entry again; an fp that has held one of the same size reuses its memory.
  /// Errors   std::bad_alloc.
  void Load(unsigned i, QXFingerPrint& fp) const;
  QXSystem::QXIter<QXFingerPrint> GetIter() const;

  /// Appends a copy of fp, whose words lie in an arena that outlives the store's use of them.
  /// Returns  the copied words.
  /// Errors   std::bad_alloc, nothing stored.
  const std::uint64_t* Append(const QXFingerPrint& fp, WordArena& words);

 private:
  struct Entry {
    const std::uint64_t* words;
    unsigned numBits;
  };

  const QXFPTypeBase* type_;
  std::vector<Entry> entries_;
};

}  // namespace QXFingrix
