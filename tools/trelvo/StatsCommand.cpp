#include "tools/trelvo/StatsCommand.h"

#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/trelvo/BarChart.h"
#include "tools/trelvo/ContainerInput.h"
#include "tools/trelvo/ContainerStats.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/ShowObjects.h"
#include "tools/trelvo/ShowRecords.h"
#include "tools/trelvo/ShowValue.h"

namespace trelvo::tool {
namespace {

using nlohmann::ordered_json;
using schema::Utility;

constexpr const char* kExamples =
    "Levels are counted in steps of 5 dBm, RSRQ in steps of 1 dB; a reporting code counts where "
    "its\n"
    "range begins. The extent is that of all positions and centres of coverages; it may cross the "
    "date line.\n\n"
    "Examples:\n"
    "  trelvo stats drive.trelvo\n"
    "  trelvo stats drive.trelvo --json\n"
    "  trelvo import drive.log -o - | trelvo stats -";

struct StatsOptions {
  std::string file;
  bool json = false;
  StoreOptions store;
};

std::string objectName(unsigned short key) {
  const char* const name = objectClassName(key);
  return name != nullptr ? name : "GenericObject " + std::to_string(key);
}

std::string formatted(const char* format, double a, double b = 0.0) {
  char text[128];
  std::snprintf(text, sizeof text, format, a, b);
  return text;
}

struct Size {
  double east;   // metres
  double north;  // metres
};

// Along the middle parallel and the meridian.
Size sizeOf(const GeoBox& box) {
  Size perDegree = {};
  Utility::degreeInMeters(box.middleLatitude(), perDegree.east, perDegree.north);
  return {(box.east - box.west) * perDegree.east, (box.north - box.south) * perDegree.north};
}

constexpr LevelKind kAllLevels[] = {LevelKind::Wlan,    LevelKind::Geran,     LevelKind::UtraFdd,
                                    LevelKind::UtraTdd, LevelKind::EUtraRsrp, LevelKind::EUtraRsrq};

// -- JSON
// ------------------------------------------------------------------------------------------

ordered_json extentJson(const ContainerStats& stats) {
  if (stats.extent().isEmpty()) {
    return nullptr;
  }
  const GeoBox box = stats.extent().box();
  const Size size = sizeOf(box);
  return {{"south", box.south},       {"west", box.west},
          {"north", box.north},       {"east", Utility::deCompLonRollOver(box.east)},
          {"widthMetres", size.east}, {"heightMetres", size.north}};
}

ordered_json timeJson(const ContainerStats& stats) {
  if (stats.earliest() == 0) {
    return nullptr;
  }
  return {{"from", stats.earliest()},
          {"to", stats.latest()},
          {"fromUtc", timeValue(stats.earliest()).note},
          {"toUtc", timeValue(stats.latest()).note},
          {"seconds", stats.latest() - stats.earliest()}};
}

ordered_json levelsJson(const LevelHistograms& levels) {
  ordered_json json = ordered_json::object();
  for (const LevelKind kind : kAllLevels) {
    const LevelHistogram& histogram = levels.of(kind);
    if (histogram.total() == 0) {
      continue;
    }
    ordered_json bins = ordered_json::array();
    for (int level = histogram.first(); level <= histogram.last(); level += histogram.step()) {
      bins.push_back({{"from", level},
                      {"below", level + histogram.step()},
                      {"count", histogram.count(level)}});
    }
    json[levelKind(kind).name] = {{"unit", levelKind(kind).unit},
                                  {"count", histogram.total()},
                                  {"lowest", histogram.lowest()},
                                  {"highest", histogram.highest()},
                                  {"bins", bins}};
  }
  return json;
}

ordered_json statsJson(const ContainerStats& stats, std::uint64_t bytes) {
  ordered_json objects = ordered_json::object();
  for (const auto& [key, count] : stats.objects()) {
    objects[objectName(key)] = count;
  }
  ordered_json records = ordered_json::object();
  for (const auto& [classId, count] : stats.records()) {
    records[recordClassName(classId)] = count;
  }
  return {{"bytes", bytes},
          {"containers", stats.roots()},
          {"objects", objects},
          {"records", records},
          {"positions", stats.positions()},
          {"coverages", stats.coverages()},
          {"time", timeJson(stats)},
          {"extent", extentJson(stats)},
          {"levels", levelsJson(stats.levels())}};
}

// -- Text
// ------------------------------------------------------------------------------------------

class StatsText {
 public:
  StatsText(std::ostream& out, const BarStyle& style) : m_out(out), m_style(style) {}

  void write(const ContainerStats& stats, std::uint64_t bytes) {
    line("bytes", std::to_string(bytes));
    for (const auto& [key, count] : stats.objects()) {
      line(objectName(key), std::to_string(count));
    }
    line("positions", std::to_string(stats.positions()));
    line("coverages", std::to_string(stats.coverages()));
    writeTime(stats);
    writeExtent(stats);
    for (const LevelKind kind : kAllLevels) {
      writeLevels(levelKind(kind), stats.levels().of(kind));
    }
  }

 private:
  void line(const std::string& name, const std::string& text) {
    constexpr std::size_t kColumn = 30;
    m_out << name << std::string(kColumn > name.size() ? kColumn - name.size() : 1, ' ') << text
          << '\n';
  }

  void writeTime(const ContainerStats& stats) {
    if (stats.earliest() == 0) {
      return line("time", "none");
    }
    line("time", timeValue(stats.earliest()).note + " to " + timeValue(stats.latest()).note + ", " +
                     std::to_string(stats.latest() - stats.earliest()) + " s");
  }

  void writeExtent(const ContainerStats& stats) {
    if (stats.extent().isEmpty()) {
      return line("extent", "none");
    }
    const GeoBox box = stats.extent().box();
    const Size size = sizeOf(box);
    line("latitude", formatted("%.6f to %.6f", box.south, box.north));
    line("longitude", formatted("%.6f to %.6f", box.west, Utility::deCompLonRollOver(box.east)) +
                          (box.east >= 180.0 ? ", across the date line" : ""));
    line("size", formatted("%.0f m east, %.0f m north", size.east, size.north));
  }

  void writeLevels(const LevelKindInfo& info, const LevelHistogram& histogram) {
    if (histogram.total() == 0) {
      return;
    }
    m_out << '\n'
          << info.name << ", " << info.unit << ": " << histogram.total() << " from "
          << formatted("%g to %g", histogram.lowest(), histogram.highest()) << '\n';
    unsigned long long most = 0;
    for (int level = histogram.first(); level <= histogram.last(); level += info.step) {
      most = std::max(most, histogram.count(level));
    }
    for (int level = histogram.first(); level <= histogram.last(); level += info.step) {
      writeBin(level, histogram.count(level), most);
    }
  }

  void writeBin(int level, unsigned long long count, unsigned long long most) {
    constexpr std::size_t kBefore = 7;  // the level, and blanks around it
    const std::size_t room = m_style.columns - kBefore - std::to_string(most).size() - 1;
    char text[32];
    std::snprintf(text, sizeof text, "%5d  ", level);
    const std::string drawn = bar(count, most, room, m_style.unicode);
    m_out << text << drawn << (drawn.empty() ? "" : " ") << count << '\n';
  }

  std::ostream& m_out;
  BarStyle m_style;
};

// What stands ahead of damage is counted and printed.
void runStats(const StatsOptions& options, CommandContext& context) {
  ContainerInput input(options.file, options.store, context);
  FileStream& stream = input.stream();
  ContainerStats stats;
  WireParser parser(stream, stream.position(), stats);
  bool whole = true;
  while (whole && !stream.eof()) {
    whole = parser.parseObject();
  }
  input.clearProgress();
  if (options.json) {
    context.out << statsJson(stats, stream.position()).dump(2) << '\n';
  } else {
    StatsText(context.out, barStyleFor(context)).write(stats, stream.position());
  }
  context.out.flush();
  checkRead(stream, input.name());
  if (!whole) {
    input.fail(faultText(parser.fault()));
  }
}

}  // namespace

void addStatsCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<StatsOptions>();
  CLI::App* command = app.add_subcommand(
      "stats", "Count what a file holds: kinds, time span, extent, levels as a histogram");
  addContainerFile(*command, options->file);
  command->add_flag("--json", options->json, "One JSON object");
  addSealedOptions(*command, options->store);
  command->footer(kExamples);
  command->callback([options, &context] {
    context.exitStatus = reporting(context, [&] { runStats(*options, context); });
  });
}

}  // namespace trelvo::tool
