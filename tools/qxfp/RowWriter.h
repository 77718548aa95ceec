#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "QXSystem/QXInterface.h"

namespace qxfp {

/// How rows are written.
enum class RowForm {
  Tsv,   ///< fields between tabs; control characters become blanks
  Csv,   ///< RFC 4180 with line feeds
  Json,  ///< one array of objects, an object a line
  Table  ///< aligned columns for the eye
};

struct Column {
  std::string name;
  bool isNumber = false;  ///< right-aligned in a table, without quotes in JSON (null when empty or "nan")
};

/// Writes rows of text to standard output, a line with the column names first.
class RowWriter {
 public:
  virtual ~RowWriter() = default;
  /// Takes one cell a column.
  virtual void Write(std::vector<std::string> cells) = 0;
  /// Ends the output; call it once, after the last row.
  virtual void Close() = 0;
};

std::unique_ptr<RowWriter> MakeRowWriter(RowForm form, std::vector<Column> columns);

/// Adds "-out"; without it a terminal gets a table and everything else tab-separated values.
void AddRowFormOption(QXSystem::QXInterface& itf);
RowForm GetRowForm(const QXSystem::QXInterface& itf);

}  // namespace qxfp
