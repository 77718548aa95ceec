// qxfp: molecular fingerprints and similarity search on the command line.

#include <csignal>
#include <exception>
#include <string>
#include <string_view>

#include "Command.h"
#include "Messages.h"
#include "QXSystem/QXErrorHandler.h"
#include "StandardOutput.h"

namespace qxfp {

namespace {

using QXSystem::QXThrow;

ExitStatus PrintOverview() {
  Print(
      "qxfp: molecular fingerprints and similarity search\n"
      "\n"
      "usage: qxfp COMMAND ARGUMENTS [OPTIONS]\n"
      "\n");
  for (const Command* command : GetCommands()) {
    std::string name = command->name;
    name.resize(12, ' ');
    Print("  " + name + command->brief + "\n");
  }
  Print(
      "\n"
      "qxfp help COMMAND    the arguments and options of a command\n"
      "qxfp --version       the version\n"
      "\n"
      "Molecule files: .smi .ism .smiles .sdf .sd .mol .mol2, each also with .gz.\n"
      "Exit status: 0 done, 1 some inputs failed, 2 wrong usage, 3 cannot run.\n");
  return Done;
}

ExitStatus PrintHelp(const Command& command, const QXSystem::QXInterface& itf) {
  const std::string usage =
      std::string("usage: qxfp ") + command.name + " " + command.arguments + " [OPTIONS]";
  Print(QXSystem::QXGetInterfaceHelp(itf, usage) + "\n" + command.detail);
  return Done;
}

QXSystem::QXInterface MakeInterface(const Command& command) {
  QXSystem::QXInterface itf(command.name, command.brief);
  command.configure(itf);
  itf.AddParameter(QXSystem::QXParameter("-verbose", QXSystem::QXParameterType::Bool)
                       .SetBrief("Also tells how it is done")
                       .SetDefault("false"));
  return itf;
}

ExitStatus RefuseCommand(std::string_view name) {
  QXThrow.Error("'%s' is no command; `qxfp help` lists them", std::string(name).c_str());
  return BadUsage;
}

ExitStatus Help(int argc, const char* const* argv) {
  if (argc <= 2) return PrintOverview();
  const Command* command = FindCommand(argv[2]);
  return command ? PrintHelp(*command, MakeInterface(*command)) : RefuseCommand(argv[2]);
}

ExitStatus RunCommand(const Command& command, int argc, const char* const* argv) {
  QXSystem::QXInterface itf = MakeInterface(command);
  switch (QXSystem::QXParseCommandLine(itf, argc - 1, argv + 1)) {
    case QXSystem::QXParseResult::Ok:
      if (itf.Get<bool>("-verbose")) QXThrow.SetLevel(QXSystem::QXErrorLevel::Verbose);
      return command.run(itf);
    case QXSystem::QXParseResult::Help:
      return PrintHelp(command, itf);
    default:
      QXThrow.Error("`qxfp help %s` shows the arguments and options", command.name);
      return BadUsage;
  }
}

ExitStatus Run(int argc, const char* const* argv) {
  const std::string_view first = argc > 1 ? argv[1] : "help";
  if (first == "help" || first == "--help" || first == "-help" || first == "-h") return Help(argc, argv);
  if (first == "--version" || first == "-version") {
    Print("qxfp " QXFP_VERSION "\n");
    return Done;
  }
  const Command* command = FindCommand(first);
  return command ? RunCommand(*command, argc, argv) : RefuseCommand(first);
}

}  // namespace

}  // namespace qxfp

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is seen where it is written to
  qxfp::InstallMessages();
  try {
    const qxfp::ExitStatus status = qxfp::Run(argc, argv);
    qxfp::FlushOutput();
    return status;
  } catch (const std::exception& failure) {  // out of memory, for one
    QXSystem::QXThrow.Error("cannot go on: %s", failure.what());
    return qxfp::CannotRun;
  }
}
