#pragma once

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXSystem {

/// How grave a report is, mildest first.
enum class QXErrorLevel : unsigned { Debug, Verbose, Info, Warning, Error };

/// The place where the library reports what went wrong. There is one of it, QXThrow; in spite of the name
/// it throws nothing and never ends the process.
///
/// A report goes to the innermost QXErrorCollector if there is one, else to the sink, else to standard error
/// as one line ("Warning: text").
/// Threads  all methods may be called from any thread, also before main() starts and after it has ended.
class QX_API QXErrorHandler {
 public:
  /// Called without any lock held, and by several threads at once if they report at once. A report that a
  /// sink makes itself goes to standard error.
  using Sink = std::function<void(QXErrorLevel, const std::string& text)>;

  constexpr QXErrorHandler() = default;
  QXErrorHandler(const QXErrorHandler&) = delete;
  QXErrorHandler& operator=(const QXErrorHandler&) = delete;

  [[gnu::format(printf, 2, 3)]] void Debug(const char* format, ...);
  [[gnu::format(printf, 2, 3)]] void Verbose(const char* format, ...);
  [[gnu::format(printf, 2, 3)]] void Info(const char* format, ...);
  [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...);
  [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...);

  /// Reports a finished text; no placeholder in it is looked at.
  void Report(QXErrorLevel level, const std::string& text);

  /// Reports below this level are dropped, at the cost of one comparison. At first Info.
  void SetLevel(QXErrorLevel level);
  QXErrorLevel GetLevel() const;

  /// Sends reports to a function of the caller's; an empty one brings standard error back.
  void SetSink(Sink sink);

 private:
  bool IsWanted(QXErrorLevel level) const;
  void ReportFormatted(QXErrorLevel level, const char* format, std::va_list arguments);
  void Deliver(QXErrorLevel level, const std::string& text);

  std::atomic<QXErrorLevel> level_{QXErrorLevel::Info};
  std::shared_ptr<const Sink>* sink_ = nullptr;  // made at the first SetSink, kept for reports at exit
};

/// The process-wide error handler.
extern QX_API QXErrorHandler QXThrow;

struct QXErrorMessage {
  QXErrorLevel level;
  std::string text;
};

/// While it lives, takes every report of at least its level, from every thread, instead of the sink and of
/// any collector made earlier; milder reports are dropped. The handler's own level does not matter meanwhile.
/// Threads  all methods are safe while other threads report.
class QX_API QXErrorCollector {
 public:
  explicit QXErrorCollector(QXErrorLevel level = QXErrorLevel::Info);
  ~QXErrorCollector();
  QXErrorCollector(const QXErrorCollector&) = delete;
  QXErrorCollector& operator=(const QXErrorCollector&) = delete;

  std::vector<QXErrorMessage> Messages() const;
  std::size_t Count() const;
  void Clear();

 private:
  friend class QXErrorHandler;

  const QXErrorLevel level_;
  QXErrorCollector* outer_;
  std::vector<QXErrorMessage> messages_;
};

}  // namespace QXSystem
