#include <utility>

#include "FingerprintFile.h"
#include "FingerprintOptions.h"
#include "HitTexts.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXSimSearchResult.h"
#include "QXSystem/QXErrorHandler.h"
#include "SearchTarget.h"

namespace qxfp {

namespace {

using QXFingrix::QXFPDatabaseOptions;
using QXSystem::QXThrow;

class FingerprintFileTarget final : public SearchTarget {
 public:
  FingerprintFileTarget(QXFingrix::QXFastFPDatabase fingerprints, const QXFPDatabaseOptions& options)
      : fingerprints_(std::move(fingerprints)), options_(options) {}

  bool OpenTexts(const QXSystem::QXInterface& itf, const std::string& path) {
    return texts_.Open(itf, path, fingerprints_);
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
    if (!FetchFingerprint(fp, fingerprints_, index, reason)) return false;
    hits = fingerprints_.GetSortedScores(fp, options_);
    return true;
  }

  std::string GetTitle(std::uint64_t index) const override { return texts_.GetTitle(index); }
  std::string GetSmiles(std::uint64_t index) const override { return texts_.GetSmiles(index); }
  bool IsComplete() const override { return true; }

 private:
  QXFingrix::QXFastFPDatabase fingerprints_;
  QXFPDatabaseOptions options_;
  HitTexts texts_;
};

}  // namespace

void AddFingerprintFileOptions(QXSystem::QXInterface& itf) {
  AddMemoryOption(itf);
  AddMoleculesOption(itf);
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
  auto fingerprints = OpenFingerprints(itf, path);
  if (!fingerprints) return nullptr;
  auto target = std::make_unique<FingerprintFileTarget>(std::move(*fingerprints), options);
  if (!target->OpenTexts(itf, path)) return nullptr;
  status = Done;
  return target;
}

}  // namespace qxfp
