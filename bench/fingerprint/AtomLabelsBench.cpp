#include <benchmark/benchmark.h>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPTypeBase.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"

namespace QXFingrix {
namespace {

// 28 heavy atoms, as the bundled molecules have on average.
constexpr const char* smiles = "CC(=O)Nc1ccc(cc1)S(=O)(=O)N1CCN(CC1)C(=O)c1ccccc1Cl";

template <class Label>
void AtomLabels(benchmark::State& state) {
  const auto atype = static_cast<unsigned>(state.range(0)), btype = static_cast<unsigned>(state.range(1));
  QXChem::QXGraphMol mol;
  if (!QXChem::QXParseSmiles(mol, smiles)) return state.SkipWithError("unreadable molecule");
  QXPrepareForFingerprinting(mol, QXFPType::Path);
  std::vector<Label> atomLabels, bondLabels;
  for (auto _ : state) {
    QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, atype, btype);
    benchmark::DoNotOptimize(atomLabels.data());
    benchmark::DoNotOptimize(bondLabels.data());
  }
  state.SetItemsProcessed(state.iterations());
}

void Masks(benchmark::internal::Benchmark* bench) {
  bench->Args({QXFPAtomType::DefaultPathAtom, QXFPBondType::DefaultPathBond});
  bench->Args({QXFPAtomType::DefaultCircularAtom, QXFPBondType::DefaultCircularBond});
  bench->Args({QXFPAtomType::DefaultTreeAtom, QXFPBondType::DefaultTreeBond});
  bench->Args({QXFPAtomType::AtmNum | QXFPAtomType::EqHBAcc | QXFPAtomType::EqHBDon, QXFPBondType::Order});
}

BENCHMARK(AtomLabels<unsigned>)->Apply(Masks);
BENCHMARK(AtomLabels<std::string>)->Apply(Masks);

void Prepare(benchmark::State& state) {
  const bool prepared = state.range(0) != 0;
  QXChem::QXGraphMol mol;
  if (!QXChem::QXParseSmiles(mol, smiles)) return state.SkipWithError("unreadable molecule");
  QXPrepareForFingerprinting(mol, QXFPType::Path);
  if (!prepared) mol.SetPreparedMark(0);
  QXChem::QXGraphMol copy;
  for (auto _ : state) {
    copy = mol;
    benchmark::DoNotOptimize(QXPrepareForFingerprinting(copy, QXFPType::Path));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(Prepare)->ArgName("prepared")->Arg(0)->Arg(1);

}  // namespace
}  // namespace QXFingrix
