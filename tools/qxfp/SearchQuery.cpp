#include "SearchQuery.h"

#include "MoleculeFile.h"
#include "QXChem/QXReadMolecule.h"
#include "QXSystem/QXString.h"

namespace qxfp {

bool SearchQueries::Open(const std::string& text) {
  text_ = text;
  std::uint64_t index = 0;
  if (text.starts_with('@') && QXSystem::QXStringToNumber(text.substr(1), index)) {
    storedIndex_ = index;
    return true;
  }
  // No SMILES ends like the name of a molecule file, so a missing file is reported as one.
  return !HasMoleculeExtension(text) || OpenMolecules(molecules_, text);
}

std::string SearchQueries::GetName(std::uint64_t i) const {
  return molecules_.IsOpen() ? GetRecordName(molecules_, i) : text_;
}

bool SearchQueries::Read(QXChem::QXGraphMol& mol, std::uint64_t i, std::string& reason) const {
  const bool isRead = molecules_.IsOpen() ? molecules_.ReadMolecule(mol, i, reason)
                                          : QXChem::QXReadSmiles(mol, text_, reason);
  if (!isRead) return false;
  if (mol.NumAtoms() > 0) return true;
  reason = "it has no atoms";
  return false;
}

}  // namespace qxfp
