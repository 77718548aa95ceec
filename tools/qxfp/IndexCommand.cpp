#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "Command.h"
#include "FingerprintFile.h"
#include "QXFingrix/QXFastFPIndex.h"
#include "QXSystem/QXErrorHandler.h"
#include "StandardOutput.h"

namespace qxfp {

namespace {

using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

void Configure(QXSystem::QXInterface& itf) {
  AddFingerprintFile(itf);
  itf.AddParameter(QXParameter("-threads", QXParameterType::Unsigned)
                       .SetBrief("Number of threads")
                       .SetDetail("\n\t0: one for every processor")
                       .SetDefault("0"));
}

ExitStatus Run(const QXSystem::QXInterface& itf) {
  const auto path = itf.Get<std::string>("-fpbin");
  const std::string name = QXFingrix::QXGetFastFPIndexFileName(path);
  const auto start = std::chrono::steady_clock::now();
  if (!QXFingrix::QXMakeFastFPIndexFile(path, itf.Get<unsigned>("-threads"))) {
    QXThrow.Error("'%s' was not made", name.c_str());
    return CannotRun;
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::error_code error;
  const auto numBytes = static_cast<unsigned long long>(std::filesystem::file_size(name, error));
  char text[80];
  std::snprintf(text, sizeof text, ": %llu bytes, %.2f s\n", error ? 0ULL : numBytes, seconds);
  Print(name + text);
  return Done;
}

}  // namespace

extern const Command indexCommand = {
    "index",
    "FILE.fpbin",
    "make the index by which a fast fingerprint file is searched faster",
    "The index is a file beside it, FILE.fpbin.slices, which appears only when it is complete. It is used\n"
    "as long as FILE.fpbin stays as it is; a changed file needs a new index.\n",
    Configure,
    Run};

}  // namespace qxfp
