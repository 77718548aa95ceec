// Integer labels of atoms and bonds.
//
// A label is a product with one factor for each property that the mask selects. The masks are the same for all
// atoms, so the work is arranged by property: one pass over the flat atom array for each selected property, its
// factors read from a small table, no decision about masks inside a loop. Products wrap at 32 bits.

#include <algorithm>
#include <span>

#include "QXChem/QXMolBase.h"
#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "fingerprint/LabelPerception.h"
#include "fingerprint/LabelPrimes.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBase;
using QXChem::QXBondBase;

constexpr unsigned hydrogenBondFlags = QXFPAtomType::EqHBAcc | QXFPAtomType::EqHBDon;

template <std::size_t N>
constexpr unsigned Capped(const std::array<unsigned, N>& factors, unsigned number) {
  return factors[std::min<std::size_t>(number, N - 1)];
}

unsigned ChargeFactor(int formalCharge) {
  using labelPrimes::maxCharge;
  return labelPrimes::charge[std::clamp(formalCharge, -maxCharge, maxCharge) + maxCharge];
}

// The factor for the element of an atom under masks that make atoms of several elements equal.
unsigned ClassFactor(const QXAtomBase& atom, unsigned atype) {
  if ((atype & QXFPAtomType::EqArom) && atom.IsAromatic()) return labelPrimes::carbon;
  if ((atype & hydrogenBondFlags) && atom.GetAtomicNum() != 6) {
    const bool acceptor = (atype & QXFPAtomType::EqHBAcc) && IsHydrogenBondAcceptor(&atom);
    const bool donor = (atype & QXFPAtomType::EqHBDon) && IsHydrogenBondDonor(&atom);
    if (donor) return acceptor ? labelPrimes::donorAndAcceptor : labelPrimes::donor;
    if (acceptor) return labelPrimes::acceptor;
  }
  const auto& primes = atype & QXFPAtomType::EqHalo ? labelPrimes::elementEqHalo : labelPrimes::element;
  return primes[atom.GetAtomicNum()];
}

// Multiplies the label of every atom (or bond) by its factor.
template <class Item, class Factor>
void Multiply(std::vector<unsigned>& labels, std::span<const Item> items, Factor factor) {
  unsigned* label = labels.data();
  for (const Item& item : items) *label++ *= factor(item);
}

void MultiplyByElement(std::vector<unsigned>& labels, std::span<const QXAtomBase> atoms, unsigned atype) {
  if (atype & (QXFPAtomType::EqArom | hydrogenBondFlags)) {
    Multiply(labels, atoms, [atype](const QXAtomBase& atom) { return ClassFactor(atom, atype); });
    return;
  }
  const unsigned* primes =
      (atype & QXFPAtomType::EqHalo ? labelPrimes::elementEqHalo : labelPrimes::element).data();
  Multiply(labels, atoms, [primes](const QXAtomBase& atom) { return primes[atom.GetAtomicNum()]; });
}

void LabelAtoms(std::vector<unsigned>& labels, std::span<const QXAtomBase> atoms, unsigned atype) {
  using namespace QXFPAtomType;
  const auto multiply = [&](unsigned property, auto factor) {
    if (atype & property) Multiply(labels, atoms, factor);
  };
  labels.assign(atoms.size(), 1);
  if (atype & AtmNum) MultiplyByElement(labels, atoms, atype);
  multiply(FCharge, [](const QXAtomBase& atom) { return ChargeFactor(atom.GetFormalCharge()); });
  multiply(HvyDeg,
           [](const QXAtomBase& atom) { return Capped(labelPrimes::heavyDegree, atom.GetHvyDegree()); });
  multiply(Hyb, [](const QXAtomBase& atom) { return Capped(labelPrimes::hybridization, atom.GetHyb()); });
  multiply(InRing, [](const QXAtomBase& atom) { return atom.IsInRing() ? labelPrimes::ringAtom : 1; });
  multiply(Arom, [](const QXAtomBase& atom) { return atom.IsAromatic() ? labelPrimes::aromaticAtom : 1; });
  multiply(Chiral, [](const QXAtomBase& atom) { return atom.IsChiral() ? labelPrimes::chiralAtom : 1; });
  multiply(HCount,
           [](const QXAtomBase& atom) { return Capped(labelPrimes::hydrogens, atom.GetTotalHCount()); });
}

void LabelBonds(std::vector<unsigned>& labels, std::span<const QXBondBase> bonds, unsigned btype) {
  using namespace QXFPBondType;
  const auto multiply = [&](unsigned property, auto factor) {
    if (btype & property) Multiply(labels, bonds, factor);
  };
  labels.assign(bonds.size(), 1);
  multiply(Order, [](const QXBondBase& bond) {
    return bond.IsAromatic() ? labelPrimes::aromaticBond : labelPrimes::bondOrder[bond.GetOrder()];
  });
  multiply(InRing, [](const QXBondBase& bond) { return bond.IsInRing() ? labelPrimes::ringBond : 1; });
  multiply(Chiral, [](const QXBondBase& bond) { return bond.IsChiral() ? labelPrimes::chiralBond : 1; });
}

}  // namespace

void PerceiveForLabels(QXChem::QXMolBase& mol, unsigned atype, unsigned btype) {
  if (atype & QXFPAtomType::Hyb) QXChem::QXAssignHybridization(mol);
  if ((atype & QXFPAtomType::Chiral) || (btype & QXFPBondType::Chiral)) QXChem::QXPerceiveChiral(mol);
}

void QXGetFingerprintAtomTypes(std::vector<unsigned>& atomLabels, std::vector<unsigned>& bondLabels,
                               QXChem::QXMolBase& mol, unsigned atype, unsigned btype) {
  PerceiveForLabels(mol, atype, btype);
  LabelAtoms(atomLabels, mol.Atoms(), atype);
  LabelBonds(bondLabels, mol.Bonds(), btype);
}

}  // namespace QXFingrix
