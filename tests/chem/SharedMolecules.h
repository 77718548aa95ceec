#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"

namespace QXChem {

// Lines of a file of real molecules; empty when the file is not there. Lines end at line feeds only.
inline std::vector<std::string> SharedLines(const std::string& file) {
  std::ifstream stream(std::filesystem::path(QX_SHARED_DATA_DIR) / file, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

inline QXGraphMol FromSmiles(const std::string& smiles) {
  QXGraphMol mol;
  EXPECT_TRUE(QXParseSmiles(mol, smiles)) << smiles;
  return mol;
}

}  // namespace QXChem
