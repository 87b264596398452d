#include "tools/trelvo/ImportFormat.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "tools/trelvo/CellTowerImporter.h"
#include "tools/trelvo/GeosubmitImporter.h"
#include "tools/trelvo/ImportLines.h"
#include "tools/trelvo/MmcliImporter.h"
#include "tools/trelvo/NmeaImporter.h"
#include "tools/trelvo/NmeaReader.h"
#include "tools/trelvo/QengImporter.h"
#include "tools/trelvo/WifiScanImporter.h"

namespace trelvo::tool {

namespace {

constexpr size_t kSentenceStart = 7;  // "$GPGGA,"

ImportFormat formatOfLine(std::string_view line) {
  if (NmeaReader::looksLikeNmea(line.substr(0, kSentenceStart))) {
    return ImportFormat::Nmea;
  }
  if (WifiScanImporter::startsEntry(line)) {
    return ImportFormat::Iw;
  }
  return QengImporter::looksLikeQeng(line) ? ImportFormat::Qeng : ImportFormat::Auto;
}

ImportFormat formatOfLines(std::string_view text) {
  for (size_t line = 0; line < text.size();) {
    const size_t end = std::min(text.find('\n', line), text.size());
    const ImportFormat format = formatOfLine(text.substr(line, end - line));
    if (format != ImportFormat::Auto) {
      return format;
    }
    line = end + 1;
  }
  return ImportFormat::Auto;
}

// Finds the names of the members of a JSON document, of which only the start may be there.
class MemberNames {
 public:
  explicit MemberNames(std::string_view text) : m_text(text) {
    for (; m_at < m_text.size() && m_depth >= 0; ++m_at) {
      take(m_text[m_at]);
    }
  }

  bool has(std::string_view name) const {
    return std::find(m_names.begin(), m_names.end(), name) != m_names.end();
  }

 private:
  static constexpr size_t kMost = 100;

  void take(char c) {
    if (c == '"') {
      takeString();
    } else if (c == '{' || c == '[') {
      ++m_depth;
    } else if (c == '}' || c == ']') {
      m_depth -= m_depth == 1 ? 2 : 1;
    }
  }

  // Leaves the closing quotation mark as the current character.
  void takeString() {
    const size_t start = ++m_at;
    while (m_at < m_text.size() && m_text[m_at] != '"') {
      m_at += m_text[m_at] == '\\' ? 2 : 1;
    }
    const size_t next = m_text.find_first_not_of(" \t\r\n", std::min(m_at, m_text.size() - 1) + 1);
    const bool isName = next != std::string_view::npos && m_text[next] == ':';
    if (isName && m_depth == 1 && m_names.size() < kMost) {
      m_names.push_back(m_text.substr(start, m_at - start));
    }
  }

  std::string_view m_text;
  size_t m_at = 0;
  int m_depth = 0;
  std::vector<std::string_view> m_names;
};

ImportFormat formatOfJson(std::string_view text) {
  constexpr std::string_view kOfRequests[] = {
      "cellTowers", "wifiAccessPoints",      "bluetoothBeacons",      "considerIp",
      "carrier",    "homeMobileCountryCode", "homeMobileNetworkCode", "fallbacks"};
  const MemberNames names(text);
  if (names.has("modem")) {
    return ImportFormat::Mmcli;
  }
  const bool isRequest =
      !names.has("items") && std::any_of(std::begin(kOfRequests), std::end(kOfRequests),
                                         [&](std::string_view name) { return names.has(name); });
  return isRequest ? ImportFormat::Geolocate : ImportFormat::Geosubmit;
}

}  // namespace

ImportFormat formatOf(std::string_view start) {
  if (CellTowerReader::looksLikeCellTowers(start)) {
    return ImportFormat::Cells;
  }
  const std::string_view text = withoutByteOrderMark(start);
  const ImportFormat ofLines = formatOfLines(text);
  if (ofLines != ImportFormat::Auto) {
    return ofLines;
  }
  const size_t first = text.find_first_not_of(" \t\r\n");
  if (first != std::string_view::npos && text[first] == '{') {
    return formatOfJson(text.substr(first));
  }
  return NmeaReader::looksLikeNmea(text) ? ImportFormat::Nmea : ImportFormat::Auto;
}

bool importStream(IStream& stream, const std::string& name, ImportFormat format,
                  const ImportClock& clock, ImportReport& report, ImportTarget& target) {
  using Form = GeosubmitImporter::Form;
  ImportSource source(stream, name);
  switch (format == ImportFormat::Auto ? formatOf(source.start()) : format) {
    case ImportFormat::Nmea:
      return NmeaImporter(source, report, target, clock.date).run();
    case ImportFormat::Geosubmit:
      return GeosubmitImporter(source, report, target, Form::Reports).run();
    case ImportFormat::Geolocate:
      return GeosubmitImporter(source, report, target, Form::Requests, clock).run();
    case ImportFormat::Cells:
      return CellTowerImporter(source, report, target).run();
    case ImportFormat::Iw:
      return WifiScanImporter(source, report, target, clock).run();
    case ImportFormat::Mmcli:
      return MmcliImporter(source, report, target, clock).run();
    case ImportFormat::Qeng:
      return QengImporter(source, report, target, clock).run();
    case ImportFormat::Auto:
      report.count(kUnknownFormat, source.place());
  }
  return false;
}

}  // namespace trelvo::tool
