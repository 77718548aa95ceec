#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Command.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "QXChem/QXDepict.h"
#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPPatterns.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXSystem/QXErrorHandler.h"
#include "RowWriter.h"
#include "SharedPatterns.h"

namespace qxfp {

namespace {

using QXChem::QXAtomBondSet;
using QXSystem::QXInterface;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

constexpr const char* kSides[] = {"-a", "-b"};
constexpr const char* kSideNames[] = {"A", "B"};

void Configure(QXInterface& itf) {
  itf.AddParameter(QXParameter(kSides[0], QXParameterType::String)
                       .SetBrief("SMILES of a molecule")
                       .SetKeyless(1)
                       .SetRequired(true));
  itf.AddParameter(QXParameter(kSides[1], QXParameterType::String)
                       .SetBrief("SMILES of another one: only what both have is explained")
                       .SetKeyless(2));
  itf.AddParameter(QXParameter("-key", QXParameterType::Unsigned).SetBrief("Only this key, counted from 1"));
  itf.AddParameter(QXParameter("-bit", QXParameterType::Unsigned).SetBrief("Only this bit, counted from 0"));
  itf.AddParameter(QXParameter("-svg", QXParameterType::String)
                       .SetBrief("File for a drawing, with what is explained marked"));
  itf.AddParameter(QXParameter("-type", QXParameterType::String)
                       .SetBrief("Fingerprint type: MACCS166")
                       .SetDefault("MACCS166"));
  AddRowFormOption(itf);
}

struct Side {
  QXChem::QXGraphMol mol;
  FoundPatterns found;
};

// What is looked at: every bit or a single one, by its own name.
struct Focus {
  bool isKeys = true;
  std::optional<unsigned> bit;
};

// How messages name a bit.
std::string NameOf(const Focus& focus, unsigned bit) {
  return focus.isKeys ? "key " + std::to_string(bit + 1) : "bit " + std::to_string(bit);
}

void WarnIfNotSet(const Side& side, const char* name, const Focus& focus) {
  if (!focus.bit || !side.found.empty()) return;
  QXThrow.Warning("%s is not set in %s", NameOf(focus, *focus.bit).c_str(), name);
}

std::string Join(const std::set<unsigned>& values) {
  std::string text;
  for (const unsigned value : values) text += (text.empty() ? "" : ",") + std::to_string(value);
  return text;
}

void WriteRows(const std::vector<Side>& sides, const Focus& focus, const QXInterface& itf) {
  std::vector<Column> columns;
  if (focus.isKeys) {
    columns = {{"key", true}, {"pattern"}};
  } else {
    columns = {{"bit", true}, {"id", true}, {"pattern"}};
  }
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const std::string suffix = sides.size() == 1 ? "" : i == 0 ? "_a" : "_b";
    columns.push_back({"matches" + suffix, true});
    columns.push_back({"atoms" + suffix});
  }
  const auto writer = MakeRowWriter(GetRowForm(itf), std::move(columns));
  for (const auto& [key, first] : sides[0].found) {
    const auto [bit, id] = key;
    std::vector<std::string> cells = {std::to_string(focus.isKeys ? bit + 1 : bit)};
    if (!focus.isKeys) cells.push_back(std::to_string(id));
    cells.push_back(first.text);
    for (std::size_t i = 0; i < sides.size(); ++i) {
      const FoundPattern& found = sides[i].found.at(key);
      if (!found.isComplete) {
        QXThrow.Warning("%s: only the first %u matches in %s are counted", NameOf(focus, bit).c_str(),
                        kMaxMatches, kSideNames[i]);
      }
      cells.push_back(std::to_string(found.numMatches));
      cells.push_back(Join(found.atoms));
    }
    writer->Write(std::move(cells));
  }
  writer->Close();
}

// Marks what is looked at, or what both share; of one molecule and every bit that would be most of it.
bool Draw(const std::vector<Side>& sides, const Focus& focus, const std::string& path) {
  std::vector<QXChem::QXDepiction> depictions;
  for (std::size_t i = 0; i < sides.size(); ++i) {
    QXChem::QXDepiction& depiction = depictions.emplace_back();
    depiction.mol = &sides[i].mol;
    if (sides.size() > 1) depiction.legend = kSideNames[i];
    if (focus.bit || (sides.size() > 1 && focus.isKeys)) {
      depiction.highlight = CollectPatterns(sides[i].found);
    } else if (sides.size() > 1) {
      depiction.highlight = CollectPatterns(LargePatterns(sides[i].found));
    }
  }
  return WriteDrawing(depictions, path);
}

// Errors: false and a reason in words.
bool ChooseFocus(const QXInterface& itf, const QXFingrix::QXFPTypeBase* type, Focus& focus,
                 std::string& reason) {
  focus.isKeys = type->GetFPType() == QXFingrix::QXFPType::MACCS166;
  const char* const option = focus.isKeys ? "-key" : "-bit";
  const char* const other = focus.isKeys ? "-bit" : "-key";
  if (itf.IsSet(other)) {
    reason = std::string(other) + " is not for fingerprints of type '" + type->GetFPTypeString() + "', " +
             option + " is";
    return false;
  }
  if (!itf.IsSet(option)) return true;
  const unsigned number = itf.Get<unsigned>(option);
  const unsigned first = focus.isKeys ? 1 : 0;
  const unsigned last = QXFingrix::QXGetFingerPrintSize(type) - 1 + first;
  focus.bit = number - first;
  reason = std::string(option) + " " + std::to_string(number) + " is not from " + std::to_string(first) +
           " to " + std::to_string(last);
  return number >= first && number <= last;
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
  Focus focus;
  if (type && !ChooseFocus(itf, type, focus, reason)) type = nullptr;
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
    sides[i].found = FindPatterns(sides[i].mol, type, focus.bit);
    WarnIfNotSet(sides[i], kSideNames[i], focus);
  }
  if (sides.size() > 1) KeepShared(sides[0].found, sides[1].found);
  if (itf.IsSet("-svg") && !Draw(sides, focus, itf.Get<std::string>("-svg"))) return CannotRun;
  WriteRows(sides, focus, itf);
  return Done;
}

}  // namespace

extern const Command explainCommand = {
    "explain",
    "A [B]",
    "tell why bits of a fingerprint are set, and which atoms set them",
    "Lists the keys of A, or those that A and B share: the number of each, its pattern, in how many ways it\n"
    "matches, and the atoms that take part, counted from 0 as in the SMILES. Of other fingerprints the "
    "bits,\n"
    "a row for every pattern, with its identifier, that sets one. -svg draws the molecules, with the atoms "
    "and\n"
    "bonds of -key or -bit, of all shared keys, or of the large shared patterns, marked.\n",
    Configure,
    Run};

}  // namespace qxfp
