#pragma once

#include <string>

#include "fastfp/slices/file/PlainFile.h"

namespace QXFingrix {

/// A file that appears under its name only when it is whole. Where the system has files without a name it is
/// one until then, so that a killed process leaves nothing, but for the moment of its naming; elsewhere it has
/// another name in the same folder, which goes away with the object.
/// Errors   functions return false and leave the reason in errno.
class NewFile {
 public:
  NewFile() = default;
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Makes the file, empty, to be read and written by those who may do so with another file.
  bool Create(const std::string& target, const std::string& permissionsLike);
  const PlainFile& Get() const { return file_; }

  /// Gives the finished file its name, replacing a file that has it, when all of it is on the disk.
  bool Commit();

 private:
  bool GiveName();

  PlainFile file_;
  std::string target_;
  std::string folder_;
  std::string name_;  // empty while there is none
};

}  // namespace QXFingrix
