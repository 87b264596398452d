#pragma once

#include <string>
#include <string_view>

namespace trelvo::tool {

/// `text` as the content of an XML element, or of an attribute in quotation marks. What has a
/// meaning in XML is escaped. What XML 1.0 does not have, and control characters beside tab and
/// line feed, become U+FFFD, and so does each byte that is not UTF-8.
std::string xmlText(std::string_view text);

}  // namespace trelvo::tool
