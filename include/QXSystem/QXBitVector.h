#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "QXSystem/QXExport.h"

namespace QXSystem {

/// A vector of bits. Bit i is bit i % 64, lowest first, of word i / 64, and so bit i % 8 of byte i / 8; the
/// bits of the last word at and above GetSize() are zero. Up to 64 bits are stored inline, more on the heap.
/// Errors   an index outside the vector reads as off and is ignored when written.
/// Threads  const methods may run at once on one object.
class QX_API QXBitVector {
 public:
  /// 64 clear bits.
  QXBitVector() = default;
  /// `size` clear bits; 64 of them, after SetSize()'s report, when the size is refused.
  explicit QXBitVector(unsigned size) { SetSize(size); }
  virtual ~QXBitVector() { FreeWords(); }
  QXBitVector(const QXBitVector& other);
  QXBitVector(QXBitVector&& other) noexcept;
  /// Reuses the memory that is there when it suffices.
  QXBitVector& operator=(const QXBitVector& other);
  QXBitVector& operator=(QXBitVector&& other) noexcept;

  unsigned GetSize() const { return size_; }

  /// Keeps the bits that both sizes have; new bits are clear. Shrinking keeps the memory for later growth.
  /// Errors   above INT_MAX: error report "Max size for an QXBitVector is INT_MAX", false, unchanged;
  ///          no memory: error report, false, unchanged.
  bool SetSize(unsigned size);

  bool IsBitOn(unsigned bit) const { return bit < size_ && ((words_[bit / 64] >> (bit % 64)) & 1) != 0; }
  void SetBitOn(unsigned bit) {
    if (bit < size_) words_[bit / 64] |= std::uint64_t{1} << (bit % 64);
  }
  void SetBitOff(unsigned bit) {
    if (bit < size_) words_[bit / 64] &= ~(std::uint64_t{1} << (bit % 64));
  }
  void ToggleBit(unsigned bit) {
    if (bit < size_) words_[bit / 64] ^= std::uint64_t{1} << (bit % 64);
  }

  void ClearBits();
  void NegateBits();
  unsigned CountBits() const;

  /// The first bit that is on, the first one after `bit` that is on; -1 when there is none.
  int FirstBit() const;
  int NextBit(unsigned bit) const;

  const unsigned char* GetData() const { return reinterpret_cast<const unsigned char*>(words_); }
  /// Bytes that hold a bit: (size + 7) / 8.
  std::size_t GetDataSize() const { return (std::size_t{size_} + 7) / 8; }

  std::span<const std::uint64_t> GetWords() const { return {words_, NumWords(size_)}; }
  /// Who writes words keeps the bits above GetSize() zero.
  std::span<std::uint64_t> GetWords() { return {words_, NumWords(size_)}; }

  /// Errors   different sizes: error report, unchanged.
  QXBitVector& operator&=(const QXBitVector& other);
  QXBitVector& operator|=(const QXBitVector& other);
  QXBitVector& operator^=(const QXBitVector& other);

  /// Two lower-case hexadecimal digits for each byte, in storage order.
  std::string ToHexString() const;
  /// The inverse, for a vector that already has its size: takes exactly 2 * GetDataSize() digits of either
  /// case that set no bit outside the vector. False and unchanged otherwise; no report.
  bool FromHexString(std::string_view text);

 private:
  static constexpr std::size_t NumWords(unsigned size) { return (std::size_t{size} + 63) / 64; }
  bool IsInline() const { return words_ == &inline_; }
  void FreeWords() {
    if (!IsInline()) delete[] words_;
  }
  void Steal(QXBitVector& other) noexcept;
  template <class Op>
  QXBitVector& Combine(const QXBitVector& other, const char* caller, Op op);

  std::uint64_t* words_ = &inline_;
  std::uint64_t inline_ = 0;
  unsigned size_ = 64;
  unsigned capacity_ = 1;  // words
};

/// Equal sizes and equal bits.
QX_API bool operator==(const QXBitVector& a, const QXBitVector& b);

/// Counts the bits set in `a` alone, in `b` alone and in both, on the best kernel of QXBitCountKernel.h.
/// Errors   different sizes: error report, false, outputs untouched.
/// Cost     one pass, no allocation.
QX_API bool QXGetBitCounts(const QXBitVector& a, const QXBitVector& b, unsigned* onlyA, unsigned* onlyB,
                           unsigned* both);
/// The same, and the bits clear in both.
QX_API bool QXGetBitCounts(const QXBitVector& a, const QXBitVector& b, unsigned* onlyA, unsigned* onlyB,
                           unsigned* both, unsigned* neither);

}  // namespace QXSystem
