#pragma once

#include <bit>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "QXChem/QXLingo.h"
#include "QXFingrix/QXFPDatabase.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXLingoSimFunc.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXFingrix/QXSimilarity.h"
#include "generators/Molecules.h"

// Fingerprints of the bundled molecules, and what a database must answer: the measures, entry by entry.

namespace QXFingrix::Testing {

using Score = std::function<float(const QXFingerPrint& query, const QXFingerPrint& entry)>;

inline std::vector<QXSimScore> Collect(const QXSystem::QXIter<QXSimScore>& iter) {
  std::vector<QXSimScore> hits;
  for (const QXSimScore& hit : iter) hits.push_back(hit);
  return hits;
}

inline QXFingerPrint MakeEmpty(const QXFPTypeBase* type) {
  QXFingerPrint fp;
  fp.SetSize(QXGetFingerPrintSize(type));
  fp.SetFPTypeBase(type);
  return fp;
}

/// Of the first molecules; some twice, so that scores tie, and two without a bit.
inline std::vector<QXFingerPrint> MoleculeFPs(const QXFPTypeBase* type, std::size_t numMolecules) {
  std::vector<QXFingerPrint> fps;
  for (const auto& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", numMolecules)) {
    QXFingerPrint fp;
    if (!QXMakeFP(fp, test::ReadSmiles(line.smiles), type)) continue;
    fps.push_back(fp);
    if (fps.size() % 9 == 0) fps.push_back(fps[fps.size() / 2]);
    if (fps.size() == 20 || fps.size() == 140) fps.push_back(MakeEmpty(type));
  }
  return fps;
}

/// The measure of a number as a function over bits.
inline Score BitScore(unsigned measure, float alpha, float beta) {
  const Score functions[] = {nullptr, QXTanimoto, QXCosine, QXDice, QXEuclid, nullptr, QXManhattan};
  if (measure != QXSimMeasure::Tversky) return functions[measure];
  return [=](const QXFingerPrint& a, const QXFingerPrint& b) { return QXTversky(a, b, alpha, beta); };
}

/// The same over Lingo fingerprints, by the measure objects for profiles.
inline Score LingoScore(unsigned measure, float alpha, float beta) {
  const std::shared_ptr<QXLingoSimFunc> functions[] = {nullptr,
                                                       std::make_shared<QXTanimotoLingoSim>(),
                                                       std::make_shared<QXCosineLingoSim>(),
                                                       std::make_shared<QXDiceLingoSim>(),
                                                       std::make_shared<QXEuclidLingoSim>(),
                                                       std::make_shared<QXTverskyLingoSim>(alpha, beta),
                                                       std::make_shared<QXManhattanLingoSim>()};
  return [func = functions[measure]](const QXFingerPrint& a, const QXFingerPrint& b) {
    return (*func)(QXChem::QXLingoSim(QXGetFPText(a), 1), b);
  };
}

inline Score TokenScore(unsigned, float, float) {
  return QXTanimoto;
}

/// A kind of fingerprint with what its database must answer.
struct Kind {
  unsigned code;
  Score (*scoreOf)(unsigned measure, float alpha, float beta);
  unsigned numMeasures;  // 1 to that are known
};

inline constexpr Kind kinds[] = {
    {QXFPType::Path, BitScore, 6}, {QXFPType::Lingo, LingoScore, 6}, {QXFPType::UHPath, TokenScore, 1}};

/// The coefficients of Tversky chosen by number.
inline constexpr auto numberedAlpha = std::bit_cast<float>(0x3F733333U);
inline constexpr auto numberedBeta = std::bit_cast<float>(0x3D4CCCD0U);

/// Scores of the entries from begin on, one by one.
inline std::vector<QXSimScore> ScoreEach(const Score& score, const QXFingerPrint& query,
                                         const std::vector<QXFingerPrint>& entries, unsigned begin,
                                         unsigned end) {
  std::vector<QXSimScore> scores;
  for (unsigned i = begin; i < end && i < entries.size(); ++i)
    scores.emplace_back(i, double{score(query, entries[i])});
  return scores;
}

inline void AddAll(QXFPDatabase& database, const std::vector<QXFingerPrint>& fps) {
  for (const QXFingerPrint& fp : fps) database.AddFP(fp);
}

}  // namespace QXFingrix::Testing
