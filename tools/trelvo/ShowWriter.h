#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "tools/trelvo/ShowValue.h"

namespace trelvo::tool {

/// Writes the content of objects in the order in which it arrives, each piece at once.
///
/// Whoever calls it closes what he opened; the outermost level may hold any number of objects.
/// Names are ignored inside lists.
class ShowWriter {
 public:
  virtual ~ShowWriter() = default;

  virtual void beginObject(std::string_view name, std::string_view className) = 0;
  virtual void endObject() = 0;

  /// `count` is what the input announces; fewer may follow.
  virtual void beginList(std::string_view name, unsigned int count) = 0;
  virtual void endList() = 0;
  virtual void value(std::string_view name, const ShowValue& value) = 0;

  /// Behind the last object.
  virtual void finish() {}
};

/// A readable tree, two columns deeper for each level.
std::unique_ptr<ShowWriter> makeTreeWriter(std::ostream& out);

/// One JSON array with an object a line.
std::unique_ptr<ShowWriter> makeJsonWriter(std::ostream& out);

/// JSON objects, one a line, with nothing around them.
std::unique_ptr<ShowWriter> makeJsonLinesWriter(std::ostream& out);

}  // namespace trelvo::tool
