#include "StandardOutput.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ExitStatus.h"
#include "QXSystem/QXErrorHandler.h"

namespace qxfp {

namespace {

constexpr std::size_t kBufferSize = 1 << 16;

std::string& Buffer() {
  static std::string buffer;
  return buffer;
}

void WriteAll(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EPIPE) {
      std::_Exit(Done);
    } else if (errno != EINTR) {
      QXSystem::QXThrow.Error("cannot write to standard output: %s", std::strerror(errno));
      std::_Exit(CannotRun);
    }
  }
}

}  // namespace

void Print(std::string_view text) {
  Buffer() += text;
  if (Buffer().size() >= kBufferSize) FlushOutput();
}

void FlushOutput() {
  WriteAll(Buffer());
  Buffer().clear();
}

bool IsOutputTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}

}  // namespace qxfp
