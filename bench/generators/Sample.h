#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"

namespace qxbench {

struct Sample {
  std::vector<std::string> smiles;
  std::vector<QXChem::QXGraphMol> prepared;
};

// All bundled molecules, or those with exactly `numHeavy` heavy atoms; what prepares them for paths does for
// the other graph fingerprints.
inline Sample MakeSample(unsigned numHeavy) {
  Sample sample;
  std::ifstream in(QX_SOURCE_DIR "/data/molecules.smi");
  for (std::string line; std::getline(in, line);) {
    const std::string smiles = line.substr(0, line.find(' '));
    QXChem::QXGraphMol mol;
    std::string reason;
    if (!QXChem::QXReadSmiles(mol, smiles, reason)) continue;
    QXFingrix::QXPrepareForFingerprinting(mol, QXFingrix::QXFPType::Path);
    if (numHeavy != 0 && mol.NumAtoms() != numHeavy) continue;
    sample.smiles.push_back(smiles);
    sample.prepared.push_back(mol);
  }
  return sample;
}

inline const Sample& GetSample(bool all) {
  static const Sample ofOneSize = MakeSample(27);
  static const Sample ofAll = MakeSample(0);
  return all ? ofAll : ofOneSize;
}

inline void Finish(benchmark::State& state, std::size_t numMols) {
  const auto numDone = static_cast<double>(state.iterations()) * static_cast<double>(numMols);
  state.SetItemsProcessed(static_cast<std::int64_t>(numDone));
  state.counters["time/molecule"] =
      benchmark::Counter(numDone, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

template <class Work>
void OverPrepared(benchmark::State& state, Work work) {
  const Sample& sample = GetSample(state.range(0) != 0);
  for (auto _ : state) {
    for (const QXChem::QXGraphMol& mol : sample.prepared) work(mol);
  }
  Finish(state, sample.prepared.size());
}

}  // namespace qxbench
