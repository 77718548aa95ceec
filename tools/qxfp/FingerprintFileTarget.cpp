#include <utility>

#include "FingerprintOptions.h"
#include "HitTexts.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXSimSearchResult.h"
#include "QXSystem/QXErrorHandler.h"
#include "SearchTarget.h"

namespace qxfp {

namespace {

using QXFingrix::QXFPDatabaseOptions;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

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

class FingerprintFileTarget final : public SearchTarget {
 public:
  FingerprintFileTarget(const std::string& path, unsigned memoryType, const QXFPDatabaseOptions& options)
      : path_(path), fingerprints_(path, memoryType), options_(options) {}

  bool IsValid() const { return fingerprints_.IsValid(); }

  bool OpenTexts(const QXSystem::QXInterface& itf) {
    if (itf.IsSet("-mols")) return texts_.Open(itf.Get<std::string>("-mols"), fingerprints_);
    texts_.Find(path_, fingerprints_);
    return true;
  }

  bool FindHits(const QXChem::QXMolBase& query, Hits& hits, std::string& reason) const override {
    QXFingrix::QXSimSearchResult result;
    if (fingerprints_.SortedSearch(result, query, options_) != QXFingrix::QXSimSearchStatus::Finished) {
      reason = "it could not be searched for";
      return false;
    }
    hits = result.GetSortedScores();
    return true;
  }

  bool FindHitsOfStored(std::uint64_t index, Hits& hits, std::string& reason) const override {
    QXFingrix::QXFingerPrint fp;
    if (index >= fingerprints_.NumFingerPrints()) {
      reason = "there are only " + std::to_string(fingerprints_.NumFingerPrints()) +
               " fingerprints, counted from 0";
      return false;
    }
    if (!fingerprints_.GetFingerPrint(fp, index)) {
      reason = "the fingerprint cannot be fetched";
      return false;
    }
    hits = fingerprints_.GetSortedScores(fp, options_);
    return true;
  }

  std::string GetTitle(std::uint64_t index) const override { return texts_.GetTitle(index); }
  std::string GetSmiles(std::uint64_t index) const override { return texts_.GetSmiles(index); }
  bool IsComplete() const override { return true; }

 private:
  std::string path_;
  QXFingrix::QXFastFPDatabase fingerprints_;
  QXFPDatabaseOptions options_;
  HitTexts texts_;
};

}  // namespace

void AddFingerprintFileOptions(QXSystem::QXInterface& itf) {
  QXParameter memory("-memory", QXParameterType::String);
  memory.SetBrief("Where the fingerprints of a .fpbin file are searched").SetDefault(kMemoryTypes[0].first);
  for (const auto& [name, type] : kMemoryTypes) memory.AddLegalValue(name);
  itf.AddParameter(memory);
  itf.AddParameter(QXParameter("-mols", QXParameterType::String)
                       .SetBrief("Molecule file that titles and SMILES of a .fpbin file come from")
                       .SetDetail("\n\tBy default the file that the .fpbin file was made from"));
}

std::unique_ptr<SearchTarget> OpenFingerprintFile(const QXSystem::QXInterface& itf,
                                                  const QXFPDatabaseOptions& options, ExitStatus& status) {
  const auto path = itf.Get<std::string>("-in");
  if (const char* option = FindFingerprintOption(itf)) {
    QXThrow.Error("%s is for a molecule file: '%s' holds fingerprints of a type of its own, see `qxfp info`",
                  option, path.c_str());
    status = BadUsage;
    return nullptr;
  }
  status = CannotRun;
  auto target =
      std::make_unique<FingerprintFileTarget>(path, MemoryTypeOf(itf.Get<std::string>("-memory")), options);
  if (!target->IsValid()) {
    QXThrow.Error("'%s' cannot be searched", path.c_str());
    return nullptr;
  }
  if (!target->OpenTexts(itf)) return nullptr;
  status = Done;
  return target;
}

}  // namespace qxfp
