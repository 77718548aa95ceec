#include "QXChem/QXMolBase.h"
#include "QXChem/QXMolDatabase.h"
#include "QXSystem/QXErrorHandler.h"
#include "chem/database/FileText.h"
#include "chem/database/LineTable.h"
#include "chem/database/RecordFormat.h"
#include "chem/database/RecordIndex.h"
#include "chem/database/TextScan.h"

// How a molecule file is read: the whole text is mapped (a gzipped one after inflating it to a temporary
// file) and one pass over it notes where the records start. From then on nothing changes, so any number of
// threads read records straight from the mapping. What is particular to a format is a table of functions in
// RecordFormat.
namespace QXChem {

using QXSystem::QXThrow;

struct QXMolDatabase::Contents {
  Contents(const std::string& path, FileText&& fileText, const RecordFormat& recordFormat)
      : fileName(path),
        text(std::move(fileText)),
        format(recordFormat),
        index(text.GetText(), format),
        lines(format.recordPerLine ? LineTable() : LineTable(text.GetText())) {}

  std::uint64_t GetLine(std::uint64_t idx) const {
    if (format.recordPerLine) return idx + 1;
    return lines.GetLine(static_cast<std::size_t>(index.GetRecord(idx).data() - text.GetText().data()));
  }

  // Why there is no such record; empty when there is.
  static std::string FindIndexFault(const Contents* contents, std::uint64_t idx) {
    if (!contents) return "no file is open";
    if (idx < contents->index.NumRecords()) return {};
    return "index " + std::to_string(idx) + " is out of range, " + contents->fileName + " has " +
           std::to_string(contents->index.NumRecords()) + " records";
  }

  // The contents if they hold such a record, else null and one Warning in the name of `method`.
  static const Contents* Check(const Contents* contents, std::uint64_t idx, const char* method) {
    const std::string fault = FindIndexFault(contents, idx);
    if (fault.empty()) return contents;
    QXThrow.Warning("QXMolDatabase::%s() %s", method, fault.c_str());
    return nullptr;
  }

  bool Read(QXMolBase& mol, std::uint64_t idx, std::string& reason) const {
    const std::string_view record = index.GetRecord(idx);
    if (!format.read(mol, record, reason)) {
      mol.Invalidate();
      return false;
    }
    mol.SetTitle(std::string(format.getTitle(record)));
    return true;
  }

  const std::string fileName;
  const FileText text;
  const RecordFormat& format;
  const RecordIndex index;
  const LineTable lines;
};

QXMolDatabase::QXMolDatabase() = default;
QXMolDatabase::~QXMolDatabase() = default;
QXMolDatabase::QXMolDatabase(QXMolDatabase&&) noexcept = default;
QXMolDatabase& QXMolDatabase::operator=(QXMolDatabase&&) noexcept = default;

bool QXMolDatabase::Open(const std::string& path) {
  Close();
  std::string reason;
  FileText text;
  const RecordFormat* format = FindRecordFormat(path);
  if (!format) {
    reason = "unknown file name extension";
  } else if (text.Open(path, reason)) {
    auto contents = std::make_unique<const Contents>(path, std::move(text), *format);
    const bool blank = IsBlank(contents->text.GetText());
    if (contents->index.NumRecords() > 0 || blank || !format->missingRecord) {
      contents_ = std::move(contents);
      return true;
    }
    reason = format->missingRecord;
  }
  QXThrow.Warning("QXMolDatabase::Open() cannot open molecule file %s: %s", path.c_str(), reason.c_str());
  return false;
}

void QXMolDatabase::Close() {
  contents_.reset();
}

bool QXMolDatabase::IsOpen() const {
  return contents_ != nullptr;
}

const std::string& QXMolDatabase::GetFileName() const {
  static const std::string none;
  return contents_ ? contents_->fileName : none;
}

std::uint64_t QXMolDatabase::GetMaxMolIdx() const {
  return contents_ ? contents_->index.NumRecords() : 0;
}

bool QXMolDatabase::GetMolecule(QXMolBase& mol, std::uint64_t idx) const {
  const Contents* contents = Contents::Check(contents_.get(), idx, "GetMolecule");
  if (!contents) {
    mol.Invalidate();
    return false;
  }
  std::string reason;
  if (contents->Read(mol, idx, reason)) return true;
  QXThrow.Warning("QXMolDatabase::GetMolecule() cannot read record %llu (line %llu) of %s: %s",
                  static_cast<unsigned long long>(idx),
                  static_cast<unsigned long long>(contents->GetLine(idx)), contents->fileName.c_str(),
                  reason.c_str());
  return false;
}

bool QXMolDatabase::ReadMolecule(QXMolBase& mol, std::uint64_t idx, std::string& reason) const {
  if (std::string fault = Contents::FindIndexFault(contents_.get(), idx); !fault.empty()) {
    mol.Invalidate();
    reason = std::move(fault);
    return false;
  }
  return contents_->Read(mol, idx, reason);
}

std::string QXMolDatabase::GetTitle(std::uint64_t idx) const {
  const Contents* contents = Contents::Check(contents_.get(), idx, "GetTitle");
  return contents ? std::string(contents->format.getTitle(contents->index.GetRecord(idx))) : std::string();
}

std::string QXMolDatabase::GetText(std::uint64_t idx) const {
  const Contents* contents = Contents::Check(contents_.get(), idx, "GetText");
  return contents ? std::string(contents->format.getText(contents->index.GetRecord(idx))) : std::string();
}

std::uint64_t QXMolDatabase::GetLine(std::uint64_t idx) const {
  const Contents* contents = Contents::Check(contents_.get(), idx, "GetLine");
  return contents ? contents->GetLine(idx) : 0;
}

}  // namespace QXChem
