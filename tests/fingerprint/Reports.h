#pragma once

#include <string>
#include <vector>

#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix::test {

using Reports = std::vector<std::string>;

/// What a call reports, one "Warning: text" (Info, Error) each.
template <class Call>
Reports ReportsOf(Call call) {
  const QXSystem::QXErrorCollector collector;
  call();
  Reports reports;
  for (const QXSystem::QXErrorMessage& message : collector.Messages()) {
    const char* level = message.level == QXSystem::QXErrorLevel::Error     ? "Error: "
                        : message.level == QXSystem::QXErrorLevel::Warning ? "Warning: "
                                                                           : "Info: ";
    reports.push_back(level + message.text);
  }
  return reports;
}

inline const Reports none;

}  // namespace QXFingrix::test
