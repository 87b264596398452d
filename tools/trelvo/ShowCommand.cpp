#include "tools/trelvo/ShowCommand.h"

#include <cstring>
#include <memory>
#include <string>

#include "tools/trelvo/ContainerInput.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/ShowObjects.h"
#include "tools/trelvo/ShowRaw.h"
#include "tools/trelvo/ShowWriter.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  trelvo show drive.trelvo             a readable tree\n"
    "  trelvo show --ndjson drive.trelvo | grep WlanMeasurement\n"
    "  trelvo show --raw - < unknown.bin    offsets, tags and bytes\n"
    "  trelvo show --sealed drive-0904 --storage keys drive.sealed";

struct ShowOptions {
  std::string file;
  bool json = false;
  bool jsonLines = false;
  bool raw = false;
  StoreOptions store;
};

class Show {
 public:
  Show(const ShowOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  int run() {
    return reporting(m_context, [this] {
      // On one terminal the bar and the objects would overwrite each other.
      ContainerInput input(m_options.file, m_options.store, m_context, !m_context.outputIsTerminal);
      const std::string problem =
          m_options.raw ? showRaw(input.stream()) : showDecoded(input.stream());
      m_context.out.flush();
      if (!problem.empty()) {
        input.fail(problem);
      }
    });
  }

 private:
  std::string showRaw(FileStream& input) const {
    ShowRaw handler(m_context.out);
    return showObjects(input, handler);
  }

  std::string showDecoded(FileStream& input) const {
    const std::unique_ptr<ShowWriter> writer = makeWriter();
    ShowObjects handler(*writer, m_context.out);
    std::string problem = showObjects(input, handler);
    writer->finish();
    return problem;
  }

  std::unique_ptr<ShowWriter> makeWriter() const {
    return m_options.json        ? makeJsonWriter(m_context.out)
           : m_options.jsonLines ? makeJsonLinesWriter(m_context.out)
                                 : makeTreeWriter(m_context.out);
  }

  // Gives what went wrong, empty when nothing did.
  static std::string showObjects(FileStream& input, WireHandler& handler) {
    WireParser parser(input, input.position(), handler);
    bool whole = true;
    while (whole && !handler.stopped() && !input.eof()) {
      whole = parser.parseObject();
    }
    return input.error() != 0 ? std::strerror(input.error()) : faultText(parser.fault());
  }

  const ShowOptions& m_options;
  CommandContext& m_context;
};

}  // namespace

void addShowCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App* command = app.add_subcommand("show", "Print measurement containers and injections");
  addContainerFile(*command, options->file);
  auto* json = command->add_flag("--json", options->json, "One JSON array with all objects");
  auto* lines = command->add_flag("--ndjson", options->jsonLines, "One JSON object a line");
  auto* raw = command->add_flag("--raw", options->raw,
                                "Offsets, bytes, tags and keys of any generic objects");
  json->excludes(lines)->excludes(raw);
  lines->excludes(raw);
  addSealedOptions(*command, options->store);
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Show(*options, context).run(); });
}

}  // namespace trelvo::tool
