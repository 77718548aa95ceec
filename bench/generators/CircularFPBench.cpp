// Circular fingerprints from a prepared molecule, and their stages, beside RDKit's Morgan fingerprint folded
// to as many bits. One item is one molecule.

#include <RDGeneral/RDConfig.h>  // first: the others depend on its settings

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#ifdef QX_HAVE_RDKIT_FINGERPRINTS
#include <DataStructs/ExplicitBitVect.h>
#include <GraphMol/Fingerprints/MorganFingerprints.h>
#endif

#include <memory>

#include "QXFingrix/QXCircularFP.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "Sample.h"
#include "generators/circular/CircularIds.h"
#include "generators/circular/Environments.h"

namespace {

using namespace qxbench;

constexpr unsigned maxRadius = 5;
const std::vector<unsigned> labels(1000, 201375);

void CircularFP(benchmark::State& state) {
  QXFingrix::QXFingerPrint fp;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) { QXFingrix::QXMakeCircularFP(fp, mol); });
}

void UnhashedCircularFP(benchmark::State& state) {
  QXFingrix::QXFingerPrint fp;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    QXFingrix::QXMakeUnhashedCircularFP(fp, mol, 0, maxRadius, 4239, 1);
  });
}

// The stages: the copy with its labels, the identifiers, the sets of bonds.
void CircularLabels(benchmark::State& state) {
  QXChem::QXGraphMol copy;
  std::vector<unsigned> atomLabels, bondLabels;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    copy = mol;
    QXFingrix::QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, 4239, 1);
  });
}

void CircularIdentifiers(benchmark::State& state) {
  QXFingrix::CircularIds ids;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    ids.Load(mol, labels, labels);
    for (unsigned radius = 1; radius <= maxRadius; ++radius) ids.Grow();
    benchmark::DoNotOptimize(ids.Get().data());
  });
}

void CircularEnvironments(benchmark::State& state) {
  QXFingrix::Environments environments;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    environments.Load(mol);
    for (unsigned radius = 1; radius <= maxRadius; ++radius) {
      benchmark::DoNotOptimize(environments.Grow().data());
    }
  });
}

void LargeCircularFP(benchmark::State& state) {
  QXChem::QXGraphMol mol;
  std::string reason;
  if (!QXChem::QXReadSmiles(mol, state.range(0) == 0 ? fullerene : Peptide(), reason)) {
    return state.SkipWithError("unreadable");
  }
  const auto radius = static_cast<unsigned>(state.range(1));
  const bool isUnhashed = state.range(2) != 0;
  QXFingrix::QXFingerPrint fp;
  for (auto _ : state) {
    if (isUnhashed) {
      QXFingrix::QXMakeUnhashedCircularFP(fp, mol, 0, radius, 4239, 1);
    } else {
      QXFingrix::QXMakeCircularFP(fp, mol, 4096, 0, radius, 4239, 1);
    }
  }
  state.counters["atoms"] = mol.NumAtoms();
}

#ifdef QX_HAVE_RDKIT_FINGERPRINTS
void RDKitMorgan(benchmark::State& state) {
  const Sample& sample = GetSample(state.range(0) != 0);
  std::vector<std::unique_ptr<RDKit::RWMol>> mols;
  for (const std::string& smiles : sample.smiles) mols.emplace_back(RDKit::SmilesToMol(smiles));
  for (auto _ : state) {
    for (const auto& mol : mols) {
      const std::unique_ptr<ExplicitBitVect> fp(
          RDKit::MorganFingerprints::getFingerprintAsBitVect(*mol, maxRadius, 4096));
      benchmark::DoNotOptimize(fp.get());
    }
  }
  Finish(state, mols.size());
}
BENCHMARK(RDKitMorgan)->Arg(0)->Arg(1);
#endif

}  // namespace

// First argument 0: molecules of 27 heavy atoms, 1: all bundled molecules. For the large ones 0: C60,
// 1: peptide; then the largest radius, and whether unhashed.
BENCHMARK(CircularFP)->Arg(0)->Arg(1);
BENCHMARK(UnhashedCircularFP)->Arg(0)->Arg(1);
BENCHMARK(CircularLabels)->Arg(0);
BENCHMARK(CircularIdentifiers)->Arg(0);
BENCHMARK(CircularEnvironments)->Arg(0);
BENCHMARK(LargeCircularFP)->ArgsProduct({{0, 1}, {5, 20}, {0, 1}})->Unit(benchmark::kMillisecond);
