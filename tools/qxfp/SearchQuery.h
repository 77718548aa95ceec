#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFingerPrint.h"

namespace qxfp {

/// What a search is asked for: `@INDEX` (a stored fingerprint), a molecule file (each of its molecules), or a
/// SMILES.
class SearchQueries {
 public:
  /// Errors   reports and returns false when a file cannot be opened or holds nothing, and when a SMILES
  ///          cannot be read or has no atoms.
  bool Open(const std::string& text);

  std::uint64_t Size() const { return molecules_.IsOpen() ? molecules_.GetMaxMolIdx() : 1; }

  /// The title or index of a molecule of a file, otherwise the text of the query.
  std::string GetName(std::uint64_t i) const;

  /// The number of the stored fingerprint, when the query is one.
  std::optional<std::uint64_t> GetStoredIndex() const { return storedIndex_; }

  /// Otherwise the i-th molecule, with atoms. Errors: false and a reason in words; no report.
  bool Read(QXChem::QXGraphMol& mol, std::uint64_t i, std::string& reason) const;

 private:
  bool OpenFile(const std::string& path);

  std::string text_;
  std::optional<std::uint64_t> storedIndex_;
  QXChem::QXGraphMol smiles_;
  QXChem::QXMolDatabase molecules_;
};

/// Makes the fingerprint of a query. Errors: false and a reason in words.
bool MakeQuery(QXFingrix::QXFingerPrint& fp, const QXChem::QXMolBase& mol,
               const QXFingrix::QXFPTypeBase* type, std::string& reason);

}  // namespace qxfp
