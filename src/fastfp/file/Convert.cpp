#include "QXFingrix/QXConvert.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

#include "QXFingrix/QXFPTypeLookup.h"
#include "fastfp/file/FileLayout.h"

// Words are copied to and from bytes as they lie in memory.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the file format's words are little-endian");
static_assert(sizeof(unsigned long) == 8);

namespace QXFingrix {

namespace {

// An empty range may have no address, which memcpy does not take.
void CopyBytes(void* to, const void* from, std::size_t numBytes) {
  if (numBytes != 0) std::memcpy(to, from, numBytes);
}

}  // namespace

bool QXIsUInit64LittleEndian() {
  return true;
}

std::string QXConvert(unsigned long value) {
  std::string bytes(sizeof(value), '\0');
  std::memcpy(bytes.data(), &value, sizeof(value));
  return bytes;
}

unsigned long QXConvert(const std::string& bytes) {
  if (bytes.size() != sizeof(unsigned long)) return 0;
  return QXConvert(reinterpret_cast<const unsigned char*>(bytes.data()));
}

unsigned long QXConvert(const unsigned char* bytes) {
  unsigned long value = 0;
  std::memcpy(&value, bytes, sizeof(value));
  return value;
}

void QXConvertHeader(std::vector<unsigned long>& words, const std::string& bytes) {
  words.assign(FileLayout::headerWords, 0);
  CopyBytes(words.data(), bytes.data(), std::min(bytes.size(), FileLayout::headerBytes));
}

void QXConvertHeader(std::string& bytes, const std::vector<unsigned long>& words) {
  bytes.assign(FileLayout::headerBytes, '\0');
  CopyBytes(bytes.data(), words.data(), std::min(words.size() * sizeof(unsigned long), bytes.size()));
}

unsigned long QXConvertFP(std::vector<unsigned long>& words, const QXFingerPrint& fp,
                          QXPopCountFunc popCount) {
  words.clear();
  if (popCount == nullptr) return 0;
  const std::span<const std::uint64_t> source = fp.GetWords();
  words.assign(source.begin(), source.end());
  words.resize((source.size() + 3) / 4 * 4, 0);  // the routines read whole groups of four
  const unsigned long numSet = popCount(words.data(), words.size());
  words.resize(source.size());
  return numSet;
}

bool QXConvertFP(QXFingerPrint& fp, const QXFPTypeBase* fptype, const std::vector<unsigned long>& words) {
  return QXConvertFP(fp, fptype, words.data(), words.size());
}

bool QXConvertFP(QXFingerPrint& fp, const QXFPTypeBase* fptype, const unsigned long* words,
                 std::size_t numWords) {
  return QXConvertFP(fp, fptype, reinterpret_cast<const unsigned char*>(words), numWords * sizeof(*words));
}

bool QXConvertFP(QXFingerPrint& fp, const QXFPTypeBase* fptype, const unsigned char* bytes,
                 std::size_t numBytes) {
  if (fptype == nullptr) return false;
  const std::size_t typeBits = QXGetFingerPrintSize(fptype);
  const std::size_t numBits = typeBits != 0 ? typeBits : numBytes * 8;
  if (numBits > numBytes * 8) return false;

  QXFingerPrint rebuilt;
  constexpr std::size_t maxSize = 4294967295U;  // more than a bit vector takes: it reports what is too much
  if (!rebuilt.SetSize(static_cast<unsigned>(std::min(numBits, maxSize)))) return false;
  const std::span<std::uint64_t> target = rebuilt.GetWords();
  CopyBytes(target.data(), bytes, (numBits + 7) / 8);
  if (numBits % 64 != 0) target.back() &= (std::uint64_t{1} << (numBits % 64)) - 1;
  rebuilt.SetFPTypeBase(fptype);
  fp = std::move(rebuilt);
  return true;
}

}  // namespace QXFingrix
