#include "FingerprintOptions.h"

#include <algorithm>
#include <iterator>

#include "Messages.h"
#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPAtomTypes.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFPTypeParams.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXSystem/QXErrorHandler.h"

namespace qxfp {

using namespace QXFingrix;

namespace {

using QXSystem::QXInterface;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;

constexpr const char* kPartialOptions[] = {"-fptype",      "-numbits",  "-mindistance",
                                           "-maxdistance", "-atomtype", "-bondtype"};

struct Kind {
  const char* word;
  unsigned code;
};

constexpr Kind kKinds[] = {
    {"Path", QXFPType::Path},
    {"Circular", QXFPType::Circular},
    {"Tree", QXFPType::Tree},
    {"MACCS166", QXFPType::MACCS166},
    {"Lingo", QXFPType::Lingo},
    {"UHPath", QXFPType::UHPath},
    {"UHCircular", QXFPType::UHCircular},
    {"UHTree", QXFPType::UHTree},
};

using HashedTypeLookup = const QXFPTypeBase* (*)(unsigned, unsigned, unsigned, unsigned, unsigned);

HashedTypeLookup LookupOfKind(unsigned code) {
  if (code == QXFPType::Circular) return QXGetCircularFPType;
  if (code == QXFPType::Tree) return QXGetTreeFPType;
  return QXGetPathFPType;
}

std::string JoinNames(const QXSystem::QXNamespaceInterface& constants) {
  std::string names;
  for (const auto& entry : constants.GetEntries()) names += (names.empty() ? "" : ", ") + entry.name;
  return names;
}

const char* FindPartialOption(const QXInterface& itf) {
  const auto found = std::ranges::find_if(kPartialOptions, [&](const char* name) { return itf.IsSet(name); });
  return found == std::end(kPartialOptions) ? nullptr : *found;
}

const QXFPTypeBase* TypeFromText(const QXInterface& itf, std::string& reason) {
  if (const char* name = FindPartialOption(itf)) {
    reason = std::string("-type names the whole fingerprint type and excludes ") + name;
    return nullptr;
  }
  const auto text = itf.Get<std::string>("-type");
  std::string words;
  for (const Kind& kind : kKinds) {
    if (text == kind.word) return QXGetFPType(kind.code, false, 0);
    words += (words.empty() ? "" : ", ") + std::string(kind.word);
  }
  const QXSystem::QXErrorCollector collector;
  const QXFPTypeBase* type = QXGetFPType(text);
  if (!type) {
    reason = "'" + text + "' is no fingerprint type: ";
    reason += collector.Count() > 0 ? JoinMessages(collector) : "it begins with none of " + words;
  }
  return type;
}

// Reads a mask given by names; false with a reason for a name that is not known.
bool ReadMask(const QXInterface& itf, const char* option, bool (*isValid)(const std::string&),
              unsigned (*toMask)(const std::string&), const QXSystem::QXNamespaceInterface& constants,
              unsigned& mask, std::string& reason) {
  if (!itf.IsSet(option)) return true;
  const auto text = itf.Get<std::string>(option);
  if (!isValid(text)) {
    reason = std::string(option) + " '" + text +
             "': give None, a Default... name, or names joined by |: " + JoinNames(constants);
    return false;
  }
  mask = toMask(text);
  return true;
}

const QXFPTypeBase* TypeFromOptions(const QXInterface& itf, std::string& reason) {
  const unsigned code =
      QXGetFPTypeNamespaceInterface().GetValue(itf.Get<std::string>("-fptype"), QXFPType::None);
  const QXFPTypeParams defaults(QXGetFPType(code, false, 0));
  unsigned numbits = defaults.GetNumBits();
  unsigned minDistance = defaults.GetMinDistance();
  unsigned maxDistance = defaults.GetMaxDistance();
  unsigned atomTypes = defaults.GetAtomTypes();
  unsigned bondTypes = defaults.GetBondTypes();
  if (itf.IsSet("-numbits")) itf.Get("-numbits", numbits);
  if (itf.IsSet("-mindistance")) itf.Get("-mindistance", minDistance);
  if (itf.IsSet("-maxdistance")) itf.Get("-maxdistance", maxDistance);
  if (!ReadMask(itf, "-atomtype", QXIsValidFPAtomType, QXGetFPAtomType, QXGetFPAtomTypeNamespaceInterface(),
                atomTypes, reason) ||
      !ReadMask(itf, "-bondtype", QXIsValidFPBondType, QXGetFPBondType, QXGetFPBondTypeNamespaceInterface(),
                bondTypes, reason)) {
    return nullptr;
  }
  if (minDistance > maxDistance) {
    reason = "-mindistance " + std::to_string(minDistance) + " is above -maxdistance " +
             std::to_string(maxDistance);
    return nullptr;
  }
  if (atomTypes == 0 && bondTypes == 0) {
    reason = "-atomtype and -bondtype cannot both be None";
    return nullptr;
  }
  return LookupOfKind(code)(numbits, minDistance, maxDistance, atomTypes, bondTypes);
}

}  // namespace

bool ConfigureFingerprintOptions(QXInterface& itf) {
  const auto& kinds = QXGetFPTypeNamespaceInterface();
  QXParameter fptype("-fptype", QXParameterType::String);
  fptype.SetDefault("Path").SetBrief("Fingerprint kind");
  for (const auto& entry : kinds.GetEntries()) fptype.AddLegalValue(entry.name);

  QXInterface options("fingerprint options");
  options.AddParameter(fptype);
  options.AddParameter(QXParameter("-numbits", QXParameterType::Unsigned)
                           .SetBrief("Fingerprint size in bits")
                           .SetDetail("\n\tBy default as in the default type of the kind")
                           .SetLegalRange("16", "65535"));
  options.AddParameter(QXParameter("-mindistance", QXParameterType::Unsigned)
                           .SetBrief("Smallest number of bonds, or radius of a circular fingerprint")
                           .SetLegalRange("0", "20"));
  options.AddParameter(QXParameter("-maxdistance", QXParameterType::Unsigned)
                           .SetBrief("Largest number of bonds, or radius of a circular fingerprint")
                           .SetLegalRange("0", "20"));
  options.AddParameter(
      QXParameter("-atomtype", QXParameterType::String)
          .SetBrief("Atom properties that count, joined by |")
          .SetDetail("\n\tNone, DefaultAtom, DefaultPathAtom, DefaultCircularAtom, DefaultTreeAtom, or of " +
                     JoinNames(QXGetFPAtomTypeNamespaceInterface())));
  options.AddParameter(
      QXParameter("-bondtype", QXParameterType::String)
          .SetBrief("Bond properties that count, joined by |")
          .SetDetail("\n\tNone, DefaultBond, DefaultPathBond, DefaultCircularBond, DefaultTreeBond, or of " +
                     JoinNames(QXGetFPBondTypeNamespaceInterface())));
  options.AddParameter(
      QXParameter("-type", QXParameterType::String)
          .SetBrief("The whole fingerprint type instead of the options above")
          .SetDetail("\n\tA type string, or one of Path, Circular, Tree, MACCS166, Lingo, UHPath, "
                     "UHCircular, UHTree for the default type of that kind"));
  return itf.AddInterface(options);
}

const char* FindFingerprintOption(const QXInterface& itf) {
  return itf.IsSet("-type") ? "-type" : FindPartialOption(itf);
}

const QXFPTypeBase* SetupFingerprintType(const QXInterface& itf, std::string& reason) {
  return itf.HasValue("-type") ? TypeFromText(itf, reason) : TypeFromOptions(itf, reason);
}

bool CanMakeFingerprint(const QXFPTypeBase* type, std::string& reason) {
  QXChem::QXGraphMol methane;
  std::string unused;
  if (!QXChem::QXReadSmiles(methane, "C", unused)) {
    reason = "molecules cannot be read: " + unused;
    return false;
  }
  QXFingerPrint fp;
  const QXSystem::QXErrorCollector collector;
  if (!QXMakeFP(fp, methane, type)) {
    reason = "there is no generator for fingerprints of type '" + type->GetFPTypeString() + "'";
    return false;
  }
  if (fp.GetFPTypeBase() != type) {
    reason =
        "fingerprints of type '" + type->GetFPTypeString() + "' cannot be made: " + JoinMessages(collector);
    return false;
  }
  return true;
}

}  // namespace qxfp
