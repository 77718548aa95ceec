#pragma once

#include <span>
#include <string>

#include "QXChem/QXDepict.h"
#include "QXChem/QXMolBase.h"

namespace QXChem {

// The only door to RDKit. No RDKit type and none of its exceptions leaves it, and it never touches the process-wide
// loggers.

enum class TextFormat { Smiles, MolBlock, Mol2 };

/// Reads a molecule with RDKit's default chemistry (its sanitising steps), explicit hydrogens kept, stereo
/// left out. Returns false with the reason and leaves mol in any state on failure; the reason of a SMILES
/// syntax error is empty.
bool ReadWithRDKit(QXMolBase& mol, TextFormat format, const std::string& text, std::string& reason);

/// Assigns aromaticity, hybridisation or both to the graph as it stands; nothing but single and double bonds
/// and hybridisation 0 when RDKit refuses the structure.
void PerceiveWithRDKit(QXMolBase& mol, bool aromaticity, bool hybridization);

// RDKit writes SMILES recursively, a kilobyte of stack or less for an atom of a chain, in quadratic time.
constexpr unsigned maxAtomsToWrite = 5000;

/// Canonical SMILES without stereo; empty when the molecule cannot be written. std::bad_alloc is the one
/// exception that passes, lest a lack of memory look like a bad molecule.
std::string WriteSmilesWithRDKit(const QXMolBase& mol);

/// An SVG image with a panel of width x height pixels for each molecule; the highlighted indices must be there.
/// Empty with the reason when RDKit cannot draw; std::bad_alloc passes.
std::string DrawWithRDKit(std::span<const QXDepiction> depictions, unsigned width, unsigned height,
                          std::string& reason);

/// What RDKit said, in one line that is never empty, and in other words where it speaks of its own source.
std::string ToReason(const char* message);

}  // namespace QXChem
