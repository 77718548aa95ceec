#include <algorithm>
#include <utility>

#include "FingerprintFile.h"
#include "FingerprintOptions.h"
#include "HitTexts.h"
#include "Messages.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXSystem/QXErrorHandler.h"
#include "SearchTarget.h"

namespace qxfp {

namespace {

using QXFingrix::QXFastFPDatabase;
using QXFingrix::QXFingerPrint;
using QXFingrix::QXFPDatabaseOptions;

constexpr std::uint64_t kMaxGroup = 128;          // queries; more no longer make a search faster
constexpr std::uint64_t kMaxGroupHits = 4 << 20;  // 64 MiB of hits may wait to be written

class FingerprintFileTarget final : public SearchTarget {
 public:
  FingerprintFileTarget(QXFastFPDatabase fingerprints, const QXFPDatabaseOptions& options)
      : fingerprints_(std::move(fingerprints)), options_(options) {}

  bool OpenTexts(const QXSystem::QXInterface& itf, const std::string& path) {
    return texts_.Open(itf, path, fingerprints_);
  }

  const QXFingrix::QXFPTypeBase* GetFPTypeBase() const override { return fingerprints_.GetFPTypeBase(); }

  bool MakeStoredQuery(QXFingerPrint& fp, std::uint64_t index, std::string& reason) const override {
    return FetchFingerprint(fp, fingerprints_, index, reason);
  }

  std::uint64_t GetGroupSize() const override {
    const std::uint64_t numRecords = std::max<std::uint64_t>(fingerprints_.NumFingerPrints(), 1);
    const std::uint64_t limit = options_.GetLimit();
    const std::uint64_t numHits = limit == 0 ? numRecords : std::min(limit, numRecords);
    return std::clamp<std::uint64_t>(kMaxGroupHits / numHits, 1, kMaxGroup);
  }

  bool FindHits(std::span<const QXFingerPrint> queries, std::vector<Hits>& hits) const override {
    return SucceedsQuietly([&] { hits = fingerprints_.GetSortedScores(queries, options_); });
  }

  std::string GetTitle(std::uint64_t index) const override { return texts_.GetTitle(index); }
  std::string GetSmiles(std::uint64_t index) const override { return texts_.GetSmiles(index); }
  bool IsComplete() const override { return true; }

 private:
  QXFastFPDatabase fingerprints_;
  QXFPDatabaseOptions options_;
  HitTexts texts_;
};

}  // namespace

void AddFingerprintFileOptions(QXSystem::QXInterface& itf) {
  AddMemoryOption(itf);
  AddIndexOption(itf);
  AddMoleculesOption(itf);
}

std::unique_ptr<SearchTarget> OpenFingerprintFile(const QXSystem::QXInterface& itf,
                                                  const QXFPDatabaseOptions& options, ExitStatus& status) {
  const auto path = itf.Get<std::string>("-in");
  if (const char* option = FindFingerprintOption(itf)) {
    QXSystem::QXThrow.Error(
        "%s is for a molecule file: '%s' holds fingerprints of a type of its own, see `qxfp info`", option,
        path.c_str());
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
