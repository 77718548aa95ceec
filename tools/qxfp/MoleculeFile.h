#pragma once

#include <cstdint>
#include <string>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"

namespace qxfp {

/// Whether the name has an extension of a molecule file, .gz or not.
bool HasMoleculeExtension(const std::string& path);

/// Whether the name says that a record is one line with a SMILES.
bool IsSmilesFile(const std::string& path);

/// Opens a molecule file; a failure is reported as an error.
bool OpenMolecules(QXChem::QXMolDatabase& molecules, const std::string& path);

/// What a record is called: its title, or its index when it has none.
std::string GetRecordName(const QXChem::QXMolDatabase& molecules, std::uint64_t idx);

/// As written in a SMILES file, canonical for molecules of other files; empty for an unreadable record.
std::string GetRecordSmiles(const QXChem::QXMolDatabase& molecules, std::uint64_t idx);

/// Where a record is, for a message: file, line and title, "mols.smi, line 7 'ethanol'". Long titles are cut.
std::string DescribeRecord(const QXChem::QXMolDatabase& molecules, std::uint64_t idx);

/// Reads a molecule that has to have atoms.
/// Errors   false and a reason in words. No report.
bool ReadSmiles(QXChem::QXGraphMol& mol, const std::string& smiles, std::string& reason);
bool ReadRecord(QXChem::QXGraphMol& mol, const QXChem::QXMolDatabase& molecules, std::uint64_t idx,
                std::string& reason);

}  // namespace qxfp
