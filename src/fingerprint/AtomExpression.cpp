// Readable labels: the SMARTS expression of an atom under a mask, and a symbol for a bond.

#include <algorithm>
#include <array>
#include <string_view>

#include "QXChem/QXMolBase.h"
#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "fingerprint/LabelPerception.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBase;
using QXChem::QXBondBase;

/// The two halves of an expression, e.g. "C" and ";+0;D2".
struct Expression {
  std::string element;
  std::string primitives;
};

// Atomic numbers whose atoms have a lower-case symbol when aromatic.
constexpr unsigned lowerCaseElements[] = {5, 6, 7, 8, 14, 15, 16, 33, 34, 52};

// What SMARTS reads without brackets.
constexpr std::string_view bareSymbols[] = {"*",  "a",  "A", "B", "C", "N", "O", "P", "S", "F",
                                            "Cl", "Br", "I", "b", "c", "n", "o", "p", "s"};

bool IsHalogen(const QXAtomBase& atom) {
  const unsigned number = atom.GetAtomicNum();
  return number == 9 || number == 17 || number == 35 || number == 53;
}

// The element, told apart from the same element in an aromatic ring where the mask asks for that.
std::string ElementText(const QXAtomBase& atom, unsigned atype) {
  const unsigned number = atom.GetAtomicNum();
  const std::string numberText = "#" + std::to_string(number);
  if (!(atype & QXFPAtomType::Arom)) return numberText;
  std::string symbol = QXChem::QXGetAtomicSymbol(number);
  if (atom.IsAromatic()) {
    if (std::ranges::find(lowerCaseElements, number) == std::end(lowerCaseElements)) return numberText + ";a";
    symbol[0] = static_cast<char>(symbol[0] - 'A' + 'a');
    return symbol;
  }
  // "H" counts hydrogens, "*" is any element, and the newest symbols are unknown or read as something else
  // ("Nh" as N with a hydrogen).
  const bool symbolIsRead = number > 1 && number < 113;
  return symbolIsRead ? symbol : numberText;
}

// Chooses the element half; the hydrogen-bond classes bring a primitive with them.
void ChooseElement(Expression& expression, const QXAtomBase& atom, unsigned atype) {
  using namespace QXFPAtomType;
  if (!(atype & AtmNum)) {
    expression.element = !(atype & Arom) ? "*" : atom.IsAromatic() ? "a" : "A";
    return;
  }
  if ((atype & EqHalo) && IsHalogen(atom)) {
    expression.element = "F,Cl,Br,I";
    return;
  }
  if ((atype & EqArom) && atom.IsAromatic()) {
    expression.element = "c,n,s";
    return;
  }
  const bool acceptor = (atype & EqHBAcc) && !atom.IsAromatic() && IsHydrogenBondAcceptor(&atom);
  const bool donor = (atype & EqHBDon) && !atom.IsAromatic() && IsHydrogenBondDonor(&atom);
  if (!acceptor && !donor) {
    expression.element = ElementText(atom, atype);
    return;
  }
  expression.element = "#7,#8,#16";
  expression.primitives = acceptor && donor ? ";!h0,!$([o,s,nX3,#7v5,#16v4,*+1])"
                          : acceptor        ? ";!$([o,s,nX3,#7v5,#16v4,*+1])"
                                            : ";!h0";
}

void AddPrimitives(std::string& out, const QXAtomBase& atom, unsigned atype) {
  using namespace QXFPAtomType;
  if (atype & FCharge) {
    const int charge = atom.GetFormalCharge();
    out.append(charge < 0 ? ";" : ";+").append(std::to_string(charge));
  }
  if (atype & InRing) out += atom.IsInRing() ? ";R" : ";R0";
  if (atype & HvyDeg) out.append(";D").append(std::to_string(atom.GetHvyDegree()));
  if ((atype & Hyb) && atom.GetHyb() >= 1 && atom.GetHyb() <= 5) {
    out.append(";^").append(std::to_string(atom.GetHyb()));
  }
  if ((atype & HCount) && atom.GetTotalHCount() <= 4) {
    out.append(";h").append(std::to_string(atom.GetTotalHCount()));
  }
}

// By bond order. Order 5 shares the integer label of an aromatic bond, and so its symbol; the orders in
// braces have no symbol in SMARTS.
constexpr std::array<std::string_view, 10> orderSymbols = {"{0}", "-",   "=",   "#",   "$",
                                                           ":",   "{6}", "{7}", "{8}", "{9}"};
constexpr std::string_view aromaticSymbol = orderSymbols[5];

std::string BondText(const QXBondBase& bond, unsigned btype) {
  using namespace QXFPBondType;
  std::string text = "~";
  if (btype & Order) text = bond.IsAromatic() ? aromaticSymbol : orderSymbols[bond.GetOrder()];
  if (btype & InRing) text += bond.IsInRing() ? ";@" : ";!@";
  if ((btype & Chiral) && bond.IsChiral()) text += "/";
  return text;
}

}  // namespace

void AddSmilesAtomSymbol(std::string& out, const QXAtomBase* atom, unsigned atype) {
  if (!atom) return;
  Expression expression;
  ChooseElement(expression, *atom, atype);
  AddPrimitives(expression.primitives, *atom, atype);
  const bool bare = expression.primitives.empty() &&
                    std::ranges::find(bareSymbols, expression.element) != std::end(bareSymbols);
  if (!bare) out += '[';
  out.append(expression.element).append(expression.primitives);
  if (!bare) out += ']';
}

void QXGetFingerprintAtomTypes(std::vector<std::string>& atomLabels, std::vector<std::string>& bondLabels,
                               QXChem::QXMolBase& mol, unsigned atype, unsigned btype) {
  PerceiveForLabels(mol, atype, btype);
  atomLabels.assign(mol.GetMaxAtomIdx(), {});
  for (const QXAtomBase& atom : mol.Atoms()) AddSmilesAtomSymbol(atomLabels[atom.GetIdx()], &atom, atype);
  bondLabels.assign(mol.GetMaxBondIdx(), {});
  for (const QXBondBase& bond : mol.Bonds()) bondLabels[bond.GetIdx()] = BondText(bond, btype);
}

}  // namespace QXFingrix
