#include "tools/trelvo/ImportCommand.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/ImportFormat.h"
#include "tools/trelvo/ImportOutput.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportTime.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/OutputFile.h"
#include "tools/trelvo/Progress.h"
#include "tools/trelvo/SealedStore.h"
#include "tools/trelvo/SealedStream.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

namespace {

constexpr const char* kExamples =
    "Levels in dBm become the reporting codes of the 3GPP documents; what the schema has no place "
    "for is\n"
    "left out, counted and reported with file and line.\n\n"
    "Examples:\n"
    "  trelvo import drive.log reports.json -o drive.trelvo\n"
    "  trelvo import cell_towers.csv -o towers.trelvo --verify\n"
    "  xz -dc reports.json.xz | trelvo import - -o - | trelvo show -\n"
    "  trelvo import --date 2025-09-04 --verify nodate.log -o fixes.trelvo\n"
    "  iw dev wlan0 scan | trelvo import --time now - -o scan.trelvo\n"
    "  mmcli -m 0 --get-cell-info -J | trelvo import --time now - -o cells.trelvo\n"
    "  trelvo import drive.log -o drive.sealed --sealed drive-0904 --storage keys";

struct ImportOptions {
  std::vector<std::string> files;
  std::string output;
  ImportFormat format = ImportFormat::Auto;
  std::string dateText;
  std::string timeText;
  bool verify = false;
  StoreOptions store;
};

/// What an import wrote.
struct Written {
  bool any;  // whether any input could be read
  ImportCounts counts;
  std::uint64_t bytes;
};

std::string checkDate(const std::string& text) {
  return dayOf(text) ? std::string() : "no date of the form YYYY-MM-DD: " + text;
}

std::string checkTime(const std::string& text) {
  return momentOf(text) ? std::string()
                        : "no time of the form YYYY-MM-DDTHH:MM:SSZ, Unix seconds or now: " + text;
}

class Import {
 public:
  Import(const ImportOptions& options, CommandContext& context)
      : m_options(options),
        m_context(context),
        m_clock{dayOf(options.dateText), momentOf(options.timeText)} {}

  int run() {
    checkUsage();
    return reporting(m_context, [this] {
      try {
        conclude(m_options.output == kStandard ? writeStandardOutput() : writeFile());
      } catch (const std::runtime_error&) {
        m_report.print(m_context.err);
        throw;
      }
    });
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
    if (isSealed() && m_options.output == kStandard) {
      throw CLI::ValidationError("--sealed",
                                 "needs a file that can be sought, not standard output");
    }
  }

  // A file that is not there is told when its turn comes.
  static bool isReadTwice(const std::string& name) {
    std::error_code error;
    const auto type = std::filesystem::status(name, error).type();
    return name != kStandard && (type == std::filesystem::file_type::regular ||
                                 type == std::filesystem::file_type::not_found);
  }

  bool isSealed() const { return !m_options.store.name.empty(); }

  Written writeStandardOutput() {
    m_context.out.flush();
    DescriptorStream output(m_context.outputDescriptor);
    return importInto(output, "standard output");
  }

  Written writeFile() {
    const Store store = isSealed() ? openStoreForSealing(m_options.store) : Store();
    OutputFile file(m_options.output, isSealed() ? kModePrivate : kModeShared);
    const Written written = writeDescriptor(file.descriptor(), store);
    if (written.any && m_options.verify) {
      verify(file.currentPath(), store);
    }
    if (written.any) {
      file.commit();
    }
    return written;
  }

  // An empty handle stands for no store.
  Written writeDescriptor(int descriptor, const Store& store) {
    DescriptorStream output(descriptor);
    if (!store) {
      return importInto(output, m_options.output);
    }
    SealedStream sealed(output, m_options.output, *store);
    return importInto(sealed, m_options.output);
  }

  Written importInto(FileStream& output, const std::string& name) {
    ContainerWriter writer(output, name);
    const bool any = importAll(m_report, writer);
    writer.finish();
    return {any, writer.counts(), writer.bytes()};
  }

  void conclude(const Written& written) {
    if (!written.any) {
      throw Failure("nothing could be read");
    }
    m_report.print(m_context.err);
    m_context.err << "trelvo: wrote " << written.counts.text() << "; " << written.bytes << " bytes"
                  << std::endl;
  }

  void verify(const std::string& path, const Store& store) {
    DescriptorStream file(openForReading(path.c_str()));
    if (!store) {
      return verifyStream(file);
    }
    SealedStream sealed(file, m_options.output, *store);
    verifyStream(sealed);
  }

  void verifyStream(FileStream& stream) {
    ImportReport again;
    ContainerVerifier verifier(stream, m_options.output);
    importAll(again, verifier);
    verifier.finish();
    m_context.out << verifier.count() << " containers read back, all equal" << std::endl;
  }

  bool importAll(ImportReport& report, ImportTarget& target) {
    Progress progress(m_context.err, m_context.errorIsTerminal, totalSize());
    std::uint64_t before = 0;
    bool any = false;
    for (const std::string& name : m_options.files) {
      DescriptorStream input = openInput(name, m_context);
      input.onBlock([&](std::uint64_t bytes) { progress.update(before + bytes); });
      any = importStream(input, inputName(name), m_options.format, m_clock, report, target) || any;
      checkRead(input, inputName(name));
      before += input.position();
    }
    return any;
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
  ImportClock m_clock;
  ImportReport m_report;
};

const std::map<std::string, ImportFormat> kFormats = {{"auto", ImportFormat::Auto},
                                                      {"cells", ImportFormat::Cells},
                                                      {"geolocate", ImportFormat::Geolocate},
                                                      {"geosubmit", ImportFormat::Geosubmit},
                                                      {"iw", ImportFormat::Iw},
                                                      {"mmcli", ImportFormat::Mmcli},
                                                      {"nmea", ImportFormat::Nmea},
                                                      {"qeng", ImportFormat::Qeng}};

}  // namespace

void addImportCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<ImportOptions>();
  CLI::App* command = app.add_subcommand("import",
                                         "Turn receiver logs, WLAN scans, modem output and "
                                         "geosubmit reports into measurement containers, lists "
                                         "of cell towers into injections");
  command->add_option("FILE", options->files, "Input files; - is standard input")->required();
  command->add_option("-o,--output", options->output, "File to write; - is standard output")
      ->type_name("OUT")
      ->required();
  command
      ->add_option("--format", options->format,
                   "auto (by content), cells (CSV of OpenCellID), geolocate (JSON requests), "
                   "geosubmit (JSON reports), iw (iw dev INTERFACE scan), mmcli (mmcli -J), nmea "
                   "(receiver logs) or qeng (answers to AT+QENG)")
      ->type_name("FORMAT")
      ->transform(CLI::CheckedTransformer(kFormats));
  command
      ->add_option("--date", options->dateText,
                   "Day, YYYY-MM-DD, of fixes whose log names none (NMEA)")
      ->type_name("DATE")
      ->check(checkDate);
  command
      ->add_option("--time", options->timeText,
                   "When input without a clock was printed (geolocate, iw, mmcli, qeng): "
                   "YYYY-MM-DDTHH:MM:SSZ, Unix seconds or now")
      ->type_name("TIME")
      ->check(checkTime);
  command->add_flag("--verify", options->verify, "Read the file back and compare every container");
  addSealedOptions(*command, options->store,
                   "Seal the output with the key of the store NAME: see trelvo seal");
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Import(*options, context).run(); });
}

}  // namespace trelvo::tool
