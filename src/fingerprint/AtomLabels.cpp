// Integer labels of atoms and bonds.
//
// A label is a product with one factor for each property that the mask selects. What the mask selects is
// decided once: every property gets a table of factors, one of ones where it is not selected, and the three
// flags share a table of their products. The loop over the flat atom array then looks up and multiplies,
// without a branch on the mask. Products wrap at 32 bits.

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

// Where a table keeps the factor of a number; its last entry stands for all larger ones.
template <std::size_t N>
constexpr std::size_t CappedIndex(const std::array<unsigned, N>&, unsigned number) {
  return std::min<std::size_t>(number, N - 1);
}

constexpr int ChargeIndex(int formalCharge) {
  using labelPrimes::maxCharge;
  return std::clamp(formalCharge, -maxCharge, maxCharge) + maxCharge;
}

const auto& ElementPrimes(unsigned atype) {
  return atype & QXFPAtomType::EqHalo ? labelPrimes::elementEqHalo : labelPrimes::element;
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
  return ElementPrimes(atype)[atom.GetAtomicNum()];
}

// The factors of a property that the mask does not select; long enough for every table.
constexpr auto ones = [] {
  std::array<unsigned, labelPrimes::numElements> factors{};
  factors.fill(1);
  return factors;
}();

template <std::size_t N>
const unsigned* Select(bool selected, const std::array<unsigned, N>& factors) {
  static_assert(N <= ones.size());
  return selected ? factors.data() : ones.data();
}

// The products of flag factors by the flags' bits; a flag that is not selected has the factor 1.
template <std::size_t N>
std::array<unsigned, std::size_t{1} << N> FlagProducts(const std::array<unsigned, N>& factors) {
  std::array<unsigned, std::size_t{1} << N> products;
  for (std::size_t flags = 0; flags < products.size(); ++flags) {
    products[flags] = 1;
    for (std::size_t i = 0; i < N; ++i) products[flags] *= (flags >> i) & 1 ? factors[i] : 1;
  }
  return products;
}

template <class ElementFactor>
void LabelAtoms(std::vector<unsigned>& labels, std::span<const QXAtomBase> atoms, unsigned atype,
                ElementFactor elementFactor) {
  using namespace QXFPAtomType;
  const unsigned* charge = Select(atype & FCharge, labelPrimes::charge);
  const unsigned* heavyDegree = Select(atype & HvyDeg, labelPrimes::heavyDegree);
  const unsigned* hybridization = Select(atype & Hyb, labelPrimes::hybridization);
  const unsigned* hydrogens = Select(atype & HCount, labelPrimes::hydrogens);
  const auto flagProducts = FlagProducts<3>({atype & InRing ? labelPrimes::ringAtom : 1,
                                             atype & Arom ? labelPrimes::aromaticAtom : 1,
                                             atype & Chiral ? labelPrimes::chiralAtom : 1});
  labels.resize(atoms.size());
  unsigned* label = labels.data();
  for (const QXAtomBase& atom : atoms) {
    const unsigned flags = atom.IsInRing() | atom.IsAromatic() << 1 | atom.IsChiral() << 2;
    *label++ = elementFactor(atom) * flagProducts[flags] * charge[ChargeIndex(atom.GetFormalCharge())] *
               heavyDegree[CappedIndex(labelPrimes::heavyDegree, atom.GetHvyDegree())] *
               hybridization[CappedIndex(labelPrimes::hybridization, atom.GetHyb())] *
               hydrogens[CappedIndex(labelPrimes::hydrogens, atom.GetTotalHCount())];
  }
}

void LabelAtoms(std::vector<unsigned>& labels, std::span<const QXAtomBase> atoms, unsigned atype) {
  using namespace QXFPAtomType;
  if ((atype & AtmNum) && (atype & (EqArom | hydrogenBondFlags))) {
    LabelAtoms(labels, atoms, atype, [atype](const QXAtomBase& atom) { return ClassFactor(atom, atype); });
    return;
  }
  const unsigned* primes = Select(atype & AtmNum, ElementPrimes(atype));
  LabelAtoms(labels, atoms, atype, [primes](const QXAtomBase& atom) { return primes[atom.GetAtomicNum()]; });
}

void LabelBonds(std::vector<unsigned>& labels, std::span<const QXBondBase> bonds, unsigned btype) {
  using namespace QXFPBondType;
  const unsigned* order = Select(btype & Order, labelPrimes::bondOrder);
  const auto flagProducts = FlagProducts<2>(
      {btype & InRing ? labelPrimes::ringBond : 1, btype & Chiral ? labelPrimes::chiralBond : 1});
  labels.resize(bonds.size());
  unsigned* label = labels.data();
  for (const QXBondBase& bond : bonds) {
    const unsigned factor = order[bond.IsAromatic() ? labelPrimes::aromaticOrder : bond.GetOrder()];
    *label++ = factor * flagProducts[bond.IsInRing() | bond.IsChiral() << 1];
  }
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
