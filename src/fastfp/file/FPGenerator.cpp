#include "fastfp/file/FPGenerator.h"

#include <algorithm>
#include <exception>

#include "QXFingrix/QXConvert.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "fastfp/file/FileLayout.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

constexpr std::uint64_t blockSize = 5;  // molecules claimed at a time
constexpr const char* caller = "QXCreateFastFPDatabaseFile()";

// Runs what calls the caller's code or takes memory for a message. An exception must not end the process, and
// the record is made whether it could be told or not.
template <class Call>
void RunGuarded(Call call) noexcept {
  try {
    call();
  } catch (...) {  // NOLINT(bugprone-empty-catch)
  }
}

}  // namespace

QXFPGenerator::QXFPGenerator(const QXChem::QXMolDatabase& molecules,
                             const QXCreateFastFPDatabaseOptions& options, QXPopCountFunc popCount,
                             std::uint64_t* fileWords, QXSystem::QXDots* tracer)
    : molecules_(molecules),
      numMolecules_(molecules.GetMaxMolIdx()),
      fptype_(options.GetFPTypeBase()),
      numWords_(QXGetFingerPrintSize(fptype_) / 64),
      rejectHandler_(options.GetRejectHandler()),
      popCount_(popCount),
      records_(fileWords + FileLayout::headerWords),
      tracer_(tracer) {}

void QXFPGenerator::ThreadWork() noexcept {
  Workspace work;
  for (;;) {
    const std::uint64_t begin = nextIndex_.fetch_add(blockSize);
    if (begin >= numMolecules_) return;
    const std::uint64_t end = begin + std::min(blockSize, numMolecules_ - begin);
    for (std::uint64_t index = begin; index < end; ++index) MakeRecord(index, work);
  }
}

void QXFPGenerator::MakeRecord(std::uint64_t index, Workspace& work) {
  const Outcome outcome = MakeFingerPrint(index, work);
  if (outcome == Outcome::Made) {
    Write(index, work.words, work.numSet);
  } else {
    RunGuarded([&] { Reject(index, outcome, work.reason); });
    Write(index, {}, 0);
  }
}

// A molecule that takes more memory than there is counts as one that has no fingerprint.
QXFPGenerator::Outcome QXFPGenerator::MakeFingerPrint(std::uint64_t index, Workspace& work) const {
  bool isRead = false;
  try {
    isRead = molecules_.ReadMolecule(work.molecule, index, work.reason);
    if (!isRead) return Outcome::CannotRead;
    if (QXMakeFP(work.fp, work.molecule, fptype_) && work.fp.GetWords().size() == numWords_) {
      work.numSet = QXConvertFP(work.words, work.fp, popCount_);
      return Outcome::Made;
    }
    work.reason = "the molecule has no fingerprint of this type";
  } catch (const std::exception& failure) {
    work.reason.clear();
    RunGuarded([&] { work.reason = failure.what(); });
  }
  return isRead ? Outcome::CannotGenerate : Outcome::CannotRead;
}

// The file starts out clear: a record without words has no bits.
void QXFPGenerator::Write(std::uint64_t index, std::span<const unsigned long> words, unsigned long numSet) {
  std::uint64_t* const record = records_ + index * FileLayout::RecordWords(numWords_);
  const std::lock_guard lock(mutex_);
  if (tracer_ != nullptr) RunGuarded([&] { tracer_->Update(1); });
  record[FileLayout::indexSlot] = index;
  record[FileLayout::bitCountSlot] = numSet;
  std::copy(words.begin(), words.end(), record + FileLayout::dataSlot);
}

void QXFPGenerator::Reject(std::uint64_t index, Outcome outcome, const std::string& reason) {
  if (rejectHandler_) {
    const std::lock_guard lock(mutex_);
    rejectHandler_(index, reason);
    return;
  }
  const int number = static_cast<int>(index);
  if (outcome == Outcome::CannotRead) {
    QXThrow.Warning("%s cannot access molecule with index %d", caller, number);
  } else {
    QXThrow.Warning("%s cannot generate fingerprint with index %d", caller, number);
  }
  QXThrow.Verbose("%s molecule with index %d: %s", caller, number, reason.c_str());
}

}  // namespace QXFingrix
