#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "FingerprintKinds.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "Numbers.h"
#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXFingrix/QXSimFunc.h"
#include "QXFingrix/QXSimilarity.h"
#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"
#include "RowWriter.h"
#include "ScoreOptions.h"

namespace qxfp {

namespace {

namespace Measures = QXFingrix::QXSimMeasure;
using QXFingrix::QXFingerPrint;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

// The two molecules, by their parameters.
constexpr const char* kSides[] = {"-a", "-b"};
constexpr const char* kSideNames[] = {"A", "B"};

void Configure(QXSystem::QXInterface& itf) {
  itf.AddParameter(QXParameter(kSides[0], QXParameterType::String)
                       .SetBrief("SMILES of the query")
                       .SetKeyless(1)
                       .SetRequired(true));
  itf.AddParameter(QXParameter(kSides[1], QXParameterType::String)
                       .SetBrief("SMILES of the molecule that it is compared with")
                       .SetKeyless(2)
                       .SetRequired(true));
  AddScoreOptions(itf);
  AddRowFormOption(itf);
  ConfigureFingerprintOptions(itf);
}

bool CheckUsage(const QXSystem::QXInterface& itf, std::string& reason) {
  for (const char* side : kSides) {
    const auto text = itf.Get<std::string>(side);
    if (!HasMoleculeExtension(text) && QXSystem::QXFileExtension(text) != "fpbin") continue;
    reason = "'" + text + "' names a file: compare takes two SMILES, `qxfp search` searches files";
    return false;
  }
  return true;
}

bool MakeFingerprint(QXFingerPrint& fp, const std::string& smiles, const QXFingrix::QXFPTypeBase* type,
                     std::string& reason) {
  QXChem::QXGraphMol mol;
  if (!ReadSmiles(mol, smiles, reason)) return false;
  if (QXFingrix::QXMakeFP(fp, mol, type)) return true;
  reason = "its fingerprint cannot be made";
  return false;
}

// What is counted: bits; Lingos, of which none is in neither; nothing of unhashed fingerprints.
struct Counts {
  std::vector<Column> columns;
  std::vector<std::string> cells;
};

Counts CountBits(const QXFingerPrint& a, const QXFingerPrint& b) {
  if (IsUnhashedType(a.GetFPTypeBase())) return {};
  unsigned onlyA = 0;
  unsigned onlyB = 0;
  unsigned both = 0;
  unsigned neither = 0;
  QXFingrix::QXGetBitCounts(a, b, &onlyA, &onlyB, &both, &neither);
  Counts counts{{{"only_a", true}, {"only_b", true}, {"both", true}},
                {std::to_string(onlyA), std::to_string(onlyB), std::to_string(both)}};
  if (IsTextType(a.GetFPTypeBase())) return counts;
  counts.columns.push_back({"neither", true});
  counts.cells.push_back(std::to_string(neither));
  return counts;
}

void WriteScores(const QXFingerPrint& a, const QXFingerPrint& b, const QXSystem::QXInterface& itf) {
  const QXFingrix::QXTanimotoSim tanimoto;
  const QXFingrix::QXCosineSim cosine;
  const QXFingrix::QXDiceSim dice;
  const QXFingrix::QXEuclidSim euclid;
  const QXFingrix::QXTverskySim tversky(itf.Get<float>("-alpha"), itf.Get<float>("-beta"));
  const QXFingrix::QXManhattanSim manhattan;
  const std::pair<unsigned, const QXFingrix::QXSimFuncBase&> measures[] = {
      {Measures::Tanimoto, tanimoto}, {Measures::Cosine, cosine},   {Measures::Dice, dice},
      {Measures::Euclid, euclid},     {Measures::Tversky, tversky}, {Measures::Manhattan, manhattan}};

  const Counts counts = CountBits(a, b);
  std::vector<Column> columns = {{"measure"}, {"score", true}};
  columns.insert(columns.end(), counts.columns.begin(), counts.columns.end());
  const auto writer = MakeRowWriter(GetRowForm(itf), std::move(columns));
  for (const auto& [measure, score] : measures) {
    if (measure != Measures::Tanimoto && IsUnhashedType(a.GetFPTypeBase())) continue;
    std::vector<std::string> cells = {QXFingrix::QXGetSimilarityMeasureName(measure),
                                      FormatFixed(score(a, b), itf.Get<unsigned>("-precision"))};
    cells.insert(cells.end(), counts.cells.begin(), counts.cells.end());
    writer->Write(std::move(cells));
  }
  writer->Close();
}

ExitStatus Run(const QXSystem::QXInterface& itf) {
  std::string reason;
  const QXFingrix::QXFPTypeBase* type = SetupFingerprintType(itf, reason);
  if (!type || !CheckUsage(itf, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return BadUsage;
  }
  if (!CanMakeFingerprint(type, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return CannotRun;
  }
  QXFingerPrint fingerprints[2];
  for (int i = 0; i < 2; ++i) {
    const auto smiles = itf.Get<std::string>(kSides[i]);
    if (MakeFingerprint(fingerprints[i], smiles, type, reason)) continue;
    QXThrow.Error("%s '%s': %s", kSideNames[i], smiles.c_str(), reason.c_str());
    return CannotRun;
  }
  WriteScores(fingerprints[0], fingerprints[1], itf);
  return Done;
}

}  // namespace

extern const Command compareCommand = {
    "compare",
    "A B",
    "compare two molecules by every measure",
    "A is the query: -alpha weighs what only A has. The counts are those of bits, or of Lingos; unhashed\n"
    "fingerprints have a Tanimoto only, which is nan when neither molecule has a subgraph.\n",
    Configure,
    Run};

}  // namespace qxfp
