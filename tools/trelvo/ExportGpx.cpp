#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "tools/trelvo/ExportText.h"
#include "tools/trelvo/ExportWriter.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/XmlText.h"

namespace trelvo::tool {
namespace {

constexpr const char* kNoPosition = " without a position";
constexpr const char* kHeight = "altitude above the ellipsoid as ele; it stands in desc";

bool isFix(const Feature& feature) {
  return feature.kind == "GnssMeasurement" || feature.kind == "PositionEstimate";
}

// The schema has -180 and not 180.
std::string longitudeText(double longitude) {
  const std::string text = degreesText(longitude);
  return text == "180.000000000" ? "-" + text : text;
}

std::string descriptionText(const Feature& feature) {
  const std::string fields = featureDescription(feature);
  return feature.kind + (fields.empty() ? "" : ": ") + fields;
}

/// Text that is kept in a file without a name until it is wanted.
class Spool {
 public:
  void write(const std::string& text) {
    if (!m_file) {
      m_file.reset(std::tmpfile());
      require(m_file != nullptr);
    }
    require(std::fwrite(text.data(), 1, text.size(), m_file.get()) == text.size());
  }

  bool isEmpty() const { return m_file == nullptr; }

  void copyTo(std::ostream& out) {
    std::array<char, 65536> block = {};
    require(std::fseek(m_file.get(), 0, SEEK_SET) == 0);
    while (const std::size_t got = std::fread(block.data(), 1, block.size(), m_file.get())) {
      out.write(block.data(), static_cast<std::streamsize>(got));
    }
    require(std::ferror(m_file.get()) == 0);
  }

 private:
  static void require(bool isDone) {
    if (!isDone) {
      throw Failure(std::string("temporary file: ") + std::strerror(errno));
    }
  }

  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> m_file;
};

class GpxWriter : public ExportWriter {
 public:
  explicit GpxWriter(const ExportTarget& target) : m_target(target) {}

  void begin() override {
    m_target.out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                    "<gpx version=\"1.1\" creator=\"trelvo\" "
                    "xmlns=\"http://www.topografix.com/GPX/1/1\">\n";
  }

  // The schema wants all waypoints ahead of the track.
  void feature(const Feature& feature) override {
    if (!feature.position) {
      m_target.losses.add(feature.kind + kNoPosition, feature.container);
      return;
    }
    if (feature.position->altitude) {
      m_target.losses.add(kHeight, feature.container);
    }
    if (isFix(feature)) {
      m_track.write(pointText("trkpt", feature, ""));
    } else {
      m_target.out << pointText("wpt", feature,
                                "<name>" + xmlText(featureName(feature)) + "</name>");
    }
  }

  void end() override {
    if (!m_track.isEmpty()) {
      m_target.out << "<trk><trkseg>\n";
      m_track.copyTo(m_target.out);
      m_target.out << "</trkseg></trk>\n";
    }
    m_target.out << "</gpx>\n";
  }

 private:
  static std::string pointText(const std::string& element, const Feature& feature,
                               const std::string& name) {
    const Token* utc = feature.find("timeStampUtc");
    return "<" + element + " lat=\"" + degreesText(feature.position->latitude) + "\" lon=\"" +
           longitudeText(feature.position->longitude) + "\">" +
           (utc != nullptr ? "<time>" + xmlText(utc->text) + "</time>" : "") + name + "<desc>" +
           xmlText(descriptionText(feature)) + "</desc></" + element + ">\n";
  }

  ExportTarget m_target;
  Spool m_track;
};

}  // namespace

std::unique_ptr<ExportWriter> makeGpxWriter(const ExportTarget& target) {
  return std::make_unique<GpxWriter>(target);
}

}  // namespace trelvo::tool
