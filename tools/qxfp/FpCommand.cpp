#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Command.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMakeFP.h"
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

// Records in work at a time, for every thread: large enough to keep the threads busy, small enough to pipe.
constexpr std::uint64_t kBlockSize = 256;

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
  const std::string_view bytes(reinterpret_cast<const char*>(fp.GetData()), fp.GetDataSize());
  return std::string(bytes.substr(0, bytes.find('\0')));
}

bool IsTextType(const QXFingrix::QXFPTypeBase* type) {
  namespace Types = QXFingrix::QXFPType;
  const unsigned code = type->GetFPType();
  return code == Types::Lingo || code == Types::UHPath || code == Types::UHCircular || code == Types::UHTree;
}

struct Record {
  std::uint64_t index;
  std::string title;
  std::string reason;  // why there is no fingerprint; empty when there is one
};

using Formatter = std::string (*)(const Record& record, const QXFingerPrint& fp);

template <std::string (*Format)(const QXFingerPrint&)>
std::string Line(const Record& record, const QXFingerPrint& fp) {
  const std::string name =
      record.title.empty() ? std::to_string(record.index) : WithoutControls(record.title);
  return name + "\t" + (record.reason.empty() ? Format(fp) : "-") + "\n";
}

std::string JsonLine(const Record& record, const QXFingerPrint& fp) {
  std::string line = "{\"index\": " + std::to_string(record.index) + ", \"title\": " + ToJson(record.title);
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

// Makes the lines of a block of records on some threads; the caller writes them in order.
class BlockWorker {
 public:
  struct Result {
    std::string line;
    std::string reason;
  };

  BlockWorker(const QXChem::QXMolDatabase& molecules, const QXFingrix::QXFPTypeBase* type, Formatter format)
      : molecules_(molecules), type_(type), format_(format) {}

  /// Errors   std::bad_alloc when there is no memory for the lines.
  std::vector<Result> Run(std::uint64_t begin, std::uint64_t end, unsigned numThreads) const {
    std::vector<Result> results(end - begin);
    std::atomic<std::uint64_t> next = begin;
    std::atomic<bool> isOutOfMemory = false;
    const auto work = [&]() noexcept {
      try {
        QXChem::QXGraphMol mol;
        QXFingerPrint fp;
        for (std::uint64_t i = next++; i < end; i = next++) results[i - begin] = Make(i, mol, fp);
      } catch (const std::exception&) {
        isOutOfMemory = true;
      }
    };
    std::vector<std::jthread> others;
    try {
      for (unsigned i = 1; i < numThreads; ++i) others.emplace_back(work);
    } catch (const std::exception&) {  // fewer threads have to do
    }
    work();
    others.clear();  // joins them
    if (isOutOfMemory) throw std::bad_alloc();
    return results;
  }

 private:
  Result Make(std::uint64_t i, QXChem::QXGraphMol& mol, QXFingerPrint& fp) const {
    Record record{i, molecules_.GetTitle(i), {}};
    try {
      if (molecules_.ReadMolecule(mol, i, record.reason) && !QXFingrix::QXMakeFP(fp, mol, type_)) {
        record.reason = "its fingerprint cannot be made";
      }
    } catch (const std::exception& failure) {  // a molecule that takes more memory than there is
      record.reason = failure.what();
    }
    return {format_(record, fp), record.reason};
  }

  const QXChem::QXMolDatabase& molecules_;
  const QXFingrix::QXFPTypeBase* type_;
  Formatter format_;
};

std::uint64_t WriteFingerprints(const QXChem::QXMolDatabase& molecules, const BlockWorker& worker,
                                unsigned numThreads) {
  std::uint64_t numFailed = 0;
  const std::uint64_t numRecords = molecules.GetMaxMolIdx();
  const std::uint64_t step = kBlockSize * numThreads;
  for (std::uint64_t begin = 0; begin < numRecords; begin += step) {
    const auto results = worker.Run(begin, std::min(numRecords, begin + step), numThreads);
    for (std::uint64_t i = 0; i < results.size(); ++i) {
      Print(results[i].line);
      if (results[i].reason.empty()) continue;
      ++numFailed;
      QXThrow.Warning("%s: %s", DescribeRecord(molecules, begin + i).c_str(), results[i].reason.c_str());
    }
  }
  return numFailed;
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
  const BlockWorker worker(molecules, type, format);
  return WriteFingerprints(molecules, worker, QXPlatform::QXGetNumWorkers(itf.Get<unsigned>("-threads"))) == 0
             ? Done
             : SomeFailed;
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
