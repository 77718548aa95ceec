#pragma once

#include <cstdint>
#include <string>

#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFastFPDatabase.h"

namespace qxfp {

/// Titles and SMILES of the records of a fast fingerprint file, out of the molecule file that it was made
/// from.
class HitTexts {
 public:
  /// Takes the named molecule file. Errors: reports and returns false when it cannot be read or does not
  /// belong to the fingerprints.
  bool Open(const std::string& moleculeFile, const QXFingrix::QXFastFPDatabase& fingerprints);

  /// Looks for the molecule file that the header names: as it stands there, then beside the .fpbin file.
  /// Errors   one Warning when none is found that belongs to the fingerprints; every text is then empty.
  void Find(const std::string& fpbinFile, const QXFingrix::QXFastFPDatabase& fingerprints);

  std::string GetTitle(std::uint64_t idx) const;
  std::string GetSmiles(std::uint64_t idx) const;

 private:
  bool Try(const std::string& path, const QXFingrix::QXFastFPDatabase& fingerprints, std::string& reason);

  QXChem::QXMolDatabase molecules_;
};

}  // namespace qxfp
