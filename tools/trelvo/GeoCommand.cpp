#include "tools/trelvo/GeoCommand.h"

#include <trelvo/schema/Utility.h>

#include <array>
#include <charconv>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/trelvo/GeoResults.h"

namespace trelvo::tool {

namespace {

constexpr const char* kExamples =
    "Latitudes and longitudes are degrees, positive to the north and to the east.\n\n"
    "Examples:\n"
    "  trelvo geo distance 37.788 -122.394 37.771 -122.428\n"
    "  trelvo geo bearing 0 179 0 -179 --json\n"
    "  trelvo geo ellipse 60 200 50 30\n"
    "  trelvo geo tile 37.788 -122.394 16 --geojson > tile.geojson\n"
    "  trelvo geo tile 7344105718";

constexpr const char* kNoBearing =
    "no bearing from a pole, to the antipode or between points this close";
constexpr const char* kNoEllipse = "no ellipse at a pole";

constexpr double kLongestAxis = 2e7;  // half way round the earth

/// What one geo command was asked; it lives as long as its command.
struct GeoOptions {
  std::array<std::string, 4> texts;  ///< numbers, checked
  std::vector<std::string> place;
  bool json = false;
  bool geojson = false;
};

struct Bound {
  double least;
  double most;
  bool mostBelongs;  // whether `most` itself is allowed
};

constexpr Bound kLatitude = {-90.0, 90.0, true};
constexpr Bound kLongitude = {-180.0, 180.0, true};
constexpr Bound kAxis = {0.0, kLongestAxis, true};
constexpr Bound kAngle = {-360.0, 360.0, true};
constexpr Bound kTileLatitude = {-90.0, 90.0, false};
constexpr Bound kTileLongitude = {-180.0, 180.0, false};
constexpr Bound kTileLevel = {kCoarsestTile, kFinestTile, true};

template <class Number>
std::optional<Number> parsed(const std::string& text) {
  Number value{};
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  const bool whole = result.ec == std::errc() && result.ptr == end;
  return whole ? std::optional<Number>(value) : std::nullopt;
}

std::string checkText(const std::string& text, const Bound& bound) {
  const auto value = parsed<double>(text);
  const bool inside = value && *value >= bound.least &&
                      (bound.mostBelongs ? *value <= bound.most : *value < bound.most);
  return inside ? std::string()
                : text + " is no number from " + GeoResult(bound.least).dump() + " to " +
                      (bound.mostBelongs ? "" : "below ") + GeoResult(bound.most).dump();
}

class GeoAnswer {
 public:
  GeoAnswer(const GeoOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  void give(const GeoResult& result) const {
    if (m_options.json || m_options.geojson) {
      m_context.out << result.dump(2) << '\n';
    } else {
      m_context.out << textOf(result);
    }
  }

  void giveOr(const std::optional<GeoResult>& result, const std::string& whyNot) const {
    if (result) {
      return give(*result);
    }
    m_context.err << "trelvo: " << whyNot << std::endl;
    m_context.exitStatus = kExitFailed;
  }

 private:
  const GeoOptions& m_options;
  CommandContext& m_context;
};

using Options = std::shared_ptr<GeoOptions>;

/// Answers with the four values of a command.
using Compute = std::function<void(const double*, const GeoAnswer&)>;

void addJson(CLI::App& command, const Options& options) {
  command.add_flag("--json", options->json, "One JSON object");
}

void addValue(CLI::App& command, const Options& options, size_t index, const char* name,
              const char* description, const Bound& bound) {
  command.add_option(name, options->texts[index], description)
      ->required()
      ->check([bound](const std::string& text) { return checkText(text, bound); });
}

std::array<double, 4> valuesOf(const GeoOptions& options) {
  std::array<double, 4> values{};
  for (size_t i = 0; i < values.size(); ++i) {
    values[i] = parsed<double>(options.texts[i]).value();
  }
  return values;
}

Options addCommand(CLI::App& command, CommandContext& context, Compute compute) {
  auto options = std::make_shared<GeoOptions>();
  addJson(command, options);
  command.callback([options, &context, compute = std::move(compute)] {
    compute(valuesOf(*options).data(), GeoAnswer(*options, context));
  });
  return options;
}

void addOfTwoPositions(CLI::App& command, CommandContext& context, Compute compute) {
  const Options options = addCommand(command, context, std::move(compute));
  addValue(command, options, 0, "LAT1", "Latitude of the first point, degrees", kLatitude);
  addValue(command, options, 1, "LON1", "Longitude of the first point, degrees", kLongitude);
  addValue(command, options, 2, "LAT2", "Latitude of the second point, degrees", kLatitude);
  addValue(command, options, 3, "LON2", "Longitude of the second point, degrees", kLongitude);
}

void addDistance(CLI::App& geo, CommandContext& context) {
  CLI::App* command = geo.add_subcommand("distance", "Great-circle distance of two points, metres");
  addOfTwoPositions(*command, context, [](const double* v, const GeoAnswer& answer) {
    answer.give(distanceResult(v[0], v[1], v[2], v[3]));
  });
}

void addBearing(CLI::App& geo, CommandContext& context) {
  CLI::App* command = geo.add_subcommand(
      "bearing", "Initial bearing from one point to another, degrees clockwise from north");
  addOfTwoPositions(*command, context, [](const double* v, const GeoAnswer& answer) {
    answer.giveOr(bearingResult(v[0], v[1], v[2], v[3]), kNoBearing);
  });
}

void addEllipse(CLI::App& geo, CommandContext& context) {
  CLI::App* command =
      geo.add_subcommand("ellipse", "Covariance of an uncertainty ellipse, and its extents");
  const Options options =
      addCommand(*command, context, [](const double* v, const GeoAnswer& answer) {
        answer.giveOr(ellipseResult(v[0], v[1], v[2], v[3]), kNoEllipse);
      });
  addValue(*command, options, 0, "LAT", "Latitude of the centre, degrees", kLatitude);
  addValue(*command, options, 1, "MAJOR", "Semi-axis at ANGLE, metres", kAxis);
  addValue(*command, options, 2, "MINOR", "Semi-axis across it, metres", kAxis);
  addValue(*command, options, 3, "ANGLE", "Degrees clockwise from north", kAngle);
}

double tileNumber(const std::string& text, const char* name, const Bound& bound) {
  const std::string complaint = checkText(text, bound);
  if (!complaint.empty()) {
    throw CLI::ValidationError(name, complaint);
  }
  return *parsed<double>(text);
}

// Decimal, or hexadecimal behind 0x.
unsigned long long tileIdOf(const std::string& text) {
  const bool isHex = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
  const char* const end = text.data() + text.size();
  unsigned long long id = 0;
  const auto result = std::from_chars(text.data() + (isHex ? 2 : 0), end, id, isHex ? 16 : 10);
  if (result.ec != std::errc() || result.ptr != end) {
    throw CLI::ValidationError("ID", text + " is no 64-bit number");
  }
  return id;
}

unsigned int tileLevelOf(const std::string& text) {
  const auto level = static_cast<unsigned int>(tileNumber(text, "LEVEL", kTileLevel));
  if (!parsed<unsigned int>(text)) {
    throw CLI::ValidationError("LEVEL", text + " is no whole number");
  }
  return level;
}

unsigned long long askedTile(const std::vector<std::string>& place) {
  if (place.size() == 1) {
    return tileIdOf(place[0]);
  }
  if (place.size() != 3) {
    throw CLI::ValidationError("PLACE", "give either ID or LAT LON LEVEL");
  }
  return schema::Utility::wlanRmTileId(tileNumber(place[0], "LAT", kTileLatitude),
                                       tileNumber(place[1], "LON", kTileLongitude),
                                       tileLevelOf(place[2]));
}

void answerTile(const GeoOptions& options, CommandContext& context) {
  const unsigned long long id = askedTile(options.place);
  GeoAnswer(options, context)
      .giveOr(options.geojson ? tileFeature(id) : tileResult(id),
              std::to_string(id) + " is no identifier of a tile");
}

void addTile(CLI::App& geo, CommandContext& context) {
  const auto options = std::make_shared<GeoOptions>();
  CLI::App* command =
      geo.add_subcommand("tile", "A WLAN RM tile: level, corner, size, parent and children");
  command
      ->add_option("PLACE", options->place,
                   "ID, decimal or 0x..., or LAT LON LEVEL with a level from 6 to 23")
      ->required()
      ->option_text("REQUIRED");
  addJson(*command, options);
  command->add_flag("--geojson", options->geojson, "The tile's outline as a GeoJSON feature")
      ->excludes("--json");
  command->callback([options, &context] { answerTile(*options, context); });
}

}  // namespace

void addGeoCommand(CLI::App& app, CommandContext& context) {
  CLI::App* geo =
      app.add_subcommand("geo", "Compute distances, bearings, uncertainty ellipses and map tiles");
  geo->require_subcommand(1);
  geo->footer(kExamples);
  addDistance(*geo, context);
  addBearing(*geo, context);
  addEllipse(*geo, context);
  addTile(*geo, context);
}

}  // namespace trelvo::tool
