// Tree fingerprints from a prepared molecule beside RDKit's fingerprint of branched paths, which looks at the
// same subgraphs, and what large molecules and large trees cost. One item is one molecule.

#include <RDGeneral/RDConfig.h>  // first: the others depend on its settings

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#ifdef QX_HAVE_RDKIT_FINGERPRINTS
#include <DataStructs/ExplicitBitVect.h>
#include <GraphMol/Fingerprints/Fingerprints.h>
#endif

#include <memory>

#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXTreeFP.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "Sample.h"
#include "generators/tree/HashedTreeWalk.h"
#include "generators/tree/TreeCentre.h"

namespace {

using namespace qxbench;

void TreeFP(benchmark::State& state) {
  QXFingrix::QXFingerPrint fp;
  const auto maxbonds = static_cast<unsigned>(state.range(1));
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    QXFingrix::QXMakeTreeFP(fp, mol, 4096, 0, maxbonds, 63, 1);
  });
}

void UnhashedTreeFP(benchmark::State& state) {
  QXFingrix::QXFingerPrint fp;
  OverPrepared(state,
               [&](const QXChem::QXGraphMol& mol) { QXFingrix::QXMakeUnhashedTreeFP(fp, mol, 0, 4, 63, 1); });
}

const std::vector<unsigned> labels(1000, 201375);

// The trees alone, over labels that are there, by their shapes.
void TreesByShape(benchmark::State& state) {
  QXFingrix::HashedTreeWalk walk;
  std::vector<std::uint64_t> words(64);
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    walk.SetBits(words, 4093, mol, std::span(labels).first(mol.NumAtoms()), labels, 0, 4);
    benchmark::DoNotOptimize(words.data());
  });
}

// The same trees as those that are too large for shapes are found: what the shapes gain.
void TreesByGeneralWalk(benchmark::State& state) {
  QXFingrix::TreeWalk walk;
  QXFingrix::TreeIds ids(labels, labels);
  std::vector<std::uint64_t> words(64);
  QXFingrix::HashedBits bits(words, 4093);
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    walk.Walk(mol, 0, 4, UINT64_MAX, [&](std::span<const QXFingrix::TreeNode> nodes) {
      bits.Set(BuildFromLeaves(nodes, ids));
      return true;
    });
    benchmark::DoNotOptimize(words.data());
  });
}

void LargeMolecule(benchmark::State& state) {
  QXChem::QXGraphMol mol;
  std::string reason;
  const bool isRead = QXChem::QXReadSmiles(mol, state.range(0) == 0 ? fullerene : Peptide(), reason);
  const auto maxbonds = static_cast<unsigned>(state.range(1));
  QXFingrix::QXPrepareForFingerprinting(mol, QXFingrix::QXFPType::Tree);
  QXFingrix::QXFingerPrint fp;
  if (!isRead || !QXFingrix::QXMakeTreeFP(fp, mol, 4096, 0, maxbonds, 63, 1)) {
    return state.SkipWithError("no fingerprint");
  }
  for (auto _ : state) QXFingrix::QXMakeTreeFP(fp, mol, 4096, 0, maxbonds, 63, 1);
  std::uint64_t numTrees = 0;
  QXFingrix::TreeWalk().Walk(mol, 0, maxbonds, UINT64_MAX, [&](auto) { return ++numTrees > 0; });
  state.counters["atoms"] = mol.NumAtoms();
  state.counters["trees"] = static_cast<double>(numTrees);
}

#ifdef QX_HAVE_RDKIT_FINGERPRINTS
// As close to ours as it goes: branched subgraphs of one to four bonds, one bit each, element and bond order.
void RDKitBranchedFP(benchmark::State& state) {
  const Sample& sample = GetSample(state.range(0) != 0);
  std::vector<std::unique_ptr<RDKit::RWMol>> mols;
  for (const std::string& smiles : sample.smiles) mols.emplace_back(RDKit::SmilesToMol(smiles));
  for (auto _ : state) {
    for (const auto& mol : mols) {
      const std::unique_ptr<ExplicitBitVect> fp(
          RDKit::RDKFingerprintMol(*mol, 1, 4, 4096, 1, false, 0.0, 128, true));
      benchmark::DoNotOptimize(fp.get());
    }
  }
  Finish(state, mols.size());
}
BENCHMARK(RDKitBranchedFP)->Arg(0)->Arg(1);
#endif

}  // namespace

// First argument 0: molecules of 27 heavy atoms; 1: all bundled molecules. Second argument: the most bonds.
BENCHMARK(TreeFP)->Args({0, 4})->Args({1, 4})->Args({1, 6})->Args({1, 8});
BENCHMARK(UnhashedTreeFP)->Arg(0)->Arg(1);
BENCHMARK(TreesByShape)->Arg(0);
BENCHMARK(TreesByGeneralWalk)->Arg(0);
BENCHMARK(LargeMolecule)->ArgsProduct({{0, 1}, {4, 6, 8, 10}})->Unit(benchmark::kMillisecond);
