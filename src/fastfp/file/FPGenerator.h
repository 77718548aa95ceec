#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXCreateFastFPDatabase.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPopCount.h"
#include "QXSystem/QXDots.h"

namespace QXFingrix {

/// What the threads that fill a .fpbin file have in common: the molecules, the mapped file and the index of
/// the next molecule nobody has claimed. Molecules are read and fingerprinted without a lock; the lock is
/// held while a finished record is copied and progress is shown.
class QXFPGenerator {
 public:
  QXFPGenerator(const QXChem::QXMolDatabase& molecules, const QXCreateFastFPDatabaseOptions& options,
                QXPopCountFunc popCount, std::uint64_t* fileWords, QXSystem::QXDots* tracer);

  /// Makes records until none is left; run by every thread.
  void ThreadWork() noexcept;

 private:
  struct Workspace {
    QXChem::QXGraphMol molecule;
    QXFingerPrint fp;
    std::vector<unsigned long> words;
    unsigned long numSet = 0;
    std::string reason;
  };

  enum class Outcome { Made, CannotRead, CannotGenerate };

  void MakeRecord(std::uint64_t index, Workspace& work);
  Outcome MakeFingerPrint(std::uint64_t index, Workspace& work) const;
  void Write(std::uint64_t index, std::span<const unsigned long> words, unsigned long numSet);
  void Reject(std::uint64_t index, Outcome outcome, const std::string& reason);

  std::atomic<std::uint64_t> nextIndex_{0};
  const QXChem::QXMolDatabase& molecules_;
  const std::uint64_t numMolecules_;
  const QXFPTypeBase* fptype_;
  const std::size_t numWords_;
  const QXCreateFastFPDatabaseOptions::RejectHandler& rejectHandler_;
  QXPopCountFunc popCount_;
  std::uint64_t* records_;
  std::mutex mutex_;
  QXSystem::QXDots* tracer_;
};

}  // namespace QXFingrix
