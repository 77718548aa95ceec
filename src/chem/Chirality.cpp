// Potential stereo, read from the graph: an atom or double bond is marked when its surroundings could exist
// in two spatial forms, whether or not a drawing chose one. A centre's substituents are different when they
// lie in different classes of the refinement, so atoms that differ by nothing but other centres'
// configuration count as equal.

#include "chem/Chirality.h"

#include <algorithm>
#include <array>

#include "QXChem/QXPerception.h"
#include "chem/MolAccess.h"
#include "chem/Refinement.h"
#include "chem/ThreadScratch.h"

namespace QXChem {
namespace {

constexpr unsigned smallestStereoRing = 8;

bool IsTetrahedralElement(unsigned element) {
  return element == 6 || element == 14 || element == 32 || element == 50;  // C, Si, Ge, Sn
}

// Whether the number and kind of its substituents allow a centre here; their difference is tested later.
bool IsCandidate(const QXAtomBase& atom) {
  const unsigned degree = atom.GetDegree();
  if (degree < 2 || degree > 4 || atom.GetTotalHCount() > 1 || atom.IsAromatic()) return false;
  const unsigned substituents = degree + atom.GetImplicitHCount();
  const unsigned element = atom.GetAtomicNum();
  if (IsTetrahedralElement(element)) return substituents == 4;
  switch (element) {
    case 7:
      return substituents == 4 && atom.GetFormalCharge() == 1 && atom.GetTotalHCount() == 0;
    case 15:
      return substituents == 4 || (substituents == 3 && atom.GetValence() == 3);
    case 16:
    case 34:
      return degree == 3 && atom.GetTotalHCount() == 0 &&
             atom.GetValence() == (atom.GetFormalCharge() == 1 ? 3U : 4U);
    default:
      return false;
  }
}

// Whether two different substituents beside the double bond are possible at this end: two neighbours, a
// neighbour and a hydrogen, or at nitrogen a neighbour and the lone pair.
bool IsCandidateEnd(const QXAtomBase& end) {
  const unsigned element = end.GetAtomicNum();
  if (element != 7 && !IsTetrahedralElement(element)) return false;
  if (element == 7 && end.GetDegree() == 2 && end.GetImplicitHCount() == 0)
    return end.GetExplicitHCount() == 0;
  return end.GetDegree() + end.GetImplicitHCount() == 3 && end.GetTotalHCount() <= 1;
}

// Whether the ends of a bond are joined by a path of fewer than smallestStereoRing - 1 other bonds.
bool IsInSmallRing(const QXMolBase& mol, const QXBondBase& bond) {
  if (!bond.IsInRing()) return false;
  // A breadth-first walk of at most six levels; atoms of a graph of degree four or less are few enough to
  // search.
  thread_local std::vector<unsigned> reached;
  reached.assign(1, bond.GetBgnIdx());
  std::size_t levelStart = 0;
  for (unsigned depth = 1; depth < smallestStereoRing - 1; ++depth) {
    const std::size_t levelEnd = reached.size();
    for (std::size_t i = levelStart; i < levelEnd; ++i) {
      for (const QXNeighbor& neighbor : mol.Neighbors(reached[i])) {
        if (neighbor.bond == bond.GetIdx() || !mol.Bonds()[neighbor.bond].IsInRing()) continue;
        if (neighbor.atom == bond.GetEndIdx()) return true;
        if (std::find(reached.begin(), reached.end(), neighbor.atom) == reached.end()) {
          reached.push_back(neighbor.atom);
        }
      }
    }
    levelStart = levelEnd;
  }
  return false;
}

bool IsCandidate(const QXMolBase& mol, const QXBondBase& bond) {
  return bond.GetOrder() == 2 && !bond.IsAromatic() && IsCandidateEnd(*bond.GetBgn()) &&
         IsCandidateEnd(*bond.GetEnd()) && !IsInSmallRing(mol, bond);
}

constexpr unsigned noBond = ~0U;

// Whether the atom's neighbours, without the one across a bond, lie in different classes.
bool HaveDifferentClasses(const QXAtomBase& atom, std::span<const unsigned> classOfAtom,
                          unsigned withoutBond) {
  std::array<unsigned, 4> classes;
  std::size_t count = 0;
  for (const QXNeighbor& neighbor : atom.GetNeighbors()) {
    if (neighbor.bond == withoutBond) continue;
    const unsigned value = classOfAtom[neighbor.atom];
    if (std::find(classes.begin(), classes.begin() + count, value) != classes.begin() + count) return false;
    classes[count++] = value;
  }
  return true;
}

// Marks what may be a centre; false when there is nothing.
bool MarkCandidates(QXMolBase& mol) {
  bool any = false;
  for (QXAtomBase& atom : MolAccess::Atoms(mol)) {
    const bool candidate = IsCandidate(atom);
    MolAccess::SetChiral(atom, candidate);
    any |= candidate;
  }
  for (QXBondBase& bond : MolAccess::Bonds(mol)) {
    const bool candidate = IsCandidate(mol, bond);
    MolAccess::SetChiral(bond, candidate);
    any |= candidate;
  }
  return any;
}

// Leaves the mark on those candidates whose substituents differ.
void TestCandidates(QXMolBase& mol, std::span<const unsigned> classOfAtom) {
  for (QXAtomBase& atom : MolAccess::Atoms(mol)) {
    if (atom.IsChiral()) MolAccess::SetChiral(atom, HaveDifferentClasses(atom, classOfAtom, noBond));
  }
  for (QXBondBase& bond : MolAccess::Bonds(mol)) {
    if (!bond.IsChiral()) continue;
    MolAccess::SetChiral(bond, HaveDifferentClasses(*bond.GetBgn(), classOfAtom, bond.GetIdx()) &&
                                   HaveDifferentClasses(*bond.GetEnd(), classOfAtom, bond.GetIdx()));
  }
}

}  // namespace

void QXPerceiveChiral(QXMolBase& mol) {
  if (mol.IsPerceived(QXPerceived::Chirality)) return;
  QXFindRingAtomsAndBonds(mol);
  QXAssignAromaticFlags(mol);
  if (MarkCandidates(mol)) {
    ThreadScratch<Refinement> refinement(mol);
    refinement->Run(mol, false);
    TestCandidates(mol, refinement->ClassOfAtom());
  }
  MolAccess::MarkPerceived(mol, QXPerceived::Chirality);
}

void PerceiveChiralFrom(QXMolBase& mol, std::span<const unsigned> classOfAtom) {
  if (MarkCandidates(mol)) TestCandidates(mol, classOfAtom);
  MolAccess::MarkPerceived(mol, QXPerceived::Chirality);
}

}  // namespace QXChem
