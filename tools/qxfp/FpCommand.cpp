#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "Command.h"
#include "FileFingerprints.h"
#include "FingerprintKinds.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "QXPlatform/QXProcessor.h"
#include "QXSystem/QXErrorHandler.h"
#include "StandardOutput.h"
#include "Text.h"

namespace qxfp {

namespace {

using QXFingrix::QXFingerPrint;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

std::string ToHex(const QXFingerPrint& fp) {
  return fp.ToHexString();
}

std::string ToBits(const QXFingerPrint& fp) {
  std::string bits(fp.GetSize(), '0');
  for (int bit = fp.FirstBit(); bit >= 0; bit = fp.NextBit(static_cast<unsigned>(bit))) {
    bits[static_cast<std::size_t>(bit)] = '1';
  }
  return bits;
}

std::string ToOnBits(const QXFingerPrint& fp) {
  std::string list;
  for (int bit = fp.FirstBit(); bit >= 0; bit = fp.NextBit(static_cast<unsigned>(bit))) {
    if (!list.empty()) list += ',';
    list += std::to_string(bit);
  }
  return list;
}

std::string ToText(const QXFingerPrint& fp) {
  return std::string(QXFingrix::QXGetFPText(fp));
}

using Formatter = std::string (*)(const RecordFingerprint& record, const std::string& title);

template <std::string (*Format)(const QXFingerPrint&)>
std::string Line(const RecordFingerprint& record, const std::string& title) {
  const std::string name = title.empty() ? std::to_string(record.index) : WithoutControls(title);
  return name + "\t" + (record.reason.empty() ? Format(record.fp) : "-") + "\n";
}

std::string JsonLine(const RecordFingerprint& record, const std::string& title) {
  const QXFingerPrint& fp = record.fp;
  std::string line = "{\"index\": " + std::to_string(record.index) + ", \"title\": " + ToJson(title);
  if (!record.reason.empty()) return line + ", \"error\": " + ToJson(record.reason) + "}\n";
  if (IsTextType(fp.GetFPTypeBase())) return line + ", \"text\": " + ToJson(ToText(fp)) + "}\n";
  return line + ", \"size\": " + std::to_string(fp.GetSize()) + ", \"onbits\": [" + ToOnBits(fp) + "]}\n";
}

constexpr std::pair<const char*, Formatter> kFormatters[] = {{"hex", Line<ToHex>},
                                                             {"bits", Line<ToBits>},
                                                             {"onbits", Line<ToOnBits>},
                                                             {"text", Line<ToText>},
                                                             {"json", JsonLine}};

void Configure(QXSystem::QXInterface& itf) {
  itf.AddParameter(
      QXParameter("-in", QXParameterType::String).SetBrief("Molecule file").SetKeyless(1).SetRequired(true));
  QXParameter out("-out", QXParameterType::String);
  out.SetAlias("-o").SetBrief("How a fingerprint is written").SetDefault(kFormatters[0].first);
  out.SetDetail(
      "\n\thex: its bytes in storage order, bit i being bit i%8 of byte i/8"
      "\n\tbits: a 0 or 1 for every bit, bit 0 first"
      "\n\tonbits: the numbers of the set bits, counted from 0, joined by commas"
      "\n\ttext: the text of a Lingo or unhashed fingerprint"
      "\n\tjson: an object with index, title, and size and onbits, or text, or error");
  for (const auto& [name, format] : kFormatters) out.AddLegalValue(name);
  itf.AddParameter(out);
  itf.AddParameter(QXParameter("-threads", QXParameterType::Unsigned)
                       .SetBrief("Number of threads")
                       .SetDetail("\n\t0: one for every processor")
                       .SetDefault("0"));
  ConfigureFingerprintOptions(itf);
}

ExitStatus Run(const QXSystem::QXInterface& itf) {
  std::string reason;
  const QXFingrix::QXFPTypeBase* type = SetupFingerprintType(itf, reason);
  const auto form = itf.Get<std::string>("-out");
  if (type && form == "text" && !IsTextType(type)) {
    reason = "-out text is for Lingo and unhashed fingerprints";
  }
  if (!reason.empty()) {
    QXThrow.Error("%s", reason.c_str());
    return BadUsage;
  }
  if (!CanMakeFingerprint(type, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return CannotRun;
  }
  QXChem::QXMolDatabase molecules;
  if (!OpenMolecules(molecules, itf.Get<std::string>("-in"))) return CannotRun;
  const auto format = std::ranges::find(kFormatters, form, [](const auto& entry) {
                        return std::string(entry.first);
                      })->second;
  const std::uint64_t numFailed = ForEachFingerprint(
      molecules, type, QXPlatform::QXGetNumWorkers(itf.Get<unsigned>("-threads")),
      [&](RecordFingerprint& record) { record.text = format(record, molecules.GetTitle(record.index)); },
      [](RecordFingerprint& record) { Print(record.text); });
  return numFailed == 0 ? Done : SomeFailed;
}

}  // namespace

extern const Command fpCommand = {"fp",
                                  "MOLS",
                                  "print the fingerprint of every molecule of a file",
                                  "Exactly one line for every record: its title (its index when it has "
                                  "none), a tab, and the fingerprint; an\n"
                                  "unreadable record has a - in its place and is named in a warning. Tabs "
                                  "and control characters of titles become\n"
                                  "blanks.\n",
                                  Configure,
                                  Run};

}  // namespace qxfp
