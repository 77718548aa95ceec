#include "chem/rdkit/ToRDKit.h"  // first, for RDKit's configuration

#include <iterator>
#include <memory>

namespace QXChem {
namespace {

RDKit::Bond::BondType ToBondType(const QXBondBase& bond) {
  using enum RDKit::Bond::BondType;
  static constexpr RDKit::Bond::BondType types[] = {ZERO,      SINGLE,    DOUBLE,  TRIPLE,
                                                    QUADRUPLE, QUINTUPLE, HEXTUPLE};
  if (bond.IsDative()) return DATIVE;
  return bond.GetOrder() < std::size(types) ? types[bond.GetOrder()] : OTHER;
}

}  // namespace

RDKit::RWMol ToRDKit(const QXMolBase& mol) {
  RDKit::RWMol target;
  for (const QXAtomBase& atom : mol.Atoms()) {
    auto copy = std::make_unique<RDKit::Atom>(static_cast<int>(atom.GetAtomicNum()));
    copy->setFormalCharge(atom.GetFormalCharge());
    copy->setIsotope(atom.GetIsotope());
    copy->setNumExplicitHs(atom.GetImplicitHCount());
    copy->setNoImplicit(true);
    if (atom.GetMapIdx() != 0) copy->setAtomMapNum(static_cast<int>(atom.GetMapIdx()));
    target.addAtom(copy.release(), false, true);
  }
  for (const QXBondBase& bond : mol.Bonds()) {
    target.addBond(bond.GetBgnIdx(), bond.GetEndIdx(), ToBondType(bond));
  }
  return target;
}

}  // namespace QXChem
