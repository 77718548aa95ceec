#pragma once

#include <string>

namespace qxfp {

/// A file that appears under its name only when it is whole. It is written under another name in the same
/// folder, which goes away with the object, and when the program is ended by SIGINT, SIGTERM or SIGHUP. One
/// at a time.
class PendingFile {
 public:
  PendingFile() = default;
  ~PendingFile();
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  /// Makes the file, empty. The extension is the one of the target.
  /// Errors   false and the reason in words.
  bool Create(const std::string& target, std::string& reason);

  /// The name to write to.
  const std::string& GetName() const { return name_; }

  /// Gives the finished file its name, replacing a file that has it.
  /// Errors   false and the reason in words.
  bool Commit(std::string& reason);

 private:
  std::string target_;
  std::string name_;  // empty when there is nothing to remove
};

}  // namespace qxfp
