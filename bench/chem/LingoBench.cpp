// Lingo texts, and one text's Lingos against those of the 4,000 bundled molecules; hash maps of the standard
// library beside ours in the same run.

#include <benchmark/benchmark.h>

#include <fstream>
#include <unordered_map>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXLingo.h"
#include "QXChem/QXReadMolecule.h"
#include "chem/LingoTable.h"

namespace {

using namespace QXChem;

const std::vector<QXGraphMol>& Molecules() {
  static const std::vector<QXGraphMol> mols = [] {
    std::vector<QXGraphMol> result;
    std::ifstream stream(QX_SOURCE_DIR "/data/molecules.smi");
    std::string reason;
    for (std::string line; std::getline(stream, line);) {
      if (!QXReadSmiles(result.emplace_back(), line, reason)) result.pop_back();
    }
    return result;
  }();
  return mols;
}

// Lingo texts of four characters and more.
const std::vector<std::string>& Texts() {
  static const std::vector<std::string> texts = [] {
    std::vector<std::string> result;
    std::string text;
    for (const QXGraphMol& mol : Molecules()) {
      if (QXLingoMap().CreateString(text, mol) && text.size() >= lingoLength) result.push_back(text);
    }
    return result;
  }();
  return texts;
}

void Rate(benchmark::State& state, const char* what, std::size_t perIteration) {
  state.counters[what] =
      benchmark::Counter(static_cast<double>(state.iterations() * perIteration), benchmark::Counter::kIsRate);
}

void CreateLingoText(benchmark::State& state) {
  const auto& mols = Molecules();
  std::size_t next = 0;
  std::string text;
  for (auto _ : state) {
    benchmark::DoNotOptimize(QXLingoMap().CreateString(text, mols[next]));
    next = (next + 1) % mols.size();
  }
  Rate(state, "texts/s", 1);
}
BENCHMARK(CreateLingoText)->Unit(benchmark::kMicrosecond)->ThreadRange(1, 2)->UseRealTime();

// One text against another with the library's profile.
struct Profile {
  explicit Profile(const std::string& text) : sim(text, 1) {}
  unsigned CountBoth(const std::string& text) const {
    unsigned onlyProfile = 0, onlyText = 0, both = 0;
    sim.CountTerms(text, &onlyProfile, &onlyText, &both);
    return both;
  }
  QXLingoSim sim;
};

using Counts = std::unordered_map<std::uint32_t, unsigned>;

Counts CountLingos(const std::string& text) {
  Counts counts;
  for (std::size_t i = 0; i + lingoLength <= text.size(); ++i) ++counts[LoadLingo(text.data() + i)];
  return counts;
}

struct HashMaps {
  explicit HashMaps(const std::string& text) : counts(CountLingos(text)) {}
  unsigned CountBoth(const std::string& text) const {
    unsigned both = 0;
    for (const auto& [lingo, count] : CountLingos(text)) {
      if (const auto found = counts.find(lingo); found != counts.end()) {
        both += std::min(count, found->second);
      }
    }
    return both;
  }
  Counts counts;
};

// As the profile, but a lookup may walk on to the next bucket. Whether it does and whether a Lingo is there at
// all depends on the text: the processor guesses it wrong often enough to take half as long again or more,
// which is why small profiles look for a factor without collisions.
struct WalkingTable {
  explicit WalkingTable(const std::string& text) {
    std::vector<std::uint32_t> lingos;
    for (const auto& [lingo, count] : CountLingos(text)) {
      lingos.push_back(lingo);
      counts.push_back(count);
    }
    table = LingoTable(lingos);
    counts.resize(lingos.size() + LingoTable::numSpareSlots);
  }
  unsigned CountBoth(const std::string& text) const {
    unsigned remaining[1024];
    std::copy(counts.begin(), counts.end(), remaining);
    const LingoTable::View view = table.GetView();
    unsigned both = 0;
    for (std::size_t i = 0; i + lingoLength <= text.size(); ++i) {
      const std::uint32_t lingo = LoadLingo(text.data() + i);
      const auto [found, slot] = view.Find<false>(lingo);
      const unsigned hit = static_cast<unsigned>(found == lingo) & static_cast<unsigned>(remaining[slot] > 0);
      remaining[slot] -= hit;
      both += hit;
    }
    return both;
  }
  LingoTable table;
  std::vector<unsigned> counts;
};

// One iteration is one profile against all texts.
template <class Counter>
void CompareLingos(benchmark::State& state) {
  const auto& texts = Texts();
  std::size_t query = 0;
  for (auto _ : state) {
    const Counter counter(texts[query]);
    std::uint64_t sum = 0;
    for (const std::string& text : texts) sum += counter.CountBoth(text);
    benchmark::DoNotOptimize(sum);
    query = (query + 37) % texts.size();
  }
  Rate(state, "comparisons/s", texts.size());
}
BENCHMARK(CompareLingos<Profile>)->Unit(benchmark::kMicrosecond);
BENCHMARK(CompareLingos<WalkingTable>)->Unit(benchmark::kMicrosecond);
BENCHMARK(CompareLingos<HashMaps>)->Unit(benchmark::kMicrosecond);

template <class Counter>
void BuildProfile(benchmark::State& state) {
  const auto& texts = Texts();
  std::size_t next = 0;
  for (auto _ : state) {
    const Counter counter(texts[next]);
    benchmark::DoNotOptimize(&counter);
    next = (next + 1) % texts.size();
  }
  Rate(state, "profiles/s", 1);
}
BENCHMARK(BuildProfile<Profile>);
BENCHMARK(BuildProfile<HashMaps>);

}  // namespace
