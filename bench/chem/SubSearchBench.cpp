// The patterns of a set of 166 keys, all of them per molecule: one iteration is one molecule. RDKit's matcher
// runs the same patterns on the same molecules.

#include <RDGeneral/RDConfig.h>

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#include <GraphMol/Substruct/SubstructMatch.h>
#include <benchmark/benchmark.h>

#include <fstream>
#include <memory>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXPerception.h"
#include "QXChem/QXReadMolecule.h"
#include "QXChem/QXSubSearch.h"

namespace {

using namespace QXChem;

// The first section of the patterns that the tests match.
std::vector<std::string> KeyPatterns() {
  std::ifstream stream(QX_SOURCE_DIR "/tests/chem/patterns.smarts");
  std::vector<std::string> patterns;
  for (std::string line; std::getline(stream, line);) {
    if (!line.starts_with("# ")) {
      patterns.push_back(line);
    } else if (!patterns.empty()) {
      break;
    }
  }
  return patterns;
}

std::vector<std::string> Smiles() {
  std::ifstream stream(QX_SOURCE_DIR "/data/molecules.smi");
  std::vector<std::string> smiles;
  for (std::string line; smiles.size() < 2000 && std::getline(stream, line);) {
    smiles.push_back(line.substr(0, line.find(' ')));
  }
  return smiles;
}

const std::vector<QXSubSearch>& Patterns() {
  static const std::vector<QXSubSearch> patterns = [] {
    std::vector<QXSubSearch> result;
    for (const std::string& smarts : KeyPatterns()) result.emplace_back(smarts);
    return result;
  }();
  return patterns;
}

const std::vector<QXGraphMol>& Molecules() {
  static const std::vector<QXGraphMol> mols = [] {
    std::vector<QXGraphMol> result;
    for (const std::string& smiles : Smiles()) {
      QXGraphMol mol;
      QXParseSmiles(mol, smiles);
      QXSuppressHydrogens(mol);
      result.push_back(std::move(mol));
    }
    return result;
  }();
  return mols;
}

template <class Mol, class Work>
void ForEach(benchmark::State& state, const std::vector<Mol>& mols, Work work) {
  std::size_t next = 0;
  for (auto _ : state) {
    work(mols[next]);
    if (++next == mols.size()) next = 0;
  }
  state.counters["molecules/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void TakeTarget(benchmark::State& state) {
  QXSubSearchTarget target;
  ForEach(state, Molecules(), [&](const QXGraphMol& mol) { target.Assign(mol); });
}
BENCHMARK(TakeTarget);

void AllPatterns(benchmark::State& state) {
  const std::vector<QXSubSearch>& patterns = Patterns();
  QXSubSearchTarget target;
  ForEach(state, Molecules(), [&](const QXGraphMol& mol) {
    target.Assign(mol);
    for (const QXSubSearch& pattern : patterns) benchmark::DoNotOptimize(pattern.SingleMatch(target));
  });
}
BENCHMARK(AllPatterns)->Unit(benchmark::kMicrosecond)->ThreadRange(1, 2)->UseRealTime();

void AllPatternsWithoutTarget(benchmark::State& state) {
  const std::vector<QXSubSearch>& patterns = Patterns();
  ForEach(state, Molecules(), [&](const QXGraphMol& mol) {
    for (const QXSubSearch& pattern : patterns) benchmark::DoNotOptimize(pattern.SingleMatch(mol));
  });
}
BENCHMARK(AllPatternsWithoutTarget)->Unit(benchmark::kMicrosecond);

// As a counting key does: whether there are two different matches.
void TwoMatches(benchmark::State& state) {
  const QXSubSearch pattern("[#7,#8,#14,#16]@*");
  QXSubSearchTarget target;
  ForEach(state, Molecules(), [&](const QXGraphMol& mol) {
    target.Assign(mol);
    auto matches = pattern.Match(target, true);
    ++matches;
    benchmark::DoNotOptimize(static_cast<bool>(matches));
  });
}
BENCHMARK(TwoMatches);

void RDKitAllPatterns(benchmark::State& state) {
  std::vector<std::unique_ptr<RDKit::RWMol>> patterns;
  for (const std::string& smarts : KeyPatterns()) patterns.emplace_back(RDKit::SmartsToMol(smarts));
  std::vector<std::unique_ptr<RDKit::RWMol>> mols;
  for (const std::string& smiles : Smiles()) mols.emplace_back(RDKit::SmilesToMol(smiles));
  RDKit::MatchVectType match;
  ForEach(state, mols, [&](const std::unique_ptr<RDKit::RWMol>& mol) {
    for (const auto& pattern : patterns) benchmark::DoNotOptimize(SubstructMatch(*mol, *pattern, match));
  });
}
BENCHMARK(RDKitAllPatterns)->Unit(benchmark::kMicrosecond);

}  // namespace
