#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFastFPDatabaseParams.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXSystem/QXErrorHandler.h"

// What the tests of fast fingerprint files share: a folder that goes away, fingerprints with random bits, and
// files made of them.

namespace QXFingrix::Testing {

class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qxfastfpXXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TempDir() { std::filesystem::remove_all(path_); }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

inline std::string PathTypeString(unsigned numBits) {
  return "Path,ver=2.0.0,size=" + std::to_string(numBits) +
         ",bonds=0-5,atype=AtmNum|Arom|Chiral|FCharge|HvyDeg|Hyb|EqHalo,btype=Order|Chiral";
}

inline const QXFPTypeBase* PathType(unsigned numBits) {
  return QXGetFPType(PathTypeString(numBits));
}

/// Every bit is on with the given probability.
inline QXFingerPrint RandomFP(const QXFPTypeBase* type, std::mt19937_64& random, double density) {
  QXFingerPrint fp;
  fp.SetSize(QXGetFingerPrintSize(type));
  std::bernoulli_distribution isOn(density);
  for (unsigned bit = 0; bit < fp.GetSize(); ++bit) {
    if (isOn(random)) fp.SetBitOn(bit);
  }
  fp.SetFPTypeBase(type);
  return fp;
}

/// The bytes of a file that holds these fingerprints.
inline std::string FpbinBytes(const QXFPTypeBase* type, const std::vector<QXFingerPrint>& fps) {
  QXFastFPDatabaseParams params;
  params.SetMolFileName("mols.smi");
  params.SetFPTypeBase(type);
  params.SetNumFingerPrints(fps.size());
  std::string bytes = QXWriteFastFPDatabaseHeaderBlob(params);
  for (std::uint64_t i = 0; i < fps.size(); ++i) bytes += QXWriteFastFingerPrintBlob(i, fps[i]);
  return bytes;
}

inline std::vector<std::string> Texts(const QXSystem::QXErrorCollector& reports) {
  std::vector<std::string> texts;
  for (const auto& message : reports.Messages()) texts.push_back(message.text);
  return texts;
}

using Strings = std::vector<std::string>;

}  // namespace QXFingrix::Testing
