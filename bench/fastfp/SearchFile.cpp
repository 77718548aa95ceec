// Searches a file of fingerprints in step with other programs: compare_peers.py.
//
// usage: qx_fastfp_search MOLECULES FPBIN TYPE LIMIT scan|index
// Makes FPBIN from MOLECULES unless it is there, opens it memory-mapped, with an index made in memory or without,
// and writes a line with the number of its records. Each index of a record then read from standard input asks for
// one sorted search by Tanimoto on one thread, see AnswerQueries.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <vector>

#include "../SearchLoop.h"
#include "QXFingrix/QXCreateFastFPDatabase.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFastFPDatabase.h"

int main(int argc, char** argv) {
  using namespace QXFingrix;
  const std::string_view way = argc == 6 ? argv[5] : "";
  if (way != "scan" && way != "index") {
    std::cerr << "usage: qx_fastfp_search MOLECULES FPBIN TYPE LIMIT scan|index\n";
    return 2;
  }
  const auto limit = static_cast<unsigned>(std::strtoul(argv[4], nullptr, 10));
  const QXFPTypeBase* const type = QXGetFPType(argv[3]);
  if (type == nullptr) return 1;
  if (!std::filesystem::exists(argv[2])) {
    QXCreateFastFPDatabaseOptions making(type);
    making.SetRejectHandler([](std::uint64_t, const std::string&) {});
    if (!QXCreateFastFPDatabaseFile(argv[2], argv[1], making)) return 1;
  }
  const QXFastFPDatabase database(
      argv[2], QXFastFPDatabaseMemoryType::MemoryMapped,
      way == "index" ? QXFastFPDatabaseIndex::Build : QXFastFPDatabaseIndex::None);
  if (!database.IsValid() || database.GetFPTypeBase() != type) return 1;
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
