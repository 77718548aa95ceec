#include "QXChem/QXReadMolecule.h"

#include "QXChem/QXPerception.h"
#include "QXSystem/QXErrorHandler.h"
#include "chem/BlockGuard.h"
#include "chem/SmilesGuard.h"
#include "chem/rdkit/Bridge.h"

namespace QXChem {
namespace {

using Reader = bool (*)(QXMolBase&, std::string_view, std::string&);

bool Parse(const char* function, Reader reader, QXMolBase& mol, std::string_view text) {
  std::string reason;
  if (reader(mol, text, reason)) return true;
  QXSystem::QXThrow.Warning("%s : %s!", function, reason.c_str());
  return false;
}

// From text to graph; the text has been found safe to parse.
bool Read(QXMolBase& mol, TextFormat format, std::string_view text, std::string& reason) {
  if (!ReadWithRDKit(mol, format, std::string(text), reason)) return false;
  QXFindRingAtomsAndBonds(mol);
  return true;
}

bool Refuse(QXMolBase& mol) {
  mol.Invalidate();
  return false;
}

}  // namespace

bool QXReadSmiles(QXMolBase& mol, std::string_view text, std::string& reason) {
  const std::string_view smiles = SmilesToken(text);
  if (!IsSafeSmiles(smiles, reason)) return Refuse(mol);
  if (Read(mol, TextFormat::Smiles, smiles, reason)) return true;
  if (reason.empty()) reason = ExplainSyntaxError(smiles);
  return Refuse(mol);
}

bool QXReadMolBlock(QXMolBase& mol, std::string_view block, std::string& reason) {
  if (!IsSafeMolBlock(block, reason)) return Refuse(mol);
  return Read(mol, TextFormat::MolBlock, block, reason) || Refuse(mol);
}

bool QXReadMol2(QXMolBase& mol, std::string_view block, std::string& reason) {
  if (!IsSafeMol2(block, reason)) return Refuse(mol);
  return Read(mol, TextFormat::Mol2, block, reason) || Refuse(mol);
}

bool QXParseSmiles(QXMolBase& mol, std::string_view smiles) {
  return Parse("QXParseSmiles()", QXReadSmiles, mol, smiles);
}

bool QXParseMolBlock(QXMolBase& mol, std::string_view block) {
  return Parse("QXParseMolBlock()", QXReadMolBlock, mol, block);
}

bool QXParseMol2(QXMolBase& mol, std::string_view block) {
  return Parse("QXParseMol2()", QXReadMol2, mol, block);
}

std::string QXCreateSmiles(const QXMolBase& mol) {
  return WriteSmilesWithRDKit(mol);
}

}  // namespace QXChem
