#pragma once

#include <string>
#include <string_view>

#include "QXChem/QXMolBase.h"

namespace QXChem {

// Reading gives a molecule with rings, aromaticity and hybridisation perceived. Explicit hydrogens stay atoms
// (see QXSuppressHydrogens). Drawn stereo and coordinates are not kept. The title is that of the block, and
// empty for a SMILES: what stands behind its first white space is not looked at.
//
// Refused with a reason: what the syntax or the valence model does not allow; NULs and bytes that are not
// text; charges beyond 99 and isotopes beyond 65,535; and what would exhaust the stack or the day: a SMILES
// of more than 1,000,000 bytes, 100,000 atoms or 2,000 parentheses open at once, more than 20,000 connected
// atoms with a ring among them, and rings times the square of their connected atoms above 4e10 (1,100 rings
// in 6,000 atoms).
//
// The QXParse functions report one Warning with the reason, the QXRead functions are silent and hand it out.
// Both return false and leave the molecule invalid and empty on failure. They never throw and print nothing
// else. Threads: safe on different molecules.

QX_API bool QXParseSmiles(QXMolBase& mol, std::string_view smiles);
/// An MDL mol block, V2000 or V3000; what follows "M  END" is not looked at.
QX_API bool QXParseMolBlock(QXMolBase& mol, std::string_view block);
/// One Tripos "@<TRIPOS>MOLECULE" block.
QX_API bool QXParseMol2(QXMolBase& mol, std::string_view block);

QX_API bool QXReadSmiles(QXMolBase& mol, std::string_view smiles, std::string& reason);
QX_API bool QXReadMolBlock(QXMolBase& mol, std::string_view block, std::string& reason);
QX_API bool QXReadMol2(QXMolBase& mol, std::string_view block, std::string& reason);

/// Canonical SMILES without stereo, isotopes and map numbers included. Empty for an invalid or empty
/// molecule, above 5,000 atoms, and for a structure that RDKit, which writes it, refuses: impossible valences
/// above all.
/// Cost     tens of microseconds, growing with the square of the number of atoms. RDKit writes by recursion:
///          a chain of 5,000 atoms takes up to 4 MB of the calling thread's stack, shorter ones in proportion.
QX_API std::string QXCreateSmiles(const QXMolBase& mol);

}  // namespace QXChem
