#pragma once

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXMakeFP.h"
#include "generators/Molecules.h"

namespace QXFingrix::Bench {

inline std::vector<QXChem::QXGraphMol> BundledMolecules(std::size_t limit = SIZE_MAX) {
  std::vector<QXChem::QXGraphMol> mols;
  for (const auto& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", limit)) {
    mols.push_back(test::ReadSmiles(line.smiles));
  }
  return mols;
}

/// Path fingerprints of 2,048 bits. There are 4,000 molecules: each is taken with paths of up to 3, 4, 5, 6
/// and 7 bonds, and those fingerprints again and again with one bit in a hundred flipped, until there are
/// enough; none is the same as another but for molecules that are alike.
inline std::vector<QXFingerPrint> PathFPs(std::size_t numFPs) {
  constexpr unsigned numBits = 2048;
  const auto typeOf = [](unsigned maxBonds) {
    return QXGetPathFPType(numBits, 0, maxBonds, QXFPAtomType::DefaultPathAtom,
                           QXFPBondType::DefaultPathBond);
  };
  std::vector<QXFingerPrint> fps;
  fps.reserve(numFPs);
  for (const QXChem::QXGraphMol& mol : BundledMolecules()) {
    for (const unsigned maxBonds : {3U, 4U, 5U, 6U, 7U}) {
      QXFingerPrint fp;
      if (fps.size() == numFPs || !QXMakeFP(fp, mol, typeOf(maxBonds))) continue;
      fp.SetFPTypeBase(typeOf(5));
      fps.push_back(std::move(fp));
    }
  }
  std::mt19937_64 random(1);
  for (const std::size_t numReal = fps.size(); fps.size() < numFPs;) {
    QXFingerPrint fp = fps[fps.size() % numReal];
    for (unsigned i = 0; i < numBits / 100; ++i) fp.ToggleBit(static_cast<unsigned>(random() % numBits));
    fps.push_back(std::move(fp));
  }
  return fps;
}

/// Of one kind with its default parameters.
inline std::vector<QXFingerPrint> DefaultFPs(unsigned code, std::size_t numMolecules) {
  std::vector<QXFingerPrint> fps;
  for (const QXChem::QXGraphMol& mol : BundledMolecules(numMolecules)) {
    QXFingerPrint fp;
    if (QXMakeFP(fp, mol, code, false)) fps.push_back(std::move(fp));
  }
  return fps;
}

}  // namespace QXFingrix::Bench
