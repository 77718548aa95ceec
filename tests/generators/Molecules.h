#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"

namespace QXFingrix::test {

inline constexpr const char* fullerene =
    "C12=C3C4=C5C6=C1C7=C8C9=C1C%10=C%11C(=C29)C3=C2C3=C4C4=C5C5=C9C6=C7C6=C7C8=C1C1=C8C%10=C%10C%11=C2C2="
    "C3C3="
    "C4C4=C5C5=C%11C%12=C(C6=C95)C7=C1C1=C%12C5=C%11C4=C3C3=C5C(=C81)C%10=C23";

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
