#include "FingerprintFile.h"

#include <utility>

#include "MoleculeFile.h"
#include "QXSystem/QXErrorHandler.h"

namespace qxfp {

namespace {

using QXFingrix::QXFastFPDatabase;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

constexpr std::uint64_t kManyComparisons = 1'000'000'000;

constexpr std::pair<const char*, unsigned> kMemoryTypes[] = {
    {"mmap", QXFingrix::QXFastFPDatabaseMemoryType::MemoryMapped},
    {"memory", QXFingrix::QXFastFPDatabaseMemoryType::InMemory},
    {"gpu", QXFingrix::QXFastFPDatabaseMemoryType::CUDA}};

unsigned MemoryTypeOf(const std::string& wanted) {
  for (const auto& [name, type] : kMemoryTypes) {
    if (wanted == name) return type;
  }
  return kMemoryTypes[0].second;
}

}  // namespace

void AddFingerprintFile(QXSystem::QXInterface& itf) {
  itf.AddParameter(QXParameter("-fpbin", QXParameterType::String)
                       .SetBrief("Fast fingerprint file")
                       .SetKeyless(1)
                       .SetRequired(true));
}

void AddMemoryOption(QXSystem::QXInterface& itf) {
  QXParameter memory("-memory", QXParameterType::String);
  memory.SetBrief("Where the fingerprints of a .fpbin file are searched").SetDefault(kMemoryTypes[0].first);
  for (const auto& [name, type] : kMemoryTypes) memory.AddLegalValue(name);
  itf.AddParameter(memory);
}

std::optional<QXFastFPDatabase> OpenFingerprints(const QXSystem::QXInterface& itf, const std::string& path) {
  if (HasMoleculeExtension(path)) {
    QXThrow.Error("'%s' is a molecule file: `qxfp create` makes a fast fingerprint file of it", path.c_str());
    return std::nullopt;
  }
  QXFastFPDatabase fingerprints(path, MemoryTypeOf(itf.Get<std::string>("-memory")));
  if (fingerprints.IsValid()) return fingerprints;
  QXThrow.Error("'%s' cannot be searched", path.c_str());
  return std::nullopt;
}

bool FetchFingerprint(QXFingrix::QXFingerPrint& fp, const QXFastFPDatabase& fingerprints, std::uint64_t index,
                      std::string& reason) {
  if (index >= fingerprints.NumFingerPrints()) {
    reason =
        "there are only " + std::to_string(fingerprints.NumFingerPrints()) + " fingerprints, counted from 0";
    return false;
  }
  if (fingerprints.GetFingerPrint(fp, index)) return true;
  reason = "the fingerprint cannot be fetched";
  return false;
}

std::uint64_t AnnounceComparisons(std::uint64_t numRecords, const QXFingrix::QXFPDatabaseOptions& options) {
  const bool isTversky = options.GetSimFunc() == QXFingrix::QXSimMeasure::Tversky;
  const std::uint64_t num = isTversky ? numRecords * numRecords : numRecords * (numRecords + 1) / 2;
  if (num > kManyComparisons) {
    QXThrow.Info("this takes %llu comparisons", static_cast<unsigned long long>(num));
  }
  return num;
}

}  // namespace qxfp
