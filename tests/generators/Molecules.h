#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"

namespace QXFingrix::test {

struct SmilesLine {
  std::string smiles;
  std::string name;
};

/// The lines of a file of "SMILES NAME", at most `limit` of them; empty when there is no such file.
inline std::vector<SmilesLine> ReadSmilesFile(const std::string& path, std::size_t limit = SIZE_MAX) {
  std::vector<SmilesLine> lines;
  std::ifstream in(path);
  for (std::string line; lines.size() < limit && std::getline(in, line);) {
    const std::size_t blank = line.find(' ');
    lines.push_back({line.substr(0, blank), blank == std::string::npos ? "" : line.substr(blank + 1)});
  }
  return lines;
}

/// Invalid when the text cannot be read; silent.
inline QXChem::QXGraphMol ReadSmiles(const std::string& smiles) {
  QXChem::QXGraphMol mol;
  std::string reason;
  QXChem::QXReadSmiles(mol, smiles, reason);
  return mol;
}

}  // namespace QXFingrix::test
