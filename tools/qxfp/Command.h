#pragma once

#include <span>
#include <string_view>

#include "ExitStatus.h"
#include "QXSystem/QXInterface.h"

namespace qxfp {

/// One command of the program. A new one is a file that defines a Command, and a line in Commands.cpp.
struct Command {
  const char* name;
  const char* arguments;                          ///< what follows the name, for the usage line
  const char* brief;                              ///< one line for the overview
  const char* detail;                             ///< paragraphs for the command's own help
  void (*configure)(QXSystem::QXInterface& itf);  ///< adds the parameters
  ExitStatus (*run)(const QXSystem::QXInterface& itf);
};

/// In the order of the overview.
std::span<const Command* const> GetCommands();

const Command* FindCommand(std::string_view name);

}  // namespace qxfp
