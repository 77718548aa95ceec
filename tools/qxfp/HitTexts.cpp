#include "HitTexts.h"

#include <filesystem>
#include <vector>

#include "MoleculeFile.h"
#include "QXFingrix/QXFastFPDatabaseParams.h"
#include "QXSystem/QXErrorHandler.h"

namespace qxfp {

namespace {

namespace fs = std::filesystem;

// The places where the molecule file may be, likeliest first.
std::vector<std::string> Candidates(const std::string& moleculeFile, const std::string& fpbinFile) {
  const fs::path named(moleculeFile);
  const fs::path folder = fs::path(fpbinFile).parent_path();
  std::vector<std::string> paths = {moleculeFile};
  if (named.is_relative()) paths.push_back((folder / named).string());
  paths.push_back((folder / named.filename()).string());
  return paths;
}

}  // namespace

void AddMoleculesOption(QXSystem::QXInterface& itf) {
  itf.AddParameter(QXSystem::QXParameter("-mols", QXSystem::QXParameterType::String)
                       .SetBrief("Molecule file that titles and SMILES of a .fpbin file come from")
                       .SetDetail("\n\tBy default the file that the .fpbin file was made from"));
}

bool HitTexts::Try(const std::string& path, const QXFingrix::QXFastFPDatabase& fingerprints,
                   std::string& reason) {
  const QXSystem::QXErrorCollector collector;
  if (molecules_.Open(path) && QXFingrix::QXAreCompatibleDatabases(molecules_, fingerprints)) return true;
  molecules_.Close();
  const auto messages = collector.Messages();
  reason = "'" + path + "' cannot be used" + (messages.empty() ? "" : ": " + messages.back().text);
  return false;
}

bool HitTexts::Open(const QXSystem::QXInterface& itf, const std::string& fpbinFile,
                    const QXFingrix::QXFastFPDatabase& fingerprints) {
  if (!itf.IsSet("-mols")) {
    Find(fpbinFile, fingerprints);
    return true;
  }
  std::string reason;
  if (Try(itf.Get<std::string>("-mols"), fingerprints, reason)) return true;
  QXSystem::QXThrow.Error("%s", reason.c_str());
  return false;
}

void HitTexts::Find(const std::string& fpbinFile, const QXFingrix::QXFastFPDatabase& fingerprints) {
  std::string moleculeFile;
  {
    const QXSystem::QXErrorCollector quiet;  // the database has been opened: its header is sound
    moleculeFile = QXFingrix::QXFastFPDatabaseParams(fpbinFile).GetMolFileName();
  }
  std::string reason;
  std::error_code error;
  for (const std::string& path : Candidates(moleculeFile, fpbinFile)) {
    if (fs::exists(path, error) && Try(path, fingerprints, reason)) return;
  }
  if (reason.empty()) reason = "the molecule file '" + moleculeFile + "' is not there";
  QXSystem::QXThrow.Warning("no titles and SMILES (-mols FILE gives them): %s", reason.c_str());
}

std::string HitTexts::GetTitle(std::uint64_t idx) const {
  return molecules_.IsOpen() ? molecules_.GetTitle(idx) : "";
}

std::string HitTexts::GetSmiles(std::uint64_t idx) const {
  return molecules_.IsOpen() ? GetRecordSmiles(molecules_, idx) : "";
}

}  // namespace qxfp
