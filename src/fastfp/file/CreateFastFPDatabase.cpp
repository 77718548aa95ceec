#include "QXFingrix/QXCreateFastFPDatabase.h"

#include <sys/stat.h>

#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFastFPDatabaseParams.h"
#include "QXFingrix/QXMMapFile.h"
#include "QXFingrix/QXPopCount.h"
#include "QXPlatform/QXProcessor.h"
#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"
#include "fastfp/file/CheckFingerPrintType.h"
#include "fastfp/file/FPGenerator.h"
#include "fastfp/scan/RunThreads.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

constexpr const char* caller = "QXCreateFastFPDatabaseFile()";

std::unique_ptr<QXSystem::QXDots> CopyTracer(const QXSystem::QXDots* tracer) {
  return tracer == nullptr ? nullptr : tracer->CreateCopy();
}

// Emptying the output would empty the input too, under its mapping.
bool IsSameFile(const std::string& a, const std::string& b) {
  struct stat statusA {};
  struct stat statusB {};
  return stat(a.c_str(), &statusA) == 0 && stat(b.c_str(), &statusB) == 0 &&
         statusA.st_dev == statusB.st_dev && statusA.st_ino == statusB.st_ino;
}

bool OpenMolecules(QXChem::QXMolDatabase& molecules, const std::string& moleculeFile) {
  if (!molecules.Open(moleculeFile)) {
    QXThrow.Warning("%s cannot open molecule file %s!", caller, moleculeFile.c_str());
    return false;
  }
  if (molecules.GetMaxMolIdx() == 0) {
    QXThrow.Warning("%s empty molecule database!", caller);
    return false;
  }
  return true;
}

bool OpenOutput(MMapOutputFile& output, const std::string& fpbinFile, const QXFastFPDatabaseParams& params) {
  const std::uint64_t size = QXGetFPDatabaseFileSize(params.NumFingerPrints(), params.GetFPTypeBase());
  if (IsSameFile(fpbinFile, params.GetMolFileName()) || !output.Open(fpbinFile, size)) {
    QXThrow.Warning("%s : unable to open fingerprint database file: %s", caller, fpbinFile.c_str());
    return false;
  }
  if (output.GetData() == nullptr) {
    QXThrow.Warning("%s : unable to access fingerprint database file pointer: %s", caller, fpbinFile.c_str());
    return false;
  }
  if (!QXWriteFastFPDatabaseParams(output, params)) {
    QXThrow.Warning("%s : unable to write fingerprint database header: %s", caller, fpbinFile.c_str());
    return false;
  }
  return true;
}

// The format has no way to write a longer name or one of two lines; the records are sound all the same.
void CheckHeaderCanBeRead(const std::string& fpbinFile, const QXFastFPDatabaseParams& params) {
  if (QXGetFPDatabaseHeaderExcess(params) == 0 && params.GetMolFileName().find('\n') == std::string::npos) {
    return;
  }
  QXThrow.Warning("%s molecule file name does not fit into the header of %s", caller, fpbinFile.c_str());
}

}  // namespace

QXCreateFastFPDatabaseOptions::QXCreateFastFPDatabaseOptions(const QXFPTypeBase* fptype) : fptype_(fptype) {}
QXCreateFastFPDatabaseOptions::~QXCreateFastFPDatabaseOptions() = default;

QXCreateFastFPDatabaseOptions::QXCreateFastFPDatabaseOptions(const QXCreateFastFPDatabaseOptions& other)
    : fptype_(other.fptype_),
      numProcessors_(other.numProcessors_),
      tracer_(CopyTracer(other.tracer_.get())),
      rejectHandler_(other.rejectHandler_) {}

QXCreateFastFPDatabaseOptions& QXCreateFastFPDatabaseOptions::operator=(
    const QXCreateFastFPDatabaseOptions& other) {
  return *this = QXCreateFastFPDatabaseOptions(other);
}

QXCreateFastFPDatabaseOptions::QXCreateFastFPDatabaseOptions(QXCreateFastFPDatabaseOptions&&) noexcept =
    default;
QXCreateFastFPDatabaseOptions& QXCreateFastFPDatabaseOptions::operator=(
    QXCreateFastFPDatabaseOptions&&) noexcept = default;

unsigned QXCreateFastFPDatabaseOptions::GetNumProcessors() const {
  return QXPlatform::QXGetNumWorkers(numProcessors_);
}

void QXCreateFastFPDatabaseOptions::SetTracer(const QXSystem::QXDots& tracer) {
  tracer_ = tracer.CreateCopy();
}

bool QXCreateFastFPDatabaseFile(const std::string& fpbinFile, const std::string& moleculeFile,
                                const QXCreateFastFPDatabaseOptions& options) {
  if (!QXIsFastFPDatabaseReady()) {
    QXThrow.Warning("%s fast fingerprint methods are not supported!", caller);
    return false;
  }
  if (QXSystem::QXFileExtension(fpbinFile) != "fpbin") {
    QXThrow.Warning("%s fingerprint database file should have '.fpbin' file extension!", caller);
    return false;
  }
  QXChem::QXMolDatabase molecules;
  if (!OpenMolecules(molecules, moleculeFile)) return false;
  if (!CheckFingerPrintType(options.GetFPTypeBase(), caller)) return false;

  QXFastFPDatabaseParams params;
  params.SetMolFileName(moleculeFile);
  params.SetFPTypeBase(options.GetFPTypeBase());
  params.SetNumFingerPrints(molecules.GetMaxMolIdx());
  MMapOutputFile output;
  if (!OpenOutput(output, fpbinFile, params)) return false;
  CheckHeaderCanBeRead(fpbinFile, params);

  const std::unique_ptr<QXSystem::QXDots> tracer = CopyTracer(options.GetTracer());
  QXFPGenerator generator(molecules, options, QXGetPopCountFunc(QXGetPopCountMethod()),
                          reinterpret_cast<std::uint64_t*>(output.GetData()), tracer.get());
  RunThreads(options.GetNumProcessors(), [&generator] { generator.ThreadWork(); });
  if (tracer) tracer->Total();
  return true;
}

bool QXCreateFastFPDatabaseFile(const std::string& fpbinFile, const std::string& moleculeFile,
                                const QXFPTypeBase* fptype) {
  return QXCreateFastFPDatabaseFile(fpbinFile, moleculeFile, QXCreateFastFPDatabaseOptions(fptype));
}

}  // namespace QXFingrix
