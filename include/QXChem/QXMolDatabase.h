#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "QXSystem/QXExport.h"

namespace QXChem {

class QXMolBase;

/// Numbered access to the molecules of a file.
///
/// Formats, by the name's last extension in any case: .smi .ism .smiles (one SMILES a line), .sdf .sd (SD
/// records), .mol (one connection table), .mol2; each may carry a further .gz. Whether a file is compressed
/// is decided by its first two bytes, so a plain file called x.smi.gz and a gzipped one called x.smi are both
/// read.
///
/// Records, numbered from 0:
///   SMILES  record i is line i + 1, whatever it holds, so that positions never shift: a blank or unreadable
///           line is a record that cannot be read. Lines end in a line feed, which the last one may lack; a
///           carriage return before it is dropped. The SMILES ends at the first white space (a carriage
///           return inside a line included); what follows, without an extension block |...| at its start, is
///           the title. A line that holds a NUL or is not UTF-8 cannot be read.
///   SD      a record ends at a line starting with $$$$; the last one may lack it, and blank lines after the
///           last $$$$ are no record. The title is the first line; the connection table, V2000 or V3000,
///           reaches to "M  END".
///   mol2    a record starts at a line @<TRIPOS>MOLECULE; the title is the line after it.
///
/// A byte-order mark at the start of the file is skipped. Titles carry no white space at their ends.
///
/// Errors   one Warning a failing call through QXThrow; never throws for bad input.
/// Threads  every const method may be called concurrently and takes no lock.
/// Cost     the file is mapped into memory and must not be changed while it is open. A gzipped one is
///          inflated to a nameless temporary file (in TMPDIR, or /tmp) and that is mapped. The index takes
///          half a byte a SMILES and eight bytes an SD or mol2 record.
class QX_API QXMolDatabase {
 public:
  /// A closed database: no records.
  QXMolDatabase();
  ~QXMolDatabase();
  QXMolDatabase(QXMolDatabase&&) noexcept;
  QXMolDatabase& operator=(QXMolDatabase&&) noexcept;

  /// Opens a file and indexes its records. An open database is closed first.
  /// Errors   Warning "QXMolDatabase::Open() ..." with file and reason, and false, for an unknown extension,
  ///          a file that cannot be read, corrupt or cut gzip data, no room for the inflated text, or a .mol2
  ///          file that holds text but no record. The database stays closed. An empty file opens with 0
  ///          records.
  /// Cost     one pass over the text.
  bool Open(const std::string& path);
  void Close();
  bool IsOpen() const;
  /// The path given to Open; empty when closed.
  const std::string& GetFileName() const;

  /// The number of records, readable or not; one more than the highest index.
  std::uint64_t GetMaxMolIdx() const;

  /// Reads a record into `mol` and sets its title.
  /// Errors   Warning "QXMolDatabase::GetMolecule() ..." with record, line, file and reason (or with index
  ///          and limit when there is no such record), false, and `mol` is left invalid and empty.
  bool GetMolecule(QXMolBase& mol, std::uint64_t idx) const;
  /// The same without a report: what went wrong is handed out in `reason`.
  bool ReadMolecule(QXMolBase& mol, std::uint64_t idx, std::string& reason) const;

  /// The title, not reading the molecule; a record that cannot be read may have one.
  /// Errors   Warning and "" when there is no such record.
  std::string GetTitle(std::uint64_t idx) const;
  /// The record's own text: the SMILES alone, or the whole SD or mol2 record without the $$$$ line.
  /// Errors   Warning and "" when there is no such record.
  std::string GetText(std::uint64_t idx) const;
  /// The line, counted from 1, on which the record starts.
  /// Errors   Warning and 0 when there is no such record.
  std::uint64_t GetLine(std::uint64_t idx) const;

 private:
  struct Contents;
  std::unique_ptr<const Contents> contents_;
};

}  // namespace QXChem
