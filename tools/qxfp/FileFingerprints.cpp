#include "FileFingerprints.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <span>
#include <thread>
#include <vector>

#include "MoleculeFile.h"
#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXSystem/QXErrorHandler.h"

namespace qxfp {

namespace {

// Records in work at a time, for every thread: large enough to keep the threads busy, small enough to pipe.
constexpr std::uint64_t kBlockSize = 256;

class BlockWorker {
 public:
  BlockWorker(const QXChem::QXMolDatabase& molecules, const QXFingrix::QXFPTypeBase* type,
              const RecordFunction& finish)
      : molecules_(molecules), type_(type), finish_(finish) {}

  // Fills the records, whose indices are given. Errors: std::bad_alloc when there is no memory for them.
  void Run(std::span<RecordFingerprint> records, unsigned numThreads) const {
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> isOutOfMemory = false;
    const auto work = [&]() noexcept {
      try {
        QXChem::QXGraphMol mol;
        for (std::size_t i = next++; i < records.size(); i = next++) {
          Make(records[i], mol);
          finish_(records[i]);
        }
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
  }

 private:
  void Make(RecordFingerprint& record, QXChem::QXGraphMol& mol) const {
    record.reason.clear();
    try {
      if (molecules_.ReadMolecule(mol, record.index, record.reason) &&
          !QXFingrix::QXMakeFP(record.fp, mol, type_)) {
        record.reason = "its fingerprint cannot be made";
      }
    } catch (const std::exception& failure) {  // a molecule that takes more memory than there is
      record.reason = failure.what();
    }
  }

  const QXChem::QXMolDatabase& molecules_;
  const QXFingrix::QXFPTypeBase* type_;
  const RecordFunction& finish_;
};

}  // namespace

std::uint64_t ForEachFingerprint(const QXChem::QXMolDatabase& molecules, const QXFingrix::QXFPTypeBase* type,
                                 unsigned numThreads, const RecordFunction& finish,
                                 const RecordFunction& take) {
  const BlockWorker worker(molecules, type, finish);
  const std::uint64_t numRecords = molecules.GetMaxMolIdx();
  std::vector<RecordFingerprint> records(std::min(numRecords, kBlockSize * numThreads));
  std::uint64_t numFailed = 0;
  for (std::uint64_t begin = 0; begin < numRecords; begin += records.size()) {
    const std::span block(records.data(), std::min<std::uint64_t>(records.size(), numRecords - begin));
    for (std::size_t i = 0; i < block.size(); ++i) block[i].index = begin + i;
    worker.Run(block, numThreads);
    for (RecordFingerprint& record : block) {
      take(record);
      if (record.reason.empty()) continue;
      ++numFailed;
      QXSystem::QXThrow.Warning("%s: %s", DescribeRecord(molecules, record.index).c_str(),
                                record.reason.c_str());
    }
  }
  return numFailed;
}

}  // namespace qxfp
