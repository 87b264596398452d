#include <vector>

#include "tools/trelvo/ShowWriter.h"

namespace trelvo::tool {
namespace {

class JsonWriter : public ShowWriter {
 public:
  enum Layout { Array, Lines };

  JsonWriter(std::ostream& out, Layout layout) : m_out(out), m_layout(layout) {}

  void beginObject(std::string_view name, std::string_view className) override {
    separate(name);
    m_out << R"({"class":")" << className << '"';
    m_levels.push_back({false, false});
  }

  void endObject() override { end('}'); }

  void beginList(std::string_view name, unsigned int) override {
    separate(name);
    m_out << '[';
    m_levels.push_back({true, true});
  }

  void endList() override { end(']'); }

  void value(std::string_view name, const ShowValue& value) override {
    separate(name);
    const bool alone = *value.unit == '\0' && value.details.empty();
    m_out << (alone ? "" : R"({"value":)") << jsonText(value.value);
    if (*value.unit != '\0') {
      m_out << R"(,"unit":")" << value.unit << '"';
    }
    for (const auto& [key, token] : value.details) {
      m_out << ",\"" << key << "\":" << jsonText(token);
    }
    m_out << (alone ? "" : "}");
  }

  void finish() override {
    if (m_layout == Array) {
      m_out << (m_empty ? "[]\n" : "\n]\n");
    }
  }

 private:
  struct Level {
    bool list;
    bool first;
  };

  void separate(std::string_view name) {
    if (m_levels.empty()) {
      m_out << (m_layout == Lines ? "" : m_empty ? "[\n" : ",\n");
      m_empty = false;
      return;
    }
    Level& level = m_levels.back();
    m_out << (level.first ? "" : ",");
    level.first = false;
    if (!level.list) {
      m_out << '"' << name << "\":";
    }
  }

  void end(char bracket) {
    m_levels.pop_back();
    m_out << bracket;
    if (m_levels.empty() && m_layout == Lines) {
      m_out << '\n';
    }
  }

  std::ostream& m_out;
  Layout m_layout;
  std::vector<Level> m_levels;
  bool m_empty = true;
};

}  // namespace

std::unique_ptr<ShowWriter> makeJsonWriter(std::ostream& out) {
  return std::make_unique<JsonWriter>(out, JsonWriter::Array);
}

std::unique_ptr<ShowWriter> makeJsonLinesWriter(std::ostream& out) {
  return std::make_unique<JsonWriter>(out, JsonWriter::Lines);
}

}  // namespace trelvo::tool
