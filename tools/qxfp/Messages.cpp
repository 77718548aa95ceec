#include "Messages.h"

#include <unistd.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "QXSystem/QXErrorHandler.h"
#include "Text.h"

namespace qxfp {

namespace {

constexpr const char* kEraseLine = "\r\033[K";

constexpr const char* kLevelNames[] = {"debug", "verbose", "info", "warning", "error"};

std::mutex mutex;
std::string statusLine;
std::string renamed;  // empty: nothing
std::string knownName;

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
  const std::lock_guard lock(mutex);
  std::string known = text;
  const std::size_t at = renamed.empty() ? std::string::npos : known.find(renamed);
  if (at != std::string::npos) known.replace(at, renamed.size(), knownName);
  std::string line = std::string("qxfp: ") + levelName + ": " + ForTerminal(known) + "\n";
  if (!statusLine.empty()) line = kEraseLine + line + statusLine;
  WriteToStandardError(line);
}

}  // namespace

void InstallMessages() {
  QXSystem::QXThrow.SetSink(WriteMessage);
}

void RenameInMessages(const std::string& name, const std::string& nameToShow) {
  const std::lock_guard lock(mutex);
  renamed = name;
  knownName = nameToShow;
}

bool SucceedsQuietly(const std::function<void()>& work) {
  std::vector<QXSystem::QXErrorMessage> messages;
  {
    const QXSystem::QXErrorCollector collector(QXSystem::QXThrow.GetLevel());
    work();
    messages = collector.Messages();
  }
  for (const auto& message : messages) QXSystem::QXThrow.Report(message.level, message.text);
  return std::ranges::none_of(
      messages, [](const auto& message) { return message.level >= QXSystem::QXErrorLevel::Warning; });
}

std::string JoinMessages(const QXSystem::QXErrorCollector& collector) {
  std::string texts;
  for (const auto& message : collector.Messages()) texts += (texts.empty() ? "" : "; ") + message.text;
  return texts;
}

void ShowStatusLine(std::string_view text) {
  const std::lock_guard lock(mutex);
  if (text.empty() && statusLine.empty()) return;
  statusLine = text;
  WriteToStandardError(kEraseLine + statusLine);
}

}  // namespace qxfp
