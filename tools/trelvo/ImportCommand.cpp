#include "tools/trelvo/ImportCommand.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/ImportFormat.h"
#include "tools/trelvo/ImportOutput.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/NmeaFields.h"
#include "tools/trelvo/Progress.h"

namespace trelvo::tool {

namespace {

constexpr const char* kStandard = "-";

constexpr const char* kExamples =
    "Levels in dBm become the reporting codes of the 3GPP documents; what the schema has no place "
    "for is\n"
    "left out, counted and reported with file and line.\n\n"
    "Examples:\n"
    "  trelvo import drive.log reports.json -o drive.trelvo\n"
    "  trelvo import cell_towers.csv -o towers.trelvo --verify\n"
    "  xz -dc reports.json.xz | trelvo import - -o - | trelvo show -\n"
    "  trelvo import --date 2025-09-04 --verify nodate.log -o fixes.trelvo";

struct ImportOptions {
  std::vector<std::string> files;
  std::string output;
  ImportFormat format = ImportFormat::Auto;
  std::string dateText;
  bool verify = false;
};

std::optional<NmeaDate> parseDate(const std::string& text) {
  const bool shaped = text.size() == 10 && text[4] == '-' && text[7] == '-';
  return shaped ? nmeaDate(text.substr(8), text.substr(5, 2), text.substr(0, 4)) : std::nullopt;
}

std::string checkDate(const std::string& text) {
  return parseDate(text) ? std::string() : "no date of the form YYYY-MM-DD: " + text;
}

class Import {
 public:
  Import(const ImportOptions& options, CommandContext& context)
      : m_options(options), m_context(context), m_date(parseDate(options.dateText)) {}

  int run() {
    checkUsage();
    try {
      return m_options.output == kStandard ? writeStandardOutput() : writeFile();
    } catch (const ReaderGone&) {
      m_report.print(m_context.err);
      return kExitGood;
    } catch (const ImportError& error) {
      m_report.print(m_context.err);
      m_context.err << "trelvo: " << error.what() << std::endl;
      return kExitFailed;
    }
  }

 private:
  void checkUsage() const {
    const auto& files = m_options.files;
    const auto standard = std::count(files.begin(), files.end(), kStandard);
    if (standard > 1) {
      throw CLI::ValidationError("FILE", "standard input can be read only once");
    }
    if (m_options.verify &&
        (m_options.output == kStandard || !std::all_of(files.begin(), files.end(), isReadTwice))) {
      throw CLI::ValidationError("--verify", "needs regular files, in and out");
    }
  }

  // A file that is not there is told when its turn comes.
  static bool isReadTwice(const std::string& name) {
    std::error_code error;
    const auto type = std::filesystem::status(name, error).type();
    return name != kStandard && (type == std::filesystem::file_type::regular ||
                                 type == std::filesystem::file_type::not_found);
  }

  int writeStandardOutput() {
    m_context.out.flush();
    ContainerWriter writer(m_context.outputDescriptor, "standard output");
    const bool any = importAll(m_report, writer);
    writer.finish();
    return conclude(any, writer);
  }

  int writeFile() {
    ImportFile file(m_options.output);
    ContainerWriter writer(file.descriptor(), m_options.output);
    const bool any = importAll(m_report, writer);
    writer.finish();
    if (any && m_options.verify) {
      verify(file);
    }
    if (any) {
      file.commit();
    }
    return conclude(any, writer);
  }

  int conclude(bool any, const ContainerWriter& writer) {
    m_report.print(m_context.err);
    if (!any) {
      m_context.err << "trelvo: nothing could be read" << std::endl;
      return kExitFailed;
    }
    m_context.err << "trelvo: wrote " << writer.counts().text() << "; " << writer.bytes()
                  << " bytes" << std::endl;
    return kExitGood;
  }

  void verify(const ImportFile& file) {
    ImportReport again;
    ContainerVerifier verifier(file.currentPath(), m_options.output);
    importAll(again, verifier);
    verifier.finish();
    m_context.out << verifier.count() << " containers read back, all equal" << std::endl;
  }

  bool importAll(ImportReport& report, ImportTarget& target) {
    Progress progress(m_context.err, m_context.errorIsTerminal, totalSize());
    std::uint64_t before = 0;
    bool any = false;
    for (const std::string& name : m_options.files) {
      DescriptorStream input = open(name);
      input.onBlock([&](std::uint64_t bytes) { progress.update(before + bytes); });
      any = importStream(input, messageName(name), m_options.format, m_date, report, target) || any;
      if (input.error() != 0) {
        throw ImportError(messageName(name) + ": " + std::strerror(input.error()));
      }
      before += input.position();
    }
    return any;
  }

  DescriptorStream open(const std::string& name) const {
    if (name == kStandard) {
      return DescriptorStream(m_context.inputDescriptor);
    }
    UniqueFd file = openForReading(name.c_str());
    if (!file) {
      throw ImportError(name + ": " + std::strerror(errno));
    }
    return DescriptorStream(std::move(file));
  }

  static std::string messageName(const std::string& name) {
    return name == kStandard ? "standard input" : name;
  }

  // Nothing when one of the inputs has no size, a pipe for instance. A pipe is not opened to ask:
  // its writer would see that reader go.
  std::optional<std::uint64_t> totalSize() const {
    std::uint64_t total = 0;
    for (const std::string& name : m_options.files) {
      std::error_code error;
      const auto size = std::filesystem::file_size(name, error);
      if (error) {
        return std::nullopt;
      }
      total += size;
    }
    return total;
  }

  const ImportOptions& m_options;
  CommandContext& m_context;
  std::optional<NmeaDate> m_date;
  ImportReport m_report;
};

const std::map<std::string, ImportFormat> kFormats = {{"auto", ImportFormat::Auto},
                                                      {"cells", ImportFormat::Cells},
                                                      {"geosubmit", ImportFormat::Geosubmit},
                                                      {"nmea", ImportFormat::Nmea}};

}  // namespace

void addImportCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<ImportOptions>();
  CLI::App* command = app.add_subcommand("import",
                                         "Turn geosubmit reports and NMEA logs into measurement "
                                         "containers, lists of cell towers into injections");
  command->add_option("FILE", options->files, "Input files; - is standard input")->required();
  command->add_option("-o,--output", options->output, "File to write; - is standard output")
      ->required();
  command->add_option("--format", options->format, "auto (by content), cells, geosubmit or nmea")
      ->transform(CLI::CheckedTransformer(kFormats));
  command
      ->add_option("--date", options->dateText,
                   "Day, YYYY-MM-DD, of fixes whose log names none (NMEA)")
      ->check(checkDate);
  command->add_flag("--verify", options->verify, "Read the file back and compare every container");
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Import(*options, context).run(); });
}

}  // namespace trelvo::tool
