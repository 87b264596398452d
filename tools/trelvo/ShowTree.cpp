#include <vector>

#include "tools/trelvo/ShowWriter.h"

namespace trelvo::tool {
namespace {

std::string tokenText(const Token& token) {
  return token.kind == Token::Text ? quoted(token.text) : token.text;
}

std::string detailText(const ShowValue& value) {
  std::string text = value.note;
  if (text.empty()) {
    for (const auto& [name, token] : value.details) {
      text += (text.empty() ? "" : ", ") + std::string(name) + " " + tokenText(token);
    }
  }
  return text;
}

class TreeWriter : public ShowWriter {
 public:
  explicit TreeWriter(std::ostream& out) : m_out(out) {}

  void beginObject(std::string_view name, std::string_view className) override {
    beginLine(name);
    m_out << className << '\n';
    m_levels.push_back({false, 0});
  }

  void endObject() override { m_levels.pop_back(); }

  void beginList(std::string_view name, unsigned int count) override {
    beginLine(name);
    m_out << count << (count == 1 ? " element\n" : " elements\n");
    m_levels.push_back({true, 0});
  }

  void endList() override { m_levels.pop_back(); }

  void value(std::string_view name, const ShowValue& value) override {
    beginLine(name);
    m_out << tokenText(value.value);
    if (*value.unit != '\0') {
      m_out << ' ' << value.unit;
    }
    const std::string details = detailText(value);
    if (!details.empty()) {
      m_out << " (" << details << ')';
    }
    m_out << '\n';
  }

 private:
  struct Level {
    bool list;
    unsigned int next;
  };

  void beginLine(std::string_view name) {
    if (m_levels.empty()) {
      return;
    }
    m_out << std::string(2 * m_levels.size(), ' ');
    if (m_levels.back().list) {
      m_out << '[' << m_levels.back().next++ << "] ";
    } else {
      m_out << name << ": ";
    }
  }

  std::ostream& m_out;
  std::vector<Level> m_levels;
};

}  // namespace

std::unique_ptr<ShowWriter> makeTreeWriter(std::ostream& out) {
  return std::make_unique<TreeWriter>(out);
}

}  // namespace trelvo::tool
