#include "tools/trelvo/MapCommand.h"

#include <filesystem>
#include <memory>
#include <string>

#include "tools/trelvo/ContainerReader.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/GeoResults.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/MapSvg.h"
#include "tools/trelvo/TextFile.h"

namespace trelvo::tool {
namespace {

constexpr const char* kExamples =
    "The map is true to scale at its middle latitude. Each uncertainty is drawn as it is stored: a "
    "circle\n"
    "of the circular error (CEP), or an ellipse whose semi-axes count as one standard deviation. "
    "The track\n"
    "breaks where time runs backwards or stands still for ten minutes. Where there is more than "
    "can be seen,\n"
    "the picture shows a part, and its legend says of how many.\n\n"
    "Examples:\n"
    "  trelvo map drive.trelvo -o drive.svg\n"
    "  trelvo map towers.trelvo -o towers.svg --tiles 16 --title 'San Francisco'\n"
    "  trelvo import drive.log -o - | trelvo map - -o - > drive.svg\n"
    "  trelvo map --sealed drive-0904 --storage keys drive.sealed -o drive.svg";

struct MapArguments {
  std::string file;
  std::string output;
  MapOptions map;
  StoreOptions store;
};

std::string titleOf(const MapArguments& arguments) {
  if (!arguments.map.title.empty()) {
    return arguments.map.title;
  }
  return arguments.file == kStandard ? inputName(kStandard)
                                     : std::filesystem::path(arguments.file).filename().string();
}

class MapRun {
 public:
  MapRun(const MapArguments& arguments, CommandContext& context)
      : m_arguments(arguments), m_context(context) {}

  int run() {
    return reporting(m_context, [this] {
      const std::string damage = gather();
      if (m_data.extent().isEmpty()) {
        throw Failure(damage.empty() ? inputName(m_arguments.file) +
                                           ": has no positions and no places of cells or access "
                                           "points; there is nothing to draw"
                                     : damage);
      }
      if (m_arguments.output == kStandard) {
        write(m_context.out);
      } else {
        writeTextFile(m_arguments.output, [this](std::ostream& out) { write(out); });
      }
      if (!damage.empty()) {
        throw Failure(damage);
      }
    });
  }

 private:
  // Gives why the file could not be read to its end, empty when it could: what stands ahead of the
  // damage is drawn.
  std::string gather() {
    ContainerReader reader(m_arguments.file, m_arguments.store, m_context);
    std::string damage;
    try {
      for (ContainerItem item; reader.next(item);) {
        m_data.add(item.object);
      }
    } catch (const Failure& failure) {
      damage = failure.what();
    }
    m_data.finish();
    return damage;
  }

  void write(std::ostream& out) {
    MapOptions options = m_arguments.map;
    options.title = titleOf(m_arguments);
    for (const std::string& remark : writeMap(out, m_data, options)) {
      m_context.err << "trelvo: " << inputName(m_arguments.file) << ": " << remark << std::endl;
    }
    out.flush();
  }

  const MapArguments& m_arguments;
  CommandContext& m_context;
  MapData m_data;
};

}  // namespace

void addMapCommand(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<MapArguments>();
  CLI::App* command = app.add_subcommand(
      "map", "Draw positions with their uncertainty, cells and access points as an SVG picture");
  addContainerFile(*command, arguments->file);
  command->add_option("-o,--output", arguments->output, "File to write; - is standard output")
      ->type_name("OUT.svg")
      ->required();
  command
      ->add_option("--tiles", arguments->map.tileLevel,
                   "Draw the grid of WLAN RM tiles of this level, from 6 (coarsest) to 23")
      ->type_name("LEVEL")
      ->check(CLI::Range(kCoarsestTile, kFinestTile));
  command
      ->add_option("--title", arguments->map.title,
                   "Heading of the picture (default: the file's name)")
      ->type_name("TEXT")
      ->check(checkNotEmpty);
  addSealedOptions(*command, arguments->store);
  command->footer(kExamples);
  command->callback(
      [arguments, &context] { context.exitStatus = MapRun(*arguments, context).run(); });
}

}  // namespace trelvo::tool
