#include "QXSystem/QXErrorHandler.h"

#include <array>
#include <cstdio>
#include <limits>
#include <mutex>
#include <type_traits>
#include <utility>

// Reports can come from static initialisers and from static destructors, so everything here is
// constant-initialised and nothing is destroyed at exit: the mutex has no destructor to run, and the sink is
// kept on purpose.

namespace QXSystem {

constinit QXErrorHandler QXThrow;

namespace {

static_assert(std::is_trivially_destructible_v<std::mutex>);
constinit std::mutex
    stateMutex;  // guards the collectors, their messages and the sink; never held in foreign code
constinit QXErrorCollector* innermost = nullptr;

// The innermost collector's level, so that a dropped report costs no lock.
constexpr unsigned noCollector = std::numeric_limits<unsigned>::max();
constinit std::atomic<unsigned> collectorLevel{noCollector};

thread_local bool isInSink = false;

std::string FormatText(const char* format, std::va_list arguments) {
  std::array<char, 512> buffer;
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  std::string text;
  if (length < 0) {
    text = format;
  } else if (static_cast<std::size_t>(length) < buffer.size()) {
    text.assign(buffer.data(), static_cast<std::size_t>(length));
  } else {
    text.resize(static_cast<std::size_t>(length));
    std::vsnprintf(text.data(), text.size() + 1, format, again);
  }
  va_end(again);
  return text;
}

void PrintLine(QXErrorLevel level, const std::string& text) {
  static constexpr std::array<const char*, 5> names = {"Debug", "Verbose", "Info", "Warning", "Error"};
  const auto index = static_cast<std::size_t>(level);
  std::string line = index < names.size() ? names[index] : names.back();
  line += ": ";
  line += text;
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);  // one call, so that lines of several threads stay whole
}

// False when the sink failed.
bool CallSink(const QXErrorHandler::Sink& sink, QXErrorLevel level, const std::string& text) {
  isInSink = true;
  bool isDone = true;
  try {
    sink(level, text);
  } catch (...) {
    isDone = false;  // the code that reports expects no exception from it
  }
  isInSink = false;
  return isDone;
}

}  // namespace

bool QXErrorHandler::IsWanted(QXErrorLevel level) const {
  const unsigned collected = collectorLevel.load(std::memory_order_relaxed);
  const unsigned least = collected == noCollector ? static_cast<unsigned>(GetLevel()) : collected;
  return static_cast<unsigned>(level) >= least;
}

void QXErrorHandler::Deliver(QXErrorLevel level, const std::string& text) {
  std::shared_ptr<const Sink> sink;
  {
    const std::lock_guard lock(stateMutex);
    if (innermost) {
      if (level >= innermost->level_) innermost->messages_.push_back({level, text});
      return;
    }
    if (sink_) sink = *sink_;
  }
  if (!sink || isInSink || !CallSink(*sink, level, text)) PrintLine(level, text);
}

void QXErrorHandler::Report(QXErrorLevel level, const std::string& text) {
  if (IsWanted(level)) Deliver(level, text);
}

void QXErrorHandler::ReportFormatted(QXErrorLevel level, const char* format, std::va_list arguments) {
  if (IsWanted(level)) Deliver(level, FormatText(format, arguments));
}

void QXErrorHandler::Debug(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ReportFormatted(QXErrorLevel::Debug, format, arguments);
  va_end(arguments);
}

void QXErrorHandler::Verbose(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ReportFormatted(QXErrorLevel::Verbose, format, arguments);
  va_end(arguments);
}

void QXErrorHandler::Info(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ReportFormatted(QXErrorLevel::Info, format, arguments);
  va_end(arguments);
}

void QXErrorHandler::Warning(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ReportFormatted(QXErrorLevel::Warning, format, arguments);
  va_end(arguments);
}

void QXErrorHandler::Error(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  ReportFormatted(QXErrorLevel::Error, format, arguments);
  va_end(arguments);
}

void QXErrorHandler::SetLevel(QXErrorLevel level) {
  level_.store(level, std::memory_order_relaxed);
}

QXErrorLevel QXErrorHandler::GetLevel() const {
  return level_.load(std::memory_order_relaxed);
}

void QXErrorHandler::SetSink(Sink sink) {
  auto shared = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
  const std::lock_guard lock(stateMutex);
  if (!sink_) sink_ = new std::shared_ptr<const Sink>;
  sink_->swap(shared);  // the old sink is destroyed after the lock is released, together with `shared`
}

QXErrorCollector::QXErrorCollector(QXErrorLevel level) : level_(level) {
  const std::lock_guard lock(stateMutex);
  outer_ = std::exchange(innermost, this);
  collectorLevel.store(static_cast<unsigned>(level), std::memory_order_relaxed);
}

QXErrorCollector::~QXErrorCollector() {
  const std::lock_guard lock(stateMutex);
  QXErrorCollector** link = &innermost;  // not always the innermost: another thread may have its own
  while (*link != this) link = &(*link)->outer_;
  *link = outer_;
  collectorLevel.store(innermost ? static_cast<unsigned>(innermost->level_) : noCollector,
                       std::memory_order_relaxed);
}

std::vector<QXErrorMessage> QXErrorCollector::Messages() const {
  const std::lock_guard lock(stateMutex);
  return messages_;
}

std::size_t QXErrorCollector::Count() const {
  const std::lock_guard lock(stateMutex);
  return messages_.size();
}

void QXErrorCollector::Clear() {
  const std::lock_guard lock(stateMutex);
  messages_.clear();
}

}  // namespace QXSystem
