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

inline constexpr const char* fullerene =
    "C12=C3C4=C5C6=C1C7=C8C9=C1C%10=C%11C(=C29)C3=C2C3=C4C4=C5C5=C9C6=C7C6=C7C8=C1C1=C8C%10=C%10C%11=C2C2="
    "C3C3=C4C4=C5C5=C%11C%12=C(C6=C95)C7=C1C1=C%12C5=C%11C4=C3C3=C5C(=C81)C%10=C23";

/// A peptide of 941 heavy atoms.
inline std::string Peptide() {
  std::string smiles;
  for (int i = 0; i < 20; ++i) {
    smiles += "NC(C)C(=O)NCC(=O)NC(CC(C)C)C(=O)NC(Cc1ccccc1)C(=O)NC(CC(=O)O)C(=O)NC(CO)C(=O)NC(C)C(=O)";
  }
  return smiles + "O";
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
