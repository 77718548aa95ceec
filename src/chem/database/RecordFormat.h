#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace QXChem {

class QXMolBase;

// What tells one molecule file format from another. Offsets are into the file's text, and the text's size
// stands for "none". A record is the text from its start to the next record's start.
struct RecordFormat {
  // The index keeps the start of every so many records and finds the others by findNext.
  unsigned indexStride;
  // Whether every line is a record, so that lines need not be counted.
  bool recordPerLine;
  // Where text without any record is a fault: what is missing.
  const char* missingRecord;
  std::size_t (*findFirst)(std::string_view text);
  std::size_t (*findNext)(std::string_view text, std::size_t start);
  // Parts of a record.
  std::string_view (*getTitle)(std::string_view record);
  std::string_view (*getText)(std::string_view record);
  // Reads a record; on failure gives the reason and leaves the molecule in any state.
  bool (*read)(QXMolBase& mol, std::string_view record, std::string& reason);
};

// The format of a file name's last extension (in any case, a final .gz set aside); null when unknown.
const RecordFormat* FindRecordFormat(const std::string& path);

}  // namespace QXChem
