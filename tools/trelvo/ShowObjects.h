#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/trelvo/ShowWriter.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {

/// What is known of one kind of generic object.
struct ObjectInfo;

/// The class of generic objects with that key, "WlanMeasurement"; null when the schema has none.
const char* objectClassName(unsigned short objectKey);

/// Gives the objects and properties of the schema their names and hands all that arrives on to a
/// writer.
///
/// Objects and properties that the schema does not know appear as "GenericObject" and
/// "property 999", a known property of another type under its own name, each value with its type. A
/// property that occurs again in an object is called "name#2".
class ShowObjects : public WireHandler {
 public:
  /// Stops the parsing when `out`, which `writer` writes to, is not good any more.
  ShowObjects(ShowWriter& writer, const std::ostream& out) : m_writer(writer), m_out(out) {}

  void beginObject(const WireItem& item, unsigned short objectKey, unsigned int count) override;
  void endObject() override;
  void beginCollection(const WireItem& item, unsigned int count) override;
  void endCollection() override;
  void scalar(const WireItem& item, std::uint64_t bits) override;
  void string(const WireItem& item, const std::string& bytes) override;
  void record(const WireItem& item, const gom::ObjectBase& record) override;

  /// Ends at the writer whatever has begun.
  void brokenOff() override;
  bool stopped() const override { return !m_out.good(); }

 private:
  struct Level {
    const ObjectInfo* info;  // null in a collection and in an unknown object
    bool list;
    bool wrapped;  // inside an "Element" of its own, because the element has a key
    std::unordered_map<unsigned short, unsigned int> seen;
  };

  std::string openItem(const WireItem& item, bool& wrapped);
  void closeItem(bool wrapped);
  void closeLevel();
  std::string propertyName(unsigned short key);

  ShowWriter& m_writer;
  const std::ostream& m_out;
  std::vector<Level> m_levels;
};

}  // namespace trelvo::tool
