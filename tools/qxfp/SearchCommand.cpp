#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "Numbers.h"
#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXSystem/QXErrorHandler.h"
#include "RowWriter.h"
#include "ScoreOptions.h"
#include "SearchQuery.h"
#include "SearchTarget.h"

namespace qxfp {

namespace {

using QXFingrix::QXFingerPrint;
using QXFingrix::QXFPDatabaseOptions;
using QXFingrix::QXSimScore;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;

constexpr unsigned kDefaultLimit = 10;

void Configure(QXSystem::QXInterface& itf) {
  itf.AddParameter(QXParameter("-in", QXParameterType::String)
                       .SetAlias("-fpbin")
                       .SetBrief("Fast fingerprint file, or molecule file whose fingerprints are made first")
                       .SetKeyless(1)
                       .SetRequired(true));
  itf.AddParameter(QXParameter("-query", QXParameterType::String)
                       .SetBrief("SMILES, molecule file, or @INDEX of a record")
                       .SetKeyless(2)
                       .SetRequired(true));
  itf.AddParameter(
      QXParameter("-threads", QXParameterType::Unsigned)
          .SetBrief("Number of threads")
          .SetDetail("\n\t0: one for every processor; for making the fingerprints of a molecule file, or for "
                     "searching a .fpbin file")
          .SetDefault("0"));
  AddFingerprintFileOptions(itf);
  AddScoreOptions(itf);
  AddRowFormOption(itf);
  QXFingrix::QXConfigureFPDatabaseOptions(
      itf, QXFPDatabaseOptions(kDefaultLimit, QXFingrix::QXSimMeasure::Tanimoto));
  ConfigureFingerprintOptions(itf);
}

class Search {
 public:
  Search(const SearchTarget& target, const SearchQueries& queries, unsigned precision, RowForm form)
      : target_(target), queries_(queries), precision_(precision), form_(form) {}

  ExitStatus Run() {
    const std::uint64_t groupSize = target_.GetGroupSize();
    for (std::uint64_t begin = 0; begin < queries_.Size(); begin += groupSize) {
      SearchGroup(begin, std::min(begin + groupSize, queries_.Size()));
    }
    if (numFailed_ > 0 && !HasSeveralQueries()) return CannotRun;
    Writer().Close();
    return numFailed_ == 0 && target_.IsComplete() ? Done : SomeFailed;
  }

 private:
  // Searches for the queries from begin to end - 1 at once.
  void SearchGroup(std::uint64_t begin, std::uint64_t end) {
    std::vector<QXFingerPrint> fingerprints;
    std::vector<std::uint64_t> numbers;  // of the queries that have a fingerprint
    std::string reason;
    for (std::uint64_t i = begin; i < end; ++i) {
      QXFingerPrint fp;
      if (MakeFingerprint(fp, i, reason)) {
        fingerprints.push_back(std::move(fp));
        numbers.push_back(i);
      } else {
        ReportFailure(i, reason);
      }
    }
    std::vector<Hits> hits;
    const bool isDone = fingerprints.empty() || target_.FindHits(fingerprints, hits);
    for (std::size_t k = 0; k < numbers.size(); ++k) {
      if (isDone) {
        WriteHits(numbers[k], hits[k]);
      } else {
        ReportFailure(numbers[k], "it could not be searched for");
      }
    }
  }

  bool MakeFingerprint(QXFingerPrint& fp, std::uint64_t i, std::string& reason) {
    if (const auto index = queries_.GetStoredIndex()) return target_.MakeStoredQuery(fp, *index, reason);
    return queries_.Read(mol_, i, reason) && MakeQuery(fp, mol_, target_.GetFPTypeBase(), reason);
  }

  void ReportFailure(std::uint64_t i, const std::string& reason) {
    ++numFailed_;
    QXSystem::QXThrow.Report(
        HasSeveralQueries() ? QXSystem::QXErrorLevel::Warning : QXSystem::QXErrorLevel::Error,
        "query '" + queries_.GetName(i) + "': " + reason);
  }

  bool HasSeveralQueries() const { return queries_.Size() > 1; }

  // Made, and the header with it, when there is something to write.
  RowWriter& Writer() {
    if (!writer_) {
      std::vector<Column> columns = {{"rank", true}, {"index", true}, {"score", true}, {"title"}, {"smiles"}};
      if (HasSeveralQueries()) columns.insert(columns.begin(), {"query"});
      writer_ = MakeRowWriter(form_, std::move(columns));
    }
    return *writer_;
  }

  void WriteHits(std::uint64_t i, const Hits& hits) {
    std::uint64_t rank = 0;
    for (const QXSimScore& hit : hits) {
      std::vector<std::string> cells = {std::to_string(++rank), std::to_string(hit.GetIdx()),
                                        FormatFixed(hit.GetScore(), precision_),
                                        target_.GetTitle(hit.GetIdx()), target_.GetSmiles(hit.GetIdx())};
      if (HasSeveralQueries()) cells.insert(cells.begin(), queries_.GetName(i));
      Writer().Write(std::move(cells));
    }
  }

  const SearchTarget& target_;
  const SearchQueries& queries_;
  unsigned precision_;
  RowForm form_;
  std::unique_ptr<RowWriter> writer_;
  QXChem::QXGraphMol mol_;
  std::uint64_t numFailed_ = 0;
};

ExitStatus Run(const QXSystem::QXInterface& itf) {
  QXFPDatabaseOptions options;
  if (!SetupScoreOptions(itf, options)) return BadUsage;
  options.SetNumProcessors(itf.Get<unsigned>("-threads"));
  SearchQueries queries;
  if (!queries.Open(itf.Get<std::string>("-query"))) return CannotRun;
  const auto open =
      HasMoleculeExtension(itf.Get<std::string>("-in")) ? MakeMoleculeFileTarget : OpenFingerprintFile;
  ExitStatus status = Done;
  const auto target = open(itf, options, status);
  if (!target) return status;
  Search search(*target, queries, itf.Get<unsigned>("-precision"), GetRowForm(itf));
  return search.Run();
}

}  // namespace

extern const Command searchCommand = {
    "search",
    "FILE QUERY",
    "find the molecules that are most similar to a query",
    "FILE is a fast fingerprint file, or a molecule file when it has the extension of one: its\n"
    "fingerprints, of any type, are then made first, as the fingerprint options say. A record that\n"
    "cannot be read is named in a warning and not found.\n"
    "QUERY is @INDEX when it is an @ and digits, a molecule file when it has the extension of one\n"
    "(every molecule of it is searched for, and a first column names it), and otherwise a SMILES.\n"
    "Equal scores are ordered by index. A search in descending order without -cutoff leaves scores\n"
    "of 0 out. Scores are ordered as -descending says, whatever the measure; Manhattan is a distance.\n"
    "Unhashed fingerprints are compared by Tanimoto only.\n",
    Configure,
    Run};

}  // namespace qxfp
