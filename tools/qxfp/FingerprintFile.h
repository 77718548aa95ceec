#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXSystem/QXInterface.h"

namespace qxfp {

/// Adds "-fpbin", the first argument of a command that takes a fast fingerprint file and nothing else.
void AddFingerprintFile(QXSystem::QXInterface& itf);

/// Adds "-memory", where the records are kept.
void AddMemoryOption(QXSystem::QXInterface& itf);

/// Adds "-index", whether and by which index searches go.
void AddIndexOption(QXSystem::QXInterface& itf);

/// Opens a fast fingerprint file where "-memory" says, with the index that "-index" says, none where there is no
/// such option. Errors: reports and returns nothing.
std::optional<QXFingrix::QXFastFPDatabase> OpenFingerprints(const QXSystem::QXInterface& itf,
                                                            const std::string& path);

/// Fetches a record. Errors: false and a reason in words.
bool FetchFingerprint(QXFingrix::QXFingerPrint& fp, const QXFingrix::QXFastFPDatabase& fingerprints,
                      std::uint64_t index, std::string& reason);

/// How often the library compares when it compares records with each other and themselves: each pair once, by
/// Tversky both ways. Says so when it is going to take a while.
std::uint64_t AnnounceComparisons(std::uint64_t numRecords, const QXFingrix::QXFPDatabaseOptions& options);

}  // namespace qxfp
