#pragma once

#include <cstdint>
#include <string>

#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXSystem/QXInterface.h"

namespace qxfp {

/// Adds "-mols", the molecule file to take titles and SMILES from.
void AddMoleculesOption(QXSystem::QXInterface& itf);

/// Titles and SMILES of the records of a fast fingerprint file, out of the molecule file that it was made
/// from.
class HitTexts {
 public:
  /// Takes the molecule file that "-mols" names. Without that it looks for the one that the header names: as
  /// it stands there, then beside the .fpbin file.
  /// Errors   reports and returns false when the file of "-mols" cannot be read or does not belong to the
  ///          fingerprints. One Warning when no other file is found that does; every text is then empty.
  bool Open(const QXSystem::QXInterface& itf, const std::string& fpbinFile,
            const QXFingrix::QXFastFPDatabase& fingerprints);

  std::string GetTitle(std::uint64_t idx) const;
  std::string GetSmiles(std::uint64_t idx) const;

 private:
  void Find(const std::string& fpbinFile, const QXFingrix::QXFastFPDatabase& fingerprints);
  bool Try(const std::string& path, const QXFingrix::QXFastFPDatabase& fingerprints, std::string& reason);

  QXChem::QXMolDatabase molecules_;
};

}  // namespace qxfp
