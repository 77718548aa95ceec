#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "FingerprintFile.h"
#include "Numbers.h"
#include "QXFingrix/QXConvert.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFastFPDatabaseParams.h"
#include "QXFingrix/QXFastFPIndex.h"
#include "QXPlatform/QXMappedFile.h"
#include "QXSystem/QXErrorHandler.h"
#include "RowWriter.h"

namespace qxfp {

namespace {

using QXFingrix::QXFastFPDatabaseParams;
using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

constexpr std::uint64_t kHeaderSize = QXFingrix::QXFPDatabaseHeaderSize;
constexpr std::uint64_t kMaxNamedRecords = 10;

struct Field {
  std::string name;
  std::string value;
  bool isNumber = true;
};

// The records of a mapped file whose size fits its header.
class Records {
 public:
  Records(const char* data, std::uint64_t numWords)
      : data_(reinterpret_cast<const unsigned char*>(data) + kHeaderSize), numWords_(numWords) {}

  std::uint64_t GetIndex(std::uint64_t record) const { return Word(record, 0); }
  std::uint64_t GetBitCount(std::uint64_t record) const { return Word(record, 1); }
  std::uint64_t CountBits(std::uint64_t record) const {
    std::uint64_t count = 0;
    for (std::uint64_t i = 0; i < numWords_; ++i)
      count += static_cast<unsigned>(std::popcount(Word(record, i + 2)));
    return count;
  }

 private:
  std::uint64_t Word(std::uint64_t record, std::uint64_t i) const {
    return QXFingrix::QXConvert(data_ + (record * (numWords_ + 2) + i) * 8);
  }

  const unsigned char* data_;
  std::uint64_t numWords_;
};

void Configure(QXSystem::QXInterface& itf) {
  AddFingerprintFile(itf);
  itf.AddParameter(
      QXParameter("-check", QXParameterType::Bool)
          .SetBrief("Read every record and test its index and bit count; read the index file too")
          .SetDefault("false"));
  AddRowFormOption(itf);
}

// Whether there are as many bytes as the header promises. Nothing is multiplied before it is known to be
// small.
bool CheckSize(const QXFastFPDatabaseParams& params, std::uint64_t fileSize, std::string& reason) {
  const unsigned numBits = QXFingrix::QXGetFingerPrintSize(params.GetFPTypeBase());
  if (params.GetNumWords() != numBits / 64 || numBits % 64 != 0) {
    reason = "the header says " + std::to_string(params.GetNumWords()) + " words a fingerprint, the type " +
             std::to_string(numBits) + " bits";
    return false;
  }
  const std::uint64_t recordSize = (params.GetNumWords() + 2) * 8;
  const bool isWhole = fileSize >= kHeaderSize && (fileSize - kHeaderSize) % recordSize == 0 &&
                       (fileSize - kHeaderSize) / recordSize == params.NumFingerPrints();
  if (isWhole) return true;
  reason = "the header promises " + std::to_string(params.NumFingerPrints()) + " records of " +
           std::to_string(recordSize) + " bytes, but the file has " + std::to_string(fileSize) + " bytes";
  return false;
}

void AddBitCounts(const Records& records, std::uint64_t numRecords, std::vector<Field>& fields) {
  std::uint64_t lowest = UINT64_MAX;
  std::uint64_t highest = 0;
  std::uint64_t numEmpty = 0;
  double sum = 0.0;
  double sumOfSquares = 0.0;
  for (std::uint64_t i = 0; i < numRecords; ++i) {
    const std::uint64_t count = records.GetBitCount(i);
    lowest = std::min(lowest, count);
    highest = std::max(highest, count);
    numEmpty += count == 0;
    sum += static_cast<double>(count);
    sumOfSquares += static_cast<double>(count) * static_cast<double>(count);
  }
  fields.push_back({"without bits", std::to_string(numEmpty)});
  if (numRecords == 0) return;
  const double mean = sum / static_cast<double>(numRecords);
  const double variance = sumOfSquares / static_cast<double>(numRecords) - mean * mean;
  fields.push_back({"fewest bits set", std::to_string(lowest)});
  fields.push_back({"most bits set", std::to_string(highest)});
  fields.push_back({"mean bits set", FormatFixed(mean, 2)});
  fields.push_back({"standard deviation", FormatFixed(std::sqrt(std::max(0.0, variance)), 2)});
}

// Tests every record; names the first bad ones.
std::uint64_t CountBadRecords(const Records& records, std::uint64_t numRecords) {
  std::uint64_t numBad = 0;
  for (std::uint64_t i = 0; i < numRecords; ++i) {
    const std::uint64_t numBits = records.CountBits(i);
    if (records.GetIndex(i) == i && records.GetBitCount(i) == numBits) continue;
    if (++numBad > kMaxNamedRecords) continue;
    const auto shown = [](std::uint64_t value) { return static_cast<unsigned long long>(value); };
    QXThrow.Error("record %llu: it says index %llu and %llu bits set, it has %llu", shown(i),
                  shown(records.GetIndex(i)), shown(records.GetBitCount(i)), shown(numBits));
  }
  return numBad;
}

const char* DescribeIndex(unsigned state) {
  switch (state) {
    case QXFingrix::QXFastFPIndexState::None:
      return "none";
    case QXFingrix::QXFastFPIndexState::Usable:
      return "usable";
    case QXFingrix::QXFastFPIndexState::Stale:
      return "stale";
    default:
      return "damaged";
  }
}

// A row for every field; in JSON one object that has them all.
void WriteFields(const std::vector<Field>& fields, RowForm form) {
  if (form == RowForm::Json) {
    std::vector<Column> columns;
    std::vector<std::string> values;
    for (const Field& field : fields) {
      columns.push_back({field.name, field.isNumber});
      values.push_back(field.value);
    }
    const auto writer = MakeRowWriter(form, columns);
    writer->Write(values);
    writer->Close();
    return;
  }
  const auto writer = MakeRowWriter(form, {{"field"}, {"value"}});
  for (const Field& field : fields) writer->Write({field.name, field.value});
  writer->Close();
}

ExitStatus Run(const QXSystem::QXInterface& itf) {
  const auto path = itf.Get<std::string>("-fpbin");
  const QXFastFPDatabaseParams params(path);
  if (!params.IsValid()) {
    QXThrow.Error("'%s' cannot be read as a fast fingerprint file", path.c_str());
    return CannotRun;
  }
  QXPlatform::QXMappedFile file;
  std::string reason;
  if (!file.Open(path, reason)) {
    QXThrow.Error("cannot read '%s': %s", path.c_str(), reason.c_str());
    return CannotRun;
  }
  const std::uint64_t numRecords = params.NumFingerPrints();
  std::vector<Field> fields = {
      {"file", path, false},
      {"molecule file", params.GetMolFileName(), false},
      {"type", params.GetFPTypeBase()->GetFPTypeString(), false},
      {"byte order", params.IsLittleEndian() ? "little-endian" : "big-endian", false},
      {"fingerprints", std::to_string(numRecords)},
      {"bits", std::to_string(QXFingrix::QXGetFingerPrintSize(params.GetFPTypeBase()))},
      {"words", std::to_string(params.GetNumWords())},
      {"file size", std::to_string(file.GetSize())},
  };
  bool isSound = params.IsLittleEndian() && CheckSize(params, file.GetSize(), reason);
  if (isSound) {
    const Records records(file.GetData(), params.GetNumWords());
    AddBitCounts(records, numRecords, fields);
    if (itf.Get<bool>("-check")) {
      const std::uint64_t numBad = CountBadRecords(records, numRecords);
      fields.push_back({"bad records", std::to_string(numBad)});
      isSound = numBad == 0;
    }
  } else {
    if (!params.IsLittleEndian()) reason = "it was written in the other byte order";
    QXThrow.Error("'%s' is damaged: %s", path.c_str(), reason.c_str());
  }
  const unsigned index = QXFingrix::QXGetFastFPIndexState(path, itf.Get<bool>("-check"));
  fields.push_back({"index", DescribeIndex(index), false});
  WriteFields(fields, GetRowForm(itf));
  return isSound && index != QXFingrix::QXFastFPIndexState::Damaged ? Done : SomeFailed;
}

}  // namespace

extern const Command infoCommand = {
    "info",
    "FILE.fpbin",
    "show what a fast fingerprint file holds",
    "The index is none, usable, stale (the file was changed since) or damaged; -check reads all of it.\n"
    "The exit status is 1 when the file, its index, or with -check a record, is damaged.\n",
    Configure,
    Run};

}  // namespace qxfp
