#include "MoleculeFile.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "QXChem/QXReadMolecule.h"
#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"

namespace qxfp {

namespace {

constexpr std::size_t kMaxShownTitle = 80;

constexpr std::string_view kSmilesExtensions[] = {"smi", "ism", "smiles"};
constexpr std::string_view kBlockExtensions[] = {"sdf", "sd", "mol", "mol2"};

std::string LowerCaseExtension(const std::string& path) {
  std::string extension = QXSystem::QXFileExtension(path);
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

// The extension that tells the format: the one before ".gz" where there is one.
std::string FormatExtension(const std::string& path) {
  const std::string extension = LowerCaseExtension(path);
  return extension == "gz" ? LowerCaseExtension(path.substr(0, path.size() - 3)) : extension;
}

bool HasAtoms(const QXChem::QXGraphMol& mol, std::string& reason) {
  if (mol.NumAtoms() > 0) return true;
  reason = "it has no atoms";
  return false;
}

}  // namespace

bool HasMoleculeExtension(const std::string& path) {
  const std::string extension = FormatExtension(path);
  return IsSmilesFile(path) || std::ranges::find(kBlockExtensions, extension) != std::end(kBlockExtensions);
}

bool IsSmilesFile(const std::string& path) {
  const std::string extension = FormatExtension(path);
  return std::ranges::find(kSmilesExtensions, extension) != std::end(kSmilesExtensions);
}

bool OpenMolecules(QXChem::QXMolDatabase& molecules, const std::string& path) {
  std::vector<QXSystem::QXErrorMessage> messages;
  bool isOpen;
  {
    const QXSystem::QXErrorCollector collector;
    isOpen = molecules.Open(path);
    messages = collector.Messages();
  }
  for (const auto& message : messages) {
    QXSystem::QXThrow.Report(isOpen ? message.level : QXSystem::QXErrorLevel::Error, message.text);
  }
  return isOpen;
}

std::string GetRecordName(const QXChem::QXMolDatabase& molecules, std::uint64_t idx) {
  const std::string title = molecules.GetTitle(idx);
  return title.empty() ? std::to_string(idx) : title;
}

std::string GetRecordSmiles(const QXChem::QXMolDatabase& molecules, std::uint64_t idx) {
  if (IsSmilesFile(molecules.GetFileName())) return molecules.GetText(idx);
  QXChem::QXGraphMol mol;
  std::string unused;
  return molecules.ReadMolecule(mol, idx, unused) ? QXChem::QXCreateSmiles(mol) : "";
}

std::string DescribeRecord(const QXChem::QXMolDatabase& molecules, std::uint64_t idx) {
  std::string title = molecules.GetTitle(idx);
  if (title.size() > kMaxShownTitle) title = title.substr(0, kMaxShownTitle) + "...";
  return molecules.GetFileName() + ", line " + std::to_string(molecules.GetLine(idx)) +
         (title.empty() ? "" : " '" + title + "'");
}

bool ReadSmiles(QXChem::QXGraphMol& mol, const std::string& smiles, std::string& reason) {
  return QXChem::QXReadSmiles(mol, smiles, reason) && HasAtoms(mol, reason);
}

bool ReadRecord(QXChem::QXGraphMol& mol, const QXChem::QXMolDatabase& molecules, std::uint64_t idx,
                std::string& reason) {
  return molecules.ReadMolecule(mol, idx, reason) && HasAtoms(mol, reason);
}

}  // namespace qxfp
