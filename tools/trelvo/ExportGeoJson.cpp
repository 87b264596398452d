#include <string>

#include "tools/trelvo/EllipseOutline.h"
#include "tools/trelvo/ExportText.h"
#include "tools/trelvo/ExportWriter.h"

namespace trelvo::tool {
namespace {

constexpr const char* kNoOutline = "outline of an ellipse that holds a pole or half the globe";

std::string pointText(const FeaturePosition& position, const Token* altitude) {
  std::string text = "{\"type\":\"Point\",\"coordinates\":[" + degreesText(position.longitude) +
                     "," + degreesText(position.latitude);
  return text + (altitude != nullptr ? "," + altitude->text : "") + "]}";
}

std::string ringText(const OutlineRing& ring) {
  std::string text;
  for (const OutlinePoint& point : ring) {
    text += (text.empty() ? "[[[" : ",[") + degreesText(point.longitude) + "," +
            degreesText(point.latitude) + "]";
  }
  return text + "]]";
}

std::string outlineText(const std::vector<OutlineRing>& rings) {
  if (rings.size() == 1) {
    return "{\"type\":\"Polygon\",\"coordinates\":" + ringText(rings.front()) + "}";
  }
  std::string text;
  for (const OutlineRing& ring : rings) {
    text += (text.empty() ? "[" : ",") + ringText(ring);
  }
  return "{\"type\":\"MultiPolygon\",\"coordinates\":" + text + "]}";
}

class GeoJsonWriter : public ExportWriter {
 public:
  GeoJsonWriter(const ExportTarget& target, ExportShape shape) : m_target(target), m_shape(shape) {}

  void begin() override { m_target.out << "{\"type\":\"FeatureCollection\",\"features\":["; }

  void feature(const Feature& feature) override {
    m_target.out << (m_isFirst ? "\n" : ",\n") << "{\"type\":\"Feature\",\"geometry\":";
    m_isFirst = false;
    const std::vector<OutlineRing> rings = outlineOf(feature);
    m_target.out << (rings.empty() ? geometryText(feature) : outlineText(rings))
                 << ",\"properties\":{" << jsonMembers(feature);
    if (!rings.empty()) {
      m_target.out << ",\"polygon\":\""
                   << (feature.ellipse->isCircle ? "horizontalCepUncertainty"
                                                 : "majorAxis, minorAxis, angle")
                   << '"';
    }
    m_target.out << "}}";
  }

  void end() override { m_target.out << "\n]}\n"; }

 private:
  std::vector<OutlineRing> outlineOf(const Feature& feature) const {
    if (m_shape == ExportShape::Point || !feature.ellipse) {
      return {};
    }
    auto rings = ellipseOutline(*feature.position, *feature.ellipse);
    if (rings.empty()) {
      m_target.losses.add(kNoOutline, feature.container);
    }
    return rings;
  }

  static std::string geometryText(const Feature& feature) {
    if (!feature.position) {
      return "null";
    }
    return pointText(*feature.position,
                     feature.position->altitude ? feature.find("altitude") : nullptr);
  }

  ExportTarget m_target;
  ExportShape m_shape;
  bool m_isFirst = true;
};

class NdjsonWriter : public ExportWriter {
 public:
  explicit NdjsonWriter(const ExportTarget& target) : m_target(target) {}

  void begin() override {}
  void feature(const Feature& feature) override {
    m_target.out << '{' << jsonMembers(feature) << "}\n";
  }
  void end() override {}

 private:
  ExportTarget m_target;
};

}  // namespace

std::unique_ptr<ExportWriter> makeGeoJsonWriter(const ExportTarget& target, ExportShape shape) {
  return std::make_unique<GeoJsonWriter>(target, shape);
}

std::unique_ptr<ExportWriter> makeNdjsonWriter(const ExportTarget& target) {
  return std::make_unique<NdjsonWriter>(target);
}

}  // namespace trelvo::tool
