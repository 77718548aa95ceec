#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Command.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "PendingFile.h"
#include "QXChem/QXDepict.h"
#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPPatterns.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXSystem/QXErrorHandler.h"
#include "RowWriter.h"

namespace qxfp {

namespace {

using QXChem::QXAtomBondSet;
using QXSystem::QXInterface;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

constexpr const char* kSides[] = {"-a", "-b"};
constexpr const char* kSideNames[] = {"A", "B"};

// A pattern can match in more ways than anybody reads.
constexpr unsigned kMaxMatches = 10000;

void Configure(QXInterface& itf) {
  itf.AddParameter(QXParameter(kSides[0], QXParameterType::String)
                       .SetBrief("SMILES of a molecule")
                       .SetKeyless(1)
                       .SetRequired(true));
  itf.AddParameter(QXParameter(kSides[1], QXParameterType::String)
                       .SetBrief("SMILES of another one: only what both have is explained")
                       .SetKeyless(2));
  itf.AddParameter(QXParameter("-key", QXParameterType::Unsigned).SetBrief("Only this key, counted from 1"));
  itf.AddParameter(QXParameter("-svg", QXParameterType::String)
                       .SetBrief("File for a drawing, with what is explained marked"));
  itf.AddParameter(QXParameter("-type", QXParameterType::String)
                       .SetBrief("Fingerprint type: MACCS166")
                       .SetDefault("MACCS166"));
  AddRowFormOption(itf);
}

// Where a key is found in a molecule.
struct Found {
  std::string text;
  unsigned numMatches = 0;
  bool isComplete = true;
  std::set<unsigned> atoms;
  std::set<unsigned> bonds;
};
using FoundByKey = std::map<unsigned, Found>;

struct Side {
  QXChem::QXGraphMol mol;
  FoundByKey found;
};

void Find(Side& side, const QXFingrix::QXFPTypeBase* type, unsigned onlyKey) {
  for (const QXFingrix::QXFPPattern& pattern : QXFingrix::QXGetFPPatterns(side.mol, type)) {
    const unsigned key = pattern.bit + 1;
    if (onlyKey != 0 && key != onlyKey) continue;
    Found& found = side.found[key];
    found.text += (found.text.empty() ? "" : " ") + pattern.text;
    auto matches = pattern.matches;
    for (; matches && found.numMatches < kMaxMatches; ++matches, ++found.numMatches) {
      found.atoms.insert(matches->Atoms().begin(), matches->Atoms().end());
      found.bonds.insert(matches->Bonds().begin(), matches->Bonds().end());
    }
    found.isComplete = found.isComplete && !matches;
  }
}

void WarnIfNotSet(const Side& side, const char* name, unsigned key) {
  if (key != 0 && !side.found.contains(key)) QXThrow.Warning("key %u is not set in %s", key, name);
}

// Leaves in both what both have.
void KeepShared(Side& a, Side& b) {
  std::erase_if(a.found, [&](const auto& entry) { return !b.found.contains(entry.first); });
  std::erase_if(b.found, [&](const auto& entry) { return !a.found.contains(entry.first); });
}

std::string Join(const std::set<unsigned>& values) {
  std::string text;
  for (const unsigned value : values) text += (text.empty() ? "" : ",") + std::to_string(value);
  return text;
}

void WriteRows(const std::vector<Side>& sides, const QXInterface& itf) {
  std::vector<Column> columns = {{"key", true}, {"pattern"}};
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const std::string suffix = sides.size() == 1 ? "" : i == 0 ? "_a" : "_b";
    columns.push_back({"matches" + suffix, true});
    columns.push_back({"atoms" + suffix});
  }
  const auto writer = MakeRowWriter(GetRowForm(itf), std::move(columns));
  for (const auto& [key, first] : sides[0].found) {
    std::vector<std::string> cells = {std::to_string(key), first.text};
    for (std::size_t i = 0; i < sides.size(); ++i) {
      const Found& found = sides[i].found.at(key);
      if (!found.isComplete) {
        QXThrow.Warning("key %u: only the first %u matches in %s are counted", key, kMaxMatches,
                        kSideNames[i]);
      }
      cells.push_back(std::to_string(found.numMatches));
      cells.push_back(Join(found.atoms));
    }
    writer->Write(std::move(cells));
  }
  writer->Close();
}

// Marks what has been found; of one molecule without a key that would be most of it, so nothing is marked.
QXChem::QXDepiction Depict(const Side& side, const std::string& legend, bool isMarked) {
  std::set<unsigned> atoms;
  std::set<unsigned> bonds;
  for (const auto& [key, found] : side.found) {
    atoms.insert(found.atoms.begin(), found.atoms.end());
    bonds.insert(found.bonds.begin(), found.bonds.end());
  }
  QXChem::QXDepiction depiction{&side.mol, {}, legend};
  if (!isMarked) return depiction;
  for (const unsigned atom : atoms) depiction.highlight.AddAtom(atom);
  for (const unsigned bond : bonds) depiction.highlight.AddBond(bond);
  return depiction;
}

bool WriteDrawing(const std::vector<Side>& sides, const std::string& path, bool isKeyGiven) {
  std::vector<QXChem::QXDepiction> depictions;
  for (std::size_t i = 0; i < sides.size(); ++i) {
    depictions.push_back(
        Depict(sides[i], sides.size() > 1 ? kSideNames[i] : "", isKeyGiven || sides.size() > 1));
  }
  const std::string svg = QXChem::QXDepictSVG(depictions);
  if (svg.empty()) return false;  // reported
  PendingFile file;
  std::string reason;
  if (!file.Create(path, reason)) {
    QXThrow.Error("cannot make '%s': %s", path.c_str(), reason.c_str());
    return false;
  }
  std::ofstream stream(file.GetName(), std::ios::binary);
  if (!(stream << svg << std::flush)) {
    QXThrow.Error("cannot write all of '%s'", path.c_str());
    return false;
  }
  if (file.Commit(reason)) return true;
  QXThrow.Error("cannot give the finished file the name '%s': %s", path.c_str(), reason.c_str());
  return false;
}

const QXFingrix::QXFPTypeBase* ChooseType(const QXInterface& itf, std::string& reason) {
  const QXFingrix::QXFPTypeBase* type = SetupFingerprintType(itf, reason);
  if (!type || QXFingrix::QXHasFPPatterns(type)) return type;
  reason = "fingerprints of type '" + type->GetFPTypeString() + "' cannot be explained";
  return nullptr;
}

ExitStatus Run(const QXInterface& itf) {
  std::string reason;
  const QXFingrix::QXFPTypeBase* type = ChooseType(itf, reason);
  const unsigned key = itf.IsSet("-key") ? itf.Get<unsigned>("-key") : 0;
  if (const unsigned numKeys = type ? QXFingrix::QXGetFingerPrintSize(type) : 0;
      type && itf.IsSet("-key") && (key == 0 || key > numKeys)) {
    reason = "-key " + std::to_string(key) + " is not from 1 to " + std::to_string(numKeys);
    type = nullptr;
  }
  if (!type) {
    QXThrow.Error("%s", reason.c_str());
    return BadUsage;
  }
  std::vector<Side> sides(itf.IsSet(kSides[1]) ? 2 : 1);
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const auto smiles = itf.Get<std::string>(kSides[i]);
    if (!ReadSmiles(sides[i].mol, smiles, reason)) {
      QXThrow.Error("%s '%s': %s", kSideNames[i], smiles.c_str(), reason.c_str());
      return CannotRun;
    }
    Find(sides[i], type, key);
    WarnIfNotSet(sides[i], kSideNames[i], key);
  }
  if (sides.size() > 1) KeepShared(sides[0], sides[1]);
  if (itf.IsSet("-svg") && !WriteDrawing(sides, itf.Get<std::string>("-svg"), key != 0)) return CannotRun;
  WriteRows(sides, itf);
  return Done;
}

}  // namespace

extern const Command explainCommand = {
    "explain",
    "A [B]",
    "tell why bits of a fingerprint are set, and which atoms set them",
    "Lists the keys of A, or those that A and B share: the number of each, its pattern, in how many ways it\n"
    "matches, and the atoms that take part, counted from 0 as in the SMILES. -svg draws the molecules, with\n"
    "the atoms and bonds of -key, or of all shared keys, marked.\n",
    Configure,
    Run};

}  // namespace qxfp
