// Making a file from molecules: molecules per second on one and two threads. Reading the molecules
// is most of it.

#include <benchmark/benchmark.h>

#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXCreateFastFPDatabase.h"
#include "fastfp/FpbinFile.h"

namespace {

using namespace QXFingrix;

void Create(benchmark::State& state) {
  const std::string mols = QX_SOURCE_DIR "/data/molecules.smi";
  const Testing::TempDir dir;
  QXChem::QXMolDatabase molecules;
  molecules.Open(mols);
  QXCreateFastFPDatabaseOptions options(Testing::PathType(4096));
  options.SetNumProcessors(static_cast<unsigned>(state.range(0)));
  for (auto _ : state) {
    if (!QXCreateFastFPDatabaseFile(dir.File("x.fpbin"), mols, options)) state.SkipWithError("not made");
  }
  state.counters["molecules/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(molecules.GetMaxMolIdx()),
      benchmark::Counter::kIsRate);
}
BENCHMARK(Create)->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
