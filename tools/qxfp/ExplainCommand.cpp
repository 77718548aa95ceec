#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "FingerprintKinds.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "QXChem/QXDepict.h"
#include "QXChem/QXGraphMol.h"
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
  AddRowFormOption(itf);
  ConfigureFingerprintOptions(itf);
}

struct Side {
  QXChem::QXGraphMol mol;
  FoundPatterns found;
};

enum class Kind { Keys, Bits, Tokens };

// What is looked at: everything or a single bit.
struct Focus {
  Kind kind = Kind::Keys;
  std::optional<unsigned> bit;
};

// How messages name a pattern.
std::string NameOf(Kind kind, const PatternKey& key) {
  if (kind == Kind::Tokens) return "token '" + key.token + "'";
  return kind == Kind::Keys ? "key " + std::to_string(key.bit + 1) : "bit " + std::to_string(key.bit);
}

void WarnIfNotSet(const Side& side, const char* name, const Focus& focus) {
  if (!focus.bit || !side.found.empty()) return;
  QXThrow.Warning("%s is not set in %s", NameOf(focus.kind, {*focus.bit, 0, ""}).c_str(), name);
}

std::string Join(const std::set<unsigned>& values) {
  std::string text;
  for (const unsigned value : values) text += (text.empty() ? "" : ",") + std::to_string(value);
  return text;
}

std::vector<Column> KeyColumns(Kind kind) {
  if (kind == Kind::Keys) return {{"key", true}};
  if (kind == Kind::Bits) return {{"bit", true}, {"id", true}};
  return {{"token"}};
}

std::vector<std::string> KeyCells(Kind kind, const PatternKey& key) {
  if (kind == Kind::Keys) return {std::to_string(key.bit + 1)};
  if (kind == Kind::Bits) return {std::to_string(key.bit), std::to_string(key.id)};
  return {key.token};
}

void WriteRows(const std::vector<Side>& sides, Kind kind, const QXInterface& itf) {
  std::vector<Column> columns = KeyColumns(kind);
  columns.push_back({"pattern"});
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const std::string suffix = sides.size() == 1 ? "" : i == 0 ? "_a" : "_b";
    columns.push_back({"matches" + suffix, true});
    columns.push_back({"atoms" + suffix});
  }
  const auto writer = MakeRowWriter(GetRowForm(itf), std::move(columns));
  for (const auto& [key, first] : sides[0].found) {
    std::vector<std::string> cells = KeyCells(kind, key);
    cells.push_back(first.text);
    for (std::size_t i = 0; i < sides.size(); ++i) {
      const FoundPattern& found = sides[i].found.at(key);
      if (!found.isComplete) {
        QXThrow.Warning("%s: only the first %u matches in %s are counted", NameOf(kind, key).c_str(),
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
    if (focus.bit || (sides.size() > 1 && focus.kind == Kind::Keys)) {
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
  focus.kind = type->GetFPType() == QXFingrix::QXFPType::MACCS166 ? Kind::Keys
               : IsUnhashedType(type)                             ? Kind::Tokens
                                                                  : Kind::Bits;
  constexpr std::pair<const char*, Kind> options[] = {{"-key", Kind::Keys}, {"-bit", Kind::Bits}};
  for (const auto& [option, kind] : options) {
    if (!itf.IsSet(option)) continue;
    if (kind != focus.kind) {
      reason = std::string(option) + " is not for fingerprints of type '" + type->GetFPTypeString() + "'";
      return false;
    }
    const unsigned number = itf.Get<unsigned>(option);
    const unsigned first = kind == Kind::Keys ? 1 : 0;
    const unsigned last = QXFingrix::QXGetFingerPrintSize(type) - 1 + first;
    focus.bit = number - first;
    reason = std::string(option) + " " + std::to_string(number) + " is not from " + std::to_string(first) +
             " to " + std::to_string(last);
    return number >= first && number <= last;
  }
  return true;
}

// Keys unless an option says otherwise.
const QXFingrix::QXFPTypeBase* ChooseType(const QXInterface& itf, std::string& reason) {
  if (!FindFingerprintOption(itf)) {
    return QXFingrix::QXGetFPType(QXFingrix::QXFPType::MACCS166, false, 0);
  }
  const QXFingrix::QXFPTypeBase* type = SetupFingerprintType(itf, reason);
  return type && CanFindPatterns(type, reason) ? type : nullptr;
}

// Errors: false and a reason in words.
bool Load(Side& side, const std::string& smiles, const QXFingrix::QXFPTypeBase* type, const Focus& focus,
          std::string& reason) {
  return ReadSmiles(side.mol, smiles, reason) && FindPatterns(side.found, side.mol, type, focus.bit, reason);
}

ExitStatus Run(const QXInterface& itf) {
  std::string reason;
  const QXFingrix::QXFPTypeBase* type = ChooseType(itf, reason);
  Focus focus;
  if (!type || !ChooseFocus(itf, type, focus, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return BadUsage;
  }
  if (!CanMakeFingerprint(type, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return CannotRun;
  }
  std::vector<Side> sides(itf.IsSet(kSides[1]) ? 2 : 1);
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const auto smiles = itf.Get<std::string>(kSides[i]);
    if (!Load(sides[i], smiles, type, focus, reason)) {
      QXThrow.Error("%s '%s': %s", kSideNames[i], smiles.c_str(), reason.c_str());
      return CannotRun;
    }
    WarnIfNotSet(sides[i], kSideNames[i], focus);
  }
  if (sides.size() > 1) KeepShared(sides[0].found, sides[1].found);
  if (itf.IsSet("-svg") && !Draw(sides, focus, itf.Get<std::string>("-svg"))) return CannotRun;
  WriteRows(sides, focus.kind, itf);
  return Done;
}

}  // namespace

extern const Command explainCommand = {
    "explain",
    "A [B]",
    "tell why bits of a fingerprint are set, and which atoms set them",
    "Lists the keys of A, or those that A and B share: the number of each, its pattern, in how many ways it\n"
    "matches, and the atoms that take part, counted from 0 as in the SMILES. With fingerprint options the\n"
    "bits of another kind, a row for every pattern that sets one, with its identifier; of unhashed kinds\n"
    "the tokens. Patterns are SMARTS. -svg draws the molecules, with the atoms and bonds of -key or -bit,\n"
    "of all shared keys, or of the large shared patterns, marked.\n",
    Configure,
    Run};

}  // namespace qxfp
