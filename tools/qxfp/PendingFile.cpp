#include "PendingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "Messages.h"
#include "QXSystem/QXString.h"

namespace qxfp {

namespace {

// What the signal handler removes. Set before the handlers are installed, so it is never seen half written.
char pathToRemove[PATH_MAX];

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

// The handler is reset on entry, so raising the signal again ends the program the way that the caller
// expects.
void RemoveAndEnd(int signal) {
  unlink(pathToRemove);
  raise(signal);
}

// A signal that is being ignored (nohup, background jobs) stays ignored.
void SetHandlers(bool isActive) {
  for (const int signal : kEndingSignals) {
    struct sigaction current {};
    if (sigaction(signal, nullptr, &current) != 0 || current.sa_handler == SIG_IGN) continue;
    struct sigaction wanted {};
    wanted.sa_handler = isActive ? RemoveAndEnd : SIG_DFL;
    wanted.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&wanted.sa_mask);
    sigaction(signal, &wanted, nullptr);
  }
}

}  // namespace

PendingFile::~PendingFile() {
  if (name_.empty()) return;
  unlink(name_.c_str());
  SetHandlers(false);
  RenameInMessages({}, {});
}

bool PendingFile::Create(const std::string& target, std::string& reason) {
  const std::string fileName = ".qxfp-" + std::to_string(getpid()) + "." + QXSystem::QXFileExtension(target);
  const std::string name = std::filesystem::path(target).replace_filename(fileName).string();
  if (name.size() >= sizeof pathToRemove) {
    reason = std::strerror(ENAMETOOLONG);
    return false;
  }
  std::strcpy(pathToRemove, name.c_str());
  SetHandlers(true);
  unlink(name.c_str());  // left over by a killed process that had our number
  const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (descriptor < 0) {
    reason = std::strerror(errno);
    SetHandlers(false);
    return false;
  }
  close(descriptor);
  target_ = target;
  name_ = name;
  RenameInMessages(name_, target_);
  return true;
}

bool PendingFile::Commit(std::string& reason) {
  if (std::rename(name_.c_str(), target_.c_str()) != 0) {
    reason = std::strerror(errno);
    return false;
  }
  SetHandlers(false);
  RenameInMessages({}, {});
  name_.clear();
  return true;
}

}  // namespace qxfp
