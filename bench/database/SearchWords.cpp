// Searches fingerprints that another program has made, in step with it: compare_rdkit.py.
//
// usage: qx_database_search FILE BITS LIMIT
// FILE holds fingerprints of BITS bits one after the other, as 64-bit words, bit 0 lowest. For each index
// read from standard input, the sorted search for that fingerprint is run once, and one line written: its
// nanoseconds, then index and score of every hit.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPDatabase.h"
#include "QXFingrix/QXFPType.h"

int main(int argc, char** argv) {
  using namespace QXFingrix;
  if (argc != 4) {
    std::cerr << "usage: qx_database_search FILE BITS LIMIT\n";
    return 2;
  }
  std::ifstream file(argv[1], std::ios::binary);
  const auto numBits = static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10));
  const auto limit = static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10));
  const QXFPTypeBase* const type =
      QXGetPathFPType(numBits, 0, 5, QXFPAtomType::DefaultPathAtom, QXFPBondType::DefaultPathBond);

  QXFPDatabase database(type);
  std::vector<QXFingerPrint> fps;
  QXFingerPrint fp;
  fp.SetSize(numBits);
  fp.SetFPTypeBase(type);
  const auto words = fp.GetWords();
  while (file.read(reinterpret_cast<char*>(words.data()), static_cast<std::streamsize>(words.size_bytes()))) {
    database.AddFP(fp);
    fps.push_back(fp);
  }

  for (std::size_t query = 0; std::cin >> query && query < fps.size();) {
    const auto start = std::chrono::steady_clock::now();
    const auto hits = database.GetSortedScores(fps[query], limit);
    const std::chrono::nanoseconds time = std::chrono::steady_clock::now() - start;
    std::printf("%lld", static_cast<long long>(time.count()));
    for (const QXSimScore& hit : hits) std::printf(" %u %.9g", hit.GetIdx(), hit.GetScore());
    std::printf("\n");
    std::fflush(stdout);
  }
}
