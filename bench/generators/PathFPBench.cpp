// Path fingerprints from a prepared molecule, and their stages, beside what RDKit needs to read the same molecule
// and to make its own path fingerprint. One item is one molecule: items_per_second are molecules per second.

#include <RDGeneral/RDConfig.h>  // first: the others depend on its settings

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#ifdef QX_HAVE_RDKIT_FINGERPRINTS
#include <GraphMol/Fingerprints/Fingerprints.h>
#endif
#include <DataStructs/ExplicitBitVect.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <memory>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXPerception.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "Sample.h"
#include "generators/HashedPathWalk.h"

namespace {

using namespace qxbench;

void PathFP(benchmark::State& state) {
  QXFingrix::QXFingerPrint fp;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) { QXFingrix::QXMakePathFP(fp, mol); });
}

void UnhashedPathFP(benchmark::State& state) {
  QXFingrix::QXFingerPrint fp;
  OverPrepared(
      state, [&](const QXChem::QXGraphMol& mol) { QXFingrix::QXMakeUnhashedPathFP(fp, mol, 0, 5, 191, 3); });
}

// What the tree of tokens replaces: texts collected in a vector by the public generator, sorted and joined.
void SortedPathTexts(benchmark::State& state) {
  std::vector<std::string> atomLabels, bondLabels, ids;
  std::string text;
  OverPrepared(state, [&](QXChem::QXGraphMol mol) {
    QXFingrix::QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, 191, 3);
    ids.clear();
    QXFingrix::QXPathIdGeneratorStack(ids, mol, atomLabels, bondLabels, 0, 5);
    std::sort(ids.begin(), ids.end());
    text.clear();
    for (const std::string& id : ids) text.append(id).push_back(' ');
    benchmark::DoNotOptimize(text.data());
  });
}

void Copy(benchmark::State& state) {
  QXChem::QXGraphMol copy;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) { copy = mol; });
}

void CopyAndSymmetry(benchmark::State& state) {
  QXChem::QXGraphMol copy;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    copy = mol;
    QXChem::QXPerceiveSymmetry(copy, true, false);
  });
}

void CopyAndLabels(benchmark::State& state) {
  QXChem::QXGraphMol copy;
  std::vector<unsigned> atomLabels;
  std::vector<unsigned> bondLabels;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    copy = mol;
    QXFingrix::QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, 191, 3);
  });
}

void CopyAndTextLabels(benchmark::State& state) {
  QXChem::QXGraphMol copy;
  std::vector<std::string> atomLabels;
  std::vector<std::string> bondLabels;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    copy = mol;
    QXFingrix::QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, 191, 3);
  });
}

// The walk alone, over labels that are there; from every heavy atom.
void Walk(benchmark::State& state) {
  QXFingrix::HashedPathWalk walk;
  std::vector<std::uint64_t> words(64);
  const std::vector<unsigned> labels(1000, 201375);
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    walk.SetBits(words, 4093, mol, labels, labels, 0, 5);
    benchmark::DoNotOptimize(words.data());
  });
}

// What the walk replaces: identifiers collected in a vector by the public generator.
void IdGeneratorStack(benchmark::State& state) {
  std::vector<unsigned> labels(1000, 201375);
  std::vector<unsigned> bondLabels(1000, 131);
  std::vector<unsigned> ids;
  OverPrepared(state, [&](const QXChem::QXGraphMol& mol) {
    ids.clear();
    QXFingrix::QXPathIdGeneratorStack(ids, mol, labels, bondLabels, 0, 5);
  });
}

void ReadSmiles(benchmark::State& state) {
  const Sample& sample = GetSample(state.range(0) != 0);
  QXChem::QXGraphMol mol;
  std::string reason;
  for (auto _ : state) {
    for (const std::string& smiles : sample.smiles) QXChem::QXReadSmiles(mol, smiles, reason);
  }
  Finish(state, sample.smiles.size());
}

void RDKitParse(benchmark::State& state) {
  const Sample& sample = GetSample(state.range(0) != 0);
  for (auto _ : state) {
    for (const std::string& smiles : sample.smiles) {
      const std::unique_ptr<RDKit::RWMol> mol(RDKit::SmilesToMol(smiles));
      benchmark::DoNotOptimize(mol.get());
    }
  }
  Finish(state, sample.smiles.size());
}

#ifdef QX_HAVE_RDKIT_FINGERPRINTS
void RDKitPathFP(benchmark::State& state) {
  const Sample& sample = GetSample(state.range(0) != 0);
  std::vector<std::unique_ptr<RDKit::RWMol>> mols;
  for (const std::string& smiles : sample.smiles) mols.emplace_back(RDKit::SmilesToMol(smiles));
  for (auto _ : state) {
    for (const auto& mol : mols) {
      const std::unique_ptr<ExplicitBitVect> fp(RDKit::RDKFingerprintMol(*mol, 1, 5, 4096));
      benchmark::DoNotOptimize(fp.get());
    }
  }
  Finish(state, mols.size());
}
#endif

}  // namespace

// Argument 0: molecules of 27 heavy atoms; 1: all bundled molecules.
BENCHMARK(PathFP)->Arg(0)->Arg(1);
BENCHMARK(UnhashedPathFP)->Arg(0)->Arg(1);
BENCHMARK(SortedPathTexts)->Arg(0);
BENCHMARK(Copy)->Arg(0);
BENCHMARK(CopyAndSymmetry)->Arg(0);
BENCHMARK(CopyAndLabels)->Arg(0);
BENCHMARK(CopyAndTextLabels)->Arg(0);
BENCHMARK(Walk)->Arg(0);
BENCHMARK(IdGeneratorStack)->Arg(0);
BENCHMARK(ReadSmiles)->Arg(0)->Arg(1);
BENCHMARK(RDKitParse)->Arg(0)->Arg(1);
#ifdef QX_HAVE_RDKIT_FINGERPRINTS
BENCHMARK(RDKitPathFP)->Arg(0)->Arg(1);
#endif
