#pragma once

#include <string>
#include <vector>

#include "QXChem/QXMolBase.h"

namespace QXChem {

// Perception changes no structure: the prepared mark stays. A property that is already known (see
// QXMolBase::IsPerceived) is not computed again, except symmetry, whose meaning depends on the arguments.
// None of these functions throws; an invalid or empty molecule is left alone.
// Threads: safe on different molecules.

/// Marks the atoms and bonds that lie on a cycle.
/// Cost     O(atoms + bonds), no recursion.
QX_API void QXFindRingAtomsAndBonds(QXMolBase& mol);

/// Assigns aromatic flags to atoms and bonds from the Kekulé orders. A molecule that was read has them
/// already; an edited or hand-built one is perceived by the reading library's default model, with its
/// implicit hydrogens taken as they stand. Where that library refuses the structure (a valence it does not
/// know) no atom is aromatic.
QX_API void QXAssignAromaticFlags(QXMolBase& mol);

/// Assigns hybridisation codes; conjugated N and O are sp2. Otherwise as QXAssignAromaticFlags.
QX_API void QXAssignHybridization(QXMolBase& mol);

/// Marks the atoms and double bonds that can carry stereo, from the graph alone: neither the drawing nor the
/// order of the atoms matters.
/// Atom, not aromatic: C, Si, Ge or Sn with four different substituents, at most one of them H; N+ with four,
/// none of them H; P with three or four; three-connected S or Se of valence 4 (sulfoxides, sulfinates), or S+
/// or Se+ with three single bonds. Substituents are different when their atoms lie in different classes of
/// the refinement (QXPerceiveSymmetry with proven false), for which isotopes count and map numbers do not.
/// Bond: a double bond, not aromatic, in no ring of fewer than 8 atoms, each end with two different
/// substituents; at nitrogen the lone pair counts as one.
/// Centres that are different only through other centres are not counted.
/// Cost     nothing worth naming without a candidate, otherwise that of the refinement, about a microsecond.
QX_API void QXPerceiveChiral(QXMolBase& mol);

/// Assigns symmetry classes 1 to k, numbered in the order in which they first appear among the atoms.
/// proven false: the stable partition of a refinement; atoms in different classes are never equivalent.
/// proven true: two atoms share a class only if automorphisms that join them have been found, so that a walk
/// from one of them tells nothing that a walk from the other does not. Everything that atom and bond labels
/// depend on is preserved, isotopes too; map numbers are not looked at.
/// withChirality: the chirality flags tell atoms and bonds apart; in a proof they always do.
/// What the classes rest on (rings, aromaticity, hybridisation) and chirality are perceived when unknown.
/// Cost     a few microseconds for a drug-like molecule; the search for automorphisms is bounded.
QX_API void QXPerceiveSymmetry(QXMolBase& mol, bool proven, bool withChirality);

/// Turns hydrogen atoms into implicit hydrogens of their neighbours. Those stay that have an isotope, charge,
/// map number or hydrogen, have not just one neighbour by a plain single bond, or have a hydrogen or wildcard
/// there. The other atoms keep their order; rings, aromaticity and hybridisation stay known.
/// Cost     one pass over the atoms when there is nothing to do.
QX_API void QXSuppressHydrogens(QXMolBase& mol);

/// Whether QXSuppressHydrogens takes this atom away.
QX_API bool QXIsSuppressibleHydrogen(const QXAtomBase& atom);

/// Whether some neighbour (carbon or any other; P and S only when asked for) has a double, triple or aromatic
/// bond to a third atom. Null: false.
QX_API bool QXHasAlphaBetaUnsat(const QXAtomBase* atom, bool includePandS);

/// Numbers the connected components 1 to n in the order of their first atoms and returns n; partOfAtom has
/// room for one entry per atom.
QX_API unsigned QXDetermineComponents(const QXMolBase& mol, unsigned* partOfAtom);
QX_API unsigned QXDetermineComponents(const QXMolBase& mol, std::vector<unsigned>& partOfAtom);

/// Numbers the aromatic ring systems 1 to n in the order of their first atoms and returns n; systemOfAtom has
/// room for one entry per atom, 0 for none. Aromatic rings that share a bond are one system: naphthalene has
/// one, biphenyl two.
QX_API unsigned QXDetermineAromaticRingSystems(const QXMolBase& mol, unsigned* systemOfAtom);
QX_API unsigned QXDetermineAromaticRingSystems(const QXMolBase& mol, std::vector<unsigned>& systemOfAtom);

/// "C" for 6, "*" for 0, an empty text for an unknown number.
QX_API std::string QXGetAtomicSymbol(unsigned atomicNum);

}  // namespace QXChem
