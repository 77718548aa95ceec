#pragma once

#include <vector>

#include "QXChem/QXGraphMol.h"

namespace QXFingrix::test {

struct GraphBond {
  unsigned a;
  unsigned b;
  unsigned order = 1;
};

/// A molecule from atomic numbers and bonds, as they are.
inline QXChem::QXGraphMol MakeGraph(const std::vector<unsigned>& elements,
                                    const std::vector<GraphBond>& bonds) {
  QXChem::QXGraphMol mol;
  for (const unsigned element : elements) mol.NewAtom(element);
  for (const GraphBond& bond : bonds) mol.NewBond(bond.a, bond.b, bond.order);
  return mol;
}

/// A ring in which every atom is bonded to the ones next to it and to those `chord` places further; the
/// elements repeat along the ring. There are many ways around, and with one element all atoms are alike.
inline QXChem::QXGraphMol MakeCirculant(unsigned numAtoms, unsigned chord,
                                        const std::vector<unsigned>& pattern) {
  std::vector<unsigned> elements;
  for (unsigned i = 0; i < numAtoms; ++i) elements.push_back(pattern[i % pattern.size()]);
  std::vector<GraphBond> bonds;
  for (unsigned i = 0; i < numAtoms; ++i) bonds.push_back({i, (i + 1) % numAtoms});
  const unsigned numChords = 2 * chord == numAtoms ? chord : numAtoms;
  for (unsigned i = 0; i < numChords; ++i) bonds.push_back({i, (i + chord) % numAtoms});
  return MakeGraph(elements, bonds);
}

}  // namespace QXFingrix::test
