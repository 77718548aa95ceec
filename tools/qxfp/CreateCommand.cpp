#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "Command.h"
#include "FingerprintKinds.h"
#include "FingerprintOptions.h"
#include "MoleculeFile.h"
#include "PendingFile.h"
#include "ProgressBar.h"
#include "QXFingrix/QXCreateFastFPDatabase.h"
#include "QXFingrix/QXFastFPDatabaseParams.h"
#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"
#include "StandardOutput.h"
#include "Text.h"

namespace qxfp {

namespace {

namespace fs = std::filesystem;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

struct Reject {
  std::uint64_t index;
  std::string reason;
};

struct Request {
  std::string molecules;
  std::string target;
  std::string rejects;  // empty: none wanted
  unsigned threads;
  const QXFingrix::QXFPTypeBase* fptype;
};

void Configure(QXSystem::QXInterface& itf) {
  itf.AddParameter(QXParameter("-in", QXParameterType::String)
                       .SetBrief("Molecule file, one fingerprint for each of its records")
                       .SetKeyless(1)
                       .SetRequired(true));
  itf.AddParameter(QXParameter("-fpbin", QXParameterType::String)
                       .SetBrief("Fast fingerprint file to make, its name ending in .fpbin")
                       .SetKeyless(2)
                       .SetRequired(true));
  itf.AddParameter(QXParameter("-threads", QXParameterType::Unsigned)
                       .SetBrief("Number of threads")
                       .SetDetail("\n\t0: one for every processor")
                       .SetDefault("0"));
  itf.AddParameter(
      QXParameter("-rejects", QXParameterType::String)
          .SetBrief("File to write the unreadable records to: line, title and reason between tabs"));
  ConfigureFingerprintOptions(itf);
}

// Also of files that are not there yet.
bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  if (fs::equivalent(a, b, error)) return true;
  const fs::path canonicalA = fs::weakly_canonical(fs::absolute(a, error), error);
  return !error && canonicalA == fs::weakly_canonical(fs::absolute(b, error), error);
}

// What can be told from the names and the type alone.
bool CheckUsage(const Request& request, std::string& reason) {
  if (QXSystem::QXFileExtension(request.target) != "fpbin") {
    reason = "'" + request.target + "': the name of the new file has to end in .fpbin";
  } else if (IsSameFile(request.molecules, request.target)) {
    reason = "'" + request.target + "' is the molecule file";
  } else if (!request.rejects.empty() && (IsSameFile(request.rejects, request.molecules) ||
                                          IsSameFile(request.rejects, request.target))) {
    reason = "'" + request.rejects + "' cannot be the file for rejects too";
  } else if (IsTextType(request.fptype)) {
    reason =
        "a .fpbin file cannot hold Lingo and unhashed fingerprints: `qxfp search MOLS QUERY` makes and "
        "searches them";
  } else if (request.molecules.find('\n') != std::string::npos) {
    reason = "a molecule file whose name holds a line feed cannot be named in a .fpbin file";
  } else {
    return true;
  }
  return false;
}

// The file names the molecule file and the type in a header of fixed size.
bool CheckHeaderRoom(const Request& request, std::uint64_t numMolecules, std::string& reason) {
  QXFingrix::QXFastFPDatabaseParams header;
  header.SetMolFileName(request.molecules);
  header.SetFPTypeBase(request.fptype);
  header.SetNumFingerPrints(numMolecules);
  const std::size_t excess = QXFingrix::QXGetFPDatabaseHeaderExcess(header);
  if (excess == 0) return true;
  reason = "the name of the molecule file is " + std::to_string(excess) +
           " bytes too long to be stored in a .fpbin file; give a shorter path";
  return false;
}

// Tells in the user's terms what would otherwise fail when the file is begun.
bool CheckFolder(const Request& request, std::uint64_t numMolecules, std::string& reason) {
  const fs::path parent = fs::path(request.target).parent_path();
  const fs::path folder = parent.empty() ? fs::path(".") : parent;
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    reason = "'" + folder.string() + "' is no directory";
    return false;
  }
  const std::uint64_t needed = QXFingrix::QXGetFPDatabaseFileSize(numMolecules, request.fptype);
  const fs::space_info space = fs::space(folder, error);
  if (!error && space.available < needed) {
    reason = "'" + request.target + "' needs " + std::to_string(needed) + " bytes, but only " +
             std::to_string(space.available) + " are free";
    return false;
  }
  return true;
}

void ReportRejects(const QXChem::QXMolDatabase& molecules, const std::vector<Reject>& rejects,
                   std::ostream* list) {
  for (const Reject& reject : rejects) {
    QXThrow.Warning("%s: %s", DescribeRecord(molecules, reject.index).c_str(), reject.reason.c_str());
    if (!list) continue;
    *list << molecules.GetLine(reject.index) << '\t' << WithoutControls(molecules.GetTitle(reject.index))
          << '\t' << WithoutControls(reject.reason) << '\n';
  }
}

void PrintCounts(const Request& request, std::uint64_t numMolecules, std::size_t numRejects, double seconds) {
  char text[160];
  std::snprintf(text, sizeof text, ": %llu molecules, %zu unreadable, %.2f s, %.0f molecules/s\n",
                static_cast<unsigned long long>(numMolecules), numRejects, seconds,
                static_cast<double>(numMolecules) / std::max(seconds, 1e-9));
  Print(request.target + text);
}

// Makes the file under its pending name; the rejects come back in record order.
bool MakeFile(const Request& request, const std::string& name, std::uint64_t numMolecules,
              std::vector<Reject>& rejects) {
  QXFingrix::QXCreateFastFPDatabaseOptions options(request.fptype);
  options.SetNumProcessors(request.threads);
  if (const auto bar = MakeProgressBar(numMolecules, "molecules")) options.SetTracer(*bar);
  options.SetRejectHandler([&](std::uint64_t index, const std::string& reason) {
    rejects.push_back({index, reason});
  });
  if (!QXFingrix::QXCreateFastFPDatabaseFile(name, request.molecules, options)) return false;
  std::ranges::sort(rejects, {}, &Reject::index);
  return true;
}

ExitStatus Create(const Request& request) {
  QXChem::QXMolDatabase molecules;
  if (!OpenMolecules(molecules, request.molecules)) return CannotRun;
  const std::uint64_t numMolecules = molecules.GetMaxMolIdx();
  std::string reason;
  if (numMolecules == 0) {
    QXThrow.Error("'%s' holds no molecules", request.molecules.c_str());
    return CannotRun;
  }
  if (!CheckHeaderRoom(request, numMolecules, reason) || !CheckFolder(request, numMolecules, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return CannotRun;
  }
  PendingFile file;
  if (!file.Create(request.target, reason)) {
    QXThrow.Error("cannot make '%s': %s", request.target.c_str(), reason.c_str());
    return CannotRun;
  }
  std::ofstream rejectFile;
  if (!request.rejects.empty()) {
    rejectFile.open(request.rejects);
    if (!rejectFile) {
      QXThrow.Error("cannot write '%s'", request.rejects.c_str());
      return CannotRun;
    }
  }

  const auto start = std::chrono::steady_clock::now();
  std::vector<Reject> rejects;
  if (!MakeFile(request, file.GetName(), numMolecules, rejects)) {
    QXThrow.Error("'%s' was not made", request.target.c_str());
    return CannotRun;
  }
  if (!file.Commit(reason)) {
    QXThrow.Error("cannot give the finished file the name '%s': %s", request.target.c_str(), reason.c_str());
    return CannotRun;
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

  ReportRejects(molecules, rejects, request.rejects.empty() ? nullptr : &rejectFile);
  PrintCounts(request, numMolecules, rejects.size(), seconds);
  bool isComplete = rejects.empty();
  if (!request.rejects.empty() && !rejectFile.flush()) {
    QXThrow.Error("cannot write all of '%s'", request.rejects.c_str());
    isComplete = false;
  }
  return isComplete ? Done : SomeFailed;
}

ExitStatus Run(const QXSystem::QXInterface& itf) {
  Request request;
  request.molecules = itf.Get<std::string>("-in");
  request.target = itf.Get<std::string>("-fpbin");
  request.threads = itf.Get<unsigned>("-threads");
  if (itf.IsSet("-rejects")) request.rejects = itf.Get<std::string>("-rejects");
  std::string reason;
  request.fptype = SetupFingerprintType(itf, reason);
  if (!request.fptype || !CheckUsage(request, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return BadUsage;
  }
  if (!CanMakeFingerprint(request.fptype, reason)) {
    QXThrow.Error("%s", reason.c_str());
    return CannotRun;
  }
  return Create(request);
}

}  // namespace

extern const Command createCommand = {
    "create",
    "MOLS OUT.fpbin",
    "make a fast fingerprint file of the molecules of a file",
    "A record that cannot be read keeps its place with a fingerprint without bits, and is named in a "
    "warning.\n"
    "OUT.fpbin appears only when it is complete; a file of that name is replaced.\n"
    "The file remembers the name MOLS as it is given here: that is where search looks for titles.\n",
    Configure,
    Run};

}  // namespace qxfp
