#include "FingerprintFile.h"

#include <span>
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

constexpr std::pair<const char*, unsigned> kIndexUses[] = {
    {"file", QXFingrix::QXFastFPDatabaseIndex::FromFile},
    {"none", QXFingrix::QXFastFPDatabaseIndex::None},
    {"build", QXFingrix::QXFastFPDatabaseIndex::Build}};

using Choices = std::span<const std::pair<const char*, unsigned>>;

// The first choice is the default.
void AddChoice(QXSystem::QXInterface& itf, QXParameter parameter, Choices choices) {
  parameter.SetDefault(choices[0].first);
  for (const auto& [name, value] : choices) parameter.AddLegalValue(name);
  itf.AddParameter(parameter);
}

unsigned ChoiceOf(const QXSystem::QXInterface& itf, const char* option, Choices choices) {
  const auto wanted = itf.Get<std::string>(option);
  for (const auto& [name, value] : choices) {
    if (wanted == name) return value;
  }
  return choices[0].second;
}

// None for a command without the option: it compares with all records, and a stale index is no matter to it.
unsigned IndexUseOf(const QXSystem::QXInterface& itf) {
  return itf.Has("-index") ? ChoiceOf(itf, "-index", kIndexUses) : QXFingrix::QXFastFPDatabaseIndex::None;
}

// An index that is built is for speed: the records are then read as well, unless the user says otherwise.
unsigned MemoryTypeOf(const QXSystem::QXInterface& itf, unsigned indexUse) {
  if (indexUse == QXFingrix::QXFastFPDatabaseIndex::Build && !itf.IsSet("-memory")) {
    return QXFingrix::QXFastFPDatabaseMemoryType::InMemory;
  }
  return ChoiceOf(itf, "-memory", kMemoryTypes);
}

}  // namespace

void AddFingerprintFile(QXSystem::QXInterface& itf) {
  itf.AddParameter(QXParameter("-fpbin", QXParameterType::String)
                       .SetBrief("Fast fingerprint file")
                       .SetKeyless(1)
                       .SetRequired(true));
}

void AddMemoryOption(QXSystem::QXInterface& itf) {
  AddChoice(itf,
            QXParameter("-memory", QXParameterType::String)
                .SetBrief("Where the fingerprints of a .fpbin file are searched"),
            kMemoryTypes);
}

void AddIndexOption(QXSystem::QXInterface& itf) {
  AddChoice(
      itf,
      QXParameter("-index", QXParameterType::String)
          .SetBrief("Index by which a .fpbin file is searched where that is faster")
          .SetDetail("\n\tfile: the one that `qxfp index` has made, if there is one; build: otherwise one "
                     "made in memory, where the fingerprints are then read too"),
      kIndexUses);
}

std::optional<QXFastFPDatabase> OpenFingerprints(const QXSystem::QXInterface& itf, const std::string& path) {
  if (HasMoleculeExtension(path)) {
    QXThrow.Error("'%s' is a molecule file: `qxfp create` makes a fast fingerprint file of it", path.c_str());
    return std::nullopt;
  }
  const unsigned indexUse = IndexUseOf(itf);
  QXFastFPDatabase fingerprints(path, MemoryTypeOf(itf, indexUse), indexUse);
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
