#include "chem/database/RecordFormat.h"

#include <algorithm>

#include "QXChem/QXMolBase.h"
#include "QXChem/QXReadMolecule.h"
#include "chem/database/SmilesLine.h"
#include "chem/database/TextScan.h"

namespace QXChem {
namespace {

std::string_view FirstLine(std::string_view text) {
  return text.substr(0, FindNextLine(text, 0));
}

// A line without its line feed and the carriage return before it.
std::string_view StripLineEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// ---- SMILES: a record is a line ----

std::size_t FirstSmiles(std::string_view) {
  return 0;
}

std::string_view SmilesTitle(std::string_view record) {
  return SplitSmilesLine(StripLineEnd(record)).title;
}

std::string_view SmilesText(std::string_view record) {
  return SplitSmilesLine(StripLineEnd(record)).smiles;
}

bool ReadSmilesRecord(QXMolBase& mol, std::string_view record, std::string& reason) {
  const std::string_view line = StripLineEnd(record);
  if (std::string fault = FindLineFault(line); !fault.empty()) {
    reason = std::move(fault);
    return false;
  }
  return QXReadSmiles(mol, SplitSmilesLine(line).smiles, reason);
}

// ---- SD file and mol file: header, connection table, data fields ----

constexpr std::string_view kSdRecordEnd = "$$$$";

// Blank lines at the end of a file are no record.
std::size_t SkipFinalBlank(std::string_view text, std::size_t pos) {
  return IsBlank(text.substr(pos)) ? text.size() : pos;
}

std::size_t FirstMolBlock(std::string_view text) {
  return SkipFinalBlank(text, 0);
}

std::size_t NextSdRecord(std::string_view text, std::size_t start) {
  return SkipFinalBlank(text, FindNextLine(text, FindTaggedLine(text, start, kSdRecordEnd)));
}

std::size_t NoFurtherRecord(std::string_view text, std::size_t) {
  return text.size();
}

std::string_view MolBlockTitle(std::string_view record) {
  const std::string_view line = FirstLine(record);
  return line.starts_with(kSdRecordEnd) ? std::string_view{} : Trim(line);
}

std::string_view SdText(std::string_view record) {
  return record.substr(0, FindTaggedLine(record, 0, kSdRecordEnd));
}

std::string_view WholeRecord(std::string_view record) {
  return record;
}

bool ReadMolBlockRecord(QXMolBase& mol, std::string_view record, std::string& reason) {
  const std::string_view block = SdText(record);
  if (IsBlank(block)) {
    reason = "blank record";
    return false;
  }
  const std::size_t end = FindTaggedLine(block, 0, "M  END");
  return QXReadMolBlock(mol, block.substr(0, FindNextLine(block, end)), reason);
}

// ---- mol2 ----

constexpr std::string_view kMol2Start = "@<TRIPOS>MOLECULE";

std::size_t FirstMol2(std::string_view text) {
  return FindTaggedLine(text, 0, kMol2Start);
}

std::size_t NextMol2(std::string_view text, std::size_t start) {
  return FindTaggedLine(text, start + 1, kMol2Start);
}

std::string_view Mol2Title(std::string_view record) {
  return Trim(FirstLine(record.substr(FindNextLine(record, 0))));
}

// SMILES are so short that finding the lines between two kept starts costs next to nothing beside reading
// one.
constexpr RecordFormat kSmiles{16,           true,        nullptr,    FirstSmiles,
                               FindNextLine, SmilesTitle, SmilesText, ReadSmilesRecord};
constexpr RecordFormat kSdFile{
    1, false, nullptr, FirstMolBlock, NextSdRecord, MolBlockTitle, SdText, ReadMolBlockRecord};
constexpr RecordFormat kMolFile{
    1, false, nullptr, FirstMolBlock, NoFurtherRecord, MolBlockTitle, WholeRecord, ReadMolBlockRecord};
constexpr RecordFormat kMol2{
    1, false, "no line @<TRIPOS>MOLECULE", FirstMol2, NextMol2, Mol2Title, WholeRecord, QXReadMol2};

struct Extension {
  std::string_view name;
  const RecordFormat* format;
};
constexpr Extension kExtensions[] = {
    {"smi", &kSmiles}, {"ism", &kSmiles},  {"smiles", &kSmiles}, {"sdf", &kSdFile},
    {"sd", &kSdFile},  {"mol", &kMolFile}, {"mol2", &kMol2},
};

}  // namespace

const RecordFormat* FindRecordFormat(const std::string& path) {
  std::string name = path.substr(path.rfind('/') + 1);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  if (name.ends_with(".gz")) name.resize(name.size() - 3);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos) return nullptr;
  const std::string_view extension = std::string_view(name).substr(dot + 1);
  const auto* found = std::find_if(std::begin(kExtensions), std::end(kExtensions),
                                   [extension](const Extension& e) { return e.name == extension; });
  return found == std::end(kExtensions) ? nullptr : found->format;
}

}  // namespace QXChem
