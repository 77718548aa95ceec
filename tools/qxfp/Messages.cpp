#include "Messages.h"

#include <unistd.h>

#include <mutex>

#include "QXSystem/QXErrorHandler.h"
#include "Text.h"

namespace qxfp {

namespace {

constexpr const char* kEraseLine = "\r\033[K";

constexpr const char* kLevelNames[] = {"debug", "verbose", "info", "warning", "error"};

std::mutex mutex;
std::string statusLine;

// Standard error may be closed or its reader gone: messages are then lost, the work goes on.
void WriteToStandardError(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void WriteMessage(QXSystem::QXErrorLevel level, const std::string& text) {
  const char* levelName = kLevelNames[static_cast<unsigned>(level)];
  std::string line = std::string("qxfp: ") + levelName + ": " + ForTerminal(text) + "\n";
  const std::lock_guard lock(mutex);
  if (!statusLine.empty()) line = kEraseLine + line + statusLine;
  WriteToStandardError(line);
}

}  // namespace

void InstallMessages() {
  QXSystem::QXThrow.SetSink(WriteMessage);
}

void ShowStatusLine(std::string_view text) {
  const std::lock_guard lock(mutex);
  if (text.empty() && statusLine.empty()) return;
  statusLine = text;
  WriteToStandardError(kEraseLine + statusLine);
}

}  // namespace qxfp
