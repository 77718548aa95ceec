#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFingerPrint.h"

namespace qxfp {

/// A record of a molecule file and its fingerprint.
struct RecordFingerprint {
  std::uint64_t index = 0;
  QXFingrix::QXFingerPrint fp;
  std::string reason;  ///< why there is no fingerprint; empty when there is one
  std::string text;    ///< room for what the caller makes of it
};

using RecordFunction = std::function<void(RecordFingerprint& record)>;

/// Makes the fingerprint of every record of a molecule file on several threads. Returns the number of records
/// without one; each of them is named in a Warning.
/// Shape    numThreads: at least 1.
///          finish: called for every record by the thread that made it.
///          take: called for every record by the calling thread, in record order; it may add a reason.
/// Errors   std::bad_alloc when there is no memory for the results of finish; what take throws.
/// Cost     a block of records is in memory at a time.
std::uint64_t ForEachFingerprint(const QXChem::QXMolDatabase& molecules, const QXFingrix::QXFPTypeBase* type,
                                 unsigned numThreads, const RecordFunction& finish,
                                 const RecordFunction& take);

}  // namespace qxfp
