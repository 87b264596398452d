#include <string>

#include "tools/trelvo/ExportText.h"
#include "tools/trelvo/ExportWriter.h"
#include "tools/trelvo/XmlText.h"

namespace trelvo::tool {
namespace {

constexpr const char* kNoPosition = " without a position";

class KmlWriter : public ExportWriter {
 public:
  explicit KmlWriter(const ExportTarget& target) : m_target(target) {}

  void begin() override {
    m_target.out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                    "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n"
                    "<Document>\n"
                    "<name>trelvo</name>\n";
  }

  void feature(const Feature& feature) override {
    if (!feature.position) {
      m_target.losses.add(feature.kind + kNoPosition, feature.container);
      return;
    }
    m_target.out << "<Placemark><name>" << xmlText(featureName(feature)) << "</name>";
    if (const Token* utc = feature.find("timeStampUtc")) {
      m_target.out << "<TimeStamp><when>" << xmlText(utc->text) << "</when></TimeStamp>";
    }
    writeData(feature);
    m_target.out << "<Point><coordinates>" << degreesText(feature.position->longitude) << ','
                 << degreesText(feature.position->latitude)
                 << "</coordinates></Point></Placemark>\n";
  }

  void end() override { m_target.out << "</Document>\n</kml>\n"; }

 private:
  void writeData(const Feature& feature) {
    m_target.out << "<ExtendedData>";
    writeData("kind", feature.kind);
    for (const FeatureField& field : feature.fields) {
      writeData(field.name, field.value.text);
    }
    m_target.out << "</ExtendedData>";
  }

  void writeData(const std::string& name, const std::string& value) {
    m_target.out << "<Data name=\"" << xmlText(name) << "\"><value>" << xmlText(value)
                 << "</value></Data>";
  }

  ExportTarget m_target;
};

}  // namespace

std::unique_ptr<ExportWriter> makeKmlWriter(const ExportTarget& target) {
  return std::make_unique<KmlWriter>(target);
}

}  // namespace trelvo::tool
