#include "MoleculeFile.h"

#include <algorithm>
#include <cctype>
#include <string_view>

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

std::string DescribeRecord(const QXChem::QXMolDatabase& molecules, std::uint64_t idx) {
  std::string title = molecules.GetTitle(idx);
  if (title.size() > kMaxShownTitle) title = title.substr(0, kMaxShownTitle) + "...";
  return molecules.GetFileName() + ", line " + std::to_string(molecules.GetLine(idx)) +
         (title.empty() ? "" : " '" + title + "'");
}

}  // namespace qxfp
