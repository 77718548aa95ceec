// Scores every pair of fingerprints by every measure, for scores_test.py.
//
// Usage: qx_score_table NUMBITS [ALPHA BETA]... < HEX > SCORES
//
// One fingerprint a line. Writes the scores as raw floats: a square matrix, row after row, for each of the
// five measures without coefficients and then for Tversky with each pair of coefficients.

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXSimFunc.h"

int main(int argc, char** argv) {
  using namespace QXFingrix;
  const unsigned numBits = argc > 1 ? static_cast<unsigned>(std::atoi(argv[1])) : 0;
  std::vector<QXFingerPrint> fps;
  for (std::string line; std::getline(std::cin, line);) {
    QXFingerPrint& fp = fps.emplace_back();
    fp.SetFPTypeBase(QXGetPathFPType(numBits, 0, 5, 0, 0));
    if (!fp.SetSize(numBits) || !fp.FromHexString(line)) return 1;
  }
  std::vector<std::unique_ptr<const QXSimFuncBase>> measures;
  measures.push_back(std::make_unique<QXTanimotoSim>());
  measures.push_back(std::make_unique<QXCosineSim>());
  measures.push_back(std::make_unique<QXDiceSim>());
  measures.push_back(std::make_unique<QXEuclidSim>());
  measures.push_back(std::make_unique<QXManhattanSim>());
  for (int i = 2; i + 1 < argc; i += 2) {
    measures.push_back(
        std::make_unique<QXTverskySim>(std::strtof(argv[i], nullptr), std::strtof(argv[i + 1], nullptr)));
  }
  std::vector<float> row(fps.size());
  for (const auto& measure : measures) {
    for (const QXFingerPrint& a : fps) {
      for (std::size_t j = 0; j < fps.size(); ++j) row[j] = (*measure)(a, fps[j]);
      if (std::fwrite(row.data(), sizeof(float), row.size(), stdout) != row.size()) return 1;
    }
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}
