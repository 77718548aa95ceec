#include <utility>
#include <vector>

#include "FileFingerprints.h"
#include "FingerprintKinds.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "ProgressBar.h"
#include "QXFingrix/QXFPDatabase.h"
#include "QXPlatform/QXProcessor.h"
#include "QXSystem/QXErrorHandler.h"
#include "SearchQuery.h"
#include "SearchTarget.h"

namespace qxfp {

namespace {

using QXFingrix::QXFingerPrint;
using QXFingrix::QXFPDatabaseOptions;
using QXFingrix::QXSimScore;
using QXSystem::QXThrow;

class MoleculeFileTarget final : public SearchTarget {
 public:
  MoleculeFileTarget(QXChem::QXMolDatabase molecules, const QXFingrix::QXFPTypeBase* type,
                     const QXFPDatabaseOptions& options)
      : molecules_(std::move(molecules)), fingerprints_(type), options_(options) {}

  void MakeFingerprints(unsigned numThreads) {
    const auto bar = MakeProgressBar(molecules_.GetMaxMolIdx(), "molecules");
    const auto add = [&](RecordFingerprint& record) {
      if (bar) bar->Update();
      if (!record.reason.empty()) return;
      if (fingerprints_.AddFP(record.fp) != QXSimScore::NoIndex) {
        records_.push_back(static_cast<unsigned>(record.index));
      } else {
        record.reason = "its fingerprint cannot be searched";
      }
    };
    ForEachFingerprint(
        molecules_, fingerprints_.GetFPTypeBase(), numThreads, [](RecordFingerprint&) {}, add);
    if (bar) bar->Total();
  }

  bool IsEmpty() const { return records_.empty(); }
  bool IsComplete() const override { return records_.size() == molecules_.GetMaxMolIdx(); }

  const QXFingrix::QXFPTypeBase* GetFPTypeBase() const override { return fingerprints_.GetFPTypeBase(); }

  bool MakeStoredQuery(QXFingerPrint& fp, std::uint64_t index, std::string& reason) const override {
    if (index >= molecules_.GetMaxMolIdx()) {
      reason = "there are only " + std::to_string(molecules_.GetMaxMolIdx()) + " records, counted from 0";
      return false;
    }
    QXChem::QXGraphMol mol;
    return molecules_.ReadMolecule(mol, index, reason) && MakeQuery(fp, mol, GetFPTypeBase(), reason);
  }

  // A search of this database gains nothing from a group.
  std::uint64_t GetGroupSize() const override { return 1; }

  bool FindHits(std::span<const QXFingerPrint> queries, std::vector<Hits>& hits) const override {
    hits.clear();
    for (const QXFingerPrint& query : queries) hits.push_back(FindHits(query));
    return true;
  }

  std::string GetTitle(std::uint64_t index) const override { return molecules_.GetTitle(index); }
  std::string GetSmiles(std::uint64_t index) const override { return GetRecordSmiles(molecules_, index); }

 private:
  Hits FindHits(const QXFingerPrint& query) const {
    std::vector<QXSimScore> found;
    for (const QXSimScore& hit : fingerprints_.GetSortedScores(query, options_)) {
      found.emplace_back(records_[hit.GetIdx()], hit.GetScore());
    }
    return QXSystem::QXMakeVectorIter(std::move(found));
  }

  QXChem::QXMolDatabase molecules_;
  QXFingrix::QXFPDatabase fingerprints_;
  std::vector<unsigned> records_;  // of the fingerprints; records that cannot be read have none
  QXFPDatabaseOptions options_;
};

// The type to make, null with a reason where the options do not go together.
const QXFingrix::QXFPTypeBase* CheckUsage(const QXSystem::QXInterface& itf,
                                          const QXFPDatabaseOptions& options, std::string& reason) {
  for (const char* option : {"-mols", "-memory", "-index"}) {
    if (!itf.IsSet(option)) continue;
    reason = std::string(option) + " is for a .fpbin file, '" + itf.Get<std::string>("-in") +
             "' is a molecule file";
    return nullptr;
  }
  const QXFingrix::QXFPTypeBase* type = SetupFingerprintType(itf, reason);
  if (!type || !IsUnhashedType(type) || options.GetSimFunc() == QXFingrix::QXSimMeasure::Tanimoto) {
    return type;
  }
  reason = "-simfunc " + QXFingrix::QXGetSimilarityMeasureName(options.GetSimFunc()) +
           ": unhashed fingerprints are compared by Tanimoto only";
  return nullptr;
}

bool OpenSearchable(QXChem::QXMolDatabase& molecules, const std::string& path) {
  if (!OpenMolecules(molecules, path)) return false;
  if (molecules.GetMaxMolIdx() == 0) {
    QXThrow.Error("'%s' holds no molecules", path.c_str());
    return false;
  }
  if (molecules.GetMaxMolIdx() > QXSimScore::NoIndex) {
    QXThrow.Error("'%s' holds %llu records, of which hits can number only %u", path.c_str(),
                  static_cast<unsigned long long>(molecules.GetMaxMolIdx()), QXSimScore::NoIndex);
    return false;
  }
  return true;
}

}  // namespace

std::unique_ptr<SearchTarget> MakeMoleculeFileTarget(const QXSystem::QXInterface& itf,
                                                     const QXFPDatabaseOptions& options, ExitStatus& status) {
  std::string reason;
  const QXFingrix::QXFPTypeBase* type = CheckUsage(itf, options, reason);
  status = type ? CannotRun : BadUsage;
  if (!type || !CanMakeFingerprint(type, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return nullptr;
  }
  const auto path = itf.Get<std::string>("-in");
  QXChem::QXMolDatabase molecules;
  if (!OpenSearchable(molecules, path)) return nullptr;
  auto target = std::make_unique<MoleculeFileTarget>(std::move(molecules), type, options);
  target->MakeFingerprints(QXPlatform::QXGetNumWorkers(itf.Get<unsigned>("-threads")));
  if (target->IsEmpty()) {
    QXThrow.Error("'%s' holds no molecule that can be searched", path.c_str());
    return nullptr;
  }
  status = Done;
  return target;
}

}  // namespace qxfp
