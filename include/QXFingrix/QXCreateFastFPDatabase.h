#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "QXFingrix/QXFingerPrint.h"
#include "QXSystem/QXDots.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// How a .fpbin file is made.
class QX_API QXCreateFastFPDatabaseOptions {
 public:
  /// Told of every record that could not be read or fingerprinted: its index and why.
  using RejectHandler = std::function<void(std::uint64_t index, const std::string& reason)>;

  explicit QXCreateFastFPDatabaseOptions(const QXFPTypeBase* fptype);
  ~QXCreateFastFPDatabaseOptions();
  QXCreateFastFPDatabaseOptions(const QXCreateFastFPDatabaseOptions&);
  QXCreateFastFPDatabaseOptions& operator=(const QXCreateFastFPDatabaseOptions&);
  QXCreateFastFPDatabaseOptions(QXCreateFastFPDatabaseOptions&&) noexcept;
  QXCreateFastFPDatabaseOptions& operator=(QXCreateFastFPDatabaseOptions&&) noexcept;

  const QXFPTypeBase* GetFPTypeBase() const { return fptype_; }

  /// Worker threads; 0, the default, asks for one per processor.
  void SetNumProcessors(unsigned numProcessors) { numProcessors_ = numProcessors; }
  /// The threads to use: what was asked for, at most twice the number of processors.
  unsigned GetNumProcessors() const;

  /// Keeps a copy of the tracer; every molecule advances it by one.
  void SetTracer(const QXSystem::QXDots& tracer);
  const QXSystem::QXDots* GetTracer() const { return tracer_.get(); }  ///< null when none was set

  /// With a handler, records that fail go to it instead of being warned about. It is called by the worker
  /// threads, one at a time, and must not throw.
  void SetRejectHandler(RejectHandler handler) { rejectHandler_ = std::move(handler); }
  const RejectHandler& GetRejectHandler() const { return rejectHandler_; }

 private:
  const QXFPTypeBase* fptype_;
  unsigned numProcessors_ = 0;
  std::unique_ptr<QXSystem::QXDots> tracer_;
  RejectHandler rejectHandler_;
};

/// Makes a .fpbin file with one fingerprint for every record of a molecule file. The bytes do not depend on
/// the number of threads. A record that cannot be read or fingerprinted keeps its place with all bits clear.
/// Shape    the type is a path, circular or tree type whose size is a multiple of 256 bits.
/// Errors   says why and returns false: one warning, after the report of the file that could not be opened
///          where that is why; a file that was begun is left behind.
/// Threads  starts its own and waits for them.
QX_API bool QXCreateFastFPDatabaseFile(const std::string& fpbinFile, const std::string& moleculeFile,
                                       const QXCreateFastFPDatabaseOptions& options);
/// The same with the default options for a type.
QX_API bool QXCreateFastFPDatabaseFile(const std::string& fpbinFile, const std::string& moleculeFile,
                                       const QXFPTypeBase* fptype);

}  // namespace QXFingrix
