#include <memory>
#include <string>
#include <utility>

#include "Command.h"
#include "HitTexts.h"
#include "Numbers.h"
#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXSimSearchResult.h"
#include "QXSystem/QXErrorHandler.h"
#include "RowWriter.h"
#include "SearchQuery.h"
#include "StandardOutput.h"

namespace qxfp {

namespace {

using QXFingrix::QXFPDatabaseOptions;
using QXFingrix::QXSimScore;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;
using Hits = QXSystem::QXIter<QXSimScore>;

constexpr unsigned kDefaultLimit = 10;

constexpr std::pair<const char*, unsigned> kMemoryTypes[] = {
    {"mmap", QXFingrix::QXFastFPDatabaseMemoryType::MemoryMapped},
    {"memory", QXFingrix::QXFastFPDatabaseMemoryType::InMemory},
    {"gpu", QXFingrix::QXFastFPDatabaseMemoryType::CUDA}};

void Configure(QXSystem::QXInterface& itf) {
  itf.AddParameter(QXParameter("-fpbin", QXParameterType::String)
                       .SetBrief("Fast fingerprint file")
                       .SetKeyless(1)
                       .SetRequired(true));
  itf.AddParameter(QXParameter("-query", QXParameterType::String)
                       .SetBrief("SMILES, molecule file, or @INDEX of a stored fingerprint")
                       .SetKeyless(2)
                       .SetRequired(true));
  const QXFPDatabaseOptions defaults;
  itf.AddParameter(QXParameter("-alpha", QXParameterType::Float)
                       .SetBrief("Tversky weight of bits only in the query")
                       .SetDefault(FormatFixed(defaults.GetTverskyAlpha(), 2))
                       .SetLegalRange("0", "1"));
  itf.AddParameter(QXParameter("-beta", QXParameterType::Float)
                       .SetBrief("Tversky weight of bits only in the stored fingerprint")
                       .SetDefault(FormatFixed(defaults.GetTverskyBeta(), 2))
                       .SetLegalRange("0", "1"));
  itf.AddParameter(QXParameter("-threads", QXParameterType::Unsigned)
                       .SetBrief("Number of threads")
                       .SetDetail("\n\t0: one for every processor; @INDEX is searched for on one")
                       .SetDefault("0"));
  QXParameter memory("-memory", QXParameterType::String);
  memory.SetBrief("Where the fingerprints are searched").SetDefault(kMemoryTypes[0].first);
  for (const auto& [name, type] : kMemoryTypes) memory.AddLegalValue(name);
  itf.AddParameter(memory);
  itf.AddParameter(QXParameter("-mols", QXParameterType::String)
                       .SetBrief("Molecule file that titles and SMILES come from")
                       .SetDetail("\n\tBy default the file that FILE.fpbin was made from"));
  itf.AddParameter(QXParameter("-precision", QXParameterType::Unsigned)
                       .SetBrief("Decimals of the scores")
                       .SetDefault("6")
                       .SetLegalRange("0", "17"));
  AddRowFormOption(itf);
  QXFingrix::QXConfigureFPDatabaseOptions(itf, QXFPDatabaseOptions(kDefaultLimit, defaults.GetSimFunc()));
}

bool SetupOptions(const QXSystem::QXInterface& itf, QXFPDatabaseOptions& options) {
  if (!QXFingrix::QXSetupFPDatabaseOptions(options, itf)) return false;
  options.SetTverskyCoeffs(itf.Get<float>("-alpha"), itf.Get<float>("-beta"));
  options.SetNumProcessors(itf.Get<unsigned>("-threads"));
  const unsigned measure = options.GetSimFunc();
  if (measure == QXFingrix::QXSimMeasure::Manhattan && !itf.IsSet("-descending")) {
    QXThrow.Info("Manhattan is a distance: -descending false puts the nearest molecules first");
  }
  if (measure != QXFingrix::QXSimMeasure::Tversky && (itf.IsSet("-alpha") || itf.IsSet("-beta"))) {
    QXThrow.Info("-alpha and -beta matter to -simfunc Tversky only");
  }
  return true;
}

unsigned MemoryTypeOf(const std::string& wanted) {
  for (const auto& [name, type] : kMemoryTypes) {
    if (wanted == name) return type;
  }
  return kMemoryTypes[0].second;
}

class Search {
 public:
  Search(const QXFingrix::QXFastFPDatabase& fingerprints, const QXFPDatabaseOptions& options,
         const SearchQueries& queries, const HitTexts& texts, unsigned precision, RowForm form)
      : fingerprints_(fingerprints),
        options_(options),
        queries_(queries),
        texts_(texts),
        precision_(precision),
        form_(form) {}

  ExitStatus Run() {
    std::uint64_t numFailed = 0;
    for (std::uint64_t i = 0; i < queries_.Size(); ++i) {
      std::string reason;
      Hits hits;
      if (FindHits(i, hits, reason)) {
        WriteHits(i, hits);
        continue;
      }
      ++numFailed;
      const std::string text = "query '" + queries_.GetName(i) + "': " + reason;
      if (!HasSeveralQueries()) {
        QXThrow.Error("%s", text.c_str());
        return CannotRun;
      }
      QXThrow.Warning("%s", text.c_str());
    }
    Writer().Close();
    return numFailed == 0 ? Done : SomeFailed;
  }

 private:
  bool FindHits(std::uint64_t i, Hits& hits, std::string& reason) {
    if (const auto index = queries_.GetStoredIndex()) return FindHitsOfStored(*index, hits, reason);
    if (!queries_.Read(mol_, i, reason)) return false;
    QXFingrix::QXSimSearchResult result;
    if (fingerprints_.SortedSearch(result, mol_, options_) != QXFingrix::QXSimSearchStatus::Finished) {
      reason = "it could not be searched for";
      return false;
    }
    hits = result.GetSortedScores();
    return true;
  }

  bool FindHitsOfStored(std::uint64_t index, Hits& hits, std::string& reason) {
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
                                        texts_.GetTitle(hit.GetIdx()), texts_.GetSmiles(hit.GetIdx())};
      if (HasSeveralQueries()) cells.insert(cells.begin(), queries_.GetName(i));
      Writer().Write(std::move(cells));
    }
  }

  const QXFingrix::QXFastFPDatabase& fingerprints_;
  const QXFPDatabaseOptions& options_;
  const SearchQueries& queries_;
  const HitTexts& texts_;
  unsigned precision_;
  RowForm form_;
  std::unique_ptr<RowWriter> writer_;
  QXChem::QXGraphMol mol_;
};

ExitStatus Run(const QXSystem::QXInterface& itf) {
  QXFPDatabaseOptions options;
  if (!SetupOptions(itf, options)) return BadUsage;
  const auto path = itf.Get<std::string>("-fpbin");
  const QXFingrix::QXFastFPDatabase fingerprints(path, MemoryTypeOf(itf.Get<std::string>("-memory")));
  if (!fingerprints.IsValid()) {
    QXThrow.Error("'%s' cannot be searched", path.c_str());
    return CannotRun;
  }
  SearchQueries queries;
  if (!queries.Open(itf.Get<std::string>("-query"))) return CannotRun;
  if (queries.Size() == 0) {
    QXThrow.Error("'%s' holds no molecules", itf.Get<std::string>("-query").c_str());
    return CannotRun;
  }
  HitTexts texts;
  if (!itf.IsSet("-mols")) {
    texts.Find(path, fingerprints);
  } else if (!texts.Open(itf.Get<std::string>("-mols"), fingerprints)) {
    return CannotRun;
  }
  Search search(fingerprints, options, queries, texts, itf.Get<unsigned>("-precision"), GetRowForm(itf));
  return search.Run();
}

}  // namespace

extern const Command searchCommand = {
    "search",
    "FILE.fpbin QUERY",
    "find the stored fingerprints that are most similar to a query",
    "QUERY is @INDEX when it is an @ and digits, a molecule file when it has the extension of one (every "
    "molecule\n"
    "of it is searched for, and a first column names it), and otherwise a SMILES.\n"
    "Equal scores are ordered by index. A search in descending order without -cutoff leaves scores of 0 "
    "out.\n"
    "Scores are ordered as -descending says, whatever the measure; Manhattan is a distance.\n",
    Configure,
    Run};

}  // namespace qxfp
