// Files that lie or are damaged, opened by both back ends: words and an invalid object, or a defined result;
// never a crash, and never memory for records that are not there.

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "QXFingrix/QXFastFPDatabase.h"
#include "fastfp/FpbinFile.h"
#include "fastfp/file/ReadRecords.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;
namespace MemoryType = QXFastFPDatabaseMemoryType;

constexpr std::size_t recordBytes = (16 + 2) * 8;
const std::string front = "QXFastFPDatabase::QXFastFPDatabase() ";
const std::string noMapping = front + ": cannot initialize object for memory mapping!";
const std::string noMemory = front + "cannot initialize object for in memory search!";

std::string Word(std::uint64_t value) {
  std::string bytes(8, '\0');
  std::memcpy(bytes.data(), &value, 8);
  return bytes;
}

class HostileFiles : public testing::Test {
 protected:
  HostileFiles() {
    std::mt19937_64 random(3);
    for (int i = 0; i < 5; ++i) fps_.push_back(RandomFP(type_, random, 0.1));
    bytes_ = FpbinBytes(type_, fps_);
  }

  std::string With(std::size_t at, std::uint64_t value) const {
    return std::string(bytes_).replace(at, 8, Word(value));
  }
  static std::string WithHeader(const std::string& type, std::uint64_t num, std::uint64_t numWords,
                                std::size_t size) {
    std::string bytes = "LE\nmols.smi\n" + type + '\n' + std::to_string(num) + '\n';
    bytes.resize(784, '\0');
    bytes += Word(numWords) + Word(num);
    bytes.resize(size, '\0');
    return bytes;
  }
  void ExpectRefused(unsigned memoryType, const Strings& texts) const {
    const QXErrorCollector reports;
    EXPECT_FALSE(QXFastFPDatabase(file_, memoryType).IsValid());
    EXPECT_EQ(Texts(reports), texts);
  }

  TempDir dir_;
  const std::string file_ = dir_.File("x.fpbin");
  const std::string typeText_ = PathTypeString(1024);
  const QXFPTypeBase* const type_ = PathType(1024);
  std::vector<QXFingerPrint> fps_;
  std::string bytes_;
};

// Every one of these headers passes the header reader, which looks at the header alone. Where the records end
// too early, the heap's reader says where.
TEST_F(HostileFiles, RecordsThatAreNotWhatTheHeaderSaysAreRefused) {
  const std::string all = front + ": cannot read all fingerprints!";
  const auto cut = [](int i) { return front + ": cannot read " + std::to_string(i) + "-th fingerprint"; };
  const auto head = [this](std::uint64_t num, std::uint64_t numWords, std::size_t size) {
    return WithHeader(typeText_, num, numWords, size);
  };
  struct Case {
    const char* name;
    std::string bytes;
    std::string reading;  // what the heap's reader says first
  };
  const std::uint64_t huge = 1ULL << 63;
  const Case cases[] = {
      {"no records", bytes_.substr(0, 800), all},
      {"a byte of the first record", bytes_.substr(0, 801), cut(0)},
      {"cut behind an index", bytes_.substr(0, 800 + 2 * recordBytes + 8), cut(2)},
      {"cut behind a bit count", bytes_.substr(0, 800 + 2 * recordBytes + 16), cut(2)},
      {"a record missing", bytes_.substr(0, bytes_.size() - recordBytes), all},
      {"a byte missing", bytes_.substr(0, bytes_.size() - 1), cut(4)},
      {"a byte too much", bytes_ + '\0', ""},
      {"a record too much", bytes_ + std::string(recordBytes, '\0'), ""},
      {"no fingerprints by the header", head(0, 16, 800 + recordBytes), ""},
      {"N of 2^63", head(huge, 16, 800 + recordBytes), all},
      {"N with which the size overflows to that of no record", head(1ULL << 60, 16, 800), all},
      {"the largest N", head(~0ULL, 16, 900), cut(0)},
      {"W of 2^63", head(1, huge, 800 + recordBytes), ""},
      {"W + 2 is 0 modulo 2^64", head(2, ~0ULL - 1, 800), ""},
      {"8 (W + 2) overflows to a good size", head(1, (1ULL << 61) + 16, 800 + recordBytes), ""},
      {"W of 0", head(5, 0, 800 + 5 * 16), ""},
      {"W no multiple of 4", head(5, 17, 800 + 5 * 19 * 8), ""},
      {"W of another type", head(5, 32, 800 + 5 * 34 * 8), ""},
      {"a type for another W", WithHeader(PathTypeString(2048), 5, 16, bytes_.size()), ""},
      {"a type of long records", WithHeader(PathTypeString(65280), 1, 1020, 900), cut(0)},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    WriteFile(file_, test.bytes);
    ExpectRefused(MemoryType::MemoryMapped, {noMapping});
    ExpectRefused(MemoryType::InMemory,
                  test.reading.empty() ? Strings{noMemory} : Strings{test.reading, noMemory});
  }
}

TEST_F(HostileFiles, UnsoundHeadersAreRefusedByBothBackEnds) {
  const std::string params = "QXFastFPDatabaseParams() ";
  const std::string unsound = front + ": cannot initialize object!";
  const std::string header = file_ + " header";
  const std::size_t typeAt = bytes_.find("Path,");
  const auto edited = [this](const std::string& from, const std::string& to) {
    return std::string(bytes_).replace(bytes_.find(from), from.size(), to);
  };
  std::string oneLine = bytes_;
  std::ranges::replace(oneLine, '\n', ' ');
  const std::pair<std::string, Strings> cases[] = {
      {"", {params + "invalid fingerprint database file " + file_, unsound}},
      {oneLine, {params + "cannot read fingerprint type from " + header, unsound}},
      {bytes_.substr(0, 799), {params + "inconsistent number of fingerprints in " + header, unsound}},
      {With(792, 6), {params + "inconsistent number of fingerprints in " + header, unsound}},
      {edited("\n5\n", "\n6\n"), {params + "inconsistent number of fingerprints in " + header, unsound}},
      {edited("\n5\n", std::string("\n5\0\n", 4)),
       {params + "invalid number of fingerprints in " + header, unsound}},
      {edited("LE", "BE"),
       {front + ": " + file_ + " was written in big-endian byte order, which is not supported!"}},
      {WithHeader(PathTypeString(1000), 0, 15, 800),
       {front + "invalid fingerprint size (has to be multiple of 256)!"}},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    WriteFile(file_, cases[i].first);
    for (const unsigned memoryType : {MemoryType::MemoryMapped, MemoryType::InMemory}) {
      ExpectRefused(memoryType, cases[i].second);
    }
  }
  // The text of the type, damaged at every place, with what a damaged file has there.
  for (std::size_t at = typeAt - 1; at < typeAt + typeText_.size() + 3; ++at) {
    for (const char damage : {'\0', '\n', '\xff'}) {
      if (bytes_[at] == damage) continue;
      SCOPED_TRACE(testing::Message() << "byte " << at << " is " << int{damage});
      std::string bytes = bytes_;
      bytes[at] = damage;
      WriteFile(file_, bytes);
      for (const unsigned memoryType : {MemoryType::MemoryMapped, MemoryType::InMemory}) {
        const QXErrorCollector reports;
        EXPECT_FALSE(QXFastFPDatabase(file_, memoryType).IsValid());
        ASSERT_NE(reports.Count(), 0U);
        EXPECT_EQ(Texts(reports).back(), unsound);
      }
    }
  }
}

TEST_F(HostileFiles, WhatIsNoReadableFileIsRefused) {
  mkdir(file_.c_str(), 0700);
  const std::string locked = dir_.File("locked.fpbin");
  WriteFile(locked, bytes_);
  chmod(locked.c_str(), 0);
  for (const unsigned memoryType : {MemoryType::MemoryMapped, MemoryType::InMemory}) {
    ExpectRefused(memoryType, {"QXFastFPDatabaseParams() invalid fingerprint database file " + file_,
                               front + ": cannot initialize object!"});
    const QXErrorCollector reports;
    const QXFastFPDatabase db(locked, memoryType);
    if (db.IsValid()) continue;  // root may read everything
    EXPECT_EQ(Texts(reports),
              (Strings{"QXFastFPDatabaseParams() cannot open fingerprint database file " + locked,
                       front + ": cannot initialize object!"}));
  }
}

// A bit count is believed by the scan of a mapping, and refused by the heap's reader when there are not as
// many bits. An index is believed by both, except where the fingerprint of that index is asked for.
TEST_F(HostileFiles, WrongRecordsHaveDefinedResults) {
  const std::size_t third = 800 + 3 * recordBytes;
  for (const std::uint64_t bitCount : {std::uint64_t{1025}, ~std::uint64_t{0}}) {
    WriteFile(file_, With(third + 8, bitCount));
    ExpectRefused(MemoryType::InMemory, {front + ": invalid data in 3-th fingerprint", noMemory});
    const QXFastFPDatabase db(file_);
    ASSERT_TRUE(db.IsValid());
    const std::vector<double> scores = db.GetRawScores(fps_[0], QXFPDatabaseOptions());
    ASSERT_EQ(scores.size(), fps_.size());
    EXPECT_EQ(scores[0], 1.0);
    EXPECT_LT(scores[3], 0.1);
  }
  WriteFile(file_, With(third + 8, 1024));
  EXPECT_TRUE(QXFastFPDatabase(file_, MemoryType::InMemory).IsValid());

  WriteFile(file_, With(third, ~std::uint64_t{0}));
  for (const unsigned memoryType : {MemoryType::MemoryMapped, MemoryType::InMemory}) {
    const QXFastFPDatabase db(file_, memoryType);
    ASSERT_TRUE(db.IsValid());
    const QXErrorCollector reports;
    EXPECT_TRUE(db.GetRawScores(std::uint64_t{3}, QXFPDatabaseOptions()).empty());
    EXPECT_EQ(Texts(reports),
              (Strings{"QXFastFPDatabase::GetFingerPrint() : fingerprint and molecule index inconsistency!",
                       "QXFastFPDatabase::GetRawScores() : cannot access fingerprint!"}));
    EXPECT_EQ(db.GetRawScores(fps_[3], QXFPDatabaseOptions())[3], 1.0);
    EXPECT_EQ(db.GetMoleculeIndex(3), ~std::uint64_t{0});
  }
}

TEST_F(HostileFiles, FileThatChangesBetweenHeaderAndRecordsIsReported) {
  WriteFile(file_, bytes_);
  const QXFastFPDatabaseParams params(file_);
  const std::string other = dir_.File("other.fpbin");
  const std::string absent = dir_.File("absent.fpbin");
  const auto expect = [&](const std::string& path, const Strings& texts) {
    const QXErrorCollector reports;
    EXPECT_EQ(ReadRecords(path, params, "f()"), nullptr);
    EXPECT_EQ(Texts(reports), texts);
  };
  expect(absent, {"f() : cannot open fingerprint database file " + absent});
  WriteFile(other, bytes_.substr(0, 799));
  expect(other, {"f() : cannot skip header in database file " + other});
  WriteFile(other, bytes_.substr(0, 800 + recordBytes));
  expect(other, {"f() : cannot read all fingerprints!"});
  WriteFile(other, bytes_.substr(0, 800 + recordBytes + 7));
  expect(other, {"f() : cannot read 1-th fingerprint"});
  WriteFile(other, With(792, 4));
  expect(other, {});
}

TEST_F(HostileFiles, HeapOutlivesTheFile) {
  WriteFile(file_, bytes_);
  const QXFastFPDatabase db(file_, MemoryType::InMemory);
  std::filesystem::resize_file(file_, 0);
  QXFingerPrint fp;
  ASSERT_TRUE(db.GetFingerPrint(fp, 4));
  EXPECT_TRUE(fp == fps_[4]);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // their own memory has no limit
TEST_F(HostileFiles, RecordsThatDoNotFitIntoMemoryAreReported) {
  const std::uint64_t numRecords = 1 << 23;  // over 1 GB, none of it on the disk
  WriteFile(file_, WithHeader(typeText_, numRecords, 16, 800));
  std::filesystem::resize_file(file_, 800 + numRecords * recordBytes);
  rlimit before{};
  getrlimit(RLIMIT_AS, &before);
  const rlimit limit{1 << 30, before.rlim_max};
  setrlimit(RLIMIT_AS, &limit);
  const QXErrorCollector reports;
  EXPECT_FALSE(QXFastFPDatabase(file_, MemoryType::InMemory).IsValid());
  setrlimit(RLIMIT_AS, &before);
  EXPECT_EQ(Texts(reports), (Strings{front + ": Cannot allocate enough memory!", noMemory}));
}
#endif

}  // namespace
}  // namespace QXFingrix
