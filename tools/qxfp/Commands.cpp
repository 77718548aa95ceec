#include <algorithm>

#include "Command.h"

namespace qxfp {

extern const Command createCommand;
extern const Command indexCommand;
extern const Command infoCommand;
extern const Command searchCommand;
extern const Command matrixCommand;
extern const Command histogramCommand;
extern const Command compareCommand;
extern const Command explainCommand;
extern const Command fpCommand;

namespace {
constexpr const Command* kCommands[] = {&createCommand,  &indexCommand,   &infoCommand,
                                        &searchCommand,  &matrixCommand,  &histogramCommand,
                                        &compareCommand, &explainCommand, &fpCommand};
}

std::span<const Command* const> GetCommands() {
  return kCommands;
}

const Command* FindCommand(std::string_view name) {
  const auto found = std::ranges::find(
      kCommands, name, [](const Command* command) { return std::string_view(command->name); });
  return found == std::end(kCommands) ? nullptr : *found;
}

}  // namespace qxfp
