#pragma once

#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "fastfp/FpbinFile.h"
#include "fastfp/NaiveSearch.h"

namespace QXFingrix::Testing {

/// A file of fingerprints and what it holds.
class DataSet {
 public:
  /// Damaged: with wrong bit counts, huge ones among them, and indices that are not the position.
  DataSet(const QXFPTypeBase* type, const std::vector<QXFingerPrint>& fps, bool isDamaged = false)
      : type_(type) {
    std::mt19937_64 random(fps.size());
    std::string bytes = FpbinBytes(type, fps);
    if (isDamaged) Damage(bytes, random);
    WriteFile(dir_.File("x.fpbin"), bytes);
    Parse(bytes, QXGetFingerPrintSize(type) / 64, fps.size());
    queries_.assign(3, RandomFP(type, random, 0.1));
    queries_[0].ClearBits();
    if (!fps.empty()) queries_[1] = fps[fps.size() / 2];
  }
  /// Random fingerprints in families, so that high scores and ties occur, with some empty ones.
  DataSet(unsigned numBits, std::size_t numRecords, bool isDamaged, unsigned seed)
      : DataSet(PathType(numBits), Families(PathType(numBits), numRecords, seed), isDamaged) {}

  std::string File() const { return dir_.File("x.fpbin"); }
  const std::vector<NaiveRecord>& Records() const { return records_; }
  const std::vector<QXFingerPrint>& Queries() const { return queries_; }

 private:
  static std::vector<QXFingerPrint> Families(const QXFPTypeBase* type, std::size_t num, unsigned seed) {
    std::mt19937_64 random(seed);
    QXFingerPrint parent = RandomFP(type, random, 0.1);
    std::vector<QXFingerPrint> fps;
    for (std::size_t i = 0; i < num; ++i) {
      if (random() % 10 == 0) parent = RandomFP(type, random, random() % 2 ? 0.1 : 0.4);
      QXFingerPrint fp = parent;
      for (std::size_t flips = random() % 6; flips > 0; --flips) fp.ToggleBit(random() % fp.GetSize());
      if (random() % 50 == 0) fp.ClearBits();
      fps.push_back(fp);
    }
    return fps;
  }

  void Damage(std::string& bytes, std::mt19937_64& random) const {
    const std::size_t recordBytes = (QXGetFingerPrintSize(type_) / 64 + 2) * 8;
    for (std::size_t at = 800; at < bytes.size(); at += recordBytes) {
      const std::uint64_t counts[] = {0, random() % 3000, 65536, ~std::uint64_t{0}};
      if (random() % 5 == 0) std::memcpy(bytes.data() + at + 8, &counts[random() % 4], 8);
      const std::uint64_t index = random() % 100000;
      if (random() % 5 == 0) std::memcpy(bytes.data() + at, &index, 8);
    }
  }

  void Parse(const std::string& bytes, std::size_t numWords, std::size_t numRecords) {
    const char* at = bytes.data() + 800;
    for (std::size_t i = 0; i < numRecords; ++i, at += (numWords + 2) * 8) {
      NaiveRecord record{0, 0, std::vector<std::uint64_t>(numWords)};
      std::memcpy(&record.index, at, 8);
      std::memcpy(&record.bitCount, at + 8, 8);
      std::memcpy(record.words.data(), at + 16, numWords * 8);
      records_.push_back(std::move(record));
    }
  }

  TempDir dir_;
  const QXFPTypeBase* type_;
  std::vector<NaiveRecord> records_;
  std::vector<QXFingerPrint> queries_;
};

}  // namespace QXFingrix::Testing
