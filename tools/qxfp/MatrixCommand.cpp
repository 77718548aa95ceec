#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "FingerprintFile.h"
#include "HitTexts.h"
#include "Messages.h"
#include "Numbers.h"
#include "ProgressBar.h"
#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXSystem/QXErrorHandler.h"
#include "RowWriter.h"
#include "ScoreOptions.h"

namespace qxfp {

namespace {

using QXFingrix::QXFPDatabaseOptions;
using QXFingrix::QXSimScorePair;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

using Pairs = QXSystem::QXIter<QXSimScorePair>;

constexpr unsigned kDefaultLimit = 10;

void Configure(QXSystem::QXInterface& itf) {
  AddFingerprintFile(itf);
  itf.AddParameter(QXParameter("-titles", QXParameterType::Bool)
                       .SetBrief("Add the titles of both molecules")
                       .SetDefault("false"));
  AddMemoryOption(itf);
  AddMoleculesOption(itf);
  AddScoreOptions(itf);
  AddRowFormOption(itf);
  QXFingrix::QXConfigureFPDatabaseOptions(
      itf, QXFPDatabaseOptions(kDefaultLimit, QXFingrix::QXSimMeasure::Tanimoto));
}

// Writes pairs, which come grouped by their first record, without those of a record and itself and at most
// limit of every group.
class PairWriter {
 public:
  PairWriter(RowForm form, unsigned precision, std::uint64_t limit, const HitTexts* texts)
      : writer_(MakeRowWriter(form, MakeColumns(texts != nullptr))),
        precision_(precision),
        limit_(limit),
        texts_(texts) {}

  void Write(const Pairs& pairs) {
    std::uint64_t numWritten = 0;
    unsigned first = QXFingrix::QXSimScore::NoIndex;
    for (const QXSimScorePair& pair : pairs) {
      if (pair.GetFirstIdx() != std::exchange(first, pair.GetFirstIdx())) numWritten = 0;
      if (pair.GetFirstIdx() == pair.GetSecondIdx() || numWritten == limit_) continue;
      ++numWritten;
      WriteRow(pair);
    }
    writer_->Close();
  }

 private:
  static std::vector<Column> MakeColumns(bool hasTitles) {
    std::vector<Column> columns = {{"i", true}, {"j", true}, {"score", true}};
    if (hasTitles) columns.insert(columns.end(), {{"title_i"}, {"title_j"}});
    return columns;
  }

  void WriteRow(const QXSimScorePair& pair) {
    std::vector<std::string> cells = {std::to_string(pair.GetFirstIdx()), std::to_string(pair.GetSecondIdx()),
                                      FormatFixed(pair.GetScore(), precision_)};
    if (texts_) {
      cells.push_back(texts_->GetTitle(pair.GetFirstIdx()));
      cells.push_back(texts_->GetTitle(pair.GetSecondIdx()));
    }
    writer_->Write(std::move(cells));
  }

  std::unique_ptr<RowWriter> writer_;
  unsigned precision_;
  std::uint64_t limit_;
  const HitTexts* texts_;
};

ExitStatus Run(const QXSystem::QXInterface& itf) {
  QXFPDatabaseOptions options;
  if (!SetupScoreOptions(itf, options)) return BadUsage;
  const auto path = itf.Get<std::string>("-fpbin");
  const auto fingerprints = OpenFingerprints(itf, path);
  if (!fingerprints) return CannotRun;
  const bool hasTitles = itf.Get<bool>("-titles");
  HitTexts texts;
  if (hasTitles && !texts.Open(itf, path, *fingerprints)) return CannotRun;
  if (!hasTitles && itf.IsSet("-mols")) QXThrow.Info("-mols matters with -titles only");

  const std::uint64_t numRecords = fingerprints->NumFingerPrints();
  const std::uint64_t limit = options.GetLimit() == 0 ? numRecords : options.GetLimit();
  Pairs pairs;
  if (numRecords > 1) {
    const auto progress = MakeProgressBar(AnnounceComparisons(numRecords, options), "comparisons");
    // The library counts a record among its own neighbours, and refuses to look for more than there are.
    options.SetLimit(static_cast<unsigned>(std::min(limit + 1, numRecords)));
    if (!SucceedsQuietly([&] { pairs = fingerprints->GetSparseMatrix(options, progress.get()); })) {
      QXThrow.Error("'%s' cannot be compared with itself", path.c_str());
      return CannotRun;
    }
  }
  PairWriter(GetRowForm(itf), itf.Get<unsigned>("-precision"), limit, hasTitles ? &texts : nullptr)
      .Write(pairs);
  return Done;
}

}  // namespace

extern const Command matrixCommand = {
    "matrix",
    "FILE.fpbin",
    "find the nearest neighbours of every record of a file",
    "The rows are ordered by i, then best first, equal scores by lower j. A record is not its own\n"
    "neighbour; others with the same fingerprint are. With Tversky i is the query. Of the pairs that\n"
    "-cutoff excludes there are none; a score equal to it passes. Scores of 0 are listed. All\n"
    "neighbours are kept in memory, up to 20 bytes each, before the first is written.\n",
    Configure,
    Run};

}  // namespace qxfp
