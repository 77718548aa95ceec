#include "chem/rdkit/Sanitize.h"  // first, for RDKit's configuration

#include <GraphMol/FileParsers/FileParsers.h>
#include <GraphMol/SmilesParse/SmilesParse.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <string_view>

#include "chem/MolAccess.h"
#include "chem/rdkit/Bridge.h"

namespace QXChem {
namespace {

using MolPtr = std::unique_ptr<RDKit::RWMol>;

MolPtr ParseSmiles(const std::string& text) {
  RDKit::SmilesParserParams params;
  params.sanitize = false;
  params.removeHs = false;
  params.allowCXSMILES = false;
  params.parseName = false;
  return MolPtr(RDKit::SmilesToMol(text, params));
}

MolPtr ParseText(TextFormat format, const std::string& text) {
  switch (format) {
    case TextFormat::Smiles:
      return ParseSmiles(text);
    case TextFormat::MolBlock:
      return MolPtr(RDKit::MolBlockToMol(text, false, false));
    case TextFormat::Mol2:
      return MolPtr(RDKit::Mol2BlockToMol(text, false, false));
  }
  return nullptr;
}

// What RDKit says in terms of its own source.
struct Translation {
  std::string_view start;
  const char* reason;
};
constexpr const char* noSuchAtom = "an atom number that is not there";
constexpr Translation translations[] = {
    {"idx", noSuchAtom},
    {"atom bookmark not found", noSuchAtom},
    {"bond_pin->getEndAtomIdx()", noSuchAtom},
    {"bond_pin->getBeginAtomIdx()", noSuchAtom},
    {"getExplicitValence() called", "an atom with too many bonds"},
};

}  // namespace

std::string ToReason(const char* message) {
  std::string line = message ? message : "";
  for (const Translation& translation : translations) {
    if (line.starts_with(translation.start)) return translation.reason;
  }
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  std::replace(line.begin(), line.end(), '\n', ' ');
  return line.empty() ? "refused without a reason" : line;
}

bool ReadWithRDKit(QXMolBase& mol, TextFormat format, const std::string& text, std::string& reason) {
  reason.clear();
  try {
    const MolPtr source = ParseText(format, text);
    if (!source) {
      if (format != TextFormat::Smiles) reason = "not a molecule";
      return false;
    }
    SanitizeInto(mol, *source);
    std::string title;
    if (source->getPropIfPresent(RDKit::common_properties::_Name, title)) mol.SetTitle(std::move(title));
    return true;
  } catch (const std::exception& error) {
    reason = ToReason(error.what());
  } catch (...) {
    reason = "unknown failure of the reader";
  }
  return false;
}

}  // namespace QXChem
