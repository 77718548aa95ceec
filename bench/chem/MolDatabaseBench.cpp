#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"

// Opening a molecule file (map and index) and getting at its records in random order. The files are made from the
// molecules of the source tree, repeated.
namespace {

using QXChem::QXMolDatabase;

std::string Repeat(const std::string& text, std::int64_t times) {
  std::string all;
  for (std::int64_t i = 0; i < times; ++i) all += text;
  return all;
}

// A file in a folder that goes with it.
class BenchFile {
 public:
  BenchFile(const std::string& name, const std::string& text) {
    std::string folder = (std::filesystem::temp_directory_path() / "qxbench-XXXXXX").string();
    if (!mkdtemp(folder.data())) std::abort();
    folder_ = folder;
    std::ofstream(Path(name), std::ios::binary) << text;
    path_ = Path(name);
  }
  ~BenchFile() { std::filesystem::remove_all(folder_); }
  const std::string& GetPath() const { return path_; }

 private:
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  std::filesystem::path folder_;
  std::string path_;
};

std::string SmilesText(std::int64_t records) {
  std::ostringstream text;
  text << std::ifstream(QX_SOURCE_DIR "/data/molecules.smi", std::ios::binary).rdbuf();
  return Repeat(text.str(), records / 4000);
}

std::string SdText(std::int64_t records) {
  const std::string atom = "    0.0000    0.0000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0\n";
  return Repeat("x\n\n\n 40  0  0  0  0  0  0  0  0  0999 V2000\n" + Repeat(atom, 40) + "M  END\n$$$$\n",
                records);
}

void Open(benchmark::State& state, const std::string& name, std::string (*makeText)(std::int64_t)) {
  const std::string text = makeText(state.range(0));
  const BenchFile file(name, text);
  QXMolDatabase db;
  for (auto _ : state) {
    if (!db.Open(file.GetPath())) state.SkipWithError("cannot open");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(db.GetMaxMolIdx()));
}
BENCHMARK_CAPTURE(Open, smiles, "a.smi", SmilesText)->Arg(400000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Open, sd, "a.sdf", SdText)->Arg(10000)->Unit(benchmark::kMillisecond);

enum class Part { Title, Molecule };

void Get(benchmark::State& state, Part part) {
  const BenchFile file("a.smi", SmilesText(state.range(0)));
  QXMolDatabase db;
  if (!db.Open(file.GetPath())) state.SkipWithError("cannot open");
  QXChem::QXGraphMol mol;
  std::string reason;
  std::uint64_t idx = 0;
  for (auto _ : state) {
    idx = (idx + 7919) % db.GetMaxMolIdx();
    if (part == Part::Title) {
      benchmark::DoNotOptimize(db.GetTitle(idx));
    } else {
      benchmark::DoNotOptimize(db.ReadMolecule(mol, idx, reason));
    }
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(Get, title, Part::Title)->Arg(4000)->Arg(400000);
BENCHMARK_CAPTURE(Get, molecule, Part::Molecule)->Arg(4000)->Arg(400000);

}  // namespace
