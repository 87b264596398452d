#include "tools/trelvo/App.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <memory>
#include <new>
#include <string>

#include "tools/trelvo/CommandTree.h"
#include "tools/trelvo/DiffCommand.h"
#include "tools/trelvo/ExportCommand.h"
#include "tools/trelvo/FetchCommand.h"
#include "tools/trelvo/GeoCommand.h"
#include "tools/trelvo/ImportCommand.h"
#include "tools/trelvo/LogCommand.h"
#include "tools/trelvo/MapCommand.h"
#include "tools/trelvo/NetCommand.h"
#include "tools/trelvo/ReplayCommand.h"
#include "tools/trelvo/SealCommand.h"
#include "tools/trelvo/ShowCommand.h"
#include "tools/trelvo/StatsCommand.h"

namespace trelvo::tool {
namespace {

constexpr const char* kDescription =
    "Puts radio observations, position fixes and known cells into containers, shows and seals "
    "them, "
    "computes with positions, "
    "and keeps encrypted logs.";

std::string usageMessage(const CLI::App*, const CLI::Error& error) {
  return std::string("trelvo: ") + error.what() + "\ntrelvo: run with --help for more\n";
}

int reportUsage(const CLI::App& app, const CLI::ParseError& error, CommandContext& context) {
  app.exit(error, context.out, context.err);
  return error.get_exit_code() == 0 ? kExitGood : kExitUsage;
}

int reportFailure(const char* reason, CommandContext& context) {
  context.err << "trelvo: " << reason << std::endl;
  return kExitFailed;
}

}  // namespace

std::unique_ptr<CLI::App> makeApp(CommandContext& context) {
  auto made = std::make_unique<CLI::App>(kDescription, "trelvo");
  CLI::App& app = *made;
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("--version", "trelvo " TRELVO_VERSION, "Show the version");
  app.failure_message(usageMessage);
  app.require_subcommand(1);
  app.footer("trelvo COMMAND --help tells more about a command.");
  addImportCommand(app, context);
  addShowCommand(app, context);
  addStatsCommand(app, context);
  addMapCommand(app, context);
  addDiffCommand(app, context);
  addExportCommand(app, context);
  addReplayCommand(app, context);
  addGeoCommand(app, context);
  addSealCommands(app, context);
  addLogCommand(app, context);
  addFetchCommand(app, context);
  addNetCommand(app, context);
  return made;
}

int runTrelvo(int argc, const char* const* argv, CommandContext& context) {
  const std::unique_ptr<CLI::App> made = makeApp(context);
  CLI::App& app = *made;
  try {
    app.parse(argc, argv);
    return context.exitStatus;
  } catch (const CLI::ParseError& error) {
    return reportUsage(app, error, context);
  } catch (const std::bad_alloc&) {
    return reportFailure("out of memory", context);
  } catch (const std::exception& error) {
    return reportFailure(error.what(), context);
  }
}

}  // namespace trelvo::tool
