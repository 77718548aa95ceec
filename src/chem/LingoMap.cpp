// The Lingo text of a molecule is its canonical SMILES with what hardly bears on likeness taken out: labels
// before it is written, since they decide the order of the atoms, and the numbers of ring closures after.

#include <string>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXLingo.h"
#include "QXChem/QXPerception.h"
#include "chem/rdkit/Bridge.h"

namespace QXChem {
namespace {

static_assert(QXLingoMap::maxAtoms == maxAtomsToWrite);

void RemoveLabels(QXMolBase& mol) {
  for (unsigned i = 0; i < mol.NumAtoms(); ++i) {
    QXAtomBase& atom = *mol.GetAtom(i);
    if (atom.GetIsotope() != 0) atom.SetIsotope(0);
    if (atom.GetMapIdx() != 0) atom.SetMapIdx(0);
  }
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Length of the ring closure at a place outside brackets: "1", "%12" or "%(123)"; 0 when there is none.
std::size_t RingClosureLength(const std::string& smiles, std::size_t place) {
  if (IsDigit(smiles[place])) return 1;
  if (smiles[place] != '%') return 0;
  return smiles[place + 1] == '(' ? smiles.find(')', place) - place + 1 : 3;
}

// The letter for a symbol of two letters; only chlorine and bromine have one. No other pair of SMILES tokens
// reads Cl or Br, so that brackets need no care here: chloride is [L-], while copper stays [Cu].
char HalogenLetter(const std::string& smiles, std::size_t place) {
  if (smiles.compare(place, 2, "Cl") == 0) return 'L';
  if (smiles.compare(place, 2, "Br") == 0) return 'R';
  return '\0';
}

// In place and in one pass: no token gets longer.
void SmilesToLingoText(std::string& smiles) {
  std::size_t length = 0;
  bool inBracket = false;
  for (std::size_t i = 0; i < smiles.size();) {
    const std::size_t ringClosure = inBracket ? 0 : RingClosureLength(smiles, i);
    const char halogen = HalogenLetter(smiles, i);
    const char c = smiles[i];
    if (ringClosure > 0) {
      smiles[length++] = '0';
      i += ringClosure;
    } else if (halogen) {
      smiles[length++] = halogen;
      i += 2;
    } else {
      if (c == '[' || c == ']') inBracket = c == '[';
      smiles[length++] = c;
      ++i;
    }
  }
  smiles.resize(length);
}

}  // namespace

bool QXLingoMap::CreateString(std::string& text, const QXMolBase& mol) const {
  text.clear();
  if (!mol.IsValid()) return false;
  QXGraphMol plain = mol;
  RemoveLabels(plain);
  QXSuppressHydrogens(plain);
  if (plain.NumAtoms() == 0) return true;
  text = WriteSmilesWithRDKit(plain);
  SmilesToLingoText(text);
  return !text.empty();
}

}  // namespace QXChem
