#pragma once

#include <string>
#include <vector>

#include "QXSystem/QXErrorHandler.h"

namespace QXTest {

using Reports = std::vector<std::string>;

inline const Reports silence;

/// What a call reports at or above a level, one "Warning: text" each.
template <class Call>
Reports ReportsOf(Call call, QXSystem::QXErrorLevel level = QXSystem::QXErrorLevel::Info) {
  constexpr const char* names[] = {"Debug: ", "Verbose: ", "Info: ", "Warning: ", "Error: "};
  const QXSystem::QXErrorCollector collector(level);
  call();
  Reports reports;
  for (const QXSystem::QXErrorMessage& message : collector.Messages()) {
    reports.push_back(names[static_cast<unsigned>(message.level)] + message.text);
  }
  return reports;
}

}  // namespace QXTest
