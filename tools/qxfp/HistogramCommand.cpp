#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Command.h"
#include "FingerprintFile.h"
#include "Messages.h"
#include "MoleculeFile.h"
#include "Numbers.h"
#include "ProgressBar.h"
#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPHistogram.h"
#include "QXSystem/QXErrorHandler.h"
#include "RowWriter.h"
#include "ScoreOptions.h"
#include "SearchQuery.h"
#include "StandardOutput.h"

namespace qxfp {

namespace {

using QXFingrix::QXFastFPDatabase;
using QXFingrix::QXFingerPrint;
using QXFingrix::QXFPDatabaseOptions;
using QXFingrix::QXFPHistogram;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

constexpr double kBarWidth = 50.0;  // of the fullest bin

void Configure(QXSystem::QXInterface& itf) {
  AddFingerprintFile(itf);
  itf.AddParameter(
      QXParameter("-query", QXParameterType::String)
          .SetBrief("SMILES, or @INDEX of a record: only its scores against the file are counted"));
  itf.AddParameter(QXParameter("-bins", QXParameterType::Unsigned)
                       .SetBrief("Number of bins from 0 to 1")
                       .SetDefault("20")
                       .SetLegalRange("1", "100000"));
  AddMemoryOption(itf);
  AddScoreOptions(itf);
  AddRowFormOption(itf);
  QXFingrix::QXConfigureFPDatabaseOptions(itf, QXFingrix::QXFPDatabaseOptionsFlag::SimFunc);
}

bool ReadQuery(QXFingerPrint& fp, const SearchQueries& queries, const QXFastFPDatabase& fingerprints) {
  std::string reason;
  QXChem::QXGraphMol mol;
  const auto index = queries.GetStoredIndex();
  const bool isRead =
      index ? FetchFingerprint(fp, fingerprints, *index, reason)
            : queries.Read(mol, 0, reason) && MakeQuery(fp, mol, fingerprints.GetFPTypeBase(), reason);
  if (!isRead) QXThrow.Error("query '%s': %s", queries.GetName(0).c_str(), reason.c_str());
  return isRead;
}

void CountQuery(const QXFastFPDatabase& fingerprints, const QXFingerPrint& query,
                const QXFPDatabaseOptions& options, QXFPHistogram& histogram) {
  for (const QXFingrix::QXSimScore& hit : fingerprints.GetScores(query, options)) {
    histogram.AddSample(hit.GetScore());
  }
}

template <class T>
std::vector<T> ToVector(const QXSystem::QXIter<T>& values) {
  std::vector<T> copy;
  for (const T& value : values) copy.push_back(value);
  return copy;
}

void WriteHistogram(const QXFPHistogram& histogram, unsigned precision, RowForm form) {
  const auto numSamples = static_cast<double>(histogram.NumSamples());
  std::vector<double> edges = ToVector(histogram.GetBinBoundaries());
  edges.push_back(histogram.GetMax());
  std::vector<double> counts;
  for (unsigned bin = 0; bin < histogram.GetNumBins(); ++bin) {
    counts.push_back(static_cast<double>(histogram.GetCount(bin)));
  }
  const double highest = std::max(*std::ranges::max_element(counts), 1.0);

  const bool hasBars = form == RowForm::Table;
  std::vector<Column> columns = {{"from", true}, {"to", true}, {"count", true}, {"fraction", true}};
  if (hasBars) columns.push_back({"bar"});
  const auto writer = MakeRowWriter(form, std::move(columns));
  for (std::size_t bin = 0; bin < counts.size(); ++bin) {
    std::vector<std::string> cells = {FormatFixed(edges[bin], precision),
                                      FormatFixed(edges[bin + 1], precision), FormatFixed(counts[bin], 0),
                                      FormatFixed(counts[bin] / std::max(numSamples, 1.0), precision)};
    // Rounded up, so that whatever is there shows.
    const double length = std::ceil(kBarWidth * counts[bin] / highest);
    if (hasBars) cells.emplace_back(static_cast<std::size_t>(length), '#');
    writer->Write(std::move(cells));
  }
  writer->Close();
  if (!hasBars || numSamples == 0.0) return;
  Print("\n" + FormatFixed(numSamples, 0) + " scores; by the centers of the bins, mean " +
        FormatFixed(histogram.Mean(), precision) + ", standard deviation " +
        FormatFixed(histogram.Std(), precision) + "\n");
}

ExitStatus Run(const QXSystem::QXInterface& itf) {
  QXFPDatabaseOptions options;
  if (!SetupScoreOptions(itf, options)) return BadUsage;
  SearchQueries queries;
  const bool hasQuery = itf.IsSet("-query");
  const auto queryText = hasQuery ? itf.Get<std::string>("-query") : "";
  if (HasMoleculeExtension(queryText)) {
    QXThrow.Error("-query takes a SMILES or @INDEX, '%s' names a molecule file", queryText.c_str());
    return BadUsage;
  }
  if (hasQuery && !queries.Open(queryText)) return CannotRun;
  const auto path = itf.Get<std::string>("-fpbin");
  const auto fingerprints = OpenFingerprints(itf, path);
  if (!fingerprints) return CannotRun;
  QXFingerPrint query;
  if (hasQuery && !ReadQuery(query, queries, *fingerprints)) return CannotRun;

  std::unique_ptr<ProgressBar> progress;
  if (!hasQuery) {
    progress = MakeProgressBar(AnnounceComparisons(fingerprints->NumFingerPrints(), options), "comparisons");
  }
  QXFPHistogram histogram(itf.Get<unsigned>("-bins"), 0.0, 1.0);
  const bool isCounted = SucceedsQuietly([&] {
    if (hasQuery) {
      CountQuery(*fingerprints, query, options, histogram);
    } else {
      histogram = fingerprints->GetHistogram(options, histogram.GetNumBins(), progress.get());
    }
  });
  if (!isCounted) {
    QXThrow.Error("the scores of '%s' cannot be counted", path.c_str());
    return CannotRun;
  }
  WriteHistogram(histogram, itf.Get<unsigned>("-precision"), GetRowForm(itf));
  return Done;
}

}  // namespace

extern const Command histogramCommand = {
    "histogram",
    "FILE.fpbin",
    "count the scores of all pairs of a file, or of a query against it",
    "Every pair of records is counted once; by Tversky, which is not symmetric, both ways and every\n"
    "record with itself. A bin goes from its lower bound up to, and without, its upper bound; the last\n"
    "takes 1. A table has bars, and ends with mean and standard deviation.\n",
    Configure,
    Run};

}  // namespace qxfp
