#include "QXSystem/QXBitVector.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <functional>
#include <new>
#include <utility>

#include "QXSystem/QXBitCountKernel.h"
#include "QXSystem/QXErrorHandler.h"

namespace QXSystem {

static_assert(std::endian::native == std::endian::little, "bytes and words number the bits alike only here");

namespace {

// The bits of the last word that belong to a vector of this size.
std::uint64_t LastWordMask(unsigned size) {
  return size % 64 == 0 ? ~std::uint64_t{0} : (std::uint64_t{1} << (size % 64)) - 1;
}

int HexDigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

}  // namespace

QXBitVector::QXBitVector(const QXBitVector& other) {
  if (NumWords(other.size_) > 1) {
    words_ = new std::uint64_t[NumWords(other.size_)];
    capacity_ = static_cast<unsigned>(NumWords(other.size_));
  }
  size_ = other.size_;
  std::copy_n(other.words_, NumWords(size_), words_);
}

QXBitVector::QXBitVector(QXBitVector&& other) noexcept {
  Steal(other);
}

QXBitVector& QXBitVector::operator=(const QXBitVector& other) {
  if (this == &other) return *this;
  const std::size_t numWords = NumWords(other.size_);
  if (numWords > capacity_) {
    std::uint64_t* words = new std::uint64_t[numWords];
    FreeWords();
    words_ = words;
    capacity_ = static_cast<unsigned>(numWords);
  }
  size_ = other.size_;
  std::copy_n(other.words_, numWords, words_);
  return *this;
}

QXBitVector& QXBitVector::operator=(QXBitVector&& other) noexcept {
  if (this == &other) return *this;
  FreeWords();
  Steal(other);
  return *this;
}

// Takes over the other's bits and leaves it as if default-made; what words_ pointed to is not looked at.
void QXBitVector::Steal(QXBitVector& other) noexcept {
  inline_ = std::exchange(other.inline_, 0);
  words_ = other.IsInline() ? &inline_ : std::exchange(other.words_, &other.inline_);
  size_ = std::exchange(other.size_, 64);
  capacity_ = std::exchange(other.capacity_, 1);
}

bool QXBitVector::SetSize(unsigned size) {
  if (size > static_cast<unsigned>(INT_MAX)) {
    QXThrow.Error("Max size for an QXBitVector is INT_MAX");
    return false;
  }
  const std::size_t oldWords = NumWords(size_);
  const std::size_t newWords = NumWords(size);
  if (newWords > capacity_) {
    auto* words = new (std::nothrow) std::uint64_t[newWords];
    if (!words) {
      QXThrow.Error("QXBitVector::SetSize() no memory for %u bits", size);
      return false;
    }
    std::copy_n(words_, oldWords, words);
    FreeWords();
    words_ = words;
    capacity_ = static_cast<unsigned>(newWords);
  }
  if (newWords > oldWords) {
    std::fill(words_ + oldWords, words_ + newWords, 0);
  } else if (size < size_ && newWords > 0) {
    words_[newWords - 1] &= LastWordMask(size);
  }
  size_ = size;
  return true;
}

void QXBitVector::ClearBits() {
  std::fill_n(words_, NumWords(size_), 0);
}

void QXBitVector::NegateBits() {
  for (std::uint64_t& word : GetWords()) word = ~word;
  if (size_ > 0) GetWords().back() &= LastWordMask(size_);
}

unsigned QXBitVector::CountBits() const {
  return static_cast<unsigned>(QXGetBitCountKernel().count(words_, NumWords(size_)));
}

int QXBitVector::FirstBit() const {
  return IsBitOn(0) ? 0 : NextBit(0);
}

int QXBitVector::NextBit(unsigned bit) const {
  if (size_ == 0 || bit >= size_ - 1) return -1;
  const std::size_t numWords = NumWords(size_);
  std::size_t index = (bit + 1) / 64;
  std::uint64_t word = words_[index] & (~std::uint64_t{0} << ((bit + 1) % 64));
  while (word == 0) {
    if (++index == numWords) return -1;
    word = words_[index];
  }
  return static_cast<int>(index * 64) + std::countr_zero(word);
}

template <class Op>
QXBitVector& QXBitVector::Combine(const QXBitVector& other, const char* caller, Op op) {
  if (size_ != other.size_) {
    QXThrow.Error("%s bit vectors of %u and %u bits do not combine", caller, size_, other.size_);
    return *this;
  }
  std::transform(words_, words_ + NumWords(size_), other.words_, words_, op);
  return *this;
}

QXBitVector& QXBitVector::operator&=(const QXBitVector& other) {
  return Combine(other, "QXBitVector::operator&=()", std::bit_and<>());
}

QXBitVector& QXBitVector::operator|=(const QXBitVector& other) {
  return Combine(other, "QXBitVector::operator|=()", std::bit_or<>());
}

QXBitVector& QXBitVector::operator^=(const QXBitVector& other) {
  return Combine(other, "QXBitVector::operator^=()", std::bit_xor<>());
}

std::string QXBitVector::ToHexString() const {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text(2 * GetDataSize(), '0');
  const unsigned char* bytes = GetData();
  for (std::size_t i = 0; i < GetDataSize(); ++i) {
    text[2 * i] = digits[bytes[i] >> 4];
    text[2 * i + 1] = digits[bytes[i] & 15];
  }
  return text;
}

bool QXBitVector::FromHexString(std::string_view text) {
  if (text.size() != 2 * GetDataSize()) return false;
  if (std::any_of(text.begin(), text.end(), [](char digit) { return HexDigitValue(digit) < 0; }))
    return false;
  const auto byteAt = [text](std::size_t i) {
    return static_cast<unsigned>(HexDigitValue(text[2 * i]) * 16 + HexDigitValue(text[2 * i + 1]));
  };
  if (size_ % 8 != 0 && byteAt(GetDataSize() - 1) >> (size_ % 8) != 0) return false;
  auto* bytes = reinterpret_cast<unsigned char*>(words_);
  for (std::size_t i = 0; i < GetDataSize(); ++i) bytes[i] = static_cast<unsigned char>(byteAt(i));
  return true;
}

bool operator==(const QXBitVector& a, const QXBitVector& b) {
  return a.GetSize() == b.GetSize() && std::ranges::equal(a.GetWords(), b.GetWords());
}

bool QXGetBitCounts(const QXBitVector& a, const QXBitVector& b, unsigned* onlyA, unsigned* onlyB,
                    unsigned* both) {
  if (a.GetSize() != b.GetSize()) {
    QXThrow.Error("QXGetBitCounts() bit vectors of %u and %u bits do not compare", a.GetSize(), b.GetSize());
    return false;
  }
  std::uint64_t ofA = 0;
  std::uint64_t ofB = 0;
  std::uint64_t shared = 0;
  QXGetBitCountKernel().countPair(a.GetWords().data(), b.GetWords().data(), a.GetWords().size(), &ofA, &ofB,
                                  &shared);
  *onlyA = static_cast<unsigned>(ofA - shared);
  *onlyB = static_cast<unsigned>(ofB - shared);
  *both = static_cast<unsigned>(shared);
  return true;
}

bool QXGetBitCounts(const QXBitVector& a, const QXBitVector& b, unsigned* onlyA, unsigned* onlyB,
                    unsigned* both, unsigned* neither) {
  if (!QXGetBitCounts(a, b, onlyA, onlyB, both)) return false;
  *neither = a.GetSize() - *onlyA - *onlyB - *both;
  return true;
}

}  // namespace QXSystem
