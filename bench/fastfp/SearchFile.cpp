// Makes a file of path fingerprints and searches it, in step with another program: compare_peers.py.
//
// usage: qx_fastfp_search MOLECULES FPBIN BITS LIMIT
// Makes FPBIN from MOLECULES, opens it memory-mapped and writes a line with the number of its records. Each
// index then read from standard input asks for one sorted search by Tanimoto on one thread, see AnswerQueries.

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "../SearchLoop.h"
#include "QXFingrix/QXCreateFastFPDatabase.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFastFPDatabase.h"

int main(int argc, char** argv) {
  using namespace QXFingrix;
  if (argc != 5) {
    std::cerr << "usage: qx_fastfp_search MOLECULES FPBIN BITS LIMIT\n";
    return 2;
  }
  const auto numBits = static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10));
  const auto limit = static_cast<unsigned>(std::strtoul(argv[4], nullptr, 10));
  const QXFPTypeBase* const type =
      QXGetPathFPType(numBits, 0, 5, QXFPAtomType::DefaultPathAtom, QXFPBondType::DefaultPathBond);
  QXCreateFastFPDatabaseOptions making(type);
  making.SetRejectHandler([](std::uint64_t, const std::string&) {});
  if (!QXCreateFastFPDatabaseFile(argv[2], argv[1], making)) return 1;
  const QXFastFPDatabase database(argv[2]);
  if (!database.IsValid()) return 1;
  std::printf("%llu\n", static_cast<unsigned long long>(database.NumFingerPrints()));
  std::fflush(stdout);

  std::vector<QXFingerPrint> fps(database.NumFingerPrints());
  for (std::size_t i = 0; i < fps.size(); ++i) {
    if (!database.GetFingerPrint(fps[i], i)) return 1;
  }
  const QXFPDatabaseOptions options(limit, QXSimMeasure::Tanimoto);
  Bench::AnswerQueries(fps.size(),
                       [&](std::size_t query) { return database.GetSortedScores(fps[query], options); });
}
