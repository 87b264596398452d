#include "tools/trelvo/ImportFormat.h"

#include "tools/trelvo/CellTowerImporter.h"
#include "tools/trelvo/GeosubmitImporter.h"
#include "tools/trelvo/NmeaImporter.h"
#include "tools/trelvo/NmeaReader.h"

namespace trelvo::tool {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr size_t kSentenceStart = 7;  // "$GPGGA,"

std::string_view withoutMark(std::string_view text) {
  const bool marked = text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
  return marked ? text.substr(kByteOrderMark.size()) : text;
}

bool hasSentenceAtLineStart(std::string_view text) {
  for (size_t line = 0; line < text.size();) {
    if (NmeaReader::looksLikeNmea(text.substr(line, kSentenceStart))) {
      return true;
    }
    const size_t end = text.find('\n', line);
    line = end == std::string_view::npos ? text.size() : end + 1;
  }
  return false;
}

}  // namespace

ImportFormat formatOf(std::string_view start) {
  if (CellTowerReader::looksLikeCellTowers(start)) {
    return ImportFormat::Cells;
  }
  const std::string_view text = withoutMark(start);
  if (hasSentenceAtLineStart(text)) {
    return ImportFormat::Nmea;
  }
  const size_t first = text.find_first_not_of(" \t\r\n");
  if (first != std::string_view::npos && text[first] == '{') {
    return ImportFormat::Geosubmit;
  }
  return NmeaReader::looksLikeNmea(text) ? ImportFormat::Nmea : ImportFormat::Auto;
}

bool importStream(IStream& stream, const std::string& name, ImportFormat format,
                  const std::optional<NmeaDate>& date, ImportReport& report, ImportTarget& target) {
  ImportSource source(stream, name);
  switch (format == ImportFormat::Auto ? formatOf(source.start()) : format) {
    case ImportFormat::Nmea:
      return NmeaImporter(source, report, target, date).run();
    case ImportFormat::Geosubmit:
      return GeosubmitImporter(source, report, target).run();
    case ImportFormat::Cells:
      return CellTowerImporter(source, report, target).run();
    case ImportFormat::Auto:
      report.count(kUnknownFormat, source.place());
  }
  return false;
}

}  // namespace trelvo::tool
