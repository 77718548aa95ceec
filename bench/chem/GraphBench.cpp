// Reading and perceiving molecules, each per molecule of a file; RDKit's default parse beside ours in the
// same run.

#include <RDGeneral/RDConfig.h>

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#include <benchmark/benchmark.h>

#include <fstream>
#include <memory>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXPerception.h"
#include "QXChem/QXReadMolecule.h"

namespace {

using namespace QXChem;

const std::vector<std::string>& Smiles() {
  static const std::vector<std::string> smiles = [] {
    std::vector<std::string> result;
    for (const char* file : {QX_SOURCE_DIR "/data/molecules.smi", QX_SHARED_DATA_DIR "/demo_5k.smi"}) {
      std::ifstream stream(file);
      for (std::string line; result.size() < 2000 && std::getline(stream, line);) {
        result.push_back(line.substr(0, line.find_first_of(" \t")));
      }
    }
    return result;
  }();
  return smiles;
}

std::vector<QXGraphMol> Molecules() {
  std::vector<QXGraphMol> mols;
  std::string reason;
  for (const std::string& smiles : Smiles()) {
    QXGraphMol mol;
    if (!QXReadSmiles(mol, smiles, reason)) continue;
    QXSuppressHydrogens(mol);
    mols.push_back(std::move(mol));
  }
  return mols;
}

// One iteration is one molecule.
template <class Items, class Work>
void ForEach(benchmark::State& state, Items& items, Work work) {
  if (items.empty()) {
    state.SkipWithError("no molecules");
    return;
  }
  std::size_t next = 0;
  for (auto _ : state) {
    work(items[next]);
    if (++next == items.size()) next = 0;
  }
  state.counters["molecules/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void ReadSmiles(benchmark::State& state) {
  QXGraphMol mol;
  std::string reason;
  ForEach(state, Smiles(),
          [&](const std::string& smiles) { benchmark::DoNotOptimize(QXReadSmiles(mol, smiles, reason)); });
}
BENCHMARK(ReadSmiles)->Unit(benchmark::kMicrosecond)->ThreadRange(1, 2)->UseRealTime();

void RDKitDefaultParse(benchmark::State& state) {
  ForEach(state, Smiles(), [](const std::string& smiles) {
    try {
      const std::unique_ptr<RDKit::RWMol> mol(RDKit::SmilesToMol(smiles));
      benchmark::DoNotOptimize(mol.get());
    } catch (const std::exception&) {
    }
  });
}
BENCHMARK(RDKitDefaultParse)->Unit(benchmark::kMicrosecond);

template <class Work>
void OnMolecules(benchmark::State& state, Work work) {
  std::vector<QXGraphMol> mols = Molecules();
  ForEach(state, mols, work);
}

void CopyMolecule(benchmark::State& state) {
  QXGraphMol copy;
  OnMolecules(state, [&](const QXGraphMol& mol) { copy = mol; });
}
BENCHMARK(CopyMolecule);

void SuppressHydrogens(benchmark::State& state) {
  OnMolecules(state, [](QXGraphMol& mol) { QXSuppressHydrogens(mol); });
}
BENCHMARK(SuppressHydrogens);

void FindRings(benchmark::State& state) {
  OnMolecules(state, [](QXGraphMol& mol) {
    mol.ForgetPerceived(QXPerceived::Rings);
    QXFindRingAtomsAndBonds(mol);
  });
}
BENCHMARK(FindRings);

void PerceiveChiral(benchmark::State& state) {
  OnMolecules(state, [](QXGraphMol& mol) {
    mol.ForgetPerceived(QXPerceived::Chirality);
    QXPerceiveChiral(mol);
  });
}
BENCHMARK(PerceiveChiral);

void PerceiveSymmetry(benchmark::State& state, bool proven) {
  OnMolecules(state, [proven](QXGraphMol& mol) { QXPerceiveSymmetry(mol, proven, false); });
}
BENCHMARK_CAPTURE(PerceiveSymmetry, refined, false);
BENCHMARK_CAPTURE(PerceiveSymmetry, proven, true);

void CreateSmiles(benchmark::State& state) {
  OnMolecules(state, [](QXGraphMol& mol) { benchmark::DoNotOptimize(QXCreateSmiles(mol)); });
}
BENCHMARK(CreateSmiles)->Unit(benchmark::kMicrosecond);

}  // namespace
