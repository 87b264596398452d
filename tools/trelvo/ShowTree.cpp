#include <vector>

#include "tools/trelvo/ShowWriter.h"

namespace trelvo::tool {
namespace {

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
    m_out << shownText(value) << '\n';
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
