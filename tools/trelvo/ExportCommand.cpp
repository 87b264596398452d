#include "tools/trelvo/ExportCommand.h"

#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "tools/trelvo/ContainerInput.h"
#include "tools/trelvo/ExportWriter.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/FeatureCollector.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/ShowObjects.h"
#include "tools/trelvo/TextFile.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

constexpr const char* kExamples =
    "Each measurement, known cell and known access point is one feature, with the names that\n"
    "trelvo show gives its fields. geojson, ndjson and csv hold all of them, also those without a\n"
    "position; kml and gpx those with one; geosubmit holds what import reads. What a format "
    "cannot\n"
    "carry is told once a kind. Angles are degrees, heights metres above the WGS84 ellipsoid, "
    "times\n"
    "UTC.\n\n"
    "Examples:\n"
    "  trelvo import geosubmit/geosubmit2.json -o drive.trelvo\n"
    "  trelvo export drive.trelvo --format geojson -o drive.geojson\n"
    "  trelvo export drive.trelvo --format gpx | gpsbabel -t -i gpx -f - -o kml -F drive.kml\n"
    "  trelvo export drive.trelvo --format csv -o drive.csv\n"
    "  trelvo export drive.trelvo --format geosubmit -o report.json";

struct ExportOptions {
  std::string file;
  std::string format;
  std::string output = kStandard;
  bool points = false;
  StoreOptions store;
};

using MakeWriter = std::unique_ptr<ExportWriter> (*)(const ExportTarget&, ExportShape);

template <auto Make>
std::unique_ptr<ExportWriter> withoutShape(const ExportTarget& target, ExportShape) {
  return Make(target);
}

const std::map<std::string, MakeWriter> kFormats = {
    {"csv", withoutShape<makeCsvWriter>},
    {"geojson", makeGeoJsonWriter},
    {"geosubmit", withoutShape<makeGeosubmitWriter>},
    {"gpx", withoutShape<makeGpxWriter>},
    {"kml", withoutShape<makeKmlWriter>},
    {"ndjson", withoutShape<makeNdjsonWriter>},
};

class Export {
 public:
  Export(const ExportOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  int run() {
    return reporting(m_context, [this] {
      const bool isToTerminal = isStandard() && m_context.outputIsTerminal;
      ContainerInput input(m_options.file, m_options.store, m_context, !isToTerminal);
      const std::string problem = isStandard() ? write(input, m_context.out) : writeFile(input);
      input.clearProgress();
      m_losses.print(m_context.err, m_options.format);
      if (!problem.empty()) {
        input.fail(problem);
      }
    });
  }

 private:
  bool isStandard() const { return m_options.output == kStandard; }

  // What stands ahead of damage is worth keeping, so the file gets its name all the same.
  std::string writeFile(ContainerInput& input) {
    std::string problem;
    writeTextFile(m_options.output, [&](std::ostream& out) { problem = write(input, out); });
    return problem;
  }

  // Gives what went wrong with the input, empty when nothing did.
  std::string write(ContainerInput& input, std::ostream& out) {
    const ExportShape shape = m_options.points ? ExportShape::Point : ExportShape::Outline;
    const auto writer = kFormats.at(m_options.format)({out, m_losses}, shape);
    writer->begin();
    std::string problem = writeFeatures(input.stream(), out, *writer);
    writer->end();
    out.flush();
    return problem;
  }

  static std::string writeFeatures(FileStream& input, const std::ostream& out,
                                   ExportWriter& writer) {
    FeatureCollector collector;
    ShowObjects handler(collector, out);
    WireParser parser(input, input.position(), handler);
    while (!input.eof() && parser.parseObject()) {
      for (const Feature& feature : collector.features()) {
        writer.feature(feature);
      }
    }
    return input.error() != 0 ? std::strerror(input.error()) : faultText(parser.fault());
  }

  const ExportOptions& m_options;
  CommandContext& m_context;
  ExportLosses m_losses;
};

}  // namespace

void addExportCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<ExportOptions>();
  CLI::App* command = app.add_subcommand(
      "export", "Turn containers into GeoJSON, GPX, KML, CSV, NDJSON or geosubmit reports");
  addContainerFile(*command, options->file);
  command
      ->add_option("--format", options->format,
                   "geojson (RFC 7946), gpx (1.1), kml (2.2), csv (RFC 4180), ndjson, or geosubmit "
                   "(JSON of version 2)")
      ->required()
      ->check(CLI::IsMember(kFormats));
  command->add_option("-o,--output", options->output,
                      "File to write; - is standard output, the default");
  command->add_flag("--points", options->points,
                    "Positions in geojson as points: without it the ellipse or circle of "
                    "uncertainty is drawn, a polygon of 64 points");
  addSealedOptions(*command, options->store);
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Export(*options, context).run(); });
}

}  // namespace trelvo::tool
