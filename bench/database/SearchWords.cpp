// Searches fingerprints that another program has made, in step with it: compare_rdkit.py.
//
// usage: qx_database_search FILE BITS LIMIT
// FILE holds fingerprints of BITS bits one after the other, as 64-bit words, bit 0 lowest. Each index read from
// standard input asks for one sorted search, see AnswerQueries.

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "../SearchLoop.h"
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

  Bench::AnswerQueries(fps.size(),
                       [&](std::size_t query) { return database.GetSortedScores(fps[query], limit); });
}
