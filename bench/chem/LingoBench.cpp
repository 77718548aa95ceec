// Lingo texts, and one text's Lingos against those of the 4,000 bundled molecules; hash maps of the standard
// library beside ours in the same run.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <random>
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

// As the profile, but the Lingos are searched in ascending order, as those of very large profiles are. The
// processor guesses the turns of a search wrong, which is why other profiles look for a factor without
// collisions. A hash table whose lookups walk on to the next bucket takes up to twice as long as one without
// collisions, and Lingos can be chosen such that all of them collide.
struct BinarySearch {
  explicit BinarySearch(const std::string& text) {
    const Counts unordered = CountLingos(text);
    for (const auto& [lingo, count] : std::map(unordered.begin(), unordered.end())) {
      lingos.push_back(lingo);
      counts.push_back(count);
    }
  }
  unsigned CountBoth(const std::string& text) const {
    unsigned remaining[1024];
    std::copy(counts.begin(), counts.end(), remaining);
    unsigned both = 0;
    for (std::size_t i = 0; i + lingoLength <= text.size(); ++i) {
      const std::uint32_t lingo = LoadLingo(text.data() + i);
      const auto found = std::ranges::lower_bound(lingos, lingo);
      if (found == lingos.end() || *found != lingo) continue;
      unsigned& count = remaining[found - lingos.begin()];
      both += count > 0;
      count -= count > 0;
    }
    return both;
  }
  std::vector<std::uint32_t> lingos;
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
BENCHMARK(CompareLingos<BinarySearch>)->Unit(benchmark::kMicrosecond);
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

// A profile too large for a hash table without collisions against its own text; the argument is the length.
void CompareLongTexts(benchmark::State& state) {
  std::mt19937 random(1);
  std::string text;
  while (text.size() < static_cast<std::size_t>(state.range(0))) {
    text += static_cast<char>(' ' + random() % 95);
  }
  const Profile profile(text);
  for (auto _ : state) benchmark::DoNotOptimize(profile.CountBoth(text));
  Rate(state, "lingos/s", text.size());
}
BENCHMARK(CompareLongTexts)->Arg(1000)->Arg(480'000)->Unit(benchmark::kMicrosecond);

}  // namespace
