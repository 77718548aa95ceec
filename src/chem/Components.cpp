#include <algorithm>
#include <vector>

#include "QXChem/QXPerception.h"
#include "chem/ThreadScratch.h"

namespace QXChem {
namespace {

struct Stack {
  std::vector<unsigned> atoms;
};

// Flood fill over the bonds that follow() accepts, from every atom that starts() accepts; returns the number
// of parts.
template <class Starts, class Follow>
unsigned FloodFill(const QXMolBase& mol, unsigned* partOfAtom, Starts starts, Follow follow) {
  std::fill_n(partOfAtom, mol.NumAtoms(), 0);
  unsigned numParts = 0;
  ThreadScratch<Stack> scratch(mol);
  std::vector<unsigned>& stack = scratch->atoms;
  stack.clear();  // a call that ran out of memory leaves its atoms
  for (const QXAtomBase& start : mol.Atoms()) {
    if (partOfAtom[start.GetIdx()] != 0 || !starts(start)) continue;
    partOfAtom[start.GetIdx()] = ++numParts;
    stack.push_back(start.GetIdx());
    while (!stack.empty()) {
      const unsigned atom = stack.back();
      stack.pop_back();
      for (const QXNeighbor& neighbor : mol.Neighbors(atom)) {
        if (partOfAtom[neighbor.atom] != 0 || !follow(mol.Bonds()[neighbor.bond])) continue;
        partOfAtom[neighbor.atom] = numParts;
        stack.push_back(neighbor.atom);
      }
    }
  }
  return numParts;
}

}  // namespace

unsigned QXDetermineComponents(const QXMolBase& mol, unsigned* partOfAtom) {
  return FloodFill(
      mol, partOfAtom, [](const QXAtomBase&) { return true; }, [](const QXBondBase&) { return true; });
}

// Aromatic bonds lie in aromatic rings, and two rings that share an atom only (an aromatic spiro centre does
// not exist) would share a bond too, so systems are the parts joined by aromatic ring bonds.
unsigned QXDetermineAromaticRingSystems(const QXMolBase& mol, unsigned* systemOfAtom) {
  const auto isSystemBond = [](const QXBondBase& bond) { return bond.IsAromatic() && bond.IsInRing(); };
  const auto hasSystemBond = [&](const QXAtomBase& atom) {
    for (const QXNeighbor& neighbor : atom.GetNeighbors()) {
      if (isSystemBond(mol.Bonds()[neighbor.bond])) return true;
    }
    return false;
  };
  return FloodFill(mol, systemOfAtom, hasSystemBond, isSystemBond);
}

unsigned QXDetermineComponents(const QXMolBase& mol, std::vector<unsigned>& partOfAtom) {
  partOfAtom.resize(mol.NumAtoms());
  return QXDetermineComponents(mol, partOfAtom.data());
}

unsigned QXDetermineAromaticRingSystems(const QXMolBase& mol, std::vector<unsigned>& systemOfAtom) {
  systemOfAtom.resize(mol.NumAtoms());
  return QXDetermineAromaticRingSystems(mol, systemOfAtom.data());
}

}  // namespace QXChem
