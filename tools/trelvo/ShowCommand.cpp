#include "tools/trelvo/ShowCommand.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Progress.h"
#include "tools/trelvo/ShowObjects.h"
#include "tools/trelvo/ShowRaw.h"
#include "tools/trelvo/ShowWriter.h"

namespace trelvo::tool {
namespace {

constexpr const char* kStandardInput = "-";

constexpr const char* kExamples =
    "Examples:\n"
    "  trelvo show drive.trelvo             a readable tree\n"
    "  trelvo show --ndjson drive.trelvo | grep WlanMeasurement\n"
    "  trelvo show --raw - < unknown.bin    offsets, tags and bytes";

struct ShowOptions {
  std::string file;
  bool json = false;
  bool jsonLines = false;
  bool raw = false;
};

class Show {
 public:
  Show(const ShowOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  int run() {
    if (m_options.file == kStandardInput) {
      DescriptorStream input(m_context.inputDescriptor);
      return showStream(input);
    }
    UniqueFd file = openForReading(m_options.file.c_str());
    if (!file) {
      return fail(std::strerror(errno));
    }
    DescriptorStream input(std::move(file));
    return showStream(input);
  }

 private:
  int showStream(DescriptorStream& input) {
    const std::string problem = m_options.raw ? showRaw(input) : showDecoded(input);
    m_context.out.flush();
    return problem.empty() ? kExitGood : fail(problem);
  }

  std::string showRaw(DescriptorStream& input) {
    ShowRaw handler(m_context.out);
    return showObjects(input, handler);
  }

  std::string showDecoded(DescriptorStream& input) {
    const std::unique_ptr<ShowWriter> writer = makeWriter();
    ShowObjects handler(*writer, m_context.out);
    std::string problem = showObjects(input, handler);
    writer->finish();
    return problem;
  }

  std::unique_ptr<ShowWriter> makeWriter() {
    return m_options.json        ? makeJsonWriter(m_context.out)
           : m_options.jsonLines ? makeJsonLinesWriter(m_context.out)
                                 : makeTreeWriter(m_context.out);
  }

  // Gives what went wrong, empty when nothing did.
  std::string showObjects(DescriptorStream& input, WireHandler& handler) {
    // On one terminal the bar and the objects would overwrite each other.
    Progress progress(m_context.err, m_context.errorIsTerminal && !m_context.outputIsTerminal,
                      input.size());
    input.onBlock([&progress](std::uint64_t bytes) { progress.update(bytes); });
    WireParser parser(input, input.position(), handler);
    bool whole = true;
    while (whole && !handler.stopped() && !input.eof()) {
      whole = parser.parseObject();
    }
    input.onBlock(nullptr);
    return input.error() != 0 ? std::strerror(input.error()) : faultText(parser.fault());
  }

  static std::string faultText(const WireFault& fault) {
    return fault.reason.empty()
               ? ""
               : "stops at byte " + std::to_string(fault.offset) + ": " + fault.reason;
  }

  int fail(const std::string& reason) {
    const bool standard = m_options.file == kStandardInput;
    m_context.err << "trelvo: " << (standard ? "standard input" : m_options.file) << ": " << reason
                  << std::endl;
    return kExitFailed;
  }

  const ShowOptions& m_options;
  CommandContext& m_context;
};

}  // namespace

void addShowCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App* command = app.add_subcommand("show", "Print measurement containers and injections");
  command->add_option("FILE", options->file, "File in the wire format; - is standard input")
      ->required();
  auto* json = command->add_flag("--json", options->json, "One JSON array with all objects");
  auto* lines = command->add_flag("--ndjson", options->jsonLines, "One JSON object a line");
  auto* raw = command->add_flag("--raw", options->raw,
                                "Offsets, bytes, tags and keys of any generic objects");
  json->excludes(lines)->excludes(raw);
  lines->excludes(raw);
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Show(*options, context).run(); });
}

}  // namespace trelvo::tool
