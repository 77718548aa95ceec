// MACCS fingerprints of prepared molecules, beside RDKit's, whose keys are other ones but of the same number
// and nature. One item is one molecule; PatternsOneByOne is what the rules of the keys replace.

#include <RDGeneral/RDConfig.h>  // first: the others depend on its settings

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#ifdef QX_HAVE_RDKIT_FINGERPRINTS
#include <DataStructs/ExplicitBitVect.h>
#include <GraphMol/Fingerprints/MACCS.h>
#endif
#include <benchmark/benchmark.h>

#include <fstream>
#include <memory>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXChem/QXSubSearchTarget.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMACCSFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "generators/maccs/KeyFinder.h"
#include "generators/maccs/MACCSKey.h"

namespace {

constexpr std::size_t sampleSize = 500;

const std::vector<std::string>& Smiles() {
  static const std::vector<std::string> smiles = [] {
    std::vector<std::string> texts;
    std::ifstream in(QX_SOURCE_DIR "/data/molecules.smi");
    for (std::string line; texts.size() < sampleSize && std::getline(in, line);) {
      texts.push_back(line.substr(0, line.find(' ')));
    }
    return texts;
  }();
  return smiles;
}

const std::vector<QXChem::QXGraphMol>& Molecules() {
  static const std::vector<QXChem::QXGraphMol> mols = [] {
    std::vector<QXChem::QXGraphMol> prepared;
    for (const std::string& smiles : Smiles()) {
      std::string reason;
      QXChem::QXReadSmiles(prepared.emplace_back(), smiles, reason);
      QXFingrix::QXPrepareForFingerprinting(prepared.back(), QXFingrix::QXFPType::MACCS166);
    }
    return prepared;
  }();
  return mols;
}

template <class Mols, class Work>
void Over(benchmark::State& state, const Mols& mols, Work work) {
  for (auto _ : state) {
    for (const auto& mol : mols) work(mol);
  }
  const auto numDone = static_cast<double>(state.iterations()) * static_cast<double>(mols.size());
  state.SetItemsProcessed(static_cast<std::int64_t>(numDone));
}

void MACCSFP(benchmark::State& state) {
  QXFingrix::QXFingerPrint fp;
  Over(state, Molecules(), [&](const QXChem::QXGraphMol& mol) { QXFingrix::QXMakeMACCS166FP(fp, mol); });
}

void KeyRules(benchmark::State& state) {
  QXFingrix::KeyFinder finder;
  Over(state, Molecules(), [&](const QXChem::QXGraphMol& mol) {
    QXFingrix::KeySet keys;
    finder.FindPatternKeys(keys, mol);
    benchmark::DoNotOptimize(keys);
  });
}

void PatternsOneByOne(benchmark::State& state) {
  static const std::vector<QXFingrix::MACCSKey> rows = QXFingrix::MACCS166Keys();
  QXChem::QXSubSearchTarget target;
  Over(state, Molecules(), [&](const QXChem::QXGraphMol& mol) {
    target.Assign(mol);
    for (const QXFingrix::MACCSKey& row : rows) benchmark::DoNotOptimize(row.search.SingleMatch(target));
  });
}

#ifdef QX_HAVE_RDKIT_FINGERPRINTS
void RDKitMACCS(benchmark::State& state) {
  static const std::vector<std::unique_ptr<RDKit::RWMol>> mols = [] {
    std::vector<std::unique_ptr<RDKit::RWMol>> read;
    for (const std::string& smiles : Smiles()) read.emplace_back(RDKit::SmilesToMol(smiles));
    return read;
  }();
  Over(state, mols, [](const std::unique_ptr<RDKit::RWMol>& mol) {
    const std::unique_ptr<ExplicitBitVect> fp(RDKit::MACCSFingerprints::getFingerprintAsBitVect(*mol));
    benchmark::DoNotOptimize(fp.get());
  });
}
#endif

}  // namespace

BENCHMARK(MACCSFP)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(KeyRules);
BENCHMARK(PatternsOneByOne);
#ifdef QX_HAVE_RDKIT_FINGERPRINTS
BENCHMARK(RDKitMACCS)->Threads(1)->Threads(2)->UseRealTime();
#endif
