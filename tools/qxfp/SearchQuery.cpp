#include "SearchQuery.h"

#include "MoleculeFile.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXSystem/QXErrorHandler.h"
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
  if (HasMoleculeExtension(text)) return OpenFile(text);
  std::string reason;
  if (ReadSmiles(smiles_, text, reason)) return true;
  QXSystem::QXThrow.Error("query '%s': %s", text.c_str(), reason.c_str());
  return false;
}

bool SearchQueries::OpenFile(const std::string& path) {
  if (!OpenMolecules(molecules_, path)) return false;
  if (molecules_.GetMaxMolIdx() > 0) return true;
  QXSystem::QXThrow.Error("'%s' holds no molecules", path.c_str());
  return false;
}

std::string SearchQueries::GetName(std::uint64_t i) const {
  return molecules_.IsOpen() ? GetRecordName(molecules_, i) : text_;
}

bool SearchQueries::Read(QXChem::QXGraphMol& mol, std::uint64_t i, std::string& reason) const {
  if (molecules_.IsOpen()) return ReadRecord(mol, molecules_, i, reason);
  mol = smiles_;
  return true;
}

bool MakeQuery(QXFingrix::QXFingerPrint& fp, const QXChem::QXMolBase& mol,
               const QXFingrix::QXFPTypeBase* type, std::string& reason) {
  if (QXFingrix::QXMakeFP(fp, mol, type)) return true;
  reason = "its fingerprint cannot be made";
  return false;
}

}  // namespace qxfp
