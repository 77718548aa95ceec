#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ExitStatus.h"
#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXSimScore.h"
#include "QXSystem/QXInterface.h"
#include "QXSystem/QXIter.h"

namespace qxfp {

using Hits = QXSystem::QXIter<QXFingrix::QXSimScore>;

/// The fingerprints that are searched, and the texts of their molecules. Hits are numbered by the records of
/// the file.
class SearchTarget {
 public:
  virtual ~SearchTarget() = default;

  /// The type that queries have to be of.
  virtual const QXFingrix::QXFPTypeBase* GetFPTypeBase() const = 0;

  /// The fingerprint of a record as a query. Errors: false and a reason in words.
  virtual bool MakeStoredQuery(QXFingrix::QXFingerPrint& fp, std::uint64_t index,
                               std::string& reason) const = 0;

  /// How many queries should be searched for at once.
  virtual std::uint64_t GetGroupSize() const = 0;

  /// The best hits of every query. Errors: false after a report.
  virtual bool FindHits(std::span<const QXFingrix::QXFingerPrint> queries, std::vector<Hits>& hits) const = 0;

  virtual std::string GetTitle(std::uint64_t index) const = 0;
  virtual std::string GetSmiles(std::uint64_t index) const = 0;

  /// Whether every record can be found.
  virtual bool IsComplete() const = 0;
};

/// @name The two kinds of targets
/// "-in" is the file; each refuses the options that only the other has a use for.
/// Errors   null after a report; status then tells how the program ends.
/// @{
void AddFingerprintFileOptions(QXSystem::QXInterface& itf);
std::unique_ptr<SearchTarget> OpenFingerprintFile(const QXSystem::QXInterface& itf,
                                                  const QXFingrix::QXFPDatabaseOptions& options,
                                                  ExitStatus& status);

/// Makes the fingerprints of a molecule file, with progress on a terminal; records without one are warned of.
std::unique_ptr<SearchTarget> MakeMoleculeFileTarget(const QXSystem::QXInterface& itf,
                                                     const QXFingrix::QXFPDatabaseOptions& options,
                                                     ExitStatus& status);
/// @}

}  // namespace qxfp
