#pragma once

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "QXChem/QXGraphMol.h"

namespace QXChem {

/// The structure with its atoms in random order, nothing perceived; order[i] is where atom i has gone. Map
/// numbers and dative bonds are left out.
inline QXGraphMol Shuffled(const QXGraphMol& mol, std::mt19937& random, std::vector<unsigned>& order) {
  order.resize(mol.NumAtoms());
  std::iota(order.begin(), order.end(), 0U);
  std::ranges::shuffle(order, random);
  QXGraphMol shuffled;
  for (unsigned i = 0; i < order.size(); ++i) shuffled.NewAtom(0);
  for (unsigned i = 0; i < order.size(); ++i) {
    const QXAtomBase& from = *mol.GetAtom(i);
    QXAtomBase& to = *shuffled.GetAtom(order[i]);
    to.SetAtomicNum(from.GetAtomicNum());
    to.SetFormalCharge(from.GetFormalCharge());
    to.SetIsotope(from.GetIsotope());
    to.SetImplicitHCount(from.GetImplicitHCount());
  }
  for (const QXBondBase& bond : mol.Bonds()) {
    shuffled.NewBond(order[bond.GetBgnIdx()], order[bond.GetEndIdx()], bond.GetOrder());
  }
  return shuffled;
}

}  // namespace QXChem
