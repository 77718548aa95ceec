#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
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
#include "SharedPatterns.h"

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
  itf.AddParameter(QXParameter("-explain", QXParameterType::Unsigned)
                       .SetBrief("For how many hits of each query the patterns shared with it are told")
                       .SetDefault("0"));
  itf.AddParameter(QXParameter("-patterns", QXParameterType::Unsigned)
                       .SetBrief("With -explain: how many of the shared patterns are shown, largest first")
                       .SetDetail("\n\t0: all")
                       .SetDefault("10"));
  itf.AddParameter(
      QXParameter("-svg", QXParameterType::String)
          .SetBrief("With -explain: folder for drawings of query and hit, what they share marked"));
  AddFingerprintFileOptions(itf);
  AddScoreOptions(itf);
  AddRowFormOption(itf);
  QXFingrix::QXConfigureFPDatabaseOptions(
      itf, QXFPDatabaseOptions(kDefaultLimit, QXFingrix::QXSimMeasure::Tanimoto));
  ConfigureFingerprintOptions(itf);
}

/// Which hits are explained, and where drawings go.
struct Explaining {
  unsigned numHits = 0;
  unsigned numPatterns = 0;      // that are shown, 0: all
  std::filesystem::path folder;  // empty: no drawings
};

class Search {
 public:
  Search(const SearchTarget& target, const SearchQueries& queries, unsigned precision, RowForm form,
         Explaining explaining)
      : target_(target),
        queries_(queries),
        precision_(precision),
        form_(form),
        explaining_(std::move(explaining)) {}

  ExitStatus Run() {
    const std::uint64_t groupSize = target_.GetGroupSize();
    for (std::uint64_t begin = 0; begin < queries_.Size(); begin += groupSize) {
      SearchGroup(begin, std::min(begin + groupSize, queries_.Size()));
    }
    if (numFailed_ > 0 && !HasSeveralQueries()) return CannotRun;
    Writer().Close();
    return numFailed_ == 0 && numUnexplained_ == 0 && target_.IsComplete() ? Done : SomeFailed;
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
      if (explaining_.numHits > 0) columns.insert(columns.end(), {{"shared", true}, {"patterns"}});
      writer_ = MakeRowWriter(form_, std::move(columns));
    }
    return *writer_;
  }

  void WriteHits(std::uint64_t i, const Hits& hits) {
    std::uint64_t rank = 0;
    const bool isExplained = explaining_.numHits > 0 && hits && ReadQuery(i);
    for (const QXSimScore& hit : hits) {
      std::vector<std::string> cells = {std::to_string(++rank), std::to_string(hit.GetIdx()),
                                        FormatFixed(hit.GetScore(), precision_),
                                        target_.GetTitle(hit.GetIdx()), target_.GetSmiles(hit.GetIdx())};
      if (HasSeveralQueries()) cells.insert(cells.begin(), queries_.GetName(i));
      if (explaining_.numHits > 0) {
        cells.resize(cells.size() + 2);
        if (isExplained && rank <= explaining_.numHits) Explain(i, rank, hit.GetIdx(), cells);
      }
      Writer().Write(std::move(cells));
    }
  }

  // Reads the molecule of a query again, since a group of them was read before.
  bool ReadQuery(std::uint64_t i) {
    std::string reason;
    const auto index = queries_.GetStoredIndex();
    if ((index ? ReadSmiles(mol_, target_.GetSmiles(*index), reason) : queries_.Read(mol_, i, reason)) &&
        FindPatterns(ofQuery_, mol_, target_.GetFPTypeBase(), std::nullopt, reason)) {
      return true;
    }
    ReportUnexplained("the hits of query '" + queries_.GetName(i) + "'", reason);
    return false;
  }

  // Fills the last two cells.
  void Explain(std::uint64_t i, std::uint64_t rank, std::uint64_t index, std::vector<std::string>& cells) {
    std::string reason;
    const std::string name = "record " + std::to_string(index);
    FoundPatterns ofHit;
    if (!ReadSmiles(hitMol_, target_.GetSmiles(index), reason) ||
        !FindPatterns(ofHit, hitMol_, target_.GetFPTypeBase(), std::nullopt, reason)) {
      return ReportUnexplained(name, reason);
    }
    FoundPatterns ofQuery = ofQuery_;
    KeepShared(ofQuery, ofHit);
    cells[cells.size() - 2] = std::to_string(ofQuery.size());
    for (const std::string& text : LargestPatterns(ofQuery, explaining_.numPatterns)) {
      cells.back() += (cells.back().empty() ? "" : " ") + text;
    }
    if (explaining_.folder.empty()) return;
    const std::string number = std::to_string(i + 1);
    const std::filesystem::path file = "query" + number + "_rank" + std::to_string(rank) + ".svg";
    const QXChem::QXDepiction depictions[] = {
        {&mol_, CollectPatterns(LargePatterns(ofQuery)), "query " + number},
        {&hitMol_, CollectPatterns(LargePatterns(ofHit)), name}};
    if (!WriteDrawing(depictions, (explaining_.folder / file).string())) ++numUnexplained_;
  }

  void ReportUnexplained(const std::string& what, const std::string& reason) {
    ++numUnexplained_;
    QXSystem::QXThrow.Warning("%s cannot be explained: %s", what.c_str(), reason.c_str());
  }

  const SearchTarget& target_;
  const SearchQueries& queries_;
  unsigned precision_;
  RowForm form_;
  Explaining explaining_;
  std::unique_ptr<RowWriter> writer_;
  QXChem::QXGraphMol mol_;
  QXChem::QXGraphMol hitMol_;
  FoundPatterns ofQuery_;
  std::uint64_t numFailed_ = 0;
  std::uint64_t numUnexplained_ = 0;  // queries, hits and drawings
};

// Errors: false and a reason in words when the hits of such fingerprints cannot be explained.
bool CanExplain(const QXFingrix::QXFPTypeBase* type, std::string& reason) {
  if (CanFindPatterns(type, reason)) return true;
  reason = "-explain: " + reason;
  return false;
}

// Looks at the options, the type of fingerprints that are still to be made among them, and makes the folder.
// Errors: false and a reason in words.
bool SetupExplaining(const QXSystem::QXInterface& itf, Explaining& explaining, std::string& reason) {
  explaining.numHits = itf.Get<unsigned>("-explain");
  explaining.numPatterns = itf.Get<unsigned>("-patterns");
  if (itf.IsSet("-svg")) explaining.folder = itf.Get<std::string>("-svg");
  if (explaining.numHits == 0) {
    const char* const option = itf.IsSet("-svg") ? "-svg" : itf.IsSet("-patterns") ? "-patterns" : nullptr;
    if (option) reason = std::string(option) + " is for what -explain explains";
    return !option;
  }
  if (HasMoleculeExtension(itf.Get<std::string>("-in"))) {
    const QXFingrix::QXFPTypeBase* type = SetupFingerprintType(itf, reason);
    if (!type || !CanExplain(type, reason)) return false;
  }
  if (explaining.folder.empty()) return true;
  std::error_code failure;
  std::filesystem::create_directories(explaining.folder, failure);
  reason = "-svg '" + explaining.folder.string() + "' cannot be made: " + failure.message();
  return std::filesystem::is_directory(explaining.folder);
}

ExitStatus Run(const QXSystem::QXInterface& itf) {
  QXFPDatabaseOptions options;
  if (!SetupScoreOptions(itf, options)) return BadUsage;
  options.SetNumProcessors(itf.Get<unsigned>("-threads"));
  Explaining explaining;
  std::string reason;
  if (!SetupExplaining(itf, explaining, reason)) {
    QXSystem::QXThrow.Error("%s", reason.c_str());
    return BadUsage;
  }
  SearchQueries queries;
  if (!queries.Open(itf.Get<std::string>("-query"))) return CannotRun;
  const auto open =
      HasMoleculeExtension(itf.Get<std::string>("-in")) ? MakeMoleculeFileTarget : OpenFingerprintFile;
  ExitStatus status = Done;
  const auto target = open(itf, options, status);
  if (!target) return status;
  if (explaining.numHits > 0 && !CanExplain(target->GetFPTypeBase(), reason)) {
    QXSystem::QXThrow.Error("%s", reason.c_str());
    return BadUsage;
  }
  Search search(*target, queries, itf.Get<unsigned>("-precision"), GetRowForm(itf), std::move(explaining));
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
    "Unhashed fingerprints are compared by Tanimoto only.\n"
    "-explain N adds, for the first N hits of each query, how many patterns of the fingerprint both\n"
    "molecules have, and as SMARTS the -patterns largest of them. -svg draws both, with the atoms and bonds\n"
    "of the large shared patterns marked, in files named by query and rank.\n",
    Configure,
    Run};

}  // namespace qxfp
